// An ordered list of steps, run in turn; the body of a run and of a loop.
#ifndef VORN_PIPELINE_VORN_STEPS_H
#define VORN_PIPELINE_VORN_STEPS_H

#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "pipeline/vorn_step.h"

class VornSteps_cl {
 public:
  // Builds a step for each Step child of the element; moves iter to its children.
  VornSteps_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);
  ~VornSteps_cl();
  VornSteps_cl(const VornSteps_cl&) = delete;
  VornSteps_cl& operator=(const VornSteps_cl&) = delete;

  // Runs every step; the list is complete when all its steps report complete.
  void Run();
  int IsComplete() const { return iIsComplete; }
  int GetSize() const { return iSteps.GetSize(); }
  VornStep_cl* GetStep(int i) { return iSteps[i]; }

 private:
  VornRun_cl* iRun;
  Vector_tmpl<VornStep_cl*> iSteps;
  int iIsComplete = 0;
};

#endif
