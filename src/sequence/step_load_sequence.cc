// The LoadSequence step: a sequence group from a FASTA-like file.
#include "sequence/step_load_sequence.h"

#include <iostream>

#include "data/data_file.h"
#include "pipeline/vorn_run.h"
#include "pipeline/output_file.h"
#include "sequence/sequence_manager.h"

StepLoadSequence_cl::StepLoadSequence_cl(PropertyTreeIter_cl* iter, VornRun_cl* run) : VornStep_cl(iter, run) {
  iAlphabet = iter->GetProperty("Alphabet", Name_sptr(SequenceManager_cl::kDefaultAlphabet));
  iter->GetIntProperty("EffectiveAlphabetSize", &iEffectiveAlphabetSize, SequenceManager_cl::kDefaultAlphabetSize);
  iSequenceGroupName = iter->GetProperty("SequenceGroupName");
  iter->GetBooleanProperty("PreloadSequences", &iPreloadSequences, 1);
  iFile = iter->GetProperty("File");
  iSequenceList = iter->GetProperty("SequenceList");
  iOutputFile = iter->GetProperty("OutputFile");
}

void StepLoadSequence_cl::Run() {
  std::cerr << "StepLoadSequence_cl::Run Name=" << iName << " started." << std::endl;
  DataFile_cl::StopUnlessReadable(iFile, "StepLoadSequence_cl");
  if (iSequenceList) DataFile_cl::StopUnlessReadable(iSequenceList, "StepLoadSequence_cl");
  auto* group = new SequenceManager_cl(iSequenceGroupName, iFile, iAlphabet, iEffectiveAlphabetSize, iSequenceList,
                                       iPreloadSequences, true);
  iRun->GetRepository().AddSequenceGroup(group);
  Name_sptr output = iRun->Resolve(iOutputFile);
  if (output) {
    std::ofstream out;
    OpenOutputFile(out, output, "StepLoadSequence_cl");
    group->WriteFile(out);
  }
  std::cerr << "StepLoadSequence_cl::Run Name=" << iName << " ended." << std::endl;
}
