// Statistics against independent implementations (GSL, Boost.Math) and the exact written sums.
#include "eval/math_util.h"

#include <gsl/gsl_cdf.h>
#include <gsl/gsl_fit.h>
#include <gsl/gsl_randist.h>
#include <gsl/gsl_sf_gamma.h>
#include <gsl/gsl_statistics_double.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <boost/math/distributions/hypergeometric.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <cmath>
#include <cstdint>
#include <vector>

#include "pipeline/enum_converter.h"
#include "pipeline/random.h"

namespace {

const double kMissing = kMissingReal;

Vector_tmpl<double> Doubles(std::initializer_list<double> values) {
  Vector_tmpl<double> v;
  for (double x : values) v.AddLast(x);
  return v;
}

Vector_tmpl<int> Ints(std::initializer_list<int> values) {
  Vector_tmpl<int> v;
  for (int x : values) v.AddLast(x);
  return v;
}

// The hypergeometric tail exactly as written: lgamma sums, the early stop by comparing exponentials.
double WrittenAddLog(double a, double b) {
  if (a == kMissing) return b;
  if (b == kMissing) return a;
  double m = std::max(a, b), s = std::min(a, b);
  return m + std::log(1 + std::exp(s - m));
}
double WrittenLChoose(int k, int n) { return std::lgamma(n + 1) - std::lgamma(k + 1) - std::lgamma(n - k + 1); }
double WrittenLogHyperPValue(int k, int n, int K, int N) {
  double denominator = WrittenLChoose(n, N);
  double sum = kMissing;
  for (int i = k; i <= std::min(n, K); i++) {
    double term = WrittenLChoose(i, K) + WrittenLChoose(n - i, N - K) - denominator;
    bool stop = sum != kMissing && std::exp(sum) * 0.01 > std::exp(term);
    sum = WrittenAddLog(sum, term);
    if (stop) break;
  }
  return sum;
}

// log P(X >= k) to long double precision, far below the smallest double.
double OracleLogHyperTail(int k, int n, int K, int N) {
  boost::math::hypergeometric_distribution<long double> law(K, n, N);
  return static_cast<double>(std::log(k == 0 ? 1.0L : boost::math::cdf(boost::math::complement(law, k - 1))));
}

}  // namespace

TEST(LogSpace, AddAndSubtractTreatTheMissingRealAsZero) {
  EXPECT_EQ(MathUtils::AddLog(kMissing, kMissing), kMissing);
  EXPECT_EQ(MathUtils::AddLog(kMissing, -3.0), -3.0);
  EXPECT_EQ(MathUtils::AddLog(-3.0, kMissing), -3.0);
  EXPECT_EQ(MathUtils::AddLog(-INFINITY, -INFINITY), -INFINITY);  // no 0 * inf on the way
  EXPECT_DOUBLE_EQ(MathUtils::AddLog(std::log(0.25), std::log(0.5)), std::log(0.75));
  EXPECT_EQ(MathUtils::AddLog(-1000.0, 0.0), 0.0);
  EXPECT_DOUBLE_EQ(MathUtils::SubtractLog(std::log(0.75), std::log(0.5)), std::log(0.25));
  EXPECT_EQ(MathUtils::SubtractLog(-2.0, -2.0), kMissing);
  EXPECT_EQ(MathUtils::SubtractLog(-2.0, -1.0), kMissing);
  EXPECT_EQ(MathUtils::SubtractLog(-2.0, kMissing), -2.0);
  EXPECT_EQ(MathUtils::SubtractLog(kMissing, -2.0), kMissing);
  // The shortcut for far-apart logs gives what the full formula gives.
  for (double d = -36.5; d > -40.0; d -= 0.25) {
    double m = -7.25;
    EXPECT_EQ(MathUtils::AddLog(m, m + d), m + std::log(1.0 + std::exp(d)));
  }
}

