// Shuffling the matrix that an object exposes: cells, rows, columns, or cells within chosen lines.
#ifndef VORN_PROB_RANDOMIZABLE_H
#define VORN_PROB_RANDOMIZABLE_H

#include "pipeline/random.h"
#include "pipeline/vector.h"
#include "prob/matrix.h"

// Each operation takes the matrix from GetMatrix, shuffles it and stores it back with SetMatrix.
// A cell or line moves with probability p: a draw of at least 1 - p, then the partner row and
// column, in that order, each as the truncation of a draw times the count.
class Randomizable_cl {
 public:
  // Sets the process-wide seed from the clock and seeds this object's own generator with it.
  Randomizable_cl();
  virtual ~Randomizable_cl() = default;

  virtual Matrix_sptr GetMatrix() = 0;
  virtual void SetMatrix(Matrix_sptr matrix) = 0;

  // Each cell may swap with any cell of the matrix.
  void Permute(double p);
  // Each cell may swap with a cell of its own row.
  void PermuteByRows(double p);
  void PermuteByColumns(double p);
  // Each row may swap places with any row.
  void PermuteTheRows(double p);
  void PermuteTheColumns(double p);
  // In the given columns, each cell of the given rows may swap with the cell of another given row.
  void PermuteOnlyClusterOfRowsInGivenColumns(const Vector_tmpl<int>* rows, const Vector_tmpl<int>* columns,
                                              double p);
  // In the given columns, each cell may swap with the cell of any row.
  void PermuteByRowsInGivenColumns(const Vector_tmpl<int>* columns, double p);

  Random_cl& GetRandom() { return iRandom; }

 private:
  int Moves(double p) { return iRandom.SampleUniform() >= 1.0 - p; }
  int Draw(int count) { return static_cast<int>(iRandom.SampleUniform() * count); }
  // Transposes the stored matrix.
  void TransposeStored();

  Random_cl iRandom;
};

#endif
