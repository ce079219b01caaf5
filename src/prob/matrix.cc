// The dense matrix of rows of doubles, its column vector form and the row/column filter over it.
#include "prob/matrix.h"

#include <cfloat>
#include <climits>
#include <cmath>

#include "pipeline/heap.h"
#include "prob/sqr_matrix.h"

namespace {

// Visits the listed indices (all of 0..count-1 when the list is null), skipping -1 entries.
template <class F>
void ForEachIndex(int count, const Vector_tmpl<int>* list, F visit) {
  if (!list) {
    for (int i = 0; i < count; i++) visit(i);
    return;
  }
  for (int k = 0; k < list->GetSize(); k++)
    if ((*list)[k] != -1) visit((*list)[k]);
}

// The truncation of a cell to an int; a cell outside the int range (the missing real among them)
// or not a number gives INT_MIN, as the processor's own conversion does, instead of undefined behaviour.
int TruncateToInt(double x) {
  if (!(x > static_cast<double>(INT_MIN) - 1.0 && x < static_cast<double>(INT_MAX) + 1.0)) return INT_MIN;
  return static_cast<int>(x);
}

// The first present cell of a column that no later one beats, or start when there is none.
template <class Better>
double ColumnExtreme(const Matrix_cl& m, int col, double missing, const Vector_tmpl<int>* rows, double start,
                     Better better) {
  double best = start;
  ForEachIndex(m.GetNumRows(), rows, [&](int r) {
    double x = m.GetRow(r)[col];
    if (x != missing && better(x, best)) best = x;
  });
  return best;
}

// The column of the first extreme present cell of a row, -1 when there is none.
template <class Better>
int RowExtremeIndex(const Matrix_cl& m, int row, double missing, const Vector_tmpl<int>* cols, Better better) {
  const double* x = m.GetRow(row);
  int best = -1;
  ForEachIndex(m.GetNumCols(), cols, [&](int c) {
    if (x[c] != missing && (best < 0 || better(x[c], x[best]))) best = c;
  });
  return best;
}

// A new vector of the row and column of the first extreme present cell in row order, or -1 and -1.
template <class Better>
Vector_tmpl<int>* ExtremeEntry(const Matrix_cl& m, double missing, Better better) {
  int bestRow = -1, bestCol = -1;
  for (int r = 0; r < m.GetNumRows(); r++)
    for (int c = 0; c < m.GetNumCols(); c++) {
      double x = m.GetRow(r)[c];
      if (x != missing && (bestRow < 0 || better(x, m.GetRow(bestRow)[bestCol]))) {
        bestRow = r;
        bestCol = c;
      }
    }
  Vector_tmpl<int>* indices = new Vector_tmpl<int>(2, -1);
  indices->AddLast(bestRow);
  indices->AddLast(bestCol);
  return indices;
}

}  // namespace

// ---------------------------------------------------------------- MatrixFilter_cl

MatrixFilter_cl::MatrixFilter_cl(Vector_tmpl<int>* rows, int rowsOwner, Vector_tmpl<int>* columns, int columnsOwner)
    : iRows(rows), iRowsOwner(rowsOwner), iColumns(columns), iColumnsOwner(columnsOwner) {}

MatrixFilter_cl::~MatrixFilter_cl() {
  DeleteObjects(MATRIX_ROWS);
  DeleteObjects(MATRIX_COLUMNS);
}

Vector_tmpl<int>* MatrixFilter_cl::GetObjects(MatrixDimension_cl dimension) const {
  return dimension == MATRIX_ROWS ? iRows : iColumns;
}

int MatrixFilter_cl::ObjectsOwner(MatrixDimension_cl dimension) const {
  return dimension == MATRIX_ROWS ? iRowsOwner : iColumnsOwner;
}

void MatrixFilter_cl::SetObjects(MatrixDimension_cl dimension, Vector_tmpl<int>* objects, int owner) {
  DeleteObjects(dimension);
  if (dimension == MATRIX_ROWS) {
    iRows = objects;
    iRowsOwner = owner;
  } else {
    iColumns = objects;
    iColumnsOwner = owner;
  }
}

