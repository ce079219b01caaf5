// The CreateLabeledSequences step: a ranked, labelled sequence set from loaded groups and labels.
#ifndef VORN_SEQUENCE_STEP_CREATE_LABELED_SEQUENCES_H
#define VORN_SEQUENCE_STEP_CREATE_LABELED_SEQUENCES_H

#include "pipeline/vorn_step.h"

class StepCreateLabeledSequences_cl : public VornStep_cl {
 public:
  // Checks the input type now; the groups and labels are looked up when the step runs.
  StepCreateLabeledSequences_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);
  void Run() override;
};

#endif