TEST(LogSpace, LogWarnsOnNegativeArguments) {
  EXPECT_EQ(MathUtils::Log(0.0), kMissing);
  EXPECT_EQ(MathUtils::Log(std::exp(2.0)), 2.0);
  testing::internal::CaptureStderr();
  EXPECT_EQ(MathUtils::Log(-0.5), kMissing);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "MathUtils::Log (double x); ** x < 0 ** x= -0.5\n");
}

TEST(LogSpace, VectorSums) {
  Vector_tmpl<double> logs = Doubles({std::log(0.1), std::log(0.2), kMissing, std::log(0.3)});
  Vector_tmpl<double> extra = Doubles({0.0, std::log(2.0), 0.0, 0.0});
  EXPECT_DOUBLE_EQ(MathUtils::AddLogsVector(logs), std::log(0.6));
  EXPECT_DOUBLE_EQ(MathUtils::AddLogsVector(logs, &extra), std::log(0.8));
  EXPECT_EQ(MathUtils::AddLogsVector(Vector_tmpl<double>()), kMissing);
  // Weights that are not positive drop their entries; the first entry always counts.
  Vector_tmpl<double> weights = Doubles({2.0, 0.0, 1.0, -1.0});
  EXPECT_DOUBLE_EQ(MathUtils::AddLogsProductOfLogsVecAndNonLogsVec(weights, logs), std::log(0.2));
  EXPECT_DOUBLE_EQ(MathUtils::AddLogsProductOfLogsVecAndNonLogsVec(weights, logs, &extra), std::log(0.2));
  weights[0] = 0.0;
  EXPECT_EQ(MathUtils::AddLogsProductOfLogsVecAndNonLogsVec(weights, logs), kMissing);

  double raw[] = {-1.0, 3.0, 3.0, 3.0 - 49.0, 3.0 - 51.0};
  // The first maximum counts 1; the entry 51 below it is left out.
  EXPECT_EQ(MathUtils::LogOfSumOfExps(raw, 5), std::log(1.0 + std::exp(-4.0) + 1.0 + std::exp(-49.0)) + 3.0);
  EXPECT_EQ(MathUtils::LogOfSumOfExps(raw, 0), kMissing);
}

TEST(LogSpace, Normalisation) {
  Vector_tmpl<double> v = Doubles({-800.0, -800.0, -800.0, -800.0});
  MathUtils::NormalizeLog(v);
  for (int i = 0; i < 4; i++) EXPECT_NEAR(v[i], 0.25, 1e-12);  // -800 carries 13 digits of the fraction
  Vector_tmpl<double> plain = Doubles({1.0, 3.0});
  MathUtils::Normalize(plain);
  EXPECT_DOUBLE_EQ(plain[1], 0.75);
  Vector_tmpl<double> zeros = Doubles({0.0, 0.0});
  MathUtils::Normalize(zeros);
  EXPECT_EQ(zeros[0], 0.0);
}

TEST(Combinatorics, ChooseAndMultinomialCoefficients) {
  EXPECT_NEAR(MathUtils::lchoose(3, 10), std::log(120.0), 1e-12);
  EXPECT_EQ(MathUtils::lchoose(0, 0), 0.0);
  EXPECT_EQ(MathUtils::lchoose(11, 10), kMissing);
  EXPECT_EQ(MathUtils::lchoose(-1, 10), kMissing);
  for (int n : {0, 7, 5000, 99999, 3000000})
    for (int k : {0, n / 3, n - 1, n}) {
      // Differences of log-factorials keep the absolute precision of lgamma(n + 1).
      if (k < 0) continue;
      EXPECT_NEAR(MathUtils::lchoose(k, n), gsl_sf_lnchoose(n, k), 4e-16 * (1 + std::lgamma(n + 1.0)));
    }
  EXPECT_NEAR(MathUtils::lchooseMulti(Ints({2, 3}), 10), std::log(2520.0), 1e-12);  // 10! / (2! 3! 5!)
  EXPECT_EQ(MathUtils::lchooseMulti(Ints({6, 5}), 10), kMissing);
}

