// Tests of the pair scores of MicroarrayStats: the best-k heap, cutoffs and the pair priority.
#include "data/microarray_stats.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "data/data_file.h"
#include "data/microarray.h"

namespace {
Microarray_cl* MakeMicroarray() {
  Vector_tmpl<Name_sptr> genes(4, nullptr), experiments(4, nullptr);
  for (const char* g : {"a", "b", "c", "d"}) genes.AddLast(Name_sptr(g));
  for (const char* e : {"e1", "e2", "e3", "e4"}) experiments.AddLast(Name_sptr(e));
  Microarray_cl* microarray = new Microarray_cl(Name_sptr("m"), genes, experiments, 0.0);
  double cells[4][4] = {{1, 2, 3, 4}, {2, 4, 6, 9}, {4, 3, 2, 1}, {1, 3, 2, kMissingReal}};
  for (int r = 0; r < 4; r++)
    for (int c = 0; c < 4; c++) microarray->GetMatrix()->SetElement(r, c, cells[r][c]);
  return microarray;
}

std::string Scores(PairFilter_cl filter) {
  Microarray_cl* microarray = MakeMicroarray();
  MicroarrayStats_cl stats(microarray);
  std::ostringstream out;
  testing::internal::CaptureStderr();
  stats.ComputePairwiseScores(Name_sptr("Pearson"), STATS_GENE_ATTRIBUTES, nullptr, filter, out);
  testing::internal::GetCapturedStderr();
  delete microarray;
  return out.str();
}

TEST(MicroarrayStatsTest, TopKKeepsTheBestPairsBestFirst) {
  std::string all = Scores({kMissingReal, 0, 1, kMissingInt});
  EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 6);
  EXPECT_EQ(all.substr(0, 4), "a\tb\t");
  std::string top = Scores({kMissingReal, 0, 1, 2});
  // a~b correlate most, then b~d over their three shared columns is below a~d.
  EXPECT_EQ(top.substr(0, top.find('\n')).substr(0, 4), "a\tb\t");
  EXPECT_EQ(std::count(top.begin(), top.end(), '\n'), 2);
  EXPECT_EQ(top.find("a\tc\t"), std::string::npos);
}

TEST(MicroarrayStatsTest, CutoffsAndDimensionsFilterPairs) {
  // a~c is -1: only the absolute form lets it through.
  EXPECT_EQ(Scores({0.99, 0, 1, kMissingInt}).find("a\tc\t"), std::string::npos);
  EXPECT_NE(Scores({0.99, 1, 1, kMissingInt}).find("a\tc\t-1\t4\n"), std::string::npos);
  std::string full = Scores({kMissingReal, 0, 4, kMissingInt});
  EXPECT_EQ(full.find("\td\t"), std::string::npos);
  EXPECT_EQ(std::count(full.begin(), full.end(), '\n'), 3);
}

TEST(MicroarrayStatsTest, APairWithoutMetricComesLast) {
  ClusteringMetric_cl* metric = ClusteringMetricFactory_cl::CreateMetric(Name_sptr("Pearson"));
  metric->SetCost(-0.5);
  ScoredPair_cl with(Name_sptr("a"), Name_sptr("b"), metric);
  ScoredPair_cl without(Name_sptr("c"), Name_sptr("d"), nullptr);
  EXPECT_TRUE(with.IHaveHigherPriority(&without));
  EXPECT_FALSE(without.IHaveHigherPriority(&with));
}
}  // namespace
