// Small numerical routines: raw arrays, elimination, decompositions, quadrature and line-search optimisers.
#include "eval/numerical.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <utility>

namespace {

void Fatal(const char* message) {
  std::cerr << message << std::endl;
  abort();
}

double Sign(double a, double b) { return b >= 0.0 ? std::fabs(a) : -std::fabs(a); }

// The block behind an inclusive range starts at element min(lo, 0), so that the returned pointer,
// offset by the range's low end, always points inside the block.
long BlockBase(long lo) { return lo < 0 ? lo : 0; }

template <class T>
T* AllocateRange(long lo, long hi, const char* message) {
  __int128 count = static_cast<__int128>(hi) - BlockBase(lo) + 1;
  if (static_cast<__int128>(hi) < static_cast<__int128>(lo) - 1 ||
      count > static_cast<__int128>(PTRDIFF_MAX / sizeof(T)))
    Fatal(message);
  if (count < 1) count = 1;
  T* block = static_cast<T*>(malloc(static_cast<size_t>(count) * sizeof(T)));
  if (!block) Fatal(message);
  return block - BlockBase(lo);
}

}  // namespace

int NumericalRoutines_cl::iLineDim = 0;
double* NumericalRoutines_cl::iLinePoint = nullptr;
double* NumericalRoutines_cl::iLineDirection = nullptr;
MathUtilsFunc_cl* NumericalRoutines_cl::iLineFunc = nullptr;
double* NumericalRoutines_cl::iLineScratchPoint = nullptr;
double* NumericalRoutines_cl::iLineScratchGradient = nullptr;

NumericalRoutines_cl::~NumericalRoutines_cl() {
  if (iQuadNodes < 0) return;
  free_vector(iQuadWeights, 0, iQuadNodes - 1);
  free_vector(iQuadPoints, 0, iQuadNodes - 1);
}

// --- raw arrays

double* NumericalRoutines_cl::vector(long nl, long nh) {
  return AllocateRange<double>(nl, nh, "allocation failure in vector()");
}

int* NumericalRoutines_cl::ivector(long nl, long nh) {
  return AllocateRange<int>(nl, nh, "allocation failure in ivector()");
}

// One block holds all rows, so a matrix is two allocations whatever its size.
double** NumericalRoutines_cl::matrix(long nrl, long nrh, long ncl, long nch) {
  if (static_cast<__int128>(nrh) < static_cast<__int128>(nrl) - 1) Fatal("allocation failure 1 in matrix()");
  double** m = AllocateRange<double*>(nrl, nrh < nrl ? nrl : nrh, "allocation failure 1 in matrix()");
  long rows = nrh - nrl + 1;
  __int128 cols = static_cast<__int128>(nch) - BlockBase(ncl) + 1;
  if (static_cast<__int128>(nch) < static_cast<__int128>(ncl) - 1 ||
      (rows > 0 && cols > static_cast<__int128>(PTRDIFF_MAX / sizeof(double)) / rows))
    Fatal("allocation failure 2 in matrix()");
  long width = static_cast<long>(cols);
  double* block = AllocateRange<double>(0, rows * width - 1, "allocation failure 2 in matrix()");
  m[nrl] = block - BlockBase(ncl);
  for (long r = nrl + 1; r <= nrh; r++) m[r] = m[r - 1] + width;
  return m;
}

void NumericalRoutines_cl::free_vector(double* v, long nl, long nh) { free(v + BlockBase(nl)); }

void NumericalRoutines_cl::free_ivector(int* v, long nl, long nh) { free(v + BlockBase(nl)); }

void NumericalRoutines_cl::free_matrix(double** m, long nrl, long nrh, long ncl, long nch) {
  free(m[nrl] + BlockBase(ncl));
  free(m + BlockBase(nrl));
}

// --- linear algebra

