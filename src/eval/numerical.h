// Small numerical routines: raw arrays, elimination, decompositions, quadrature and line-search optimisers.
#ifndef VORN_EVAL_NUMERICAL_H
#define VORN_EVAL_NUMERICAL_H

// A real function of a vector, minimised by the optimisers below; the integrators call func with a
// pointer to their single abscissa.
class MathUtilsFunc_cl {
 public:
  virtual double func(double* x) = 0;
  // Writes the gradient at x into the caller's array.
  virtual void deriv(double* x, double* gradient) = 0;
  virtual ~MathUtilsFunc_cl() = default;
};

// The routines reach callers as members of MathUtils, which derives from this class; an object only
// exists to hold the cache of Gauss-Hermite nodes.
class NumericalRoutines_cl {
 public:
  NumericalRoutines_cl() = default;
  NumericalRoutines_cl(const NumericalRoutines_cl&) = delete;
  NumericalRoutines_cl& operator=(const NumericalRoutines_cl&) = delete;
  ~NumericalRoutines_cl();

  // Arrays addressed from nl to nh inclusive; a failed allocation is fatal.
  static double* vector(long nl, long nh);
  static int* ivector(long nl, long nh);
  static double** matrix(long nrl, long nrh, long ncl, long nch);
  static void free_vector(double* v, long nl, long nh);
  static void free_ivector(int* v, long nl, long nh);
  static void free_matrix(double** m, long nrl, long nrh, long ncl, long nch);

  // LU decomposition of a[0..n-1][0..n-1] in place with implicit pivoting; indx records the row
  // permutation and d its sign.
  static void ludcmp(double** a, int n, int* indx, double* d);
  // Solves with the output of ludcmp; b holds the right side on entry and the solution on return.
  static void lubksb(double** a, int n, const int* indx, double* b);
  // Solves a x = b for the n unknowns by elimination with partial pivoting, destroying a and b. An
  // unknown that the system leaves free keeps its default; an inconsistent row is reported on the
  // standard output and leaves x at the defaults.
  static void pseudogauss(double** a, int n, double* b, double* x, const double* defaults);

  // Gauss-Hermite nodes rescaled for the standard normal (weights sum to 1), cached in this object
  // for the last node count asked for.
  void ComputeQuadWeightsAndPoints(int numNodes, const double*& weights, const double*& points);

  // Stage n of the trapezoid rule on [a, b]; stage 1 starts anew, later stages refine the last one.
  static double trapzd(MathUtilsFunc_cl* func, double a, double b, int n);
  // Neville interpolation at x of the n points (xa, ya); dy estimates the error.
  static void polint(const double* xa, const double* ya, int n, double x, double* y, double* dy);
  // Romberg integration of func on [a, b]; 0.0 when it does not converge.
  static double qromb(MathUtilsFunc_cl* func, double a, double b);

  // Brackets a minimum of func starting from ax and bx: on return fb is below fa and fc.
  static void mnbrak(double* ax, double* bx, double* cx, double* fa, double* fb, double* fc, double (*func)(double));
  // Brent's search with derivatives inside the bracket; returns the minimum value, xmin its place.
  static double dbrent(double ax, double bx, double cx, double (*f)(double), double (*df)(double), double tol,
                       double* xmin);
  // Moves p to the minimum along xi (xi becomes the step taken). Needs the line-search work area,
  // which the optimisers and safelinmin provide.
  static void dlinmin(double* p, double* xi, int n, double* fret, MathUtilsFunc_cl* func);
  static void safelinmin(double* p, double* xi, int n, double* fret, MathUtilsFunc_cl* func);
  // Polak-Ribiere conjugate gradients from p; iter and fret receive the rounds used and the value.
  static void frprmn(double* p, int n, double ftol, int* iter, double* fret, MathUtilsFunc_cl* func);
  // Conjugate gradients kept inside the box lower <= point <= upper.
  static void ConjugGradConstrained(double* point, const double* upper, const double* lower, int n, double ftol,
                                    int* iterations, double* value, MathUtilsFunc_cl* func);

 private:
  static void OpenLineSearch(int n);
  static void CloseLineSearch();
  static double F1Dim(double x);
  static double DF1Dim(double x);
  static bool IsConverged(double fNew, double fOld, double ftol);

  static void ZeroGrad(const double* point, double* gradient, const double* upper, const double* lower, int n);
  static void ZeroDir(const double* point, double* direction, const double* upper, const double* lower, int n);
  static int ShortenStep(const double* point, const double* direction, const double* upper, const double* lower, int n,
                         double* step);
  static void SetToWall(double* point, const double* upper, const double* lower, int n);
  static int LineSearchConstrained(double* point, double* direction, const double* upper, const double* lower, int n,
                                   double* value);

  // The work area of the line searches, shared with F1Dim and DF1Dim: this makes the optimisers
  // non-reentrant.
  static int iLineDim;
  static double* iLinePoint;
  static double* iLineDirection;
  static MathUtilsFunc_cl* iLineFunc;
  static double* iLineScratchPoint;
  static double* iLineScratchGradient;

  int iQuadNodes = -1;
  double* iQuadWeights = nullptr;
  double* iQuadPoints = nullptr;
};

// sqrt(a^2 + b^2) without overflow or destructive underflow.
double Pythag(double a, double b);
// Gauss-Jordan elimination with full pivoting: a becomes its inverse and the m columns of b the
// solutions.
void gaussj(double** a, int n, double** b, int m);
// Cholesky decomposition of the positive definite a: the lower triangle below the diagonal and p
// hold the factor; the upper triangle is left as it was.
void choldc(double** a, int n, double* p);
void cholsl(double** a, int n, const double* p, const double* b, double* x);
// Abscissas (largest first) and weights of the n-point Gauss-Hermite rule for the weight exp(-x^2).
void gauher(double* x, double* w, int n);

#endif
