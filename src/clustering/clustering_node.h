// The nodes of a merge tree: leaves wrap one metric, internal nodes are candidate or made merges.
#ifndef VORN_CLUSTERING_CLUSTERING_NODE_H
#define VORN_CLUSTERING_CLUSTERING_NODE_H

#include "clustering/cluster_node.h"
#include "clustering/clustering_metric.h"
#include "pipeline/graph.h"
#include "pipeline/heap.h"

class ClusteringNode_cl;

class ClusteringEdge_cl : public DEdge_tmpl<ClusteringNode_cl> {
 public:
  using DEdge_tmpl<ClusteringNode_cl>::DEdge_tmpl;
};

// A leaf wraps one metric. An internal node has its two children as child edges and its cost from
// the moment it is made; its metric holds merged contents only after Combine(). Deleting a node
// unlinks it from its children and parents.
class ClusteringNode_cl : public DNode_tmpl<ClusteringNode_cl, ClusteringEdge_cl>, public HeapEntry_cl {
 public:
  ClusteringNode_cl(int id, ClusteringMetric_cl* metric, int ownsMetric);
  ~ClusteringNode_cl() override;
  ClusteringNode_cl(const ClusteringNode_cl&) = delete;
  ClusteringNode_cl& operator=(const ClusteringNode_cl&) = delete;

  int IHaveHigherPriority(const HeapEntry_cl* other) const override;

  ClusteringMetric_cl* GetMetric() const { return iMetric; }
  // Puts metric in place of the node's own (which it must own) and hands the old one back.
  ClusteringMetric_cl* ExchangeMetric(ClusteringMetric_cl* metric);
  int IsActive() const { return iActive; }
  void SetActive(int active) { iActive = active; }
  int IsLeaf() const { return GetNumChildren() == 0 && iIsLeaf; }
  // Where the node stands in the visiting order of the active set.
  long long GetActiveKey() const { return iActiveKey; }
  void SetActiveKey(long long key) { iActiveKey = key; }

  void AddChild(ClusteringNode_cl* child);
  void RemoveChild(ClusteringNode_cl* child);
  // The merged contents of the two children.
  void Combine();

 private:
  int iActive = 1;
  int iIsLeaf;
  long long iActiveKey = 0;
  ClusteringMetric_cl* iMetric;
  int iOwnsMetric;
};

using ReverseClusteringNode_cl = ReverseNode_tmpl<ClusteringNode_cl>;

#endif