double Pythag(double a, double b) {
  double absa = std::fabs(a);
  double absb = std::fabs(b);
  if (absa > absb) return absa * std::sqrt(1.0 + (absb / absa) * (absb / absa));
  return absb == 0.0 ? 0.0 : absb * std::sqrt(1.0 + (absa / absb) * (absa / absb));
}

void gaussj(double** a, int n, double** b, int m) {
  int* indxc = NumericalRoutines_cl::ivector(0, n - 1);
  int* indxr = NumericalRoutines_cl::ivector(0, n - 1);
  int* ipiv = NumericalRoutines_cl::ivector(0, n - 1);
  for (int j = 0; j < n; j++) ipiv[j] = 0;
  for (int i = 0; i < n; i++) {
    double big = 0.0;
    int irow = -1, icol = -1;
    for (int j = 0; j < n; j++)
      if (ipiv[j] != 1)
        for (int k = 0; k < n; k++) {
          if (ipiv[k] == 0) {
            if (std::fabs(a[j][k]) >= big) {
              big = std::fabs(a[j][k]);
              irow = j;
              icol = k;
            }
          } else if (ipiv[k] > 1) {
            Fatal("gaussj: Singular Matrix-1 ...");
          }
        }
    // Only entries that are not numbers were left: no column can take the pivot.
    if (icol < 0) Fatal("gaussj: Singular Matrix-1 ...");
    ++ipiv[icol];
    if (irow != icol) {
      for (int l = 0; l < n; l++) std::swap(a[irow][l], a[icol][l]);
      for (int l = 0; l < m; l++) std::swap(b[irow][l], b[icol][l]);
    }
    indxr[i] = irow;
    indxc[i] = icol;
    if (a[icol][icol] == 0.0) Fatal("gaussj: Singular Matrix-2 ...");
    double pivinv = 1.0 / a[icol][icol];
    a[icol][icol] = 1.0;
    for (int l = 0; l < n; l++) a[icol][l] *= pivinv;
    for (int l = 0; l < m; l++) b[icol][l] *= pivinv;
    for (int ll = 0; ll < n; ll++)
      if (ll != icol) {
        double dum = a[ll][icol];
        a[ll][icol] = 0.0;
        for (int l = 0; l < n; l++) a[ll][l] -= a[icol][l] * dum;
        for (int l = 0; l < m; l++) b[ll][l] -= b[icol][l] * dum;
      }
  }
  for (int l = n - 1; l >= 0; l--)
    if (indxr[l] != indxc[l])
      for (int k = 0; k < n; k++) std::swap(a[k][indxr[l]], a[k][indxc[l]]);
  NumericalRoutines_cl::free_ivector(ipiv, 0, n - 1);
  NumericalRoutines_cl::free_ivector(indxr, 0, n - 1);
  NumericalRoutines_cl::free_ivector(indxc, 0, n - 1);
}

void choldc(double** a, int n, double* p) {
  for (int i = 0; i < n; i++)
    for (int j = i; j < n; j++) {
      double sum = a[i][j];
      for (int k = i - 1; k >= 0; k--) sum -= a[i][k] * a[j][k];
      if (i == j) {
        if (sum <= 0.0) abort();
        p[i] = std::sqrt(sum);
      } else {
        a[j][i] = sum / p[i];
      }
    }
}

void cholsl(double** a, int n, const double* p, const double* b, double* x) {
  for (int i = 0; i < n; i++) {
    double sum = b[i];
    for (int k = i - 1; k >= 0; k--) sum -= a[i][k] * x[k];
    x[i] = sum / p[i];
  }
  for (int i = n - 1; i >= 0; i--) {
    double sum = x[i];
    for (int k = i + 1; k < n; k++) sum -= a[k][i] * x[k];
    x[i] = sum / p[i];
  }
}

