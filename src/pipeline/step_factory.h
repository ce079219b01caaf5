// Making a step object from the Type of its element: the one place that knows every step class.
#ifndef VORN_PIPELINE_STEP_FACTORY_H
#define VORN_PIPELINE_STEP_FACTORY_H

#include "pipeline/prop_tree.h"
#include "pipeline/vorn_step.h"

class VornRun_cl;

class VornStepFactory_cl {
 public:
  // Reads Type and constructs the step, which reads its keys. An unknown type is fatal; a known
  // type that this build does not have yet ends the program with status 255.
  static VornStep_cl* CreateStep(PropertyTreeIter_cl* iter, VornRun_cl* run);

  // For tests and fuzzing only: a maker asked first, which returns null to pass a type on.
  using StepMaker = VornStep_cl* (*)(const char* type, PropertyTreeIter_cl* iter, VornRun_cl* run);
  static void SetTestStepMaker(StepMaker maker);
};

#endif
