// Graphs: topological order, depth-first components, id look-up, edge ownership and the layout file.
#include "pipeline/graph.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace {

class DNode;
class DEdge : public DEdge_tmpl<DNode> {
 public:
  DEdge(DNode* from, DNode* to) : DEdge_tmpl<DNode>(from, to) { iLive++; }
  ~DEdge() override { iLive--; }
  static int iLive;
};
int DEdge::iLive = 0;
class DNode : public DNode_tmpl<DNode, DEdge> {
 public:
  explicit DNode(int id) : DNode_tmpl<DNode, DEdge>(id) {}
};
using DGraph = DirectedGraph_tmpl<DNode, DEdge>;

class UNode;
class UEdge : public UEdge_tmpl<UNode> {
 public:
  UEdge(UNode* a, UNode* b) : UEdge_tmpl<UNode>(a, b) { iLive++; }
  ~UEdge() override { iLive--; }
  static int iLive;
};
int UEdge::iLive = 0;
class UNode : public UNode_tmpl<UNode, UEdge> {
 public:
  explicit UNode(int id) : UNode_tmpl<UNode, UEdge>(id) {}
};
using UGraph = UndirectedGraph_tmpl<UNode, UEdge>;

template <class Graph, class Node>
std::vector<Node*> MakeNodes(Graph& g, int n) {
  std::vector<Node*> nodes(n + 1, nullptr);
  for (int i = 1; i <= n; i++) g.AddNode(nodes[i] = new Node(i));
  return nodes;
}

template <class Node>
std::vector<int> Ids(Vector_tmpl<Node*>* nodes) {
  std::vector<int> ids;
  for (int i = 0; i < nodes->GetSize(); i++) ids.push_back((*nodes)[i]->GetId());
  delete nodes;
  return ids;
}

}  // namespace

TEST(DirectedGraph, TopologicalSortFillsFromTheEndAsNodesFinish) {
  DGraph g;
  auto n = MakeNodes<DGraph, DNode>(g, 5);
  g.AddEdge(n[1], n[3]);
  g.AddEdge(n[1], n[2]);
  g.AddEdge(n[2], n[4]);
  g.AddEdge(n[3], n[4]);
  g.AddEdge(n[5], n[1]);
  int ok = -1;
  // Walk from 1: 3, 4 finish, then 2, then 1; 5 is reached last and lands in front.
  EXPECT_EQ(Ids(g.TopologicalSort(&ok)), (std::vector<int>{5, 1, 2, 3, 4}));
  EXPECT_EQ(ok, 1);
  g.AddEdge(n[4], n[5]);  // closes 5 -> 1 -> 3 -> 4 -> 5
  EXPECT_EQ(Ids(g.TopologicalSort(&ok)), (std::vector<int>{1, 2, 3, 4, 5}));
  EXPECT_EQ(ok, 0);
}

TEST(DirectedGraph, SelfLoopIsACycleAndLongChainsNeedNoDeepRecursion) {
  DGraph loop;
  auto n = MakeNodes<DGraph, DNode>(loop, 1);
  loop.AddEdge(n[1], n[1]);
  int ok = -1;
  delete loop.TopologicalSort(&ok);
  EXPECT_EQ(ok, 0);

  DGraph chain(16);
  const int length = 300000;
  auto c = MakeNodes<DGraph, DNode>(chain, length);
  for (int i = length; i > 1; i--) chain.AddEdge(c[i], c[i - 1]);
  Vector_tmpl<DNode*>* order = chain.TopologicalSort(&ok);
  EXPECT_EQ(ok, 1);
  EXPECT_EQ((*order)[0]->GetId(), length);
  EXPECT_EQ((*order)[length - 1]->GetId(), 1);
  delete order;
}

TEST(DirectedGraph, RemovingANodeDeletesItsEdgesAtBothEnds) {
  DEdge::iLive = 0;
  {
    DGraph g;
    auto n = MakeNodes<DGraph, DNode>(g, 3);
    g.AddEdge(n[1], n[2]);
    g.AddEdge(n[2], n[3]);
    g.AddEdge(n[3], n[1]);
    g.AddEdge(n[2], n[2]);
    EXPECT_EQ(DEdge::iLive, 4);
    g.RemoveNode(n[2]);
    EXPECT_EQ(DEdge::iLive, 1);
    EXPECT_EQ(n[1]->GetNumChildren(), 0);
    EXPECT_EQ(n[3]->GetNumParents(), 0);
    EXPECT_EQ(n[1]->GetParent(0), n[3]);
    EXPECT_EQ(g.GetNumNodes(), 2);
    g.RemoveEdge(n[1]->GetParentEdge(0));
    EXPECT_EQ(DEdge::iLive, 0);
    g.AddEdge(n[1], n[3]);
  }
  EXPECT_EQ(DEdge::iLive, 0);
}

