// Precomputed index arithmetic between a small scope and a larger scope that holds it.
#ifndef VORN_PROB_FACTOR_MAPPING_H
#define VORN_PROB_FACTOR_MAPPING_H

#include "prob/vars.h"

// The big-table cells of small cell s are first[s] + second[k] for k over the combinations of the
// variables that only the big scope has, in increasing order. Computed once per pair of scopes,
// so that a whole message pass does no per-cell index arithmetic.
class FactorMapping_cl {
 public:
  FactorMapping_cl() = default;
  FactorMapping_cl(RvVector_sptr small, RvVector_sptr big) { Reset(small, big); }
  FactorMapping_cl(const FactorMapping_cl& other);
  FactorMapping_cl& operator=(const FactorMapping_cl&) = delete;
  ~FactorMapping_cl();

  // Every variable of small must be in big; the orders of the scopes are free.
  void Reset(RvVector_sptr small, RvVector_sptr big);
  int GetNumSmall() const { return iNumSmall; }
  int GetNumPerSmall() const { return iNumPerSmall; }
  const int* GetFirst() const { return iFirst; }
  const int* GetSecond() const { return iSecond; }

  // Starts the walk over the big cells of one small cell.
  void SetSmall(int small) {
    iCurrentSmall = small;
    iCurrentInner = 0;
  }
  int GetNextAppearance() { return iFirst[iCurrentSmall] + iSecond[iCurrentInner++]; }
  FactorMapping_cl* Copy() const { return new FactorMapping_cl(*this); }
  void CopyState(const FactorMapping_cl& other) {
    iCurrentSmall = other.iCurrentSmall;
    iCurrentInner = other.iCurrentInner;
  }

 private:
  int iNumSmall = 0;
  int iNumPerSmall = 0;
  int* iFirst = nullptr;
  int* iSecond = nullptr;
  int iCurrentSmall = 0;
  int iCurrentInner = 0;
};

#endif