void MatrixFilter_cl::PassObjects(MatrixDimension_cl dimension, MatrixFilter_cl* other) {
  int owner = ObjectsOwner(dimension);
  other->SetObjects(dimension, GetObjects(dimension), owner);
  if (dimension == MATRIX_ROWS) iRowsOwner = 0;
  else iColumnsOwner = 0;
}

void MatrixFilter_cl::DeleteObjects(MatrixDimension_cl dimension) {
  if (dimension == MATRIX_ROWS) {
    if (iRowsOwner) delete iRows;
    iRows = nullptr;
    iRowsOwner = 0;
  } else {
    if (iColumnsOwner) delete iColumns;
    iColumns = nullptr;
    iColumnsOwner = 0;
  }
}

MatrixFilter_cl* MatrixFilter_cl::Clone() const {
  return new MatrixFilter_cl(iRows ? new Vector_tmpl<int>(*iRows) : nullptr, 1,
                             iColumns ? new Vector_tmpl<int>(*iColumns) : nullptr, 1);
}

void MatrixFilter_cl::AddRows(const Vector_tmpl<int>* rows) {
  for (int i = 0; i < rows->GetSize(); i++) iRows->AddLast((*rows)[i]);
}

void MatrixFilter_cl::CopyRows(const Vector_tmpl<int>* rows) {
  SetObjects(MATRIX_ROWS, new Vector_tmpl<int>(*rows), 1);
}

void MatrixFilter_cl::Print(std::ostream& out) const {
  auto side = [&out](const char* label, const Vector_tmpl<int>* v) {
    out << "    " << label << " = (";
    if (!v) out << "NULL";
    else
      for (int i = 0; i < v->GetSize(); i++) out << (i > 0 ? "," : "") << (*v)[i];
    out << ")\n";
  };
  out << "Filter = (\n";
  side("rows   ", iRows);
  side("columns", iColumns);
  out << ")\n";
}

// ---------------------------------------------------------------- Matrix_cl: life

Matrix_cl::Matrix_cl(int rows, int cols) : iNumRows(rows), iNumCols(cols), iRows(new double*[rows > 0 ? rows : 1]) {
  for (int r = 0; r < rows; r++) iRows[r] = new double[cols > 0 ? cols : 1]();
}

Matrix_cl::Matrix_cl(const Matrix_cl& other) : Matrix_cl(other.iNumRows, other.iNumCols) {
  for (int r = 0; r < iNumRows; r++)
    for (int c = 0; c < iNumCols; c++) iRows[r][c] = other.iRows[r][c];
}

Matrix_cl::~Matrix_cl() {
  for (int r = 0; r < iNumRows; r++) delete[] iRows[r];
  delete[] iRows;
}

Matrix_sptr Matrix_cl::AllocateCorrectType(int rows, int cols) {
  if (rows == cols) return new SqrMatrix_cl(rows);
  if (cols == 1) return new MatrixVector_cl(rows);
  return new Matrix_cl(rows, cols);
}

// ---------------------------------------------------------------- virtual setters and arithmetic

void Matrix_cl::SwapElements(int row1, int col1, int row2, int col2) {
  double tmp = iRows[row1][col1];
  iRows[row1][col1] = iRows[row2][col2];
  iRows[row2][col2] = tmp;
}

void Matrix_cl::SwapRows(int row1, int row2) {
  double* tmp = iRows[row1];
  iRows[row1] = iRows[row2];
  iRows[row2] = tmp;
}

void Matrix_cl::SetRow(int row, const double* values) {
  for (int c = 0; c < iNumCols; c++) iRows[row][c] = values[c];
}

void Matrix_cl::SetRow(int row, MatrixVector_sptr values) {
  for (int c = 0; c < iNumCols; c++) iRows[row][c] = values->GetEntry(c);
}

