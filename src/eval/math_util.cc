// Statistics of the system: log-space sums, combinatorial tails, tests of two samples, the normal law and corrections.
#include "eval/math_util.h"

#include <cstdlib>
#include <iostream>
#include <numbers>
#include <vector>

const char* MULTIPLE_HYPOTHESIS_CORRECTION_STR[MULTIPLE_HYPOTHESIS_CORRECTION_NUM] = {"None", "FDR", "Bonferroni"};

const double* MathUtils::iLogFactorials = nullptr;
long long MathUtils::iLogFactorialSize = 0;

namespace {

// The log-factorial table stops growing here (8 MB); larger arguments call lgamma directly.
const long long kMaxLogFactorials = 1LL << 20;

// Decides exp(sum) * 0.01 > exp(term) as that expression would, computing the two exponentials only
// when the logs lie within 1e-9 of each other: elsewhere the rounding of exp (under an ulp) cannot
// turn the answer, and exp(sum) * 0.01 is a normal number by the bounds on sum.
inline bool IsBelowHundredth(double sum, double term) {
  if (sum > -700.0 && sum < 700.0) {
    double gap = term - (sum - 4.605170185988091);  // log(0.01)
    if (gap < -1e-9) return true;
    if (gap > 1e-9) return false;
  }
  return std::exp(sum) * 0.01 > std::exp(term);
}

// n, mean and population variance of the entries that are not missing; 0 for an empty sample.
void SampleMoments(const Vector_tmpl<double>& v, int& n, double& mean, double& variance) {
  double sum = 0.0, sumSquares = 0.0;
  n = 0;
  for (int i = 0; i < v.GetSize(); i++) {
    if (v[i] == kMissingReal) continue;
    n++;
    sum += v[i];
    sumSquares += v[i] * v[i];
  }
  mean = variance = 0.0;
  if (n == 0) return;
  mean = sum / n;
  variance = sumSquares / n - mean * mean;
}

}  // namespace

// --- log-space arithmetic

double MathUtils::SubtractLog(double a, double b) {
  if (a <= kMissingReal) return kMissingReal;
  if (b <= kMissingReal) return a;
  if (b >= a) return kMissingReal;
  return a + std::log(1.0 - std::exp(b - a));
}

double MathUtils::Log(double x) {
  if (x < 0) {
    std::cerr << "MathUtils::Log (double x); ** x < 0 ** x= " << x << std::endl;
    return kMissingReal;
  }
  if (x == 0) return kMissingReal;
  return std::log(x);
}

double MathUtils::AddLogsVector(const Vector_tmpl<double>& values, const Vector_tmpl<double>* second) {
  double sum = kMissingReal;
  for (int i = 0; i < values.GetSize(); i++) sum = AddLog(sum, second ? values[i] + (*second)[i] : values[i]);
  return sum;
}

double MathUtils::AddLogsProductOfLogsVecAndNonLogsVec(const Vector_tmpl<double>& weights,
                                                       const Vector_tmpl<double>& values,
                                                       const Vector_tmpl<double>* second) {
  if (values.GetSize() == 0) return kMissingReal;
  // The first entry always counts; a weight that is not positive makes it a zero probability.
  double sum = (weights[0] > 0.0 ? std::log(weights[0]) : kMissingReal) + values[0];
  if (second) sum += (*second)[0];
  for (int i = 1; i < values.GetSize(); i++) {
    if (!(weights[i] > 0.0)) continue;
    double term = std::log(weights[i]) + values[i];
    if (second) term += (*second)[i];
    sum = AddLog(sum, term);
  }
  return sum;
}

double MathUtils::LogOfSumOfExps(const double* values, int length) {
  if (length <= 0) return kMissingReal;
  int best = 0;
  for (int i = 1; i < length; i++)
    if (values[i] > values[best]) best = i;
  double m = values[best];
  double sum = 1.0;
  for (int i = 0; i < length; i++) {
    if (i == best) continue;
    double d = values[i] - m;
    if (d > -50.0) sum += std::exp(d);
  }
  return std::log(sum) + m;
}