TEST(Graph, GetNodeByIdAcrossTableRebuildsAndRemovals) {
  DGraph g;
  std::vector<DNode*> nodes;
  for (int i = 0; i < 100; i++) {
    nodes.push_back(new DNode(1000 + i));
    g.AddNode(nodes.back());
    // Looking up after every addition rebuilds the table whenever the graph outgrew it.
    ASSERT_EQ(g.GetNode(1000 + i / 2), nodes[i / 2]);
  }
  g.RemoveNode(nodes[40]);
  EXPECT_EQ(g.GetNode(1040), nullptr);
  EXPECT_EQ(g.GetNode(1041), nodes[41]);
  g.DetachNode(nodes[41]);
  EXPECT_EQ(g.GetNode(1041), nullptr);
  EXPECT_EQ(g.GetNumNodes(), 98);
  delete nodes[41];
}

TEST(UndirectedGraph, ComponentsFollowNodeOrderAndFirstLargestWins) {
  UEdge::iLive = 0;
  {
    UGraph g;
    auto n = MakeNodes<UGraph, UNode>(g, 7);
    g.AddEdge(n[4], n[5]);
    g.AddEdge(n[3], n[2]);
    g.AddEdge(n[1], n[3]);
    g.AddEdge(n[7], n[7]);
    g.AddEdge(n[6], n[5]);
    EXPECT_EQ(g.GetNumOfEdges(), 5);
    EXPECT_EQ(g.GetConnectedComponents(), 2 + 1);  // {1,2,3}, {4,5,6}, {7}
    EXPECT_EQ(n[2]->GetComponent(), 0);
    EXPECT_EQ(n[6]->GetComponent(), 1);
    EXPECT_EQ(n[7]->GetComponent(), 2);
    // Both big components have three nodes: the first found wins, listed in visiting order.
    EXPECT_EQ(Ids(g.GetLargestConnectedComponent()), (std::vector<int>{1, 3, 2}));
    std::vector<UNode*> order(8, nullptr);
    EXPECT_EQ(g.DFS(order.data()), 3);
    EXPECT_EQ(order[3]->GetId(), 4);
    EXPECT_EQ(order[4]->GetId(), 5);
    EXPECT_EQ(order[5]->GetId(), 6);
    g.AddEdge(n[3], n[4]);
    EXPECT_EQ(g.GetConnectedComponents(), 2);
    EXPECT_EQ(UEdge::iLive, 6);
    g.DeleteEdges();
    EXPECT_EQ(UEdge::iLive, 0);
    EXPECT_EQ(g.GetConnectedComponents(), 7);
    g.AddEdge(n[1], n[2]);
  }
  EXPECT_EQ(UEdge::iLive, 0);
}

TEST(UndirectedGraph, IsTreeNeedsOneComponentAndOneEdgeFewerThanNodes) {
  UGraph g;
  EXPECT_FALSE(g.IsTree());
  auto n = MakeNodes<UGraph, UNode>(g, 4);
  EXPECT_FALSE(g.IsTree());
  g.AddEdge(n[1], n[2]);
  g.AddEdge(n[1], n[3]);
  g.AddEdge(n[3], n[4]);
  EXPECT_TRUE(g.IsTree());
  UEdge* extra = g.AddEdge(n[2], n[4]);
  EXPECT_FALSE(g.IsTree());
  g.RemoveEdge(extra);
  EXPECT_TRUE(g.IsTree());
  g.RemoveNode(n[4]);
  EXPECT_TRUE(g.IsTree());
  g.AddNode(new UNode(9));
  EXPECT_FALSE(g.IsTree());
}

TEST(Graph, GraphEasyFileHeaderThenEachNodesText) {
  DGraph empty;
  std::ostringstream none;
  empty.WriteGraphEasyFile(none, "x", nullptr, nullptr);
  EXPECT_EQ(none.str(), "");

  DGraph g;
  auto n = MakeNodes<DGraph, DNode>(g, 2);
  g.AddEdge(n[1], n[2]);
  std::ostringstream plain;
  g.WriteGraphEasyFile(plain, "modules", nullptr, nullptr);
  EXPECT_EQ(plain.str(),
            "graph { align: center; label: modules; }\n"
            "node { fill: orange; align: left; }\n"
            "\n"
            "[ 1 ]\n"
            "[ 1 ] --> [ 2 ]\n"
            "[ 2 ]\n");
  std::ostringstream styled;
  g.WriteGraphEasyFile(styled, "m", "fill: blue;", "color: red;");
  EXPECT_NE(styled.str().find("node { fill: blue; }\n\n"), std::string::npos);
  EXPECT_NE(styled.str().find("[ 1 ] --> [ 2 ] { color: red; }\n"), std::string::npos);

  UGraph u;
  auto m = MakeNodes<UGraph, UNode>(u, 2);
  u.AddEdge(m[2], m[1]);
  std::ostringstream undirected;
  u.WriteGraphEasyFile(undirected, "g", nullptr, nullptr);
  EXPECT_NE(undirected.str().find("[ 1 ]\n[ 2 ]\n[ 2 ] -- [ 1 ]\n"), std::string::npos);
}
