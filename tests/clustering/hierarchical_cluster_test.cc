// Tests of the older engine on weighted neighbour graphs: linkages, merge order, stops and the step.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "clustering/hierarchical_cluster.h"
#include "clustering/sparse_cluster_node.h"
#include "clustering/vorn_step_clustering.h"
#include "data/vorn_data.h"
#include "pipeline/graph.h"
#include "pipeline/vorn_run.h"
#include "pipeline/xml_parser.h"

namespace {
class TestEdge_cl;
class TestNode_cl : public UNode_tmpl<TestNode_cl, TestEdge_cl> {
 public:
  TestNode_cl(int id, const char* name) : UNode_tmpl(id), iName(name) {}
  Name_sptr GetName() const { return iName; }

 private:
  Name_sptr iName;
};
class TestEdge_cl : public UEdge_tmpl<TestNode_cl> {
 public:
  TestEdge_cl(TestNode_cl* a, TestNode_cl* b) : UEdge_tmpl(a, b) {}
  double GetWeight() const { return iWeight; }
  double iWeight = 0.0;
};
using TestGraph_cl = UndirectedGraph_tmpl<TestNode_cl, TestEdge_cl>;

// Nodes named a, b, c, ... and the weighted edges given as {"ab", 1.5}.
ClusterGraph_cl* MakeRelation(int nodes, std::initializer_list<std::pair<const char*, double>> edges) {
  TestGraph_cl graph;
  for (int i = 0; i < nodes; i++) graph.AddNode(new TestNode_cl(i, std::string(1, char('a' + i)).c_str()));
  for (auto& [pair, weight] : edges)
    graph.AddEdge(graph.GetNodeAt(pair[0] - 'a'), graph.GetNodeAt(pair[1] - 'a'))->iWeight = weight;
  return ClusterGraph_cl::FromGraph(graph);
}

std::string Clustered(const ClusterGraph_cl& relation, ClusterLinkageMethod_cl linkage, double percent,
                      int numClusters, double minCost = 0.0) {
  HierarchicalCluster_cl engine(numClusters, 1, minCost);
  for (int i = 0; i < relation.GetNumObjects(); i++)
    engine.AddNode(new SparseClusterNode_cl(&relation, i, linkage, percent));
  testing::internal::CaptureStderr();
  engine.Run();
  testing::internal::GetCapturedStderr();
  std::ostringstream out;
  engine.WriteFile(out);
  return out.str();
}

TEST(ClusterGraphTest, CopiesTheGraphsLinksBothWays) {
  ClusterGraph_cl* relation = MakeRelation(4, {{"ab", 1.5}, {"cb", 2.0}, {"dd", 9.0}});
  ASSERT_EQ(relation->GetNumObjects(), 4);
  EXPECT_STREQ(relation->GetName(2)->GetText(), "c");
  EXPECT_TRUE(relation->IsLinked(0, 1) && relation->IsLinked(1, 0) && relation->IsLinked(1, 2));
  EXPECT_DOUBLE_EQ(relation->GetWeight(2, 1), 2.0);
  EXPECT_FALSE(relation->IsLinked(0, 2));
  EXPECT_FALSE(relation->IsLinked(3, 3));
  relation->AddLink(1, 0, 4.0);
  EXPECT_DOUBLE_EQ(relation->GetWeight(0, 1), 4.0);
  delete relation;
}

TEST(SparseClusterNodeTest, LinkagesReadTheSortedLinkWeights) {
  // {a, b} against {c, d}: links ac 4, ad 1, bc 3; bd missing.
  ClusterGraph_cl* relation = MakeRelation(4, {{"ac", 4}, {"ad", 1}, {"bc", 3}, {"ab", 0.5}, {"cd", 0.5}});
  auto cost = [&](ClusterLinkageMethod_cl linkage, double percent) {
    SparseClusterNode_cl a(relation, 0, linkage, percent), b(relation, 1, linkage, percent);
    SparseClusterNode_cl c(relation, 2, linkage, percent), d(relation, 3, linkage, percent);
    SparseClusterNode_cl ab(&a, &b), cd(&c, &d);
    ClusterNode_cl* merged = ab.CreateMergedNode(&cd);
    double result = merged->GetCost();
    int canMerge = ab.CanMergeWith(&cd);
    delete merged;
    return std::make_pair(result, canMerge);
  };
  // Sorted weights 1, 3, 4; r = round(4 * percent), kept between 1 and the 3 links.
  EXPECT_EQ(cost(MIN_LINKAGE, 0.75), std::make_pair(1.0, 1));
  EXPECT_EQ(cost(MAX_LINKAGE, 0.75), std::make_pair(4.0, 1));
  EXPECT_EQ(cost(MAX_LINKAGE, 0.5), std::make_pair(3.0, 1));
  EXPECT_EQ(cost(MAX_LINKAGE, 0.1), std::make_pair(1.0, 1));
  EXPECT_EQ(cost(AVERAGE_LINKAGE, 0.5), std::make_pair(2.0, 1));
  EXPECT_EQ(cost(AVERAGE_LINKAGE, 1.0), std::make_pair(8.0 / 3, 0));
  // One unlinked pair of the four is allowed while round((1 - percent) * 4) is at least 1.
  EXPECT_EQ(cost(MIN_LINKAGE, 0.8).second, 1);
  EXPECT_EQ(cost(MIN_LINKAGE, 0.9).second, 0);
  delete relation;
}

TEST(SparseClusterNodeTest, MergesOnlyWithOtherNodesOfTheSameLinkage) {
  ClusterGraph_cl* relation = MakeRelation(2, {{"ab", 1}});
  SparseClusterNode_cl a(relation, 0, MIN_LINKAGE, 1.0), b(relation, 1, MIN_LINKAGE, 1.0);
  SparseClusterNode_cl bMax(relation, 1, MAX_LINKAGE, 1.0);
  EXPECT_TRUE(a.CanMergeWith(&b));
  EXPECT_FALSE(a.CanMergeWith(&a));
  EXPECT_FALSE(a.CanMergeWith(&bMax));
  // A pair with no link at all has no cost, and a missing cost never comes first.
  SparseClusterNode_cl lone(relation, 0, MIN_LINKAGE, 0.0), other(relation, 0, MIN_LINKAGE, 0.0);
  ClusterNode_cl* merged = lone.CreateMergedNode(&other);
  ClusterNode_cl* linked = a.CreateMergedNode(&b);
  EXPECT_EQ(merged->GetCost(), kMissingReal);
  EXPECT_TRUE(linked->IHaveHigherPriority(merged));
  EXPECT_FALSE(merged->IHaveHigherPriority(linked));
  delete merged;
  delete linked;
  delete relation;
}

TEST(HierarchicalClusterTest, MergesTheCheapestLinksFirstAndStopsAtTheClusterCount) {
  // Two triangles joined by one expensive link.
  ClusterGraph_cl* relation =
      MakeRelation(6, {{"ab", 1}, {"bc", 2}, {"ac", 3}, {"de", 1.5}, {"ef", 2.5}, {"df", 0.5}, {"cd", 10}});
  // Roots in the order they were made; d-f (0.5) first, then a-b (1), e joins d-f (1.5), c a-b (2).
  EXPECT_EQ(Clustered(*relation, MIN_LINKAGE, 0.0, 2),
            "**\t**\t**\t3\t1.5\nd\nf\ne\n"
            "**\t**\t**\t3\t2\na\nb\nc\n");
  EXPECT_EQ(Clustered(*relation, MIN_LINKAGE, 0.0, 1), "**\t**\t**\t6\t10\na\nb\nc\nd\nf\ne\n");
  // Every leaf pair must be linked: the triangles close, and nothing joins them.
  EXPECT_EQ(Clustered(*relation, MAX_LINKAGE, 1.0, 1),
            "**\t**\t**\t3\t2.5\ne\nd\nf\n"
            "**\t**\t**\t3\t3\na\nb\nc\n");
  // Links cheaper than the least cost are never merged.
  EXPECT_EQ(Clustered(*relation, MIN_LINKAGE, 0.0, 1, 2.0),
            "**\t**\t**\ta\na\n**\t**\t**\td\nd\n**\t**\t**\te\ne\n**\t**\t**\tf\nf\n"
            "**\t**\t**\t2\t2\nc\nb\n");
  delete relation;
}

TEST(HierarchicalClusterTest, ReportsProgressAndTheFinalActiveSet) {
  ClusterGraph_cl* relation = MakeRelation(3, {{"ab", 1}, {"bc", 2}});
  HierarchicalCluster_cl engine(1, 2, 0.0);
  for (int i = 0; i < 3; i++) engine.AddNode(new SparseClusterNode_cl(relation, i, AVERAGE_LINKAGE, 0.5));
  testing::internal::CaptureStderr();
  engine.Run();
  std::string log = testing::internal::GetCapturedStderr();
  EXPECT_NE(log.find("HierarchicalCluster_cl::HeapifyNearestNeighbors  Init node 0 of 3\n"), std::string::npos);
  EXPECT_NE(log.find("HierarchicalCluster_cl::Run Done. ActiveSetSize=1\n"), std::string::npos);
  EXPECT_EQ(engine.GetActiveSet().GetSize(), 1);
  EXPECT_EQ(engine.GetNumNodes(), 5);
  delete relation;
}

// The step reads its keys from its element and runs the engine on a relation made here.
class ClusteringStepTest : public ::testing::Test {
 protected:
  void SetUp() override {
    static XmlParser_cl* parser = new XmlParser_cl;
    iParser = parser;
    char pattern[] = "/tmp/vorn_clustering_step_XXXXXX";
    iDir = mkdtemp(pattern);
    xercesc::DOMDocument* runDoc = iParser->ParseBuffer(kRun, sizeof(kRun) - 1, "run.xml");
    XmlIter_cl runIter(runDoc->getDocumentElement());
    testing::internal::CaptureStderr();
    iRun = new VornRun_cl(&runIter, &iData);
    testing::internal::GetCapturedStderr();
  }
  void TearDown() override {
    delete iRun;
    std::system(("rm -rf " + iDir).c_str());
  }
  VornStepClustering_cl* MakeStep(const std::string& attributes) {
    std::string xml = "<Step Type=\"Clustering\" Name=\"c\" " + attributes + "/>";
    xercesc::DOMDocument* doc = iParser->ParseBuffer(xml.data(), xml.size(), "step.xml");
    XmlIter_cl iter(doc->getDocumentElement());
    return new VornStepClustering_cl(&iter, iRun);
  }

