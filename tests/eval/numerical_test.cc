// Numerical routines: residuals of the solvers, quadrature against GSL, optimisers on functions with known minima.
#include "eval/numerical.h"

#include <gsl/gsl_integration.h>
#include <gsl/gsl_sf_erf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <vector>

#include "eval/math_util.h"

namespace {

using Routines = NumericalRoutines_cl;

double** Matrix(const std::vector<std::vector<double>>& rows) {
  int n = static_cast<int>(rows.size()), m = static_cast<int>(rows[0].size());
  double** a = Routines::matrix(0, n - 1, 0, m - 1);
  for (int i = 0; i < n; i++)
    for (int j = 0; j < m; j++) a[i][j] = rows[i][j];
  return a;
}

const std::vector<std::vector<double>> kSpd = {{4, 1, 0.5}, {1, 3, -0.2}, {0.5, -0.2, 2}};

// f(x) = sum c_i (x_i - m_i)^2 plus a coupling term, or the Rosenbrock valley; counts its calls.
class Quadratic_cl : public MathUtilsFunc_cl {
 public:
  Quadratic_cl(std::vector<double> centre, double coupling) : iCentre(std::move(centre)), iCoupling(coupling) {}
  double func(double* x) override {
    double f = iCoupling * x[0] * x[1];
    for (size_t i = 0; i < iCentre.size(); i++) f += (i + 1) * (x[i] - iCentre[i]) * (x[i] - iCentre[i]);
    return f;
  }
  void deriv(double* x, double* g) override {
    for (size_t i = 0; i < iCentre.size(); i++) g[i] = 2 * (i + 1) * (x[i] - iCentre[i]);
    g[0] += iCoupling * x[1];
    g[1] += iCoupling * x[0];
  }

 private:
  std::vector<double> iCentre;
  double iCoupling;
};

class Rosenbrock_cl : public MathUtilsFunc_cl {
 public:
  double func(double* x) override {
    return (1 - x[0]) * (1 - x[0]) + 100 * (x[1] - x[0] * x[0]) * (x[1] - x[0] * x[0]);
  }
  void deriv(double* x, double* g) override {
    g[0] = -2 * (1 - x[0]) - 400 * x[0] * (x[1] - x[0] * x[0]);
    g[1] = 200 * (x[1] - x[0] * x[0]);
  }
};

// (x0 - 3)^2 + (x1 - x0)^2: in the box x0 <= 1 the minimum moves to (1, 1), with x0 on its bound.
class Coupled_cl : public MathUtilsFunc_cl {
 public:
  double func(double* x) override { return (x[0] - 3) * (x[0] - 3) + (x[1] - x[0]) * (x[1] - x[0]); }
  void deriv(double* x, double* g) override {
    g[0] = 2 * (x[0] - 3) - 2 * (x[1] - x[0]);
    g[1] = 2 * (x[1] - x[0]);
  }
};

// An integrand of one variable.
class Integrand_cl : public MathUtilsFunc_cl {
 public:
  explicit Integrand_cl(double (*f)(double)) : iF(f) {}
  double func(double* x) override { return iF(*x); }
  void deriv(double*, double* g) override { g[0] = 0.0; }

 private:
  double (*iF)(double);
};

// A bowl whose reported gradient is off by a constant, so that it never vanishes; with a negative
// tolerance, which no change of value can meet, the optimisers run out of rounds.
class BiasedBowl_cl : public Quadratic_cl {
 public:
  BiasedBowl_cl() : Quadratic_cl({0.3, 0.6}, 0) {}
  void deriv(double* x, double* g) override {
    Quadratic_cl::deriv(x, g);
    g[0] += 1e-3;
    g[1] -= 1e-3;
  }
};

double Parabola(double x) { return (x - 2) * (x - 2) + 1; }
double ParabolaSlope(double x) { return 2 * (x - 2); }

}  // namespace

TEST(RawArrays, InclusiveRangesOnEitherSideOfZero) {
  double* v = Routines::vector(-3, 2);
  for (long i = -3; i <= 2; i++) v[i] = static_cast<double>(i);
  EXPECT_EQ(v[-3] + v[2], -1.0);
  Routines::free_vector(v, -3, 2);
  int* iv = Routines::ivector(5, 9);
  iv[5] = 1;
  iv[9] = 2;
  EXPECT_EQ(iv[5] + iv[9], 3);
  Routines::free_ivector(iv, 5, 9);
  double** m = Routines::matrix(1, 3, -1, 2);
  for (int r = 1; r <= 3; r++)
    for (int c = -1; c <= 2; c++) m[r][c] = r * 10 + c;
  EXPECT_EQ(m[3][-1], 29.0);
  EXPECT_EQ(m[1][2], 12.0);
  Routines::free_matrix(m, 1, 3, -1, 2);
  Routines::free_matrix(Routines::matrix(0, -1, 0, -1), 0, -1, 0, -1);
}

