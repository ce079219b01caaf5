// The nodes of the older agglomerative engine: a leaf object or the merge of two nodes.
#ifndef VORN_CLUSTERING_CLUSTER_NODE_H
#define VORN_CLUSTERING_CLUSTER_NODE_H

#include <ostream>

#include "pipeline/heap.h"
#include "pipeline/missing.h"
#include "pipeline/vector.h"

// A leaf has no children; a merged node has its two children and a cost. In a heap the lower cost
// comes first and a missing cost never does. A node does not own its children.
class ClusterNode_cl : public HeapEntry_cl {
 public:
  ClusterNode_cl(ClusterNode_cl* left, ClusterNode_cl* right);
  ~ClusterNode_cl() override = default;
  ClusterNode_cl(const ClusterNode_cl&) = delete;
  ClusterNode_cl& operator=(const ClusterNode_cl&) = delete;

  int IHaveHigherPriority(const HeapEntry_cl* other) const override;
  virtual int CanMergeWith(const ClusterNode_cl* other) const = 0;
  // Sets the cost of a merged node from its children.
  virtual void ComputeCost() = 0;
  // A new node merging this one (first) with other, its cost computed.
  virtual ClusterNode_cl* CreateMergedNode(ClusterNode_cl* other) = 0;
  virtual void WriteDescription(std::ostream& out) const = 0;
  // One line per leaf below the node, left to right: its description.
  void WriteClusters(std::ostream& out) const;

  ClusterNode_cl* GetLeft() const { return iLeft; }
  ClusterNode_cl* GetRight() const { return iRight; }
  int IsLeaf() const { return iLeft == nullptr; }
  int GetNumLeaves() const { return iNumLeaves; }
  double GetCost() const { return iCost; }
  int IsActive() const { return iActive; }
  void SetActive(int active) { iActive = active; }
  // Appends the leaves below the node, left to right.
  void GetLeaves(Vector_tmpl<const ClusterNode_cl*>* out) const;

 protected:
  ClusterNode_cl* iLeft;
  ClusterNode_cl* iRight;
  int iNumLeaves;
  int iActive = 0;
  double iCost = kMissingReal;
};

// Wraps a node of either engine with the comparison turned round, so that a heap of them has the
// worst on top.
template <class Node>
class ReverseNode_tmpl : public HeapEntry_cl {
 public:
  explicit ReverseNode_tmpl(Node* node) : iNode(node) {}
  int IHaveHigherPriority(const HeapEntry_cl* other) const override {
    return static_cast<const ReverseNode_tmpl*>(other)->iNode->IHaveHigherPriority(iNode);
  }
  Node* iNode;
};

#endif