void NumericalRoutines_cl::ludcmp(double** a, int n, int* indx, double* d) {
  const double kTiny = 1.0e-20;
  double* vv = vector(0, n - 1);
  *d = 1.0;
  for (int i = 0; i < n; i++) {
    double big = 0.0;
    for (int j = 0; j < n; j++)
      if (std::fabs(a[i][j]) > big) big = std::fabs(a[i][j]);
    if (big == 0.0) Fatal("Singular matrix in routine ludcmp");
    vv[i] = 1.0 / big;
  }
  for (int j = 0; j < n; j++) {
    for (int i = 0; i < j; i++) {
      double sum = a[i][j];
      for (int k = 0; k < i; k++) sum -= a[i][k] * a[k][j];
      a[i][j] = sum;
    }
    double big = 0.0;
    int imax = j;
    for (int i = j; i < n; i++) {
      double sum = a[i][j];
      for (int k = 0; k < j; k++) sum -= a[i][k] * a[k][j];
      a[i][j] = sum;
      double dum = vv[i] * std::fabs(sum);
      if (dum >= big) {
        big = dum;
        imax = i;
      }
    }
    if (j != imax) {
      for (int k = 0; k < n; k++) std::swap(a[imax][k], a[j][k]);
      *d = -(*d);
      vv[imax] = vv[j];
    }
    indx[j] = imax;
    if (a[j][j] == 0.0) a[j][j] = kTiny;
    if (j != n - 1) {
      double dum = 1.0 / a[j][j];
      for (int i = j + 1; i < n; i++) a[i][j] *= dum;
    }
  }
  free_vector(vv, 0, n - 1);
}

void NumericalRoutines_cl::lubksb(double** a, int n, const int* indx, double* b) {
  int first = -1;  // the first row with a non-zero right side; rows above it contribute nothing
  for (int i = 0; i < n; i++) {
    int ip = indx[i];
    double sum = b[ip];
    b[ip] = b[i];
    if (first >= 0)
      for (int j = first; j < i; j++) sum -= a[i][j] * b[j];
    else if (sum != 0.0)
      first = i;
    b[i] = sum;
  }
  for (int i = n - 1; i >= 0; i--) {
    double sum = b[i];
    for (int j = i + 1; j < n; j++) sum -= a[i][j] * b[j];
    b[i] = sum / a[i][i];
  }
}

void NumericalRoutines_cl::pseudogauss(double** a, int n, double* b, double* x, const double* defaults) {
  for (int i = 0; i < n; i++) x[i] = defaults[i];
  for (int c = 0; c < n; c++) {
    int pivot = c;
    for (int r = c + 1; r < n; r++)
      if (std::fabs(a[r][c]) > std::fabs(a[pivot][c])) pivot = r;
    if (pivot != c) {
      for (int k = 0; k < n; k++) std::swap(a[pivot][k], a[c][k]);
      std::swap(b[pivot], b[c]);
    }
    if (a[c][c] == 0.0) continue;
    for (int r = c + 1; r < n; r++) {
      double factor = a[r][c] / a[c][c];
      for (int k = c; k < n; k++) a[r][k] -= factor * a[c][k];
      b[r] -= factor * b[c];
    }
  }
  for (int r = 0; r < n; r++) {
    int empty = 1;
    for (int k = 0; k < n && empty; k++) empty = a[r][k] == 0.0;
    if (empty && b[r] != 0.0) {
      std::cout << "no solution " << r << std::endl;
      return;
    }
  }
  for (int r = n - 1; r >= 0; r--) {
    if (a[r][r] == 0.0) continue;
    double sum = b[r];
    for (int k = r + 1; k < n; k++) sum -= a[r][k] * x[k];
    x[r] = sum / a[r][r];
  }
}

// --- quadrature