// The table of log-factorials must give what lgamma gives, and the early stop what the exponentials
// decide, bit for bit, also where the written sum meets a zero-probability first term.
TEST(HyperGeometric, SameBitsAsTheWrittenSum) {
  Random_cl random(11);
  auto draw = [&random](int lo, int hi) { return lo + static_cast<int>(random.SampleUniform() * (hi - lo + 1)); };
  int compared = 0;
  for (int trial = 0; trial < 8000; trial++) {
    int N = trial % 4 == 0 ? draw(1, 60) : trial % 4 == 1 ? 6000 : trial % 4 == 2 ? draw(1, 100000) : 100000;
    int K = trial % 3 == 0 ? draw(0, std::min(N, 500)) : draw(0, N);
    int n = trial % 5 == 0 ? draw(0, std::min(N, 300)) : draw(0, N);
    int top = std::min(n, K);
    int fewest = std::max(0, n - (N - K));
    int k = draw(std::max(0, fewest - 1), top + 1);
    double fast = MathUtils::ComputeLogHyperPValue(k, n, K, N);
    double written = WrittenLogHyperPValue(k, n, K, N);
    ASSERT_EQ(std::bit_cast<uint64_t>(fast), std::bit_cast<uint64_t>(written))
        << "k=" << k << " n=" << n << " K=" << K << " N=" << N;
    compared++;
  }
  EXPECT_EQ(compared, 8000);
}

// Past the mode the terms fall with a ratio r that itself falls, so what the stop leaves out is
// below 1% of the sum times r / (1 - r), r taken at the first term: a one-sided error.
TEST(HyperGeometric, EnrichmentTailsWithinTheEarlyStopBound) {
  const int kGrid[][3] = {{6000, 500, 300},   {6000, 20, 50},         {6000, 5, 5}, {100000, 1000, 1000},
                          {100000, 50, 5000}, {100000, 40000, 30000}, {60, 30, 30}, {100000, 99990, 11}};
  for (auto& g : kGrid) {
    int N = g[0], K = g[1], n = g[2];
    int mode = static_cast<int>((n + 1.0) * (K + 1.0) / (N + 2.0));
    for (int k = mode + 1; k <= std::min(n, K); k += 1 + std::min(n, K) / 40) {
      double r = std::exp(MathUtils::lchoose(k + 1, K) + MathUtils::lchoose(n - k - 1, N - K) -
                          MathUtils::lchoose(k, K) - MathUtils::lchoose(n - k, N - K));
      double oracle = OracleLogHyperTail(k, n, K, N);
      if (!(oracle > -11000.0)) break;  // beyond the range of long double
      double ours = MathUtils::ComputeLogHyperPValue(k, n, K, N);
      double slack = 1e-9 * (1 + std::fabs(oracle));  // rounding of log-factorials near 1e6
      double cut = 0.01 * r / (1 - r);
      EXPECT_LE(ours, oracle + slack) << k << " " << n << " " << K << " " << N;
      if (k == std::min(n, K)) {
        EXPECT_NEAR(ours, oracle, slack);
      } else if (cut < 1) {
        EXPECT_GE(ours, oracle + std::log1p(-cut) - slack) << k << " " << n << " " << K << " " << N;
      }
    }
  }
  // Tails far below the smallest double stay finite logarithms.
  EXPECT_NEAR(MathUtils::ComputeLogHyperPValue(1000, 1000, 1000, 100000), OracleLogHyperTail(1000, 1000, 1000, 100000),
              1e-6);
  EXPECT_LT(MathUtils::ComputeLogHyperPValue(1000, 1000, 1000, 100000), -4000.0);
}

TEST(HyperGeometric, BordersOfTheSupport) {
  EXPECT_EQ(MathUtils::ComputeLogHyperPValue(6, 5, 10, 100), kMissing);  // more hits than draws
  EXPECT_EQ(MathUtils::ComputeLogHyperPValue(11, 50, 10, 100), kMissing);
  EXPECT_EQ(MathUtils::ComputeLogHyperPValue(0, 0, 10, 100), 0.0);
  EXPECT_NEAR(MathUtils::ComputeLogHyperPValue(0, 300, 500, 6000), 0.0, 0.02);  // 0 up to the early stop
  // Every draw must hit: the impossible counts below are skipped rather than summed as -inf.
  EXPECT_NEAR(MathUtils::ComputeLogHyperPValue(0, 50, 90, 100), 0.0, 0.02);
  EXPECT_NEAR(MathUtils::ComputeLogHyperPValue(-3, 10, 20, 100), 0.0, 0.02);
  EXPECT_EQ(MathUtils::ComputeLogHyperPValue(2, 5, 10, 4), kMissing);  // n beyond N
}

