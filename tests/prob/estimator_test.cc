// Table estimators: posterior-mean lines, every score against its closed form, convergence flags and stops.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "pipeline/random.h"
#include "stats_test_helpers.h"
#include "prob/dirichlet_prior.h"
#include "prob/gaussian_table_estimator.h"
#include "prob/multinomial_table_estimator.h"
#include "prob/normal_gamma_prior.h"
#include "prob/normal_wishart_prior.h"

namespace {

// The child is made first, so the statistic (sorted by id) runs the parents fastest, unlike the table.
struct DiscreteFamily {
  SingleRv_sptr child = DiscVar("c", 3), p = DiscVar("p", 2), q = DiscVar("q", 4);
  TableCpd_sptr table = new TableCpd_cl(child, Scope({q, p}));
  CountsSuffStats_cl counts{Scope({child, p, q}), 0, 0};
  // counts[q][p][c] in the table's order
  std::vector<double> cell = std::vector<double>(24);
  explicit DiscreteFamily(int seed, int minimum) {
    Random_cl::iGlobalRandomizer.Reset(seed);
    for (int qv = 0; qv < 4; qv++)
      for (int pv = 0; pv < 2; pv++)
        for (int cv = 0; cv < 3; cv++) {
          double n = minimum + static_cast<int>(Random_cl::iGlobalRandomizer.SampleUniform() * 10);
          cell[(qv * 2 + pv) * 3 + cv] = n;
          counts.AddToWeight((cv * 2 + pv) * 4 + qv, n);
        }
  }
};

TEST(MultinomialEstimator, LinesArePosteriorMeansAndBDeIsTheMarginal) {
  DiscreteFamily f(21, 0);
  BDeUniformDirichletTableCpdPrior_cl prior(0.7, 24);
  MultinomialTableCpdEstimator_cl est(f.table, MeasureEstimator_cl::SCORE_BDE, &prior, 1);
  est.EstimateMeasure(&f.counts);
  double marginal = 0.0;
  for (int line = 0; line < 8; line++) {
    double sum = 0.0;
    Vector_tmpl<int> lineCounts;
    for (int c = 0; c < 3; c++) {
      sum += f.cell[line * 3 + c] + 0.7;
      lineCounts.AddLast(static_cast<int>(f.cell[line * 3 + c]));
    }
    for (int c = 0; c < 3; c++)
      EXPECT_NEAR(f.table->GetLine(line)->GetValue(c), (f.cell[line * 3 + c] + 0.7) / sum, 1e-12) << line;
    marginal += prior.GetLogMarginalLikelihood(lineCounts);
  }
  EXPECT_NEAR(est.GetScore(), marginal, 1e-9);
  EXPECT_NEAR(est.ComputeScore(&f.counts), marginal, 1e-9);
  EXPECT_EQ(est.IsEstimationComplete(), 1);
  EXPECT_EQ(est.GetNumParams(), 16);
  EXPECT_EQ(est.GetSizeInBits(), 8 * 64);
}

TEST(MultinomialEstimator, LogLikelihoodAndBic) {
  DiscreteFamily f(22, 1);
  MultinomialTableCpdEstimator_cl ll(f.table, MeasureEstimator_cl::SCORE_LL, nullptr, 0);
  ll.EstimateMeasure(&f.counts);
  double expect = 0.0, total = 0.0;
  for (int line = 0; line < 8; line++) {
    double w = f.cell[line * 3] + f.cell[line * 3 + 1] + f.cell[line * 3 + 2];
    for (int c = 0; c < 3; c++) expect += f.cell[line * 3 + c] * std::log(f.cell[line * 3 + c] / w);
    total += w;
  }
  EXPECT_NEAR(ll.GetScore(), expect, 1e-9);
  EXPECT_NEAR(ll.LogLikelihood(&f.counts), expect, 1e-9);
  MultinomialTableCpdEstimator_cl bic(f.table, MeasureEstimator_cl::SCORE_BIC, nullptr, 0);
  EXPECT_NEAR(bic.ComputeScore(&f.counts), expect - std::log(total) * 0.5 * 16, 1e-9);
}

TEST(MultinomialEstimator, ConvergenceWithIncompleteData) {
  DiscreteFamily f(23, 1);
  BDeUniformDirichletTableCpdPrior_cl prior(1.0, 24);
  MultinomialTableCpdEstimator_cl est(f.table, MeasureEstimator_cl::SCORE_NONE, &prior, 0);
  est.SetDataComplete(0);
  est.SetConvergenceThreshold(1e-12);
  DiscreteFamily other(26, 1);
  est.EstimateMeasure(&other.counts);
  est.EstimateMeasure(&f.counts);
  EXPECT_EQ(est.IsEstimationComplete(), 0);
  est.EstimateMeasure(&f.counts);
  EXPECT_EQ(est.IsEstimationComplete(), 1);
}

TEST(MultinomialEstimator, InitializeDrawsNormalisedLines) {
  DiscreteFamily f(24, 0);
  f.table->GetRandom().Reset(5);
  BDeUniformDirichletTableCpdPrior_cl prior(0.5, 24);
  MultinomialTableCpdEstimator_cl est(f.table, MeasureEstimator_cl::SCORE_NONE, &prior, 1);
  est.InitializeMeasure();
  for (int line = 0; line < 8; line++) {
    double sum = 0.0;
    for (int c = 0; c < 3; c++) sum += f.table->GetLine(line)->GetValue(c);
    EXPECT_NEAR(sum, 1.0, 1e-12);
  }
}

TEST(MultinomialEstimatorDeathTest, ScoreStopsOnEmptyCells) {
  DiscreteFamily f(25, 0);
  f.counts.SetWeight(0, 0.0);
  MultinomialTableCpdEstimator_cl est(f.table, MeasureEstimator_cl::SCORE_LL, nullptr, 0);
  EXPECT_DEATH(est.ComputeScore(&f.counts), "weight is zero for instantiation: \n");
  f.counts.SetWeight(0, -2.0);
  EXPECT_DEATH(est.ComputeScore(&f.counts), "weight is negative for instantiation: \n.*\nweight = -2\n");
}

struct GaussianFamily {
  SingleRv_sptr x = RealVar("x"), p = DiscVar("p", 2);
  TableCpd_sptr table = new TableCpd_cl(x, Scope({p}));
  MomentsTableSuffStats_cl stats{Scope({x, p})};
  explicit GaussianFamily(int seed) {
    Random_cl::iGlobalRandomizer.Reset(seed);
    for (int k = 0; k < 200; k++) {
      int row[1] = {k % 2};
      double real[1] = {Random_cl::iGlobalRandomizer.SampleNormal() * (1 + k % 2) + 3 * (k % 2)};
      int columns[2] = {0, 0};  // x reads real column 0, p discrete column 0
      stats.SetColumns(columns);
      stats.AddRecord(row, real, 0.5 + (k % 3));
    }
  }
};

TEST(GaussianEstimator, LinesAreNormalGammaPosteriorsAndScoresMatch) {
  NormalGammaTableCpdPrior_cl prior(NormalGammaPrior_cl(1.0, 0.0, 2.0, 1.5));
  NormalGammaPrior_cl& ng = *static_cast<NormalGammaPrior_cl*>(prior.GetPrior(0));
  GaussianFamily f(31);
  double ll = 0.0, bge = 0.0;
  GaussianTableCpdEstimator_cl est(f.table, MeasureEstimator_cl::SCORE_LL, &prior);
  est.EstimateMeasure(&f.stats);
  for (int line = 0; line < 2; line++) {
    MomentsSuffStats_cl* m = f.stats.GetCell(line);
    auto avg = ng.GetPosteriorAvg(m->GetTotalWeight(), m->GetFirst(0), m->GetSecond(0, 0));
    GaussianCpd_sptr cpd = Conv2GaussianCpd(Measure_sptr(f.table->GetLine(line)));
    EXPECT_EQ(cpd->GetMean(), avg.first);
    EXPECT_EQ(cpd->GetVariance(), avg.second);
    ll += GetLogNormalProb(m->GetTotalWeight(), m->GetFirst(0), m->GetSecond(0, 0), avg.first, avg.second);
    bge += ng.GetLogMarginalLikelihood(m->GetTotalWeight(), m->GetFirst(0), m->GetSecond(0, 0));
  }
  EXPECT_DOUBLE_EQ(est.GetScore(), ll);
  EXPECT_DOUBLE_EQ(est.LogLikelihood(&f.stats), ll);
  GaussianTableCpdEstimator_cl bic(f.table, MeasureEstimator_cl::SCORE_BIC, &prior);
  EXPECT_DOUBLE_EQ(bic.ComputeScore(&f.stats), ll - 2.0);
  GaussianTableCpdEstimator_cl bgeEst(f.table, MeasureEstimator_cl::SCORE_BGE, &prior);
  EXPECT_DOUBLE_EQ(bgeEst.ComputeScore(&f.stats), bge);
  EXPECT_EQ(bgeEst.GetNumParams(), 4);
}

TEST(GaussianEstimator, LinearGaussianRecoversTheRegression) {
  Random_cl::iGlobalRandomizer.Reset(32);
  SingleRv_sptr y = RealVar("y"), x = RealVar("x");
  TableCpd_sptr table = new TableCpd_cl(y, Scope({x}));
  MomentsSuffStats_cl stats(Scope({x, y}));
  for (int k = 0; k < 20000; k++) {
    double real[2];
    real[0] = Random_cl::iGlobalRandomizer.SampleNormal() * 2;
    real[1] = 1.0 + 2.0 * real[0] + Random_cl::iGlobalRandomizer.SampleNormal() * 0.5;
    stats.AddRecord(nullptr, real, 1.0);
  }
  NormalWishartTableCpdPrior_cl prior(NormalWishartPrior_cl(2, 0.0, MatrixVector_sptr(), 1.0, SqrMatrix_sptr()));
  GaussianTableCpdEstimator_cl est(table, MeasureEstimator_cl::SCORE_NONE, &prior);
  est.EstimateMeasure(&stats);
  GaussianCpd_sptr cpd = Conv2GaussianCpd(Measure_sptr(table->GetLine(0)));
  EXPECT_NEAR(cpd->GetWeight(0), 2.0, 0.02);
  EXPECT_NEAR(cpd->GetMean(), 1.0, 0.02);
  EXPECT_NEAR(cpd->GetVariance(), 0.25, 0.01);
}

TEST(GaussianEstimator, InitializeDrawsEveryLineFromThePrior) {
  NormalGammaTableCpdPrior_cl prior(NormalGammaPrior_cl(1.0, 0.0, 2.0, 1.5));
  GaussianFamily f(34);
  f.table->GetRandom().Reset(8);
  GaussianTableCpdEstimator_cl est(f.table, MeasureEstimator_cl::SCORE_NONE, &prior);
  est.InitializeMeasure();
  Random_cl same(8);
  for (int line = 0; line < 2; line++) {
    auto draw = static_cast<NormalGammaPrior_cl*>(prior.GetPrior(line))->Sample(&same);
    GaussianCpd_sptr cpd = Conv2GaussianCpd(Measure_sptr(f.table->GetLine(line)));
    ASSERT_FALSE(cpd.IsNull());
    EXPECT_EQ(cpd->GetMean(), draw.first);
    EXPECT_EQ(cpd->GetVariance(), draw.second);
  }
}

TEST(GaussianEstimatorDeathTest, UnknownScoringStops) {
  NormalGammaTableCpdPrior_cl prior(NormalGammaPrior_cl(1.0, 0.0, 2.0, 1.5));
  GaussianFamily f(33);
  GaussianTableCpdEstimator_cl est(f.table, MeasureEstimator_cl::SCORE_BDE, &prior);
  EXPECT_DEATH(est.ComputeScore(&f.stats), "GaussianTableCpdEstimator_cl::EstimateGaussianCpd: Unknown scoring method\n");
}

TEST(ScoringMethods, EdgeCases) {
  LLMultinomialTableCpdScoring_cl ll;
  ll.AddWeight(0.0, 1.0);
  ll.FinishedLine();
  EXPECT_EQ(ll.GetScore(), 0.0);
  BDeMultinomialTableCpdScoring_cl bde;
  bde.AddWeight(2.5, 0.5);
  bde.FinishedLine();
  EXPECT_DOUBLE_EQ(bde.GetScore(), std::lgamma(2.5) - std::lgamma(0.5) + std::lgamma(0.5) - std::lgamma(2.5));
  BICMultinomialTableCpdScoring_cl bic(4, std::exp(2.0), 1.0);
  EXPECT_DOUBLE_EQ(bic.GetScore(), -5.0);
}

}  // namespace