double MathUtils::LogOfSumOfExps(const Vector_tmpl<double>& values) {
  return LogOfSumOfExps(values.GetData(), values.GetSize());
}

void MathUtils::Normalize(Vector_tmpl<double>& values) {
  double sum = 0.0;
  for (int i = 0; i < values.GetSize(); i++) sum += values[i];
  if (sum > 0) values.DivideByValueWithOperator(sum);
}

void MathUtils::NormalizeLog(Vector_tmpl<double>& values) {
  double total = LogOfSumOfExps(values);
  for (int i = 0; i < values.GetSize(); i++) values[i] = std::exp(values[i] - total);
  values.SetChanged();
}

// --- combinatorial tails

double MathUtils::LogFactorialBeyondTable(long long m) {
  if (m < 0 || m >= kMaxLogFactorials) return std::lgamma(static_cast<double>(m) + 1.0);
  static std::vector<double> table;  // a cache: no output depends on how it grows
  long long size = static_cast<long long>(table.size());
  long long grown = size * 2 > m + 1 ? size * 2 : m + 1;
  if (grown < 4096) grown = 4096;
  if (grown > kMaxLogFactorials) grown = kMaxLogFactorials;
  table.resize(grown);
  for (long long i = size; i < grown; i++) table[i] = std::lgamma(static_cast<double>(i) + 1.0);
  iLogFactorials = table.data();
  iLogFactorialSize = grown;
  return iLogFactorials[m];
}

template <class CountAt>
double MathUtils::LChooseMultiOf(int size, int n, CountAt countAt) {
  double result = LogFactorial(n);
  long long sum = 0;
  for (int i = 0; i < size; i++) {
    int c = countAt(i);
    if (c < 0) return kMissingReal;
    sum += c;
    result -= LogFactorial(c);
  }
  if (sum > n) return kMissingReal;
  return result - LogFactorial(n - sum);
}

double MathUtils::lchooseMulti(const Vector_tmpl<int>& counts, int n) {
  return LChooseMultiOf(counts.GetSize(), n, [&counts](int i) { return counts[i]; });
}

double MathUtils::ComputeLogHyperPValue(int k, int n, int K, int N) {
  if (n < 0 || K < 0 || n > N || K > N) return kMissingReal;
  int top = n < K ? n : K;
  // Below n - (N - K) hits the terms are zero probabilities; starting above them keeps a run of
  // them from turning the sum into not-a-number.
  long long first = k;
  long long fewest = static_cast<long long>(n) - (N - K);
  if (first < fewest) first = fewest;
  if (first < 0) first = 0;
  double denominator = lchoose(n, N);
  double sum = kMissingReal;
  for (long long i = first; i <= top; i++) {
    double term = lchoose(static_cast<int>(i), K) + lchoose(static_cast<int>(n - i), N - K) - denominator;
    if (sum <= kMissingReal) {
      sum = term;
      continue;
    }
    bool last = IsBelowHundredth(sum, term);
    sum = AddLog(sum, term);
    if (last) break;
  }
  return sum;
}

double MathUtils::ComputeLogBinomialPValue(double p, int n, int k) {
  double logP = std::log(p);
  double logQ = std::log(1.0 - p);
  double sum = kMissingReal;
  for (long long i = k < 0 ? 0 : k; i <= n; i++) {
    // 0^0 = 1: a factor whose exponent is 0 drops out, and a zero probability to a positive power
    // makes a zero term.
    if ((p == 0.0 && i > 0) || (p == 1.0 && i < n)) continue;
    double term = lchoose(static_cast<int>(i), n);
    if (i > 0) term += static_cast<double>(i) * logP;
    if (i < n) term += static_cast<double>(n - i) * logQ;
    sum = AddLog(sum, term);
  }
  return sum;
}

double MathUtils::ComputeLogMultipleHyperGeometricProbability(const Vector_tmpl<int>& counts,
                                                              const Vector_tmpl<int>& totals, int n, int N,
                                                              double logDenominator) {
  double drawn = lchooseMulti(counts, n);
  double rest = LChooseMultiOf(counts.GetSize(), N - n, [&](int i) { return totals[i] - counts[i]; });
  if (drawn <= kMissingReal || rest <= kMissingReal) return kMissingReal;
  return drawn + rest - logDenominator;
}

