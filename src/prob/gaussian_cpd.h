// Linear Gaussian CPDs: the leaf distributions of real children in table and tree CPDs.
#ifndef VORN_PROB_GAUSSIAN_CPD_H
#define VORN_PROB_GAUSSIAN_CPD_H

#include <ostream>

#include "pipeline/vector.h"
#include "prob/cond_distrib.h"

class GaussianCpd_cl;

class GaussianCpd_sptr : public Sptr_tmpl<GaussianCpd_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

GaussianCpd_sptr Conv2GaussianCpd(const Measure_sptr& m);

// The child is normal with mean m + sum of w_i times parent i and variance v; the scope holds the
// parents, then the child.
class GaussianCpd_cl : public Cpd_cl {
 public:
  GaussianCpd_cl(SingleRv_sptr child, RvVector_sptr parents);
  GaussianCpd_cl(const GaussianCpd_cl& other) = default;

  int GetType() const override { return GAUSSIAN_CPD; }
  int DoesInheritFrom(int type) const override { return type == GAUSSIAN_CPD || Cpd_cl::DoesInheritFrom(type); }
  Measure_sptr Copy() const override { return new GaussianCpd_cl(*this); }
  RvVector_sptr GetRVs() const override { return iVars; }
  RvVector_sptr GetGiven() const override { return iParents; }
  RvVector_sptr GetTarget() const override { return new RvVector_cl(SingleVar_sptr(iChild)); }
  SingleRv_sptr GetRv() const override { return iChild; }
  using Cpd_cl::GetValue;
  double GetValue(InstVector_sptr inst) override;
  double GetLogValue(InstVector_sptr inst) override;
  // Draws the child given the sample's parents; the density of the draw is multiplied in.
  void Sample(Sample_sptr const& sample) override;
  double GetMean(int) override { return iMean; }
  // "gaussian { mean = m; var = v; weights = w, ...; }".
  void WriteFile(std::ostream& out) const override;
  // The same at that indentation, closed by ";" and a line end.
  void WriteFile(std::ostream& out, int indent) const override;
  int GetStorageSize(int) const override {
    return static_cast<int>(sizeof(*this) + sizeof(double) * iWeights.GetSize());
  }

  double GetMean() const { return iMean; }
  void SetMean(double mean) { iMean = mean; }
  double GetVariance() const { return iVariance; }
  void SetVariance(double variance) { iVariance = variance; }
  double GetWeight(int i) const { return iWeights[i]; }
  void SetWeight(double weight, int i) { iWeights[i] = weight; }
  int GetNumWeights() const { return iWeights.GetSize(); }
  // The log density at x with the mean and variance alone, without parents.
  double GetLogProb(double x) const;

 private:
  // The mean given the parents' values in the assignment.
  double ConditionalMean(const InstVector_sptr& inst) const;

  SingleRv_sptr iChild;
  RvVector_sptr iParents;
  RvVector_sptr iVars;
  double iMean = 0.0;
  double iVariance = 1.0;
  Vector_tmpl<double> iWeights;
};

#endif
