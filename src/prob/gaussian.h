// Gaussians: moment and diagonal forms, the canonical form, and tables of canonical Gaussians as messages.
#ifndef VORN_PROB_GAUSSIAN_H
#define VORN_PROB_GAUSSIAN_H

#include <ostream>

#include "prob/distrib.h"
#include "prob/factor.h"
#include "prob/gaussian_cpd.h"
#include "prob/sqr_matrix.h"

class Gaussian_cl;
class FullGaussian_cl;
class IndepGaussian_cl;
class GaussianMsg_cl;
class CanonicalGaussian_cl;

class Gaussian_sptr : public Sptr_tmpl<Gaussian_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class FullGaussian_sptr : public Sptr_tmpl<FullGaussian_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class IndepGaussian_sptr : public Sptr_tmpl<IndepGaussian_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class GaussianMsg_sptr : public Sptr_tmpl<GaussianMsg_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

Gaussian_sptr Conv2Gaussian(const Measure_sptr& m);
FullGaussian_sptr Conv2FullGaussian(const Measure_sptr& m);
IndepGaussian_sptr Conv2IndepGaussian(const Measure_sptr& m);
GaussianMsg_sptr Conv2GaussianMsg(const Measure_sptr& m);

enum Operator_type { OPERATOR_MULTIPLY = 0, OPERATOR_DIVIDE = 1 };

// A density over real variables. Densities are evaluated many times for one parameter set, so the
// subclasses keep the inverse and log determinant of the covariance until a parameter changes.
class Gaussian_cl : public Distrib_cl {
 public:
  explicit Gaussian_cl(RvVector_sptr vars);
  Gaussian_cl(const Gaussian_cl& other);

  int GetType() const override { return GAUSSIAN; }
  int DoesInheritFrom(int type) const override { return type == GAUSSIAN || Distrib_cl::DoesInheritFrom(type); }
  RvVector_sptr GetRVs() const override { return iRVs; }
  int GetNumVars() const { return iN; }

  using Measure_cl::GetCov;
  using Measure_cl::GetMean;
  double GetMean(int i) override = 0;
  virtual void SetMean(int i, double value) = 0;
  double GetCov(int i, int j) override = 0;
  virtual void SetCov(int i, int j, double value) = 0;
  virtual double GetVariance(int i) const = 0;
  virtual void SetVariance(int i, double value) = 0;
  // The inverse covariance and its log determinant, cached.
  virtual SqrMatrix_sptr GetInverseCov() = 0;
  virtual double GetLogDet() = 0;
  SqrMatrix_sptr GetCovMatrix();
  MatrixVector_sptr GetMeanVector();

  using Measure_cl::GetLogValue;
  using Measure_cl::GetValue;
  // x in the scope's order.
  virtual double GetLogValue(const double* x);
  virtual double GetValue(const double* x);
  double GetValue(InstVector_sptr inst) override;
  double GetLogValue(InstVector_sptr inst) override;
  // The means from weighted rows; a total weight below 1e-100 changes nothing.
  void LearnMean(double** rows, const double* weights, int n);
  // The means, then the covariance (its diagonal for a diagonal Gaussian).
  virtual void Learn(double** rows, const double* weights, int n);
  // -(n/2) log 2 pi - 1/2 log det.
  double GetLogP();
  // 1.0 unless a bounded domain cuts mean +/- 4 standard deviations; then a grid sum over the box.
  double GetNormalizingConstant();
  int IsLegalCov();
  double GetEntropy();
  // The other measure must be a Gaussian over the same variables.
  double GetKLDist(Measure_sptr q) override;
  double GetSumKLDists(Gaussian_sptr q);
  SqrMatrix_sptr GetCorrelationMatrix();
  // A standard normal draw z mapped to x = L z + mean.
  void Sample(Sample_sptr const& sample) override;
  virtual void ConvertToMyCoordinates(const double* z, double* x) = 0;

  // Grid cells per dimension are coarsened so that the whole grid has at most this many points.
  static constexpr double kMaxGridPoints = 4e6;

 protected:
  // The values of the scope's variables in an assignment, by id; the program stops when one is absent.
  void ExtractValues(const InstVector_sptr& inst, double* x) const;
  void ValueChange() { iNormConst = -1.0; }