double MathUtils::SumMultipleHyperTail(Vector_tmpl<int>& counts, int category, long long sumBefore, int n,
                                       const Vector_tmpl<int>& totals, int N, double logDenominator, double sum) {
  int entry = counts[category];
  long long running = sumBefore + entry;
  while (running <= n && counts[category] <= totals[category]) {
    if (category == counts.GetSize() - 1)
      sum = AddLog(sum, ComputeLogMultipleHyperGeometricProbability(counts, totals, n, N, logDenominator));
    else
      sum = SumMultipleHyperTail(counts, category + 1, running, n, totals, N, logDenominator, sum);
    counts[category]++;
    running++;
  }
  counts[category] = entry;
  return sum;
}

double MathUtils::ComputeLogMultipleHyperPValue(Vector_tmpl<int>& counts, int n, const Vector_tmpl<int>& totals,
                                                int N) {
  if (counts.GetSize() == 0) return kMissingReal;
  return SumMultipleHyperTail(counts, 0, 0, n, totals, N, lchooseMulti(totals, N), kMissingReal);
}

// --- tests of two samples

double MathUtils::ComputeKolmogorovSmirnovPValue(const Vector_tmpl<double>& a, const Vector_tmpl<double>& b, double& d,
                                                 int& direction, int& indexA, int& indexB) {
  int n1 = a.GetSize(), n2 = b.GetSize();
  double f1 = 0.0, f2 = 0.0;
  int i = 0, j = 0;
  d = 0.0;
  direction = 0;
  indexA = indexB = 0;
  while (i < n1 && j < n2) {
    double x = a[i], y = b[j];
    if (y >= x) f1 = static_cast<double>(i++) / n1;
    if (x >= y) f2 = static_cast<double>(j++) / n2;
    double gap = std::fabs(f1 - f2);
    if (gap > d) {
      d = gap;
      direction = f2 > f1;
      indexA = i;
      indexB = j;
    }
  }
  if (indexA > n1 - 1) indexA = n1 - 1;
  if (indexB > n2 - 1) indexB = n2 - 1;
  double ne = static_cast<double>(n1) * n2 / (static_cast<double>(n1) + n2);
  double root = std::sqrt(ne);
  return KolmogorovSmirnovTail((root + 0.12 + 0.11 / root) * d);
}

// The alternating series of the Kolmogorov distribution. Its terms shrink slowly for small lambda
// and never at lambda = 0 (or not a number, from an empty sample); the cap is reached only below
// lambda of about 4e-5, where the tail is 1 to double precision, and that is what it returns.
double MathUtils::KolmogorovSmirnovTail(double lambda) {
  const int kMaxTerms = 100000;
  double a2 = -2.0 * lambda * lambda;
  double fac = 2.0, sum = 0.0, termBefore = 0.0;
  for (int j = 1; j <= kMaxTerms; j++) {
    double term = fac * std::exp(a2 * j * j);
    sum += term;
    if (std::fabs(term) <= 2.220446049250313e-15 * termBefore || std::fabs(term) <= 2.220446049250313e-16 * sum)
      return sum;
    fac = -fac;
    termBefore = std::fabs(term);
  }
  return 1.0;
}

double MathUtils::ComputeTTestPValue(const Vector_tmpl<double>& x, const Vector_tmpl<double>& y, double& t,
                                     double& meanX, double& varX, double& meanY, double& varY) {
  int n1, n2;
  SampleMoments(x, n1, meanX, varX);
  SampleMoments(y, n2, meanY, varY);
  double spread = std::sqrt(varX / n1 + varY / n2);
  // Two constant samples with one mean show no difference at all rather than 0 / 0.
  t = spread == 0.0 && meanX == meanY ? 0.0 : -std::fabs(meanX - meanY) / spread;
  return TDistributionCDF(t, n1 + n2 - 2);
}

