// The Loop step: runs its inner steps until they are complete or the iteration limit is reached.
#ifndef VORN_PIPELINE_VORN_STEP_LOOP_H
#define VORN_PIPELINE_VORN_STEP_LOOP_H

#include "pipeline/vorn_step.h"
#include "pipeline/vorn_steps.h"

class VornStepLoop_cl : public VornStep_cl {
 public:
  VornStepLoop_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);
  ~VornStepLoop_cl() override;

  void Run() override;
  // Answers "$(LoopIteration)" with the current iteration, counted from 0.
  int GetLoopIteration(LoopIterationType_cl type) override;

 private:
  VornSteps_cl* iSteps = nullptr;
  int iMinIterations;
  int iMaxIterations;
  int iIteration = 0;
};

#endif