void gauher(double* x, double* w, int n) {
  const double kEps = 3.0e-14;
  const double kPiM4 = 0.7511255444649425;  // pi^(-1/4)
  const int kMaxIterations = 10;
  int m = (n + 1) / 2;
  double z = 0.0, pp = 0.0;
  for (int i = 0; i < m; i++) {
    // Guesses for the largest roots, then extrapolation from the roots already found.
    if (i == 0)
      z = std::sqrt(static_cast<double>(2 * n + 1)) - 1.85575 * std::pow(static_cast<double>(2 * n + 1), -0.16667);
    else if (i == 1)
      z -= 1.14 * std::pow(static_cast<double>(n), 0.426) / z;
    else if (i == 2)
      z = 1.86 * z - 0.86 * x[0];
    else if (i == 3)
      z = 1.91 * z - 0.91 * x[1];
    else
      z = 2.0 * z - x[i - 2];
    int its;
    for (its = 0; its < kMaxIterations; its++) {
      double p1 = kPiM4, p2 = 0.0;
      for (int j = 1; j <= n; j++) {
        double p3 = p2;
        p2 = p1;
        p1 = z * std::sqrt(2.0 / j) * p2 - std::sqrt(static_cast<double>(j - 1) / j) * p3;
      }
      pp = std::sqrt(2.0 * n) * p2;
      double z1 = z;
      z = z1 - p1 / pp;
      if (std::fabs(z - z1) <= kEps) break;
    }
    if (its >= kMaxIterations) Fatal("too many iterations in gauher");
    x[i] = z;
    x[n - 1 - i] = -z;
    w[i] = 2.0 / (pp * pp);
    w[n - 1 - i] = w[i];
  }
}

void NumericalRoutines_cl::ComputeQuadWeightsAndPoints(int numNodes, const double*& weights, const double*& points) {
  if (numNodes != iQuadNodes) {
    if (iQuadNodes >= 0) {
      free_vector(iQuadWeights, 0, iQuadNodes - 1);
      free_vector(iQuadPoints, 0, iQuadNodes - 1);
    }
    iQuadNodes = numNodes;
    iQuadWeights = vector(0, numNodes - 1);
    iQuadPoints = vector(0, numNodes - 1);
    gauher(iQuadPoints, iQuadWeights, numNodes);
    // From the weight exp(-x^2) to the standard normal density: divide by sqrt(pi), stretch by sqrt(2).
    for (int i = 0; i < numNodes; i++) {
      iQuadWeights[i] /= 1.7724538509055152;
      iQuadPoints[i] *= 1.4142135623730951;
    }
  }
  weights = iQuadWeights;
  points = iQuadPoints;
}

double NumericalRoutines_cl::trapzd(MathUtilsFunc_cl* func, double a, double b, int n) {
  static double s;
  if (n == 1) {
    double fa = func->func(&a);
    double fb = func->func(&b);
    return s = 0.5 * (b - a) * (fa + fb);
  }
  long it = 1;
  for (int j = 1; j < n - 1; j++) it <<= 1;
  double tnm = static_cast<double>(it);
  double del = (b - a) / tnm;
  double x = a + 0.5 * del;
  double sum = 0.0;
  for (long j = 1; j <= it; j++, x += del) {
    double at = x;
    sum += func->func(&at);
  }
  s = 0.5 * (s + (b - a) * sum / tnm);
  return s;
}

void NumericalRoutines_cl::polint(const double* xa, const double* ya, int n, double x, double* y, double* dy) {
  int ns = 0;
  double dif = std::fabs(x - xa[0]);
  double* c = vector(0, n - 1);
  double* d = vector(0, n - 1);
  for (int i = 0; i < n; i++) {
    double dift = std::fabs(x - xa[i]);
    if (dift < dif) {
      ns = i;
      dif = dift;
    }
    c[i] = ya[i];
    d[i] = ya[i];
  }
  *y = ya[ns--];
  *dy = 0.0;
  for (int m = 1; m < n; m++) {
    for (int i = 0; i < n - m; i++) {
      double ho = xa[i] - x;
      double hp = xa[i + m] - x;
      double w = c[i + 1] - d[i];
      double den = ho - hp;
      if (den == 0.0) Fatal("Error in routine polint");
      den = w / den;
      d[i] = hp * den;
      c[i] = ho * den;
    }
    // Take the correction that keeps the path through the tableau closest to x.
    *dy = 2 * (ns + 1) < n - m ? c[ns + 1] : d[ns--];
    *y += *dy;
  }
  free_vector(d, 0, n - 1);
  free_vector(c, 0, n - 1);
}