void Matrix_cl::SetCol(int col, MatrixVector_sptr values) {
  for (int r = 0; r < iNumRows; r++) iRows[r][col] = values->GetEntry(r);
}

void Matrix_cl::SetElement(int row, int col, double value) { iRows[row][col] = value; }

template <class Op>
Matrix_sptr Matrix_cl::CellWise(const Matrix_sptr& other, int inPlace, Op op) {
  Matrix_sptr target = inPlace ? Matrix_sptr(this) : Copy();
  for (int r = 0; r < iNumRows; r++) {
    double* row = target->iRows[r];
    const double* with = other.IsNull() ? nullptr : other->iRows[r];
    for (int c = 0; c < iNumCols; c++) row[c] = op(row[c], with ? with[c] : 0.0);
  }
  return target;
}

Matrix_sptr Matrix_cl::Multiply(double factor, int inPlace) {
  return CellWise(Matrix_sptr(), inPlace, [factor](double x, double) { return x * factor; });
}

Matrix_sptr Matrix_cl::Add(Matrix_sptr other, int inPlace, double factor) {
  return CellWise(other, inPlace, [factor](double x, double y) { return x + factor * y; });
}

Matrix_sptr Matrix_cl::Sub(Matrix_sptr other, int inPlace) {
  return CellWise(other, inPlace, [](double x, double y) { return x - y; });
}

Matrix_sptr Matrix_cl::SubMe(Matrix_sptr other, int inPlace) {
  return CellWise(other, inPlace, [](double x, double y) { return y - x; });
}

Matrix_sptr Matrix_cl::Copy() const {
  Matrix_sptr copy = AllocateCorrectType(iNumRows, iNumCols);
  CopyMyValues(copy);
  return copy;
}

Matrix_sptr Matrix_cl::Copy(const MatrixFilter_cl* filter) const {
  Matrix_sptr copy = AllocateCorrectType(filter->GetNumRows(iNumRows), filter->GetNumColumns(iNumCols));
  CopyMyValues(copy, filter);
  return copy;
}

void Matrix_cl::CopyMyValues(Matrix_sptr target) const {
  for (int r = 0; r < iNumRows; r++) target->SetRow(r, iRows[r]);
}

void Matrix_cl::CopyMyValues(Matrix_sptr target, const MatrixFilter_cl* filter) const {
  int rows = filter->GetNumRows(iNumRows), cols = filter->GetNumColumns(iNumCols);
  for (int r = 0; r < rows; r++) {
    const double* from = iRows[filter->GetRow(r)];
    for (int c = 0; c < cols; c++) target->SetElement(r, c, from[filter->GetColumn(c)]);
  }
}

// ---------------------------------------------------------------- shape

Matrix_sptr Matrix_cl::GetBlock(int r0, int r1, int c0, int c1) const {
  Matrix_sptr block = AllocateCorrectType(r1 - r0 + 1, c1 - c0 + 1);
  for (int r = r0; r <= r1; r++)
    for (int c = c0; c <= c1; c++) block->iRows[r - r0][c - c0] = iRows[r][c];
  return block;
}

Matrix_sptr Matrix_cl::Transpose() const {
  Matrix_sptr t = AllocateCorrectType(iNumCols, iNumRows);
  for (int r = 0; r < iNumRows; r++)
    for (int c = 0; c < iNumCols; c++) t->iRows[c][r] = iRows[r][c];
  return t;
}

Matrix_sptr Matrix_cl::ConcatColumns(Matrix_sptr other) const {
  Matrix_sptr joined = new Matrix_cl(iNumRows, iNumCols + other->iNumCols);
  for (int r = 0; r < iNumRows; r++) {
    for (int c = 0; c < iNumCols; c++) joined->iRows[r][c] = iRows[r][c];
    for (int c = 0; c < other->iNumCols; c++) joined->iRows[r][iNumCols + c] = other->iRows[r][c];
  }
  return joined;
}

