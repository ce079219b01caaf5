// The Dummy step: samples synthetic expression data from the module graph of a microarray's expression tree.
#ifndef VORN_MODULE_VORN_STEP_DUMMY_H
#define VORN_MODULE_VORN_STEP_DUMMY_H

#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vorn_step.h"

class VornStepDummy_cl : public VornStep_cl {
 public:
  VornStepDummy_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);

  void Run() override;

 private:
  // File and AttributeGroup are read for the pipeline file's sake.
  Name_sptr iFile;
  Name_sptr iOutputFile;
  Name_sptr iMicroarrayName;
  Name_sptr iAttributeGroup;
};

#endif
