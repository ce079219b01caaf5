// The older agglomerative engine: merges neighbouring nodes, each keeping a few best partners queued.
#include "clustering/hierarchical_cluster.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

namespace {
using WorstFirst_cl = ReverseNode_tmpl<ClusterNode_cl>;
}  // namespace

Cluster_cl* Cluster_cl::Create(PropertyTreeIter_cl* iter) {
  Name_sptr method = iter->GetProperty("Method");
  if (method.IsNull() || strcmp(method->GetText(), "Hierarchical") != 0) {
    std::cerr << "Cluster_cl::Create unrecognized clustering method" << std::endl;
    abort();
  }
  int numClusters;
  iter->GetIntProperty("NumClusters", &numClusters, 1);
  return new HierarchicalCluster_cl(numClusters, 1, 0.0);
}

void Cluster_cl::WriteFile(std::ostream& out) const {
  for (int i = 0; i < iActive.GetSize(); i++) {
    out << "**\t**\t**\t";
    iActive[i]->WriteDescription(out);
    out << "\n";
    iActive[i]->WriteClusters(out);
  }
}

void Cluster_cl::Activate(ClusterNode_cl* node) {
  node->SetActive(1);
  iActive.AddLast(node);
}

void Cluster_cl::Inactivate(ClusterNode_cl* node) {
  node->SetActive(0);
  iActive.RemoveFirstKeepOrder(node);
}

void HierarchicalCluster_cl::CreateActiveSet() {
  iActive.RemoveAll();
  for (int i = 0; i < iNodes.GetSize(); i++) Activate(iNodes[i]);
}

void HierarchicalCluster_cl::HeapifyNearestNeighbors(Heap_cl* heap) {
  int n = iNodes.GetSize();
  for (int i = 0; i < n; i++) {
    if (i % 10 == 0)
      std::cerr << "HierarchicalCluster_cl::HeapifyNearestNeighbors  Init node " << i << " of " << n << std::endl;
    AddNodeNeighbors(iNodes[i], heap, 0);
  }
}

void HierarchicalCluster_cl::AddNodeNeighbors(ClusterNode_cl* node, Heap_cl* heap, int keepHeap) {
  // The best so far with the worst on top; an equal one later in the active set does not displace it.
  Heap_cl kept(iNeighbours + 1);
  for (int i = 0; i < iActive.GetSize(); i++) {
    ClusterNode_cl* other = iActive[i];
    if (!node->CanMergeWith(other)) continue;
    ClusterNode_cl* merged = node->CreateMergedNode(other);
    if (kept.GetSize() < iNeighbours) {
      kept.Insert(new WorstFirst_cl(merged));
      continue;
    }
    WorstFirst_cl* worst = static_cast<WorstFirst_cl*>(kept.Maximum());
    if (!merged->IHaveHigherPriority(worst->iNode)) {
      delete merged;
      continue;
    }
    delete worst->iNode;
    worst->iNode = merged;
    kept.UpdateKey(worst);
  }
  while (HeapEntry_cl* entry = kept.ExtractMax()) {
    heap->Insert(static_cast<WorstFirst_cl*>(entry)->iNode, keepHeap);
    delete entry;
  }
}

void HierarchicalCluster_cl::Run() {
  CreateActiveSet();
  Heap_cl heap(iNodes.GetSize() * iNeighbours + 1);
  HeapifyNearestNeighbors(&heap);
  while (iActive.GetSize() > iNumClusters) {
    ClusterNode_cl* best = static_cast<ClusterNode_cl*>(heap.ExtractMax());
    // Nodes with no neighbour left to merge with: the active set stays as it is.
    if (!best) break;
    ClusterNode_cl* first = best->GetLeft();
    ClusterNode_cl* second = best->GetRight();
    if (best->GetCost() < iMinCost || !first->IsActive() || !second->IsActive()) {
      if (first->IsActive() && !second->IsActive()) AddNodeNeighbors(first, &heap, 1);
      delete best;
      continue;
    }
    Inactivate(first);
    Inactivate(second);
    AddNodeNeighbors(best, &heap, 1);
    Activate(best);
    iNodes.AddLast(best);
    if (iActive.GetSize() % 10 == 0)
      std::cerr << "HierarchicalClustering: Combining... " << iActive.GetSize() << " nodes left" << std::endl;
  }
  std::cerr << "HierarchicalCluster_cl::Run Done. ActiveSetSize=" << iActive.GetSize() << std::endl;
}
