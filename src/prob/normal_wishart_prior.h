// The Normal-Wishart prior of a multivariate Gaussian: the posterior mean and covariance from moments.
#ifndef VORN_PROB_NORMAL_WISHART_PRIOR_H
#define VORN_PROB_NORMAL_WISHART_PRIOR_H

#include <utility>

#include "prob/prior.h"
#include "prob/rv_mapping.h"
#include "prob/sqr_matrix.h"

class NormalWishartPrior_cl : public Prior_cl {
 public:
  // A null mean is a zero vector of length d, a null scale the d by d unit matrix.
  NormalWishartPrior_cl(int d, double lambda, MatrixVector_sptr mean, double nu, SqrMatrix_sptr scale);

  int GetDimension() const { return iDim; }
  // In the prior's order of dimensions; mapping gives each position's index in the moment arrays,
  // whose second moments are the upper triangle of a statsVars by statsVars array.
  std::pair<MatrixVector_sptr, SqrMatrix_sptr> GetPosteriorAvg(const RvMapping_sptr& mapping, double n,
                                                                const double* first, const double* second,
                                                                int statsVars) const;

 private:
  int iDim;
  double iLambda;
  MatrixVector_sptr iMean;
  SqrMatrix_sptr iScale;
  double iNu;
};

class NormalWishartTableCpdPrior_cl : public GaussianTableCpdPrior_cl {
 public:
  explicit NormalWishartTableCpdPrior_cl(const NormalWishartPrior_cl& prior) : iPrior(prior) {}
  Prior_cl* GetPrior(int) override { return &iPrior; }

 private:
  NormalWishartPrior_cl iPrior;
};

#endif
