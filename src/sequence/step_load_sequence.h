// The LoadSequence step: a sequence group from a FASTA-like file.
#ifndef VORN_SEQUENCE_STEP_LOAD_SEQUENCE_H
#define VORN_SEQUENCE_STEP_LOAD_SEQUENCE_H

#include "pipeline/vorn_step.h"

class StepLoadSequence_cl : public VornStep_cl {
 public:
  StepLoadSequence_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);
  void Run() override;

 private:
  Name_sptr iAlphabet;
  int iEffectiveAlphabetSize;
  Name_sptr iSequenceGroupName;
  int iPreloadSequences;
  Name_sptr iFile;
  Name_sptr iSequenceList;
  Name_sptr iOutputFile;
};

#endif
