// The Print step.
#include "data/vorn_step_print.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "data/vorn_data.h"
#include "module/vorn.h"
#include "module/vorn_cluster.h"
#include "pipeline/enum_converter.h"
#include "pipeline/not_built.h"
#include "pipeline/vorn_run.h"
#include "pipeline/output_file.h"

const char* PRINT_TYPE_STR[PRINT_TYPE_NUM] = {"Microarray", "Attributes",    "MetaGeneMapping",
                                              "Motifs",     "PrintClusters", "Cpd"};

namespace {
const char kCaller[] = "VornStepPrint_cl::Run";
}  // namespace

VornStepPrint_cl::VornStepPrint_cl(PropertyTreeIter_cl* iter, VornRun_cl* run) : VornStep_cl(iter, run) {
  iMicroarrayName = iter->GetProperty("MicroarrayName");
  iOutputFile = iter->GetProperty("OutputFile");
  iAttributeGroup = iter->GetProperty("AttributeGroup");
  iPrintType = EnumConverter_tmpl<PrintType_cl, PRINT_TYPE_NUM>::FromString(PRINT_TYPE_STR, iter->GetProperty("PrintType"),
                                                                             "Microarray");
  // Gene mappings and motifs are written by the subsystems that hold them.
  if (iPrintType == PRINT_META_GENE_MAPPING || iPrintType == PRINT_MOTIFS) {
    std::string line = std::string("Print with PrintType ") + PRINT_TYPE_STR[iPrintType] + " is not built yet";
    StopNotBuilt(line.c_str());
  }
}

void VornStepPrint_cl::Run() {
  PrintRunHeader("VornStepPrint_cl");
  if (iOutputFile.IsNull()) return;
  VornData_cl* data = iRun->GetData();
  Name_sptr file = iRun->Resolve(iOutputFile);
  std::ofstream out;
  OpenOutputFile(out, file, kCaller);
  switch (iPrintType) {
    case PRINT_MICROARRAY:
      data->FindMicroarray(iMicroarrayName, kCaller)->WriteFile(out, nullptr, nullptr);
      break;
    case PRINT_ATTRIBUTES: {
      data->FindMicroarray(iMicroarrayName, kCaller);
      VornAttributeGroup_cl* group = data->FindAttributeGroup(iAttributeGroup, kCaller);
      data->GetSpecies(iMicroarrayName)->GetAttributeData(group->GetType())->Write(out, group);
      break;
    }
    case PRINT_CLUSTERS: {
      VornCluster_cl* cluster = iRun->GetVornCluster(iMicroarrayName);
      if (!cluster) {
        std::cerr << kCaller << " Unknown module cluster " << iMicroarrayName << std::endl;
        abort();
      }
      cluster->WriteFile(out);
      break;
    }
    default: {
      data->FindMicroarray(iMicroarrayName, kCaller);
      Vorn_cl* vorn = iRun->CreateVorn();
      Attr_cl* attribute = vorn->GetExpressionAttr(iMicroarrayName);
      if (!attribute || attribute->GetCpd().IsNull()) {
        std::cerr << kCaller << " No CPD for the expression of microarray " << iMicroarrayName << std::endl;
        abort();
      }
      attribute->GetCpd()->WriteFile(out);
    }
  }
}
