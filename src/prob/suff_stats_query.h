// Queries: what statistics an estimator asks a manager for.
#ifndef VORN_PROB_SUFF_STATS_QUERY_H
#define VORN_PROB_SUFF_STATS_QUERY_H

#include "prob/suff_stats.h"

class SuffStatsQuery_cl {
 public:
  virtual ~SuffStatsQuery_cl() = default;
};

// The statistic of one family; the query points at it but the manager owns it.
class SingleSuffStatsQuery_cl : public SuffStatsQuery_cl {
 public:
  explicit SingleSuffStatsQuery_cl(const RvVector_sptr& vars);

  RvVector_sptr GetRvs() const { return iVars; }
  RvVector_sptr GetDiscreteRvs() const { return iDiscrete; }
  RvVector_sptr GetRealRvs() const { return iReal; }
  SuffStats_cl* GetStats() const { return iStats; }
  void SetStats(SuffStats_cl* stats) { iStats = stats; }
  // Clears the values of the statistic, when there is one.
  void ResetStats();
  int KeepCached() const { return iKeepCached; }
  void SetKeepCached(int keep) { iKeepCached = keep; }
  // Counts over a pure discrete scope, moments over a pure real one, else moments per discrete cell.
  virtual SuffStats_cl* CreateStats() const;

 protected:
  RvVector_sptr iVars;
  RvVector_sptr iDiscrete;
  RvVector_sptr iReal;
  SuffStats_cl* iStats = nullptr;
  int iKeepCached = 0;
};

#endif
