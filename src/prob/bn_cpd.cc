// The base of every CPD: parents, scopes, line look-up.
#include "prob/bn_cpd.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

BnCpd_sptr Conv2BnCpd(const Measure_sptr& m) { return Conv2X<BnCpd_sptr>(m, "BnCpd_cl"); }

BnCpd_cl::BnCpd_cl(SingleRv_sptr child, RvVector_sptr parents) : iChild(child), iParents(new RvVector_cl()) {
  if (!parents.IsNull()) iParents->Merge(parents);
  RebuildScopes();
}

BnCpd_cl::BnCpd_cl(const BnCpd_cl& other)
    : Measure_cl(other), iChild(other.iChild), iParents(new RvVector_cl()), iFixed(other.iFixed) {
  iParents->Merge(other.iParents);
  RebuildScopes();
}

void BnCpd_cl::RebuildScopes() {
  iDiscParents = iParents->GetDiscrete(0);
  iRealParents = iParents->GetReal(0);
  iAllVars = new RvVector_cl(iParents->GetNumberOfVars() + 1);
  iAllVars->Merge(iParents);
  iAllVars->AddLast(iChild);
  iDiscMapping = new RvMapping_cl(*iDiscParents, *iAllVars, 0);
  iRealMapping = new RvMapping_cl(*iRealParents, *iAllVars, 0);
  // Trees over many regulators overflow the joint size; their lines are walked by leaf, not by number.
  iNumLines = std::max(1, iDiscParents->GetJointDomainSize());
}

void BnCpd_cl::AddParents(RvVector_sptr parents) {
  iParents->Merge(parents);
  RebuildScopes();
}

void BnCpd_cl::DeleteParents(RvVector_sptr parents) {
  iParents = iParents->GetDifference(parents, 0);
  RebuildScopes();
}

void BnCpd_cl::DeleteParent(SingleRv_sptr parent) { DeleteParents(new RvVector_cl(SingleVar_sptr(parent))); }

template <class Pick>
double BnCpd_cl::FoldLines(int value, double start, Pick pick) {
  for (int i = 0; i < iNumLines; i++) {
    Cpd_sptr line = GetLine(i);
    if (!line.IsNull()) start = pick(start, line->GetValue(value));
  }
  return start;
}

double BnCpd_cl::GetMaxProb(int value) {
  return FoldLines(value, 0.0, [](double a, double b) { return std::max(a, b); });
}

double BnCpd_cl::GetMinProb(int value) {
  return FoldLines(value, 1.0, [](double a, double b) { return std::min(a, b); });
}

int BnCpd_cl::HasLineWithType(int type) {
  Cpd_sptr line = GetLine(0);
  return !line.IsNull() && line->GetType() == type;
}

int BnCpd_cl::GetNumParams() const { return iNumLines * (iChild->GetDomain()->GetDomainSize() - 1); }

int BnCpd_cl::GetLineIndex(InstVector_sptr inst) const {
  int line = 0;
  int strict = iAllVars->IsEqualStrict(inst);
  for (int i = 0; i < iDiscParents->GetNumberOfVars(); i++) {
    SingleInst_sptr value =
        strict ? (*inst)[iDiscMapping->GetIndex(i)] : inst->GetInst(SingleVar_sptr(iDiscParents->GetRv(i)));
    if (value.IsNull() || !value->IsLegalValue()) {
      std::cerr << "BnCpd_cl::GetLine: parent " << iDiscParents->GetRv(i)->GetName()
                << " has no legal value in the assignment" << std::endl;
      abort();
    }
    line = line * iDiscParents->GetRv(i)->GetDomain()->GetDomainSize() + value->GetIndex();
  }
  return line;
}
