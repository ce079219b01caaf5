// Tests of biclusters over contiguous columns: windows, mismatch allowances, filters and overlaps.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "clustering/bi_clustering.h"
#include "pipeline/random.h"

namespace {
Matrix_sptr FromRows(const std::vector<std::vector<double>>& rows) {
  Matrix_sptr m(new Matrix_cl(static_cast<int>(rows.size()), static_cast<int>(rows[0].size())));
  for (size_t r = 0; r < rows.size(); r++)
    for (size_t c = 0; c < rows[r].size(); c++) m->SetElement(r, c, rows[r][c]);
  return m;
}

struct Found {
  std::vector<int> rows;
  int first, last;
  bool operator<(const Found& o) const { return std::tie(first, last, rows) < std::tie(o.first, o.last, o.rows); }
  bool operator==(const Found& o) const { return first == o.first && last == o.last && rows == o.rows; }
};

std::vector<Found> Find(Matrix_sptr m, const DoubleSet_tmpl<int>& cuts, int minColumns, int minRows, int maxMismatch,
                        double maxAverage, double minOverlap) {
  BiClustering_cl bi(m);
  Vector_tmpl<MatrixFilter_cl*>* filters =
      bi.FindContiguousColumnClusters(cuts, minColumns, minRows, maxMismatch, maxAverage, minOverlap);
  std::vector<Found> found;
  for (int i = 0; i < filters->GetSize(); i++) {
    MatrixFilter_cl* f = (*filters)[i];
    Found one{{}, f->GetColumn(0), f->GetColumn(f->GetNumColumns(0) - 1)};
    for (int c = 0; c < f->GetNumColumns(0); c++) EXPECT_EQ(f->GetColumn(c), one.first + c);
    for (int r = 0; r < f->GetNumRows(0); r++) one.rows.push_back(f->GetRow(r));
    found.push_back(one);
  }
  filters->DeleteAll();
  delete filters;
  return found;
}

DoubleSet_tmpl<int>* Cuts(std::initializer_list<std::pair<double, int>> entries) {
  DoubleSet_tmpl<int>* cuts = new DoubleSet_tmpl<int>(8, 0);
  for (auto& e : entries) cuts->Insert(e.first, e.second);
  return cuts;
}

TEST(BiClusteringTest, ExactRunsFormOneClusterOverTheirColumns) {
  Matrix_sptr m = FromRows({{0, 0, 1, 1, 1, 1, 0, 0},
                            {0, 0, 1, 1, 1, 1, 0, 2},
                            {0, 0, 1, 1, 1, 1, 0, 0},
                            {0, 1, 1, 0, 0, 0, 0, 0}});
  DoubleSet_tmpl<int>* cuts = Cuts({{1, 1}, {0, 0}});
  std::vector<Found> found = Find(m, *cuts, 3, 2, 0, 0.0, 0.5);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0], (Found{{0, 1, 2}, 2, 5}));
  // A run shorter than the least run length counts for nothing; nor does a value cut to 0.
  EXPECT_TRUE(Find(m, *cuts, 5, 1, 0, 0.0, 0.5).empty());
  delete cuts;
}

TEST(BiClusteringTest, MismatchesShareOneAllowanceAndOverlapsGiveWayToTheBest) {
  Matrix_sptr m = FromRows({{0, 0, 1, 1, 1, 1, 0, 0},
                            {0, 0, 1, 1, 1, 1, 0, 0},
                            {0, 0, 0, 1, 1, 1, 0, 0}});
  DoubleSet_tmpl<int>* cuts = Cuts({{1, 1}});
  // Windows 2..5 (mismatch 0, 0, 1) and 3..5 (1, 1, 0) hold all three rows; the first is better and
  // the second shares all its rows with it.
  std::vector<Found> found = Find(m, *cuts, 3, 3, 1, 1.0, 0.5);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0], (Found{{0, 1, 2}, 2, 5}));
  found = Find(m, *cuts, 3, 3, 1, 1.0, 1.01);
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0], (Found{{0, 1, 2}, 2, 5}));
  EXPECT_EQ(found[1], (Found{{0, 1, 2}, 3, 5}));
  // The average mismatch limit: 1/3 passes, 2/3 does not.
  found = Find(m, *cuts, 3, 3, 1, 0.5, 1.01);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].first, 2);
  delete cuts;
}

// Every window that a brute-force reading of the allowance gives, with no overlap filtering, comes
// out once, better average mismatch first.
TEST(BiClusteringTest, WindowsMatchBruteForceOnRandomMatrices) {
  Random_cl::iGlobalRandomizer.Reset(5);
  for (int trial = 0; trial < 30; trial++) {
    int rows = 6, cols = 9, m = trial % 3;
    Matrix_sptr x(new Matrix_cl(rows, cols));
    for (int r = 0; r < rows; r++)
      for (int c = 0; c < cols; c++)
        x->SetElement(r, c, static_cast<int>(Random_cl::iGlobalRandomizer.SampleUniform() * 3));
    DoubleSet_tmpl<int>* cuts = Cuts({{1, 1}, {2, 1}});
    int minColumns = 2, minRows = 2;
    double maxAverage = 1.0;
    // Window -> (rows, mismatches), a row's every qualifying run counting.
    std::map<std::pair<int, int>, std::pair<std::set<int>, int>> windows;
    for (int r = 0; r < rows; r++)
      for (int f = 0; f < cols;) {
        int l = f;
        while (l + 1 < cols && x->GetElement(r, l + 1) == x->GetElement(r, f)) l++;
        if (l - f + 1 >= minColumns && x->GetElement(r, f) != 0)
          for (int a = 0; a < cols; a++)
            for (int b = a; b < cols; b++)
              if (std::abs(f - a) + std::abs(l - b) <= m) {
                windows[{a, b}].first.insert(r);
                windows[{a, b}].second += std::abs(f - a) + std::abs(l - b);
              }
        f = l + 1;
      }
    std::vector<Found> expected;
    for (auto& [key, value] : windows) {
      int n = static_cast<int>(value.first.size());
      if (n >= minRows && static_cast<double>(value.second) / n <= maxAverage)
        expected.push_back({std::vector<int>(value.first.begin(), value.first.end()), key.first, key.second});
    }
    std::vector<Found> found = Find(x, *cuts, minColumns, minRows, m, maxAverage, 2.0);
    for (size_t i = 1; i < found.size(); i++) {
      auto average = [&](const Found& f) { return windows[{f.first, f.last}].second / double(f.rows.size()); };
      EXPECT_LE(average(found[i - 1]), average(found[i]));
    }
    std::sort(found.begin(), found.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(found, expected) << "trial " << trial;
    delete cuts;
  }
}
}  // namespace
