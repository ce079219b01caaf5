// Dense matrices: result types, in-place arithmetic, missing cells in every reduction, transforms, output.
#include "prob/matrix.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <memory>
#include <sstream>
#include <typeinfo>
#include <vector>

#include "pipeline/random.h"
#include "prob/sqr_matrix.h"

namespace {

constexpr double kMissing = -DBL_MAX;

Matrix_sptr FromRows(const std::vector<std::vector<double>>& rows) {
  Matrix_sptr m = new Matrix_cl(rows.size(), rows.empty() ? 0 : rows[0].size());
  for (size_t r = 0; r < rows.size(); r++)
    for (size_t c = 0; c < rows[r].size(); c++) m->SetElement(r, c, rows[r][c]);
  return m;
}

std::vector<double> Row(const Matrix_sptr& m, int r) {
  return std::vector<double>(m->GetRow(r), m->GetRow(r) + m->GetNumCols());
}

Vector_tmpl<int>* Ints(std::initializer_list<int> values) {
  Vector_tmpl<int>* v = new Vector_tmpl<int>();
  for (int x : values) v->AddLast(x);
  return v;
}

}  // namespace

TEST(Matrix, ResultsTakeTheirTypeFromTheirShape) {
  EXPECT_NE(dynamic_cast<SqrMatrix_cl*>(Matrix_cl::AllocateCorrectType(1, 1).Get()), nullptr);
  EXPECT_NE(dynamic_cast<MatrixVector_cl*>(Matrix_cl::AllocateCorrectType(5, 1).Get()), nullptr);
  Matrix_sptr plain = Matrix_cl::AllocateCorrectType(2, 3);
  EXPECT_EQ(dynamic_cast<SqrMatrix_cl*>(plain.Get()), nullptr);
  EXPECT_EQ(dynamic_cast<MatrixVector_cl*>(plain.Get()), nullptr);

  Matrix_sptr m = FromRows({{1, 2, 3}, {4, 5, 6}});
  EXPECT_NE(dynamic_cast<SqrMatrix_cl*>(m->GetBlock(0, 1, 1, 2).Get()), nullptr);
  EXPECT_NE(dynamic_cast<MatrixVector_cl*>(m->Transpose()->GetBlock(0, 2, 1, 1).Get()), nullptr);
  // Square inputs concatenate into a plain matrix whatever the result's shape.
  Matrix_sptr a = FromRows({{1}, {2}});
  Matrix_sptr joined = m->GetBlock(0, 1, 0, 0)->ConcatColumns(a);
  EXPECT_EQ(typeid(*joined.Get()), typeid(Matrix_cl));
  EXPECT_EQ(Row(joined, 1), (std::vector<double>{4, 2}));
}

TEST(Matrix, InPlaceFlagDecidesBetweenThisAndACopy) {
  Matrix_sptr m = FromRows({{1, 2}, {3, 4}, {5, 6}});
  Matrix_sptr other = FromRows({{1, 1}, {1, 1}, {1, 1}});
  Matrix_sptr copy = m->Multiply(2.0, 0);
  EXPECT_NE(copy.Get(), m.Get());
  EXPECT_EQ(Row(m, 0), (std::vector<double>{1, 2}));
  EXPECT_EQ(Row(copy, 0), (std::vector<double>{2, 4}));

  EXPECT_EQ(m->Add(other, 1, 10.0).Get(), m.Get());
  EXPECT_EQ(Row(m, 2), (std::vector<double>{15, 16}));
  EXPECT_EQ(Row(m->Sub(other, 0), 2), (std::vector<double>{14, 15}));
  EXPECT_EQ(Row(m->SubMe(other, 0), 2), (std::vector<double>{-14, -15}));
  EXPECT_EQ(Row(m, 2), (std::vector<double>{15, 16}));
  EXPECT_EQ(m->SubMe(other, 1).Get(), m.Get());
  EXPECT_EQ(Row(m, 0), (std::vector<double>{-10, -11}));
}

