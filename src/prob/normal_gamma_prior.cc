// The Normal-Gamma prior of one Gaussian variable: posteriors, marginal likelihood and sampling from moments.
#include "prob/normal_gamma_prior.h"

#include <cmath>

static constexpr double kTwoPi = 6.283185307179586;

double NormalGammaPrior_cl::GetPosteriorBeta(double n, double sx, double sxx) const {
  if (!(n > 0)) return iBeta;
  double m = sx / n, v = sxx / n - m * m;
  return iBeta + (n / 2) * v + iLambda * n * (m - iMu0) * (m - iMu0) / (2 * (iLambda + n));
}

std::pair<double, double> NormalGammaPrior_cl::GetPosteriorAvg(double n, double sx, double sxx) const {
  double beta = GetPosteriorBeta(n, sx, sxx);
  double mean = (iMu0 * iLambda + sx) / (iLambda + n);
  double variance = 1 / ((n / 2 + iAlpha) * (iLambda + n) / ((iLambda + n + 1) * beta));
  return {mean, variance};
}

double NormalGammaPrior_cl::GetLogMarginalLikelihood(double n, double sx, double sxx) const {
  double beta = GetPosteriorBeta(n, sx, sxx);
  return -(n / 2) * std::log(kTwoPi) + 0.5 * std::log(iLambda / (iLambda + n)) + std::lgamma(iAlpha + n / 2) -
         std::lgamma(iAlpha) + iAlpha * std::log(iBeta) - (iAlpha + n / 2) * std::log(beta);
}

std::pair<double, double> NormalGammaPrior_cl::Sample(Random_cl* random) const {
  double tau = random->SampleGamma(iAlpha, iBeta);
  double s = 1 / (iLambda * tau);
  double z = random->SampleNormal();
  return {iMu0 + z * std::sqrt(s), s};
}

// Expectations under a Gamma(a, b) precision with a mean mu given it.
static double AvgTau(double a, double b) { return a / b; }
static double AvgTauMu(double a, double b, double mu) { return a * mu / b; }
// The minus keeps the clustering costs as they have always been computed.
static double AvgTauMu2(double a, double b, double mu, double lambda) { return a * mu * mu / b - 1 / lambda; }
static double Digamma(double x) {
  double x2 = x * x;
  return std::log(x) - 1 / (2 * x) - 1 / (12 * x2) + 1 / (120 * x2 * x2) - 1 / (252 * x2 * x2 * x2);
}
static double AvgLogTau(double a, double b) { return Digamma(a) - std::log(b); }

double NormalGammaPrior_cl::ComputePosteriorAvgLogProb(double n, double sx, double sxx) const {
  double beta = GetPosteriorBeta(n, sx, sxx);
  double a = n / 2 + iAlpha, mu = (iMu0 * iLambda + sx) / (iLambda + n), lambda = iLambda + n;
  return n * (-0.5 * AvgTauMu2(a, beta, mu, lambda) + 0.5 * (AvgLogTau(a, beta) - std::log(kTwoPi))) +
         AvgTauMu(a, beta, mu) * sx + AvgTau(a, beta) * (-0.5 * sxx);
}

double GetLogNormalProb(double n, double sx, double sxx, double mean, double variance) {
  return ((2 * sx - n * mean) * mean - sxx) / (2 * variance) - (n / 2) * std::log(kTwoPi * variance);
}