  RvVector_sptr iRVs;
  int iN;
  double iNormConst = -1.0;  // -1 until computed
};

class FullGaussian_cl : public Gaussian_cl {
 public:
  // Zero mean and unit covariance.
  explicit FullGaussian_cl(RvVector_sptr vars);
  // With copy the moments are copied, otherwise shared.
  FullGaussian_cl(RvVector_sptr vars, MatrixVector_sptr mean, SqrMatrix_sptr cov, int copy);
  // The moment match of a mixture with the given weights.
  FullGaussian_cl(FullGaussian_sptr* components, const double* weights, int n);
  FullGaussian_cl(const FullGaussian_cl& other);

  int GetType() const override { return FULL_GAUSSIAN; }
  int DoesInheritFrom(int type) const override { return type == FULL_GAUSSIAN || Gaussian_cl::DoesInheritFrom(type); }
  Measure_sptr Copy() const override { return new FullGaussian_cl(*this); }
  double GetMean(int i) override { return iMean->GetEntry(i); }
  void SetMean(int i, double value) override;
  double GetCov(int i, int j) override { return iCov->GetElement(i, j); }
  // Writes both symmetric cells.
  void SetCov(int i, int j, double value) override;
  double GetVariance(int i) const override { return iCov->GetElement(i, i); }
  void SetVariance(int i, double value) override { SetCov(i, i, value); }
  SqrMatrix_sptr GetInverseCov() override;
  double GetLogDet() override;
  SqrMatrix_sptr GetSquareRoot();
  MatrixVector_sptr GetMean() const { return iMean; }
  SqrMatrix_sptr GetCov() const { return iCov; }
  void ConvertToMyCoordinates(const double* z, double* x) override;
  // Sigma = K^-1, mean = Sigma h.
  void ConvertFromCanonical(const CanonicalGaussian_cl* canonical);
  // The conditional on the assignment's variables; the measure itself when it fixes none, and a
  // one-cell factor holding the density when it fixes all.
  Measure_sptr Instantiate(InstVector_sptr inst, Measure_sptr result) override;
  Measure_sptr ReduceTo(RvVector_sptr vars, Measure_sptr result) override;
  void WriteFile(std::ostream& out) const override;
  // Clears the cached inverse, determinant and root.
  void ValueChange();

 private:
  MatrixVector_sptr iMean;
  SqrMatrix_sptr iCov;
  SqrMatrix_sptr iInverse;
  int iInverseValid = 0;
  double iLogDet = 0.0;
  int iLogDetValid = 0;
  SqrMatrix_sptr iRoot;
  int iRootValid = 0;
};

class IndepGaussian_cl : public Gaussian_cl {
 public:
  // Zero means and unit variances.
  explicit IndepGaussian_cl(RvVector_sptr vars);
  IndepGaussian_cl(const IndepGaussian_cl& other) = default;

  int GetType() const override { return INDEP_GAUSSIAN; }
  int DoesInheritFrom(int type) const override { return type == INDEP_GAUSSIAN || Gaussian_cl::DoesInheritFrom(type); }
  Measure_sptr Copy() const override { return new IndepGaussian_cl(*this); }
  double GetMean(int i) override { return iMeans[i]; }
  void SetMean(int i, double value) override;
  double GetCov(int i, int j) override { return i == j ? iVariances[i] : 0.0; }
  // Only the diagonal is stored.
  void SetCov(int i, int j, double value) override;
  double GetVariance(int i) const override { return iVariances[i]; }
  void SetVariance(int i, double value) override;
  SqrMatrix_sptr GetInverseCov() override;
  double GetLogDet() override;
  double GetLogValue(const double* x) override;
  void Learn(double** rows, const double* weights, int n) override;
  void ConvertToMyCoordinates(const double* z, double* x) override;
  Measure_sptr ReduceTo(RvVector_sptr vars, Measure_sptr result) override;
  void WriteFile(std::ostream& out) const override;

 private:
  Vector_tmpl<double> iMeans;
  Vector_tmpl<double> iVariances;
};