TEST(Matrix, ProductOrderFollowsTheFlag) {
  Matrix_sptr a = FromRows({{1, 2, 3}, {4, 5, 6}});
  Matrix_sptr b = FromRows({{1, 0}, {0, 1}, {2, -1}});
  Matrix_sptr ab = a->Multiply(b, 1);
  ASSERT_EQ(ab->GetNumRows(), 2);
  EXPECT_EQ(Row(ab, 0), (std::vector<double>{7, -1}));
  EXPECT_EQ(Row(ab, 1), (std::vector<double>{16, -1}));
  Matrix_sptr ba = a->Multiply(b, 0);
  ASSERT_EQ(ba->GetNumRows(), 3);
  EXPECT_EQ(Row(ba, 2), (std::vector<double>{-2, -1, 0}));
}

TEST(Matrix, RowAndColumnReductionsSkipMissingCellsAndListedMinusOnes) {
  Matrix_sptr m = FromRows({{1, kMissing, 3, -2}, {kMissing, kMissing, kMissing, kMissing}, {7, 8, kMissing, 0}});
  std::unique_ptr<Vector_tmpl<int>> rows(Ints({2, -1, 0}));
  std::unique_ptr<Vector_tmpl<int>> cols(Ints({3, -1, 1}));

  EXPECT_EQ(m->GetColumnSum(0, kMissing, nullptr), 8.0);
  EXPECT_EQ(m->GetColumnSum(1, kMissing, rows.get()), 8.0);
  EXPECT_EQ(m->GetColumnNumEntries(0, kMissing, nullptr), 2);
  EXPECT_EQ(m->GetColumnNumEntries(2, kMissing, rows.get()), 1);
  EXPECT_EQ(m->GetColumnMax(3, kMissing, nullptr), 0.0);
  EXPECT_EQ(m->GetColumnMin(3, kMissing, nullptr), -2.0);
  EXPECT_EQ(m->GetColumnsSum(0, kMissing, nullptr), 2.0);
  EXPECT_EQ(m->GetColumnsSum(2, kMissing, cols.get()), 8.0);
  EXPECT_EQ(m->GetColumnsNumEntries(0, kMissing, cols.get()), 1);
  EXPECT_EQ(m->GetRowMax(0, kMissing, nullptr), 3.0);
  EXPECT_EQ(m->GetRowMin(0, kMissing, nullptr), -2.0);
  EXPECT_EQ(m->GetRowMaxIndex(2, kMissing, nullptr), 1);
  EXPECT_EQ(m->GetRowMinIndex(2, kMissing, cols.get()), 3);

  // Empty lines: the extremes are the two ends of the doubles, the indices -1.
  EXPECT_EQ(m->GetRowMax(1, kMissing, nullptr), -DBL_MAX);
  EXPECT_EQ(m->GetRowMin(1, kMissing, nullptr), DBL_MAX);
  EXPECT_EQ(m->GetRowMaxIndex(1, kMissing, nullptr), -1);
  std::unique_ptr<Vector_tmpl<int>> middle(Ints({1})), top(Ints({0, 1}));
  EXPECT_EQ(m->GetColumnMax(2, kMissing, middle.get()), -DBL_MAX);
  EXPECT_EQ(m->GetColumnSum(1, kMissing, top.get()), 0.0);

  std::unique_ptr<Vector_tmpl<int>> minCell(m->GetMinEntryIndices(kMissing));
  std::unique_ptr<Vector_tmpl<int>> maxCell(m->GetMaxEntryIndices(kMissing));
  EXPECT_EQ((*minCell)[0], 0);
  EXPECT_EQ((*minCell)[1], 3);
  EXPECT_EQ((*maxCell)[0], 2);
  EXPECT_EQ((*maxCell)[1], 1);
  Matrix_sptr empty = FromRows({{kMissing, kMissing}});
  std::unique_ptr<Vector_tmpl<int>> none(empty->GetMaxEntryIndices(kMissing));
  EXPECT_EQ((*none)[0], -1);
  EXPECT_EQ((*none)[1], -1);
}

TEST(Matrix, FirstExtremeWinsTies) {
  Matrix_sptr m = FromRows({{2, 5, 5}, {5, 1, 1}});
  EXPECT_EQ(m->GetRowMaxIndex(0, kMissing, nullptr), 1);
  EXPECT_EQ(m->GetRowMinIndex(1, kMissing, nullptr), 1);
  std::unique_ptr<Vector_tmpl<int>> maxCell(m->GetMaxEntryIndices(kMissing));
  EXPECT_EQ((*maxCell)[0], 0);
  EXPECT_EQ((*maxCell)[1], 1);
}