MatrixVector_sptr Matrix_cl::GetRowVector(int row) const {
  MatrixVector_sptr v = new MatrixVector_cl(iNumCols);
  for (int c = 0; c < iNumCols; c++) v->iRows[c][0] = iRows[row][c];
  return v;
}

MatrixVector_sptr Matrix_cl::GetColumnVector(int col) const {
  MatrixVector_sptr v = new MatrixVector_cl(iNumRows);
  for (int r = 0; r < iNumRows; r++) v->iRows[r][0] = iRows[r][col];
  return v;
}

Matrix_sptr Matrix_cl::Multiply(Matrix_sptr other, int thisFirst) const {
  const Matrix_cl* a = thisFirst ? this : other.Get();
  const Matrix_cl* b = thisFirst ? other.Get() : this;
  Matrix_sptr product = AllocateCorrectType(a->iNumRows, b->iNumCols);
  // Row by row, accumulating k in order: the same sums as the textbook triple loop, cache-friendly.
  for (int i = 0; i < a->iNumRows; i++) {
    double* out = product->iRows[i];
    for (int j = 0; j < b->iNumCols; j++) out[j] = 0.0;
    for (int k = 0; k < a->iNumCols; k++) {
      double aik = a->iRows[i][k];
      const double* bk = b->iRows[k];
      for (int j = 0; j < b->iNumCols; j++) out[j] += aik * bk[j];
    }
  }
  return product;
}

// ---------------------------------------------------------------- fill

void Matrix_cl::SetEntries(double value) {
  for (int r = 0; r < iNumRows; r++)
    for (int c = 0; c < iNumCols; c++) SetElement(r, c, value);
}

void Matrix_cl::CopyMyRow(Matrix_sptr target, int fromRow, int toRow) const { target->SetRow(toRow, iRows[fromRow]); }

void Matrix_cl::CopyMyColumn(Matrix_sptr target, int fromCol, int toCol) const {
  for (int r = 0; r < iNumRows; r++) target->SetElement(r, toCol, iRows[r][fromCol]);
}

// ---------------------------------------------------------------- sums

double Matrix_cl::GetColumnSum(int col, double missing, const Vector_tmpl<int>* rows) const {
  double sum = 0.0;
  ForEachIndex(iNumRows, rows, [&](int r) {
    if (iRows[r][col] != missing) sum += iRows[r][col];
  });
  return sum;
}

double Matrix_cl::GetColumnMax(int col, double missing, const Vector_tmpl<int>* rows) const {
  return ColumnExtreme(*this, col, missing, rows, -DBL_MAX, [](double x, double best) { return x > best; });
}

double Matrix_cl::GetColumnMin(int col, double missing, const Vector_tmpl<int>* rows) const {
  return ColumnExtreme(*this, col, missing, rows, DBL_MAX, [](double x, double best) { return x < best; });
}

int Matrix_cl::GetColumnNumEntries(int col, double missing, const Vector_tmpl<int>* rows) const {
  int n = 0;
  ForEachIndex(iNumRows, rows, [&](int r) {
    if (iRows[r][col] != missing) n++;
  });
  return n;
}

double Matrix_cl::GetRowMax(int row, double missing, const Vector_tmpl<int>* cols) const {
  int c = GetRowMaxIndex(row, missing, cols);
  return c < 0 ? -DBL_MAX : iRows[row][c];
}

double Matrix_cl::GetRowMin(int row, double missing, const Vector_tmpl<int>* cols) const {
  int c = GetRowMinIndex(row, missing, cols);
  return c < 0 ? DBL_MAX : iRows[row][c];
}

int Matrix_cl::GetRowMaxIndex(int row, double missing, const Vector_tmpl<int>* cols) const {
  return RowExtremeIndex(*this, row, missing, cols, [](double x, double best) { return x > best; });
}

int Matrix_cl::GetRowMinIndex(int row, double missing, const Vector_tmpl<int>* cols) const {
  return RowExtremeIndex(*this, row, missing, cols, [](double x, double best) { return x < best; });
}