double MathUtils::TDistributionCDF(double t, double df) {
  double p = 0.5 * BetaCDF(df / (df + t * t), df / 2, 0.5);
  return t <= 0 ? p : 1 - p;
}

double MathUtils::BetaCDF(double x, double a, double b) {
  double front =
      x == 0.0 || x == 1.0
          ? 0.0
          : std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) + a * std::log(x) + b * std::log(1.0 - x));
  if (x < (a + 1.0) / (a + b + 2.0)) return front * BetaCF(x, a, b) / a;
  return 1.0 - front * BetaCF(1.0 - x, b, a) / b;
}

// The continued fraction of the incomplete beta by the modified Lentz recurrence; after 100 rounds
// the value reached stands.
double MathUtils::BetaCF(double x, double a, double b) {
  const int kMaxRounds = 100;
  const double kEps = 3.0e-7;
  const double kFpMin = 1.0e-30;
  double qab = a + b, qap = a + 1.0, qam = a - 1.0;
  double c = 1.0;
  double d = 1.0 - qab * x / qap;
  if (std::fabs(d) < kFpMin) d = kFpMin;
  d = 1.0 / d;
  double h = d;
  for (int m = 1; m <= kMaxRounds; m++) {
    int m2 = 2 * m;
    double aa = m * (b - m) * x / ((qam + m2) * (a + m2));
    d = 1.0 + aa * d;
    if (std::fabs(d) < kFpMin) d = kFpMin;
    c = 1.0 + aa / c;
    if (std::fabs(c) < kFpMin) c = kFpMin;
    d = 1.0 / d;
    h *= d * c;
    aa = -(a + m) * (qab + m) * x / ((a + m2) * (qap + m2));
    d = 1.0 + aa * d;
    if (std::fabs(d) < kFpMin) d = kFpMin;
    c = 1.0 + aa / c;
    if (std::fabs(c) < kFpMin) c = kFpMin;
    d = 1.0 / d;
    double del = d * c;
    h *= del;
    if (std::fabs(del - 1.0) < kEps) break;
  }
  return h;
}

// --- gamma and chi-square

// The series runs until its term underflows to 0. Far above a (x beyond about 700) the terms
// overflow first; the integral is then complete to double precision and the result is the gamma
// function that the series would reach. For a huge a the terms shrink too slowly ever to reach 0,
// and the cap ends the sum.
double MathUtils::IncompleteGamma(double a, double x) {
  const long kMaxTerms = 10000000;
  double sum = 0.0, term = 1.0 / a;
  for (long j = 1; term != 0.0 && j <= kMaxTerms; j++) {
    sum += term;
    if (!std::isfinite(sum)) break;
    term *= x / (a + j);
  }
  if (!std::isfinite(sum) && x > 0.0) return std::tgamma(a);
  return std::exp(-x) * std::pow(x, a) * sum;
}

double MathUtils::GammaIntegral(double x) {
  static const double kCoefficients[6] = {76.18009172947146,  -86.50532032941678,   24.01409824083091,
                                          -1.231739572450155, 0.001208650973866179, -5.395239384953e-6};
  double y = x;
  double series = 1.000000000190015;
  for (double c : kCoefficients) series += c / ++y;
  return 2.507109889893141 * series / x * std::pow(x + 5.5, x + 0.5) * std::exp(-(x + 5.5));
}

double MathUtils::GetChiSquareComplementaryCDFPVal(double df, double x) {
  return 1 - IncompleteGamma(df / 2, x / 2) / GammaIntegral(df / 2);
}

// --- the normal distribution

double MathUtils::GetNormalProb(double x, double mean, double variance) {
  return std::exp(-(x - mean) * (x - mean) / (2 * variance)) / std::sqrt(2 * std::numbers::pi * variance);
}

double MathUtils::GetLogNormalProb(double x, double mean, double variance) {
  return GetLogNormalProb(1, x, x * x, mean, variance);
}

double MathUtils::GetLogNormalProb(double n, double sum, double sumSquares, double mean, double variance) {
  return ((2 * sum - n * mean) * mean - sumSquares) / (2 * variance) -
         (n / 2) * std::log(2 * std::numbers::pi * variance);
}

