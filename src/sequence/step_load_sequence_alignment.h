// The LoadSequenceAlignment step: an alignment from its XML file over a loaded sequence group.
#ifndef VORN_SEQUENCE_STEP_LOAD_SEQUENCE_ALIGNMENT_H
#define VORN_SEQUENCE_STEP_LOAD_SEQUENCE_ALIGNMENT_H

#include "pipeline/vorn_step.h"

class SequenceAlignment_cl;

class StepLoadSequenceAlignment_cl : public VornStep_cl {
 public:
  StepLoadSequenceAlignment_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);
  void Run() override;

  // Writes the alignment's XML and its letters to the files that are given.
  static void WriteOutputs(const SequenceAlignment_cl* alignment, Name_sptr outputFile, Name_sptr outputSequenceFile,
                           const char* caller);

 private:
  Name_sptr iTargetSequences;
  Name_sptr iFile;
  Name_sptr iOutputFile;
  Name_sptr iOutputSequenceFile;
};

#endif
