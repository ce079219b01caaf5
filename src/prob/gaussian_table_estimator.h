// The estimator of Gaussian tables: lines from moments with Normal-Gamma or Normal-Wishart priors, and their scores.
#ifndef VORN_PROB_GAUSSIAN_TABLE_ESTIMATOR_H
#define VORN_PROB_GAUSSIAN_TABLE_ESTIMATOR_H

#include <vector>

#include "prob/bn_cpd_estimator.h"
#include "prob/gaussian_cpd.h"

class GaussianTableCpdEstimator_cl : public TableCpdEstimator_cl {
 public:
  // The prior, when given, is a GaussianTableCpdPrior_cl; the estimator always owns a query.
  GaussianTableCpdEstimator_cl(const TableCpd_sptr& table, ScoringMethod_enum scoring, Prior_cl* prior);

  void EstimateMeasure(SuffStats_cl* stats) override;
  using TableCpdEstimator_cl::EstimateMeasure;
  double ComputeScore(SuffStats_cl* stats) override;
  // The log density of the data at each line's parameters; one real variable only.
  double LogLikelihood(SuffStats_cl* stats) const override;
  using TableCpdEstimator_cl::LogLikelihood;
  // Draws each line's mean and variance from its Normal-Gamma prior.
  void InitializeMeasure() override;
  int GetNumParams() const override { return iTable->GetNumLines() * 2; }

  // Sets (with setParams) one line from its moments and returns the score the method asks for.
  // With real parents the line is a linear Gaussian under a Normal-Wishart prior, always set, scored 0.
  static double EstimateGaussianCpd(const GaussianCpd_sptr& cpd, MomentsSuffStats_cl* stats, Prior_cl* prior,
                                    ScoringMethod_enum scoring, int setParams);
  // A symmetric divergence of two lines in bits.
  static double ComputeDifference(const GaussianCpd_sptr& a, const GaussianCpd_sptr& b);

 protected:
  const char* ClassName() const override { return "GaussianTableCpdEstimator_cl"; }

 private:
  double Walk(SuffStats_cl* stats, int setParams);
  std::vector<MomentsSuffStats_cl*> GetLineStats(SuffStats_cl* stats) const;
  Prior_cl* GetLinePrior(int line) const;

  TableCpd_sptr iTable;
};

#endif
