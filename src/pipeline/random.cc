// The 48-bit generator behind every random draw outside the seed searcher.
#include "pipeline/random.h"

#include <stdlib.h>
#include <sys/time.h>

#include <cmath>

#include "pipeline/gamma_sampler.h"

namespace {
long gUnseededCounter = 1;
}

// The shared generator does not draw on the counter: the first unseeded object gets 1.
Random_cl Random_cl::iGlobalRandomizer(Random_cl::Fixed{}, 1);

Random_cl::Random_cl(long seed) {
  long counter = gUnseededCounter++;
  Reset(seed < 1 ? counter : seed);
}

double Random_cl::erand48(unsigned short words[3]) { return ::erand48(words); }

void Random_cl::Reset(long seed) {
  if (seed >= 1) iSeed = seed;
  int32_t low = static_cast<int32_t>(static_cast<uint32_t>(iSeed & 0xffffffffL));
  iWords[0] = static_cast<unsigned short>(low & 0xffff);
  iWords[1] = static_cast<unsigned short>((low >> 16) & 0xffff);
  iWords[2] = static_cast<unsigned short>((low >> 31) & 0xffff);
  erand48(iWords);
}

void Random_cl::SeedGlobalFromClock() { iGlobalRandomizer.Reset(GetLinuxTime() & 0xffffff); }

double Random_cl::SampleNormal() {
  for (;;) {
    double u;
    do u = SampleUniform();
    while (u == 0.0);
    double v = (SampleUniform() - 0.5) * 1.7155277699214135 / u;
    double q = v * v;
    if (q <= 6.0 - 8.0 * u + 2.0 * u * u) return v;
    if (q >= 2.0 / u - 2.0 * u) continue;
    if (q <= -4.0 * std::log(u)) return v;
  }
}

double Random_cl::SampleBeta(double a, double b) {
  double s = a + b;
  double small = a < b ? a : b;
  double t = small > 1.0 ? std::sqrt((2.0 * a * b - s) / (s - 2.0)) : small;
  for (;;) {
    double u1 = SampleUniform();
    double u2 = SampleUniform();
    double x = std::log(u1 / (1.0 - u1)) / t;
    double w = a * std::exp(x);
    if (s * std::log(s / (b + w)) + (a + t) * x - std::log(4.0) >= std::log(u1 * u1 * u2)) return w / (b + w);
  }
}

double Random_cl::SampleGamma(double shape, double rate) {
  double x = DrawGamma(shape, [this] { return SampleUniform(); });
  // The exponential case keeps its historical behaviour of ignoring the rate.
  return shape == 1.0 ? x : x / rate;
}

void Random_cl::SampleDirichlet(const double* alpha, int n, double* out) {
  double sum = 0.0;
  for (int i = 0; i < n; i++) {
    out[i] = SampleGamma(alpha[i], 1.0);
    sum += out[i];
  }
  for (int i = 0; i < n; i++) out[i] /= sum;
}

int64_t GetLinuxTime() {
  struct timeval now;
  gettimeofday(&now, nullptr);
  return static_cast<int64_t>(now.tv_sec) * 1000000000LL + static_cast<int64_t>(now.tv_usec) * 1000LL;
}
