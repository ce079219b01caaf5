// An ordered list of steps, run in turn.
#include "pipeline/vorn_steps.h"

#include "pipeline/step_factory.h"
#include "pipeline/vorn_run.h"

VornSteps_cl::VornSteps_cl(PropertyTreeIter_cl* iter, VornRun_cl* run) : iRun(run), iSteps(10, nullptr) {
  for (iter->FirstChild(); iter->NotNull(); iter->NextSibling()) {
    if (!iter->IsNameEqual("Step")) continue;
    PropertyTreeIter_cl* child = iter->Clone();
    iSteps.AddLast(VornStepFactory_cl::CreateStep(child, run));
    delete child;
  }
}

VornSteps_cl::~VornSteps_cl() { iSteps.DeleteAll(); }

void VornSteps_cl::Run() {
  iIsComplete = 1;
  for (int i = 0; i < iSteps.GetSize(); i++) {
    VornStep_cl* step = iSteps[i];
    iRun->PushActiveStep(step);
    step->Run();
    iRun->PopActiveStep();
    if (!step->IsComplete()) iIsComplete = 0;
  }
}
