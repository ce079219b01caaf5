// The Normal-Wishart prior of a multivariate Gaussian: the posterior mean and covariance from moments.
#include "prob/normal_wishart_prior.h"

#include <algorithm>

NormalWishartPrior_cl::NormalWishartPrior_cl(int d, double lambda, MatrixVector_sptr mean, double nu,
                                             SqrMatrix_sptr scale)
    : iDim(d), iLambda(lambda), iMean(mean), iScale(scale), iNu(nu) {
  if (iMean.IsNull()) iMean = new MatrixVector_cl(d);
  if (iScale.IsNull()) iScale = new SqrMatrix_cl(d);
}

std::pair<MatrixVector_sptr, SqrMatrix_sptr> NormalWishartPrior_cl::GetPosteriorAvg(const RvMapping_sptr& mapping,
                                                                                     double n, const double* first,
                                                                                     const double* second,
                                                                                     int statsVars) const {
  MatrixVector_sptr mean = new MatrixVector_cl(iDim);
  SqrMatrix_sptr cov = new SqrMatrix_cl(iDim);
  for (int i = 0; i < iDim; i++) {
    if (n == 0.0) {
      mean->SetElement(i, 0, iMean->GetElement(i, 0));
      for (int j = 0; j < iDim; j++) cov->SetElement(i, j, iScale->GetElement(i, j) / iNu);
      continue;
    }
    int p = mapping->GetIndex(i);
    double si = first[p], mui = iMean->GetElement(i, 0);
    mean->SetElement(i, 0, (iLambda * mui + si) / (iLambda + n));
    for (int j = i; j < iDim; j++) {
      int q = mapping->GetIndex(j);
      double sj = first[q], muj = iMean->GetElement(j, 0);
      double c = second[std::min(p, q) * statsVars + std::max(p, q)] - si * sj / n + iScale->GetElement(i, j);
      if (iLambda > 0.0) c += n * iLambda / (iLambda + n) * (mui - si / n) * (muj - sj / n);
      c /= n + iNu;
      cov->SetElement(i, j, c);
      cov->SetElement(j, i, c);
    }
  }
  return {mean, cov};
}
