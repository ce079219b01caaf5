// The seed searcher's generator: reproducible streams from the C library's seeding, and its samplers.
#include "pipeline/marsaglia.h"

#include <gsl/gsl_cdf.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "distribution_check.h"

namespace {

// The generator's rules computed in 64-bit arithmetic with explicit 32-bit reduction.
class Reference {
 public:
  explicit Reference(unsigned seed) {
    const int64_t mask = 0xffffffffLL;
    srand(seed);
    for (int k = 1; k <= 43; k++) {
      int64_t t = rand();
      t = ((t << 15) + rand()) & mask;
      t = (4 * t + rand() % 4) & mask;
      iTable[k] = t > 4294967291LL ? 4294967291LL : t;
    }
    iWeyl = rand();
    for (int k = 0; k < 99999; k++) Next();
  }
  int64_t Next() {
    const int64_t mask = 0xffffffffLL;
    iI = iI == 1 ? 43 : iI - 1;
    iJ = iJ == 1 ? 43 : iJ - 1;
    int64_t s = (iCarry + iTable[iI]) & mask;
    iCarry = iTable[iJ] >= s ? 0 : 1;
    iTable[iI] = (iTable[iJ] - s + (iCarry ? 4294967291LL : 0)) & mask;
    iWeyl = (iWeyl - 362436069LL) & mask;
    return (iTable[iI] - iWeyl) & mask;
  }

 private:
  int64_t iTable[44] = {};
  int64_t iWeyl;
  int iI = 44, iJ = 23;
  int64_t iCarry = 1;
};

std::vector<double> Draw(int n, const std::function<double()>& draw) {
  std::vector<double> sample(n);
  for (double& x : sample) x = draw();
  return sample;
}

}  // namespace

TEST(Marsaglia, StreamsFollowTheSeedingAndTheRecurrence) {
  for (unsigned seed : {1u, 7u, 64999u}) {
    Reference ref(seed);
    tMarsagliaGenerator gen;
    gen.Initialize(seed);
    for (int i = 0; i < 500; i++) ASSERT_EQ(gen.Next(), ref.Next()) << "seed " << seed << " draw " << i;
  }
  tMarsagliaGenerator fresh, seeded;
  seeded.Initialize(1);
  for (int i = 0; i < 10; i++) EXPECT_EQ(fresh.Next(), seeded.Next());
  tMarsagliaGenerator other;
  other.Initialize(2);
  EXPECT_NE(other.Next(), fresh.Next());
}

TEST(Marsaglia, UniformAndNormalDraws) {
  tRandomGenerator gen;
  gen.Initialize(11);
  const int n = 20000;
  std::vector<double> u = Draw(n, [&] { return gen.SampleUniform(); });
  EXPECT_LT(KsDistance(u, [](double x) { return x < 0 ? 0.0 : x > 1 ? 1.0 : x; }), KsBound(n));
  EXPECT_DOUBLE_EQ(gen.RandomDouble(0.0), 0.0);
  EXPECT_LT(KsDistance(Draw(n, [&] { return gen.SampleNormal(); }), gsl_cdf_ugaussian_P), KsBound(n));
}

TEST(Marsaglia, NormalTakesTheCosineOfTheFirstUniform) {
  tRandomGenerator a, b;
  double u1 = b.SampleUniform(), u2 = b.SampleUniform();
  EXPECT_DOUBLE_EQ(a.SampleNormal(), std::cos(2 * M_PI * u1) * std::sqrt(-2 * std::log(u2)));
}

TEST(Marsaglia, GammaAndDirichlet) {
  tRandomGenerator gen;
  gen.Initialize(5);
  const int n = 20000;
  for (double shape : {0.4, 1.0, 3.3}) {
    std::vector<double> sample = Draw(n, [&] { return gen.SampleGamma(shape); });
    EXPECT_LT(KsDistance(sample, [&](double x) { return gsl_cdf_gamma_P(x, shape, 1.0); }), KsBound(n)) << shape;
  }
  const double mean[] = {0.2, 0.3, 0.5};
  const float meanF[] = {0.2f, 0.3f, 0.5f};
  double avg[3] = {0, 0, 0};
  for (int i = 0; i < 5000; i++) {
    double out[3];
    float outF[3];
    gen.SampleDirichlet(3, mean, 10.0, out);
    gen.SampleDirichlet(3, meanF, 10.0f, outF);
    ASSERT_NEAR(out[0] + out[1] + out[2], 1.0, 1e-12);
    ASSERT_NEAR(outF[0] + outF[1] + outF[2], 1.0f, 1e-5f);
    for (int k = 0; k < 3; k++) avg[k] += out[k] / 5000;
  }
  for (int k = 0; k < 3; k++) EXPECT_NEAR(avg[k], mean[k], 0.01);
}

TEST(Marsaglia, MultinomialsFollowTheTable) {
  tRandomGenerator gen;
  const double p[] = {0.1, 0.6, 0.3};
  int counts[3] = {0, 0, 0};
  for (int i = 0; i < 30000; i++) counts[gen.SampleMultinomial(3, p)]++;
  for (int k = 0; k < 3; k++) EXPECT_NEAR(counts[k] / 30000.0, p[k], 0.015);
  const double short_p[] = {0.1, 0.1};  // sums below one: the rest falls on the last index
  int last = 0;
  for (int i = 0; i < 1000; i++) last += gen.SampleMultinomial(2, short_p) == 1;
  EXPECT_GT(last, 850);
  double logp[] = {std::log(2.0), std::log(6.0), std::log(2.0)};
  gen.SampleLogMultinomial(3, logp);
  EXPECT_DOUBLE_EQ(logp[0], 0.2);
  EXPECT_DOUBLE_EQ(logp[1], 0.6);
}

TEST(Marsaglia, GroupsAreDistinctAndSorted) {
  tRandomGenerator gen;
  for (int trial = 0; trial < 200; trial++) {
    Vector_tmpl<int> group = gen.sampleGroup(20, 7);
    ASSERT_EQ(group.GetSize(), 7);
    for (int i = 1; i < 7; i++) ASSERT_LT(group[i - 1], group[i]);
    ASSERT_GE(group[0], 0);
    ASSERT_LT(group[6], 20);
  }
  Vector_tmpl<int> all = gen.sampleGroup(4, 4);
  for (int i = 0; i < 4; i++) EXPECT_EQ(all[i], i);
  EXPECT_EQ(gen.sampleGroup(5, 0).GetSize(), 0);
}

TEST(MarsagliaDeathTest, BrokenPreconditionsStop) {
  tRandomGenerator gen;
  EXPECT_DEATH(gen.SampleGamma(0.0), "^tRandomGenerator assertion failed: alpha > 0\n");
  EXPECT_DEATH(gen.sampleGroup(3, 4), "^tRandomGenerator assertion failed: groupSize <= size\n");
}
