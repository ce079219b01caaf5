// Statistics of the system: log-space sums, combinatorial tails, tests of two samples, the normal law and corrections.
#ifndef VORN_EVAL_MATH_UTIL_H
#define VORN_EVAL_MATH_UTIL_H

#include <cmath>

#include "eval/numerical.h"
#include "pipeline/missing.h"
#include "pipeline/vector.h"

// How a p-value threshold is corrected for the number of tests made; read from MULTIPLE_HYPOTHESIS_CORRECTION_STR
// through EnumConverter_tmpl.
enum MultipleHypothesisCorrection_cl { MHC_NONE = 0, MHC_FDR = 1, MHC_BONFERRONI = 2 };
inline constexpr int MULTIPLE_HYPOTHESIS_CORRECTION_NUM = 3;
extern const char* MULTIPLE_HYPOTHESIS_CORRECTION_STR[MULTIPLE_HYPOTHESIS_CORRECTION_NUM];

// A p-value (or any number) with what it belongs to; a vector of pointers to these sorts ascending by value.
class DoubleComparator_cl {
 public:
  explicit DoubleComparator_cl(double value = 0.0, void* object = nullptr) : iValue(value), iObject(object) {}
  bool operator<(const DoubleComparator_cl& other) const { return iValue < other.iValue; }

  double iValue;
  void* iObject;
};

class MathUtils : public NumericalRoutines_cl {
 public:
  // The missing real is the log of zero in every log-space operation.
  static constexpr double kMissingReal = ::kMissingReal;

  // --- log-space arithmetic; anything at or below the missing real counts as a zero probability
  static double AddLog(double a, double b) {
    if (a <= kMissingReal) return b;
    if (b <= kMissingReal) return a;
    double m = a > b ? a : b;
    double d = (a > b ? b : a) - m;
    // Below this exp(d) is under half an ulp of 1, so the sum below would be m exactly.
    if (d < -37.0) return m + 0.0;
    return m + std::log(1.0 + std::exp(d));
  }
  static double SubtractLog(double a, double b);
  // log x; 0 gives the missing real, a negative x is reported and gives the missing real.
  static double Log(double x);
  static double AddLogsVector(const Vector_tmpl<double>& values, const Vector_tmpl<double>* second = nullptr);
  // log of the sum of w[i] exp(values[i] + second[i]); entries after the first count only with w[i] > 0.
  static double AddLogsProductOfLogsVecAndNonLogsVec(const Vector_tmpl<double>& weights,
                                                     const Vector_tmpl<double>& values,
                                                     const Vector_tmpl<double>* second = nullptr);
  // Entries more than 50 below the largest are left out of the sum.
  static double LogOfSumOfExps(const double* values, int length);
  static double LogOfSumOfExps(const Vector_tmpl<double>& values);
  static void Normalize(Vector_tmpl<double>& values);
  static void NormalizeLog(Vector_tmpl<double>& values);

  // --- combinatorial tails
  // log of n choose k (k first); the missing real where the coefficient is 0.
  static double lchoose(int k, int n) {
    if (k < 0 || k > n) return kMissingReal;
    return LogFactorial(n) - LogFactorial(k) - LogFactorial(static_cast<long long>(n) - k);
  }
  // log of n! / (c[0]! ... c[m-1]! (n - sum c)!).
  static double lchooseMulti(const Vector_tmpl<int>& counts, int n);
  // log P(X >= k) for X hypergeometric: n draws from N holding K successes. The sum stops at the first
  // term below 1% of what it has gathered.
  static double ComputeLogHyperPValue(int k, int n, int K, int N);
  // log P(X >= k) for X binomial with n trials of success probability p.
  static double ComputeLogBinomialPValue(double p, int n, int k);
  static double ComputeLogMultipleHyperGeometricProbability(const Vector_tmpl<int>& counts,
                                                            const Vector_tmpl<int>& totals, int n, int N,
                                                            double logDenominator);
  // log of the multivariate hypergeometric mass of all count vectors at or above counts in every
  // category; counts is used as work space and left as it was.
  static double ComputeLogMultipleHyperPValue(Vector_tmpl<int>& counts, int n, const Vector_tmpl<int>& totals, int N);

  // --- tests of two samples
  // Both samples sorted ascending. d is the largest gap between the empirical distributions,
  // direction 1 when b's lies above a's there, and the indices where the gap was found.
  static double ComputeKolmogorovSmirnovPValue(const Vector_tmpl<double>& a, const Vector_tmpl<double>& b, double& d,
                                               int& direction, int& indexA, int& indexB);
  // One-sided p-value of the difference of the means; missing reals are left out. t is never positive.
  static double ComputeTTestPValue(const Vector_tmpl<double>& x, const Vector_tmpl<double>& y, double& t, double& meanX,
                                   double& varX, double& meanY, double& varY);
  static double TDistributionCDF(double t, double df);
  static double BetaCDF(double x, double a, double b);
  static double BetaCF(double x, double a, double b);

  // --- gamma and chi-square
  static double IncompleteGamma(double a, double x);
  static double GammaIntegral(double x);
  static double GetChiSquareComplementaryCDFPVal(double df, double x);

  // --- the normal distribution
  static double GetNormalProb(double x, double mean, double variance);
  static double GetLogNormalProb(double x, double mean, double variance);
  static double GetLogNormalProb(double n, double sum, double sumSquares, double mean, double variance);
  // z with Phi(z) = p; 0 outside (0, 1).
  static double ComputeNormalInverse(double p);
  // The upper tail of the standard normal at z.
  static double ComputeNormalStd2Pvalue(double z);
  // A value whose upper tail is about p, to two decimals of z.
  static double ComputeNormalCumulativeThreshold(double p, double mean, double variance);

  // The p-value at or below which a result is significant after correcting alpha for numTests tests.
  // FDR sorts the holders.
  static double ComputeCorrectedPvalue(Vector_tmpl<DoubleComparator_cl*>& holders,
                                       MultipleHypothesisCorrection_cl correction, double alpha, int numTests);

  // --- regression and runs
  static void LinearRegression(const double* x, const double* y, int n, double& r, double& slope, double& intercept);
  static double LinearInterpolation(double x0, double x1, double y0, double y1, double x);
  // count values from from to to, evenly spaced.
  static Vector_tmpl<double>* GetRunningVector(double from, double to, int count);
  // from, from + step, ... while not past to; step must not be 0.
  static Vector_tmpl<int>* GetRunningIntVector(int from, int step, int to);
  static double GetVecAverage(const Vector_tmpl<double>* values);

  // Area under the standard normal density between 0 and index / 100, to five places.
  static const double normal_curve_areas[410];

 private:
  // lgamma(m + 1), from a table filled by that same call, so a look-up equals the direct value bit for bit.
  static double LogFactorial(long long m) {
    if (m >= 0 && m < iLogFactorialSize) return iLogFactorials[m];
    return LogFactorialBeyondTable(m);
  }
  static double LogFactorialBeyondTable(long long m);
  template <class CountAt>
  static double LChooseMultiOf(int size, int n, CountAt countAt);
  static double SumMultipleHyperTail(Vector_tmpl<int>& counts, int category, long long sumBefore, int n,
                                     const Vector_tmpl<int>& totals, int N, double logDenominator, double sum);
  static double KolmogorovSmirnovTail(double lambda);

  static const double* iLogFactorials;
  static long long iLogFactorialSize;
};

#endif
