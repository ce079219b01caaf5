// The Normal-Gamma prior of one Gaussian variable: posteriors, marginal likelihood and sampling from moments.
#ifndef VORN_PROB_NORMAL_GAMMA_PRIOR_H
#define VORN_PROB_NORMAL_GAMMA_PRIOR_H

#include <utility>

#include "pipeline/random.h"
#include "prob/prior.h"

// Arguments n, Sx, Sxx are the total weight, the weighted sum and the weighted sum of squares.
class NormalGammaPrior_cl : public Prior_cl {
 public:
  NormalGammaPrior_cl(double lambda, double mu0, double alpha, double beta)
      : iLambda(lambda), iMu0(mu0), iAlpha(alpha), iBeta(beta) {}

  double GetLambda() const { return iLambda; }
  double GetMu0() const { return iMu0; }
  double GetAlpha() const { return iAlpha; }
  double GetBeta() const { return iBeta; }

  // beta of the posterior; beta itself when n is not above 0.
  double GetPosteriorBeta(double n, double sx, double sxx) const;
  // (mean, variance) at the posterior average.
  std::pair<double, double> GetPosteriorAvg(double n, double sx, double sxx) const;
  double GetPosteriorAvgMean(double n, double sx) const { return (iLambda * iMu0 + sx) / (iLambda + n); }
  double GetLogMarginalLikelihood(double n, double sx, double sxx) const;
  // (mean, variance) drawn from the prior.
  std::pair<double, double> Sample(Random_cl* random) const;
  // The expected log density of the data under the posterior.
  double ComputePosteriorAvgLogProb(double n, double sx, double sxx) const;

 private:
  double iLambda;
  double iMu0;
  double iAlpha;
  double iBeta;
};

// The log density of data with those moments at a mean and variance.
double GetLogNormalProb(double n, double sx, double sxx, double mean, double variance);

// The same Normal-Gamma prior for every line.
class NormalGammaTableCpdPrior_cl : public GaussianTableCpdPrior_cl {
 public:
  explicit NormalGammaTableCpdPrior_cl(const NormalGammaPrior_cl& prior) : iPrior(prior) {}
  Prior_cl* GetPrior(int) override { return &iPrior; }

 private:
  NormalGammaPrior_cl iPrior;
};

#endif
