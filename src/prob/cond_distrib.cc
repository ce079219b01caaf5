// Conditional distributions: conversions and the assignment reader shared by one-variable distributions.
#include "prob/cond_distrib.h"

CondDistrib_sptr Conv2CondDistrib(const Measure_sptr& m) { return Conv2X<CondDistrib_sptr>(m, "CondDistrib_cl"); }
Cpd_sptr Conv2Cpd(const Measure_sptr& m) { return Conv2X<Cpd_sptr>(m, "Cpd_cl"); }

double Cpd_cl::GetValue(int) { Unsupported("GetValue(int)"); }

void Cpd_cl::FindValues(double* values, int* present, InstVector_sptr inst) const {
  RvVector_sptr scope = GetRVs();
  for (int i = 0; i < scope->GetNumberOfVars(); i++) {
    SingleInst_sptr value = inst->GetInst(SingleVar_sptr(scope->GetRv(i)));
    present[i] = !value.IsNull() && value->IsLegalValue() && !value->IsMissing();
    values[i] = present[i] ? value->GetRealValue() : 0.0;
  }
}
