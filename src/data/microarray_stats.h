// Statistics over the rows or columns of a microarray: scores of object pairs under a clustering metric.
#ifndef VORN_DATA_MICROARRAY_STATS_H
#define VORN_DATA_MICROARRAY_STATS_H

#include <ostream>

#include "clustering/clustering_metric.h"
#include "pipeline/heap.h"
#include "pipeline/name.h"

class Microarray_cl;

// Two object names and the metric that scored them, which the pair owns.
class ScoredPair_cl : public HeapEntry_cl {
 public:
  ScoredPair_cl(Name_sptr first, Name_sptr second, ClusteringMetric_cl* metric)
      : iFirst(first), iSecond(second), iMetric(metric) {}
  ~ScoredPair_cl() override { delete iMetric; }
  ScoredPair_cl(const ScoredPair_cl&) = delete;
  ScoredPair_cl& operator=(const ScoredPair_cl&) = delete;

  // A pair without a metric comes after one with; otherwise the metrics decide.
  int IHaveHigherPriority(const HeapEntry_cl* other) const override;
  // name, tab, name, tab, cost, tab, valid dimensions, line end.
  void Write(std::ostream& out) const;

  Name_sptr iFirst;
  Name_sptr iSecond;
  ClusteringMetric_cl* iMetric;
};

// Holds a pair in a heap with the worst pair on top, so that the best k can be kept.
class ScoredPairHeapEntry_cl : public HeapEntry_cl {
 public:
  explicit ScoredPairHeapEntry_cl(ScoredPair_cl* pair) : iPair(pair) {}
  ~ScoredPairHeapEntry_cl() override { delete iPair; }
  ScoredPairHeapEntry_cl(const ScoredPairHeapEntry_cl&) = delete;
  ScoredPairHeapEntry_cl& operator=(const ScoredPairHeapEntry_cl&) = delete;
  int IHaveHigherPriority(const HeapEntry_cl* other) const override {
    return static_cast<const ScoredPairHeapEntry_cl*>(other)->iPair->IHaveHigherPriority(iPair);
  }
  ScoredPair_cl* iPair;
};

enum StatsAttributesType_cl { STATS_EXPERIMENT_ATTRIBUTES = 0, STATS_GENE_ATTRIBUTES = 1, STATS_ATTRIBUTES_NUM = 2 };
extern const char* STATS_ATTRIBUTES_TYPE_STR[STATS_ATTRIBUTES_NUM];

// Which pairs pass: a cutoff (missing for none), whether it bounds the absolute cost, the least
// number of shared dimensions, and how many of the best to keep (the missing integer for all).
struct PairFilter_cl {
  double iCutoff;
  int iAbsolute;
  int iMinDimensions;
  int iTopK;
};

class MicroarrayStats_cl {
 public:
  explicit MicroarrayStats_cl(Microarray_cl* microarray) : iMicroarray(microarray) {}

  // Scores the pairs of genes (GeneAttributes) or experiments under the named metric: all pairs i
  // below j, or the pairs named in pairsFile. Passing pairs go to out as they come, or with a TopK
  // the best k at the end, best first.
  void ComputePairwiseScores(Name_sptr metric, StatsAttributesType_cl type, Name_sptr pairsFile,
                             const PairFilter_cl& filter, std::ostream& out);

 private:
  Microarray_cl* iMicroarray;
};

#endif
