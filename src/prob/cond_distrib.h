// Conditional distributions: a target given a set of variables, and the one-variable Cpd_cl.
#ifndef VORN_PROB_COND_DISTRIB_H
#define VORN_PROB_COND_DISTRIB_H

#include "prob/measure.h"

class CondDistrib_cl;
class Cpd_cl;

class CondDistrib_sptr : public Sptr_tmpl<CondDistrib_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class Cpd_sptr : public Sptr_tmpl<Cpd_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

// Stops when the measure is of another kind.
CondDistrib_sptr Conv2CondDistrib(const Measure_sptr& m);
Cpd_sptr Conv2Cpd(const Measure_sptr& m);

class CondDistrib_cl : public virtual Measure_cl {
 public:
  int GetType() const override { return COND_DISTRIB; }
  int DoesInheritFrom(int type) const override { return type == COND_DISTRIB || Measure_cl::DoesInheritFrom(type); }
  int IsCondDistrib() const override { return 1; }
  virtual RvVector_sptr GetGiven() const = 0;
  virtual RvVector_sptr GetTarget() const = 0;
};

// A distribution over one variable, possibly given others.
class Cpd_cl : public virtual CondDistrib_cl {
 public:
  int GetType() const override { return CPD; }
  int DoesInheritFrom(int type) const override { return type == CPD || CondDistrib_cl::DoesInheritFrom(type); }
  virtual SingleRv_sptr GetRv() const = 0;
  using Measure_cl::GetValue;
  // The probability of the variable's value index, where the distribution needs no given values.
  virtual double GetValue(int index);
  // An estimate of the object's size in bytes; a split grows the estimate of a tree.
  virtual int GetStorageSize(int recursive) const { return static_cast<int>(sizeof(*this)); }

  // For each scope variable: its real value and 1 in present when the assignment has it, else 0.
  void FindValues(double* values, int* present, InstVector_sptr inst) const;
};

#endif