TEST(RawArraysDeathTest, AllocationFailures) {
  EXPECT_DEATH(Routines::vector(0, 1L << 60), "^allocation failure in vector\\(\\)\n$");
  EXPECT_DEATH(Routines::vector(4, 1), "^allocation failure in vector\\(\\)\n$");
  EXPECT_DEATH(Routines::ivector(0, LONG_MAX), "^allocation failure in ivector\\(\\)\n$");
  EXPECT_DEATH(Routines::matrix(0, 1L << 61, 0, 1), "^allocation failure 1 in matrix\\(\\)\n$");
  EXPECT_DEATH(Routines::matrix(0, 3, 0, 1L << 60), "^allocation failure 2 in matrix\\(\\)\n$");
}

TEST(LinearAlgebra, GaussJordanInvertsAndSolves) {
  double** a = Matrix(kSpd);
  double** b = Matrix({{1, 0}, {2, 1}, {3, -1}});
  gaussj(a, 3, b, 2);
  for (int i = 0; i < 3; i++)
    for (int j = 0; j < 3; j++) {
      double product = 0;
      for (int k = 0; k < 3; k++) product += kSpd[i][k] * a[k][j];
      EXPECT_NEAR(product, i == j ? 1.0 : 0.0, 1e-14);
    }
  for (int i = 0; i < 3; i++) {
    double row = 0;
    for (int k = 0; k < 3; k++) row += kSpd[i][k] * b[k][0];
    EXPECT_NEAR(row, i + 1.0, 1e-14);
  }
  Routines::free_matrix(a, 0, 2, 0, 2);
  Routines::free_matrix(b, 0, 2, 0, 1);
  EXPECT_DEATH(gaussj(Matrix({{1, 2}, {2, 4}}), 2, nullptr, 0), "^gaussj: Singular Matrix-2 \\.\\.\\.\n$");
  EXPECT_DEATH(gaussj(Matrix({{NAN, NAN}, {NAN, NAN}}), 2, nullptr, 0), "^gaussj: Singular Matrix-1 \\.\\.\\.\n$");
}

TEST(LinearAlgebra, LuAndCholeskySolve) {
  double** lu = Matrix({{0, 2, 1}, {1, 1, 1}, {3, 0, -2}});  // a zero first pivot needs the row swap
  int indx[3];
  double d;
  Routines::ludcmp(lu, 3, indx, &d);
  double b[] = {5, 4, 1};
  Routines::lubksb(lu, 3, indx, b);
  EXPECT_NEAR(b[0], 1, 1e-14);
  EXPECT_NEAR(b[1], 2, 1e-14);
  EXPECT_NEAR(b[2], 1, 1e-14);
  Routines::free_matrix(lu, 0, 2, 0, 2);

  double** c = Matrix(kSpd);
  double p[3], x[3], rhs[] = {1, -2, 0.5};
  choldc(c, 3, p);
  for (int i = 0; i < 3; i++)
    for (int j = 0; j <= i; j++) {
      double product = 0;
      for (int k = 0; k <= j; k++) product += (k == i ? p[i] : c[i][k]) * (k == j ? p[j] : c[j][k]);
      EXPECT_NEAR(product, kSpd[i][j], 1e-14);
    }
  cholsl(c, 3, p, rhs, x);
  for (int i = 0; i < 3; i++) EXPECT_NEAR(kSpd[i][0] * x[0] + kSpd[i][1] * x[1] + kSpd[i][2] * x[2], rhs[i], 1e-14);
  Routines::free_matrix(c, 0, 2, 0, 2);
  EXPECT_NEAR(Pythag(3e200, 4e200), 5e200, 1e186);
  EXPECT_EQ(Pythag(0, 0), 0.0);

  EXPECT_DEATH(Routines::ludcmp(Matrix({{1, 2}, {0, 0}}), 2, indx, &d), "^Singular matrix in routine ludcmp\n$");
  EXPECT_DEATH(choldc(Matrix({{1, 2}, {2, 1}}), 2, p), "^$");
}

