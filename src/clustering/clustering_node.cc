// The nodes of a merge tree: leaves wrap one metric, internal nodes are candidate or made merges.
#include "clustering/clustering_node.h"

ClusteringNode_cl::ClusteringNode_cl(int id, ClusteringMetric_cl* metric, int ownsMetric)
    : DNode_tmpl<ClusteringNode_cl, ClusteringEdge_cl>(id), iIsLeaf(!ownsMetric), iMetric(metric), iOwnsMetric(ownsMetric) {}

ClusteringNode_cl::~ClusteringNode_cl() {
  if (iOwnsMetric) delete iMetric;
}

int ClusteringNode_cl::IHaveHigherPriority(const HeapEntry_cl* other) const {
  return iMetric->IHaveHigherPriority(static_cast<const ClusteringNode_cl*>(other)->iMetric);
}

ClusteringMetric_cl* ClusteringNode_cl::ExchangeMetric(ClusteringMetric_cl* metric) {
  ClusteringMetric_cl* old = iMetric;
  iMetric = metric;
  return old;
}

void ClusteringNode_cl::AddChild(ClusteringNode_cl* child) {
  ClusteringEdge_cl* edge = new ClusteringEdge_cl(this, child);
  iChildren.Add(edge);
  child->iParents.Add(edge);
}

void ClusteringNode_cl::RemoveChild(ClusteringNode_cl* child) {
  for (int i = 0; i < iChildren.GetSize(); i++) {
    ClusteringEdge_cl* edge = iChildren[i];
    if (edge->GetTo() != child) continue;
    iChildren.RemoveFirstPtr(edge);
    child->iParents.RemoveFirstPtr(edge);
    delete edge;
    return;
  }
}

void ClusteringNode_cl::Combine() { iMetric->Combine(GetChild(0)->GetMetric(), GetChild(1)->GetMetric()); }
