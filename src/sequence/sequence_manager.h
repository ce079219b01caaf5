// Named, ordered groups of sequences with one alphabet, held in memory or streamed from a FASTA-like file.
#ifndef VORN_SEQUENCE_SEQUENCE_MANAGER_H
#define VORN_SEQUENCE_SEQUENCE_MANAGER_H

#include <cstdint>
#include <ostream>
#include <string>

#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"
#include "sequence/sequence.h"
#include "sequence/sub_sequences.h"

class Bitset_cl;
class LineIterator_cl;

class SequenceManager_cl {
 public:
  static constexpr const char* kDefaultAlphabet = "ACGTNX";
  static constexpr int kDefaultAlphabetSize = 4;

  explicit SequenceManager_cl(bool owner);
  SequenceManager_cl(Name_sptr group, Name_sptr alphabet, int size, bool owner);
  // Reads the file now when preload is set; a list file keeps only the sequences it names.
  SequenceManager_cl(Name_sptr group, Name_sptr file, Name_sptr alphabet, int size, Name_sptr listFile, int preload,
                     bool owner);
  // Copies of the chosen sequences (indices may repeat); a name already taken gets "_DUP<n>".
  SequenceManager_cl(const SequenceManager_cl* source, Name_sptr group, const Vector_tmpl<int>* indices);
  virtual ~SequenceManager_cl();
  SequenceManager_cl(const SequenceManager_cl&) = delete;
  SequenceManager_cl& operator=(const SequenceManager_cl&) = delete;

  Name_sptr GetName() const { return iGroupName; }
  void SetName(Name_sptr name) { iGroupName = name; }
  Name_sptr GetFileName() const { return iFileName; }
  bool IsPreloaded() const { return iPreloaded; }
  bool IsOwner() const { return iOwner; }
  int GetNumSequences() const { return iSequences.GetSize(); }
  Sequence_cl* GetSequence(int index) const { return iSequences[index]; }
  // Null for a name that is not in the group.
  Sequence_cl* GetSequence(Name_sptr name) const { return iSequences.GetEntry(name); }
  int GetSequenceIndex(Name_sptr name) const { return iIndices.GetEntry(name); }
  int GetMaxSequenceLength() const { return iMaxLength; }
  Name_sptr GetAlphabet() const { return iAlphabet; }
  int GetAlphabetSize() const { return iAlphabetSize; }
  const IntSet_tmpl<int>* GetAlphabetHash() const { return iAlphabetHash; }
  const int8_t* GetAlphabetTable() const { return iAlphabetTable; }
  const NameSet_tmpl<int>* GetNameFilter() const { return iNameFilter; }

  void SetAlphabet(Name_sptr alphabet, int size);
  // Each character of the alphabet to its index; absent characters read -1. The caller owns it.
  static IntSet_tmpl<int>* ComputeAlphabetHash(Name_sptr alphabet, int size);
  // The same as a table over all 256 byte values, for the readers.
  static void ComputeAlphabetTable(const IntSet_tmpl<int>* hash, int8_t table[256]);

  void AddSequence(Sequence_cl* sequence);
  // A sequence of the given lines joined.
  void AddSequence(Name_sptr name, const Vector_tmpl<Name_sptr>& lines);
  // Every string of length k over the effective alphabet, the first position running fastest.
  void AddAllSequencesInLength(int k);
  // Each window of length at offset + i whose score i is at or above thresh; reverse complemented
  // when strand is set. The kept scores go to keptScores when it is given.
  void AddAllSubSequencesWithScoreAboveThresh(const Sequence_cl* sequence, int strand,
                                              const Vector_tmpl<double>* scores, double thresh, int offset, int length,
                                              Vector_tmpl<double>* keptScores);

  // A new owner of copies of all sequences.
  SequenceManager_cl* Clone() const;
  // New groups that share this group's sequences; this group's owner stays responsible for them.
  SequenceManager_cl* Copy() const;
  SequenceManager_cl* GetSubsetByIndices(const Vector_tmpl<int>* indices) const;
  void DeleteSequences();

  void WriteFile(std::ostream& out) const;