// A rational approximation with relative error below 1.15e-9 over the whole range, in three pieces.
double MathUtils::ComputeNormalInverse(double p) {
  static const long double a[6] = {-3.969683028665376e+01L, 2.209460984245205e+02L,  -2.759285104469687e+02L,
                                   1.383577518672690e+02L,  -3.066479806614716e+01L, 2.506628277459239e+00L};
  static const long double b[5] = {-5.447609879822406e+01L, 1.615858368580409e+02L, -1.556989798598866e+02L,
                                   6.680131188771972e+01L, -1.328068155288572e+01L};
  static const long double c[6] = {-7.784894002430293e-03L, -3.223964580411365e-01L, -2.400758277161838e+00L,
                                   -2.549732539343734e+00L, 4.374664141464968e+00L,  2.938163982698783e+00L};
  static const long double d[4] = {7.784695709041462e-03L, 3.224671290700398e-01L, 2.445134137142996e+00L,
                                   3.754408661907416e+00L};
  const long double kLow = 0.02425L, kHigh = 0.97575L;
  if (p <= 0 || p >= 1) return 0;
  long double lp = p;
  if (lp < kLow) {
    long double q = std::sqrt(-2 * std::log(lp));
    return static_cast<double>((((((c[0] * q + c[1]) * q + c[2]) * q + c[3]) * q + c[4]) * q + c[5]) /
                               ((((d[0] * q + d[1]) * q + d[2]) * q + d[3]) * q + 1));
  }
  if (lp > kHigh) {
    long double q = std::sqrt(-2 * std::log(1 - lp));
    return static_cast<double>(-(((((c[0] * q + c[1]) * q + c[2]) * q + c[3]) * q + c[4]) * q + c[5]) /
                               ((((d[0] * q + d[1]) * q + d[2]) * q + d[3]) * q + 1));
  }
  long double q = lp - 0.5L;
  long double r = q * q;
  return static_cast<double>((((((a[0] * r + a[1]) * r + a[2]) * r + a[3]) * r + a[4]) * r + a[5]) * q /
                             (((((b[0] * r + b[1]) * r + b[2]) * r + b[3]) * r + b[4]) * r + 1));
}

double MathUtils::ComputeNormalStd2Pvalue(double z) {
  double lo = 0.0, hi = 1.0, p = 0.5;
  while (hi - lo > 1e-13) {
    if (z > ComputeNormalInverse(p))
      lo = p;
    else
      hi = p;
    p = (lo + hi) / 2;
  }
  return 1 - p;
}

double MathUtils::ComputeNormalCumulativeThreshold(double p, double mean, double variance) {
  int lo = 0, hi = 409;
  while (hi - 1 > lo) {
    int mid = (lo + hi) / 2;
    if (0.5 - normal_curve_areas[mid] > p)
      lo = mid;
    else
      hi = mid;
  }
  return (lo / 100.0) * std::sqrt(variance) + mean;
}

// --- multiple hypothesis correction

double MathUtils::ComputeCorrectedPvalue(Vector_tmpl<DoubleComparator_cl*>& holders,
                                         MultipleHypothesisCorrection_cl correction, double alpha, int numTests) {
  switch (correction) {
    case MHC_NONE:
      return alpha;
    case MHC_BONFERRONI:
      return numTests < 1 ? alpha : alpha / numTests;
    case MHC_FDR:
      // Benjamini-Hochberg: the largest p-value that passes its rank's share of alpha.
      holders.Sort();
      for (int i = holders.GetSize() - 1; i >= 0; i--) {
        double p = holders[i]->iValue;
        if (alpha >= p * numTests / (i + 1)) return p;
      }
      return 0.0;
  }
  std::cerr << "Uknown MultipleHypothesisCorrection_cl enum value" << std::endl;
  abort();
}

// --- regression and runs

