// The dense matrix of rows of doubles, its column vector form and the row/column filter over it.
#ifndef VORN_PROB_MATRIX_H
#define VORN_PROB_MATRIX_H

#include <ostream>

#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/ref_count.h"
#include "pipeline/vector.h"
#include "prob/index.h"
#include "prob/value.h"

class Matrix_cl;
class MatrixVector_cl;
class SqrMatrix_cl;
class MatrixFilter_cl;

class Matrix_sptr : public Sptr_tmpl<Matrix_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class MatrixVector_sptr : public Sptr_tmpl<MatrixVector_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class SqrMatrix_sptr : public Sptr_tmpl<SqrMatrix_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

// The side of a matrix that a filter or a split works on.
enum MatrixDimension_cl { MATRIX_ROWS = 0, MATRIX_COLUMNS = 1 };

// A selection of rows and columns by index, without copying cells; a null side selects everything.
// Each side's vector is either owned (deleted with the filter) or borrowed from another filter.
class MatrixFilter_cl {
 public:
  MatrixFilter_cl(Vector_tmpl<int>* rows, int rowsOwner, Vector_tmpl<int>* columns, int columnsOwner);
  MatrixFilter_cl(const MatrixFilter_cl&) = delete;
  MatrixFilter_cl& operator=(const MatrixFilter_cl&) = delete;
  ~MatrixFilter_cl();

  Vector_tmpl<int>* GetRows() const { return iRows; }
  Vector_tmpl<int>* GetColumns() const { return iColumns; }
  int RowsOwner() const { return iRowsOwner; }
  int ColumnsOwner() const { return iColumnsOwner; }

  Vector_tmpl<int>* GetObjects(MatrixDimension_cl dimension) const;
  // Replaces a side, deleting the old vector when it was owned.
  void SetObjects(MatrixDimension_cl dimension, Vector_tmpl<int>* objects, int owner);
  // Hands this side's vector to other, with its ownership; this filter keeps it borrowed.
  void PassObjects(MatrixDimension_cl dimension, MatrixFilter_cl* other);
  void DeleteObjects(MatrixDimension_cl dimension);
  int ObjectsOwner(MatrixDimension_cl dimension) const;

  // Copies both vectors; the clone owns its copies.
  MatrixFilter_cl* Clone() const;
  void PassRows(MatrixFilter_cl* other) { PassObjects(MATRIX_ROWS, other); }
  void PassColumns(MatrixFilter_cl* other) { PassObjects(MATRIX_COLUMNS, other); }
  // Appends indices to the row side, which must exist.
  void AddRows(const Vector_tmpl<int>* rows);
  // Replaces the row side with an owned copy of rows.
  void CopyRows(const Vector_tmpl<int>* rows);
  void Print(std::ostream& out) const;

  // The number of rows (columns) selected out of a matrix with the given count.
  int GetNumRows(int matrixRows) const { return iRows ? iRows->GetSize() : matrixRows; }
  int GetNumColumns(int matrixColumns) const { return iColumns ? iColumns->GetSize() : matrixColumns; }
  int GetRow(int i) const { return iRows ? (*iRows)[i] : i; }
  int GetColumn(int i) const { return iColumns ? (*iColumns)[i] : i; }

 private:
  Vector_tmpl<int>* iRows;
  int iRowsOwner;
  Vector_tmpl<int>* iColumns;
  int iColumnsOwner;
};

// Rows are separate arrays, so that swapping rows swaps pointers and GetRow gives the inner loops
// of statistics direct access. Sizes and indices are not checked. Operations that skip missing
// cells take the mark of a missing cell as an argument; a cell equal to it is absent.
// Matrices live behind handles: operations that work in place return a handle to this matrix.
class Matrix_cl : public RefCount_cl {
 public:
  // Every cell 0.0.
  Matrix_cl(int rows, int cols);
  Matrix_cl(const Matrix_cl& other);
  Matrix_cl& operator=(const Matrix_cl&) = delete;
  virtual ~Matrix_cl();

