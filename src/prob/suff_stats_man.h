// Statistics managers: the owners that answer queries with statistics over a species' data.
#ifndef VORN_PROB_SUFF_STATS_MAN_H
#define VORN_PROB_SUFF_STATS_MAN_H

#include "prob/suff_stats_query.h"

class SuffStatsManager_cl {
 public:
  virtual ~SuffStatsManager_cl() = default;
  // The statistic of the query, valid until the manager's next call that adds statistics.
  virtual SuffStats_cl* ComputeStats(SingleSuffStatsQuery_cl* query) = 0;
  // Deletes every statistic handed out.
  virtual void RemoveStats() = 0;
  virtual int GetType() const = 0;
};

#endif
