// Statistics against direct sums over random records: weights, missing cells, hidden variables and column maps.
#include "prob/suff_stats.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "pipeline/random.h"
#include "stats_test_helpers.h"

namespace {

struct Records {
  std::vector<std::vector<int>> disc;
  std::vector<std::vector<double>> real;
  std::vector<double> weight;
};

// Rows of three discrete columns (sizes 2, 3, 4) and two real ones, about a tenth of cells missing.
Records MakeRecords(int n) {
  Records r;
  Random_cl& rnd = Random_cl::iGlobalRandomizer;
  for (int k = 0; k < n; k++) {
    std::vector<int> d = {static_cast<int>(rnd.SampleUniform() * 2), static_cast<int>(rnd.SampleUniform() * 3),
                          static_cast<int>(rnd.SampleUniform() * 4)};
    std::vector<double> x = {rnd.SampleNormal(), rnd.SampleNormal() * 3 + 1};
    for (int& v : d)
      if (rnd.SampleUniform() < 0.1) v = kRowMissingInt;
    for (double& v : x)
      if (rnd.SampleUniform() < 0.1) v = kRowMissingReal;
    r.disc.push_back(d);
    r.real.push_back(x);
    r.weight.push_back(k % 7 == 0 ? 0.0 : rnd.SampleUniform() * 2);
  }
  return r;
}

TEST(SuffStats, CountsMatchDirectSumsThroughAColumnMap) {
  Random_cl::iGlobalRandomizer.Reset(11);
  SingleRv_sptr a = DiscVar("a", 2), b = DiscVar("b", 3), c = DiscVar("c", 4);
  // Given out of id order: the statistic sorts its scope, so c runs fastest.
  CountsSuffStats_cl counts(Scope({c, a}), 0, 0);
  ASSERT_EQ(counts.GetNumCells(), 8);
  IntSet_tmpl<int> columns(8, -1);
  columns.Insert(a->GetId(), 0);
  columns.Insert(c->GetId(), 2);
  counts.MapRvsToIndices(columns);
  Records r = MakeRecords(500);
  std::vector<double> expect(8, 0.0);
  double total = 0.0;
  for (size_t k = 0; k < r.weight.size(); k++) {
    counts.AddRecord(r.disc[k].data(), r.real[k].data(), r.weight[k]);
    if (r.disc[k][0] == kRowMissingInt || r.disc[k][2] == kRowMissingInt) continue;
    expect[r.disc[k][0] * 4 + r.disc[k][2]] += r.weight[k];
    total += r.weight[k];
  }
  for (int i = 0; i < 8; i++) EXPECT_DOUBLE_EQ(counts.GetWeight(i), expect[i]) << i;
  EXPECT_DOUBLE_EQ(counts.GetTotalWeight(), total);

  // A variable absent from the map is hidden, and no record is complete then.
  CountsSuffStats_cl hidden(Scope({a, b}), 0, 0);
  hidden.MapRvsToIndices(columns);
  EXPECT_EQ(hidden.GetNumHidden(), 1);
  int row[3] = {1, 1, 1};
  hidden.AddRecord(row, nullptr, 1.0);
  EXPECT_EQ(hidden.GetTotalWeight(), 0.0);
}

TEST(SuffStats, CountsArrayFormsKeepTheTotal) {
  CountsSuffStats_cl counts(3);
  int ints[3] = {1, 2, 3};
  counts.SetWeights(ints);
  EXPECT_EQ(counts.GetTotalWeight(), 6.0);
  double doubles[3] = {0.5, 0.5, 0.5};
  counts.AddWeights(doubles);
  EXPECT_EQ(counts.GetTotalWeight(), 7.5);
  counts.SetWeight(0, 10.0);
  EXPECT_EQ(counts.GetTotalWeight(), 16.0);
  counts.DivideBy(2.0);
  EXPECT_EQ(counts.GetWeight(0), 5.0);
  EXPECT_EQ(counts.GetTotalWeight(), 8.0);
  std::ostringstream out;
  counts.WriteFile(out);
  EXPECT_EQ(out.str(), "5 1.25 1.75 \n");
  counts.Reset();
  EXPECT_EQ(counts.GetTotalWeight(), 0.0);
}

TEST(SuffStats, MomentsAndMomentsTablesMatchDirectSums) {
  Random_cl::iGlobalRandomizer.Reset(12);
  SingleRv_sptr b = DiscVar("b", 3), x = RealVar("x"), y = RealVar("y");
  // Row columns: discrete b at 1, reals x at 0 and y at 1, given by id.
  IntSet_tmpl<int> columns(8, -1);
  columns.Insert(b->GetId(), 1);
  columns.Insert(x->GetId(), 0);
  columns.Insert(y->GetId(), 1);
  MomentsSuffStats_cl moments(Scope({x, y}));
  moments.MapRvsToIndices(columns);
  MomentsTableSuffStats_cl table(Scope({y, b, x}));
  table.MapRvsToIndices(columns);
  ASSERT_EQ(table.GetNumCells(), 3);

  Records r = MakeRecords(400);
  double n = 0, s[2] = {0, 0}, ss[3] = {0, 0, 0};
  std::vector<double> cellN(3, 0.0), cellSy(3, 0.0), cellSxy(3, 0.0);
  for (size_t k = 0; k < r.weight.size(); k++) {
    const int* d = r.disc[k].data();
    const double* v = r.real[k].data();
    double w = r.weight[k];
    moments.AddRecord(d, v, w);
    table.AddRecord(d, v, w);
    if (v[0] == kRowMissingReal || v[1] == kRowMissingReal) continue;
    n += w;
    s[0] += w * v[0];
    s[1] += w * v[1];
    ss[0] += w * v[0] * v[0];
    ss[1] += w * v[0] * v[1];
    ss[2] += w * v[1] * v[1];
    if (d[1] == kRowMissingInt) continue;
    cellN[d[1]] += w;
    cellSy[d[1]] += w * v[1];
    cellSxy[d[1]] += w * v[0] * v[1];
  }
  EXPECT_DOUBLE_EQ(moments.GetTotalWeight(), n);
  EXPECT_DOUBLE_EQ(moments.GetFirst(0), s[0]);
  EXPECT_DOUBLE_EQ(moments.GetFirst(1), s[1]);
  EXPECT_DOUBLE_EQ(moments.GetSecond(0, 0), ss[0]);
  EXPECT_DOUBLE_EQ(moments.GetSecond(1, 0), ss[1]);
  EXPECT_DOUBLE_EQ(moments.GetSecond(1, 1), ss[2]);
  for (int c = 0; c < 3; c++) {
    EXPECT_DOUBLE_EQ(table.GetCell(c)->GetTotalWeight(), cellN[c]);
    EXPECT_DOUBLE_EQ(table.GetCell(c)->GetFirst(1), cellSy[c]);
    EXPECT_DOUBLE_EQ(table.GetCell(c)->GetSecond(0, 1), cellSxy[c]);
  }
}

TEST(SuffStats, MomentsTableArrayFormsSkipEmptyCells) {
  MomentsTableSuffStats_cl table(3);
  double w1[3] = {1, 2, 3}, f1[3] = {10, 20, 30}, s1[3] = {100, 200, 300};
  table.SetMoments(w1, f1, s1);
  double w2[3] = {4, 0.0, -1}, f2[3] = {1, 1, 1}, s2[3] = {1, 1, 1};
  table.AddMoments(w2, f2, s2);
  EXPECT_EQ(table.GetCell(0)->GetTotalWeight(), 5.0);
  EXPECT_EQ(table.GetCell(0)->GetFirst(0), 11.0);
  EXPECT_EQ(table.GetCell(1)->GetFirst(0), 20.0);
  EXPECT_EQ(table.GetCell(2)->GetSecond(0, 0), 300.0);
  int wi[3] = {0, 7, 0};
  table.SetMoments(wi, f2, s2);
  EXPECT_EQ(table.GetCell(1)->GetTotalWeight(), 7.0);
  EXPECT_EQ(table.GetCell(0)->GetTotalWeight(), 5.0);
}

TEST(SuffStats, MomentsTextForm) {
  SingleRv_sptr x = RealVar("x"), y = RealVar("y");
  MomentsSuffStats_cl moments(Scope({x, y}));
  double first[2] = {1.5, 2}, second[4] = {1, 2, 0, 4};
  moments.SetMoments(3, first, second);
  std::ostringstream out;
  moments.WriteFile(out);
  EXPECT_EQ(out.str(), "Rvs: x y\ntotal weight: 3\n# First Moments: \n1.5 2 \n# Second Moments: \n1 2 \n2 4 \n");
}

TEST(SuffStatsDeathTest, BaseFormsStop) {
  SuffStats_cl plain(1);
  EXPECT_DEATH(plain.Reset(), "SuffStats_cl::Reset is not supported\n");
}

}  // namespace
