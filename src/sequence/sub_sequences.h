// Hashes keyed by sequence content and the request that the sub-sequence services fill.
#ifndef VORN_SEQUENCE_SUB_SEQUENCES_H
#define VORN_SEQUENCE_SUB_SEQUENCES_H

#include <cstdint>

#include "pipeline/hash_set.h"
#include "sequence/sequence.h"

// Each code plus five times the running value, in wrapping 32-bit arithmetic, so that every letter
// of a long key still moves the bucket.
inline int SequenceHashValue(const Sequence_cl* sequence) {
  uint32_t h = 0;
  const int8_t* letters = sequence->GetLetters();
  for (int i = 0; i < sequence->GetLength(); i++)
    h = static_cast<uint32_t>(static_cast<int32_t>(letters[i]) + 1) + 5u * h;
  return static_cast<int32_t>(h);
}

// A hash from sequence content to a value; the keys are compared by their letters, not their names.
template <class V>
class SequenceSet_tmpl : public HashSet_tmpl<Sequence_cl*, V> {
 public:
  SequenceSet_tmpl(int buckets, const V& def, double loadFactor = 0.5, double growthFactor = 2.0)
      : HashSet_tmpl<Sequence_cl*, V>(buckets, def, loadFactor, growthFactor) {}
  int GetHashValue(Sequence_cl* const& key) const override {
    return HashToBucket(SequenceHashValue(key), kHashMultiplier, this->iNumBuckets);
  }
  bool IsEqual(Sequence_cl* const& a, Sequence_cl* const& b) const override { return a->IsEqual(b); }
  // The key object equal to the given one, or null.
  Sequence_cl* FindKey(Sequence_cl* key) const {
    auto* e = this->Find(key);
    return e ? e->iKey : nullptr;
  }
};

// The positions of one sub-sequence in one sequence, per strand; a strand without one has no vector.
class SequencePositionsVecPair_cl {
 public:
  SequencePositionsVecPair_cl() = default;
  ~SequencePositionsVecPair_cl() {
    delete iForward;
    delete iReverse;
  }
  SequencePositionsVecPair_cl(const SequencePositionsVecPair_cl&) = delete;
  SequencePositionsVecPair_cl& operator=(const SequencePositionsVecPair_cl&) = delete;

  void AddPosition(int position, bool reverse);
  Vector_tmpl<int>* GetForward() const { return iForward; }
  Vector_tmpl<int>* GetReverse() const { return iReverse; }
  // Hands a strand's vector to the caller.
  Vector_tmpl<int>* TakeForward();
  Vector_tmpl<int>* TakeReverse();

 private:
  Vector_tmpl<int>* iForward = nullptr;
  Vector_tmpl<int>* iReverse = nullptr;
};

// The windows of one sequence: each distinct window to its forward and reverse positions. The hash
// owns its keys and values.
class Sequence2IndexVecs_cl : public SequenceSet_tmpl<SequencePositionsVecPair_cl*> {
 public:
  explicit Sequence2IndexVecs_cl(int buckets = 32) : SequenceSet_tmpl(buckets, nullptr, 0.5, 2.0) {}
  ~Sequence2IndexVecs_cl() override { DeleteAllIncludingKeys(); }
  // Records the window at a forward-coordinate position; the window is copied only when it is new.
  void UpdateSubSeqHash(Sequence_cl* window, int position, bool reverse);
};

// One request to the sub-sequence services and its running result.
class SubSequencesParamsAndOutput_cl {
 public:
  int iWindowLength = 0;
  int iStep = 1;
  int iStartMargin = 0;
  int iEndMargin = 0;
  int iAlphabetSize = 4;
  int iMismatches = 0;
  // The mismatch scan stops once the count reaches this; 0 or less means no limit.
  int iStopCount = 0;
  const Bitset_cl* iMask = nullptr;
  const Sequence_cl* iSeed = nullptr;
  bool iBothStrands = false;
  AlphabetComprisonType_cl iComparisonType = STRICT_COMPARISON;
  Sequence2IndexVecs_cl* iOutput = nullptr;
  int iCount = 0;
};

#endif
