// The nodes of the older agglomerative engine: a leaf object or the merge of two nodes.
#include "clustering/cluster_node.h"

ClusterNode_cl::ClusterNode_cl(ClusterNode_cl* left, ClusterNode_cl* right)
    : iLeft(left), iRight(right), iNumLeaves(left ? left->iNumLeaves + right->iNumLeaves : 1) {}

int ClusterNode_cl::IHaveHigherPriority(const HeapEntry_cl* other) const {
  double mine = iCost, theirs = static_cast<const ClusterNode_cl*>(other)->iCost;
  if (mine == kMissingReal) return 0;
  if (theirs == kMissingReal) return 1;
  return mine < theirs;
}

void ClusterNode_cl::GetLeaves(Vector_tmpl<const ClusterNode_cl*>* out) const {
  // Its own stack: a chain of merges is as deep as it has leaves.
  Vector_tmpl<const ClusterNode_cl*> stack(16, nullptr);
  stack.AddLast(this);
  while (stack.GetSize() > 0) {
    const ClusterNode_cl* top = stack.GetLast();
    stack.RemoveLastElement();
    if (top->IsLeaf()) {
      out->AddLast(top);
      continue;
    }
    stack.AddLast(top->iRight);
    stack.AddLast(top->iLeft);
  }
}

void ClusterNode_cl::WriteClusters(std::ostream& out) const {
  Vector_tmpl<const ClusterNode_cl*> leaves(iNumLeaves + 1, nullptr);
  GetLeaves(&leaves);
  for (int i = 0; i < leaves.GetSize(); i++) {
    leaves[i]->WriteDescription(out);
    out << "\n";
  }
}