TEST(Binomial, TailAgainstGsl) {
  for (int n : {1, 10, 300, 5000, 100000})
    for (double p : {1e-6, 0.01, 0.3, 0.5, 0.97})
      for (int k : {0, 1, n / 10, n / 2, n - 1, n}) {
        double q = k == 0 ? 1.0 : gsl_cdf_binomial_Q(k - 1, p, n);
        if (q < 1e-300) continue;
        EXPECT_NEAR(MathUtils::ComputeLogBinomialPValue(p, n, k), std::log(q), 1e-9 * (1 + std::fabs(std::log(q))))
            << n << " " << p << " " << k;
      }
  EXPECT_EQ(MathUtils::ComputeLogBinomialPValue(0.0, 10, 0), 0.0);
  EXPECT_EQ(MathUtils::ComputeLogBinomialPValue(0.0, 10, 1), kMissing);
  EXPECT_EQ(MathUtils::ComputeLogBinomialPValue(1.0, 10, 10), 0.0);
  EXPECT_EQ(MathUtils::ComputeLogBinomialPValue(0.5, 10, 11), kMissing);
}

TEST(MultipleHyperGeometric, OneCategoryIsTheWholeHyperGeometricTail) {
  for (int k : {0, 3, 8, 20}) {
    Vector_tmpl<int> counts = Ints({k});
    double ours = MathUtils::ComputeLogMultipleHyperPValue(counts, 20, Ints({40}), 300);
    EXPECT_NEAR(ours, std::log(k == 0 ? 1.0 : gsl_cdf_hypergeometric_Q(k - 1, 40, 260, 20)), 1e-10);
    EXPECT_EQ(counts[0], k);
  }
}

TEST(MultipleHyperGeometric, TwoCategoriesAgainstADirectSum) {
  const int N = 200, n = 15, t0 = 30, t1 = 12;
  Vector_tmpl<int> counts = Ints({4, 2});
  double expected = 0.0;
  for (int a = 4; a <= t0; a++)
    for (int b = 2; b <= t1 && a + b <= n; b++)
      expected += std::exp(gsl_sf_lnchoose(t0, a) + gsl_sf_lnchoose(t1, b) + gsl_sf_lnchoose(N - t0 - t1, n - a - b) -
                           gsl_sf_lnchoose(N, n));
  EXPECT_NEAR(MathUtils::ComputeLogMultipleHyperPValue(counts, n, Ints({t0, t1}), N), std::log(expected), 1e-10);
  EXPECT_EQ(counts[0], 4);
  EXPECT_EQ(counts[1], 2);
  double d = MathUtils::lchooseMulti(Ints({t0, t1}), N);
  EXPECT_NEAR(
      MathUtils::ComputeLogMultipleHyperGeometricProbability(Ints({4, 2}), Ints({t0, t1}), n, N, d),
      gsl_sf_lnchoose(t0, 4) + gsl_sf_lnchoose(t1, 2) + gsl_sf_lnchoose(N - t0 - t1, n - 6) - gsl_sf_lnchoose(N, n),
      1e-10);
}

namespace {

// The Kolmogorov tail by its other series, which converges fast where the alternating one is slow.
double DualKolmogorovTail(double lambda) {
  long double sum = 0;
  for (int k = 1; k < 200; k++) {
    long double odd = 2 * k - 1;
    sum += std::exp(-odd * odd * M_PIl * M_PIl / (8.0L * lambda * lambda));
  }
  return static_cast<double>(1 - std::sqrt(2 * M_PIl) / lambda * sum);
}

double KsLambda(int n1, int n2, double d) {
  double root = std::sqrt(static_cast<double>(n1) * n2 / (n1 + n2));
  return (root + 0.12 + 0.11 / root) * d;
}

}  // namespace

