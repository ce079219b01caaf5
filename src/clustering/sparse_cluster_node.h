// Nodes that merge the objects of a weighted neighbour graph under a min, max or average linkage.
#ifndef VORN_CLUSTERING_SPARSE_CLUSTER_NODE_H
#define VORN_CLUSTERING_SPARSE_CLUSTER_NODE_H

#include <ostream>

#include "clustering/cluster_graph.h"
#include "clustering/cluster_node.h"

enum ClusterLinkageMethod_cl { MIN_LINKAGE = 0, MAX_LINKAGE = 1, AVERAGE_LINKAGE = 2, CLUSTER_LINKAGE_NUM = 3 };
extern const char* CLUSTER_LINKAGE_METHOD_STR[CLUSTER_LINKAGE_NUM];

// Two nodes may merge when all but (1 - percent) of their leaf pairs are neighbours in the graph.
// The cost of a merge is read from the weights of the linked leaf pairs, sorted ascending: the
// first for "MinLinkage", the r-th for "MaxLinkage" and the mean of the first r for
// "AverageLinkage", r being the rounded percent of all leaf pairs (at least 1, at most the links).
class SparseClusterNode_cl : public ClusterNode_cl {
 public:
  // The leaf of object `object` of the graph, which must outlive the node.
  SparseClusterNode_cl(const ClusterGraph_cl* graph, int object, ClusterLinkageMethod_cl linkage,
                       double linkagePercent);
  // The merge of two nodes, with no cost until ComputeCost().
  SparseClusterNode_cl(SparseClusterNode_cl* left, SparseClusterNode_cl* right);

  int CanMergeWith(const ClusterNode_cl* other) const override;
  void ComputeCost() override;
  ClusterNode_cl* CreateMergedNode(ClusterNode_cl* other) override;
  // A leaf: its object's name; a merge: its leaf count and its cost, separated by a tab.
  void WriteDescription(std::ostream& out) const override;

  int GetObject() const { return iObject; }
  ClusterLinkageMethod_cl GetLinkage() const { return iLinkage; }

 private:
  // Appends the graph objects of the leaves below the node, left to right.
  void GetObjects(Vector_tmpl<int>* out) const;

  const ClusterGraph_cl* iGraph;
  int iObject;
  ClusterLinkageMethod_cl iLinkage;
  double iLinkagePercent;
};

#endif
