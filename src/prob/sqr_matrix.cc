// Square matrices: determinant with its cache, inverses, Cholesky-style roots and symmetric eigenvalues.
#include "prob/sqr_matrix.h"

#include <cmath>
#include <iostream>

#include "eval/math_util.h"

SqrMatrix_cl::SqrMatrix_cl(int size) : Matrix_cl(size, size) {
  for (int i = 0; i < size; i++) iRows[i][i] = 1.0;
}

// ---------------------------------------------------------------- setters drop the determinant

void SqrMatrix_cl::SetRow(int row, const double* values) {
  ClearDeterminant();
  Matrix_cl::SetRow(row, values);
}

void SqrMatrix_cl::SetRow(int row, MatrixVector_sptr values) {
  ClearDeterminant();
  Matrix_cl::SetRow(row, values);
}

void SqrMatrix_cl::SetElement(int row, int col, double value) {
  ClearDeterminant();
  Matrix_cl::SetElement(row, col, value);
}

Matrix_sptr SqrMatrix_cl::Multiply(double factor, int inPlace) {
  ClearDeterminant();
  return Matrix_cl::Multiply(factor, inPlace);
}

Matrix_sptr SqrMatrix_cl::Add(Matrix_sptr other, int inPlace, double factor) {
  ClearDeterminant();
  return Matrix_cl::Add(other, inPlace, factor);
}

Matrix_sptr SqrMatrix_cl::Sub(Matrix_sptr other, int inPlace) {
  ClearDeterminant();
  return Matrix_cl::Sub(other, inPlace);
}

Matrix_sptr SqrMatrix_cl::SubMe(Matrix_sptr other, int inPlace) {
  ClearDeterminant();
  return Matrix_cl::SubMe(other, inPlace);
}

Matrix_sptr SqrMatrix_cl::Copy() const { return new SqrMatrix_cl(*this); }

// ---------------------------------------------------------------- determinant and inverse

void SqrMatrix_cl::MakeUpperTriangle() {
  int n = iNumRows;
  double determinant = 1.0;
  for (int i = 0; i < n; i++) {
    int pivotRow = FindPivot(i, i);
    if (pivotRow != i) {
      SwapRows(i, pivotRow);
      determinant = -determinant;
    }
    double pivot = iRows[i][i];
    if (pivot != 0.0) {
      for (int k = i + 1; k < n; k++) {
        if (iRows[k][i] == 0.0) continue;
        double factor = iRows[k][i] / pivot;
        for (int j = i; j < n; j++) iRows[k][j] -= factor * iRows[i][j];
      }
    }
    determinant *= iRows[i][i];
  }
  iDeterminant = determinant;
  iDeterminantValid = 1;
}

double SqrMatrix_cl::GetDeterminant() {
  if (iDeterminantValid) return iDeterminant;
  SqrMatrix_cl work(*this);
  work.MakeUpperTriangle();
  iDeterminant = work.iDeterminant;
  iDeterminantValid = 1;
  return iDeterminant;
}

void SqrMatrix_cl::InvertMyself() {
  int n = iNumRows;
  SqrMatrix_cl inverse(n);
  double** a = iRows;
  double** b = inverse.iRows;
  double determinant = 1.0;
  for (int i = 0; i < n; i++) {
    int pivotRow = FindPivot(i, i);
    if (pivotRow != i) {
      SwapRows(i, pivotRow);
      inverse.SwapRows(i, pivotRow);
      determinant = -determinant;
    }
    double pivot = a[i][i];
    for (int k = 0; k < n; k++) {
      if (k == i || a[k][i] == 0.0) continue;
      double factor = a[k][i] / pivot;
      for (int j = 0; j < n; j++) {
        a[k][j] -= factor * a[i][j];
        b[k][j] -= factor * b[i][j];
      }
    }
    double scale = 1.0 / pivot;
    for (int j = 0; j < n; j++) {
      a[i][j] *= scale;
      b[i][j] *= scale;
    }
    determinant *= scale;
  }
  // The rows of the inverse become this matrix's rows; the emptied unit matrix takes the old ones.
  double** rows = iRows;
  iRows = inverse.iRows;
  inverse.iRows = rows;
  iDeterminant = determinant;
  iDeterminantValid = 1;
}