// exp(g + h'x - 1/2 x'Kx) over its variables; without variables it is a plain weight exp(g).
class CanonicalGaussian_cl {
 public:
  // K and h zero, g 0: the unit message.
  explicit CanonicalGaussian_cl(RvVector_sptr vars);
  // The canonical form of a linear Gaussian CPD over its parents and child.
  explicit CanonicalGaussian_cl(const GaussianCpd_sptr& cpd);
  CanonicalGaussian_cl(const CanonicalGaussian_cl& other);
  CanonicalGaussian_cl& operator=(const CanonicalGaussian_cl&) = delete;

  RvVector_sptr GetRVs() const { return iRVs; }
  SqrMatrix_sptr GetK() const { return iK; }
  MatrixVector_sptr GetH() const { return iH; }
  double GetG() const { return iG; }
  void SetG(double g) {
    iG = g;
    iWeightValid = 0;
  }
  // K = Sigma^-1, h = K mean, g = log P - 1/2 h'mean.
  void ConvertFromMoments(FullGaussian_sptr moments);
  // The integral over the variables; exp(g) when K is singular. Cached.
  double GetWeight();
  void MultiplyWeight(double factor);
  // K, h and g add (or subtract) on the union of the variables.
  void Multiply(const CanonicalGaussian_cl* other, int op);
  // The marginal on vars, which must be some of this form's variables.
  CanonicalGaussian_cl* ReduceTo(RvVector_sptr vars) const;
  // Conditions on the assignment's values of this form's variables.
  CanonicalGaussian_cl* Instantiate(InstVector_sptr inst) const;
  double GetLogValue(const double* x) const;
  void WriteFile(std::ostream& out) const;

 private:
  // Grows the scope by the variables of vars it lacks, with zero rows and columns.
  void AddRVs(const RvVector_sptr& vars);

  RvVector_sptr iRVs;
  SqrMatrix_sptr iK;
  MatrixVector_sptr iH;
  double iG = 0.0;
  double iWeight = 0.0;
  int iWeightValid = 0;
};

// One canonical Gaussian over the real variables for each joint value of the discrete variables.
class GaussianMsg_cl : public virtual Measure_cl {
 public:
  GaussianMsg_cl(RvVector_sptr discrete, RvVector_sptr real);
  GaussianMsg_cl(const GaussianMsg_cl& other);
  ~GaussianMsg_cl() override;

  int GetType() const override { return GAUSSIAN_MSG; }
  int DoesInheritFrom(int type) const override { return type == GAUSSIAN_MSG || Measure_cl::DoesInheritFrom(type); }
  RvVector_sptr GetRVs() const override { return iRVs; }
  RvVector_sptr GetDiscRVs() const override { return iDiscrete; }
  RvVector_sptr GetRealRVs() const override { return iReal; }
  Measure_sptr Copy() const override { return new GaussianMsg_cl(*this); }
  using Measure_cl::GetValue;
  double GetValue(InstVector_sptr inst) override;
  // Keeps the discrete variables; each cell is marginalised on the real variables among vars.
  Measure_sptr ReduceTo(RvVector_sptr vars, Measure_sptr result) override;
  // Conditions each cell on the assignment's real values.
  Measure_sptr Instantiate(InstVector_sptr inst, Measure_sptr result) override;
  void WriteFile(std::ostream& out) const override;

  int GetNumCells() const { return iCells.GetSize(); }
  CanonicalGaussian_cl* GetGaussian(int cell) const { return iCells[cell]; }
  FullGaussian_sptr GetFullGaussian(int cell) const;
  // Multiplies or divides the weight of each cell by the factor's cell over some discrete variables.
  void EnterFactor(Factor_sptr factor, int op, FactorMapping_cl* mapping);
  void EnterGaussianMsg(GaussianMsg_sptr other, int op, FactorMapping_cl* mapping);
  // The weight of each cell, as a factor over the discrete variables, summed down to vars.
  Factor_sptr GetAsFactor(RvVector_sptr vars);

 private:
  // A message over the same discrete variables and the given real ones, each cell mapped from this one's.
  template <class Map>
  GaussianMsg_sptr MapCells(RvVector_sptr real, Map map) const;

  RvVector_sptr iRVs;
  RvVector_sptr iDiscrete;
  RvVector_sptr iReal;
  Vector_tmpl<CanonicalGaussian_cl*> iCells;
};

#endif