  static constexpr char kRun[] = "<Run Name=\"r\"/>";
  XmlParser_cl* iParser = nullptr;
  VornData_cl iData;
  VornRun_cl* iRun = nullptr;
  std::string iDir;
};

TEST_F(ClusteringStepTest, ClustersAGraphAndWritesItsClusters) {
  ClusterGraph_cl* relation = MakeRelation(4, {{"ab", 1}, {"cd", 2}, {"bc", 3}});
  std::string file = iDir + "/clusters.txt";
  VornStepClustering_cl* step =
      MakeStep("GeneGraphName=\"g\" LinkageMethod=\"MinLinkage\" Method=\"Hierarchical\" NumClusters=\"2\" "
               "OutputFile=\"" + file + "\"");
  EXPECT_DEATH(step->Run(), "VornStepClustering_cl::Run linkage method: MinLinkage\n"
                           "VornStepClustering_cl::Run linkage percent: 1\n"
                           "VornStepClustering_cl::Run Unknown gene graph g\n");
  testing::internal::CaptureStderr();
  step->ReadKeys();
  step->ClusterGraph(*relation);
  std::string log = testing::internal::GetCapturedStderr();
  EXPECT_NE(log.find("VornStepClustering_cl::Run clustering\nHierarchicalCluster_cl::HeapifyNearestNeighbors"),
            std::string::npos);
  EXPECT_NE(log.find("VornStepClustering_cl::Run Output file\nVornStepClustering_cl::Run WriteFile\n"),
            std::string::npos);
  std::ifstream in(file);
  std::stringstream text;
  text << in.rdbuf();
  EXPECT_EQ(text.str(), "**\t**\t**\t2\t1\na\nb\n**\t**\t**\t2\t2\nc\nd\n");
  delete step;
  delete relation;
}

TEST_F(ClusteringStepTest, StopsOnBadKeys) {
  ClusterGraph_cl* relation = MakeRelation(2, {{"ab", 1}});
  VornStepClustering_cl* noLinkage = MakeStep("GeneGraphName=\"g\"");
  EXPECT_DEATH(noLinkage->ReadKeys(), "EnumConverter_tmpl::FromString Unrecognized type <NULL>\n");
  VornStepClustering_cl* badLinkage = MakeStep("GeneGraphName=\"g\" LinkageMethod=\"Single\"");
  EXPECT_DEATH(badLinkage->ReadKeys(), "EnumConverter_tmpl::FromString Unrecognized type Single\n");
  VornStepClustering_cl* badMethod = MakeStep("LinkageMethod=\"MaxLinkage\" Method=\"K-means\"");
  badMethod->ReadKeys();
  EXPECT_DEATH(badMethod->ClusterGraph(*relation), "Cluster_cl::Create unrecognized clustering method\n");
  VornStepClustering_cl* badFile = MakeStep("LinkageMethod=\"MaxLinkage\" Method=\"Hierarchical\" OutputFile=\"" +
                                            iDir + "/no/such/dir/x\"");
  badFile->ReadKeys();
  EXPECT_DEATH(badFile->ClusterGraph(*relation), "VornStepClustering_cl::Run Cannot write file .*/no/such/dir/x\n");
  delete noLinkage;
  delete badLinkage;
  delete badMethod;
  delete badFile;
  delete relation;
}
}  // namespace
