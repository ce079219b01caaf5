// Scopes: ordered vectors of variables with their set algebra, joint sizes and text forms.
#include "prob/vars.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "prob/inst_vector.h"
#include "prob/single_inst.h"

namespace {

int SizeOf(const VarsVector_sptr& vars) { return vars.IsNull() ? 0 : vars->GetNumberOfVars(); }

// The variable itself, or the variable of an instantiation.
SingleRv_sptr RvOf(const SingleVar_sptr& var) {
  if (SingleRv_sptr rv = Conv2SingleRv(var)) return rv;
  return Conv2SingleInst(var)->GetRv();
}

// The first cut of a text list may also end at ';'.
constexpr const char* kFirstDelimiters = "=,; \t\n";
constexpr const char* kDelimiters = "=, \t\n";

}  // namespace

RvVector_sptr Conv2RvVector(const VarsVector_sptr& vars) { return RvVector_sptr(dynamic_cast<RvVector_cl*>(vars.Get())); }

CompositeRv_sptr Conv2CompositeRv(const SingleVar_sptr& var) {
  return CompositeRv_sptr(dynamic_cast<CompositeRv_cl*>(var.Get()));
}

std::ostream& operator<<(std::ostream& out, const VarsVector_sptr& vars) {
  vars->PrintOs(out);
  return out;
}

// ---------------------------------------------------------------- VarsVector_cl

void VarsVector_cl::PrintOs(std::ostream& out) const {
  for (int i = 0; i < GetNumberOfVars(); i++) {
    if (i > 0) out << " ";
    GetVar(i)->PrintOs(out);
  }
}

int VarsVector_cl::GetJointDomainSize() const {
  int32_t product = 1;
  for (int i = 0; i < GetNumberOfVars(); i++) {
    // Wrapping multiplication, so that an overflow shows as a drop instead of undefined behaviour.
    int32_t next = static_cast<int32_t>(static_cast<uint32_t>(product) *
                                        static_cast<uint32_t>(GetVar(i)->GetJointDomainSize()));
    if (next < product) return -1;
    product = next;
  }
  return product;
}

long long VarsVector_cl::GetMaxJointDomainSize() const {
  long long product = 1;
  for (int i = 0; i < GetNumberOfVars(); i++) {
    long long next = static_cast<long long>(static_cast<unsigned long long>(product) *
                                            static_cast<unsigned long long>(GetVar(i)->GetJointDomainSize()));
    if (next < product) return -1;
    product = next;
  }
  return product;
}

long long VarsVector_cl::GetHybridDomainSize(int n) const {
  long long product = 1;
  for (int i = 0; i < GetNumberOfVars(); i++) {
    long long factor = GetVar(i)->GetHybridDomainSize(n);
    if (factor > 0 && product > LLONG_MAX / factor) return -1;
    product *= factor;
  }
  return product;
}

int VarsVector_cl::GetNumberOfDiscreteVars() const {
  int n = 0;
  for (int i = 0; i < GetNumberOfVars(); i++) n += GetVar(i)->IsDiscrete() ? 1 : 0;
  return n;
}

int VarsVector_cl::GetNumberOfRealVars() const { return GetNumberOfVars() - GetNumberOfDiscreteVars(); }

int VarsVector_cl::GetFirstEntry(const SingleVar_sptr& var) const {
  for (int i = 0; i < GetNumberOfVars(); i++)
    if (GetVar(i)->GetId() == var->GetId()) return i;
  return -1;
}

int VarsVector_cl::GetRvIndex(const char* name) const {
  for (int i = 0; i < GetNumberOfVars(); i++)
    if (GetVar(i)->GetName()->IsEqual(name)) return i;
  return -1;
}

int VarsVector_cl::IsEqual(const VarsVector_sptr& other) const {
  for (int i = 0; i < SizeOf(other); i++)
    if (!IsMember(other->GetVar(i))) return 0;
  for (int i = 0; i < GetNumberOfVars(); i++)
    if (other.IsNull() || !other->IsMember(GetVar(i))) return 0;
  return 1;
}

int VarsVector_cl::IsEqualStrict(const VarsVector_sptr& other) const {
  if (SizeOf(other) != GetNumberOfVars()) return 0;
  for (int i = 0; i < GetNumberOfVars(); i++)
    if (GetVar(i)->GetId() != other->GetVar(i)->GetId()) return 0;
  return 1;
}

int VarsVector_cl::IsLess(const VarsVector_sptr& other) const {
  int n = GetNumberOfVars(), m = SizeOf(other);
  for (int i = 0; i < n && i < m; i++) {
    int a = GetVar(i)->GetId(), b = other->GetVar(i)->GetId();
    if (a != b) return a < b;
  }
  return n < m;
}