SqrMatrix_sptr SqrMatrix_cl::GetInverse() {
  SqrMatrix_sptr inverse = new SqrMatrix_cl(*this);
  inverse->InvertMyself();
  iDeterminant = 1.0 / inverse->iDeterminant;
  iDeterminantValid = 1;
  return inverse;
}

// ---------------------------------------------------------------- inverses by decomposition

// The unit vectors are the right-hand sides; the cells are written directly, so the cache stays.
void SqrMatrix_cl::InvertMyselfLU() {
  Matrix_sptr inverse = ComputeInvAB(new SqrMatrix_cl(iNumRows));
  for (int i = 0; i < iNumRows; i++)
    for (int j = 0; j < iNumRows; j++) iRows[i][j] = inverse->GetElement(i, j);
}

Matrix_sptr SqrMatrix_cl::ComputeInvAB(Matrix_sptr b) const {
  int n = iNumRows, m = b->GetNumCols();
  SqrMatrix_cl lu(*this);
  Vector_tmpl<int> permutation(n > 0 ? n : 1);
  permutation.AddEmptyLast(n);
  double sign;
  MathUtils::ludcmp(lu.iRows, n, permutation.GetData(), &sign);
  Matrix_sptr solution = AllocateCorrectType(n, m);
  Vector_tmpl<double> column(n > 0 ? n : 1);
  column.AddEmptyLast(n);
  for (int j = 0; j < m; j++) {
    for (int i = 0; i < n; i++) column[i] = b->GetElement(i, j);
    MathUtils::lubksb(lu.iRows, n, permutation.GetData(), column.GetData());
    for (int i = 0; i < n; i++) solution->GetRow(i)[j] = column[i];
  }
  return solution;
}

void SqrMatrix_cl::InvertMyselfCholesky() {
  int n = iNumRows;
  // The decomposition reads the upper triangle only and writes its factor below the diagonal.
  SqrMatrix_cl factor(n);
  for (int i = 0; i < n; i++)
    for (int j = i; j < n; j++) factor.iRows[i][j] = iRows[i][j];
  Vector_tmpl<double> diagonal(n > 0 ? n : 1), unit(n > 0 ? n : 1), column(n > 0 ? n : 1);
  diagonal.AddEmptyLast(n);
  unit.AddEmptyLast(n);
  column.AddEmptyLast(n);
  choldc(factor.iRows, n, diagonal.GetData());
  for (int j = 0; j < n; j++) {
    for (int i = 0; i < n; i++) unit[i] = i == j ? 1.0 : 0.0;
    cholsl(factor.iRows, n, diagonal.GetData(), unit.GetData(), column.GetData());
    for (int i = 0; i < n; i++) iRows[i][j] = column[i];
  }
}

SqrMatrix_sptr SqrMatrix_cl::GetInverseLU() const {
  SqrMatrix_sptr inverse = new SqrMatrix_cl(*this);
  inverse->InvertMyselfLU();
  return inverse;
}

SqrMatrix_sptr SqrMatrix_cl::GetInverseCholesky() const {
  SqrMatrix_sptr inverse = new SqrMatrix_cl(*this);
  inverse->InvertMyselfCholesky();
  return inverse;
}

// ---------------------------------------------------------------- square root

SqrMatrix_sptr SqrMatrix_cl::SquareRootMethod() {
  int n = iNumRows;
  SqrMatrix_sptr root = new SqrMatrix_cl(n);
  double** l = root->iRows;
  double** a = iRows;
  for (int i = 0; i < n; i++) l[i][i] = 0.0;
  if (n == 0) return root;
  l[0][0] = std::sqrt(a[0][0]);
  for (int i = 1; i < n; i++) {
    l[i][0] = a[i][0] / l[0][0];
    for (int j = 1; j < i; j++) {
      double sum = a[i][j];
      for (int k = 0; k < j; k++) sum -= l[i][k] * l[j][k];
      l[i][j] = sum / l[j][j];
    }
    double diagonal = a[i][i];
    for (int k = 0; k < i; k++) diagonal -= l[i][k] * l[i][k];
    l[i][i] = std::sqrt(diagonal);
  }
  if (!iDeterminantValid) {
    double product = 1.0;
    for (int i = 0; i < n; i++) product *= l[i][i];
    iDeterminant = product * product;
    iDeterminantValid = 1;
  }
  return root;
}