double NumericalRoutines_cl::qromb(MathUtilsFunc_cl* func, double a, double b) {
  const double kEps = 1.0e-6;
  const int kMaxSteps = 20;
  const int kPoints = 5;
  double s[kMaxSteps];
  double h[kMaxSteps + 1];
  h[0] = 1.0;
  for (int j = 0; j < kMaxSteps; j++) {
    s[j] = trapzd(func, a, b, j + 1);
    if (j + 1 >= kPoints) {
      double ss, dss;
      polint(&h[j + 1 - kPoints], &s[j + 1 - kPoints], kPoints, 0.0, &ss, &dss);
      if (std::fabs(dss) <= kEps * std::fabs(ss)) return ss;
    }
    h[j + 1] = 0.25 * h[j];
  }
  std::cerr << "Too many steps in routine qromb" << std::endl;
  return 0.0;
}

// --- minimisation along a line

void NumericalRoutines_cl::mnbrak(double* ax, double* bx, double* cx, double* fa, double* fb, double* fc,
                                  double (*func)(double)) {
  const double kGold = 1.618034;
  const double kLimit = 100.0;
  const double kTiny = 1.0e-20;
  *fa = func(*ax);
  *fb = func(*bx);
  if (*fb > *fa) {
    std::swap(*ax, *bx);
    std::swap(*fa, *fb);
  }
  *cx = *bx + kGold * (*bx - *ax);
  *fc = func(*cx);
  while (*fb > *fc) {
    // Parabolic extrapolation through a, b, c; tiny keeps the denominator off zero.
    double r = (*bx - *ax) * (*fb - *fc);
    double q = (*bx - *cx) * (*fb - *fa);
    double u = *bx - ((*bx - *cx) * q - (*bx - *ax) * r) / (2.0 * Sign(std::fmax(std::fabs(q - r), kTiny), q - r));
    double ulim = *bx + kLimit * (*cx - *bx);
    double fu;
    if ((*bx - u) * (u - *cx) > 0.0) {
      fu = func(u);
      if (fu < *fc) {
        *ax = *bx;
        *bx = u;
        *fa = *fb;
        *fb = fu;
        return;
      }
      if (fu > *fb) {
        *cx = u;
        *fc = fu;
        return;
      }
      u = *cx + kGold * (*cx - *bx);
      fu = func(u);
    } else if ((*cx - u) * (u - ulim) > 0.0) {
      fu = func(u);
      if (fu < *fc) {
        *bx = *cx;
        *cx = u;
        u = *cx + kGold * (*cx - *bx);
        *fb = *fc;
        *fc = fu;
        fu = func(u);
      }
    } else if ((u - ulim) * (ulim - *cx) >= 0.0) {
      u = ulim;
      fu = func(u);
    } else {
      u = *cx + kGold * (*cx - *bx);
      fu = func(u);
    }
    *ax = *bx;
    *bx = *cx;
    *cx = u;
    *fa = *fb;
    *fb = *fc;
    *fc = fu;
  }
}

