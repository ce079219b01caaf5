// Kolmogorov-Smirnov distance of a sample from a distribution function, for the generator tests.
#ifndef VORN_TESTS_PIPELINE_DISTRIBUTION_CHECK_H
#define VORN_TESTS_PIPELINE_DISTRIBUTION_CHECK_H

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

// The largest gap between the sample's empirical distribution and cdf.
inline double KsDistance(std::vector<double> sample, const std::function<double(double)>& cdf) {
  std::sort(sample.begin(), sample.end());
  double n = static_cast<double>(sample.size());
  double worst = 0.0;
  for (size_t i = 0; i < sample.size(); i++) {
    double f = cdf(sample[i]);
    worst = std::max({worst, (i + 1) / n - f, f - i / n});
  }
  return worst;
}

// The distance a correct sampler stays below at the 0.001 level.
inline double KsBound(size_t n) { return 1.95 / std::sqrt(static_cast<double>(n)); }

inline double Mean(const std::vector<double>& sample) {
  double sum = 0.0;
  for (double x : sample) sum += x;
  return sum / sample.size();
}

#endif
