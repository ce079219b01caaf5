// Multinomials: discrete tables that are distributions, the leaves of table and tree CPDs.
#ifndef VORN_PROB_MULTINOMIAL_H
#define VORN_PROB_MULTINOMIAL_H

#include <ostream>

#include "prob/distrib.h"
#include "prob/factor.h"

class Multinomial_cl;

class Multinomial_sptr : public Sptr_tmpl<Multinomial_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

Multinomial_sptr Conv2Multinomial(const Measure_sptr& m);

// Its table normally sums to 1. As a Cpd_cl its variable is the first of the scope.
class Multinomial_cl : public Factor_cl, public Distrib_cl, public Cpd_cl {
 public:
  // Uniform over one variable.
  explicit Multinomial_cl(SingleRv_sptr rv);
  Multinomial_cl(RvVector_sptr scope, int sort, int initialise) : Factor_cl(scope, sort, initialise) {}
  Multinomial_cl(const Multinomial_cl& other) : Measure_cl(other), Factor_cl(other) {}

  int GetType() const override { return MULTINOMIAL; }
  int DoesInheritFrom(int type) const override;
  RvVector_sptr GetRVs() const override { return iRVs; }
  Measure_sptr Copy() const override { return new Multinomial_cl(*this); }
  using Factor_cl::GetValue;
  double GetValue(InstVector_sptr inst) override { return Factor_cl::GetValue(inst); }
  double GetValue(int index) override { return iValues[index]; }
  int IsDeterministic() const override;
  SingleRv_sptr GetRv() const override { return iRVs->GetRv(0); }
  RvVector_sptr GetGiven() const override { return Distrib_cl::GetGiven(); }
  RvVector_sptr GetTarget() const override { return iRVs; }
  // Draws a cell in proportion to the table and sets the sample to it; the probability is multiplied in.
  void Sample(Sample_sptr const& sample) override;
  // The cells in one row, each left-justified with width 5 and precision 8, joined by ", ".
  void WriteFile(std::ostream& out) const override;
  // The row at that indentation, closed by ";" and a line end: the leaf form of the CPD text.
  void WriteFile(std::ostream& out, int indent) const override;
  int GetStorageSize(int recursive) const override { return static_cast<int>(sizeof(*this) + sizeof(double) * iSize); }
};

#endif
