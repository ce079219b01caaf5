// Estimators: set a measure's parameters from sufficient statistics and report a score for them.
#ifndef VORN_PROB_MEASURE_ESTIMATOR_H
#define VORN_PROB_MEASURE_ESTIMATOR_H

#include <ostream>

#include "prob/measure.h"
#include "prob/prior.h"
#include "prob/suff_stats_man.h"

// Operations without meaning for a kind stop the program with the class and operation.
class MeasureEstimator_cl {
 public:
  enum ScoringMethod_enum { SCORE_NONE = 0, SCORE_LL = 1, SCORE_BIC = 2, SCORE_BDE = 3, SCORE_BGE = 4 };

  explicit MeasureEstimator_cl(ScoringMethod_enum scoring) : iScoring(scoring) {}
  MeasureEstimator_cl(const MeasureEstimator_cl&) = delete;
  MeasureEstimator_cl& operator=(const MeasureEstimator_cl&) = delete;
  virtual ~MeasureEstimator_cl() { delete iQuery; }

  virtual Measure_sptr GetMeasure() const;
  virtual RvVector_sptr GetRVs() const;
  virtual Prior_cl* GetPrior() const { return nullptr; }
  virtual SingleSuffStatsQuery_cl* GetStatsQuery() const { return iQuery; }
  // With 0, estimation is complete only once the parameters stop moving.
  virtual void SetDataComplete(int complete) { iDataComplete = complete; }
  virtual void InitializeMeasure();
  virtual void EstimateMeasure(SuffStatsManager_cl* manager);
  virtual void EstimateMeasure(SuffStats_cl* stats);
  virtual double ComputeScore(SuffStats_cl* stats);
  virtual double LogLikelihood(SuffStatsManager_cl* manager, std::ostream& out) const;
  virtual double LogLikelihood(SuffStatsManager_cl* manager) const;
  virtual double LogLikelihood(SuffStats_cl* stats) const;

  double GetScore() const { return iScore; }
  int IsEstimationComplete() const { return iEstimationComplete; }
  ScoringMethod_enum GetScoringMethod() const { return iScoring; }
  void SetConvergenceThreshold(double threshold) { iThreshold = threshold; }
  double GetSizeInBits() const { return iSizeInBits; }

 protected:
  [[noreturn]] void Fail(const char* operation) const;
  virtual const char* ClassName() const { return "MeasureEstimator_cl"; }
  // The completion rule shared by the estimators, given the largest change of any line.
  void FinishEstimation(double largestDifference);

  double iScore = 0.0;
  ScoringMethod_enum iScoring;
  SingleSuffStatsQuery_cl* iQuery = nullptr;
  int iDataComplete = 1;
  int iEstimationComplete = 0;
  double iThreshold = 0.01;
  double iSizeInBits = 0.0;
};

#endif
