// Sequence sets ranked by a numeric label, positives first, with optional masks of usable positions.
#include "sequence/labeled_sequences.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

#include "data/data_file.h"
#include "data/microarray.h"
#include "pipeline/data_repository.h"
#include "pipeline/enum_converter.h"

const char* LABELED_UNALIGNED_SEQUENCES_INPUT_TYPE_STR[2] = {"SequenceManagerAndMicroarray",
                                                             "PositiveAndNegativeSequenceManagers"};

namespace {
const SequenceManager_cl* FindGroup(DataRepository_cl& repository, Name_sptr name) {
  SequenceManager_cl* group = repository.iSequenceGroups.GetEntry(name);
  if (!group) {
    std::cerr << "StepCreateLabeledSequences_cl Unknown sequence group " << name << std::endl;
    abort();
  }
  return group;
}
}  // namespace

LabeledUnAlignedSeqencesInputType_cl LabeledSequences_cl::ReadInputType(PropertyTreeIter_cl* iter) {
  return EnumConverter_tmpl<LabeledUnAlignedSeqencesInputType_cl, 2>::FromString(
      LABELED_UNALIGNED_SEQUENCES_INPUT_TYPE_STR, iter->GetProperty("LabeledSequencesInputType"), nullptr);
}

LabeledSequences_cl::LabeledSequences_cl(PropertyTreeIter_cl* iter, DataRepository_cl& repository)
    : SequenceManager_cl(false) {
  SetName(iter->GetProperty("LabeledSequencesName"));
  if (ReadInputType(iter) == SEQUENCE_MANAGER_AND_MICROARRAY) {
    const SequenceManager_cl* group = FindGroup(repository, iter->GetProperty("LabeledSequencesInputSingleSeqsSet"));
    Name_sptr labelsName = iter->GetProperty("SequencesLabelsArrayName");
    Microarray_cl* labels = repository.iMicroarrays.GetEntry(labelsName);
    if (!labels) {
      std::cerr << "StepCreateLabeledSequences_cl Unknown microarray " << labelsName << std::endl;
      abort();
    }
    GetAndRankInput(labels, group, "StepCreateLabeledSequences_cl");
  } else {
    const SequenceManager_cl* positive = FindGroup(repository, iter->GetProperty("LabeledSequencesInputPositiveSeqs"));
    const SequenceManager_cl* negative = FindGroup(repository, iter->GetProperty("LabeledSequencesInputNegativeSeqs"));
    AddPositiveAndNegative(positive, negative);
  }
  int initMasks;
  iter->GetBooleanProperty("LabeledSequencesInitMasks", &initMasks, 0);
  if (initMasks) InitMasks(iter->GetProperty("LabeledSequencesMaskCharToUse"));
}

LabeledSequences_cl::LabeledSequences_cl(Name_sptr name, Microarray_cl* labels, const SequenceManager_cl* group)
    : SequenceManager_cl(false) {
  SetName(name);
  GetAndRankInput(labels, group, "LabeledSequences_cl");
}

LabeledSequences_cl::LabeledSequences_cl(Name_sptr name, const SequenceManager_cl* positive,
                                         const SequenceManager_cl* negative)
    : SequenceManager_cl(false) {
  SetName(name);
  AddPositiveAndNegative(positive, negative);
}

LabeledSequences_cl::~LabeledSequences_cl() { iMasks.DeleteAll(); }

void LabeledSequences_cl::AddLabeled(Sequence_cl* sequence, double label) {
  AddSequence(sequence);
  iLabels.AddLast(label);
  iMasks.AddLast(nullptr);
}

// Rows whose name is not in the group, and rows with a missing label, are passed over: the set
// holds the sequences that have a label.
void LabeledSequences_cl::GetAndRankInput(Microarray_cl* labels, const SequenceManager_cl* group, const char* caller) {
  SetAlphabet(group->GetAlphabet(), group->GetAlphabetSize());
  if (labels->GetNumGenes() > 0 && labels->GetNumExperiments() < 1) {
    std::cerr << caller << " Microarray " << labels->GetName() << " has no column of labels" << std::endl;
    abort();
  }
  Vector_tmpl<double> values;
  Vector_tmpl<Sequence_cl*> sequences(10, nullptr);
  int positives = 0;
  for (int k = 0; k < labels->GetNumGenes(); k++) {
    Sequence_cl* sequence = group->GetSequence(labels->GetGeneName(k));
    double label = labels->GetMatrix()->GetElement(k, 0);
    if (!sequence || label == kMissingReal) continue;
    if (label == 1.0)
      positives++;
    else if (label != 0.0)
      iBinary = false;
    values.AddLast(label);
    sequences.AddLast(sequence);
  }
  iNumPositive = iBinary ? positives : 0;
  // Ascending, then taken from the end: the highest labels come first.
  values.SortWithOperatorAndSortOtherVecAccordingly(&sequences);
  for (int k = values.GetSize() - 1; k >= 0; k--) AddLabeled(sequences[k], values[k]);
}

void LabeledSequences_cl::AddPositiveAndNegative(const SequenceManager_cl* positive,
                                                 const SequenceManager_cl* negative) {
  SetAlphabet(positive->GetAlphabet(), positive->GetAlphabetSize());
  iNumPositive = positive->GetNumSequences();
  for (int i = 0; i < positive->GetNumSequences(); i++) AddLabeled(positive->GetSequence(i), 1.0);
  for (int i = 0; i < negative->GetNumSequences(); i++) AddLabeled(negative->GetSequence(i), 0.0);
}

int LabeledSequences_cl::GetNumOfPositiveSequencesByThresh(double thresh) const {
  int count = 0;
  while (count < iLabels.GetSize() && iLabels[count] >= thresh) count++;
  return count;
}

void LabeledSequences_cl::InitMasks(Name_sptr maskChar) {
  if (!maskChar.CStr()) return;
  const char* alphabet = GetAlphabet().CStr();
  const char* found = alphabet ? strchr(alphabet, maskChar.CStr()[0]) : nullptr;
  int code = found ? static_cast<int>(found - alphabet) : -1;
  for (int i = 0; i < GetNumSequences(); i++) {
    Sequence_cl* sequence = GetSequence(i);
    delete iMasks[i];
    iMasks[i] = nullptr;
    for (int p = 0; p < sequence->GetLength(); p++) {
      if (sequence->GetLetter(p) != code) continue;
      if (!iMasks[i]) iMasks[i] = new Bitset_cl(sequence->GetLength(), 1);
      iMasks[i]->Clear(p);
    }
  }
}
