// The batched pair costs of the hierarchical engine give the very tree that pair-by-pair costs give.
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>

#include "clustering/hierarchical_clustering.h"
#include "pipeline/missing.h"
#include "pipeline/random.h"

namespace {
// Centred Pearson computed pair by pair only: the plain road.
class PlainPearson_cl : public ClusteringMetricPearson_cl {
 public:
  PlainPearson_cl() : ClusteringMetricPearson_cl(1) {}
  ClusteringMetric_cl* GetEmpty() const override { return new PlainPearson_cl; }
  void ComputeCosts(ClusteringMetric_cl* a, ClusteringMetric_cl* const* others, int n, double* costs) override {
    ClusteringMetric_cl::ComputeCosts(a, others, n, costs);
  }
};

// Rows drawn from a few integer profiles, so that many pairs tie exactly; every missingEvery-th row
// lacks one cell, so that blocks of partners mix complete and incomplete profiles.
Matrix_sptr TiedMatrix(int rows, int cols, int profiles, int missingEvery, long seed) {
  Random_cl::iGlobalRandomizer.Reset(seed);
  Matrix_sptr pool(new Matrix_cl(profiles, cols));
  for (int p = 0; p < profiles; p++)
    for (int c = 0; c < cols; c++)
      pool->SetElement(p, c, static_cast<int>(Random_cl::iGlobalRandomizer.SampleUniform() * 3));
  Matrix_sptr m(new Matrix_cl(rows, cols));
  for (int r = 0; r < rows; r++) {
    int p = static_cast<int>(Random_cl::iGlobalRandomizer.SampleUniform() * profiles);
    for (int c = 0; c < cols; c++) {
      double v = pool->GetElement(p, c);
      m->SetElement(r, c, missingEvery && r % missingEvery == 0 && c == r % cols ? kMissingReal : v);
    }
  }
  return m;
}

// The whole tree as text: every node in drawing order with its children and cost, bit for bit.
std::string Tree(Matrix_sptr m, int plain, int maxMerges, int numClusters) {
  HierarchicalClustering_cl engine(Name_sptr("Pearson"), maxMerges);
  Vector_tmpl<ClusteringMetric_cl*>* metrics = new Vector_tmpl<ClusteringMetric_cl*>(m->GetNumRows() + 1, nullptr);
  for (int r = 0; r < m->GetNumRows(); r++) {
    ClusteringMetric_cl* metric = plain ? new PlainPearson_cl : new ClusteringMetricPearson_cl(1);
    metric->Init(m, r);
    metrics->AddLast(metric);
  }
  engine.SetData(m);
  engine.Load(metrics);
  testing::internal::CaptureStderr();
  engine.Cluster(numClusters);
  testing::internal::GetCapturedStderr();
  std::ostringstream out;
  Vector_tmpl<ClusteringNode_cl*>* nodes = engine.GetLinearOrdering();
  for (int i = 0; i < nodes->GetSize(); i++) {
    ClusteringNode_cl* node = (*nodes)[i];
    double cost = node->GetMetric()->GetCost();
    long long bits;
    memcpy(&bits, &cost, sizeof bits);
    out << node->GetId();
    for (int c = 0; c < node->GetNumChildren(); c++) out << " " << node->GetChild(c)->GetId();
    out << " " << bits << "\n";
  }
  delete nodes;
  return out.str();
}

TEST(BatchedCostsTest, SameTreeAsPairByPairWithManyExactTies) {
  for (int missingEvery : {0, 7}) {
    for (int maxMerges : {0, 1, 5}) {
      SCOPED_TRACE(testing::Message() << "missing every " << missingEvery << ", max merges " << maxMerges);
      Matrix_sptr m = TiedMatrix(300, 6, 12, missingEvery, 3 + maxMerges);
      EXPECT_EQ(Tree(m, 0, maxMerges, 1), Tree(m, 1, maxMerges, 1));
      EXPECT_EQ(Tree(m, 0, maxMerges, 4), Tree(m, 1, maxMerges, 4));
    }
  }
}

TEST(BatchedCostsTest, SameTreeAsPairByPairOnNoisyProfiles) {
  Random_cl::iGlobalRandomizer.Reset(9);
  Matrix_sptr m(new Matrix_cl(200, 37));
  for (int r = 0; r < 200; r++)
    for (int c = 0; c < 37; c++) m->SetElement(r, c, (r % 5) * (c % 3) + Random_cl::iGlobalRandomizer.SampleNormal());
  EXPECT_EQ(Tree(m, 0, 5, 1), Tree(m, 1, 5, 1));
}

TEST(BatchedCostsTest, BatchedCostsEqualPairCostsBitForBit) {
  Matrix_sptr m = TiedMatrix(41, 13, 5, 3, 21);
  ClusteringMetricPearson_cl scratch(1);
  Vector_tmpl<ClusteringMetric_cl*> metrics(42, nullptr);
  for (int r = 0; r < 41; r++) {
    metrics.AddLast(new ClusteringMetricPearson_cl(1));
    metrics[r]->Init(m, r);
  }
  double costs[41];
  for (int a = 0; a < 41; a++) {
    scratch.ComputeCosts(metrics[a], metrics.GetData(), 41, costs);
    for (int b = 0; b < 41; b++) {
      scratch.ComputeCost(metrics[a], metrics[b]);
      double pair = scratch.GetCost();
      EXPECT_EQ(memcmp(&costs[b], &pair, sizeof pair), 0) << a << " " << b;
    }
  }
  metrics.DeleteAll();
}
}  // namespace