double Matrix_cl::GetColumnsSum(int row, double missing, const Vector_tmpl<int>* cols) const {
  const double* x = iRows[row];
  double sum = 0.0;
  ForEachIndex(iNumCols, cols, [&](int c) {
    if (x[c] != missing) sum += x[c];
  });
  return sum;
}

int Matrix_cl::GetColumnsNumEntries(int row, double missing, const Vector_tmpl<int>* cols) const {
  const double* x = iRows[row];
  int n = 0;
  ForEachIndex(iNumCols, cols, [&](int c) {
    if (x[c] != missing) n++;
  });
  return n;
}

Vector_tmpl<int>* Matrix_cl::GetMinEntryIndices(double missing) const {
  return ExtremeEntry(*this, missing, [](double x, double best) { return x < best; });
}

Vector_tmpl<int>* Matrix_cl::GetMaxEntryIndices(double missing) const {
  return ExtremeEntry(*this, missing, [](double x, double best) { return x > best; });
}

// ---------------------------------------------------------------- rows

void Matrix_cl::LinearRescaleRow(int row, double missing, double low, double high) {
  double min = GetRowMin(row, missing, nullptr), max = GetRowMax(row, missing, nullptr);
  double* x = iRows[row];
  for (int c = 0; c < iNumCols; c++)
    if (x[c] != missing) SetElement(row, c, (x[c] - min) * (high - low) / (max - min) + low);
}

void Matrix_cl::SetRowMax(int row, double bound, double missing) {
  double* x = iRows[row];
  for (int c = 0; c < iNumCols; c++)
    if (x[c] != missing && x[c] > bound) SetElement(row, c, bound);
}

void Matrix_cl::SetRowMin(int row, double bound, double missing) {
  double* x = iRows[row];
  for (int c = 0; c < iNumCols; c++)
    if (x[c] != missing && x[c] < bound) SetElement(row, c, bound);
}

// ---------------------------------------------------------------- transforms

namespace {

// One row or column, read directly and written through the virtual setter, so that a square
// matrix drops its cached determinant when a transform changes it.
class Line_cl {
 public:
  Line_cl(Matrix_cl* m, int line, int isRow) : iMatrix(m), iLine(line), iIsRow(isRow) {}
  int GetLength() const { return iIsRow ? iMatrix->GetNumCols() : iMatrix->GetNumRows(); }
  double Get(int i) const { return iIsRow ? iMatrix->GetRow(iLine)[i] : iMatrix->GetRow(i)[iLine]; }
  void Set(int i, double x) const { iIsRow ? iMatrix->SetElement(iLine, i, x) : iMatrix->SetElement(i, iLine, x); }

 private:
  Matrix_cl* iMatrix;
  int iLine;
  int iIsRow;
};

enum LineTransform_cl { ZERO_TRANSFORM, CENTER_TRANSFORM, SCALE_TRANSFORM };

// x becomes (x - m) / s, x - m or x / s over the present cells, with s the population deviation.
void TransformLine(const Line_cl& line, double missing, LineTransform_cl kind) {
  int n = 0;
  double sum = 0.0, sumSquares = 0.0;
  for (int i = 0; i < line.GetLength(); i++) {
    double x = line.Get(i);
    if (x == missing) continue;
    n++;
    sum += x;
    sumSquares += x * x;
  }
  if (n == 0) return;
  double m = sum / n;
  double s = std::sqrt(sumSquares / n - m * m);
  for (int i = 0; i < line.GetLength(); i++) {
    double x = line.Get(i);
    if (x == missing) continue;
    line.Set(i, kind == ZERO_TRANSFORM ? (x - m) / s : kind == CENTER_TRANSFORM ? x - m : x / s);
  }
}

int RankLine(const Line_cl& line, double missing) {
  Heap_cl heap(line.GetLength() > 0 ? line.GetLength() : 1);
  // The cells are appended and the heap is built once at the first extraction: ties then take
  // their ranks in the order that building gives, which differs from inserting one by one.
  for (int i = 0; i < line.GetLength(); i++)
    if (line.Get(i) != missing) heap.Insert(new IndexedValueHeapEntry_tmpl<double>(line.Get(i), i), 0);
  int rank = 0;
  while (HeapEntry_cl* top = heap.ExtractMax()) {
    line.Set(static_cast<IndexedValueHeapEntry_tmpl<double>*>(top)->iIndex, ++rank);
    delete top;
  }
  return rank;
}

void LeaveTopLine(const Line_cl& line, int top, double replacement) {
  int n = line.GetLength();
  Vector_tmpl<double> saved(n > 0 ? n : 1);
  for (int i = 0; i < n; i++) saved.AddLast(line.Get(i));
  RankLine(line, -DBL_MAX);
  // Ranks are whole numbers and a missing cell keeps the missing mark, so comparing the double
  // equals comparing its truncation.
  for (int i = 0; i < n; i++) line.Set(i, line.Get(i) > n - top ? saved[i] : replacement);
}

}  // namespace

