// Unconditional distributions: the scope is the target and nothing is given.
#ifndef VORN_PROB_DISTRIB_H
#define VORN_PROB_DISTRIB_H

#include "prob/cond_distrib.h"

class Distrib_cl;

class Distrib_sptr : public Sptr_tmpl<Distrib_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

Distrib_sptr Conv2Distrib(const Measure_sptr& m);

class Distrib_cl : public virtual CondDistrib_cl {
 public:
  int GetType() const override { return DISTRIB; }
  int DoesInheritFrom(int type) const override { return type == DISTRIB || CondDistrib_cl::DoesInheritFrom(type); }
  RvVector_sptr GetGiven() const override { return new RvVector_cl(); }
  RvVector_sptr GetTarget() const override { return GetRVs(); }
};

#endif
