// The LoadMicroarray step.
#include "data/vorn_step_load_microarray.h"

#include <iostream>

#include "data/data_file.h"
#include "data/microarray.h"
#include "data/vorn_data.h"
#include "pipeline/enum_converter.h"
#include "pipeline/vorn_run.h"

const char* PRE_PROCESS_TYPE_STR[PRE_PROCESS_NUM] = {"None",
                                                     "ZeroTransform",
                                                     "ZeroTransformGenes",
                                                     "ZeroTransformExperiments",
                                                     "CenterTransformGenes",
                                                     "CenterTransformExperiments",
                                                     "ScaleTransformGenes",
                                                     "ScaleTransformExperiments",
                                                     "RankTransformGenes",
                                                     "RankTransformExperiments",
                                                     "AverageConsecutiveExperiments"};

namespace {
const char kCaller[] = "VornStepLoadMicroarray_cl::Run";

// A list of names to keep, or null when none is given.
NameSet_tmpl<int>* LoadFilter(Name_sptr file) {
  if (file.IsNull()) return nullptr;
  DataFile_cl::StopUnlessReadable(file, kCaller);
  return DataFile_cl::LoadList(file, 0);
}
}  // namespace

VornStepLoadMicroarray_cl::VornStepLoadMicroarray_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : VornStep_cl(iter, run) {
  std::cerr << "==== VornStepLoadMicroarray_cl:: c'tor - START ====" << std::endl;
  iValueDomain = iter->GetProperty("ValueDomain", Name_sptr("Continuous"));
  iMicroarrayName = iter->GetProperty("MicroarrayName");
  iFile = iter->GetProperty("File");
  iOutputFile = iter->GetProperty("OutputFile");
  iGeneList = iter->GetProperty("GeneList");
  iExperimentList = iter->GetProperty("ExperimentList");
  iPreProcess = EnumConverter_tmpl<PreProcessType_cl, PRE_PROCESS_NUM>::FromString(
      PRE_PROCESS_TYPE_STR, iter->GetProperty("PreProcess"), "none");
  iter->GetIntProperty("NumAverageConsecutiveExperiments", &iNumAverageConsecutiveExperiments, 5);
  std::cerr << "==== VornStepLoadMicroarray_cl:: c'tor - END ====" << std::endl;
}

void VornStepLoadMicroarray_cl::Run() {
  PrintRunHeader("VornStepLoadMicroarray_cl");
  VornData_cl* data = iRun->GetData();
  Microarray_cl* microarray = data->GetMicroarray(iMicroarrayName);
  if (!microarray) {
    microarray = new Microarray_cl(nullptr, iMicroarrayName, iFile, iValueDomain);
    data->AddMicroarray(microarray);
  }
  DataFile_cl::StopUnlessReadable(iFile.IsNull() ? microarray->GetFileName() : iFile, kCaller);
  NameSet_tmpl<int>* genes = LoadFilter(iGeneList);
  NameSet_tmpl<int>* experiments = LoadFilter(iExperimentList);
  microarray->Load(genes, experiments, iFile);
  delete genes;
  delete experiments;

  DataRepository_cl& repository = iRun->GetRepository();
  if (!repository.iMicroarrays.GetEntry(iMicroarrayName)) repository.AddMicroarray(microarray);

  switch (iPreProcess) {
    case PRE_PROCESS_NONE:
    case PRE_PROCESS_NUM:
      break;
    case PRE_PROCESS_ZERO_TRANSFORM:
      microarray->ZeroTransform();
      break;
    case PRE_PROCESS_ZERO_TRANSFORM_GENES:
      microarray->ZeroTransformGenes();
      break;
    case PRE_PROCESS_ZERO_TRANSFORM_EXPERIMENTS:
      microarray->ZeroTransformExperiments();
      break;
    case PRE_PROCESS_CENTER_TRANSFORM_GENES:
      microarray->CenterTransformGenes();
      break;
    case PRE_PROCESS_CENTER_TRANSFORM_EXPERIMENTS:
      microarray->CenterTransformExperiments();
      break;
    case PRE_PROCESS_SCALE_TRANSFORM_GENES:
      microarray->ScaleTransformGenes();
      break;
    case PRE_PROCESS_SCALE_TRANSFORM_EXPERIMENTS:
      microarray->ScaleTransformExperiments();
      break;
    case PRE_PROCESS_RANK_TRANSFORM_GENES:
      microarray->RankTransformGenes();
      break;
    case PRE_PROCESS_RANK_TRANSFORM_EXPERIMENTS:
      microarray->RankTransformExperiments();
      break;
    case PRE_PROCESS_AVERAGE_CONSECUTIVE_EXPERIMENTS:
      microarray->AverageConsecutiveExperiments(iNumAverageConsecutiveExperiments);
      break;
  }
  if (!iOutputFile.IsNull()) microarray->WriteFile(iRun->Resolve(iOutputFile), kCaller, nullptr, nullptr);
}
