// Hashes keyed by sequence content and the request that the sub-sequence services fill.
#include "sequence/sub_sequences.h"

void SequencePositionsVecPair_cl::AddPosition(int position, bool reverse) {
  Vector_tmpl<int>*& positions = reverse ? iReverse : iForward;
  // Most windows of a sequence occur once: start small.
  if (!positions) positions = new Vector_tmpl<int>(2, -1);
  positions->AddLast(position);
}

Vector_tmpl<int>* SequencePositionsVecPair_cl::TakeForward() {
  Vector_tmpl<int>* taken = iForward;
  iForward = nullptr;
  return taken;
}

Vector_tmpl<int>* SequencePositionsVecPair_cl::TakeReverse() {
  Vector_tmpl<int>* taken = iReverse;
  iReverse = nullptr;
  return taken;
}

void Sequence2IndexVecs_cl::UpdateSubSeqHash(Sequence_cl* window, int position, bool reverse) {
  SequencePositionsVecPair_cl* positions = GetEntry(window);
  if (!positions) {
    positions = new SequencePositionsVecPair_cl;
    Insert(window->Copy(), positions);
  }
  positions->AddPosition(position, reverse);
}