  // Runs a sub-sequence service on every sequence, each with its own mask (masks may be null), and
  // hands visit(index, windows, count) the windows the service entered and the windows it counted.
  template <class Visit>
  void TraverseSubSeqs(Sequence_cl::SubSeqServiceType_cl type, const SubSequencesParamsAndOutput_cl& request,
                       const Vector_tmpl<Bitset_cl*>* masks, Visit visit) const;
  // The number of sequences with at least one window within the mismatches of the seed.
  int GetCountOfSeqContainingMismatchedSubSequences(const Sequence_cl* seed, int mismatches, bool bothStrands, int step,
                                                    int startMargin, int endMargin,
                                                    const Vector_tmpl<Bitset_cl*>* masks,
                                                    AlphabetComprisonType_cl comparison) const;
  // Each distinct window found within the mismatches in at least
  // minFraction of the sequences, with that count; null for an empty group. The caller owns the set
  // and its keys.
  SequenceSet_tmpl<int>* GetCountOfSeqsContainingMismatchedSubSeqsToAllSubSeqsAboveThresh(
      double minFraction, int mismatches, int length, bool bothStrands, int step, int startMargin, int endMargin,
      const Vector_tmpl<Bitset_cl*>* masks, AlphabetComprisonType_cl comparison) const;

  // Walks the group: the vector of a preloaded group, the file of a streaming one. A streamed
  // sequence belongs to the iterator until the caller takes it.
  class Iterator_cl {
   public:
    explicit Iterator_cl(const SequenceManager_cl* manager);
    ~Iterator_cl();
    Iterator_cl(const Iterator_cl&) = delete;
    Iterator_cl& operator=(const Iterator_cl&) = delete;

    int NotNull() const { return iCurrent != nullptr; }
    void operator++();
    Sequence_cl* operator*() const { return iCurrent; }
    // Streaming only: the caller owns the current sequence from now on.
    Sequence_cl* Take();
    // Back to the first sequence; a streaming group reopens its file.
    void Reset();

   private:
    // Reads up to the next sequence that passes the filter; null at the end of the file.
    Sequence_cl* UpdateNextSequence();
    // Turns the pending record into a sequence when it passes the filter; forgets it either way.
    Sequence_cl* FinishPending();

    const SequenceManager_cl* iManager;
    int iIndex = 0;
    LineIterator_cl* iLines = nullptr;
    bool iHasPending = false;
    std::string iPendingName;  // scratch text, copied into a name when the record is kept
    std::string iLetters;
    Sequence_cl* iCurrent = nullptr;
    bool iOwnsCurrent = false;
  };

 private:
  void Init(Name_sptr group, Name_sptr alphabet, int size, bool owner);
  // A request over this group's alphabet.
  SubSequencesParamsAndOutput_cl MakeRequest(int length, bool bothStrands, int step, int startMargin,
                                             int endMargin) const;

  bool iPreloaded = true;
  Name_sptr iFileName;
  NameSet_tmpl<int>* iNameFilter = nullptr;
  Name_sptr iGroupName;
  VectorNameHash_tmpl<Sequence_cl*> iSequences{10, nullptr};
  NameSet_tmpl<int> iIndices{10, -1, 0.5, 2.0};
  int iMaxLength = 0;
  Name_sptr iAlphabet;
  IntSet_tmpl<int>* iAlphabetHash = nullptr;
  int8_t iAlphabetTable[256];
  int iAlphabetSize = kDefaultAlphabetSize;
  bool iOwner = true;
};

template <class Visit>
void SequenceManager_cl::TraverseSubSeqs(Sequence_cl::SubSeqServiceType_cl type,
                                         const SubSequencesParamsAndOutput_cl& request,
                                         const Vector_tmpl<Bitset_cl*>* masks, Visit visit) const {
  int index = 0;
  for (Iterator_cl it(this); it.NotNull(); ++it, index++) {
    Sequence_cl* sequence = *it;
    SubSequencesParamsAndOutput_cl mine = request;
    mine.iMask = masks && index < masks->GetSize() ? (*masks)[index] : nullptr;
    // Twice the expected number of windows, so that at the load of 0.5 the hash never grows.
    int step = request.iStep > 0 ? request.iStep : 1;
    int expected = (sequence->GetLength() / step + 1) * (request.iBothStrands ? 2 : 1);
    Sequence2IndexVecs_cl windows(type == Sequence_cl::GET_MISMATCHED_SUB_SEQUENCES_COUNT ? 1 : 2 * expected);
    mine.iOutput = &windows;
    sequence->PerformSubSeqService(type, &mine);
    visit(index, &windows, mine.iCount);
  }
}

#endif