int VarsVector_cl::IsSubset(const VarsVector_sptr& other) const {
  for (int i = 0; i < SizeOf(other); i++)
    if (!IsMember(other->GetVar(i))) return 0;
  return 1;
}

int VarsVector_cl::IsEmptyIntersection(const VarsVector_sptr& other) const {
  for (int i = 0; i < SizeOf(other); i++)
    if (IsMember(other->GetVar(i))) return 0;
  return 1;
}

int VarsVector_cl::NoRvDuplicates() const {
  for (int i = 0; i < GetNumberOfVars(); i++)
    if (GetFirstEntry(GetVar(i)) != i) return 0;
  return 1;
}

int VarsVector_cl::IncludesStructured() const {
  for (int i = 0; i < GetNumberOfVars(); i++)
    if (GetRv(i)->IsStructured()) return 1;
  return 0;
}

RvVector_sptr VarsVector_cl::Select(const VarsVector_sptr& other, int inOther, int unique) const {
  RvVector_sptr result = new RvVector_cl();
  for (int i = 0; i < GetNumberOfVars(); i++) {
    int member = !other.IsNull() && other->IsMember(GetVar(i));
    if (member == (inOther != 0)) result->AddVar(GetRv(i), unique);
  }
  return result;
}

RvVector_sptr VarsVector_cl::GetDifference(const VarsVector_sptr& other, int unique) const {
  return Select(other, 0, unique);
}

RvVector_sptr VarsVector_cl::GetIntersection(const VarsVector_sptr& other, int unique) const {
  return Select(other, 1, unique);
}

int VarsVector_cl::GetIntersectionSize(const VarsVector_sptr& other, int unique) const {
  return Select(other, 1, unique)->GetNumberOfVars();
}

RvVector_sptr VarsVector_cl::GetRest(const SingleVar_sptr& var) const { return GetDifference(new RvVector_cl(var), 0); }

RvVector_sptr VarsVector_cl::SelectKind(int discrete, int unique) const {
  RvVector_sptr result = new RvVector_cl();
  for (int i = 0; i < GetNumberOfVars(); i++)
    if ((GetVar(i)->IsDiscrete() != 0) == (discrete != 0)) result->AddVar(GetRv(i), unique);
  return result;
}

RvVector_sptr VarsVector_cl::GetReal(int unique) const { return SelectKind(0, unique); }

RvVector_sptr VarsVector_cl::GetDiscrete(int unique) const { return SelectKind(1, unique); }

RvVector_sptr VarsVector_cl::SortRvVector(const VarsVector_sptr& other) const { return GetIntersection(other, 0); }

InstVector_sptr VarsVector_cl::SortInstVector(const InstVector_sptr& other) const {
  InstVector_sptr result = new InstVector_cl();
  for (int i = 0; i < GetNumberOfVars(); i++) {
    int at = other->GetFirstEntry(GetVar(i));
    if (at >= 0) result->AddLast((*other)[at]);
  }
  return result;
}

RvVector_sptr VarsVector_cl::StrToRVs(const char* text) const {
  RvVector_sptr result = new RvVector_cl();
  std::string copy(text ? text : "");
  char* save = nullptr;
  for (char* token = strtok_r(copy.data(), kFirstDelimiters, &save); token;
       token = strtok_r(nullptr, kDelimiters, &save)) {
    int at = GetRvIndex(token);
    if (at >= 0) result->AddLast(GetRv(at));
  }
  return result;
}

InstVector_sptr VarsVector_cl::StrToInstVec(const char* text) const {
  InstVector_sptr result = new InstVector_cl();
  std::string copy(text ? text : "");
  char* save = nullptr;
  for (char* name = strtok_r(copy.data(), kFirstDelimiters, &save); name;
       name = strtok_r(nullptr, kDelimiters, &save)) {
    char* value = strtok_r(nullptr, kDelimiters, &save);
    if (!value) break;
    int at = GetRvIndex(name);
    if (at < 0) continue;
    SingleInst_sptr inst = GetRv(at)->StrToInst(value);
    if (!inst.IsNull()) result->AddLast(inst);
  }
  return result;
}

NameSet_tmpl<SingleVar_sptr>* VarsVector_cl::CreateSymbolTable() const {
  NameSet_tmpl<SingleVar_sptr>* table = new NameSet_tmpl<SingleVar_sptr>(2 * GetNumberOfVars(), SingleVar_sptr());
  for (int i = 0; i < GetNumberOfVars(); i++) table->Insert(GetVar(i)->GetName(), GetVar(i));
  return table;
}

void VarsVector_cl::WriteCpdStyle(std::ostream& out, int flatIndex) const { WriteCpdStyle(out, flatIndex, 0); }