void MathUtils::LinearRegression(const double* x, const double* y, int n, double& r, double& slope, double& intercept) {
  double sx = 0.0, sy = 0.0, sxx = 0.0, syy = 0.0, sxy = 0.0;
  for (int i = 0; i < n; i++) {
    sx += x[i];
    sy += y[i];
    sxx += x[i] * x[i];
    syy += y[i] * y[i];
    sxy += x[i] * y[i];
  }
  double ssxx = sxx - sx * sx / n;
  double ssyy = syy - sy * sy / n;
  double ssxy = sxy - sx * sy / n;
  slope = ssxy / ssxx;
  r = ssxy / std::sqrt(ssyy * ssxx);
  intercept = sy / n - slope * (sx / n);
}

double MathUtils::LinearInterpolation(double x0, double x1, double y0, double y1, double x) {
  return ((x - x0) * y1 + (x1 - x) * y0) / (x1 - x0);
}

Vector_tmpl<double>* MathUtils::GetRunningVector(double from, double to, int count) {
  Vector_tmpl<double>* run = new Vector_tmpl<double>(count > 0 ? count : 1);
  for (int i = 0; i < count; i++) run->AddLast(count == 1 ? from : from + i * (to - from) / (count - 1));
  return run;
}

Vector_tmpl<int>* MathUtils::GetRunningIntVector(int from, int step, int to) {
  if (step == 0) {
    std::cerr << "MathUtils::GetRunningIntVector step must not be 0" << std::endl;
    abort();
  }
  Vector_tmpl<int>* run = new Vector_tmpl<int>();
  for (long long v = from; step > 0 ? v <= to : v >= to; v += step) run->AddLast(static_cast<int>(v));
  return run;
}

double MathUtils::GetVecAverage(const Vector_tmpl<double>* values) {
  if (values->GetSize() == 0) return 0.0;
  double sum = 0.0;
  for (int i = 0; i < values->GetSize(); i++) sum += (*values)[i];
  return sum / values->GetSize();
}

