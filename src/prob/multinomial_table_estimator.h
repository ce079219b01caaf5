// The estimator of multinomial tables: posterior lines from counts and a Dirichlet prior, and their scores.
#ifndef VORN_PROB_MULTINOMIAL_TABLE_ESTIMATOR_H
#define VORN_PROB_MULTINOMIAL_TABLE_ESTIMATOR_H

#include "prob/bn_cpd_estimator.h"
#include "prob/dirichlet_prior.h"
#include "prob/multinomial.h"
#include "prob/score.h"

class MultinomialTableCpdEstimator_cl : public TableCpdEstimator_cl {
 public:
  // The prior, when given, is a Dirichlet prior over the table's cells; with ownQuery the
  // estimator makes its own query on the table's variables.
  MultinomialTableCpdEstimator_cl(const TableCpd_sptr& table, ScoringMethod_enum scoring, Prior_cl* prior, int ownQuery);

  // Each line is the normalised count plus alpha of its cells; the score follows the method.
  void EstimateMeasure(SuffStats_cl* stats) override;
  using TableCpdEstimator_cl::EstimateMeasure;
  // The same walk, leaving the table alone; a cell whose posterior weight is not positive stops.
  double ComputeScore(SuffStats_cl* stats) override;
  // The sum over cells of count * ln(probability).
  double LogLikelihood(SuffStats_cl* stats) const override;
  using TableCpdEstimator_cl::LogLikelihood;
  // Draws each line from the Dirichlet of its prior weights.
  void InitializeMeasure() override;
  int GetNumParams() const override;

  // A new method for LL, BIC and BDe, null for the others; total is the statistic's weight.
  MultinomialTableCpdScoring_cl* CreateScoringMethod(double total) const;
  // The symmetric KL divergence of two lines.
  static double ComputeDifference(const Multinomial_sptr& a, const Multinomial_sptr& b);

 protected:
  const char* ClassName() const override { return "MultinomialTableCpdEstimator_cl"; }

 private:
  // Walks every cell with its posterior weight; with update the table gets new lines.
  double Walk(SuffStats_cl* stats, int update);
  double GetAlpha(int cell) const;

  TableCpd_sptr iTable;
  int iChildSize;
};

#endif
