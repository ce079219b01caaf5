// Square matrices: determinant with its cache, inverses, Cholesky-style roots and symmetric eigenvalues.
#ifndef VORN_PROB_SQR_MATRIX_H
#define VORN_PROB_SQR_MATRIX_H

#include "prob/matrix.h"

// The determinant is cached between the operation that computed it and the next write through a
// virtual setter; swaps and writes through GetRow leave the cache alone.
class SqrMatrix_cl : public Matrix_cl {
 public:
  // The unit matrix, with no valid determinant.
  explicit SqrMatrix_cl(int size);
  SqrMatrix_cl(const SqrMatrix_cl& other) = default;

  int GetSize() const { return iNumRows; }
  int IsDeterminantValid() const { return iDeterminantValid; }

  using Matrix_cl::Multiply;
  void SetRow(int row, const double* values) override;
  void SetRow(int row, MatrixVector_sptr values) override;
  void SetElement(int row, int col, double value) override;
  Matrix_sptr Multiply(double factor, int inPlace) override;
  Matrix_sptr Add(Matrix_sptr other, int inPlace, double factor = 1.0) override;
  Matrix_sptr Sub(Matrix_sptr other, int inPlace) override;
  Matrix_sptr SubMe(Matrix_sptr other, int inPlace) override;
  using Matrix_cl::Copy;
  // Carries the cached determinant and its flag over.
  Matrix_sptr Copy() const override;

  // --- determinant and inverses
  // Eliminates below the diagonal in place and caches the determinant.
  void MakeUpperTriangle();
  double GetDeterminant();
  // Gauss-Jordan; the cache ends as the determinant of the inverse.
  void InvertMyself();
  // The inverse of a copy; this matrix caches 1 / (its determinant).
  SqrMatrix_sptr GetInverse();
  void InvertMyselfLU();
  void InvertMyselfCholesky();
  SqrMatrix_sptr GetInverseLU() const;
  SqrMatrix_sptr GetInverseCholesky() const;
  // A-1 B through the LU decomposition, with the columns of B as right-hand sides.
  Matrix_sptr ComputeInvAB(Matrix_sptr b) const;

  // --- square root L with L LT = A, and solving A x = b with it
  SqrMatrix_sptr SquareRootMethod();
  MatrixVector_sptr SquareRootSolve(MatrixVector_sptr b);

  // --- definiteness and symmetry
  int IsSymmetric() const;
  // A near-zero pivot ends the test with the argument as the answer.
  int IsPositiveDefinite(int semiDefiniteResult) const;
  void MakeSymmetric();

  // Householder to tridiagonal form, then QL with implicit shifts; eigenvalues only.
  MatrixVector_sptr GetEigenValuesSym() const;

  // --- others
  // Sum over i, j of A_ij B_ji.
  double GetProductTrace(SqrMatrix_sptr b) const;
  // The square block on the indices, in their order.
  SqrMatrix_sptr GetSubMatrix(const Vector_tmpl<int>* indices) const;
  // Leaves in row and column i what stood at order[i].
  void ReorderMatrix(const int* order);
  // Swaps two rows and the same two columns.
  void SwapIJ(int i, int j);

 private:
  void ClearDeterminant() { iDeterminantValid = 0; }

  double iDeterminant = 1.0;
  int iDeterminantValid = 0;
};

#endif
