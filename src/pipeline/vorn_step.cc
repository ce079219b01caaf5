// The common base of every pipeline step.
#include "pipeline/vorn_step.h"

#include <cstdlib>
#include <iostream>

#include "pipeline/vorn_run.h"

const char* LOOP_ITERATION_TYPE_STR[2] = {"$(LoopIteration)", "$(EMLoopIteration)"};

VornStep_cl::VornStep_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : iRun(run), iLog(run ? run->GetLog() : nullptr), iName(iter->GetProperty("Name")) {}

VornStep_cl::~VornStep_cl() { delete iSavedIter; }

void VornStep_cl::Save(PropertyTreeIter_cl* iter) {
  delete iSavedIter;
  iSavedIter = iter->Clone();
}

int VornStep_cl::Load() {
  if (iLoaded) return iLoaded;
  iLoaded = 1;
  Load(iSavedIter);
  return 0;
}

// Only steps that saved their element may load it.
void VornStep_cl::Load(PropertyTreeIter_cl*) { abort(); }

void VornStep_cl::PrintRunHeader(const char* className) const {
  std::cerr << className << "::Run Name=" << iName << std::endl;
}