TEST(KolmogorovSmirnov, GapDirectionAndPositions) {
  Vector_tmpl<double> low = Doubles({1, 2, 3, 4, 5});
  Vector_tmpl<double> high = Doubles({6, 7, 8});
  double d;
  int direction, ia, ib;
  double p = MathUtils::ComputeKolmogorovSmirnovPValue(low, high, d, direction, ia, ib);
  // Each step records the share before it, and the walk ends with the first sample.
  EXPECT_DOUBLE_EQ(d, 0.8);
  EXPECT_EQ(direction, 0);
  EXPECT_EQ(ia, 4);
  EXPECT_EQ(ib, 0);
  EXPECT_NEAR(p, DualKolmogorovTail(KsLambda(5, 3, 0.8)), 1e-12);
  double d2;
  EXPECT_EQ(MathUtils::ComputeKolmogorovSmirnovPValue(high, low, d2, direction, ia, ib), p);
  EXPECT_EQ(d2, d);
  EXPECT_EQ(direction, 1);
  EXPECT_EQ(ia, 0);
  EXPECT_EQ(ib, 4);
}

TEST(KolmogorovSmirnov, TailAgainstTheDualSeries) {
  for (double lambda = 0.05; lambda < 1.6; lambda += 0.05) {
    // Samples of 1000 and 4000 with the gap that gives this lambda.
    double d = lambda / KsLambda(1000, 4000, 1.0);
    Random_cl random(3);
    Vector_tmpl<double> a, b;
    for (int i = 0; i < 1000; i++) a.AddLast(random.SampleUniform());
    for (int i = 0; i < 4000; i++) b.AddLast(random.SampleUniform() * (1 - d) + d);
    a.SortWithOperator();
    b.SortWithOperator();
    double gap;
    int direction, ia, ib;
    double p = MathUtils::ComputeKolmogorovSmirnovPValue(a, b, gap, direction, ia, ib);
    EXPECT_NEAR(p, DualKolmogorovTail(KsLambda(1000, 4000, gap)), 1e-12) << lambda;
  }
}

// The alternating series never meets its stop rule at D = 0; the cap ends it at the limit 1.
TEST(KolmogorovSmirnov, EqualSamplesEndWithPValueOne) {
  Vector_tmpl<double> a = Doubles({0.5, 1.5, 1.5, 2.5});
  double d;
  int direction, ia, ib;
  EXPECT_EQ(MathUtils::ComputeKolmogorovSmirnovPValue(a, a, d, direction, ia, ib), 1.0);
  EXPECT_EQ(d, 0.0);
  Vector_tmpl<double> empty;
  EXPECT_EQ(MathUtils::ComputeKolmogorovSmirnovPValue(empty, a, d, direction, ia, ib), 1.0);
}

TEST(TTest, OneSidedTailOfTheWelchStatisticWithPooledDegrees) {
  Vector_tmpl<double> x = Doubles({1, 2, kMissing, 3, 4});
  Vector_tmpl<double> y = Doubles({2, 4, 6, 8, 10});
  double t, mx, vx, my, vy;
  double p = MathUtils::ComputeTTestPValue(x, y, t, mx, vx, my, vy);
  EXPECT_DOUBLE_EQ(mx, 2.5);
  EXPECT_DOUBLE_EQ(vx, 1.25);  // the population variance
  EXPECT_DOUBLE_EQ(my, 6.0);
  EXPECT_DOUBLE_EQ(vy, 8.0);
  EXPECT_DOUBLE_EQ(t, -3.5 / std::sqrt(1.25 / 4 + 8.0 / 5));
  EXPECT_NEAR(p, boost::math::cdf(boost::math::students_t(7), t), 1e-6 * p);
  double t2;
  EXPECT_EQ(MathUtils::ComputeTTestPValue(y, x, t2, my, vy, mx, vx), p);
  EXPECT_EQ(t2, t);
  Vector_tmpl<double> flat = Doubles({3, 3, 3});
  EXPECT_DOUBLE_EQ(MathUtils::ComputeTTestPValue(flat, flat, t, mx, vx, my, vy), 0.5);
}

