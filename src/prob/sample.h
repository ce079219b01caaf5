// A joint assignment that carries a weight and a probability.
#ifndef VORN_PROB_SAMPLE_H
#define VORN_PROB_SAMPLE_H

#include <ostream>

#include "prob/inst_vector.h"

class Sample_cl;

class Sample_sptr : public Sptr_tmpl<Sample_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

Sample_sptr Conv2Sample(const VarsVector_sptr& vars);

class Sample_cl : public InstVector_cl {
 public:
  explicit Sample_cl(const RvVector_sptr& rvs, double weight = 1.0, double prob = 1.0)
      : InstVector_cl(rvs), iWeight(weight), iProb(prob) {}
  // A deep copy of the values, with the sample's weight and probability when it is one.
  explicit Sample_cl(const InstVector_sptr& insts);

  double GetWeight() const { return iWeight; }
  void SetWeight(double weight) { iWeight = weight; }
  double GetProb() const { return iProb; }
  void SetProb(double prob) { iProb = prob; }
  // A negative factor or stored value (-1.0 marks an unknown probability) leaves -1.0 for good.
  void MultProb(double p);

  // The instantiations, then " Weight=" and the weight.
  void PrintOs(std::ostream& out) const override;
  // "Sample, weight <w>, prob <p>:" and the instantiations, five to a line, on the standard output.
  void Display() const;

 private:
  double iWeight;
  double iProb;
};

#endif
