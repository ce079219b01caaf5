// The LoadSequenceAlignment step: an alignment from its XML file over a loaded sequence group.
#include "sequence/step_load_sequence_alignment.h"

#include <cstdlib>
#include <iostream>

#include "data/data_file.h"
#include "pipeline/vorn_run.h"
#include "pipeline/output_file.h"
#include "sequence/sequence_alignment.h"

StepLoadSequenceAlignment_cl::StepLoadSequenceAlignment_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : VornStep_cl(iter, run) {
  iTargetSequences = iter->GetProperty("TargetSequences");
  iFile = iter->GetProperty("File");
  iOutputFile = iter->GetProperty("OutputFile");
  iOutputSequenceFile = iter->GetProperty("OutputSequenceFile");
}

void StepLoadSequenceAlignment_cl::Run() {
  PrintRunHeader("StepLoadSequenceAlignment_cl");
  SequenceManager_cl* target = nullptr;
  if (iTargetSequences) {
    target = iRun->GetRepository().iSequenceGroups.GetEntry(iTargetSequences);
    if (!target) {
      std::cerr << "StepLoadSequenceAlignment_cl Unknown sequence group " << iTargetSequences << std::endl;
      abort();
    }
    std::cerr << " StepLoadSequenceAlignment_cl target_sequences size:" << target->GetNumSequences() << std::endl;
  }
  DataFile_cl::StopUnlessReadable(iFile, "StepLoadSequenceAlignment_cl");
  SequenceAlignment_cl* alignment = SequenceAlignment_cl::Create(iFile, target);
  iRun->GetRepository().AddSequenceAlignment(alignment);
  WriteOutputs(alignment, iOutputFile, iOutputSequenceFile, "StepLoadSequenceAlignment_cl");
  std::cerr << " StepLoadSequenceAlignment_cl alignment size:" << alignment->GetNumSequences() << std::endl;
}

void StepLoadSequenceAlignment_cl::WriteOutputs(const SequenceAlignment_cl* alignment, Name_sptr outputFile,
                                                Name_sptr outputSequenceFile, const char* caller) {
  if (outputFile) {
    std::ofstream out;
    OpenOutputFile(out, outputFile, caller);
    alignment->WriteFile(out);
  }
  if (outputSequenceFile) {
    std::ofstream out;
    OpenOutputFile(out, outputSequenceFile, caller);
    alignment->WriteSequenceFile(out, 0, -1, 0);
  }
}
