// Domains: the values a variable can take, by index; name, int, real and composite kinds.
#include "prob/domain.h"

#include <cerrno>
#include <cfloat>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "pipeline/prop_tree.h"
#include "pipeline/prop_tree_printer.h"
#include "pipeline/utils.h"

namespace {

[[noreturn]] void RealTypeError() {
  std::cerr << "RealDomain_cl: Type Error" << std::endl;
  abort();
}

template <class To>
To ConvertDomain(const Domain_sptr& domain) {
  return To(dynamic_cast<decltype(To().Get())>(domain.Get()));
}

// The "val" attribute of a bound element as a number; 0 when it is absent or no number starts it.
int ReadRealBound(PropertyTreeIter_cl* child, double* out) {
  Property_cl text;
  if (!child->GetProperty("val", &text)) return 0;
  char* end;
  *out = strtod(text.GetText(), &end);
  return end != text.GetText();
}

// As ReadRealBound, and a number that an int cannot hold is bad too.
int ReadIntBound(PropertyTreeIter_cl* child, int* out) {
  Property_cl text;
  if (!child->GetProperty("val", &text)) return 0;
  char* end;
  errno = 0;
  long value = strtol(text.GetText(), &end, 10);
  if (end == text.GetText() || errno == ERANGE || value < INT_MIN || value > INT_MAX) return 0;
  *out = static_cast<int>(value);
  return 1;
}

[[noreturn]] void BoundError(int isLower) {
  std::cerr << (isLower ? "error: reading lower bound value" : "error: reading upper bound value") << std::endl;
  abort();
}

// Reads the "lower" and "upper" children of a bounded domain element; other children are ignored.
template <class T, class Read, class Set>
void ReadBounds(PropertyTreeIter_cl* iter, Read read, Set set) {
  PropertyTreeIter_cl* child = iter->Clone();
  for (child->FirstChild(); child->NotNull(); child->NextSibling()) {
    int isLower = child->IsNameEqual("lower");
    if (!isLower && !child->IsNameEqual("upper")) continue;
    T value;
    if (!read(child, &value)) BoundError(isLower);
    set(isLower, value);
  }
  delete child;
}

}  // namespace

DiscreteDomain_sptr Conv2DiscreteDomain(const Domain_sptr& domain) { return ConvertDomain<DiscreteDomain_sptr>(domain); }
NameDomain_sptr Conv2NameDomain(const Domain_sptr& domain) { return ConvertDomain<NameDomain_sptr>(domain); }
IntDomain_sptr Conv2IntDomain(const Domain_sptr& domain) { return ConvertDomain<IntDomain_sptr>(domain); }
RealDomain_sptr Conv2RealDomain(const Domain_sptr& domain) { return ConvertDomain<RealDomain_sptr>(domain); }
CompositeDomain_sptr Conv2CompositeDomain(const Domain_sptr& domain) {
  return ConvertDomain<CompositeDomain_sptr>(domain);
}

// ---------------------------------------------------------------- Domain_cl

double Domain_cl::ParseRealValue(const char* text) const { return DBL_MAX; }

void Domain_cl::Add(const Value_cl* value) {
  std::cerr << "Domain_cl::Add: a domain of type " << GetType() << " cannot grow" << std::endl;
  abort();
}

Name_sptr Domain_cl::ToString(const char* separator) const { abort(); }

// ---------------------------------------------------------------- IntDomain_cl

IntDomain_cl::IntDomain_cl(int lower, int upper) : DiscreteDomain_cl(0, 0), iLower(lower), iUpper(upper) {
  SetBounds(lower, upper);
}

void IntDomain_cl::SetBounds(int lower, int upper) {
  long long size = static_cast<long long>(upper) - lower + 1;
  if (size > INT_MAX) {
    std::cerr << "IntDomain_cl: domain of " << size << " values is too large" << std::endl;
    abort();
  }
  iLower = lower;
  iUpper = upper;
  // Bounds the wrong way round hold no value.
  iDomainSize = size < 0 ? 0 : static_cast<int>(size);
}

Value_cl* IntDomain_cl::IndexToValue(const Index_cl& index) const {
  return new IntValue_cl(static_cast<int>(static_cast<long long>(iLower) + static_cast<int>(index)));
}

Index_cl IntDomain_cl::ValueToIndex(const Value_cl* value) const {
  return static_cast<int>(static_cast<long long>(static_cast<const IntValue_cl*>(value)->GetValue()) - iLower);
}

int IntDomain_cl::ParseDiscreteValue(const char* text) const {
  char* end;
  long value = strtol(text, &end, 10);
  if (end == text || value < iLower || value > iUpper) return -1;
  return static_cast<int>(value - iLower);
}

int IntDomain_cl::IsLegalValue(const Value_cl* value) const {
  int v = static_cast<const IntValue_cl*>(value)->GetValue();
  return v >= iLower && v <= iUpper;
}

