// Discrete tables over a scope.
#include "prob/factor.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "eval/math_util.h"
#include "pipeline/prop_tree.h"
#include "pipeline/xml_parser.h"
#include "prob/bn_cpd.h"

Factor_sptr Conv2Factor(const Measure_sptr& m) { return Conv2X<Factor_sptr>(m, "Factor_cl"); }

RvVector_sptr SortById(RvVector_sptr scope) {
  RvVector_sptr sorted = new RvVector_cl(scope->GetNumberOfVars() + 1);
  sorted->Merge(scope);
  std::stable_sort(sorted->GetData(), sorted->GetData() + sorted->GetSize(),
                   [](const SingleRv_sptr& a, const SingleRv_sptr& b) { return a->GetId() < b->GetId(); });
  sorted->SetChanged();
  return sorted;
}

void Factor_cl::SetScope(RvVector_sptr scope, int sort) {
  iRVs = sort ? SortById(scope) : scope;
  iSize = iRVs->GetJointDomainSize();
  if (iSize < 0) {
    std::cerr << "Factor_cl: the joint domain size of " << VarsVector_sptr(iRVs) << " does not fit an int" << std::endl;
    abort();
  }
  iValues = new double[iSize > 0 ? iSize : 1];
}

Factor_cl::Factor_cl(RvVector_sptr scope, int sort, int initialise) {
  SetScope(scope, sort);
  if (initialise) Initialize(1.0);
}

Factor_cl::Factor_cl(RvVector_sptr scope, double* values, int copy) {
  if (copy) {
    SetScope(scope, 1);
    std::memcpy(iValues, values, sizeof(double) * iSize);
    return;
  }
  iRVs = SortById(scope);
  iSize = iRVs->GetJointDomainSize();
  iValues = values;
}

Factor_cl::Factor_cl(InstVector_sptr inst, double at, double others) {
  SetScope(new RvVector_cl(VarsVector_sptr(inst), 1), 1);
  Initialize(others);
  iValues[GetIndexOf(inst)] = at;
}

Factor_cl::Factor_cl(Name_sptr name, int lower, int upper) {
  SetScope(new RvVector_cl(SingleVar_sptr(new SingleRv_cl(name, new IntDomain_cl(lower, upper)))), 0);
  Initialize(0.0);
}

Factor_cl::Factor_cl(BnCpd_sptr cpd) {
  RvVector_sptr vars = cpd->GetRVs();
  SetScope(vars, 1);
  int childSize = cpd->GetRv()->GetDomain()->GetDomainSize();
  int rows = cpd->GetParents()->GetJointDomainSize();
  FactorMapping_cl toSorted(vars, iRVs);
  for (int r = 0; r < rows; r++) {
    Cpd_sptr line = cpd->GetLine(r);
    for (int c = 0; c < childSize; c++) iValues[toSorted.GetFirst()[r * childSize + c]] = line->GetValue(c);
  }
}

Factor_cl::Factor_cl(Name_sptr file) {
  XmlParser_cl parser;
  xercesc::DOMDocument* document = parser.Parse(file.CStr() ? file.CStr() : "", false, false);
  XmlIter_cl root(document->getDocumentElement());
  ReadXml(&root, file.CStr() ? file.CStr() : "");
}

Factor_cl::Factor_cl(PropertyTreeIter_cl* root) { ReadXml(root, "the document"); }

namespace {

[[noreturn]] void XmlFault(const char* source, const std::string& what) {
  std::cerr << "Factor_cl: " << source << ": " << what << std::endl;
  abort();
}

}  // namespace

