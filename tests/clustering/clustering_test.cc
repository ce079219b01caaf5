// Tests of the hierarchical and k-means engines: planted groups, ties, tolerances and tree files.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "clustering/hierarchical_clustering.h"
#include "clustering/kmeans_clustering.h"
#include "data/data_file.h"
#include "pipeline/random.h"

namespace {
// Three well-separated groups of rows with noise and a few missing cells; row r is in group r % 3.
Matrix_sptr Planted(int rows, int cols, long seed) {
  Random_cl::iGlobalRandomizer.Reset(seed);
  double centres[3][4] = {{4, -4, 0, 2}, {-4, 0, 4, -2}, {0, 4, -4, 0}};
  Matrix_sptr m(new Matrix_cl(rows, cols));
  for (int r = 0; r < rows; r++)
    for (int c = 0; c < cols; c++) {
      double v = centres[r % 3][c % 4] + 0.5 * Random_cl::iGlobalRandomizer.SampleNormal();
      m->SetElement(r, c, (r * 7 + c) % 23 == 0 ? kMissingReal : v);
    }
  return m;
}

// Whether the assignment puts rows together exactly by r % 3.
void ExpectPlantedGroups(const Vector_tmpl<int>& assignment) {
  std::map<int, int> groupOf;
  for (int r = 0; r < assignment.GetSize(); r++) {
    ASSERT_GE(assignment[r], 0);
    auto found = groupOf.find(assignment[r]);
    if (found == groupOf.end()) groupOf[assignment[r]] = r % 3;
    else EXPECT_EQ(found->second, r % 3) << "row " << r;
  }
  EXPECT_EQ(groupOf.size(), 3u);
}

std::vector<std::vector<std::string>> ReadTable(const std::string& file) {
  std::vector<std::vector<std::string>> lines;
  std::ifstream in(file);
  std::string line;
  while (std::getline(in, line)) {
    std::vector<std::string> fields;
    std::stringstream s(line);
    std::string field;
    while (std::getline(s, field, '\t')) fields.push_back(field);
    if (!line.empty() && line.back() == '\t') fields.push_back("");
    lines.push_back(fields);
  }
  return lines;
}

class ScratchDir : public ::testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/vorn_clustering_XXXXXX";
    iDir = mkdtemp(pattern);
  }
  void TearDown() override { std::system(("rm -rf " + iDir).c_str()); }
  std::string iDir;
};

TEST(HierarchicalTest, RecoversPlantedGroupsUnderEachMetric) {
  for (const char* metric : {"Pearson", "Euclidean", "UncenteredPearson"}) {
    SCOPED_TRACE(metric);
    HierarchicalClustering_cl engine(Name_sptr(metric), 5);
    engine.Load(Planted(60, 8, 11), nullptr);
    engine.Cluster(3);
    EXPECT_EQ(engine.GetSolution().GetSize(), 3);
    Vector_tmpl<int>* clusters = engine.GetClusters();
    ExpectPlantedGroups(*clusters);
    delete clusters;
  }
}

TEST(HierarchicalTest, OneRootCutAtDepthGivesOneOrTwoClusters) {
  HierarchicalClustering_cl engine(Name_sptr("Pearson"), 5);
  engine.Load(Planted(30, 8, 5), nullptr);
  engine.Cluster(1);
  ASSERT_EQ(engine.GetSolution().GetSize(), 1);
  Vector_tmpl<int>* one = engine.GetClusters();
  for (int r = 0; r < one->GetSize(); r++) EXPECT_EQ((*one)[r], 0);
  engine.Cut(1);
  Vector_tmpl<int>* two = engine.GetClusters();
  std::set<int> seen;
  for (int r = 0; r < two->GetSize(); r++) seen.insert((*two)[r]);
  EXPECT_EQ(seen, (std::set<int>{0, 1}));
  delete one;
  delete two;
  // Every node of the tree once, leaves in the cluster order; n - 1 merges.
  Vector_tmpl<ClusteringNode_cl*>* nodes = engine.GetLinearOrdering();
  EXPECT_EQ(nodes->GetSize(), 59);
  delete nodes;
}

