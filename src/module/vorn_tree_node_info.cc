// What a node of an expression tree knows about its data.
#include "module/vorn_tree_node_info.h"

#include <cstdlib>
#include <iostream>

#include "prob/split_test.h"

MatrixDimension_cl SplitTypeToMatrixDimension(AttributeGroupType_cl type) {
  return type == GENE_ATTRIBUTES || type == META_GENE_ATTRIBUTES ? MATRIX_ROWS : MATRIX_COLUMNS;
}

namespace {
Vector_tmpl<int>* CreateInitialVec(int n) {
  Vector_tmpl<int>* objects = new Vector_tmpl<int>(n + 1, -1);
  for (int i = 0; i < n; i++) objects->AddLast(i);
  return objects;
}

// The number a test compares; a value of another kind has no place in a split.
double NumberOf(const Value_cl* value) {
  if (value->GetType() == REAL_VALUE) return static_cast<const RealValue_cl*>(value)->GetValue();
  if (value->GetType() == INT_VALUE) return static_cast<const IntValue_cl*>(value)->GetValue();
  std::cerr << "VornTreeNodeInfo_cl::IsValid Unexpected value type " << value->GetType() << std::endl;
  abort();
}

int Compare(double object, double threshold, ComparisonType_cl comparison, int direction) {
  if (comparison == COMPARISON_EQUAL) return object == threshold;
  return direction ? object >= threshold : object <= threshold;
}
}  // namespace

VornTreeNodeInfo_cl::VornTreeNodeInfo_cl() : iFilter(new MatrixFilter_cl(nullptr, 0, nullptr, 0)) {}

VornTreeNodeInfo_cl::VornTreeNodeInfo_cl(MatrixFilter_cl* filter) : iFilter(filter) {}

VornTreeNodeInfo_cl::VornTreeNodeInfo_cl(SpeciesVorn_cl* species)
    : iFilter(new MatrixFilter_cl(CreateInitialVec(species->GetNumObjects(GENE_ATTRIBUTES)), 1,
                                  CreateInitialVec(species->GetNumObjects(EXPERIMENT_ATTRIBUTES)), 1)) {}

VornTreeNodeInfo_cl* VornTreeNodeInfo_cl::Clone() const {
  VornTreeNodeInfo_cl* copy = new VornTreeNodeInfo_cl(iFilter->Clone());
  copy->iNode = iNode;
  copy->iSplitType = iSplitType;
  copy->iFalseCondition = iFalseCondition;
  return copy;
}

Vector_tmpl<int>* VornTreeNodeInfo_cl::GetObjects(MatrixDimension_cl dimension, VornTreeNodeInfos_cl* infos) const {
  for (const VornTreeNodeInfo_cl* info = this; info;) {
    if (info->iFilter->GetObjects(dimension)) return info->iFilter->GetObjects(dimension);
    TreeCpdNode_cl* parent = info->iNode ? info->iNode->GetNodeParent() : nullptr;
    info = parent ? infos->Get(parent) : nullptr;
  }
  return nullptr;
}

void VornTreeNodeInfo_cl::PassObjects(MatrixDimension_cl dimension, VornTreeNodeInfo_cl* first,
                                      VornTreeNodeInfo_cl* second, VornTreeNodeInfos_cl* infos) const {
  Vector_tmpl<int>* objects = GetObjects(dimension, infos);
  first->iFilter->SetObjects(dimension, objects, 0);
  second->iFilter->SetObjects(dimension, objects, 0);
}

int VornTreeNodeInfo_cl::IsValid(const CompositeValue_cl* objectValues, const Value_cl* value,
                                 ComparisonType_cl comparison, int direction) {
  if (comparison != COMPARISON_EQUAL && comparison != COMPARISON_GTE) {
    std::cerr << "VornTreeNodeInfo_cl::IsValid Unknown comparison " << static_cast<int>(comparison) << std::endl;
    abort();
  }
  int n = objectValues->GetNumValues();
  if (value->GetType() != COMPOSITE_VALUE) {
    double threshold = NumberOf(value);
    for (int i = 0; i < n; i++)
      if (!Compare(NumberOf(objectValues->GetValueAt(i)), threshold, comparison, direction)) return 0;
    return 1;
  }
  const CompositeValue_cl* thresholds = static_cast<const CompositeValue_cl*>(value);
  if (thresholds->GetNumValues() < n) n = thresholds->GetNumValues();
  for (int i = 0; i < n; i++)
    if (!Compare(NumberOf(objectValues->GetValueAt(i)), NumberOf(thresholds->GetValueAt(i)), comparison, direction))
      return 0;
  return 1;
}