MatrixVector_sptr SqrMatrix_cl::SquareRootSolve(MatrixVector_sptr b) {
  int n = iNumRows;
  SqrMatrix_sptr root = SquareRootMethod();
  double** l = root->iRows;
  MatrixVector_sptr x = new MatrixVector_cl(n);
  for (int i = 0; i < n; i++) {
    double sum = b->GetEntry(i);
    for (int k = 0; k < i; k++) sum -= l[i][k] * x->GetEntry(k);
    x->SetEntry(i, sum / l[i][i]);
  }
  for (int i = n - 1; i >= 0; i--) {
    double sum = x->GetEntry(i);
    for (int k = i + 1; k < n; k++) sum -= l[k][i] * x->GetEntry(k);
    x->SetEntry(i, sum / l[i][i]);
  }
  return x;
}

// ---------------------------------------------------------------- definiteness and symmetry

int SqrMatrix_cl::IsSymmetric() const {
  for (int i = 0; i < iNumRows; i++)
    for (int j = 0; j < i; j++)
      if (iRows[i][j] != iRows[j][i]) return 0;
  return 1;
}

int SqrMatrix_cl::IsPositiveDefinite(int semiDefiniteResult) const {
  int n = iNumRows;
  SqrMatrix_cl l(*this);
  double** a = l.iRows;
  for (int i = 0; i < n; i++) {
    double diagonal = a[i][i];
    for (int k = 0; k < i; k++) diagonal -= a[i][k] * a[i][k];
    if (std::fabs(diagonal) < 1e-8) return semiDefiniteResult;
    if (diagonal < 0.0) return 0;
    a[i][i] = std::sqrt(diagonal);
    for (int j = i + 1; j < n; j++) {
      double sum = a[j][i];
      for (int k = 0; k < i; k++) sum -= a[j][k] * a[i][k];
      a[j][i] = sum / a[i][i];
    }
  }
  return 1;
}

void SqrMatrix_cl::MakeSymmetric() {
  for (int i = 0; i < iNumRows; i++)
    for (int j = 0; j < i; j++) {
      double mean = (iRows[i][j] + iRows[j][i]) / 2.0;
      SetElement(i, j, mean);
      SetElement(j, i, mean);
    }
}

// ---------------------------------------------------------------- eigenvalues

