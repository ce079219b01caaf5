// What a node of an expression tree knows about its data: the genes and experiments that reach it.
#ifndef VORN_MODULE_VORN_TREE_NODE_INFO_H
#define VORN_MODULE_VORN_TREE_NODE_INFO_H

#include "data/species_vorn.h"
#include "data/vorn_attribute_group.h"
#include "pipeline/hash_set.h"
#include "pipeline/vector.h"
#include "prob/index.h"
#include "prob/matrix.h"
#include "prob/tree_cpd.h"
#include "prob/vars.h"
#include "prob/value.h"

// What branch 0 of a split receives: the objects that fail the test, all objects, or none.
enum FalseConditionType_cl { FALSE_CONDITION_NORMAL = 0, FALSE_CONDITION_PASS = 1, FALSE_CONDITION_FAIL = 2 };
// 0 tests equality, 1 an ordering whose sense a direction gives.
enum ComparisonType_cl { COMPARISON_EQUAL = 0, COMPARISON_GTE = 1 };

// Gene and meta gene splits divide rows, all others columns.
MatrixDimension_cl SplitTypeToMatrixDimension(AttributeGroupType_cl type);

class VornTreeNodeInfos_cl;

// A node that owns its row list is a module: its genes were divided at the split above it.
// Lists that a node does not own are borrowed from the nearest ancestor that does.
class VornTreeNodeInfo_cl {
 public:
  VornTreeNodeInfo_cl();
  // Takes the filter over.
  explicit VornTreeNodeInfo_cl(MatrixFilter_cl* filter);
  // Owns every gene and every experiment of the species.
  explicit VornTreeNodeInfo_cl(SpeciesVorn_cl* species);
  ~VornTreeNodeInfo_cl() { delete iFilter; }
  VornTreeNodeInfo_cl(const VornTreeNodeInfo_cl&) = delete;
  VornTreeNodeInfo_cl& operator=(const VornTreeNodeInfo_cl&) = delete;

  // A copy that owns copies of both lists.
  VornTreeNodeInfo_cl* Clone() const;

  TreeCpdNode_cl* GetNode() const { return iNode; }
  MatrixFilter_cl* GetFilter() const { return iFilter; }
  AttributeGroupType_cl GetSplitType() const { return iSplitType; }
  void SetSplitType(AttributeGroupType_cl type) { iSplitType = type; }
  FalseConditionType_cl GetFalseCondition() const { return iFalseCondition; }
  void SetFalseCondition(FalseConditionType_cl type) { iFalseCondition = type; }
  int OwnsObjects(MatrixDimension_cl dimension) const { return iFilter->ObjectsOwner(dimension); }

  // Passes the node's objects to new infos of branches 1 and 0: the objects of the split type's
  // dimension by the test of the values of the attributes at the given columns, the others
  // borrowed as they are. The node then drops its list of the split dimension.
  void Split(SpeciesVorn_cl* species, const Index_cl& attributes, const Value_cl* value, ComparisonType_cl comparison,
             int direction, VornTreeNodeInfos_cl* infos);
  // Reapplies the first clause of the node's split, found by position among the tree's parents, to
  // the node's objects: for a tree that was read rather than grown. A node without a split, or with
  // an equality of two variables, is left alone.
  void Refresh(SpeciesVorn_cl* species, RvVector_sptr parents, VornTreeNodeInfos_cl* infos);
  // Whether an object's values pass the test; a composite value holds a threshold per attribute.
  static int IsValid(const CompositeValue_cl* objectValues, const Value_cl* value, ComparisonType_cl comparison,
                     int direction);

  // Appends the node's own list of that type, or those of its children when it owns none.
  void AddObjects(Vector_tmpl<int>* objects, AttributeGroupType_cl type, VornTreeNodeInfos_cl* infos) const;
  Vector_tmpl<int>* CreateObjectList(AttributeGroupType_cl type, VornTreeNodeInfos_cl* infos) const;
  // Both children borrow the list of that dimension from the nearest owner upward.
  void PassObjects(MatrixDimension_cl dimension, VornTreeNodeInfo_cl* first, VornTreeNodeInfo_cl* second,
                   VornTreeNodeInfos_cl* infos) const;
  // Drops the node's list of that dimension; an owned one is deleted, a borrowed one only let go,
  // since other nodes may still borrow it.
  void DeleteObjects(MatrixDimension_cl dimension) { iFilter->SetObjects(dimension, nullptr, 0); }

 private:
  friend class VornTreeNodeInfos_cl;
  // The list of that dimension that reaches this node.
  Vector_tmpl<int>* GetObjects(MatrixDimension_cl dimension, VornTreeNodeInfos_cl* infos) const;

  TreeCpdNode_cl* iNode = nullptr;
  AttributeGroupType_cl iSplitType = ATTRIBUTE_GROUP_TYPE_NUM;
  MatrixFilter_cl* iFilter;
  FalseConditionType_cl iFalseCondition = FALSE_CONDITION_NORMAL;
};

// The infos of the nodes of one tree, by node id; the table owns them.
class VornTreeNodeInfos_cl {
 public:
  VornTreeNodeInfos_cl() : iInfos(32, nullptr) {}
  ~VornTreeNodeInfos_cl() { iInfos.DeleteAll(); }
  VornTreeNodeInfos_cl(const VornTreeNodeInfos_cl&) = delete;
  VornTreeNodeInfos_cl& operator=(const VornTreeNodeInfos_cl&) = delete;

  VornTreeNodeInfo_cl* Get(const TreeCpdNode_cl* node) const;
  // Replaces the node's info.
  void Set(TreeCpdNode_cl* node, VornTreeNodeInfo_cl* info);
  // Whether the node owns its list of genes: whether it is a module.
  int OwnsRows(const TreeCpdNode_cl* node) const;

 private:
  IntSet_tmpl<VornTreeNodeInfo_cl*> iInfos;
};

#endif
