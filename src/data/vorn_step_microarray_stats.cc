// The MicroarrayStats step: pair scores and whole-microarray operations on a loaded microarray.
#include "data/vorn_step_microarray_stats.h"

#include <fstream>
#include <iostream>
#include <string>

#include "data/data_file.h"
#include "data/microarray.h"
#include "data/vorn_data.h"
#include "pipeline/enum_converter.h"
#include "pipeline/not_built.h"
#include "pipeline/vorn_run.h"

const char* MICROARRAY_STATS_TYPE_STR[STATS_TYPE_NUM] = {
    "ComputePairwiseCorrelations", "ZeroTransform", "SynchGenes",         "AverageMetaGenes",
    "PasteExperiments",            "AddMicroarray", "FindExpressionHills"};

VornStepMicroarrayStats_cl::VornStepMicroarrayStats_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : VornStep_cl(iter, run) {
  iMicroarrayName = iter->GetProperty("MicroarrayName");
  iMetric = iter->GetProperty("Metric");
  iStatsType = EnumConverter_tmpl<MicroarrayStatsType_cl, STATS_TYPE_NUM>::FromString(
      MICROARRAY_STATS_TYPE_STR, iter->GetProperty("StatsType"), nullptr);
  iAttributesType = EnumConverter_tmpl<StatsAttributesType_cl, STATS_ATTRIBUTES_NUM>::FromString(
      STATS_ATTRIBUTES_TYPE_STR, iter->GetProperty("AttributesType"), "ExperimentAttributes");
  iOutputFile = iter->GetProperty("OutputFile");
  iPairsFile = iter->GetProperty("PairsFile");
  iter->GetIntProperty("TopK", &iFilter.iTopK, kMissingInt);
  iter->GetIntProperty("MinDimensions", &iFilter.iMinDimensions, 1);
  iFilter.iAbsolute = iter->GetDoubleProperty("AbsoluteCutoff", &iFilter.iCutoff, kMissingReal);
  if (iFilter.iAbsolute) {
    std::cerr << "Using absolute cutoff of -->" << iFilter.iCutoff << "<--" << std::endl;
  } else if (iter->GetDoubleProperty("Cutoff", &iFilter.iCutoff, kMissingReal)) {
    std::cerr << "Using cutoff of -->" << iFilter.iCutoff << "<--" << std::endl;
  }
  // The other kinds combine microarrays through meta gene mappings or build new rows from hills,
  // which come with the gene mapping subsystem.
  if (iStatsType != STATS_COMPUTE_PAIRWISE_CORRELATIONS && iStatsType != STATS_ZERO_TRANSFORM)
    StopNotBuilt((std::string("MicroarrayStats with StatsType ") + MICROARRAY_STATS_TYPE_STR[iStatsType] +
                  " is not built yet")
                     .c_str());
}

void VornStepMicroarrayStats_cl::Run() {
  std::cerr << "bof VornStepMicroarrayStats_cl::Run() Name=" << iName << std::endl;
  std::cerr << "\t" << iMicroarrayName << std::endl;
  Microarray_cl* microarray = iRun->GetData()->FindMicroarray(iMicroarrayName, "VornStepMicroarrayStats_cl::Run");
  std::ofstream out;
  Name_sptr file = iRun->Resolve(iOutputFile);
  if (!file.IsNull()) {
    out.open(file->GetText());
    if (!out) {
      std::cerr << "VornStepMicroarrayStats_cl::Run Cannot write file " << file << std::endl;
      abort();
    }
  }
  if (iStatsType == STATS_COMPUTE_PAIRWISE_CORRELATIONS) {
    MicroarrayStats_cl stats(microarray);
    std::ofstream none;  // a closed stream takes the pairs when no file is named
    stats.ComputePairwiseScores(iMetric, iAttributesType, iPairsFile, iFilter, file.IsNull() ? none : out);
  } else {
    microarray->ZeroTransform();
    if (!file.IsNull()) microarray->WriteFile(out, nullptr, nullptr);
  }
  std::cerr << "eof VornStepMicroarrayStats_cl::Run()" << std::endl;
}