TEST(HierarchicalTest, KeepsAtMostMaxMergesPlusOneCandidatesYetFinishes) {
  for (int bound : {0, 1, 5}) {
    HierarchicalClustering_cl engine(Name_sptr("Euclidean"), bound);
    engine.Load(Planted(45, 6, 3), nullptr);
    engine.Cluster(3);
    Vector_tmpl<int>* clusters = engine.GetClusters();
    ExpectPlantedGroups(*clusters);
    delete clusters;
  }
}

TEST(HierarchicalTest, EqualCostMergesAreDecidedTheSameWayEveryRun) {
  // All rows equal: every candidate ties, so only the heap and active-set order decide.
  Matrix_sptr m(new Matrix_cl(9, 3));
  m->SetEntries(1.0);
  std::string first;
  for (int run = 0; run < 3; run++) {
    HierarchicalClustering_cl engine(Name_sptr("Euclidean"), 2);
    engine.Load(m, nullptr);
    engine.Cluster(1);
    Vector_tmpl<ClusteringNode_cl*>* nodes = engine.GetLinearOrdering();
    std::ostringstream shape;
    for (int i = 0; i < nodes->GetSize(); i++) shape << (*nodes)[i]->GetId() << ' ';
    delete nodes;
    if (run == 0) first = shape.str();
    else EXPECT_EQ(shape.str(), first);
  }
  // A second Cluster call on the same engine rebuilds the same tree from the kept leaves.
  HierarchicalClustering_cl engine(Name_sptr("Euclidean"), 2);
  engine.Load(m, nullptr);
  engine.Cluster(1);
  engine.Cluster(1);
  Vector_tmpl<ClusteringNode_cl*>* nodes = engine.GetLinearOrdering();
  std::ostringstream shape;
  for (int i = 0; i < nodes->GetSize(); i++) shape << (*nodes)[i]->GetId() << ' ';
  delete nodes;
  EXPECT_EQ(shape.str(), first);
}

TEST(HierarchicalTest, HeapTieKeepsTheEarlierCandidate) {
  // Rows 1 and 2 are both at distance 1 from row 0 and 2 apart: 0 pairs with whichever of them
  // the queue gives first, and the same one every time.
  Matrix_sptr m(new Matrix_cl(3, 1));
  m->SetElement(0, 0, 0.0);
  m->SetElement(1, 0, 1.0);
  m->SetElement(2, 0, -1.0);
  HierarchicalClustering_cl engine(Name_sptr("Euclidean"), 5);
  engine.Load(m, nullptr);
  engine.Cluster(1);
  ClusteringNode_cl* root = engine.GetSolution()[0];
  ASSERT_EQ(root->GetNumChildren(), 2);
  ClusteringNode_cl* pair = root->GetChild(0)->GetNumChildren() == 2 ? root->GetChild(0) : root->GetChild(1);
  std::set<int> ids = {pair->GetChild(0)->GetId(), pair->GetChild(1)->GetId()};
  EXPECT_TRUE(ids.count(0));
  EXPECT_NEAR(pair->GetMetric()->GetCost(), 1.0, 1e-12);
}

TEST(HierarchicalTest, SeparableClustersAreTightSubtreesUnderLooseParents) {
  HierarchicalClustering_cl engine(Name_sptr("Pearson"), 5);
  engine.Load(Planted(30, 8, 9), nullptr);
  engine.Cluster(1);
  Vector_tmpl<Vector_tmpl<int>*>* modules = engine.GetSeparableClusters(0.5, -2.0, 10);
  // Each planted group is a subtree of 10 rows with a correlation near 1 under a negative parent.
  ASSERT_EQ(modules->GetSize(), 3);
  for (int i = 0; i < modules->GetSize(); i++) {
    Vector_tmpl<int>* rows = (*modules)[i];
    EXPECT_EQ(rows->GetSize(), 10);
    for (int k = 1; k < rows->GetSize(); k++) EXPECT_EQ((*rows)[k] % 3, (*rows)[0] % 3);
  }
  modules->DeleteAll();
  delete modules;
}

