// Where each variable of one scope stands in another scope.
#include "prob/rv_mapping.h"

RvMapping_cl::RvMapping_cl(const VarsVector_cl& from, const VarsVector_cl& to, int sorted)
    : GeneralVector_tmpl(from.GetNumberOfVars() > 0 ? from.GetNumberOfVars() : 1) {
  int n = from.GetNumberOfVars(), m = to.GetNumberOfVars();
  if (!sorted) {
    for (int i = 0; i < n; i++) AddLast(from.GetRv(i), to.GetFirstEntry(from.GetVar(i)));
    return;
  }
  // Variables are equal and ordered by id, whether the scopes hold variables or instantiations.
  for (int i = 0, j = 0; i < n;) {
    int a = from.GetVar(i)->GetId();
    if (j >= m || a < to.GetVar(j)->GetId()) {
      AddLast(from.GetRv(i++), -1);
    } else if (a == to.GetVar(j)->GetId()) {
      AddLast(from.GetRv(i++), j++);
    } else {
      j++;
    }
  }
}

RvMapping_sptr RvMapping_cl::Copy() const {
  RvMapping_sptr copy = new RvMapping_cl(iSize > 0 ? iSize : 1);
  copy->GeneralVector_tmpl::Concat(this);
  return copy;
}

int RvMapping_cl::IsMappingCorrect(const VarsVector_sptr& from, const VarsVector_sptr& to) const {
  if (from->GetNumberOfVars() != iSize) return 0;
  for (int i = 0; i < iSize; i++) {
    const RvMapEntry_cl& e = iData[i];
    if (e.iRv->GetId() != from->GetVar(i)->GetId()) return 0;
    if (e.iIndex != to->GetFirstEntry(e.iRv)) return 0;
  }
  return 1;
}