TEST(Matrix, TransformsAgreeWithADirectComputationOverPresentCells) {
  Random_cl random(17);
  const double missing = -999.0;
  for (int trial = 0; trial < 20; trial++) {
    int n = 1 + static_cast<int>(random.SampleUniform() * 12);
    Matrix_sptr m = new Matrix_cl(3, n);
    std::vector<double> present;
    for (int c = 0; c < n; c++) {
      double x = random.SampleUniform() < 0.3 ? missing : random.SampleNormal() * 4 + 1;
      m->SetElement(1, c, x);
      if (x != missing) present.push_back(x);
    }
    Matrix_sptr t = m->Transpose();
    double mean = 0, sq = 0;
    for (double x : present) mean += x, sq += x * x;
    mean /= present.size();
    double sd = std::sqrt(sq / present.size() - mean * mean);

    Matrix_sptr zero = m->Copy(), center = m->Copy(), scale = m->Copy();
    zero->ZeroTransformRow(1, missing);
    center->CenterTransformRow(1, missing);
    scale->ScaleTransformRow(1, missing);
    Matrix_sptr zeroCol = t->Copy();
    zeroCol->ZeroTransformCol(1, missing);
    for (int c = 0; c < n; c++) {
      double x = m->GetElement(1, c);
      if (x == missing) {
        EXPECT_EQ(zero->GetElement(1, c), missing);
        EXPECT_EQ(zeroCol->GetElement(c, 1), missing);
        continue;
      }
      if (present.size() > 1 && sd > 0) {
        EXPECT_NEAR(zero->GetElement(1, c), (x - mean) / sd, 1e-9);
        EXPECT_NEAR(scale->GetElement(1, c), x / sd, 1e-9);
      }
      EXPECT_NEAR(center->GetElement(1, c), x - mean, 1e-12);
      EXPECT_EQ(zeroCol->GetElement(c, 1), zero->GetElement(1, c));
    }
    // The other rows are untouched.
    EXPECT_EQ(Row(zero, 0), Row(m, 0));
  }
}

TEST(Matrix, TransformsOfDegenerateLines) {
  Matrix_sptr m = FromRows({{kMissing, kMissing}, {3, 3}});
  m->ZeroTransformRow(0, kMissing);
  EXPECT_EQ(Row(m, 0), (std::vector<double>{kMissing, kMissing}));
  m->ZeroTransformRow(1, kMissing);
  EXPECT_FALSE(std::isfinite(m->GetElement(1, 0)));
}

TEST(Matrix, RankTransformNumbersPresentCellsFromTheSmallest) {
  Matrix_sptr m = FromRows({{0.5, kMissing, -3, 9, 0.5, 2}});
  EXPECT_EQ(m->RankTransformRow(0, kMissing), 5);
  std::vector<double> r = Row(m, 0);
  EXPECT_EQ(r[1], kMissing);
  EXPECT_EQ(r[2], 1);
  EXPECT_EQ(r[3], 5);
  EXPECT_EQ(r[5], 4);
  // The tied 0.5s take ranks 2 and 3, in the order the heap gives them.
  EXPECT_EQ(r[0] + r[4], 5);
  Matrix_sptr col = FromRows({{4}, {kMissing}, {1}});
  EXPECT_EQ(col->RankTransformCol(0, kMissing), 2);
  EXPECT_EQ(Row(col->Transpose(), 0), (std::vector<double>{2, kMissing, 1}));
}

TEST(Matrix, LeaveTopValuesKeepsTheTopRanksAndReplacesMissingCells) {
  Matrix_sptr m = FromRows({{5, 1, kMissing, 9, 7}});
  m->LeaveTopValuesRow(0, 3, 0.0);
  // One missing cell among five: the top three ranks are 4 and 3 of the four present cells.
  EXPECT_EQ(Row(m, 0), (std::vector<double>{0, 0, 0, 9, 7}));
  Matrix_sptr col = FromRows({{5}, {1}, {9}});
  col->LeaveTopValuesCol(0, 0, -1.0);
  EXPECT_EQ(Row(col->Transpose(), 0), (std::vector<double>{-1, -1, -1}));
  col = FromRows({{5}, {1}, {9}});
  col->LeaveTopValuesCol(0, 3, -1.0);
  EXPECT_EQ(Row(col->Transpose(), 0), (std::vector<double>{5, 1, 9}));
}