TEST_F(ScratchDir, TreeViewFilesHaveTheLayoutTheViewerReads) {
  Matrix_sptr m = Planted(12, 5, 2);
  m->SetElement(4, 2, kMissingReal);
  HierarchicalClustering_cl engine(Name_sptr("Pearson"), 5);
  engine.Load(m, nullptr);
  engine.Cluster(1);
  Vector_tmpl<Name_sptr> rows(12, nullptr), columns(5, nullptr);
  for (int r = 0; r < 12; r++) rows.AddLast(Name_sptr(("gene" + std::to_string(r)).c_str()));
  for (int c = 0; c < 5; c++) columns.AddLast(Name_sptr(("exp" + std::to_string(c)).c_str()));
  std::string base = iDir + "/tree";
  engine.PrintTreeView(Name_sptr(base.c_str()), &rows, &columns);

  auto cdt = ReadTable(base + ".cdt");
  ASSERT_EQ(cdt.size(), 14u);
  EXPECT_EQ(cdt[0], (std::vector<std::string>{"GID", "Id", "Name", "GWEIGHT", "exp0", "exp1", "exp2", "exp3", "exp4"}));
  EXPECT_EQ(cdt[1], (std::vector<std::string>{"EWEIGHT", "", "", "", "1", "1", "1", "1", "1"}));
  Vector_tmpl<int>* order = engine.GetClusterOrder();
  std::set<std::string> genes;
  for (int i = 0; i < 12; i++) {
    const std::vector<std::string>& line = cdt[i + 2];
    ASSERT_EQ(line.size(), 9u);
    int row = (*order)[i];
    EXPECT_EQ(line[0], "GENE" + std::to_string(i) + "X");
    EXPECT_EQ(line[1], std::to_string(row + 1));
    EXPECT_EQ(line[2], "gene" + std::to_string(row));
    EXPECT_EQ(line[3], "1");
    for (int c = 0; c < 5; c++) EXPECT_EQ(line[4 + c].empty(), m->GetElement(row, c) == kMissingReal);
    genes.insert(line[0]);
  }
  delete order;

  auto gtr = ReadTable(base + ".gtr");
  ASSERT_EQ(gtr.size(), 11u);
  std::set<std::string> defined, used;
  for (size_t i = 0; i < gtr.size(); i++) {
    ASSERT_EQ(gtr[i].size(), 4u);
    EXPECT_EQ(gtr[i][0], "NODE" + std::to_string(i + 1) + "X");
    // Children are named before their parent, and every name is used once.
    for (int k : {1, 2}) {
      EXPECT_TRUE(genes.count(gtr[i][k]) || defined.count(gtr[i][k])) << gtr[i][k];
      EXPECT_TRUE(used.insert(gtr[i][k]).second) << gtr[i][k];
    }
    defined.insert(gtr[i][0]);
    double length = std::stod(gtr[i][3]);
    EXPECT_GE(length, -1.0);
    EXPECT_LE(length, 1.0);
  }
  EXPECT_EQ(used.size(), 12u + 10u);
  EXPECT_FALSE(used.count("NODE11X"));
}