TEST(TTest, DistributionAgainstGsl) {
  for (double df : {1.0, 3.0, 30.0, 500.0, 20000.0, 200000.0})
    for (double t : {-300.0, -40.0, -8.0, -2.5, -0.3, 0.0, 0.7, 4.0}) {
      double ref = gsl_cdf_tdist_P(t, df);
      if (ref < 1e-300) continue;
      EXPECT_NEAR(MathUtils::TDistributionCDF(t, df), ref, 1e-6 * std::min(ref, 1 - ref) + 1e-15) << df << " " << t;
    }
  EXPECT_NEAR(MathUtils::BetaCDF(0.3, 2.5, 4.0), gsl_cdf_beta_P(0.3, 2.5, 4.0), 1e-8);
  EXPECT_EQ(MathUtils::BetaCDF(0.0, 2.5, 4.0), 0.0);
  EXPECT_EQ(MathUtils::BetaCDF(1.0, 2.5, 4.0), 1.0);
}

TEST(ChiSquare, SeriesAndGammaFunction) {
  for (double a : {0.5, 1.0, 2.5, 10.0, 60.0})
    for (double x : {0.0, 0.01, 1.0, 7.0, 50.0, 300.0, 700.0}) {
      double ref = gsl_sf_gamma_inc_P(a, x) * gsl_sf_gamma(a);
      EXPECT_NEAR(MathUtils::IncompleteGamma(a, x), ref, 1e-13 * ref) << a << " " << x;
    }
  // The gamma function carries 2.507109889893141 where the Lanczos form has sqrt(2 pi); chi-square
  // tails therefore level off at 1 - 2.5066282746310005 / 2.507109889893141.
  for (double x : {0.5, 1.0, 3.5, 20.0, 100.0})
    EXPECT_NEAR(MathUtils::GammaIntegral(x), gsl_sf_gamma(x) * 2.507109889893141 / 2.5066282746310005,
                2e-10 * gsl_sf_gamma(x));
  for (double df : {1.0, 4.0})
    for (double x : {0.0, 0.5, 3.84, 30.0}) {
      double p = MathUtils::GetChiSquareComplementaryCDFPVal(df, x);
      EXPECT_NEAR(p, 1 - gsl_cdf_chisq_P(x, df) * gsl_sf_gamma(df / 2) / MathUtils::GammaIntegral(df / 2), 1e-12);
    }
}

// Far outside the series' range: overflowing terms, and terms that never shrink (ratio exactly 1).
TEST(ChiSquare, SeriesEndsFarOutsideItsRange) {
  double floor = 1 - 2.5066282746310005 / 2.507109889893141;
  EXPECT_NEAR(MathUtils::GetChiSquareComplementaryCDFPVal(1.0, 1e6), floor, 1e-9);
  EXPECT_NEAR(MathUtils::GetChiSquareComplementaryCDFPVal(1.0, 1400.0), floor, 1e-9);
  EXPECT_NEAR(MathUtils::GetChiSquareComplementaryCDFPVal(1.0, 1500.0), floor, 1e-9);
  // Here the terms keep their size for ever; the sum ends (the formula itself has no value there).
  EXPECT_TRUE(std::isnan(MathUtils::IncompleteGamma(1e300, 1e300)));
}