void VornTreeNodeInfo_cl::Split(SpeciesVorn_cl* species, const Index_cl& attributes, const Value_cl* value,
                                ComparisonType_cl comparison, int direction, VornTreeNodeInfos_cl* infos) {
  VornTreeNodeInfo_cl* pass = new VornTreeNodeInfo_cl();
  VornTreeNodeInfo_cl* fail = new VornTreeNodeInfo_cl();
  infos->Set(iNode->GetBranch(1), pass);
  infos->Set(iNode->GetBranch(0), fail);
  MatrixDimension_cl dimension = SplitTypeToMatrixDimension(iSplitType);
  MatrixDimension_cl other = dimension == MATRIX_ROWS ? MATRIX_COLUMNS : MATRIX_ROWS;
  PassObjects(other, pass, fail, infos);

  Vector_tmpl<int>* objects = GetObjects(dimension, infos);
  int n = objects ? objects->GetSize() : 0;
  Vector_tmpl<int>* passing = new Vector_tmpl<int>(n + 1, -1);
  Vector_tmpl<int>* failing = new Vector_tmpl<int>(n + 1, -1);
  Matrix_sptr values = species->GetAttributeData(iSplitType)->GetMatrix();
  for (int i = 0; i < n; i++) {
    int object = (*objects)[i];
    CompositeValue_cl* objectValues = values->GetElement(object, attributes);
    if (IsValid(objectValues, value, comparison, direction)) passing->AddLast(object);
    else failing->AddLast(object);
    delete objectValues;
  }
  if (iFalseCondition == FALSE_CONDITION_PASS) {
    Vector_tmpl<int>* all = new Vector_tmpl<int>(*passing);
    all->Concat(failing);
    delete failing;
    failing = all;
  } else if (iFalseCondition == FALSE_CONDITION_FAIL) {
    failing->RemoveAll();
  }
  pass->iFilter->SetObjects(dimension, passing, 1);
  fail->iFilter->SetObjects(dimension, failing, 1);
  DeleteObjects(dimension);
}

void VornTreeNodeInfo_cl::Refresh(SpeciesVorn_cl* species, RvVector_sptr parents, VornTreeNodeInfos_cl* infos) {
  ConditionSplitTest_cl* split = iNode ? iNode->GetConditionSplit() : nullptr;
  if (!split || split->GetNumClauses() == 0 || iNode->GetNumChildren() == 0) return;
  if (split->GetClause(0)->GetKind() != VALUE_CLAUSE) return;
  const ValueConditionClause_cl* clause = static_cast<const ValueConditionClause_cl*>(split->GetClause(0));
  ComparisonType_cl comparison = clause->GetComparisonType() ? COMPARISON_GTE : COMPARISON_EQUAL;
  int direction = comparison == COMPARISON_GTE ? static_cast<const GTEClause_cl*>(clause)->GetDirection() : 1;
  SingleRv_sptr rv = parents->GetRv(clause->GetPosition(0));
  AttributeGroupType_cl type = species->GetAttributeType(rv->GetName());
  if (type == ATTRIBUTE_GROUP_TYPE_NUM) return;
  SpeciesAttributes_cl* values = species->GetAttributeData(type);
  Vector_tmpl<int>* columns = new Vector_tmpl<int>(4, -1);
  if (rv->IsComposite()) {
    RvVector_sptr members = static_cast<CompositeRv_cl*>(rv.Get())->GetRvs();
    for (int i = 0; i < members->GetNumberOfVars(); i++) columns->AddLast(values->GetColumn(members->GetRv(i)->GetName()));
  } else {
    columns->AddLast(values->GetColumn(rv->GetName()));
  }
  if (columns->IsMember(-1)) {
    delete columns;
    return;
  }
  // Discrete values sit in the attribute tables as their index in the domain.
  const Value_cl* value = clause->GetValue();
  RealValue_cl index(0.0);
  if (value->GetType() == NAME_VALUE || value->GetType() == INT_VALUE) {
    index.SetValue(static_cast<int>(rv->GetDomain()->ValueToIndex(value)));
    value = &index;
  }
  SetSplitType(type);
  Split(species, Index_cl(columns), value, comparison, direction, infos);
}

void VornTreeNodeInfo_cl::AddObjects(Vector_tmpl<int>* objects, AttributeGroupType_cl type,
                                     VornTreeNodeInfos_cl* infos) const {
  MatrixDimension_cl dimension = type == EXPERIMENT_ATTRIBUTES ? MATRIX_COLUMNS : MATRIX_ROWS;
  if (iFilter->ObjectsOwner(dimension) && iFilter->GetObjects(dimension)) {
    objects->Concat(iFilter->GetObjects(dimension));
    return;
  }
  if (!iNode) return;
  for (int b = 0; b < iNode->GetNumChildren(); b++)
    if (VornTreeNodeInfo_cl* child = infos->Get(iNode->GetBranch(b))) child->AddObjects(objects, type, infos);
}

Vector_tmpl<int>* VornTreeNodeInfo_cl::CreateObjectList(AttributeGroupType_cl type, VornTreeNodeInfos_cl* infos) const {
  Vector_tmpl<int>* objects = new Vector_tmpl<int>(10, -1);
  AddObjects(objects, type, infos);
  return objects;
}

// ---------------------------------------------------------------- VornTreeNodeInfos_cl

VornTreeNodeInfo_cl* VornTreeNodeInfos_cl::Get(const TreeCpdNode_cl* node) const { return iInfos.GetEntry(node->GetId()); }

void VornTreeNodeInfos_cl::Set(TreeCpdNode_cl* node, VornTreeNodeInfo_cl* info) {
  delete iInfos.Remove(node->GetId());
  info->iNode = node;
  iInfos.Insert(node->GetId(), info);
}

int VornTreeNodeInfos_cl::OwnsRows(const TreeCpdNode_cl* node) const {
  VornTreeNodeInfo_cl* info = Get(node);
  return info && info->OwnsObjects(MATRIX_ROWS) && info->GetFilter()->GetRows();
}
