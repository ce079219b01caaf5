// The DeleteVars step.
#include "data/vorn_step_delete.h"

#include <iostream>

#include "data/vorn_data.h"
#include "module/vorn.h"
#include "pipeline/not_built.h"
#include "pipeline/vorn_run.h"

VornStepDelete_cl::Scorer VornStepDelete_cl::iScorer = nullptr;

namespace {
const char kCaller[] = "VornStepDelete_cl::Run";
}  // namespace

VornStepDelete_cl::VornStepDelete_cl(PropertyTreeIter_cl* iter, VornRun_cl* run) : VornStep_cl(iter, run) {
  iMicroarrayName = iter->GetProperty("MicroarrayName");
  iAttributeGroup = iter->GetProperty("AttributeGroup");
  iSecondAttributeGroup = iter->GetProperty("SecondAttributeGroup");
  iter->GetDoubleProperty("MaxScoreLoss", &iMaxScoreLoss, 20.0);
  iter->GetIntProperty("MaxAttsDel", &iMaxAttsDel, 2);
}

double VornStepDelete_cl::ComputeScore(Attr_cl* removed, Attr_cl* target) const {
  BnCpd_sptr copy = target->GetCpd()->Clone();
  if (removed && copy->GetParents()->IsMember(SingleVar_sptr(removed->GetRv()))) copy->DeleteParent(removed->GetRv());
  return iScorer(copy, iRun, iMicroarrayName);
}

void VornStepDelete_cl::CreateDelList(VornAttributeGroup_cl* group, Attr_cl* target,
                                      VornAttributeGroup_cl* list) const {
  double base = ComputeScore(nullptr, target);
  std::cerr << "Delete CreateDelList: nothing deleted score " << base << std::endl;
  Vector_tmpl<Name_sptr>* names = group->CreateAttributeNameVec();
  for (int i = 0; i < names->GetSize(); i++) {
    Attr_cl* attribute = group->GetAttribute((*names)[i]);
    // A repeated name stands for the attribute that shadows the others, which is listed once.
    if (list->HasAttribute((*names)[i])) continue;
    double loss = base - ComputeScore(attribute, target);
    std::cerr << "Delete eval: " << (*names)[i] << " score diff (score - del_score) " << loss << std::endl;
    if (loss < iMaxScoreLoss && list->GetNumAttributes() < iMaxAttsDel) {
      std::cerr << "Scheduling for delete " << (*names)[i] << " score diff " << loss << std::endl;
      list->AddAttribute(attribute);
      list->PassOwnership(attribute->GetName());
    }
  }
  delete names;
}

void VornStepDelete_cl::Run() {
  PrintRunHeader("VornStepDelete_cl");
  iIsComplete = 0;
  VornData_cl* data = iRun->GetData();
  VornAttributeGroup_cl* group = data->FindAttributeGroup(iAttributeGroup, kCaller);
  data->FindMicroarray(iMicroarrayName, kCaller);
  Vorn_cl* vorn = iRun->CreateVorn();
  Attr_cl* target = vorn->GetExpressionAttr(iMicroarrayName);
  if (!target || target->GetCpd().IsNull()) {
    std::cerr << kCaller << " The expression of microarray " << iMicroarrayName << " has no CPD: nothing to delete"
              << std::endl;
    return;
  }
  if (!iScorer) StopNotBuilt("DeleteVars scoring of CPDs is not built yet");
  VornAttributeGroup_cl list(target->GetName(), group->GetType(), group->GetValueDomain());
  CreateDelList(group, target, &list);
  if (list.GetNumAttributes() == 0) return;
  BnCpd_sptr cpd = target->GetCpd();
  data->GetSpecies(iMicroarrayName)->GetGeneAttributes()->Delete(&list);
  for (auto* entry : list.GetAttributes()) {
    Attr_cl* attribute = entry->iValue;
    if (cpd->GetParents()->IsMember(SingleVar_sptr(attribute->GetRv()))) cpd->DeleteParent(attribute->GetRv());
    vorn->DeleteVarFromPrm(attribute);
    target->RemoveParent(attribute->GetName());
  }
  for (auto* entry : list.GetAttributes())
    if (group->GetAttribute(entry->iKey) == entry->iValue) group->DeleteAttribute(entry->iKey);
}