TEST(HierarchicalTest, BranchLengthsSpreadNonPearsonCostsOverMinusOneToOne) {
  ClusteringMetric_cl* pearson = ClusteringMetricFactory_cl::CreateMetric(Name_sptr("Pearson"));
  ClusteringMetric_cl* euclidean = ClusteringMetricFactory_cl::CreateMetric(Name_sptr("Euclidean"));
  pearson->SetCost(0.25);
  euclidean->SetCost(3.0);
  EXPECT_EQ(HierarchicalClustering_cl::Metric2BranchLength(pearson, 0.0, 1.0), 0.25);
  EXPECT_EQ(HierarchicalClustering_cl::Metric2BranchLength(euclidean, 1.0, 5.0), 0.0);
  pearson->SetCost(kMissingReal);
  EXPECT_EQ(HierarchicalClustering_cl::Metric2BranchLength(pearson, 0.0, 1.0), 1.0);
  delete pearson;
  delete euclidean;
}

TEST(KmeansTest, RecoversPlantedGroups) {
  for (const char* metric : {"Euclidean", "Pearson"}) {
    SCOPED_TRACE(metric);
    // A seed whose first draw puts one centre in each group; k-means then settles at once.
    KmeansClustering_cl engine(Name_sptr(metric), 100, 0.01, 0.01);
    engine.Load(Planted(45, 8, 4), nullptr);
    Random_cl::iGlobalRandomizer.Reset(2);
    engine.Cluster(3);
    Vector_tmpl<int>* clusters = engine.GetClusters();
    ExpectPlantedGroups(*clusters);
    delete clusters;
    Vector_tmpl<int>* order = engine.GetClusterOrder();
    for (int i = 1; i < order->GetSize(); i++)
      if (i % 15) {
        EXPECT_EQ((*order)[i] % 3, (*order)[i - 1] % 3);
      }
    delete order;
  }
}

TEST(KmeansTest, TolerancesEndTheIterations) {
  Matrix_sptr m = Planted(45, 8, 4);
  // Nothing stops the first iteration; a tolerance above any change stops the second.
  KmeansClustering_cl loose(Name_sptr("Euclidean"), 100, 1e9, 0.0);
  loose.Load(m, nullptr);
  loose.Cluster(3);
  EXPECT_EQ(loose.GetNumIterations(), 2);
  KmeansClustering_cl capped(Name_sptr("Euclidean"), 1, 0.0, 0.0);
  capped.Load(m, nullptr);
  capped.Cluster(3);
  EXPECT_EQ(capped.GetNumIterations(), 1);
  // Negative tolerances are never reached: only MaxIterations ends the loop.
  KmeansClustering_cl strict(Name_sptr("Euclidean"), 7, -1.0, -1.0);
  strict.Load(m, nullptr);
  strict.Cluster(3);
  EXPECT_EQ(strict.GetNumIterations(), 7);
}

TEST(KmeansTest, AnEmptiedClusterStaysDead) {
  // Equal rows tie with every centre, and the first cluster takes them all.
  Matrix_sptr m(new Matrix_cl(4, 2));
  m->SetEntries(2.0);
  KmeansClustering_cl engine(Name_sptr("Euclidean"), 5, -1.0, -1.0);
  engine.Load(m, nullptr);
  testing::internal::CaptureStderr();
  engine.Cluster(2);
  std::string log = testing::internal::GetCapturedStderr();
  EXPECT_NE(log.find("Cluster 1 empty!\n"), std::string::npos);
  EXPECT_EQ(log.find("Cluster 1 empty!"), log.rfind("Cluster 1 empty!"));
  EXPECT_TRUE(engine.IsDead(1));
  Vector_tmpl<int>* clusters = engine.GetClusters();
  for (int r = 0; r < 4; r++) EXPECT_EQ((*clusters)[r], 0);
  delete clusters;
}

TEST(ClusteringDeathTest, KmeansHasNoTreeToPrint) {
  KmeansClustering_cl engine(Name_sptr("Euclidean"), 5, 0.0, 0.0);
  EXPECT_DEATH(engine.PrintTreeView(Name_sptr("x"), nullptr, nullptr),
               "^Clustering_cl::PrintTreeView The method K-means builds no tree\n");
}
}  // namespace
