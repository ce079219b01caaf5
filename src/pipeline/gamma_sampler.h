// The rejection sampler of the gamma law at rate 1, shared by both random sources.
#ifndef VORN_PIPELINE_GAMMA_SAMPLER_H
#define VORN_PIPELINE_GAMMA_SAMPLER_H

#include <cmath>

// One draw of Gamma(shape, 1) from the uniform source: a rejection method below shape 1, the
// exponential at 1 and a ratio method above, as the program's results were made with.
template <class Uniform>
double DrawGamma(double shape, Uniform&& uniform) {
  const double e = M_E;
  if (shape < 1.0) {
    double b = shape + e;
    double x, y, u2;
    do {
      double u1 = uniform();
      u2 = uniform();
      if (u1 <= e / b) {
        x = std::pow(u1 * b / e, 1.0 / shape);
        y = std::exp(-x);
      } else {
        x = -std::log((1.0 - u1) * b / (shape * e));
        y = std::pow(x, shape - 1.0);
      }
    } while (y < u2);
    return x;
  }
  if (shape == 1.0) return -std::log(uniform());
  double a = shape - 1.0;
  double b = (shape - 1.0 / (6.0 * shape)) / a;
  double m = 2.0 / a;
  double d = m + 2.0;
  double f = 1.0 / std::sqrt(shape);
  for (;;) {
    double u1 = uniform();
    double u2 = uniform();
    if (shape > 2.5) u1 = u2 + f * (1.0 - 1.86 * u1);
    if (!(u1 > 0.0 && u1 < 1.0)) continue;
    double w = b * u2 / u1;
    if (m * u1 + w + 1.0 / w <= d || m * std::log(u1) - std::log(w) + w < 1.0) return a * w;
  }
}

#endif