void IntDomain_cl::Print(PropertyTreePrinter_cl* printer) const {
  char lower[16], upper[16];
  snprintf(lower, sizeof lower, "%d", iLower);
  snprintf(upper, sizeof upper, "%d", iUpper);
  printer->StartNode("domain", "type", "int");
  printer->EmptyNode("lower", "val", lower);
  printer->EmptyNode("upper", "val", upper);
  printer->EndNode("domain");
}

// ---------------------------------------------------------------- NameDomain_cl

Value_cl* NameDomain_cl::IndexToValue(const Index_cl& index) const { return new NameValue_cl(iNames[index]); }

Index_cl NameDomain_cl::ValueToIndex(const Value_cl* value) const {
  return NameToIndex(static_cast<const NameValue_cl*>(value)->GetValue());
}

int NameDomain_cl::ParseDiscreteValue(const char* text) const {
  for (int i = 0; i < iDomainSize; i++)
    if (iNames[i]->IsEqual(text)) return i;
  return -1;
}

void NameDomain_cl::Add(const Value_cl* value) { Add(static_cast<const NameValue_cl*>(value)->GetValue()); }

void NameDomain_cl::Add(Name_sptr name) {
  iNames.AddLast(name);
  iDomainSize++;
}

int NameDomain_cl::IsLegalValue(const Value_cl* value) const { return ValueToIndex(value) >= 0; }

int NameDomain_cl::NameToIndex(Name_sptr name) const {
  for (int i = 0; i < iDomainSize; i++)
    if (iNames[i] == name) return i;
  return -1;
}

void NameDomain_cl::Print(PropertyTreePrinter_cl* printer) const {
  printer->StartNode("domain", "type", "name", "ordinal", iOrdinal ? "true" : nullptr);
  for (int i = 0; i < iDomainSize; i++) printer->EmptyNode("val", "name", iNames[i].CStr());
  printer->EndNode("domain");
}

Name_sptr NameDomain_cl::ToString(const char* separator) const { return Utils_cl::NameVecToString(iNames, separator); }

// ---------------------------------------------------------------- RealDomain_cl

Value_cl* RealDomain_cl::IndexToValue(const Index_cl& index) const { RealTypeError(); }
Index_cl RealDomain_cl::ValueToIndex(const Value_cl* value) const { RealTypeError(); }
int RealDomain_cl::GetDomainSize() const { RealTypeError(); }
int RealDomain_cl::IsLegalIndex(const Index_cl& index) const { RealTypeError(); }
int RealDomain_cl::IsFirstIndex(const Index_cl& index) const { RealTypeError(); }
int RealDomain_cl::IsLastIndex(const Index_cl& index) const { RealTypeError(); }

double RealDomain_cl::ParseRealValue(const char* text) const {
  char* end;
  double value = strtod(text, &end);
  if (end == text || !IsLegalValue(value)) return DBL_MAX;
  return value;
}

int RealDomain_cl::IsLegalValue(const Value_cl* value) const {
  return IsLegalValue(static_cast<const RealValue_cl*>(value)->GetValue());
}

void RealDomain_cl::Print(PropertyTreePrinter_cl* printer) const {
  // "%12f" of the largest double takes some 320 characters.
  char text[400];
  printer->StartNode("domain", "type", "real");
  if (iHasLower) {
    snprintf(text, sizeof text, "%12f", iLower);
    printer->EmptyNode("lower", "val", text);
  }
  if (iHasUpper) {
    snprintf(text, sizeof text, "%12f", iUpper);
    printer->EmptyNode("upper", "val", text);
  }
  printer->EndNode("domain");
}

Name_sptr RealDomain_cl::ToString(const char* separator) const { return Name_sptr("Continuous"); }

NameDomain_sptr RealDomain_cl::Discretize(int n) const {
  NameDomain_sptr bins = new NameDomain_cl();
  double width = (iUpper - iLower) / n;
  char text[800];
  for (int i = 0; i < n; i++) {
    snprintf(text, sizeof text, "%.4f - %.4f", iLower + i * width, iLower + (i + 1) * width);
    bins->Add(Name_sptr(text));
  }
  return bins;
}

// ---------------------------------------------------------------- CompositeDomain_cl

void CompositeDomain_cl::AddDomain(Domain_sptr domain) {
  iDomains.AddLast(domain);
  iNumDomains++;
}

Value_cl* CompositeDomain_cl::IndexToValue(const Index_cl& index) const {
  Vector_tmpl<Value_cl*> values(iNumDomains > 0 ? iNumDomains : 1, nullptr);
  for (int i = 0; i < iNumDomains; i++) values.AddLast(iDomains[i]->IndexToValue(index.GetIndexAt(i)));
  return new CompositeValue_cl(values, 1);
}

