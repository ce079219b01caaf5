// The MicroarrayStats step: pair scores and whole-microarray operations on a loaded microarray.
#ifndef VORN_DATA_VORN_STEP_MICROARRAY_STATS_H
#define VORN_DATA_VORN_STEP_MICROARRAY_STATS_H

#include "data/microarray_stats.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vorn_step.h"

enum MicroarrayStatsType_cl {
  STATS_COMPUTE_PAIRWISE_CORRELATIONS = 0,
  STATS_ZERO_TRANSFORM = 1,
  STATS_SYNCH_GENES = 2,
  STATS_AVERAGE_META_GENES = 3,
  STATS_PASTE_EXPERIMENTS = 4,
  STATS_ADD_MICROARRAY = 5,
  STATS_FIND_EXPRESSION_HILLS = 6,
  STATS_TYPE_NUM = 7
};
extern const char* MICROARRAY_STATS_TYPE_STR[STATS_TYPE_NUM];

class VornStepMicroarrayStats_cl : public VornStep_cl {
 public:
  VornStepMicroarrayStats_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);

  void Run() override;

 private:
  Name_sptr iMicroarrayName;
  Name_sptr iMetric;
  MicroarrayStatsType_cl iStatsType;
  StatsAttributesType_cl iAttributesType;
  Name_sptr iOutputFile;
  Name_sptr iPairsFile;
  PairFilter_cl iFilter;
};

#endif
