// The roots of the prior family: priors of table CPDs, discrete and Gaussian.
#ifndef VORN_PROB_PRIOR_H
#define VORN_PROB_PRIOR_H

#include "prob/vars.h"

// A prior follows its CPD when the CPD's scope changes from oldVars to newVars.
class Prior_cl {
 public:
  virtual ~Prior_cl() = default;
  virtual void Reset(const RvVector_sptr& oldVars, const RvVector_sptr& newVars) {}
};

class TableCpdPrior_cl : public Prior_cl {};

// A prior per line of a Gaussian table.
class GaussianTableCpdPrior_cl : public Prior_cl {
 public:
  virtual Prior_cl* GetPrior(int line) = 0;
};

#endif
