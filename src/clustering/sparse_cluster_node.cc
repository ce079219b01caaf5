// Nodes that merge the objects of a weighted neighbour graph under a min, max or average linkage.
#include "clustering/sparse_cluster_node.h"

#include <algorithm>
#include <cmath>

const char* CLUSTER_LINKAGE_METHOD_STR[CLUSTER_LINKAGE_NUM] = {"MinLinkage", "MaxLinkage", "AverageLinkage"};

SparseClusterNode_cl::SparseClusterNode_cl(const ClusterGraph_cl* graph, int object, ClusterLinkageMethod_cl linkage,
                                           double linkagePercent)
    : ClusterNode_cl(nullptr, nullptr), iGraph(graph), iObject(object), iLinkage(linkage),
      iLinkagePercent(linkagePercent) {}

SparseClusterNode_cl::SparseClusterNode_cl(SparseClusterNode_cl* left, SparseClusterNode_cl* right)
    : ClusterNode_cl(left, right), iGraph(left->iGraph), iObject(-1), iLinkage(left->iLinkage),
      iLinkagePercent(left->iLinkagePercent) {}

void SparseClusterNode_cl::GetObjects(Vector_tmpl<int>* out) const {
  Vector_tmpl<const ClusterNode_cl*> leaves(iNumLeaves + 1, nullptr);
  GetLeaves(&leaves);
  for (int i = 0; i < leaves.GetSize(); i++) out->AddLast(static_cast<const SparseClusterNode_cl*>(leaves[i])->iObject);
}

int SparseClusterNode_cl::CanMergeWith(const ClusterNode_cl* node) const {
  const SparseClusterNode_cl* other = dynamic_cast<const SparseClusterNode_cl*>(node);
  if (!other || other == this || other->iLinkage != iLinkage || other->iGraph != iGraph) return 0;
  double pairs = static_cast<double>(iNumLeaves) * other->iNumLeaves;
  long long allowed = std::llround((1.0 - iLinkagePercent) * pairs);
  Vector_tmpl<int> mine(iNumLeaves + 1, -1), theirs(other->iNumLeaves + 1, -1);
  GetObjects(&mine);
  other->GetObjects(&theirs);
  long long unlinked = 0;
  for (int i = 0; i < mine.GetSize(); i++)
    for (int j = 0; j < theirs.GetSize(); j++) {
      if (iGraph->IsLinked(mine[i], theirs[j])) continue;
      if (++unlinked > allowed) return 0;
    }
  return 1;
}

void SparseClusterNode_cl::ComputeCost() {
  iCost = kMissingReal;
  if (IsLeaf()) return;
  const SparseClusterNode_cl* left = static_cast<const SparseClusterNode_cl*>(iLeft);
  const SparseClusterNode_cl* right = static_cast<const SparseClusterNode_cl*>(iRight);
  Vector_tmpl<int> mine(left->iNumLeaves + 1, -1), theirs(right->iNumLeaves + 1, -1);
  left->GetObjects(&mine);
  right->GetObjects(&theirs);
  Vector_tmpl<double> weights(16, 0.0);
  for (int i = 0; i < mine.GetSize(); i++)
    for (int j = 0; j < theirs.GetSize(); j++)
      if (iGraph->IsLinked(mine[i], theirs[j])) weights.AddLast(iGraph->GetWeight(mine[i], theirs[j]));
  int count = weights.GetSize();
  if (count == 0) return;
  weights.SortWithOperator();
  if (iLinkage == MIN_LINKAGE) {
    iCost = weights[0];
    return;
  }
  double pairs = static_cast<double>(left->iNumLeaves) * right->iNumLeaves;
  // Rounding can ask for one link more than the percent guaranteed, or for none at all.
  long long r = std::clamp<long long>(std::llround(pairs * iLinkagePercent), 1, count);
  if (iLinkage == MAX_LINKAGE) {
    iCost = weights[static_cast<int>(r) - 1];
    return;
  }
  double sum = 0.0;
  for (int i = 0; i < r; i++) sum += weights[i];
  iCost = sum / static_cast<double>(r);
}

ClusterNode_cl* SparseClusterNode_cl::CreateMergedNode(ClusterNode_cl* other) {
  SparseClusterNode_cl* merged = new SparseClusterNode_cl(this, static_cast<SparseClusterNode_cl*>(other));
  merged->ComputeCost();
  return merged;
}

void SparseClusterNode_cl::WriteDescription(std::ostream& out) const {
  if (IsLeaf()) out << iGraph->GetName(iObject);
  else out << iNumLeaves << "\t" << iCost;
}