void Factor_cl::ReadXml(PropertyTreeIter_cl* root, const char* source) {
  PropertyTreeIter_cl* iter = root->Clone();
  iter->FirstChild();
  if (!iter->NotNull() || !iter->IsNameEqual("RvVec")) XmlFault(source, "the first element is not RvVec");
  RvVector_sptr scope = new RvVector_cl();
  PropertyTreeIter_cl* var = iter->Clone();
  long long cells = 1;
  for (var->FirstChild(); var->NotNull(); var->NextSibling()) {
    Name_sptr name = var->GetProperty("Name");
    if (name.IsNull()) XmlFault(source, "a variable of RvVec has no Name");
    PropertyTreeIter_cl* domainIter = var->Clone();
    domainIter->FirstChild();
    if (!domainIter->NotNull()) XmlFault(source, std::string("variable ") + name->GetText() + " has no domain");
    Domain_sptr domain = DomainFactory_cl::CreateDomain(domainIter);
    delete domainIter;
    if (!domain->IsDiscrete()) XmlFault(source, std::string("variable ") + name->GetText() + " is not discrete");
    cells *= domain->GetDomainSize();
    if (cells > kMaxFileCells) XmlFault(source, "the table has more than " + std::to_string(kMaxFileCells) + " cells");
    scope->AddLast(new SingleRv_cl(name, domain));
  }
  delete var;
  SetScope(scope, 1);
  iter->NextSibling();
  if (iter->NotNull() && iter->IsNameEqual("JointDistribution")) {
    double defaultValue = 0.0;
    iter->GetDoubleProperty("DefaultVal", &defaultValue, 0.0);
    Initialize(defaultValue);
    PropertyTreeIter_cl* cell = iter->Clone();
    for (cell->FirstChild(); cell->NotNull(); cell->NextSibling()) {
      int entry = -1;
      double value = 0.0;
      cell->GetIntProperty("Entry", &entry, -1);
      cell->GetDoubleProperty("Value", &value, 0.0);
      if (entry < 0 || entry >= iSize)
        XmlFault(source,
                 "entry " + std::to_string(entry) + " is outside the table of " + std::to_string(iSize) + " cells");
      iValues[entry] = value;
    }
    delete cell;
  } else {
    Initialize(1.0);
  }
  delete iter;
  Normalize(1.0);
}

Factor_cl::Factor_cl(const Factor_cl& other) : Measure_cl(other), iRVs(other.iRVs), iSize(other.iSize) {
  iValues = new double[iSize > 0 ? iSize : 1];
  std::memcpy(iValues, other.iValues, sizeof(double) * iSize);
}

Factor_cl::~Factor_cl() { delete[] iValues; }

void Factor_cl::CheckSameSize(const Factor_sptr& other, const char* operation) const {
  if (other->iSize == iSize) return;
  std::cerr << "Factor_cl::" << operation << ": table sizes differ, " << iSize << " and " << other->iSize << std::endl;
  abort();
}

void Factor_cl::CopyMyValues(Measure_sptr target) const {
  Factor_sptr factor = Conv2Factor(target);
  CheckSameSize(factor, "CopyMyValues");
  std::memcpy(factor->iValues, iValues, sizeof(double) * iSize);
  factor->ValueChange();
}

int Factor_cl::GetIndexOf(InstVector_sptr inst) const {
  int n = iRVs->GetNumberOfVars();
  if (inst->GetNumberOfVars() == n && iRVs->IsEqualStrict(inst)) return inst->GetIndex();
  int index = 0;
  for (int i = 0; i < n; i++) {
    SingleInst_sptr value = inst->GetInst(SingleVar_sptr(iRVs->GetRv(i)));
    if (value.IsNull()) {
      std::cerr << "Factor_cl::GetValue: variable " << iRVs->GetRv(i)->GetName() << " is not in the assignment"
                << std::endl;
      abort();
    }
    index = index * iRVs->GetRv(i)->GetDomain()->GetDomainSize() + value->GetIndex();
  }
  return index;
}

void Factor_cl::SetValues(const double* values, int n) {
  std::memcpy(iValues, values, sizeof(double) * std::min(n, iSize));
  ValueChange();
}

void Factor_cl::Initialize(double value) {
  std::fill(iValues, iValues + iSize, value);
  ValueChange();
}

// ---------------------------------------------------------------- aggregates

double Factor_cl::GetEntriesSum() const {
  double sum = 0.0;
  for (int i = 0; i < iSize; i++) sum += iValues[i];
  return sum;
}

