// The 48-bit generator: seeding rules, exact draws and the laws of its samplers.
#include "pipeline/random.h"

#include <gsl/gsl_cdf.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <iostream>
#include <vector>

#include "distribution_check.h"

namespace {

// The 48-bit congruential generator behind erand48, stepped by hand.
class Lcg48 {
 public:
  Lcg48(uint16_t w0, uint16_t w1, uint16_t w2) : iX(uint64_t(w2) << 32 | uint64_t(w1) << 16 | w0) {}
  double Next() {
    iX = (0x5DEECE66DULL * iX + 0xB) & ((1ULL << 48) - 1);
    return std::ldexp(static_cast<double>(iX), -48);
  }

 private:
  uint64_t iX;
};

std::vector<double> Draw(int n, const std::function<double()>& draw) {
  std::vector<double> sample(n);
  for (double& x : sample) x = draw();
  return sample;
}

// Every construction moves the counter, seeded or not.
void PrintFirstSeeds() {
  Random_cl a(0);
  Random_cl b(-1);
  Random_cl c(9);
  Random_cl d(0);
  std::cerr << a.GetSeed() << ' ' << b.GetSeed() << ' ' << c.GetSeed() << ' ' << d.GetSeed() << std::endl;
  exit(0);
}

}  // namespace

TEST(RandomDeathTest, UnseededObjectsTakeTheCounterStartingAtOne) {
  // A fresh process, so that no earlier test has moved the counter.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(PrintFirstSeeds(), testing::ExitedWithCode(0), "^1 2 9 4\n$");
}

TEST(Random, ResetFillsTheWordsFromTheSeedAndDiscardsOneDraw) {
  Random_cl r(5);
  Lcg48 ref(5, 0, 0);
  ref.Next();
  for (int i = 0; i < 5; i++) EXPECT_EQ(r.SampleUniform(), ref.Next());
  // The low 32 bits 0x80000005 are negative as a signed number: the top word becomes 0xffff.
  r.Reset(0x180000005L);
  Lcg48 negative(0x0005, 0x8000, 0xffff);
  negative.Next();
  double first = r.SampleUniform();
  EXPECT_EQ(first, negative.Next());
  r.SampleUniform();
  r.Reset(0);  // a seed below 1 restarts from the seed kept
  EXPECT_EQ(r.SampleUniform(), first);
  EXPECT_EQ(r.GetSeed(), 0x180000005L);
}

TEST(Random, SampleNormalIsTheRatioOfUniformsDrawForDraw) {
  Random_cl r(77);
  Lcg48 ref(77, 0, 0);
  ref.Next();
  for (int i = 0; i < 2000; i++) {
    double v;
    for (;;) {
      double u;
      do u = ref.Next();
      while (u == 0.0);
      v = (ref.Next() - 0.5) * 1.7155277699214135 / u;
      double q = v * v;
      if (q <= 6.0 - 8.0 * u + 2.0 * u * u) break;
      if (q >= 2.0 / u - 2.0 * u) continue;
      if (q <= -4.0 * std::log(u)) break;
    }
    ASSERT_EQ(r.SampleNormal(), v) << "draw " << i;
  }
}

TEST(Random, SamplersFollowTheirLaws) {
  const int n = 20000;
  Random_cl r(2024);
  EXPECT_LT(KsDistance(Draw(n, [&] { return r.SampleNormal(); }), gsl_cdf_ugaussian_P), KsBound(n));
  struct GammaCase {
    double shape, rate;
  };
  for (GammaCase g : {GammaCase{0.3, 1.0}, GammaCase{0.8, 2.0}, GammaCase{1.7, 1.0}, GammaCase{4.2, 0.5}}) {
    std::vector<double> sample = Draw(n, [&] { return r.SampleGamma(g.shape, g.rate); });
    EXPECT_LT(KsDistance(sample, [&](double x) { return gsl_cdf_gamma_P(x, g.shape, 1.0 / g.rate); }), KsBound(n))
        << "shape " << g.shape;
    EXPECT_NEAR(Mean(sample), g.shape / g.rate, 4 * std::sqrt(g.shape / n) / g.rate);
  }
  // Shape 1 is the plain exponential, whatever the rate.
  std::vector<double> exponential = Draw(n, [&] { return r.SampleGamma(1.0, 5.0); });
  EXPECT_LT(KsDistance(exponential, [](double x) { return gsl_cdf_exponential_P(x, 1.0); }), KsBound(n));
  struct BetaCase {
    double a, b;
  };
  for (BetaCase c : {BetaCase{0.5, 0.5}, BetaCase{0.7, 3.0}, BetaCase{2.0, 5.0}, BetaCase{9.0, 1.5}}) {
    std::vector<double> sample = Draw(n, [&] { return r.SampleBeta(c.a, c.b); });
    EXPECT_LT(KsDistance(sample, [&](double x) { return gsl_cdf_beta_P(x, c.a, c.b); }), KsBound(n)) << c.a << "," << c.b;
  }
}

TEST(Random, DirichletNormalisesGammaDraws) {
  Random_cl r(31);
  const double alpha[] = {0.5, 2.0, 7.5};
  double mean[3] = {0, 0, 0};
  const int n = 20000;
  for (int i = 0; i < n; i++) {
    double out[3];
    r.SampleDirichlet(alpha, 3, out);
    ASSERT_NEAR(out[0] + out[1] + out[2], 1.0, 1e-12);
    for (int k = 0; k < 3; k++) mean[k] += out[k] / n;
  }
  // Component k has mean alpha_k / 10 and standard deviation below 0.3 / sqrt(n).
  for (int k = 0; k < 3; k++) EXPECT_NEAR(mean[k], alpha[k] / 10.0, 4 * 0.3 / std::sqrt(n));
}
