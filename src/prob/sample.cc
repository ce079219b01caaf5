// A joint assignment that carries a weight and a probability.
#include "prob/sample.h"

#include <iostream>

Sample_sptr Conv2Sample(const VarsVector_sptr& vars) { return Sample_sptr(dynamic_cast<Sample_cl*>(vars.Get())); }

Sample_cl::Sample_cl(const InstVector_sptr& insts) : InstVector_cl(insts), iWeight(1.0), iProb(1.0) {
  if (Sample_sptr sample = Conv2Sample(insts)) {
    iWeight = sample->iWeight;
    iProb = sample->iProb;
  }
}

void Sample_cl::MultProb(double p) {
  if (p < 0.0 || iProb < 0.0) iProb = -1.0;
  else iProb *= p;
}

void Sample_cl::PrintOs(std::ostream& out) const {
  InstVector_cl::PrintOs(out);
  out << " Weight=" << iWeight;
}

void Sample_cl::Display() const {
  std::cout << "Sample, weight " << iWeight << ", prob " << iProb << ":" << std::endl;
  for (int i = 0; i < iSize; i++) {
    iData[i]->PrintOs(std::cout);
    std::cout << ((i % 5 == 4 || i == iSize - 1) ? "\n" : " ");
  }
  std::cout.flush();
}