  // The factory of every result: square gives a SqrMatrix_cl, else one column a MatrixVector_cl.
  static Matrix_sptr AllocateCorrectType(int rows, int cols);

  int GetNumRows() const { return iNumRows; }
  int GetNumCols() const { return iNumCols; }
  double GetElement(int row, int col) const { return iRows[row][col]; }
  // Direct access; writes through it do not clear a cached determinant.
  double* GetRow(int row) { return iRows[row]; }
  const double* GetRow(int row) const { return iRows[row]; }

  // --- virtual setters and arithmetic; flag 1 works in place, 0 on a copy
  virtual void SwapElements(int row1, int col1, int row2, int col2);
  virtual void SwapRows(int row1, int row2);
  virtual void SetRow(int row, const double* values);
  virtual void SetRow(int row, MatrixVector_sptr values);
  virtual void SetCol(int col, MatrixVector_sptr values);
  virtual void SetElement(int row, int col, double value);
  virtual Matrix_sptr Multiply(double factor, int inPlace);
  // This plus factor times other.
  virtual Matrix_sptr Add(Matrix_sptr other, int inPlace, double factor = 1.0);
  // This minus other.
  virtual Matrix_sptr Sub(Matrix_sptr other, int inPlace);
  // Other minus this.
  virtual Matrix_sptr SubMe(Matrix_sptr other, int inPlace);
  virtual Matrix_sptr Copy() const;
  // A new matrix of the filter's rows by its columns.
  virtual Matrix_sptr Copy(const MatrixFilter_cl* filter) const;
  // Writes this matrix's cells into target, of the same shape.
  virtual void CopyMyValues(Matrix_sptr target) const;
  // Writes the filter's cells into target, shaped as the filter.
  virtual void CopyMyValues(Matrix_sptr target, const MatrixFilter_cl* filter) const;

  // --- shape
  // Rows r0..r1 and columns c0..c1, both ends included.
  Matrix_sptr GetBlock(int r0, int r1, int c0, int c1) const;
  Matrix_sptr Transpose() const;
  // A plain Matrix_cl with the columns of this, then of other.
  Matrix_sptr ConcatColumns(Matrix_sptr other) const;
  MatrixVector_sptr GetRowVector(int row) const;
  MatrixVector_sptr GetColumnVector(int col) const;

  // --- arithmetic; thisFirst 1 gives this times other, 0 other times this
  Matrix_sptr Multiply(Matrix_sptr other, int thisFirst) const;

  // --- fill
  void SetEntries(double value);
  // Copies row fromRow of this matrix into row toRow of target (columns likewise).
  void CopyMyRow(Matrix_sptr target, int fromRow, int toRow) const;
  void CopyMyColumn(Matrix_sptr target, int fromCol, int toCol) const;

  // --- sums over a line; lines is the set of cells to visit (null: all), -1 entries are skipped.
  // "Column" operations run down a column over rows; "Row" and "Columns" ones along a row.
  double GetColumnSum(int col, double missing, const Vector_tmpl<int>* rows) const;
  double GetColumnMax(int col, double missing, const Vector_tmpl<int>* rows) const;
  double GetColumnMin(int col, double missing, const Vector_tmpl<int>* rows) const;
  int GetColumnNumEntries(int col, double missing, const Vector_tmpl<int>* rows) const;
  double GetRowMax(int row, double missing, const Vector_tmpl<int>* cols) const;
  double GetRowMin(int row, double missing, const Vector_tmpl<int>* cols) const;
  // Column of the first extreme present cell, -1 when there is none.
  int GetRowMaxIndex(int row, double missing, const Vector_tmpl<int>* cols) const;
  int GetRowMinIndex(int row, double missing, const Vector_tmpl<int>* cols) const;
  double GetColumnsSum(int row, double missing, const Vector_tmpl<int>* cols) const;
  int GetColumnsNumEntries(int row, double missing, const Vector_tmpl<int>* cols) const;