double NumericalRoutines_cl::dbrent(double ax, double bx, double cx, double (*f)(double), double (*df)(double),
                                    double tol, double* xmin) {
  const int kMaxIterations = 100;
  const double kZeps = 1.0e-10;
  double a = ax < cx ? ax : cx;
  double b = ax > cx ? ax : cx;
  double d = 0.0, e = 0.0;
  double x = bx, w = bx, v = bx;
  double fx = f(x), fw = fx, fv = fx;
  double dx = df(x), dw = dx, dv = dx;
  for (int iter = 0; iter < kMaxIterations; iter++) {
    double xm = 0.5 * (a + b);
    double tol1 = tol * std::fabs(x) + kZeps;
    double tol2 = 2.0 * tol1;
    if (std::fabs(x - xm) <= tol2 - 0.5 * (b - a)) {
      *xmin = x;
      return fx;
    }
    bool bisect = true;
    if (std::fabs(e) > tol1) {
      // Secant steps from the derivatives at w and v; acceptable ones stay inside and go downhill.
      double d1 = 2.0 * (b - a), d2 = d1;
      if (dw != dx) d1 = (w - x) * dx / (dx - dw);
      if (dv != dx) d2 = (v - x) * dx / (dx - dv);
      double u1 = x + d1, u2 = x + d2;
      bool ok1 = (a - u1) * (u1 - b) > 0.0 && dx * d1 <= 0.0;
      bool ok2 = (a - u2) * (u2 - b) > 0.0 && dx * d2 <= 0.0;
      double olde = e;
      e = d;
      if (ok1 || ok2) {
        if (ok1 && ok2)
          d = std::fabs(d1) < std::fabs(d2) ? d1 : d2;
        else
          d = ok1 ? d1 : d2;
        if (std::fabs(d) <= std::fabs(0.5 * olde)) {
          bisect = false;
          double u = x + d;
          if (u - a < tol2 || b - u < tol2) d = Sign(tol1, xm - x);
        }
      }
    }
    if (bisect) {
      e = dx >= 0.0 ? a - x : b - x;
      d = 0.5 * e;
    }
    double u, fu;
    if (std::fabs(d) >= tol1) {
      u = x + d;
      fu = f(u);
    } else {
      u = x + Sign(tol1, d);
      fu = f(u);
      if (fu > fx) {
        *xmin = x;
        return fx;
      }
    }
    double du = df(u);
    if (fu <= fx) {
      if (u >= x)
        a = x;
      else
        b = x;
      v = w, fv = fw, dv = dw;
      w = x, fw = fx, dw = dx;
      x = u, fx = fu, dx = du;
    } else {
      if (u < x)
        a = u;
      else
        b = u;
      if (fu <= fw || w == x) {
        v = w, fv = fw, dv = dw;
        w = u, fw = fu, dw = du;
      } else if (fu < fv || v == w || v == x) {
        v = u, fv = fu, dv = du;
      }
    }
  }
  std::cerr << "Too many iterations in routine dbrent" << std::endl;
  *xmin = x;
  return fx;
}

void NumericalRoutines_cl::OpenLineSearch(int n) {
  iLineDim = n;
  iLinePoint = vector(0, n - 1);
  iLineDirection = vector(0, n - 1);
  iLineScratchPoint = vector(0, n - 1);
  iLineScratchGradient = vector(0, n - 1);
}

void NumericalRoutines_cl::CloseLineSearch() {
  free_vector(iLineScratchGradient, 0, iLineDim - 1);
  free_vector(iLineScratchPoint, 0, iLineDim - 1);
  free_vector(iLineDirection, 0, iLineDim - 1);
  free_vector(iLinePoint, 0, iLineDim - 1);
  iLinePoint = iLineDirection = iLineScratchPoint = iLineScratchGradient = nullptr;
  iLineFunc = nullptr;
}

double NumericalRoutines_cl::F1Dim(double x) {
  for (int j = 0; j < iLineDim; j++) iLineScratchPoint[j] = iLinePoint[j] + x * iLineDirection[j];
  return iLineFunc->func(iLineScratchPoint);
}

double NumericalRoutines_cl::DF1Dim(double x) {
  for (int j = 0; j < iLineDim; j++) iLineScratchPoint[j] = iLinePoint[j] + x * iLineDirection[j];
  iLineFunc->deriv(iLineScratchPoint, iLineScratchGradient);
  double slope = 0.0;
  for (int j = 0; j < iLineDim; j++) slope += iLineScratchGradient[j] * iLineDirection[j];
  return slope;
}