void Matrix_cl::ZeroTransformRow(int row, double missing) { TransformLine(Line_cl(this, row, 1), missing, ZERO_TRANSFORM); }
void Matrix_cl::ZeroTransformCol(int col, double missing) { TransformLine(Line_cl(this, col, 0), missing, ZERO_TRANSFORM); }
void Matrix_cl::CenterTransformRow(int row, double missing) {
  TransformLine(Line_cl(this, row, 1), missing, CENTER_TRANSFORM);
}
void Matrix_cl::CenterTransformCol(int col, double missing) {
  TransformLine(Line_cl(this, col, 0), missing, CENTER_TRANSFORM);
}
void Matrix_cl::ScaleTransformRow(int row, double missing) { TransformLine(Line_cl(this, row, 1), missing, SCALE_TRANSFORM); }
void Matrix_cl::ScaleTransformCol(int col, double missing) { TransformLine(Line_cl(this, col, 0), missing, SCALE_TRANSFORM); }
int Matrix_cl::RankTransformRow(int row, double missing) { return RankLine(Line_cl(this, row, 1), missing); }
int Matrix_cl::RankTransformCol(int col, double missing) { return RankLine(Line_cl(this, col, 0), missing); }
void Matrix_cl::LeaveTopValuesRow(int row, int top, double replacement) {
  LeaveTopLine(Line_cl(this, row, 1), top, replacement);
}
void Matrix_cl::LeaveTopValuesCol(int col, int top, double replacement) {
  LeaveTopLine(Line_cl(this, col, 0), top, replacement);
}

// ---------------------------------------------------------------- statistics

void Matrix_cl::ComputeMoments(const MatrixFilter_cl* filter, double missing, double& count, double& sum,
                               double& sumSquares) const {
  count = sum = sumSquares = 0.0;
  int rows = filter->GetNumRows(iNumRows), cols = filter->GetNumColumns(iNumCols);
  for (int r = 0; r < rows; r++) {
    const double* x = iRows[filter->GetRow(r)];
    for (int c = 0; c < cols; c++) {
      double v = x[filter->GetColumn(c)];
      if (v == missing) continue;
      count += 1.0;
      sum += v;
      sumSquares += v * v;
    }
  }
}

void Matrix_cl::ComputeCounts(const MatrixFilter_cl* filter, int missing, int* counts,
                              const IntSet_tmpl<int>& set) const {
  int rows = filter->GetNumRows(iNumRows), cols = filter->GetNumColumns(iNumCols);
  for (int r = 0; r < rows; r++) {
    const double* x = iRows[filter->GetRow(r)];
    for (int c = 0; c < cols; c++) {
      int v = TruncateToInt(x[filter->GetColumn(c)]);
      if (v == missing) continue;
      // A value outside the set has no count to grow; it would otherwise write before the array.
      int index = set.GetEntry(v);
      if (index >= 0) counts[index]++;
    }
  }
}

