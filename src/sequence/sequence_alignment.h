// Alignments of sequences without and with gaps, and their XML file.
#ifndef VORN_SEQUENCE_SEQUENCE_ALIGNMENT_H
#define VORN_SEQUENCE_SEQUENCE_ALIGNMENT_H

#include <ostream>

#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "sequence/sequence_manager.h"

enum SequenceAlignmentType_cl { GAPLESS_ALIGNMENT = 0, GAPPED_ALIGNMENT = 1 };
extern const char* SEQUENCE_ALIGNMENT_TYPE_STR[2];

// Sequence i uses its letters SequenceStart to SequenceEnd (inclusive), the first of them at column
// AlignmentStart. The alignment holds its own copies of the sequences, so that reverse complementing
// one leaves the group it came from as it was.
class SequenceAlignment_cl {
 public:
  SequenceAlignment_cl();
  virtual ~SequenceAlignment_cl();
  SequenceAlignment_cl(const SequenceAlignment_cl&) = delete;
  SequenceAlignment_cl& operator=(const SequenceAlignment_cl&) = delete;

  // Forgets everything and aligns copies of the group's sequences at column 0, whole, weight 1.0.
  virtual void Reset(Name_sptr name, const SequenceManager_cl* group);
  // The operations of only one kind stop the program in the other.
  virtual Vector_tmpl<int>* GetSequenceAlignmentInserts(int i);
  virtual void SetSequenceAlignmentInserts(int i, const Vector_tmpl<int>* inserts, int offset);
  // The letter of sequence i at column p, -1 where it has none.
  virtual int GetChar(int i, int p) const = 0;
  virtual bool HasChar(int i, int p) const = 0;
  virtual void RecomputeAlignmentLength();
  virtual void WriteFile(std::ostream& out) const = 0;
  // A new alignment of the chosen sequences (indices may repeat); out receives the new group of
  // their copies, which the caller owns.
  virtual SequenceAlignment_cl* GetSubsetByIndices(Name_sptr name, const Vector_tmpl<int>* indices,
                                                   SequenceManager_cl*& out) const;
  // Per column of the full range, the count of each letter of the effective alphabet; the caller owns it.
  virtual Vector_tmpl<Vector_tmpl<int>*>* GetSequenceCharsCounts() const;
  virtual void FixAlignmentOffsetToBeNonNegavite();

  // Reads the file's root Type and builds that kind; each Sequence is looked up by name in target.
  static SequenceAlignment_cl* Create(Name_sptr file, const SequenceManager_cl* target);
  static SequenceAlignment_cl* Create(PropertyTreeIter_cl* root, const SequenceManager_cl* target);

  Name_sptr GetName() const { return iName; }
  SequenceManager_cl* GetSequences() const { return iSequences; }
  int GetNumSequences() const { return iSequences->GetNumSequences(); }
  Sequence_cl* GetSequence(int i) const { return iSequences->GetSequence(i); }
  int GetSequenceStart(int i) const { return iSequenceStart[i]; }
  int GetSequenceEnd(int i) const { return iSequenceEnd[i]; }
  int GetAlignmentStart(int i) const { return iAlignmentStart[i]; }
  void SetAlignmentStart(int i, int column) { iAlignmentStart[i] = column; }
  double GetWeight(int i) const { return iWeight[i]; }
  void SetWeight(int i, double weight) { iWeight[i] = weight; }
  int GetAlignmentLength() const { return iAlignmentLength; }
  int GetFullLength() const { return iFullLength; }

  void ReverseComplement();
  // In place; the used letters keep their place on the other strand.
  void ReverseComplement(int i);
  // The first and last column where every sequence has a letter; -1 when there is none.
  int GetFirstFullAlignmentPosition() const;
  int GetLastFullAlignmentPosition() const;
  // ">name" and the columns first to last of each sequence, "-" where it has no letter; last -1 is
  // the last column. Reversed runs the columns backwards and complements each letter.
  void WriteSequenceFile(std::ostream& out, int first, int last, int reversed) const;

 protected:
  // Takes a copy of the sequence with its place in the alignment; end -1 means its last letter.
  // Stops when the place does not fit the sequence.
  void AddAlignedSequence(const Sequence_cl* sequence, int alignmentStart, int sequenceStart, double weight,
                          int sequenceEnd);
  // Reads Name and each Sequence child of an alignment element, with their inserts when asked; the
  // caller then recomputes the length, once its own spans are in force.
  void ReadTree(PropertyTreeIter_cl* root, const SequenceManager_cl* target, Vector_tmpl<Vector_tmpl<int>*>* inserts);
  // What sequence i covers from its AlignmentStart on; a gapped sequence adds its inserts.
  virtual int GetSpan(int i) const;
  // The source's lengths and the chosen sequences' places, over copies that out also receives.
  void CopySubset(const SequenceAlignment_cl* source, Name_sptr name, const Vector_tmpl<int>* indices,
                  SequenceManager_cl*& out);
  // The opening line of the root element.
  void WriteRootStart(std::ostream& out, const char* type) const;
  // The Sequence element of sequence i up to its last standard attribute, without the closing.
  void WriteSequenceStart(std::ostream& out, int i) const;

  Name_sptr iName;
  SequenceManager_cl* iSequences = nullptr;
  Vector_tmpl<int> iSequenceStart;
  Vector_tmpl<int> iSequenceEnd;
  Vector_tmpl<int> iAlignmentStart;
  Vector_tmpl<double> iWeight{10, 1.0};
  int iAlignmentLength = -1;
  int iFullLength = -1;
};

class GaplessSequenceAlignment_cl : public SequenceAlignment_cl {
 public:
  GaplessSequenceAlignment_cl() = default;
  GaplessSequenceAlignment_cl(Name_sptr name, const SequenceManager_cl* group) { Reset(name, group); }
  GaplessSequenceAlignment_cl(PropertyTreeIter_cl* root, const SequenceManager_cl* target);

  int GetChar(int i, int p) const override;
  bool HasChar(int i, int p) const override;
  void WriteFile(std::ostream& out) const override;
  SequenceAlignment_cl* GetSubsetByIndices(Name_sptr name, const Vector_tmpl<int>* indices,
                                           SequenceManager_cl*& out) const override;
  Vector_tmpl<Vector_tmpl<int>*>* GetSequenceCharsCounts() const override;
  void FixAlignmentOffsetToBeNonNegavite() override;
};

// Each sequence also lists the columns where it has a gap.
class GappedSequenceAlignment_cl : public SequenceAlignment_cl {
 public:
  GappedSequenceAlignment_cl() = default;
  GappedSequenceAlignment_cl(PropertyTreeIter_cl* root, const SequenceManager_cl* target);
  ~GappedSequenceAlignment_cl() override;

  void Reset(Name_sptr name, const SequenceManager_cl* group) override;
  Vector_tmpl<int>* GetSequenceAlignmentInserts(int i) override { return iInserts[i]; }
  void SetSequenceAlignmentInserts(int i, const Vector_tmpl<int>* inserts, int offset) override;
  int GetChar(int i, int p) const override;
  bool HasChar(int i, int p) const override;
  void WriteFile(std::ostream& out) const override;
  // The inserts of sequence i at or before column p.
  int GetNumInsertsUpToPosition(int i, int p) const;

 protected:
  int GetSpan(int i) const override;

 private:
  Vector_tmpl<Vector_tmpl<int>*> iInserts{10, nullptr};
};

#endif