void VarsVector_cl::WriteVerboseCpdStyle(std::ostream& out, int flatIndex) const { WriteCpdStyle(out, flatIndex, 1); }

void VarsVector_cl::WriteCpdStyle(std::ostream& out, int flatIndex, int verbose) const {
  if (GetJointDomainSize() == 1) {
    out << "    ";
    return;
  }
  int n = GetNumberOfVars();
  Vector_tmpl<int> indices(n > 0 ? n : 1);
  indices.AddEmptyLast(n);
  DecodeFlatIndex(flatIndex, indices.GetData(), 0);
  out << "    (";
  for (int i = 0; i < n; i++) {
    if (i > 0) out << ", ";
    NameDomain_sptr names = Conv2NameDomain(GetVar(i)->GetDomain());
    if (verbose && names && names->IsLegalIndex(indices[i])) out << names->IndexToName(indices[i]);
    else out << indices[i];
  }
  out << ") = ";
}

void VarsVector_cl::DecodeFlatIndex(int flatIndex, int* indices, int discreteOnly) const {
  for (int i = GetNumberOfVars() - 1; i >= 0; i--) {
    if (discreteOnly && !GetVar(i)->IsDiscrete()) continue;
    int size = GetVar(i)->GetJointDomainSize();
    // A domain without values divides nothing; its index stays out of range.
    if (size <= 0) {
      indices[i] = 0;
      continue;
    }
    indices[i] = flatIndex % size;
    flatIndex /= size;
  }
}

// ---------------------------------------------------------------- RvVector_cl

RvVector_cl::RvVector_cl(const VarsVector_sptr& vars, int unique) : RvVector_cl(SizeOf(vars)) {
  for (int i = 0; i < SizeOf(vars); i++) AddVar(vars->GetRv(i), unique);
}

RvVector_cl::RvVector_cl(const SingleVar_sptr& var) : RvVector_cl(1) { AddLast(RvOf(var)); }

RvVector_cl::RvVector_cl(const RvVectorCont_cl* scopes, int unique) : RvVector_cl() {
  for (int k = 0; k < scopes->GetSize(); k++)
    for (int i = 0; i < SizeOf((*scopes)[k]); i++) AddVar((*scopes)[k]->GetRv(i), unique);
}

void RvVector_cl::AddVar(const SingleVar_sptr& var, int unique) {
  if (unique && IsMember(var)) return;
  AddLast(RvOf(var));
}

RvVector_sptr RvVector_cl::UnionRvVectors(const VarsVector_sptr& a, const VarsVector_sptr& b, int uniqueFirst,
                                          int uniqueSecond) {
  RvVector_sptr result = new RvVector_cl(SizeOf(a) + SizeOf(b));
  for (int i = 0; i < SizeOf(a); i++) result->AddVar(a->GetRv(i), uniqueFirst);
  for (int i = 0; i < SizeOf(b); i++) result->AddVar(b->GetRv(i), uniqueSecond);
  return result;
}

void RvVector_cl::Merge(const VarsVector_sptr& other) {
  for (int i = 0; i < SizeOf(other); i++) AddLast(other->GetRv(i));
}

// ---------------------------------------------------------------- CompositeRv_cl

namespace {
Domain_sptr ProductDomain(const RvVector_sptr& components) {
  CompositeDomain_sptr domain = new CompositeDomain_cl();
  for (int i = 0; i < components->GetNumberOfVars(); i++) domain->AddDomain(components->GetRv(i)->GetDomain());
  return domain;
}
}  // namespace

CompositeRv_cl::CompositeRv_cl(Name_sptr name, RvVector_sptr components)
    : SingleRv_cl(name, ProductDomain(components)), iRvs(components), iNumRvs(components->GetNumberOfVars()) {}

void CompositeRv_cl::PrintOs(std::ostream& out) const {
  out << GetName() << "\n";
  for (int i = 0; i < iNumRvs; i++) out << " " << (*iRvs)[i]->GetName() << "\n";
}

SingleInst_sptr CompositeRv_cl::StrToInst(char* text) { abort(); }

// ---------------------------------------------------------------- RvVectorCont_cl

int RvVectorCont_cl::HasASupersetOf(const VarsVector_sptr& vars) const {
  for (int i = 0; i < iSize; i++)
    if (iData[i]->IsSubset(vars)) return 1;
  return 0;
}

void RvVectorCont_cl::UnionRvVectorConts(const RvVectorCont_cl& other) {
  for (int k = 0; k < other.GetSize(); k++) {
    int present = 0;
    for (int i = 0; i < iSize && !present; i++) present = iData[i]->IsEqual(other[k]);
    if (!present) AddLast(other[k]);
  }
}
