// Agglomerative clustering with a bounded number of candidate merges per node, and its tree files.
#ifndef VORN_CLUSTERING_HIERARCHICAL_CLUSTERING_H
#define VORN_CLUSTERING_HIERARCHICAL_CLUSTERING_H

#include "clustering/clustering.h"
#include "clustering/clustering_node.h"
#include "pipeline/hash_set.h"
#include "pipeline/heap.h"

// Each node keeps only its MaxMergesPerNode + 1 best candidate merges in the queue, so memory grows
// with the number of objects times that bound, and each merge costs one pass over the active set.
class HierarchicalClustering_cl : public Clustering_cl {
 public:
  // Reads Metric, CutDepth (0) and MaxMergesPerNode (5).
  HierarchicalClustering_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);
  HierarchicalClustering_cl(Name_sptr metric, int maxMergesPerNode);
  ~HierarchicalClustering_cl() override;

  void Prepare() override;
  void Run() override;
  void Cleanup() override;
  // The leaves of each subtree CutDepth levels below a root share a number.
  Vector_tmpl<int>* GetClusters() override;
  Vector_tmpl<Vector_tmpl<int>*>* GetSeparableClusters(double minCostDifference, double maxSingletonParentCost,
                                                       int maxSize) override;
  void PrintTreeView(Name_sptr base, const Vector_tmpl<Name_sptr>* rowNames,
                     const Vector_tmpl<Name_sptr>* columnNames) override;
  // The leaves from left to right as the tree is drawn.
  Vector_tmpl<int>* GetClusterOrder() override;
  void Cut(int depth) { iCutDepth = depth; }

  // The roots left when clustering stopped.
  const Vector_tmpl<ClusteringNode_cl*>& GetSolution() const { return iSolution; }
  // A new vector of every node under the roots, children before parents, left before right.
  Vector_tmpl<ClusteringNode_cl*>* GetLinearOrdering() const;
  // "Pearson" costs are correlations already; other costs are spread over -1 to 1.
  static double Metric2BranchLength(const ClusteringMetric_cl* metric, double minCost, double maxCost);

 private:
  void ActivateAndQueueInitLayer();
  ClusteringNode_cl* NextNode();
  void QueueTestMerges(ClusteringNode_cl* node);
  void Activate(ClusteringNode_cl* node);
  void Inactivate(ClusteringNode_cl* node);
  void InactivateChildren(ClusteringNode_cl* node);
  [[noreturn]] void ReportDepletedQueue();
  void CreateSolution();
  void DeleteSolution();
  void DeleteLeaves();
  // The best and the worst present cost among the internal nodes, by the metric's own order.
  void ComputeCostStats(const Vector_tmpl<ClusteringNode_cl*>& nodes, double* minCost, double* maxCost) const;
  // The subtrees depth levels below node, or leaves that end earlier, left to right.
  void GetAncestorsAtGeneration(ClusteringNode_cl* node, int depth, Vector_tmpl<ClusteringNode_cl*>* out) const;

  IdSet_tmpl<ClusteringNode_cl*>* iActive = nullptr;
  // The active nodes in the set's own visiting order (bucket by bucket, the newest first in a
  // bucket), kept dense so that a pass over them does not walk empty buckets and chains.
  Vector_tmpl<ClusteringNode_cl*> iActiveOrder;
  unsigned iActiveCount = 0;
  int iCutDepth = 0;
  Heap_cl* iQueue = nullptr;
  // The queue is built in one go after the first layer; from then on entries rise into place.
  int iQueueBuilt = 0;
  Vector_tmpl<ClusteringNode_cl*> iLeaves;
  int iMaxMergesPerNode = 5;
  int iNextNodeId = 0;
  Vector_tmpl<ClusteringNode_cl*> iSolution;
  // The cost of the candidate in hand, reused across the inner loop.
  ClusteringMetric_cl* iScratch = nullptr;
};

#endif
