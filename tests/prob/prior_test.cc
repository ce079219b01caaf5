// Priors against closed forms computed another way: sequential predictive laws, raw-data covariances, GSL.
#include <gsl/gsl_sf_gamma.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "pipeline/random.h"
#include "prob/dirichlet_prior.h"
#include "prob/normal_gamma_prior.h"
#include "prob/normal_wishart_prior.h"
#include "stats_test_helpers.h"

namespace {

TEST(DirichletPrior, MarginalLikelihoodIsThePolyaUrnProduct) {
  Random_cl::iGlobalRandomizer.Reset(3);
  for (int trial = 0; trial < 20; trial++) {
    int cells = 2 + trial % 5;
    double alpha = 0.1 + trial * 0.3;
    BDeUniformDirichletTableCpdPrior_cl prior(alpha, cells);
    Vector_tmpl<int> counts;
    for (int i = 0; i < cells; i++) counts.AddLast(static_cast<int>(Random_cl::iGlobalRandomizer.SampleUniform() * 9));
    // Observations drawn one by one from the urn, cell after cell.
    double expect = 0.0, seen = 0.0;
    for (int i = 0; i < cells; i++)
      for (int k = 0; k < counts[i]; k++, seen++) expect += std::log((alpha + k) / (alpha * cells + seen));
    EXPECT_NEAR(prior.GetLogMarginalLikelihood(counts), expect, 1e-9);
  }
  Vector_tmpl<int> zeros;
  zeros.AddLast(3, 0);
  EXPECT_EQ(BDeUniformDirichletTableCpdPrior_cl(1.0, 3).GetLogMarginalLikelihood(zeros), 0.0);
}

// Score equivalence: a -> b and b -> a get the same BDe score from the same joint counts.
TEST(DirichletPrior, BDeuScoresMarkovEquivalentStructuresAlike) {
  Random_cl::iGlobalRandomizer.Reset(4);
  const int na = 3, nb = 4;
  double ess = 5.0;
  std::vector<int> joint(na * nb);
  for (int& c : joint) c = static_cast<int>(Random_cl::iGlobalRandomizer.SampleUniform() * 12);
  auto family = [&](int outer, int inner, bool aOuter) {
    // Root of `outer` values, then the child of `inner` values under each parent value.
    BDeUniformDirichletTableCpdPrior_cl root(ess / outer, outer), child(ess / (outer * inner), inner);
    Vector_tmpl<int> rootCounts;
    rootCounts.AddLast(outer, 0);
    double score = 0.0;
    for (int p = 0; p < outer; p++) {
      Vector_tmpl<int> line;
      for (int c = 0; c < inner; c++) {
        int n = aOuter ? joint[p * nb + c] : joint[c * nb + p];
        line.AddLast(n);
        rootCounts[p] += n;
      }
      score += child.GetLogMarginalLikelihood(line);
    }
    return score + root.GetLogMarginalLikelihood(rootCounts);
  };
  EXPECT_NEAR(family(na, nb, true), family(nb, na, false), 1e-9);
}

TEST(DirichletPrior, UniformResetKeepsTheEquivalentSampleSize) {
  SingleRv_sptr a = DiscVar("a", 3), b = DiscVar("b", 4);
  RvVector_sptr small = new RvVector_cl(), large = new RvVector_cl();
  small->AddLast(a);
  large->AddLast(a);
  large->AddLast(b);
  BDeUniformDirichletTableCpdPrior_cl prior(2.0, 3);
  prior.Reset(small, large);
  EXPECT_DOUBLE_EQ(prior.GetWeight(5) * prior.GetNumCells(), 6.0);
}

TEST(DirichletPrior, BDeCellWeights) {
  SingleRv_sptr a = DiscVar("a", 2), b = DiscVar("b", 4);
  RvVector_sptr scope = new RvVector_cl();
  scope->AddLast(a);
  scope->AddLast(b);
  BDeDirichletTableCpdPrior_cl prior(scope, 4.0);
  EXPECT_EQ(prior.GetWeight(7), 0.5);
  prior.SetWeight(1, 0.0);
  EXPECT_EQ(prior.GetEquivSampleSize(), 3.5);
  EXPECT_EQ(prior.GetNonZeroWeightCount(4, 0, -1), 3);
  EXPECT_EQ(prior.GetNonZeroWeightCount(4, 0, 2), 1);
  prior.SetEquivSampleSize(7.0);
  EXPECT_EQ(prior.GetWeight(0), 1.0);
  Vector_tmpl<int> counts;
  counts.AddLast(8, 2);
  counts[1] = 0;
  // A zero-weight cell with no count drops out; the rest is the Dirichlet-multinomial of GSL's lnbeta.
  double expect = 0.0;
  for (int i = 0; i < 8; i++)
    if (i != 1) expect += gsl_sf_lngamma(2 + prior.GetWeight(i)) - gsl_sf_lngamma(prior.GetWeight(i));
  expect += gsl_sf_lngamma(7.0) - gsl_sf_lngamma(7.0 + 14);
  EXPECT_NEAR(prior.GetLogMarginalLikelihood(counts), expect, 1e-9);
}

// log Student-t density with nu degrees of freedom, location m and squared scale s2.
double LogT(double x, double nu, double m, double s2) {
  double z = (x - m) * (x - m) / (nu * s2);
  return std::lgamma((nu + 1) / 2) - std::lgamma(nu / 2) - 0.5 * std::log(nu * M_PI * s2) - (nu + 1) / 2 * std::log1p(z);
}

TEST(NormalGammaPrior, MarginalLikelihoodIsTheSequentialPredictive) {
  Random_cl::iGlobalRandomizer.Reset(5);
  for (int trial = 0; trial < 10; trial++) {
    NormalGammaPrior_cl prior(0.5 + trial * 0.2, trial - 3.0, 1.0 + trial * 0.5, 0.5 + trial);
    double n = 0, sx = 0, sxx = 0, expect = 0;
    double lambda = prior.GetLambda(), mu = prior.GetMu0(), a = prior.GetAlpha(), b = prior.GetBeta();
    for (int k = 0; k < 3 + trial * 4; k++) {
      double x = Random_cl::iGlobalRandomizer.SampleNormal() * 2 + 1;
      expect += LogT(x, 2 * a, mu, b * (lambda + 1) / (a * lambda));
      // The conjugate update one observation at a time.
      b += lambda * (x - mu) * (x - mu) / (2 * (lambda + 1));
      mu = (lambda * mu + x) / (lambda + 1);
      lambda += 1;
      a += 0.5;
      n += 1;
      sx += x;
      sxx += x * x;
    }
    EXPECT_NEAR(prior.GetLogMarginalLikelihood(n, sx, sxx), expect, 1e-8);
    EXPECT_NEAR(prior.GetPosteriorBeta(n, sx, sxx), b, 1e-8 * b);
    auto avg = prior.GetPosteriorAvg(n, sx, sxx);
    EXPECT_NEAR(avg.first, mu, 1e-10);
    EXPECT_NEAR(avg.second, (lambda + 1) * b / (a * lambda), 1e-8);
    EXPECT_DOUBLE_EQ(prior.GetPosteriorAvgMean(n, sx), avg.first);
  }
}

TEST(NormalGammaPrior, EmptyDataAndLogDensity) {
  NormalGammaPrior_cl prior(2.0, 1.5, 3.0, 4.0);
  auto avg = prior.GetPosteriorAvg(0, 0, 0);
  EXPECT_EQ(avg.first, 1.5);
  EXPECT_DOUBLE_EQ(avg.second, 3.0 * 4.0 / (3.0 * 2.0));
  EXPECT_EQ(prior.GetLogMarginalLikelihood(0, 0, 0), 0.0);
  double xs[3] = {0.3, -1.2, 2.5}, expect = 0, sx = 0, sxx = 0;
  for (double x : xs) {
    expect += -0.5 * std::log(2 * M_PI * 1.7) - (x - 0.4) * (x - 0.4) / (2 * 1.7);
    sx += x;
    sxx += x * x;
  }
  EXPECT_NEAR(GetLogNormalProb(3, sx, sxx, 0.4, 1.7), expect, 1e-12);
}

TEST(NormalGammaPrior, SamplesFollowThePrior) {
  Random_cl rnd(9);
  NormalGammaPrior_cl prior(4.0, 2.0, 5.0, 3.0);
  double sumMean = 0, sumPrecision = 0;
  const int n = 20000;
  for (int i = 0; i < n; i++) {
    auto s = prior.Sample(&rnd);
    sumMean += s.first;
    sumPrecision += 1 / (4.0 * s.second);
  }
  EXPECT_NEAR(sumMean / n, 2.0, 0.02);
  EXPECT_NEAR(sumPrecision / n, 5.0 / 3.0, 0.03);
}

TEST(NormalWishartPrior, PosteriorFromRawData) {
  Random_cl::iGlobalRandomizer.Reset(6);
  const int d = 2, stats = 3;
  MatrixVector_sptr mu = new MatrixVector_cl(d);
  mu->SetElement(0, 0, 0.5);
  mu->SetElement(1, 0, -1.0);
  SqrMatrix_sptr t = new SqrMatrix_cl(d);
  t->SetElement(0, 1, 0.3);
  t->SetElement(1, 0, 0.3);
  NormalWishartPrior_cl prior(d, 2.0, mu, 4.0, t);
  // Prior position 0 reads moment column 2, position 1 column 0.
  RvMapping_sptr mapping = new RvMapping_cl();
  mapping->AddLast(SingleRv_sptr(), 2);
  mapping->AddLast(SingleRv_sptr(), 0);
  std::vector<std::vector<double>> rows;
  double first[stats] = {0, 0, 0}, second[stats * stats] = {0};
  for (int k = 0; k < 30; k++) {
    std::vector<double> r(stats);
    for (double& v : r) v = Random_cl::iGlobalRandomizer.SampleNormal();
    for (int i = 0; i < stats; i++) {
      first[i] += r[i];
      for (int j = i; j < stats; j++) second[i * stats + j] += r[i] * r[j];
    }
    rows.push_back(r);
  }
  auto post = prior.GetPosteriorAvg(mapping, 30, first, second, stats);
  int col[2] = {2, 0};
  double mean[2];
  for (int i = 0; i < d; i++) {
    double sum = 0;
    for (auto& r : rows) sum += r[col[i]];
    mean[i] = sum / 30;
    EXPECT_NEAR(post.first->GetElement(i, 0), (2.0 * mu->GetElement(i, 0) + sum) / 32, 1e-12);
  }
  for (int i = 0; i < d; i++)
    for (int j = 0; j < d; j++) {
      double scatter = 0;
      for (auto& r : rows) scatter += (r[col[i]] - mean[i]) * (r[col[j]] - mean[j]);
      double expect = (scatter + t->GetElement(i, j) +
                       30 * 2.0 / 32 * (mu->GetElement(i, 0) - mean[i]) * (mu->GetElement(j, 0) - mean[j])) / 34;
      EXPECT_NEAR(post.second->GetElement(i, j), expect, 1e-12);
    }
  auto empty = prior.GetPosteriorAvg(mapping, 0.0, first, second, stats);
  EXPECT_EQ(empty.first->GetElement(1, 0), -1.0);
  EXPECT_EQ(empty.second->GetElement(0, 1), 0.3 / 4.0);
  EXPECT_EQ(empty.second->GetElement(1, 1), 1.0 / 4.0);
}

TEST(NormalWishartPrior, NullMeanAndScale) {
  NormalWishartPrior_cl prior(3, 1.0, MatrixVector_sptr(), 2.0, SqrMatrix_sptr());
  auto empty = prior.GetPosteriorAvg(RvMapping_sptr(), 0.0, nullptr, nullptr, 0);
  EXPECT_EQ(empty.first->GetElement(2, 0), 0.0);
  EXPECT_EQ(empty.second->GetElement(2, 2), 0.5);
  EXPECT_EQ(empty.second->GetElement(1, 2), 0.0);
}

}  // namespace