TEST(LinearAlgebra, PseudoGaussKeepsDefaultsOfFreeUnknowns) {
  // x2 does not appear: its default stands, and the rest is solved.
  double** a = Matrix({{2, 1, 0}, {1, 3, 0}, {0, 0, 0}});
  double b[] = {3, 5, 0}, x[3], defaults[] = {-9, -9, 7};
  Routines::pseudogauss(a, 3, b, x, defaults);
  EXPECT_NEAR(x[0], 0.8, 1e-14);
  EXPECT_NEAR(x[1], 1.4, 1e-14);
  EXPECT_EQ(x[2], 7.0);
  Routines::free_matrix(a, 0, 2, 0, 2);
  double** bad = Matrix({{1, 1}, {1, 1}});
  double rhs[] = {1, 2};
  testing::internal::CaptureStdout();
  Routines::pseudogauss(bad, 2, rhs, x, defaults);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "no solution 1\n");
  EXPECT_EQ(x[0], -9.0);
  Routines::free_matrix(bad, 0, 1, 0, 1);
}

TEST(Quadrature, GaussHermiteAgainstGsl) {
  for (int n : {1, 2, 5, 20, 100}) {
    std::vector<double> x(n), w(n);
    gauher(x.data(), w.data(), n);
    gsl_integration_fixed_workspace* ref = gsl_integration_fixed_alloc(gsl_integration_fixed_hermite, n, 0, 1, 0, 0);
    std::vector<std::pair<double, double>> ours, theirs;
    for (int i = 0; i < n; i++) {
      ours.emplace_back(x[i], w[i]);
      theirs.emplace_back(gsl_integration_fixed_nodes(ref)[i], gsl_integration_fixed_weights(ref)[i]);
    }
    std::sort(ours.begin(), ours.end());
    std::sort(theirs.begin(), theirs.end());
    for (int i = 0; i < n; i++) {
      EXPECT_NEAR(ours[i].first, theirs[i].first, 1e-12 * (1 + std::fabs(theirs[i].first))) << n;
      EXPECT_NEAR(ours[i].second, theirs[i].second, 1e-10 * theirs[i].second + 1e-300) << n;
    }
    gsl_integration_fixed_free(ref);
  }
  std::vector<double> x(300), w(300);
  EXPECT_DEATH(gauher(x.data(), w.data(), 300), "^too many iterations in gauher\n$");
}

TEST(Quadrature, NodesForTheStandardNormalAreCached) {
  MathUtils cache;
  const double *w, *z, *w2, *z2;
  cache.ComputeQuadWeightsAndPoints(10, w, z);
  double mass = 0, second = 0, fourth = 0;
  for (int i = 0; i < 10; i++) {
    mass += w[i];
    second += w[i] * z[i] * z[i];
    fourth += w[i] * std::pow(z[i], 4);
  }
  EXPECT_NEAR(mass, 1.0, 1e-14);
  EXPECT_NEAR(second, 1.0, 1e-13);
  EXPECT_NEAR(fourth, 3.0, 1e-12);
  cache.ComputeQuadWeightsAndPoints(10, w2, z2);
  EXPECT_EQ(w2, w);
  cache.ComputeQuadWeightsAndPoints(4, w2, z2);
  EXPECT_NEAR(w2[0] + w2[1] + w2[2] + w2[3], 1.0, 1e-14);
}

