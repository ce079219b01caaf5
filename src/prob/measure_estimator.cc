// Estimators: set a measure's parameters from sufficient statistics and report a score for them.
#include "prob/measure_estimator.h"

#include <cstdlib>
#include <iostream>

void MeasureEstimator_cl::Fail(const char* operation) const {
  std::cerr << ClassName() << "::" << operation << " is not supported" << std::endl;
  abort();
}

Measure_sptr MeasureEstimator_cl::GetMeasure() const { Fail("GetMeasure"); }
RvVector_sptr MeasureEstimator_cl::GetRVs() const { Fail("GetRVs"); }
void MeasureEstimator_cl::InitializeMeasure() { Fail("InitializeMeasure"); }
void MeasureEstimator_cl::EstimateMeasure(SuffStats_cl*) { Fail("EstimateMeasure"); }
double MeasureEstimator_cl::ComputeScore(SuffStats_cl*) { Fail("ComputeScore"); }
double MeasureEstimator_cl::LogLikelihood(SuffStats_cl*) const { Fail("LogLikelihood"); }

void MeasureEstimator_cl::EstimateMeasure(SuffStatsManager_cl* manager) {
  EstimateMeasure(manager->ComputeStats(GetStatsQuery()));
}

double MeasureEstimator_cl::LogLikelihood(SuffStatsManager_cl* manager) const {
  return LogLikelihood(manager->ComputeStats(GetStatsQuery()));
}

double MeasureEstimator_cl::LogLikelihood(SuffStatsManager_cl* manager, std::ostream&) const {
  return LogLikelihood(manager);
}

void MeasureEstimator_cl::FinishEstimation(double largestDifference) {
  iEstimationComplete = iDataComplete || iThreshold > largestDifference;
}
