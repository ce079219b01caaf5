// Tests of the clustering metrics against direct computation, with missing cells and weights.
#include "clustering/clustering_metric.h"

#include <gsl/gsl_statistics_double.h>
#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <sstream>

#include "data/data_file.h"

namespace {
const double M = kMissingReal;

Matrix_sptr MakeMatrix(std::initializer_list<std::initializer_list<double>> rows) {
  Matrix_sptr m(new Matrix_cl(static_cast<int>(rows.size()), static_cast<int>(rows.begin()->size())));
  int r = 0;
  for (auto& row : rows) {
    int c = 0;
    for (double v : row) m->SetElement(r, c++, v);
    r++;
  }
  return m;
}

ClusteringMetric_cl* Make(const char* name, Matrix_sptr m, int row) {
  return ClusteringMetricFactory_cl::CreateMetric(Name_sptr(name), m, row);
}

double Cost(const char* name, Matrix_sptr m, int a, int b) {
  ClusteringMetric_cl* x = Make(name, m, a);
  ClusteringMetric_cl* y = Make(name, m, b);
  ClusteringMetric_cl* c = ClusteringMetricFactory_cl::CreateMetric(Name_sptr(name));
  c->ComputeCost(x, y);
  double cost = c->GetCost();
  delete x;
  delete y;
  delete c;
  return cost;
}

class MetricTest : public ::testing::Test {
 protected:
  void TearDown() override { ClusteringMetric_cl::SetDimensionWeights(nullptr); }
};

TEST_F(MetricTest, PearsonOfCompleteRowsIsTheTextbookCoefficient) {
  Matrix_sptr m = MakeMatrix({{1.0, 2.5, -0.3, 4.0, 0.7, 2.2}, {0.4, 1.9, 0.1, 3.1, 1.5, 1.0}});
  double expected = gsl_stats_correlation(m->GetRow(0), 1, m->GetRow(1), 1, 6);
  EXPECT_NEAR(Cost("Pearson", m, 0, 1), expected, 1e-12);
  EXPECT_NEAR(Cost("Pearson", m, 0, 0), 1.0, 1e-12);
}

TEST_F(MetricTest, PearsonWithMissingCellsAndWeightsCountsAllWeightsInW) {
  Matrix_sptr m = MakeMatrix({{1.0, M, 3.0, 0.5, 2.0}, {2.0, 1.0, M, 1.5, 0.2}});
  Vector_tmpl<double> weights(5, 0.0);
  for (double w : {1.0, 2.0, 0.5, 1.5, 3.0}) weights.AddLast(w);
  ClusteringMetric_cl::SetDimensionWeights(&weights);
  // Shared dimensions 0, 3 and 4; W sums all five weights.
  double sx = 0, sy = 0, sxx = 0, syy = 0, sxy = 0, W = 8.0;
  for (int i : {0, 3, 4}) {
    double w = weights[i], a = m->GetElement(0, i), b = m->GetElement(1, i);
    sx += w * a, sy += w * b, sxx += w * a * a, syy += w * b * b, sxy += w * a * b;
  }
  double expected = (W * sxy - sx * sy) / sqrt((W * sxx - sx * sx) * (W * syy - sy * sy));
  EXPECT_NEAR(Cost("Pearson", m, 0, 1), expected, 1e-12);
  // Not the coefficient over the shared cells alone, whose weight is 5.5.
  double shared = (5.5 * sxy - sx * sy) / sqrt((5.5 * sxx - sx * sx) * (5.5 * syy - sy * sy));
  EXPECT_GT(fabs(Cost("Pearson", m, 0, 1) - shared), 1e-3);
  double uncentred = sxy / (1.0 + 1.5 + 3.0);
  EXPECT_NEAR(Cost("UncenteredPearson", m, 0, 1), uncentred, 1e-12);
}

TEST_F(MetricTest, EuclideanScalesUpForAbsentDimensions) {
  Matrix_sptr m = MakeMatrix({{1.0, M, 3.0, 0.0}, {2.0, 5.0, 1.0, M}});
  Vector_tmpl<double> weights(4, 0.0);
  for (double w : {2.0, 1.0, 0.5, 1.0}) weights.AddLast(w);
  ClusteringMetric_cl::SetDimensionWeights(&weights);
  double s = 2.0 * 1.0 + 0.5 * 4.0;  // dimensions 0 and 2 are shared
  EXPECT_NEAR(Cost("Euclidean", m, 0, 1), sqrt(4.0 / (4 - 2 + 1) * s), 1e-12);
}

TEST_F(MetricTest, EuclideanListCostIsTheMeanPairwiseDistance) {
  Matrix_sptr m = MakeMatrix({{0.0, 0.0}, {3.0, 4.0}, {6.0, 8.0}, {M, M}});
  Vector_tmpl<ClusteringMetric_cl*> list(4, nullptr);
  for (int r = 0; r < 4; r++) list.AddLast(Make("Euclidean", m, r));
  ClusteringMetric_cl* c = ClusteringMetricFactory_cl::CreateMetric(Name_sptr("Euclidean"));
  c->ComputeCost(&list);
  // The empty row neither counts as an object nor adds a pair; with both dimensions shared each
  // distance is scaled by D / (D - c + 1) = 2 under the root.
  EXPECT_NEAR(c->GetCost(), sqrt(2.0) * (5.0 + 10.0 + 5.0) / 3.0, 1e-12);
  EXPECT_EQ(c->GetValidDimensions(), 2);
  c->Combine(&list);
  const ClusteringMetricProfile_cl* p = static_cast<const ClusteringMetricProfile_cl*>(c);
  EXPECT_NEAR(p->GetProfile()[0], 3.0, 1e-12);
  EXPECT_NEAR(p->GetProfile()[1], 4.0, 1e-12);
  EXPECT_EQ(p->GetCount(), 3.0);
  list.DeleteAll();
  delete c;
}

TEST_F(MetricTest, NoCommonDimensionGivesTheMissingCostWithLowestPriority) {
  Matrix_sptr m = MakeMatrix({{1.0, M, 2.0}, {M, 3.0, M}, {1.5, 2.0, 2.5}});
  for (const char* name : {"Euclidean", "Pearson", "UncenteredPearson"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(Cost(name, m, 0, 1), M);
    ClusteringMetric_cl* missing = ClusteringMetricFactory_cl::CreateMetric(Name_sptr(name));
    ClusteringMetric_cl* present = ClusteringMetricFactory_cl::CreateMetric(Name_sptr(name));
    present->SetCost(-1.0);
    EXPECT_TRUE(present->IHaveHigherPriority(missing));
    EXPECT_FALSE(missing->IHaveHigherPriority(present));
    EXPECT_FALSE(missing->IHaveHigherPriority(missing));
    delete missing;
    delete present;
  }
}

TEST_F(MetricTest, PearsonPutsTheHighestCostFirstOthersTheLowest) {
  ClusteringMetric_cl* high = ClusteringMetricFactory_cl::CreateMetric(Name_sptr("Pearson"));
  ClusteringMetric_cl* low = ClusteringMetricFactory_cl::CreateMetric(Name_sptr("Pearson"));
  high->SetCost(0.9);
  low->SetCost(0.1);
  EXPECT_TRUE(high->IHaveHigherPriority(low));
  EXPECT_FALSE(low->IHaveHigherPriority(high));
  EXPECT_FALSE(high->IHaveHigherPriority(high));
  ClusteringMetric_cl* near = ClusteringMetricFactory_cl::CreateMetric(Name_sptr("Euclidean"));
  ClusteringMetric_cl* far = ClusteringMetricFactory_cl::CreateMetric(Name_sptr("Euclidean"));
  near->SetCost(0.1);
  far->SetCost(0.9);
  EXPECT_TRUE(near->IHaveHigherPriority(far));
  EXPECT_FALSE(far->IHaveHigherPriority(near));
  for (ClusteringMetric_cl* m : {high, low, near, far}) delete m;
}

TEST_F(MetricTest, PearsonMergeIsTheCountWeightedMeanOfPresentCells) {
  Matrix_sptr m = MakeMatrix({{1.0, M, 3.0, M}, {2.0, 4.0, M, M}, {4.0, 1.0, 1.0, 7.0}});
  ClusteringMetric_cl* a = Make("Pearson", m, 0);
  ClusteringMetric_cl* b = Make("Pearson", m, 1);
  ClusteringMetric_cl* ab = a->GetEmpty();
  ab->Combine(a, b);
  const ClusteringMetricProfile_cl* p = static_cast<const ClusteringMetricProfile_cl*>(ab);
  EXPECT_EQ(p->GetProfile()[0], 1.5);
  EXPECT_EQ(p->GetProfile()[1], 4.0);
  EXPECT_EQ(p->GetProfile()[2], 3.0);
  EXPECT_EQ(p->GetProfile()[3], M);
  EXPECT_EQ(ab->GetValidDimensions(), 1);
  EXPECT_EQ(p->GetCount(), 2.0);
  // A group of two against one row weighs the group twice.
  ClusteringMetric_cl* c = Make("Pearson", m, 2);
  ClusteringMetric_cl* abc = a->GetEmpty();
  abc->Combine(ab, c);
  const ClusteringMetricProfile_cl* q = static_cast<const ClusteringMetricProfile_cl*>(abc);
  EXPECT_NEAR(q->GetProfile()[0], (1.5 * 2 + 4.0) / 3, 1e-12);
  EXPECT_EQ(q->GetProfile()[3], 7.0);
  // The list forms agree with the pairwise merge.
  Vector_tmpl<int> rows(3, 0);
  for (int r : {0, 1, 2}) rows.AddLast(r);
  ClusteringMetric_cl* all = a->GetEmpty();
  all->Init(m, &rows);
  for (int i = 0; i < 4; i++)
    EXPECT_NEAR(static_cast<const ClusteringMetricProfile_cl*>(all)->GetProfile()[i], q->GetProfile()[i], 1e-12);
  std::ostringstream out;
  static_cast<ClusteringMetricPearson_cl*>(all)->ComputeStats();
  all->Print(out);
  EXPECT_EQ(out.str().substr(0, 8), "$NaN$,3,");
  for (ClusteringMetric_cl* x : {a, b, ab, c, abc, all}) delete x;
}

TEST_F(MetricTest, ListCostMergesAllButTheLastAgainstTheLast) {
  Matrix_sptr m = MakeMatrix({{1.0, 2.0, 3.0, 5.0}, {2.0, 1.0, 4.0, 4.0}, {0.0, 3.0, 1.0, 6.0}});
  Vector_tmpl<ClusteringMetric_cl*> list(3, nullptr);
  for (int r = 0; r < 3; r++) list.AddLast(Make("Pearson", m, r));
  ClusteringMetric_cl* cost = list[0]->GetEmpty();
  cost->ComputeCost(&list);
  ClusteringMetric_cl* head = list[0]->GetEmpty();
  head->Combine(list[0], list[1]);
  ClusteringMetric_cl* direct = list[0]->GetEmpty();
  direct->ComputeCost(head, list[2]);
  EXPECT_NEAR(cost->GetCost(), direct->GetCost(), 1e-12);
  list.DeleteAll();
  for (ClusteringMetric_cl* x : {cost, head, direct}) delete x;
}

TEST(MetricDeathTest, UnknownMetricStops) {
  EXPECT_DEATH(ClusteringMetricFactory_cl::CreateMetric(Name_sptr("Manhattan")), "^Unrecognized metric Manhattan\n");
}
}  // namespace
