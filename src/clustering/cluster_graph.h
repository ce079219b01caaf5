// The weighted neighbour relation between the objects that the older agglomerative engine merges.
#ifndef VORN_CLUSTERING_CLUSTER_GRAPH_H
#define VORN_CLUSTERING_CLUSTER_GRAPH_H

#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"

// Objects numbered from 0 in the order they were added, each with a table from neighbour to the
// weight of their link, so that testing a pair of objects costs one look-up.
class ClusterGraph_cl {
 public:
  explicit ClusterGraph_cl(int capacity = 16) : iNames(capacity, nullptr), iLinks(capacity, nullptr) {}
  ~ClusterGraph_cl() { iLinks.DeleteAll(); }
  ClusterGraph_cl(const ClusterGraph_cl&) = delete;
  ClusterGraph_cl& operator=(const ClusterGraph_cl&) = delete;

  // The new object's number.
  int AddObject(Name_sptr name);
  // Links a and b both ways; a later link of the same pair replaces the weight, a self-link is ignored.
  void AddLink(int a, int b, double weight);
  int GetNumObjects() const { return iNames.GetSize(); }
  Name_sptr GetName(int i) const { return iNames[i]; }
  int IsLinked(int a, int b) const { return iLinks[a]->Exists(b); }
  // The weight of a link that exists.
  double GetWeight(int a, int b) const { return iLinks[a]->GetEntry(b); }

  // The relation of an undirected graph whose nodes have GetName() and whose edges GetWeight(), with
  // the objects in the graph's node order. The walk uses the nodes' marks.
  template <class Graph>
  static ClusterGraph_cl* FromGraph(Graph& graph) {
    int n = graph.GetNumNodes();
    ClusterGraph_cl* relation = new ClusterGraph_cl(n + 1);
    for (int i = 0; i < n; i++) {
      graph.GetNodeAt(i)->SetMark(i);
      relation->AddObject(graph.GetNodeAt(i)->GetName());
    }
    for (int i = 0; i < n; i++) {
      auto* node = graph.GetNodeAt(i);
      for (int k = 0; k < node->GetNumEdges(); k++) {
        auto* edge = node->GetEdge(k);
        if (edge->GetFirst() == node) relation->AddLink(i, edge->GetSecond()->GetMark(), edge->GetWeight());
      }
    }
    return relation;
  }

 private:
  Vector_tmpl<Name_sptr> iNames;
  Vector_tmpl<IntSet_tmpl<double>*> iLinks;
};

#endif
