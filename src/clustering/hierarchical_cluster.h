// The older agglomerative engine: merges neighbouring nodes, each keeping a few best partners queued.
#ifndef VORN_CLUSTERING_HIERARCHICAL_CLUSTER_H
#define VORN_CLUSTERING_HIERARCHICAL_CLUSTER_H

#include <ostream>

#include "clustering/cluster_node.h"
#include "pipeline/heap.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"

// Owns every node given to it or made by it. The active set holds the nodes not yet merged, in the
// order they became active.
class Cluster_cl {
 public:
  Cluster_cl() : iActive(16, nullptr), iNodes(16, nullptr) {}
  virtual ~Cluster_cl() { iNodes.DeleteAll(); }
  Cluster_cl(const Cluster_cl&) = delete;
  Cluster_cl& operator=(const Cluster_cl&) = delete;

  // Reads Method (only "Hierarchical") and NumClusters (1).
  static Cluster_cl* Create(PropertyTreeIter_cl* iter);

  // Takes the node over as one of the objects to cluster.
  void AddNode(ClusterNode_cl* node) { iNodes.AddLast(node); }
  virtual void Run() = 0;
  // Per cluster a line "**\t**\t**\t" with the root's description, then one line per member.
  void WriteFile(std::ostream& out) const;
  const Vector_tmpl<ClusterNode_cl*>& GetActiveSet() const { return iActive; }
  int GetNumNodes() const { return iNodes.GetSize(); }

 protected:
  void Activate(ClusterNode_cl* node);
  void Inactivate(ClusterNode_cl* node);

  Vector_tmpl<ClusterNode_cl*> iActive;
  Vector_tmpl<ClusterNode_cl*> iNodes;
};

class HierarchicalCluster_cl : public Cluster_cl {
 public:
  // Stops at numClusters active nodes; each node queues its `neighbours` best merges (at least one);
  // a merge costing less than minCost is never made.
  HierarchicalCluster_cl(int numClusters, int neighbours, double minCost)
      : iNumClusters(numClusters), iNeighbours(neighbours > 0 ? neighbours : 1), iMinCost(minCost) {}

  void Run() override;

 private:
  void CreateActiveSet();
  void HeapifyNearestNeighbors(Heap_cl* heap);
  void AddNodeNeighbors(ClusterNode_cl* node, Heap_cl* heap, int keepHeap);

  int iNumClusters;
  int iNeighbours;
  double iMinCost;
};

#endif