double Factor_cl::GetMaxValue() const { return iValues[GetMaxIndex()]; }
double Factor_cl::GetMinValue() const { return iValues[GetMinIndex()]; }

int Factor_cl::GetMaxIndex() const { return static_cast<int>(std::max_element(iValues, iValues + iSize) - iValues); }
int Factor_cl::GetMinIndex() const { return static_cast<int>(std::min_element(iValues, iValues + iSize) - iValues); }

namespace {

// (H/S + ln S)/ln 2 from the sum S and H = -sum c ln c; 0.0 for an empty sum.
double EntropyBits(double sum, double h) {
  if (sum == 0.0) return 0.0;
  return (h / sum + std::log(sum)) / std::log(2.0);
}

}  // namespace

double Factor_cl::GetEntropy() const {
  double sum = 0.0, h = 0.0;
  for (int i = 0; i < iSize; i++) {
    sum += iValues[i];
    if (iValues[i] != 0.0) h -= iValues[i] * std::log(iValues[i]);
  }
  return EntropyBits(sum, h);
}

// The cells of the fixed value are those of small cell s of a mapping from that variable; with a
// scope of two variables they are the walk over the other variable.
double Factor_cl::GetEntropyOfInstantiation(SingleInst_sptr inst) const {
  FactorMapping_cl mapping(new RvVector_cl(SingleVar_sptr(inst->GetRv())), iRVs);
  int base = mapping.GetFirst()[inst->GetIndex()];
  double sum = 0.0, h = 0.0;
  for (int k = 0; k < mapping.GetNumPerSmall(); k++) {
    double c = iValues[base + mapping.GetSecond()[k]];
    sum += c;
    if (c != 0.0) h -= c * std::log(c);
  }
  return EntropyBits(sum, h);
}

double Factor_cl::GetKLDist(Measure_sptr other) {
  Factor_sptr q = Conv2Factor(other);
  CheckSameSize(q, "GetKLDist");
  double sp = GetEntriesSum(), sq = q->GetEntriesSum();
  double d = 0.0;
  for (int i = 0; i < iSize; i++) {
    double p = iValues[i];
    if (p < 1e-10) continue;
    if (q->iValues[i] == 0.0) return 1.7976931348623157e308;
    d += p * (std::log(p) - std::log(q->iValues[i]));
  }
  if (sp == 0.0) return 0.0;
  return (d / sp + std::log(sq) - std::log(sp)) / std::log(2.0);
}

double Factor_cl::GetL1Norm(Measure_sptr other) {
  Factor_sptr q = Conv2Factor(other);
  CheckSameSize(q, "GetL1Norm");
  Normalize(1.0);
  q->Normalize(1.0);
  double sum = 0.0;
  for (int i = 0; i < iSize; i++) sum += std::fabs(iValues[i] - q->iValues[i]);
  return sum;
}

double Factor_cl::MaxDifference(Factor_sptr other) const {
  CheckSameSize(other, "MaxDifference");
  double most = 0.0;
  for (int i = 0; i < iSize; i++) most = std::max(most, std::fabs(iValues[i] - other->iValues[i]));
  return most;
}

int Factor_cl::IsEqualValues(Factor_sptr other) const {
  return other->iSize == iSize && std::equal(iValues, iValues + iSize, other->iValues);
}

// ---------------------------------------------------------------- through a mapping

namespace {

// Calls fn(s, b) for each small cell s and each of its big cells b, in order.
template <class Fn>
inline void ForEachPair(const FactorMapping_cl* mapping, Fn fn) {
  const int* first = mapping->GetFirst();
  const int* second = mapping->GetSecond();
  int perSmall = mapping->GetNumPerSmall();
  for (int s = 0; s < mapping->GetNumSmall(); s++) {
    int base = first[s];
    for (int k = 0; k < perSmall; k++) fn(s, base + second[k]);
  }
}

}  // namespace

void Factor_cl::SumOut(Factor_sptr other, FactorMapping_cl* mapping) {
  const double* big = other->iValues;
  std::fill(iValues, iValues + iSize, 0.0);
  ForEachPair(mapping, [&](int s, int b) { iValues[s] += big[b]; });
  ValueChange();
}

