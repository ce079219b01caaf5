// The LoadAttributes step.
#include "data/vorn_step_load_attributes.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "data/vorn_data.h"
#include "pipeline/enum_converter.h"
#include "pipeline/not_built.h"
#include "pipeline/vorn_run.h"
#include "pipeline/output_file.h"

const char* LOAD_ATTRIBUTES_TYPE_STR[LOAD_ATTRIBUTES_TYPE_NUM] = {"FromFile",
                                                                  "FromMicroarray",
                                                                  "FromMappings",
                                                                  "FromAttributes",
                                                                  "FromAttributeCombinations",
                                                                  "FromExpressionAttributes",
                                                                  "FromLinkAttributes",
                                                                  "FromChromosomeTrack",
                                                                  "FromChromosomesAttributes",
                                                                  "DeleteAttributes",
                                                                  "DeleteAttributeGroup"};

namespace {
const char kCaller[] = "VornStepLoadAttributes_cl::Run";

// A group to make needs a name to be found by.
Name_sptr RequireTargets(Name_sptr targets) {
  if (targets.IsNull()) {
    std::cerr << kCaller << " Targets names no attribute group" << std::endl;
    abort();
  }
  return targets;
}
}  // namespace

VornStepLoadAttributes_cl::VornStepLoadAttributes_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : VornStep_cl(iter, run), iMicroarrays(10, nullptr), iAttributeGroups(10, nullptr) {
  iAttributeGroup = iter->GetProperty("AttributeGroup");
  iSecondAttributeGroup = iter->GetProperty("SecondAttributeGroup");
  iTargets = iter->GetProperty("Targets");
  iMicroarrayName = iter->GetProperty("MicroarrayName");
  iFile = iter->GetProperty("File");
  iOutputFile = iter->GetProperty("OutputFile");
  iInputTrack = iter->GetProperty("InputTrack");
  iLoadType = EnumConverter_tmpl<LoadAttributesType_cl, LOAD_ATTRIBUTES_TYPE_NUM>::FromString(
      LOAD_ATTRIBUTES_TYPE_STR, iter->GetProperty("LoadType"), "FromFile");
  iOperation = EnumConverter_tmpl<OperationType_cl, OPERATION_TYPE_NUM>::FromString(
      OPERATION_TYPE_STR, iter->GetProperty("OperationType"), "All");
  PropertyTreeIter_cl* child = iter->Clone();
  for (child->FirstChild(); child->NotNull(); child->NextSibling()) {
    Name_sptr name = child->GetProperty("Name");
    if (name.IsNull()) continue;
    if (child->IsNameEqual("Microarray")) iMicroarrays.AddLast(name);
    else if (child->IsNameEqual("Attributes")) iAttributeGroups.AddLast(name);
  }
  delete child;
  // These forms stand on gene mappings, link and expression stores and chromosome tracks.
  switch (iLoadType) {
    case LOAD_FROM_MAPPINGS:
    case LOAD_FROM_EXPRESSION_ATTRIBUTES:
    case LOAD_FROM_LINK_ATTRIBUTES:
    case LOAD_FROM_CHROMOSOME_TRACK:
    case LOAD_FROM_CHROMOSOMES_ATTRIBUTES: {
      std::string line = std::string("LoadAttributes with LoadType ") + LOAD_ATTRIBUTES_TYPE_STR[iLoadType] +
                         " is not built yet";
      StopNotBuilt(line.c_str());
    }
    default:
      break;
  }
}

void VornStepLoadAttributes_cl::Store(SpeciesAttributes_cl* values, VornAttributeGroup_cl* group) {
  VornData_cl* data = iRun->GetData();
  data->AddAttributeGroup(iMicroarrayName, values, group->GetType());
  if (iOutputFile.IsNull()) return;
  Name_sptr file = iRun->Resolve(iOutputFile);
  std::ofstream out;
  OpenOutputFile(out, file, kCaller);
  data->GetAttributes(iMicroarrayName, group->GetType())->Write(out, nullptr);
}

void VornStepLoadAttributes_cl::Run() {
  PrintRunHeader("VornStepLoadAttributes_cl");
  VornData_cl* data = iRun->GetData();
  VornAttributeGroup_cl* group = data->FindAttributeGroup(iAttributeGroup, kCaller);
  switch (iLoadType) {
    case LOAD_FROM_FILE: {
      data->FindMicroarray(iMicroarrayName, kCaller);
      Name_sptr file = iRun->Resolve(iFile);
      DataFile_cl::StopUnlessReadable(file, kCaller);
      SpeciesAttributes_cl* values = new SpeciesAttributes_cl;
      values->Load(file, group);
      Store(values, group);
      break;
    }
    case LOAD_FROM_MICROARRAY: {
      Microarray_cl* microarray = data->FindMicroarray(iMicroarrayName, kCaller);
      SpeciesAttributes_cl* values = new SpeciesAttributes_cl;
      values->Load(microarray, group);
      Store(values, group);
      break;
    }
    case LOAD_FROM_ATTRIBUTES: {
      VornAttributeGroup_cl* target = new VornAttributeGroup_cl(RequireTargets(iTargets), group->GetType(), group->GetValueDomain());
      data->AddAttributeGroup(target);
      for (int i = 0; i < iAttributeGroups.GetSize(); i++) {
        VornAttributeGroup_cl* listed = data->FindAttributeGroup(iAttributeGroups[i], kCaller);
        for (auto* entry : listed->GetAttributes())
          if (!target->HasAttribute(entry->iKey)) target->AddAttribute(entry->iKey, entry->iValue->GetRv()->GetDomain());
      }
      break;
    }
    case LOAD_FROM_ATTRIBUTE_COMBINATIONS: {
      data->FindMicroarray(iMicroarrayName, kCaller);
      VornAttributeGroup_cl* second = data->FindAttributeGroup(iSecondAttributeGroup, kCaller);
      VornAttributeGroup_cl* target = new VornAttributeGroup_cl(RequireTargets(iTargets), group, second);
      data->AddAttributeGroup(target);
      SpeciesAttributes_cl* values = new SpeciesAttributes_cl;
      values->Load(data->GetSpecies(iMicroarrayName)->GetAttributeData(group->GetType()), target, group, second,
                   iOperation);
      Store(values, target);
      break;
    }
    case LOAD_DELETE_ATTRIBUTES:
      data->FindMicroarray(iMicroarrayName, kCaller);
      data->GetSpecies(iMicroarrayName)->GetAttributeData(group->GetType())->Delete(group);
      break;
    case LOAD_DELETE_ATTRIBUTE_GROUP:
      data->DeleteAttributeGroup(group);
      break;
    default:
      break;
  }
}