TEST(Normal, InverseAndTailAgainstGsl) {
  for (double p : {1e-300, 1e-20, 1e-5, 0.02, 0.02425, 0.1, 0.5, 0.77, 0.97575, 0.999, 1 - 1e-12}) {
    double ref = gsl_cdf_ugaussian_Pinv(p);
    EXPECT_NEAR(MathUtils::ComputeNormalInverse(p), ref, 1.2e-9 * std::fabs(ref) + 1e-15) << p;
  }
  EXPECT_EQ(MathUtils::ComputeNormalInverse(0.0), 0.0);
  EXPECT_EQ(MathUtils::ComputeNormalInverse(1.0), 0.0);
  EXPECT_EQ(MathUtils::ComputeNormalInverse(0.5), 0.0);
  for (double z = -7.0; z <= 7.0; z += 0.35)
    EXPECT_NEAR(MathUtils::ComputeNormalStd2Pvalue(z), gsl_cdf_ugaussian_Q(z), 5e-10) << z;
  EXPECT_NEAR(MathUtils::GetNormalProb(1.3, 0.5, 2.0), gsl_ran_gaussian_pdf(0.8, std::sqrt(2.0)), 1e-15);
  double single = MathUtils::GetLogNormalProb(1.3, 0.5, 2.0) + MathUtils::GetLogNormalProb(-0.4, 0.5, 2.0);
  EXPECT_NEAR(MathUtils::GetLogNormalProb(2, 0.9, 1.3 * 1.3 + 0.16, 0.5, 2.0), single, 1e-13);
  EXPECT_NEAR(MathUtils::GetLogNormalProb(1.3, 0.5, 2.0), std::log(MathUtils::GetNormalProb(1.3, 0.5, 2.0)), 1e-13);
}

TEST(Normal, AreaTableAndThreshold) {
  EXPECT_EQ(MathUtils::normal_curve_areas[0], 0.0);
  EXPECT_EQ(MathUtils::normal_curve_areas[1], 0.00399);
  EXPECT_EQ(MathUtils::normal_curve_areas[100], 0.34134);
  EXPECT_EQ(MathUtils::normal_curve_areas[196], 0.475);
  EXPECT_EQ(MathUtils::normal_curve_areas[409], 0.49998);
  for (int i = 0; i < 410; i++)
    EXPECT_NEAR(MathUtils::normal_curve_areas[i], gsl_cdf_ugaussian_P(i / 100.0) - 0.5, 5.0000001e-6) << i;
  // The threshold is z to the hundredth below, scaled and shifted.
  for (double p : {0.3, 0.05, 0.025, 0.001, 1e-4}) {
    double z = (MathUtils::ComputeNormalCumulativeThreshold(p, 1.0, 4.0) - 1.0) / 2.0;
    double exact = gsl_cdf_ugaussian_Qinv(p);
    double rounding = 5.1e-6 / gsl_ran_ugaussian_pdf(exact);  // what five places of area leave of z
    EXPECT_LE(z, exact + rounding) << p;
    EXPECT_GT(z + 0.01, exact - rounding) << p;
  }
  EXPECT_DOUBLE_EQ(MathUtils::ComputeNormalCumulativeThreshold(0.05, 0.0, 1.0), 1.64);
}

TEST(Correction, ReadThroughTheEnumerationTable) {
  using Converter = EnumConverter_tmpl<MultipleHypothesisCorrection_cl, MULTIPLE_HYPOTHESIS_CORRECTION_NUM>;
  EXPECT_EQ(Converter::FromString(MULTIPLE_HYPOTHESIS_CORRECTION_STR, Name_sptr("FDR"), "None"), MHC_FDR);
  EXPECT_EQ(Converter::FromString(MULTIPLE_HYPOTHESIS_CORRECTION_STR, nullptr, "None"), MHC_NONE);
  EXPECT_EQ(Converter::FromString(MULTIPLE_HYPOTHESIS_CORRECTION_STR, Name_sptr("Bonferroni"), nullptr),
            MHC_BONFERRONI);
  EXPECT_DEATH(Converter::FromString(MULTIPLE_HYPOTHESIS_CORRECTION_STR, Name_sptr("Holm"), "None"),
               "^EnumConverter_tmpl::FromString Unrecognized type Holm\n$");
}

