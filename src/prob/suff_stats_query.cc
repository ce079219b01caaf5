// Queries: what statistics an estimator asks a manager for.
#include "prob/suff_stats_query.h"

SingleSuffStatsQuery_cl::SingleSuffStatsQuery_cl(const RvVector_sptr& vars)
    : iVars(vars), iDiscrete(vars->GetDiscrete(0)), iReal(vars->GetReal(0)) {}

void SingleSuffStatsQuery_cl::ResetStats() {
  if (iStats) iStats->Reset();
}

SuffStats_cl* SingleSuffStatsQuery_cl::CreateStats() const {
  if (iVars->IsPureDiscrete()) return new CountsSuffStats_cl(iVars, 0, 0);
  if (iVars->IsPureReal()) return new MomentsSuffStats_cl(iVars);
  return new MomentsTableSuffStats_cl(iVars);
}