CompositeValue_cl* Matrix_cl::GetElement(int row, const Index_cl& columns) const {
  Vector_tmpl<double> values(columns.GetNumIndices());
  for (int i = 0; i < columns.GetNumIndices(); i++) values.AddLast(iRows[row][columns.GetIndexAt(i)]);
  return new CompositeValue_cl(values);
}

// ---------------------------------------------------------------- output

void Matrix_cl::WriteFile(std::ostream& out, double missing) const { WriteFile(out, nullptr, missing); }

void Matrix_cl::WriteFile(std::ostream& out, const Vector_tmpl<Name_sptr>* rowNames, double missing) const {
  for (int r = 0; r < iNumRows; r++) {
    if (rowNames) out << (*rowNames)[r] << '\t';
    for (int c = 0; c < iNumCols; c++) {
      if (iRows[r][c] != missing) out << iRows[r][c];
      out << '\t';
    }
    out << '\n';
  }
}

// ---------------------------------------------------------------- rank

int Matrix_cl::FindPivot(int row, int col) const {
  int best = row;
  for (int r = row + 1; r < iNumRows; r++)
    if (std::fabs(iRows[r][col]) > std::fabs(iRows[best][col])) best = r;
  return best;
}

int Matrix_cl::GetRank(int destroy) {
  Matrix_sptr work = destroy ? Matrix_sptr(this) : Copy();
  double** a = work->iRows;
  int rank = 0;
  for (int r = 0, c = 0; r < iNumRows && c < iNumCols; c++) {
    work->SwapRows(r, work->FindPivot(r, c));
    double pivot = a[r][c];
    if (pivot == 0.0) continue;
    for (int i = r + 1; i < iNumRows; i++) {
      if (a[i][c] == 0.0) continue;
      double factor = a[i][c] / pivot;
      for (int j = c; j < iNumCols; j++) a[i][j] -= a[r][j] * factor;
    }
    rank++;
    r++;
  }
  return rank;
}

// ---------------------------------------------------------------- MatrixVector_cl

double MatrixVector_cl::InnerProduct(MatrixVector_sptr other) const {
  double sum = 0.0;
  for (int i = 0; i < iNumRows; i++) sum += iRows[i][0] * other->iRows[i][0];
  return sum;
}

SqrMatrix_sptr MatrixVector_cl::OuterProduct(MatrixVector_sptr other, int thisFirst) const {
  const MatrixVector_cl* x = thisFirst ? this : other.Get();
  const MatrixVector_cl* y = thisFirst ? other.Get() : this;
  SqrMatrix_sptr product = new SqrMatrix_cl(iNumRows);
  for (int i = 0; i < iNumRows; i++)
    for (int j = 0; j < iNumRows; j++) product->GetRow(i)[j] = x->iRows[i][0] * y->iRows[j][0];
  return product;
}

double MatrixVector_cl::QuadraticProduct(SqrMatrix_sptr a) const {
  double sum = 0.0;
  for (int i = 0; i < iNumRows; i++) {
    const double* row = a->GetRow(i);
    double ax = 0.0;
    for (int j = 0; j < iNumRows; j++) ax += row[j] * iRows[j][0];
    sum += iRows[i][0] * ax;
  }
  return sum;
}

MatrixVector_sptr MatrixVector_cl::VecMultiply(Matrix_sptr m) const {
  MatrixVector_sptr product = new MatrixVector_cl(m->GetNumCols());
  for (int j = 0; j < m->GetNumCols(); j++) {
    double sum = 0.0;
    for (int i = 0; i < iNumRows; i++) sum += iRows[i][0] * m->GetElement(i, j);
    product->iRows[j][0] = sum;
  }
  return product;
}

void MatrixVector_cl::ReorderVector(const int* order) {
  ReorderBySwaps(iNumRows, order, [this](int i, int j) { SwapRows(i, j); });
}
