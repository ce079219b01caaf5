// The LoadMicroarray step: reads a microarray's tab file, transforms it and may write it out.
#ifndef VORN_DATA_VORN_STEP_LOAD_MICROARRAY_H
#define VORN_DATA_VORN_STEP_LOAD_MICROARRAY_H

#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vorn_step.h"

// The PreProcess transforms, by the index of their text in PRE_PROCESS_TYPE_STR.
enum PreProcessType_cl {
  PRE_PROCESS_NONE = 0,
  PRE_PROCESS_ZERO_TRANSFORM,
  PRE_PROCESS_ZERO_TRANSFORM_GENES,
  PRE_PROCESS_ZERO_TRANSFORM_EXPERIMENTS,
  PRE_PROCESS_CENTER_TRANSFORM_GENES,
  PRE_PROCESS_CENTER_TRANSFORM_EXPERIMENTS,
  PRE_PROCESS_SCALE_TRANSFORM_GENES,
  PRE_PROCESS_SCALE_TRANSFORM_EXPERIMENTS,
  PRE_PROCESS_RANK_TRANSFORM_GENES,
  PRE_PROCESS_RANK_TRANSFORM_EXPERIMENTS,
  PRE_PROCESS_AVERAGE_CONSECUTIVE_EXPERIMENTS,
  PRE_PROCESS_NUM
};
extern const char* PRE_PROCESS_TYPE_STR[PRE_PROCESS_NUM];

class VornStepLoadMicroarray_cl : public VornStep_cl {
 public:
  VornStepLoadMicroarray_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);

  // Loads the microarray (made with the default layout when the data does not know it), enters it
  // in the run's repository when no microarray of that name is there, transforms it, writes it.
  void Run() override;

 private:
  Name_sptr iValueDomain;
  Name_sptr iMicroarrayName;
  Name_sptr iFile;
  Name_sptr iOutputFile;
  Name_sptr iGeneList;
  Name_sptr iExperimentList;
  PreProcessType_cl iPreProcess;
  int iNumAverageConsecutiveExperiments;
};

#endif
