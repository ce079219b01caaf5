// The CreateLabeledSequences step: a ranked, labelled sequence set from loaded groups and labels.
#include "sequence/step_create_labeled_sequences.h"

#include <iostream>

#include "pipeline/vorn_run.h"
#include "sequence/labeled_sequences.h"

StepCreateLabeledSequences_cl::StepCreateLabeledSequences_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : VornStep_cl(iter, run) {
  LabeledSequences_cl::ReadInputType(iter);
  Save(iter);
}

void StepCreateLabeledSequences_cl::Run() {
  PrintRunHeader("StepCreateLabeledSequences_cl");
  auto* labeled = new LabeledSequences_cl(iSavedIter, iRun->GetRepository());
  iRun->GetRepository().iLabeledSequences.AddLast(labeled->GetName(), labeled);
  std::cerr << "StepCreateLabeledSequences_cl::Run Name=" << iName << " sequences=" << labeled->GetNumSequences()
            << " positives=" << labeled->GetNumOfPositiveSequences() << std::endl;
}
