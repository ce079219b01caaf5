// Multinomials: distribution operations of discrete tables.
#include "prob/multinomial.h"

#include <iomanip>

Multinomial_sptr Conv2Multinomial(const Measure_sptr& m) { return Conv2X<Multinomial_sptr>(m, "Multinomial_cl"); }

Multinomial_cl::Multinomial_cl(SingleRv_sptr rv) : Factor_cl(new RvVector_cl(SingleVar_sptr(rv)), 0, 1) {
  Normalize(1.0);
}

int Multinomial_cl::DoesInheritFrom(int type) const {
  return type == MULTINOMIAL || Factor_cl::DoesInheritFrom(type) || Distrib_cl::DoesInheritFrom(type) ||
         Cpd_cl::DoesInheritFrom(type);
}

int Multinomial_cl::IsDeterministic() const {
  int nonZero = 0;
  for (int i = 0; i < iSize; i++) nonZero += iValues[i] != 0.0;
  return nonZero == 1;
}

void Multinomial_cl::Sample(Sample_sptr const& sample) {
  double total = GetEntriesSum();
  double u = iRandom.SampleUniform() * total;
  int cell = 0;
  // The last cell with mass takes the rounding remainder.
  int last = 0;
  for (int i = 0; i < iSize; i++) {
    if (iValues[i] > 0.0) last = i;
  }
  for (cell = 0; cell < last; cell++) {
    if (u < iValues[cell]) break;
    u -= iValues[cell];
  }
  sample->SetValue(cell);
  sample->MultProb(iValues[cell] / total);
}

void Multinomial_cl::WriteFile(std::ostream& out) const {
  std::ios_base::fmtflags flags = out.flags();
  std::streamsize precision = out.precision(8);
  for (int i = 0; i < iSize; i++) {
    if (i > 0) out << ", ";
    out << std::left << std::setw(5) << iValues[i];
  }
  out.flags(flags);
  out.precision(precision);
}

void Multinomial_cl::WriteFile(std::ostream& out, int indent) const {
  Indent(out, indent);
  WriteFile(out);
  out << ";\n";
}