TEST(Matrix, RowBoundsAndRescalingLeaveMissingCellsAlone) {
  Matrix_sptr m = FromRows({{2, kMissing, 6, 4}});
  m->LinearRescaleRow(0, kMissing, -1, 1);
  EXPECT_EQ(Row(m, 0), (std::vector<double>{-1, kMissing, 1, 0}));
  m = FromRows({{2, kMissing, 6, 4}});
  m->SetRowMax(0, 5, kMissing);
  m->SetRowMin(0, 3, kMissing);
  EXPECT_EQ(Row(m, 0), (std::vector<double>{3, kMissing, 5, 4}));
}

TEST(Matrix, MomentsAndCountsCoverTheFilteredCellsOnly) {
  Matrix_sptr m = FromRows({{1, 2, 3}, {4, kMissing, 6}, {7, 8, 9}});
  MatrixFilter_cl filter(Ints({1, 2}), 1, Ints({0, 1}), 1);
  double n = -1, sum = -1, sq = -1;
  m->ComputeMoments(&filter, kMissing, n, sum, sq);
  EXPECT_EQ(n, 3.0);
  EXPECT_EQ(sum, 19.0);
  EXPECT_EQ(sq, 16.0 + 49 + 64);
  MatrixFilter_cl all(nullptr, 0, nullptr, 0);
  m->ComputeMoments(&all, kMissing, n, sum, sq);
  EXPECT_EQ(n, 8.0);
  EXPECT_EQ(sum, 40.0);

  Matrix_sptr codes = FromRows({{0, 1.7, -2147483647.0}, {1, 2, kMissing}, {5, 0.2, 1}});
  IntSet_tmpl<int> index(8, -1);
  index.Insert(0, 0);
  index.Insert(1, 1);
  index.Insert(2, 2);
  int counts[3] = {0, 0, 0};
  codes->ComputeCounts(&all, -2147483647, counts, index);
  // 1.7 truncates to 1; the missing code, the missing real and 5 (no value) count nowhere.
  EXPECT_EQ(counts[0], 2);
  EXPECT_EQ(counts[1], 3);
  EXPECT_EQ(counts[2], 1);
}

