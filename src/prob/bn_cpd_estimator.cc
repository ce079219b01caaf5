// Estimators of Bayesian network CPDs, and the common base of the table estimators.
#include "prob/bn_cpd_estimator.h"

void BnCpdEstimator_cl::SetQuery(SingleSuffStatsQuery_cl* query) {
  if (query != iQuery) delete iQuery;
  iQuery = query;
}

int BnCpdEstimator_cl::GetNumParams() const { return iCpd->GetNumParams(); }

std::vector<int> TableCpdEstimator_cl::GetStatsStrides(const RvVector_sptr& vars, const TableSuffStats_cl* stats) {
  std::vector<int> strides(vars->GetNumberOfVars());
  RvVector_sptr discrete = stats->GetDiscreteRvs();
  int n = discrete.IsNull() ? 0 : discrete->GetNumberOfVars();
  for (int i = 0; i < vars->GetNumberOfVars(); i++) {
    int p = n == 0 ? -1 : discrete->GetFirstEntry(SingleVar_sptr(vars->GetRv(i)));
    int stride = p < 0 ? 0 : 1;
    for (int k = p + 1; p >= 0 && k < n; k++) stride *= discrete->GetRv(k)->GetDomain()->GetDomainSize();
    strides[i] = stride;
  }
  return strides;
}