const double MathUtils::normal_curve_areas[410] = {
    0.00000, 0.00399, 0.00798, 0.01197, 0.01595, 0.01994, 0.02392, 0.02790, 0.03188, 0.03586, 0.03983, 0.04380, 0.04776,
    0.05172, 0.05567, 0.05962, 0.06356, 0.06749, 0.07142, 0.07535, 0.07926, 0.08317, 0.08706, 0.09095, 0.09483, 0.09871,
    0.10257, 0.10642, 0.11026, 0.11409, 0.11791, 0.12172, 0.12552, 0.12930, 0.13307, 0.13683, 0.14058, 0.14431, 0.14803,
    0.15173, 0.15542, 0.15910, 0.16276, 0.16640, 0.17003, 0.17364, 0.17724, 0.18082, 0.18439, 0.18793, 0.19146, 0.19497,
    0.19847, 0.20194, 0.20540, 0.20884, 0.21226, 0.21566, 0.21904, 0.22240, 0.22575, 0.22907, 0.23237, 0.23565, 0.23891,
    0.24215, 0.24537, 0.24857, 0.25175, 0.25490, 0.25804, 0.26115, 0.26424, 0.26730, 0.27035, 0.27337, 0.27637, 0.27935,
    0.28230, 0.28524, 0.28814, 0.29103, 0.29389, 0.29673, 0.29955, 0.30234, 0.30511, 0.30785, 0.31057, 0.31327, 0.31594,
    0.31859, 0.32121, 0.32381, 0.32639, 0.32894, 0.33147, 0.33398, 0.33646, 0.33891, 0.34134, 0.34375, 0.34614, 0.34849,
    0.35083, 0.35314, 0.35543, 0.35769, 0.35993, 0.36214, 0.36433, 0.36650, 0.36864, 0.37076, 0.37286, 0.37493, 0.37698,
    0.37900, 0.38100, 0.38298, 0.38493, 0.38686, 0.38877, 0.39065, 0.39251, 0.39435, 0.39617, 0.39796, 0.39973, 0.40147,
    0.40320, 0.40490, 0.40658, 0.40824, 0.40988, 0.41149, 0.41309, 0.41466, 0.41621, 0.41774, 0.41924, 0.42073, 0.42220,
    0.42364, 0.42507, 0.42647, 0.42785, 0.42922, 0.43056, 0.43189, 0.43319, 0.43448, 0.43574, 0.43699, 0.43822, 0.43943,
    0.44062, 0.44179, 0.44295, 0.44408, 0.44520, 0.44630, 0.44738, 0.44845, 0.44950, 0.45053, 0.45154, 0.45254, 0.45352,
    0.45449, 0.45543, 0.45637, 0.45728, 0.45818, 0.45907, 0.45994, 0.46080, 0.46164, 0.46246, 0.46327, 0.46407, 0.46485,
    0.46562, 0.46638, 0.46712, 0.46784, 0.46856, 0.46926, 0.46995, 0.47062, 0.47128, 0.47193, 0.47257, 0.47320, 0.47381,
    0.47441, 0.47500, 0.47558, 0.47615, 0.47670, 0.47725, 0.47778, 0.47831, 0.47882, 0.47932, 0.47982, 0.48030, 0.48077,
    0.48124, 0.48169, 0.48214, 0.48257, 0.48300, 0.48341, 0.48382, 0.48422, 0.48461, 0.48500, 0.48537, 0.48574, 0.48610,
    0.48645, 0.48679, 0.48713, 0.48745, 0.48778, 0.48809, 0.48840, 0.48870, 0.48899, 0.48928, 0.48956, 0.48983, 0.49010,
    0.49036, 0.49061, 0.49086, 0.49111, 0.49134, 0.49158, 0.49180, 0.49202, 0.49224, 0.49245, 0.49266, 0.49286, 0.49305,
    0.49324, 0.49343, 0.49361, 0.49379, 0.49396, 0.49413, 0.49430, 0.49446, 0.49461, 0.49477, 0.49492, 0.49506, 0.49520,
    0.49534, 0.49547, 0.49560, 0.49573, 0.49585, 0.49598, 0.49609, 0.49621, 0.49632, 0.49643, 0.49653, 0.49664, 0.49674,
    0.49683, 0.49693, 0.49702, 0.49711, 0.49720, 0.49728, 0.49736, 0.49744, 0.49752, 0.49760, 0.49767, 0.49774, 0.49781,
    0.49788, 0.49795, 0.49801, 0.49807, 0.49813, 0.49819, 0.49825, 0.49831, 0.49836, 0.49841, 0.49846, 0.49851, 0.49856,
    0.49861, 0.49865, 0.49869, 0.49874, 0.49878, 0.49882, 0.49886, 0.49889, 0.49893, 0.49896, 0.49900, 0.49903, 0.49906,
    0.49910, 0.49913, 0.49916, 0.49918, 0.49921, 0.49924, 0.49926, 0.49929, 0.49931, 0.49934, 0.49936, 0.49938, 0.49940,
    0.49942, 0.49944, 0.49946, 0.49948, 0.49950, 0.49952, 0.49953, 0.49955, 0.49957, 0.49958, 0.49960, 0.49961, 0.49962,
    0.49964, 0.49965, 0.49966, 0.49968, 0.49969, 0.49970, 0.49971, 0.49972, 0.49973, 0.49974, 0.49975, 0.49976, 0.49977,
    0.49978, 0.49978, 0.49979, 0.49980, 0.49981, 0.49981, 0.49982, 0.49983, 0.49983, 0.49984, 0.49985, 0.49985, 0.49986,
    0.49986, 0.49987, 0.49987, 0.49988, 0.49988, 0.49989, 0.49989, 0.49990, 0.49990, 0.49990, 0.49991, 0.49991, 0.49992,
    0.49992, 0.49992, 0.49992, 0.49993, 0.49993, 0.49993, 0.49994, 0.49994, 0.49994, 0.49994, 0.49995, 0.49995, 0.49995,
    0.49995, 0.49995, 0.49996, 0.49996, 0.49996, 0.49996, 0.49996, 0.49996, 0.49997, 0.49997, 0.49997, 0.49997, 0.49997,
    0.49997, 0.49997, 0.49997, 0.49998, 0.49998, 0.49998, 0.49998,
};