void NumericalRoutines_cl::dlinmin(double* p, double* xi, int n, double* fret, MathUtilsFunc_cl* func) {
  iLineFunc = func;
  for (int j = 0; j < n; j++) {
    iLinePoint[j] = p[j];
    iLineDirection[j] = xi[j];
  }
  double ax = 0.0, xx = 1.0, bx, fa, fx, fb, xmin;
  mnbrak(&ax, &xx, &bx, &fa, &fx, &fb, F1Dim);
  *fret = dbrent(ax, xx, bx, F1Dim, DF1Dim, 2.0e-4, &xmin);
  for (int j = 0; j < n; j++) {
    xi[j] *= xmin;
    p[j] += xi[j];
  }
}

void NumericalRoutines_cl::safelinmin(double* p, double* xi, int n, double* fret, MathUtilsFunc_cl* func) {
  OpenLineSearch(n);
  dlinmin(p, xi, n, fret, func);
  CloseLineSearch();
}

bool NumericalRoutines_cl::IsConverged(double fNew, double fOld, double ftol) {
  return 2.0 * std::fabs(fNew - fOld) <= ftol * (std::fabs(fNew) + std::fabs(fOld) + 3.0e-14);
}

// --- conjugate gradients

namespace {

// The work vectors of one conjugate gradient run; iXi receives each gradient and then carries the
// direction into the line search.
class ConjugateVectors_cl {
 public:
  explicit ConjugateVectors_cl(int n) : iN(n) {
    iNegGradient = NumericalRoutines_cl::vector(0, n - 1);
    iDirection = NumericalRoutines_cl::vector(0, n - 1);
    iXi = NumericalRoutines_cl::vector(0, n - 1);
  }
  ~ConjugateVectors_cl() {
    NumericalRoutines_cl::free_vector(iXi, 0, iN - 1);
    NumericalRoutines_cl::free_vector(iDirection, 0, iN - 1);
    NumericalRoutines_cl::free_vector(iNegGradient, 0, iN - 1);
  }
  // Steepest descent from the gradient held in iXi.
  void Restart() {
    for (int j = 0; j < iN; j++) {
      iNegGradient[j] = -iXi[j];
      iXi[j] = iDirection[j] = iNegGradient[j];
    }
  }
  // The Polak-Ribiere step from the new gradient in iXi; false when the old gradient was zero.
  bool Conjugate() {
    double gg = 0.0, dgg = 0.0;
    for (int j = 0; j < iN; j++) {
      gg += iNegGradient[j] * iNegGradient[j];
      dgg += (iXi[j] + iNegGradient[j]) * iXi[j];
    }
    if (gg == 0.0) return false;
    double gam = dgg / gg;
    for (int j = 0; j < iN; j++) {
      iNegGradient[j] = -iXi[j];
      iXi[j] = iDirection[j] = iNegGradient[j] + gam * iDirection[j];
    }
    return true;
  }
  int iN;
  double* iNegGradient;
  double* iDirection;
  double* iXi;
};

const int kMaxConjugateRounds = 500;

}  // namespace

void NumericalRoutines_cl::frprmn(double* p, int n, double ftol, int* iter, double* fret, MathUtilsFunc_cl* func) {
  OpenLineSearch(n);
  ConjugateVectors_cl vectors(n);
  double fp = func->func(p);
  *fret = fp;
  func->deriv(p, vectors.iXi);
  vectors.Restart();
  for (int its = 1; its <= kMaxConjugateRounds; its++) {
    *iter = its;
    dlinmin(p, vectors.iXi, n, fret, func);
    if (IsConverged(*fret, fp, ftol)) break;
    fp = *fret;
    func->deriv(p, vectors.iXi);
    if (!vectors.Conjugate()) break;
    if (its == kMaxConjugateRounds) std::cerr << "Too many iterations in frprmn" << std::endl;
  }
  CloseLineSearch();
}

// A variable standing on a bound may only move back inside: the components that would carry it out
// are cleared, of the gradient (descent goes against it) and of a step (which moves along it).
void NumericalRoutines_cl::ZeroGrad(const double* point, double* gradient, const double* upper, const double* lower,
                                    int n) {
  for (int i = 0; i < n; i++)
    if ((point[i] >= upper[i] && gradient[i] < 0.0) || (point[i] <= lower[i] && gradient[i] > 0.0)) gradient[i] = 0.0;
}