namespace {

// Householder reduction of the symmetric a (destroyed) to tridiagonal form: the diagonal goes to d,
// the sub-diagonal to e[1..n-1], with e[0] = 0. The transformations are not accumulated.
void ReduceToTridiagonal(double** a, int n, double* d, double* e) {
  for (int i = n - 1; i >= 1; i--) {
    int l = i - 1;
    double h = 0.0;
    if (l > 0) {
      double scale = 0.0;
      for (int k = 0; k <= l; k++) scale += std::fabs(a[i][k]);
      if (scale == 0.0) {
        e[i] = a[i][l];
      } else {
        for (int k = 0; k <= l; k++) {
          a[i][k] /= scale;
          h += a[i][k] * a[i][k];
        }
        double f = a[i][l];
        double g = f >= 0.0 ? -std::sqrt(h) : std::sqrt(h);
        e[i] = scale * g;
        h -= f * g;
        a[i][l] = f - g;
        f = 0.0;
        for (int j = 0; j <= l; j++) {
          g = 0.0;
          for (int k = 0; k <= j; k++) g += a[j][k] * a[i][k];
          for (int k = j + 1; k <= l; k++) g += a[k][j] * a[i][k];
          e[j] = g / h;
          f += e[j] * a[i][j];
        }
        double hh = f / (h + h);
        for (int j = 0; j <= l; j++) {
          f = a[i][j];
          e[j] = g = e[j] - hh * f;
          for (int k = 0; k <= j; k++) a[j][k] -= (f * e[k] + g * a[i][k]);
        }
      }
    } else {
      e[i] = a[i][l];
    }
    d[i] = h;
  }
  if (n > 0) e[0] = 0.0;
  for (int i = 0; i < n; i++) d[i] = a[i][i];
}

// The QL method with implicit shifts on the tridiagonal (d, e); d ends as the eigenvalues.
void TridiagonalQL(double* d, double* e, int n) {
  for (int i = 1; i < n; i++) e[i - 1] = e[i];
  if (n > 0) e[n - 1] = 0.0;
  for (int l = 0; l < n; l++) {
    int iter = 0;
    int m;
    do {
      for (m = l; m < n - 1; m++) {
        double dd = std::fabs(d[m]) + std::fabs(d[m + 1]);
        if (std::fabs(e[m]) + dd == dd) break;
      }
      if (m == l) continue;
      if (iter++ == 30) {
        std::cerr << "Too many iterations in tqli" << std::endl;
        abort();
      }
      double g = (d[l + 1] - d[l]) / (2.0 * e[l]);
      double r = Pythag(g, 1.0);
      g = d[m] - d[l] + e[l] / (g + (g >= 0.0 ? std::fabs(r) : -std::fabs(r)));
      double s = 1.0, c = 1.0, p = 0.0;
      int i;
      for (i = m - 1; i >= l; i--) {
        double f = s * e[i];
        double b = c * e[i];
        e[i + 1] = (r = Pythag(f, g));
        if (r == 0.0) {
          d[i + 1] -= p;
          e[m] = 0.0;
          break;
        }
        s = f / r;
        c = g / r;
        g = d[i + 1] - p;
        r = (d[i] - g) * s + 2.0 * c * b;
        d[i + 1] = g + (p = s * r);
        g = c * r - b;
      }
      if (r == 0.0 && i >= l) continue;
      d[l] -= p;
      e[l] = g;
      e[m] = 0.0;
    } while (m != l);
  }
}

}  // namespace

MatrixVector_sptr SqrMatrix_cl::GetEigenValuesSym() const {
  int n = iNumRows;
  SqrMatrix_cl work(*this);
  Vector_tmpl<double> d(n > 0 ? n : 1), e(n > 0 ? n : 1);
  d.AddEmptyLast(n);
  e.AddEmptyLast(n);
  ReduceToTridiagonal(work.iRows, n, d.GetData(), e.GetData());
  TridiagonalQL(d.GetData(), e.GetData(), n);
  MatrixVector_sptr values = new MatrixVector_cl(n);
  for (int i = 0; i < n; i++) values->GetRow(i)[0] = d[i];
  return values;
}

// ---------------------------------------------------------------- others

double SqrMatrix_cl::GetProductTrace(SqrMatrix_sptr b) const {
  double sum = 0.0;
  for (int i = 0; i < iNumRows; i++)
    for (int j = 0; j < iNumRows; j++) sum += iRows[i][j] * b->GetElement(j, i);
  return sum;
}

SqrMatrix_sptr SqrMatrix_cl::GetSubMatrix(const Vector_tmpl<int>* indices) const {
  int n = indices->GetSize();
  SqrMatrix_sptr sub = new SqrMatrix_cl(n);
  for (int i = 0; i < n; i++)
    for (int j = 0; j < n; j++) sub->iRows[i][j] = iRows[(*indices)[i]][(*indices)[j]];
  return sub;
}

void SqrMatrix_cl::ReorderMatrix(const int* order) {
  ReorderBySwaps(iNumRows, order, [this](int i, int j) { SwapIJ(i, j); });
}

void SqrMatrix_cl::SwapIJ(int i, int j) {
  SwapRows(i, j);
  for (int r = 0; r < iNumRows; r++) SwapElements(r, i, r, j);
}