TEST(Matrix, CopiesThroughAFilterAndBackIntoTargets) {
  Matrix_sptr m = FromRows({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
  MatrixFilter_cl filter(Ints({2, 0}), 1, nullptr, 0);
  Matrix_sptr part = m->Copy(&filter);
  ASSERT_EQ(part->GetNumRows(), 2);
  EXPECT_EQ(Row(part, 0), (std::vector<double>{7, 8, 9}));
  Matrix_sptr target = new Matrix_cl(3, 3);
  m->CopyMyValues(target);
  EXPECT_EQ(Row(target, 1), (std::vector<double>{4, 5, 6}));
  m->CopyMyRow(target, 0, 2);
  m->CopyMyColumn(target, 2, 0);
  EXPECT_EQ(Row(target, 2), (std::vector<double>{9, 2, 3}));
  EXPECT_EQ(Row(m->GetRowVector(1)->Transpose(), 0), (std::vector<double>{4, 5, 6}));
  EXPECT_EQ(Row(m->GetColumnVector(1)->Transpose(), 0), (std::vector<double>{2, 5, 8}));
}

TEST(Matrix, CompoundElementsFollowTheIndexColumns) {
  Matrix_sptr m = FromRows({{1.5, 2, 3}});
  std::unique_ptr<CompositeValue_cl> one(m->GetElement(0, Index_cl(2)));
  std::unique_ptr<CompositeValue_cl> two(m->GetElement(0, Index_cl(Ints({2, 0}))));
  std::ostringstream out;
  one->PrintOs(out);
  two->PrintOs(out);
  EXPECT_EQ(out.str(), "<3><3 1.5>");
}

TEST(Matrix, WriteFileLeavesMissingCellsEmpty) {
  Matrix_sptr m = FromRows({{1.5, kMissing, -2}, {kMissing, kMissing, kMissing}});
  std::ostringstream plain, named;
  m->WriteFile(plain, kMissing);
  EXPECT_EQ(plain.str(), "1.5\t\t-2\t\n\t\t\t\n");
  Vector_tmpl<Name_sptr> names;
  names.AddLast(Name_sptr("g1"));
  names.AddLast(Name_sptr("g2"));
  m->WriteFile(named, &names, kMissing);
  EXPECT_EQ(named.str(), "g1\t1.5\t\t-2\t\ng2\t\t\t\t\n");
}

TEST(Matrix, RankByEliminationCountsIndependentRows) {
  Matrix_sptr m = FromRows({{1, 2, 3}, {2, 4, 6}, {0, 1, 1}, {1, 3, 4}});
  EXPECT_EQ(m->GetRank(0), 2);
  EXPECT_EQ(Row(m, 1), (std::vector<double>{2, 4, 6}));
  EXPECT_EQ(m->FindPivot(0, 0), 1);
  EXPECT_EQ(FromRows({{0, 0}, {0, 0}})->GetRank(0), 0);
  Matrix_sptr wide = FromRows({{0, 1, 0, 2}, {0, 0, 0, 3}});
  EXPECT_EQ(wide->GetRank(1), 2);
}

TEST(MatrixVector, ProductsAndReordering) {
  MatrixVector_sptr x = new MatrixVector_cl(3), y = new MatrixVector_cl(3);
  for (int i = 0; i < 3; i++) {
    x->SetEntry(i, i + 1);
    y->SetEntry(i, 2 - i);
  }
  EXPECT_EQ(x->InnerProduct(y), 2 + 2 + 0);
  SqrMatrix_sptr xy = x->OuterProduct(y, 1), yx = x->OuterProduct(y, 0);
  EXPECT_EQ(Row(xy, 2), (std::vector<double>{6, 3, 0}));
  EXPECT_EQ(Row(yx, 2), (std::vector<double>{0, 0, 0}));
  EXPECT_EQ(x->QuadraticProduct(xy), 14 * 4);  // (xT x)(yT x)
  Matrix_sptr m = FromRows({{1, 0}, {0, 1}, {1, 1}});
  MatrixVector_sptr xm = x->VecMultiply(m);
  EXPECT_EQ(Row(xm->Transpose(), 0), (std::vector<double>{4, 5}));
  int order[] = {2, 0, 1};
  x->ReorderVector(order);
  EXPECT_EQ(Row(x->Transpose(), 0), (std::vector<double>{3, 1, 2}));
}

TEST(MatrixFilter, OwnershipTravelsWithPassedSidesAndPrintShowsBoth) {
  MatrixFilter_cl* parent = new MatrixFilter_cl(Ints({3, 1}), 1, nullptr, 0);
  MatrixFilter_cl child(nullptr, 0, Ints({0}), 1);
  parent->PassRows(&child);
  EXPECT_EQ(child.GetRows(), parent->GetRows());
  EXPECT_TRUE(child.RowsOwner());
  EXPECT_FALSE(parent->RowsOwner());
  delete parent;  // the rows now belong to the child
  EXPECT_EQ((*child.GetRows())[0], 3);

  std::unique_ptr<MatrixFilter_cl> clone(child.Clone());
  EXPECT_NE(clone->GetRows(), child.GetRows());
  EXPECT_TRUE(clone->ObjectsOwner(MATRIX_COLUMNS));
  std::unique_ptr<Vector_tmpl<int>> seven(Ints({7}));
  clone->AddRows(seven.get());
  child.CopyRows(clone->GetRows());
  std::ostringstream out;
  child.Print(out);
  EXPECT_EQ(out.str(), "Filter = (\n    rows    = (3,1,7)\n    columns = (0)\n)\n");
  MatrixFilter_cl none(nullptr, 0, nullptr, 0);
  std::ostringstream empty;
  none.Print(empty);
  EXPECT_EQ(empty.str(), "Filter = (\n    rows    = (NULL)\n    columns = (NULL)\n)\n");
}
