// Linear Gaussian CPDs.
#include "prob/gaussian_cpd.h"

#include <cmath>
#include <cstdlib>
#include <iostream>

GaussianCpd_sptr Conv2GaussianCpd(const Measure_sptr& m) { return Conv2X<GaussianCpd_sptr>(m, "GaussianCpd_cl"); }

GaussianCpd_cl::GaussianCpd_cl(SingleRv_sptr child, RvVector_sptr parents)
    : iChild(child), iParents(new RvVector_cl()), iVars(new RvVector_cl()) {
  if (!parents.IsNull()) iParents->Merge(parents);
  iVars->Merge(iParents);
  iVars->AddLast(child);
  iWeights.AddLast(iParents->GetNumberOfVars(), 0.0);
}

double GaussianCpd_cl::GetLogProb(double x) const {
  double d = x - iMean;
  return -0.5 * (std::log(2.0 * M_PI * iVariance) + d * d / iVariance);
}

double GaussianCpd_cl::ConditionalMean(const InstVector_sptr& inst) const {
  double mean = iMean;
  for (int i = 0; i < iParents->GetNumberOfVars(); i++) {
    SingleInst_sptr value = inst->GetInst(SingleVar_sptr(iParents->GetRv(i)));
    if (value.IsNull()) {
      std::cerr << "GaussianCpd_cl: parent " << iParents->GetRv(i)->GetName() << " is not in the assignment"
                << std::endl;
      abort();
    }
    mean += iWeights[i] * value->GetRealValue();
  }
  return mean;
}

double GaussianCpd_cl::GetLogValue(InstVector_sptr inst) {
  SingleInst_sptr x = inst->GetInst(SingleVar_sptr(iChild));
  if (x.IsNull()) {
    std::cerr << "GaussianCpd_cl: child " << iChild->GetName() << " is not in the assignment" << std::endl;
    abort();
  }
  double d = x->GetRealValue() - ConditionalMean(inst);
  return -0.5 * (std::log(2.0 * M_PI * iVariance) + d * d / iVariance);
}

double GaussianCpd_cl::GetValue(InstVector_sptr inst) { return std::exp(GetLogValue(inst)); }

void GaussianCpd_cl::Sample(Sample_sptr const& sample) {
  double x = ConditionalMean(sample) + std::sqrt(iVariance) * iRandom.SampleNormal();
  sample->GetInst(SingleVar_sptr(iChild))->SetValue(x);
  sample->SetChanged();
  sample->MultProb(GetValue(sample));
}

void GaussianCpd_cl::WriteFile(std::ostream& out) const {
  out << "gaussian { mean = " << iMean << "; var = " << iVariance << "; weights = ";
  for (int i = 0; i < iWeights.GetSize(); i++) out << (i ? ", " : "") << iWeights[i];
  out << "; }";
}

void GaussianCpd_cl::WriteFile(std::ostream& out, int indent) const {
  Indent(out, indent);
  WriteFile(out);
  out << ";\n";
}