Index_cl CompositeDomain_cl::ValueToIndex(const Value_cl* value) const {
  const CompositeValue_cl* composite = static_cast<const CompositeValue_cl*>(value);
  Vector_tmpl<int>* indices = new Vector_tmpl<int>(iNumDomains > 0 ? iNumDomains : 1, -1);
  for (int i = 0; i < iNumDomains; i++) indices->AddLast(iDomains[i]->ValueToIndex(composite->GetValueAt(i)));
  return Index_cl(indices);
}

int CompositeDomain_cl::IsDiscrete() const {
  for (int i = 0; i < iNumDomains; i++)
    if (!iDomains[i]->IsDiscrete()) return 0;
  return 1;
}

int CompositeDomain_cl::IsAbstractable() const {
  for (int i = 0; i < iNumDomains; i++)
    if (!iDomains[i]->IsAbstractable()) return 0;
  return 1;
}

int CompositeDomain_cl::GetDomainSize() const {
  int size = 1;
  for (int i = 0; i < iNumDomains; i++) size *= iDomains[i]->GetDomainSize();
  return size;
}

int CompositeDomain_cl::IsLegalValue(const Value_cl* value) const {
  const CompositeValue_cl* composite = static_cast<const CompositeValue_cl*>(value);
  for (int i = 0; i < iNumDomains; i++)
    if (!iDomains[i]->IsLegalValue(composite->GetValueAt(i))) return 0;
  return 1;
}

int CompositeDomain_cl::IsLegalIndex(const Index_cl& index) const {
  for (int i = 0; i < iNumDomains; i++)
    if (!iDomains[i]->IsLegalIndex(index.GetIndexAt(i))) return 0;
  return 1;
}

int CompositeDomain_cl::IsFirstIndex(const Index_cl& index) const {
  for (int i = 0; i < iNumDomains; i++)
    if (!iDomains[i]->IsFirstIndex(index.GetIndexAt(i))) return 0;
  return 1;
}

int CompositeDomain_cl::IsLastIndex(const Index_cl& index) const {
  for (int i = 0; i < iNumDomains; i++)
    if (!iDomains[i]->IsLastIndex(index.GetIndexAt(i))) return 0;
  return 1;
}

int CompositeDomain_cl::IsOrdinal() const {
  for (int i = 0; i < iNumDomains; i++)
    if (!iDomains[i]->IsOrdinal()) return 0;
  return 1;
}

void CompositeDomain_cl::Print(PropertyTreePrinter_cl* printer) const {
  for (int i = 0; i < iNumDomains; i++) iDomains[i]->Print(printer);
}

// ---------------------------------------------------------------- DomainFactory_cl

Domain_sptr DomainFactory_cl::CreateDomain(PropertyTreeIter_cl* iter) {
  if (iter->IsPropertyEqual("type", "name")) {
    NameDomain_sptr domain = new NameDomain_cl();
    int ordinal = 0;
    if (iter->GetBooleanProperty("ordinal", &ordinal) && ordinal) domain->SetOrdinal(1);
    PropertyTreeIter_cl* child = iter->Clone();
    for (child->FirstChild(); child->NotNull(); child->NextSibling()) {
      Name_sptr name = child->GetProperty("name");
      // A value without a name could never be printed or looked up again.
      if (name.IsNull()) {
        std::cerr << "error: reading domain value name" << std::endl;
        abort();
      }
      domain->Add(name);
    }
    delete child;
    return domain;
  }
  if (iter->IsPropertyEqual("type", "real")) {
    RealDomain_sptr domain = new RealDomain_cl();
    ReadBounds<double>(iter, ReadRealBound, [&](int isLower, double x) {
      if (isLower) domain->SetLower(x);
      else domain->SetUpper(x);
    });
    return domain;
  }
  if (iter->IsPropertyEqual("type", "int")) {
    int bounds[2] = {0, 0};
    ReadBounds<int>(iter, ReadIntBound, [&](int isLower, int x) { bounds[isLower ? 0 : 1] = x; });
    return new IntDomain_cl(bounds[0], bounds[1]);
  }
  Name_sptr type = iter->GetProperty("type");
  std::cerr << "error: unknown domain type " << (type.IsNull() ? "<NULL>" : type.CStr()) << std::endl;
  abort();
}

Domain_sptr DomainFactory_cl::CreateDomain(char* text, const char* delimiters, const char* realWord) {
  if (realWord && text && strcmp(text, realWord) == 0) return new RealDomain_cl();
  NameDomain_sptr domain = new NameDomain_cl();
  if (!text) return domain;
  char* save = nullptr;
  for (char* token = strtok_r(text, delimiters, &save); token; token = strtok_r(nullptr, delimiters, &save))
    domain->Add(Name_sptr(token));
  return domain;
}

NameDomain_sptr DomainFactory_cl::CreateIntegerDomain(int first, int n) {
  NameDomain_sptr domain = new NameDomain_cl();
  char text[16];
  for (int i = 0; i < n; i++) {
    snprintf(text, sizeof text, "%d", static_cast<int>(static_cast<long long>(first) + i));
    domain->Add(Name_sptr(text));
  }
  return domain;
}