TEST(Quadrature, RombergAndItsParts) {
  Integrand_cl square([](double x) { return x * x; });
  EXPECT_EQ(Routines::trapzd(&square, 0, 1, 1), 0.5);
  EXPECT_EQ(Routines::trapzd(&square, 0, 1, 2), 0.375);
  EXPECT_EQ(Routines::trapzd(&square, 0, 2, 1), 4.0);  // stage 1 forgets the earlier run
  Integrand_cl sine([](double x) { return std::sin(x); });
  EXPECT_NEAR(Routines::qromb(&sine, 0, M_PI), 2.0, 2e-6);
  Integrand_cl gauss([](double x) { return std::exp(-x * x); });
  EXPECT_NEAR(Routines::qromb(&gauss, 0, 3), std::sqrt(M_PI) / 2 * gsl_sf_erf(3.0), 1e-6);
  Integrand_cl pole([](double x) { return 1 / x; });
  testing::internal::CaptureStderr();
  EXPECT_EQ(Routines::qromb(&pole, 0, 1), 0.0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Too many steps in routine qromb\n");

  double xa[] = {0, 1, 2, 3}, ya[] = {1, 2, 5, 10}, y, dy;  // 1 + x^2
  Routines::polint(xa, ya, 4, 1.5, &y, &dy);
  EXPECT_NEAR(y, 3.25, 1e-14);
  double same[] = {0, 1, 1};
  EXPECT_DEATH(Routines::polint(same, ya, 3, 0.5, &y, &dy), "^Error in routine polint\n$");
}

TEST(LineSearch, BracketAndBrent) {
  double ax = 0, bx = 1, cx, fa, fb, fc;
  Routines::mnbrak(&ax, &bx, &cx, &fa, &fb, &fc, Parabola);
  EXPECT_LT(std::min(ax, cx), 2.0);
  EXPECT_GT(std::max(ax, cx), 2.0);
  EXPECT_LT(fb, fa);
  EXPECT_LT(fb, fc);
  double xmin;
  EXPECT_NEAR(Routines::dbrent(ax, bx, cx, Parabola, ParabolaSlope, 1e-8, &xmin), 1.0, 1e-12);
  EXPECT_NEAR(xmin, 2.0, 1e-6);
  // A negative tolerance can never be met: the best point found stands after the round limit.
  testing::internal::CaptureStderr();
  EXPECT_NEAR(Routines::dbrent(ax, bx, cx, Parabola, ParabolaSlope, -1.0, &xmin), 1.0, 1e-12);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Too many iterations in routine dbrent\n");
  EXPECT_NEAR(xmin, 2.0, 1e-6);

  Quadratic_cl bowl({1, 1}, 0);
  double p[] = {0, 0}, xi[] = {1, 1}, fret;
  Routines::safelinmin(p, xi, 2, &fret, &bowl);
  EXPECT_NEAR(p[0], 1, 1e-6);
  EXPECT_NEAR(p[1], 1, 1e-6);
  EXPECT_NEAR(xi[0], 1, 1e-6);  // the step taken
}

TEST(Optimisers, PolakRibiereFindsKnownMinima) {
  Quadratic_cl bowl({1, -2, 0.5, 3, -1}, 0.7);
  double p[] = {0, 0, 0, 0, 0}, value;
  int rounds;
  Routines::frprmn(p, 5, 1e-12, &rounds, &value, &bowl);
  // The coupling 0.7 x0 x1 moves the first two coordinates: 2 (x0 - 1) + 0.7 x1 = 0, 4 (x1 + 2) + 0.7 x0 = 0.
  double x1 = -8.7 / 3.755;
  double x0 = 1 - 0.35 * x1;
  EXPECT_NEAR(p[0], x0, 1e-5);
  EXPECT_NEAR(p[1], x1, 1e-5);
  EXPECT_NEAR(p[3], 3, 1e-5);
  EXPECT_LT(rounds, 60);

  Rosenbrock_cl valley;
  double q[] = {-1.2, 1};
  Routines::frprmn(q, 2, 1e-14, &rounds, &value, &valley);
  EXPECT_NEAR(q[0], 1, 1e-3);
  EXPECT_NEAR(q[1], 1, 2e-3);
  EXPECT_LT(value, 1e-6);

  BiasedBowl_cl biased;
  double r[] = {0, 0};
  testing::internal::CaptureStderr();
  Routines::frprmn(r, 2, -1.0, &rounds, &value, &biased);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Too many iterations in frprmn\n");
  EXPECT_EQ(rounds, 500);
  EXPECT_NEAR(r[0], 0.3, 1e-2);
}

TEST(Optimisers, BoxConstrainedGradientsStopAtActiveBounds) {
  Coupled_cl coupled;
  double p[] = {0.2, 4}, upper[] = {1, 5}, lower[] = {0, 0}, value;
  int rounds;
  Routines::ConjugGradConstrained(p, upper, lower, 2, 1e-12, &rounds, &value, &coupled);
  EXPECT_EQ(p[0], 1.0);  // set onto the wall exactly
  EXPECT_NEAR(p[1], 1.0, 1e-5);
  EXPECT_NEAR(value, 4.0, 1e-9);

  Quadratic_cl bowl({2, -1, 0.5}, 0);  // two of three coordinates end on bounds
  double b[] = {0.5, 0.5, 0.5}, up[] = {1, 1, 1}, low[] = {0, 0, 0};
  Routines::ConjugGradConstrained(b, up, low, 3, 1e-12, &rounds, &value, &bowl);
  EXPECT_EQ(b[0], 1.0);
  EXPECT_EQ(b[1], 0.0);
  EXPECT_NEAR(b[2], 0.5, 1e-6);

  Rosenbrock_cl valley;  // the free minimum (1, 1) lies outside: x0 stops at 0.5, x1 follows to 0.25
  double v[] = {-1.2, 0.3}, vu[] = {0.5, 0.5}, vl[] = {-2, -2};
  Routines::ConjugGradConstrained(v, vu, vl, 2, 1e-14, &rounds, &value, &valley);
  EXPECT_EQ(v[0], 0.5);
  EXPECT_NEAR(v[1], 0.25, 1e-4);

  BiasedBowl_cl biased;
  double u[] = {0, 0}, bu[] = {1, 1}, bl[] = {-1, -1};
  testing::internal::CaptureStderr();
  Routines::ConjugGradConstrained(u, bu, bl, 2, -1.0, &rounds, &value, &biased);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Too many iterations in ConjugGradConstrained\n");
  EXPECT_EQ(rounds, 500);
}
