// Sequence sets ranked by a numeric label, positives first, with optional masks of usable positions.
#ifndef VORN_SEQUENCE_LABELED_SEQUENCES_H
#define VORN_SEQUENCE_LABELED_SEQUENCES_H

#include "pipeline/bitset.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "sequence/sequence_manager.h"

class DataRepository_cl;
class Microarray_cl;

enum LabeledUnAlignedSeqencesInputType_cl {
  SEQUENCE_MANAGER_AND_MICROARRAY = 0,
  POSITIVE_AND_NEGATIVE_SEQUENCE_MANAGERS = 1
};
extern const char* LABELED_UNALIGNED_SEQUENCES_INPUT_TYPE_STR[2];

// The sequences are shared with the groups they come from, whose owners stay responsible for them.
class LabeledSequences_cl : public SequenceManager_cl {
 public:
  // From the keys of a CreateLabeledSequences element and the groups and microarrays of the repository.
  LabeledSequences_cl(PropertyTreeIter_cl* iter, DataRepository_cl& repository);
  // Labels from the first column of the microarray's row of each sequence's name.
  LabeledSequences_cl(Name_sptr name, Microarray_cl* labels, const SequenceManager_cl* group);
  // Label 1.0 for the positive group's sequences, then 0.0 for the negative group's.
  LabeledSequences_cl(Name_sptr name, const SequenceManager_cl* positive, const SequenceManager_cl* negative);
  ~LabeledSequences_cl() override;

  static LabeledUnAlignedSeqencesInputType_cl ReadInputType(PropertyTreeIter_cl* iter);

  double GetLabel(int i) const { return iLabels[i]; }
  const Vector_tmpl<double>& GetLabels() const { return iLabels; }
  // Null when nothing of the sequence is masked; a set bit is a usable position.
  Bitset_cl* GetMask(int i) const { return iMasks[i]; }
  const Vector_tmpl<Bitset_cl*>* GetMasks() const { return &iMasks; }
  int GetNumOfPositiveSequences() const { return iNumPositive; }
  bool IsBinary() const { return iBinary; }
  // Sequences from the start while the label is at or above thresh.
  int GetNumOfPositiveSequencesByThresh(double thresh) const;
  // Masks every position of the letter whose index in the alphabet string is maskChar's first character.
  void InitMasks(Name_sptr maskChar);

 private:
  void GetAndRankInput(Microarray_cl* labels, const SequenceManager_cl* group, const char* caller);
  void AddPositiveAndNegative(const SequenceManager_cl* positive, const SequenceManager_cl* negative);
  void AddLabeled(Sequence_cl* sequence, double label);

  Vector_tmpl<double> iLabels;
  Vector_tmpl<Bitset_cl*> iMasks{10, nullptr};
  int iNumPositive = 0;
  bool iBinary = true;
};

#endif