void Factor_cl::MaxOut(Factor_sptr other, FactorMapping_cl* mapping) {
  const double* big = other->iValues;
  std::fill(iValues, iValues + iSize, 0.0);
  ForEachPair(mapping, [&](int s, int b) { iValues[s] = std::max(iValues[s], big[b]); });
  ValueChange();
}

void Factor_cl::AverageOut(Factor_sptr other, FactorMapping_cl* mapping) {
  SumOut(other, mapping);
  MultiplyBy(1.0 / mapping->GetNumPerSmall());
}

namespace {

// small[s] = the extreme of its big cells under pick, starting from the first of them.
template <class Pick>
void Extreme(double* small, const double* big, const FactorMapping_cl* mapping, Pick pick) {
  const int* first = mapping->GetFirst();
  for (int s = 0; s < mapping->GetNumSmall(); s++) small[s] = big[first[s] + mapping->GetSecond()[0]];
  ForEachPair(mapping, [&](int s, int b) { small[s] = pick(small[s], big[b]); });
}

}  // namespace

void Factor_cl::Minimize(Factor_sptr other, FactorMapping_cl* mapping) {
  Extreme(iValues, other->iValues, mapping, [](double a, double b) { return std::min(a, b); });
  ValueChange();
}

void Factor_cl::Maximize(Factor_sptr other, FactorMapping_cl* mapping) {
  Extreme(iValues, other->iValues, mapping, [](double a, double b) { return std::max(a, b); });
  ValueChange();
}

void Factor_cl::Multiply(Factor_sptr other, FactorMapping_cl* mapping) {
  const double* small = other->iValues;
  ForEachPair(mapping, [&](int s, int b) { iValues[b] *= small[s]; });
  ValueChange();
}

void Factor_cl::Divide(Factor_sptr other, FactorMapping_cl* mapping) {
  const double* small = other->iValues;
  ForEachPair(mapping, [&](int s, int b) {
    if (small[s] > 0) iValues[b] /= small[s];
  });
  ValueChange();
}

void Factor_cl::AddUp(Factor_sptr other, FactorMapping_cl* mapping, int average, double weight) {
  const double* small = other->iValues;
  double c = average ? weight / mapping->GetNumPerSmall() : weight;
  ForEachPair(mapping, [&](int s, int b) { iValues[b] += c * small[s]; });
  ValueChange();
}

void Factor_cl::CopyFromSubFactor(Factor_sptr other, FactorMapping_cl* mapping) {
  const double* small = other->iValues;
  ForEachPair(mapping, [&](int s, int b) { iValues[b] = small[s]; });
  ValueChange();
}

void Factor_cl::Mask(Factor_sptr other, FactorMapping_cl* mapping, double value, double replacement) {
  const double* small = other->iValues;
  ForEachPair(mapping, [&](int s, int b) {
    if (small[s] == value) iValues[b] = replacement;
  });
  ValueChange();
}

void Factor_cl::Instantiate(Factor_sptr other, FactorMapping_cl* mapping, int s) {
  int base = mapping->GetFirst()[s];
  for (int k = 0; k < mapping->GetNumPerSmall(); k++) iValues[base + mapping->GetSecond()[k]] = other->iValues[k];
  ValueChange();
}

// ---------------------------------------------------------------- same scope

void Factor_cl::Multiply(Factor_sptr other) {
  CheckSameSize(other, "Multiply");
  for (int i = 0; i < iSize; i++) iValues[i] *= other->iValues[i];
  ValueChange();
}

void Factor_cl::Add(Factor_sptr other) {
  CheckSameSize(other, "Add");
  for (int i = 0; i < iSize; i++) iValues[i] += other->iValues[i];
  ValueChange();
}

void Factor_cl::MultiplyBy(double factor) {
  for (int i = 0; i < iSize; i++) iValues[i] *= factor;
  ValueChange();
}

void Factor_cl::DivideBy(double divisor) {
  for (int i = 0; i < iSize; i++) iValues[i] /= divisor;
  ValueChange();
}