  // --- whole matrix: a new vector of row and column of the first extreme cell, or -1 and -1
  Vector_tmpl<int>* GetMinEntryIndices(double missing) const;
  Vector_tmpl<int>* GetMaxEntryIndices(double missing) const;

  // --- rows
  void LinearRescaleRow(int row, double missing, double low, double high);
  void SetRowMax(int row, double bound, double missing);
  void SetRowMin(int row, double bound, double missing);

  // --- transforms of the present cells of one line
  void ZeroTransformRow(int row, double missing);
  void ZeroTransformCol(int col, double missing);
  void CenterTransformRow(int row, double missing);
  void CenterTransformCol(int col, double missing);
  void ScaleTransformRow(int row, double missing);
  void ScaleTransformCol(int col, double missing);
  // Ranks 1, 2, ... from the smallest value; returns the number of present cells.
  int RankTransformRow(int row, double missing);
  int RankTransformCol(int col, double missing);
  // Keeps the top cells by rank and gives all others the replacement.
  void LeaveTopValuesRow(int row, int top, double replacement);
  void LeaveTopValuesCol(int col, int top, double replacement);

  // --- statistics over the filter's cells; the outputs are set, starting from 0.0
  void ComputeMoments(const MatrixFilter_cl* filter, double missing, double& count, double& sum,
                      double& sumSquares) const;
  // counts[set.GetEntry(value)] grows by one for each cell, truncated, that is not the missing int.
  void ComputeCounts(const MatrixFilter_cl* filter, int missing, int* counts, const IntSet_tmpl<int>& set) const;

  // --- compound: a new value of one cell, or of the index's columns of the row in their order
  CompositeValue_cl* GetElement(int row, const Index_cl& columns) const;

  // --- output: one line per row; each cell is the value and a tab, or a tab alone when missing
  void WriteFile(std::ostream& out, double missing) const;
  void WriteFile(std::ostream& out, const Vector_tmpl<Name_sptr>* rowNames, double missing) const;

  // --- rank by Gaussian elimination with row pivoting
  int FindPivot(int row, int col) const;
  // With destroy 0 works on a copy; with 1 eliminates in this matrix.
  int GetRank(int destroy);

 protected:
  // Applies op(cell, cell of other) to every cell, of this matrix or of a copy; other may be empty.
  template <class Op>
  Matrix_sptr CellWise(const Matrix_sptr& other, int inPlace, Op op);
  // Moves entries by a series of swaps until position i holds what stood at order[i].
  template <class SwapFn>
  static void ReorderBySwaps(int n, const int* order, SwapFn swap) {
    Vector_tmpl<int> at(n > 0 ? n : 1), where(n > 0 ? n : 1);
    for (int i = 0; i < n; i++) {
      at.AddLast(i);
      where.AddLast(i);
    }
    for (int i = 0; i < n; i++) {
      int from = where[order[i]];
      if (from == i) continue;
      swap(i, from);
      int displaced = at[i];
      at[i] = order[i];
      at[from] = displaced;
      where[order[i]] = i;
      where[displaced] = from;
    }
  }

  int iNumRows;
  int iNumCols;
  double** iRows;
};

// One column; the handle form used for means, moments and right-hand sides.
class MatrixVector_cl : public Matrix_cl {
 public:
  explicit MatrixVector_cl(int size) : Matrix_cl(size, 1) {}
  int GetSize() const { return iNumRows; }
  double GetEntry(int i) const { return iRows[i][0]; }
  void SetEntry(int i, double value) { SetElement(i, 0, value); }

  double InnerProduct(MatrixVector_sptr other) const;
  // thisFirst 1 gives x yT, 0 gives y xT; a new SqrMatrix_cl.
  SqrMatrix_sptr OuterProduct(MatrixVector_sptr other, int thisFirst) const;
  // xT A x.
  double QuadraticProduct(SqrMatrix_sptr a) const;
  // The row vector xT M, as a new column.
  MatrixVector_sptr VecMultiply(Matrix_sptr m) const;
  // Leaves in position i what stood at position order[i].
  void ReorderVector(const int* order);
};

#endif
