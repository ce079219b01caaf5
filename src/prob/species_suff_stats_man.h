// The statistics manager of one species on complete data: family and matrix queries, and the split sweeps of tree learning.
#ifndef VORN_PROB_SPECIES_SUFF_STATS_MAN_H
#define VORN_PROB_SPECIES_SUFF_STATS_MAN_H

#include <vector>

#include "data/species_vorn.h"
#include "prob/suff_stats_man.h"

// Queries about a CPD of the model, by kind.
class VornSuffStatsQuery_cl : public SingleSuffStatsQuery_cl {
 public:
  enum QueryType_enum { MATRIX_FILTER = 0, LAYER = 1, FAMILY = 2, TREE = 3, MOTIF = 4 };
  VornSuffStatsQuery_cl(const RvVector_sptr& vars, QueryType_enum type) : SingleSuffStatsQuery_cl(vars), iType(type) {}
  int GetQueryType() const { return iType; }

 private:
  QueryType_enum iType;
};

// The cells of the expression matrix under a filter (a tree node's genes and experiments).
class MatrixFilterSuffStatsQuery_cl : public VornSuffStatsQuery_cl {
 public:
  MatrixFilterSuffStatsQuery_cl(const RvVector_sptr& vars, const MatrixFilter_cl* filter)
      : VornSuffStatsQuery_cl(vars, MATRIX_FILTER), iFilter(filter) {}
  const MatrixFilter_cl* GetFilter() const { return iFilter; }

 private:
  const MatrixFilter_cl* iFilter;
};

// The family of a CPD over the rows of an attribute table.
class FamilySuffStatsQuery_cl : public VornSuffStatsQuery_cl {
 public:
  explicit FamilySuffStatsQuery_cl(const RvVector_sptr& vars) : VornSuffStatsQuery_cl(vars, FAMILY) {}
};

// Owns every statistic it hands out, until RemoveStats. The split sweeps keep a copy of the
// current leaf's cells, laid out by split object and missing cells dropped, so that the
// candidates of one leaf stream contiguous memory; the copy is rebuilt when the filter's
// objects, the matrix or the split side change. Changing the cells of the matrix itself
// needs ClearSplitCache.
class SpeciesSuffStatsMan_cl : public SuffStatsManager_cl {
 public:
  // The expression matrix and the attribute tables of the species.
  explicit SpeciesSuffStatsMan_cl(SpeciesVorn_cl* species);
  // A species of attributes alone (the meta genes): no matrix.
  explicit SpeciesSuffStatsMan_cl(SpeciesAttributes_cl* attributes);
  SpeciesSuffStatsMan_cl(const SpeciesSuffStatsMan_cl&) = delete;
  SpeciesSuffStatsMan_cl& operator=(const SpeciesSuffStatsMan_cl&) = delete;
  ~SpeciesSuffStatsMan_cl() override;

  SuffStats_cl* ComputeStats(SingleSuffStatsQuery_cl* query) override;
  void RemoveStats() override;
  int GetType() const override { return 0; }
  // Stores a statistic; past 999 stored ones, all are deleted first.
  void AddStats(SuffStats_cl* stats);
  int GetNumStats() const { return iStats.GetSize(); }

  // Moments of the filter's cells by bucket trunc(value of the attribute) of each object of the
  // split side (rows for gene attributes, type 1, else columns); objects[b] and counts[b] get
  // the objects of bucket b. An object whose bucket falls outside [0, values) joins none.
  MomentsTableSuffStats_cl* ComputeStatsSplit(const MatrixFilter_cl* filter, int attribute, int values,
                                              AttributeGroupType_cl type, Vector_tmpl<int>* counts,
                                              Vector_tmpl<Vector_tmpl<int>*>& objects);
  // The same by a set that gives each attribute value (exactly) its bucket, one bucket per entry;
  // an absent value joins none. A real child gets moments per bucket; a discrete one, whose value
  // names are numbers, a MultiSuffStats_cl of one CountsSuffStats_cl per bucket.
  SuffStats_cl* ComputeStatsSplit(const MatrixFilter_cl* filter, int attribute, AttributeGroupType_cl type,
                                  DoubleSet_tmpl<int>* values, Vector_tmpl<Vector_tmpl<int>*>& objects,
                                  const SingleRv_sptr& child);
  void ClearSplitCache();

 private:
  void ComputeMatrixStats(const MatrixFilter_cl* filter, SuffStats_cl* stats);
  void ComputeFamilyStats(SuffStats_cl* stats, SpeciesAttributes_cl* attributes);
  // Rebuilds the leaf copy unless it already holds this filter's cells on that side.
  void PrepareSplitCache(const MatrixFilter_cl* filter, int splitRows);
  void ResetMomentsArrays(int n);
  // The bucket of each split object of the cached leaf by its attribute value, -1 for none;
  // objects and counts (when given) are filled.
  template <class BucketOf>
  void AssignBuckets(SpeciesAttributes_cl* attributes, int attribute, BucketOf bucketOf,
                     Vector_tmpl<Vector_tmpl<int>*>& objects, Vector_tmpl<int>* counts);
  MomentsTableSuffStats_cl* SweepMoments(int buckets);
  MultiSuffStats_cl* SweepCounts(int buckets, const SingleRv_sptr& child);

  Vector_tmpl<SuffStats_cl*> iStats;
  Matrix_sptr iMatrix;
  SpeciesAttributes_cl* iGeneAttributes;
  SpeciesAttributes_cl* iExperimentAttributes;
  // Scratch of the sweeps, grown and never shrunk.
  double* iSums = nullptr;
  double* iSumSquares = nullptr;
  double* iWeights = nullptr;
  int iMomentsLength = 0;
  std::vector<int> iBuckets;

  // The leaf copy: for split object i, its non-missing cells are iCells[iStart[i] .. iStart[i+1]).
  struct SplitCache_cl {
    const Matrix_cl* iMatrix = nullptr;
    int iSplitRows = -1;
    std::vector<int> iRows;
    std::vector<int> iColumns;
    std::vector<double> iCells;
    std::vector<int> iStart;
  } iCache;
};

#endif