TEST(Correction, NoneBonferroniAndUnknown) {
  Vector_tmpl<DoubleComparator_cl*> none;
  EXPECT_EQ(MathUtils::ComputeCorrectedPvalue(none, MHC_NONE, 0.05, 100), 0.05);
  EXPECT_EQ(MathUtils::ComputeCorrectedPvalue(none, MHC_BONFERRONI, 0.05, 100), 0.05 / 100);
  EXPECT_EQ(MathUtils::ComputeCorrectedPvalue(none, MHC_BONFERRONI, 0.05, 0), 0.05);
  EXPECT_EQ(MathUtils::ComputeCorrectedPvalue(none, MHC_FDR, 0.05, 100), 0.0);
  EXPECT_DEATH(MathUtils::ComputeCorrectedPvalue(none, static_cast<MultipleHypothesisCorrection_cl>(3), 0.05, 1),
               "^Uknown MultipleHypothesisCorrection_cl enum value\n$");
}

// Benjamini-Hochberg: the largest p(i) with p(i) <= alpha i / m, m the tests made.
TEST(Correction, FdrIsTheStepUpThreshold) {
  Random_cl random(5);
  for (int trial = 0; trial < 50; trial++) {
    int count = 1 + trial * 7;
    int tests = count + trial % 3 * 10;
    DoubleComparator_cl* items = new DoubleComparator_cl[count];
    Vector_tmpl<DoubleComparator_cl*> holders;
    std::vector<double> sorted;
    for (int i = 0; i < count; i++) {
      double u = random.SampleUniform();
      items[i].iValue = i % 4 == 0 ? u * 1e-3 : u;
      items[i].iObject = items + i;
      holders.AddLast(items + i);
      sorted.push_back(items[i].iValue);
    }
    std::sort(sorted.begin(), sorted.end());
    double expected = 0.0;
    for (int i = 0; i < count; i++)
      if (sorted[i] <= 0.05 * (i + 1) / tests) expected = sorted[i];
    EXPECT_EQ(MathUtils::ComputeCorrectedPvalue(holders, MHC_FDR, 0.05, tests), expected) << trial;
    for (int i = 0; i < count; i++) EXPECT_EQ(holders[i]->iValue, sorted[i]);
    EXPECT_EQ(holders[0]->iObject, holders[0]);
    delete[] items;
  }
}

TEST(RegressionAndRuns, AgainstGsl) {
  double x[] = {1.0, 2.0, 4.0, 5.5, 7.0, 9.0};
  double y[] = {2.1, 3.9, 8.2, 10.9, 14.5, 17.8};
  double r, slope, intercept, c0, c1, cov00, cov01, cov11, ss;
  MathUtils::LinearRegression(x, y, 6, r, slope, intercept);
  gsl_fit_linear(x, 1, y, 1, 6, &c0, &c1, &cov00, &cov01, &cov11, &ss);
  EXPECT_NEAR(slope, c1, 1e-12);
  EXPECT_NEAR(intercept, c0, 1e-12);
  EXPECT_NEAR(r, gsl_stats_correlation(x, 1, y, 1, 6), 1e-12);
  EXPECT_DOUBLE_EQ(MathUtils::LinearInterpolation(1.0, 3.0, 10.0, 20.0, 2.5), 17.5);

  Vector_tmpl<double>* run = MathUtils::GetRunningVector(-1.0, 1.0, 5);
  EXPECT_EQ(run->GetSize(), 5);
  EXPECT_EQ((*run)[0], -1.0);
  EXPECT_EQ((*run)[2], 0.0);
  EXPECT_EQ((*run)[4], 1.0);
  EXPECT_DOUBLE_EQ(MathUtils::GetVecAverage(run), 0.0);
  delete run;
  Vector_tmpl<int>* up = MathUtils::GetRunningIntVector(2, 3, 11);
  Vector_tmpl<int>* down = MathUtils::GetRunningIntVector(5, -2, 0);
  EXPECT_EQ(up->GetSize(), 4);
  EXPECT_EQ((*up)[3], 11);
  EXPECT_EQ(down->GetSize(), 3);
  EXPECT_EQ((*down)[2], 1);
  delete up;
  delete down;
  EXPECT_DEATH(MathUtils::GetRunningIntVector(1, 0, 5), "^MathUtils::GetRunningIntVector step must not be 0\n$");
}