void NumericalRoutines_cl::ZeroDir(const double* point, double* direction, const double* upper, const double* lower,
                                   int n) {
  for (int i = 0; i < n; i++)
    if ((point[i] >= upper[i] && direction[i] > 0.0) || (point[i] <= lower[i] && direction[i] < 0.0))
      direction[i] = 0.0;
}

int NumericalRoutines_cl::ShortenStep(const double* point, const double* direction, const double* upper,
                                      const double* lower, int n, double* step) {
  int shortened = 0;
  for (int i = 0; i < n; i++) {
    double move = *step * direction[i];
    double reach;
    if (move > 0.0 && point[i] < upper[i])
      reach = (upper[i] - point[i]) / direction[i];
    else if (move < 0.0 && point[i] > lower[i])
      reach = (lower[i] - point[i]) / direction[i];
    else
      continue;
    if (std::fabs(reach) < std::fabs(*step)) {
      *step = reach;
      shortened = 1;
    }
  }
  return shortened;
}

void NumericalRoutines_cl::SetToWall(double* point, const double* upper, const double* lower, int n) {
  const double kWall = 1.0e-10;
  for (int i = 0; i < n; i++) {
    if (std::fabs(point[i] - upper[i]) < kWall)
      point[i] = upper[i];
    else if (std::fabs(point[i] - lower[i]) < kWall)
      point[i] = lower[i];
  }
}

int NumericalRoutines_cl::LineSearchConstrained(double* point, double* direction, const double* upper,
                                                const double* lower, int n, double* value) {
  for (int j = 0; j < n; j++) {
    iLinePoint[j] = point[j];
    iLineDirection[j] = direction[j];
  }
  double ax = 0.0, xx = 1.0, bx, fa, fx, fb, xmin;
  mnbrak(&ax, &xx, &bx, &fa, &fx, &fb, F1Dim);
  *value = dbrent(ax, xx, bx, F1Dim, DF1Dim, 0.01, &xmin);
  // The direction becomes the step itself, so that its signs are those of the move.
  for (int j = 0; j < n; j++) direction[j] *= xmin;
  ZeroDir(point, direction, upper, lower, n);
  double step = 1.0;
  int wall = ShortenStep(point, direction, upper, lower, n, &step);
  for (int j = 0; j < n; j++) point[j] += step * direction[j];
  SetToWall(point, upper, lower, n);
  return wall;
}

void NumericalRoutines_cl::ConjugGradConstrained(double* point, const double* upper, const double* lower, int n,
                                                 double ftol, int* iterations, double* value, MathUtilsFunc_cl* func) {
  OpenLineSearch(n);
  iLineFunc = func;
  ConjugateVectors_cl vectors(n);
  double fp = func->func(point);
  *value = fp;
  func->deriv(point, vectors.iXi);
  ZeroGrad(point, vectors.iXi, upper, lower, n);
  vectors.Restart();
  for (int its = 1; its <= kMaxConjugateRounds; its++) {
    *iterations = its;
    if (LineSearchConstrained(point, vectors.iXi, upper, lower, n, value)) {
      // A wall ends the conjugate sequence: start again from steepest descent where the point stands.
      fp = *value = func->func(point);
      func->deriv(point, vectors.iXi);
      ZeroGrad(point, vectors.iXi, upper, lower, n);
      vectors.Restart();
    } else {
      if (IsConverged(*value, fp, ftol)) break;
      fp = *value;
      func->deriv(point, vectors.iXi);
      ZeroGrad(point, vectors.iXi, upper, lower, n);
      if (!vectors.Conjugate()) break;
    }
    if (its == kMaxConjugateRounds) std::cerr << "Too many iterations in ConjugGradConstrained" << std::endl;
  }
  CloseLineSearch();
}
