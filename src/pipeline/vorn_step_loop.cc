// The Loop step.
#include "pipeline/vorn_step_loop.h"

#include <iostream>

VornStepLoop_cl::VornStepLoop_cl(PropertyTreeIter_cl* iter, VornRun_cl* run) : VornStep_cl(iter, run) {
  iter->GetIntProperty("MaxIterations", &iMaxIterations, 5);
  iter->GetIntProperty("MinIterations", &iMinIterations, 1);
  std::cerr << "VornStepLoop_cl Read Max Iterations=" << iMaxIterations << " Min Iterations=" << iMinIterations
            << " Name=" << iName << std::endl;
  iSteps = new VornSteps_cl(iter, run);
}

VornStepLoop_cl::~VornStepLoop_cl() { delete iSteps; }

void VornStepLoop_cl::Run() {
  iIteration = 0;
  if (iMaxIterations < 1) return;
  for (;;) {
    std::cerr << "VornStepLoop_cl::Run " << iName << " Iteration=" << iIteration << std::endl;
    if (iLog) *iLog << "VornStepLoop_cl::Run " << iName << " Iteration=" << iIteration << std::endl;
    iSteps->Run();
    if (iSteps->IsComplete() && iIteration + 1 >= iMinIterations) return;
    if (++iIteration >= iMaxIterations) return;
  }
}

int VornStepLoop_cl::GetLoopIteration(LoopIterationType_cl type) {
  return type == LOOP_ITERATION ? iIteration : -1;
}
