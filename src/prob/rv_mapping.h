// Where each variable of one scope stands in another scope.
#ifndef VORN_PROB_RV_MAPPING_H
#define VORN_PROB_RV_MAPPING_H

#include "pipeline/vector.h"
#include "prob/vars.h"

class RvMapping_cl;

class RvMapping_sptr : public Sptr_tmpl<RvMapping_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

struct RvMapEntry_cl {
  SingleRv_sptr iRv;
  int iIndex = -1;
};

// One entry per variable of the "from" scope, in its order: the variable and its position in the
// "to" scope, -1 when it is absent there.
class RvMapping_cl : public RefCount_cl, public GeneralVector_tmpl<RvMapEntry_cl, RvMapping_cl*> {
 public:
  explicit RvMapping_cl(int capacity = 10) : GeneralVector_tmpl(capacity) {}
  // With sorted set, both scopes must be in id order and are merged in one pass; otherwise each
  // variable is searched for.
  RvMapping_cl(const VarsVector_cl& from, const VarsVector_cl& to, int sorted);

  using GeneralVector_tmpl::AddLast;
  void AddLast(const SingleRv_sptr& rv, int index) { AddLast(RvMapEntry_cl{rv, index}); }
  SingleRv_sptr GetRv(int i) const { return iData[i].iRv; }
  int GetIndex(int i) const { return iData[i].iIndex; }

  RvMapping_sptr Copy() const;
  void Concat(const RvMapping_sptr& other) { GeneralVector_tmpl::Concat(other.Get()); }
  // Whether the entries are exactly the mapping of from into to.
  int IsMappingCorrect(const VarsVector_sptr& from, const VarsVector_sptr& to) const;
};

#endif