void Factor_cl::Minimum(Factor_sptr other) {
  CheckSameSize(other, "Minimum");
  for (int i = 0; i < iSize; i++) iValues[i] = std::min(iValues[i], other->iValues[i]);
  ValueChange();
}

void Factor_cl::Maximum(Factor_sptr other) {
  CheckSameSize(other, "Maximum");
  for (int i = 0; i < iSize; i++) iValues[i] = std::max(iValues[i], other->iValues[i]);
  ValueChange();
}

void Factor_cl::Binarize(double threshold, double low, double high) {
  for (int i = 0; i < iSize; i++) iValues[i] = iValues[i] > threshold ? high : low;
  ValueChange();
}

void Factor_cl::DivideBy(Factor_sptr other) {
  CheckSameSize(other, "DivideBy");
  for (int i = 0; i < iSize; i++)
    if (iValues[i] != 0.0) iValues[i] /= other->iValues[i];
  ValueChange();
}

void Factor_cl::DivideByMe(Factor_sptr other) {
  CheckSameSize(other, "DivideByMe");
  for (int i = 0; i < iSize; i++) iValues[i] = other->iValues[i] == 0.0 ? 0.0 : other->iValues[i] / iValues[i];
  ValueChange();
}

void Factor_cl::SameDomainDivideBy(Factor_sptr other) {
  CheckSameSize(other, "SameDomainDivideBy");
  const double* q = other->iValues;
  double m = 10000.0;
  for (int i = 0; i < iSize; i++)
    if (q[i] != 0.0 && iValues[i] != 0.0) m = std::min(m, q[i]);
  m = std::max(m, 1e-100);
  for (int i = 0; i < iSize; i++) iValues[i] = iValues[i] != 0.0 && q[i] > 1e-100 ? iValues[i] / (q[i] / m) : 0.0;
  ValueChange();
}

void Factor_cl::SubstractBy(Factor_sptr other) {
  CheckSameSize(other, "SubstractBy");
  for (int i = 0; i < iSize; i++)
    if (iValues[i] < 1e100) iValues[i] -= other->iValues[i];
  ValueChange();
}

void Factor_cl::SubstractByMe(Factor_sptr other) {
  CheckSameSize(other, "SubstractByMe");
  for (int i = 0; i < iSize; i++) iValues[i] = other->iValues[i] < 1e100 ? other->iValues[i] - iValues[i] : 1e100;
  ValueChange();
}

// ---------------------------------------------------------------- whole-table

double Factor_cl::Normalize(double z) {
  if (z <= 0.0) std::cerr << "Are you sure ? (abort, fail, or quit ?)" << std::endl;
  double sum = GetEntriesSum();
  // An all-zero table has nothing to scale; it stays zero rather than turning into NaN.
  if (sum == 0.0) return 0.0;
  double multiplier = z / sum;
  MultiplyBy(multiplier);
  return 1.0 / multiplier;
}

void Factor_cl::NormalizeLog() {
  double s = MathUtils::LogOfSumOfExps(iValues, iSize);
  // Every cell at log zero: the table is all zeros, not uniform.
  for (int i = 0; i < iSize; i++) iValues[i] = s <= MathUtils::kMissingReal ? 0.0 : std::exp(iValues[i] - s);
  ValueChange();
}

void Factor_cl::LinearCombination(Measure_sptr other, double a, double b, double c, double d, int normaliseThis,
                                  int normaliseOther, int normaliseResult) {
  Factor_sptr q = Conv2Factor(other);
  CheckSameSize(q, "LinearCombination");
  if (normaliseThis) a /= GetEntriesSum();
  if (normaliseOther) b /= q->GetEntriesSum();
  double constant = c / iSize + d;
  for (int i = 0; i < iSize; i++) iValues[i] = a * iValues[i] + b * q->iValues[i] + constant;
  if (normaliseResult) DivideBy(GetEntriesSum());
  ValueChange();
}

Measure_sptr Factor_cl::ReduceTo(RvVector_sptr vars, Measure_sptr result) {
  Factor_sptr target = result.IsNull() ? Factor_sptr(new Factor_cl(vars, 1, 0)) : Conv2Factor(result);
  FactorMapping_cl mapping(target->iRVs, iRVs);
  target->SumOut(this, &mapping);
  return target;
}

Measure_sptr Factor_cl::MinimizeTo(RvVector_sptr vars) {
  Factor_sptr target = new Factor_cl(vars, 1, 0);
  FactorMapping_cl mapping(target->iRVs, iRVs);
  target->Minimize(this, &mapping);
  return target;
}

Measure_sptr Factor_cl::Instantiate(InstVector_sptr inst, Measure_sptr result) {
  RvVector_sptr fixed = iRVs->GetIntersection(inst, 1);
  Factor_sptr target =
      result.IsNull() ? Factor_sptr(new Factor_cl(iRVs->GetDifference(inst, 1), 0, 0)) : Conv2Factor(result);
  FactorMapping_cl mapping(fixed, iRVs);
  int s = 0;
  for (int i = 0; i < fixed->GetNumberOfVars(); i++) {
    s = s * fixed->GetRv(i)->GetDomain()->GetDomainSize() + inst->GetInst(SingleVar_sptr(fixed->GetRv(i)))->GetIndex();
  }
  int base = mapping.GetFirst()[s];
  for (int k = 0; k < mapping.GetNumPerSmall(); k++) target->iValues[k] = iValues[base + mapping.GetSecond()[k]];
  target->ValueChange();
  return target;
}

Factor_sptr Factor_cl::MakeConditional(RvVector_sptr given, int alreadyGiven) {
  if (!alreadyGiven) given = iRVs->GetRest(given);
  Factor_sptr marginal = Conv2Factor(ReduceTo(given, Measure_sptr()));
  FactorMapping_cl mapping(marginal->iRVs, iRVs);
  Divide(marginal, &mapping);
  return marginal;
}

void Factor_cl::Approximate(Measure_sptr m) {
  InstVector_sptr inst = new InstVector_cl(iRVs);
  RvMapping_sptr mapping = new RvMapping_cl(*m->GetRVs(), *inst, 0);
  for (int i = 0; i < iSize; i++) {
    inst->SetValue(i);
    iValues[i] = m->GetValueOfSuperset(inst, mapping);
  }
  ValueChange();
}

namespace {

Factor_sptr UnionFactor(const Factor_sptr& a, const Factor_sptr& b) {
  return new Factor_cl(RvVector_cl::UnionRvVectors(a->GetRVs(), b->GetRVs(), 1, 1), 1, 0);
}

}  // namespace

Factor_sptr Factor_cl::AddFactors(Factor_sptr a, Factor_sptr b) {
  Factor_sptr result = UnionFactor(a, b);
  FactorMapping_cl fromA(a->iRVs, result->iRVs), fromB(b->iRVs, result->iRVs);
  result->CopyFromSubFactor(a, &fromA);
  result->AddUp(b, &fromB, 0, 1.0);
  return result;
}

Factor_sptr Factor_cl::MultiplyFactors(Factor_sptr a, Factor_sptr b) {
  Factor_sptr result = UnionFactor(a, b);
  FactorMapping_cl fromA(a->iRVs, result->iRVs), fromB(b->iRVs, result->iRVs);
  result->CopyFromSubFactor(a, &fromA);
  result->Multiply(b, &fromB);
  return result;
}

void Factor_cl::Translate(Translation_sptr translation, int unique) {
  iRVs = translation->TranslateRvVector(iRVs, unique);
}

void Factor_cl::WriteFile(std::ostream& out, double threshold) const {
  out << "Factor_cl: " << VarsVector_sptr(iRVs) << std::endl;
  for (int i = 0; i < iSize; i++) {
    if (!(iValues[i] > threshold)) continue;
    out << "line=" << i << " " << VarsVector_sptr(InstVector_cl::GetIndexAssignment(i, iRVs)) << " val=" << iValues[i]
        << std::endl;
  }
}
