// Split tests of tree CPD nodes.
#include "prob/split_test.h"

#include <cstdlib>
#include <iostream>

// ---------------------------------------------------------------- domain subsets

DomainSubset_cl* DomainSubset_cl::CreateDomainSubset(const SingleRv_sptr& rv) {
  if (rv->IsDiscrete()) return new DiscreteDomainSubset_cl(rv->GetDomain()->GetDomainSize());
  return new RealDomainSubset_cl(-1.7976931348623157e308, 0);
}

// ---------------------------------------------------------------- SplitTest_cl

int SplitTest_cl::ValueEqual(const Value_cl* a, const Value_cl* b) {
  if (a->GetType() != b->GetType()) return 0;
  switch (a->GetType()) {
    case INT_VALUE:
      return static_cast<const IntValue_cl*>(a)->GetValue() == static_cast<const IntValue_cl*>(b)->GetValue();
    case REAL_VALUE:
      return static_cast<const RealValue_cl*>(a)->GetValue() == static_cast<const RealValue_cl*>(b)->GetValue();
    case NAME_VALUE:
      return static_cast<const NameValue_cl*>(a)->GetValue() == static_cast<const NameValue_cl*>(b)->GetValue();
    default:
      return 0;
  }
}

int SplitTest_cl::ValueLess(const Domain_sptr& domain, const Value_cl* a, const Value_cl* b) {
  if (a->GetType() != b->GetType()) return 0;
  switch (a->GetType()) {
    case INT_VALUE:
      return static_cast<const IntValue_cl*>(a)->GetValue() < static_cast<const IntValue_cl*>(b)->GetValue();
    case REAL_VALUE:
      return static_cast<const RealValue_cl*>(a)->GetValue() < static_cast<const RealValue_cl*>(b)->GetValue();
    case NAME_VALUE:
      return static_cast<int>(domain->ValueToIndex(a)) < static_cast<int>(domain->ValueToIndex(b));
    default:
      return 0;
  }
}

const SingleInst_cl* SplitTest_cl::InstAt(const InstVector_sptr& inst, const RvMapping_sptr& mapping, int position) {
  int at = mapping.IsNull() ? position : mapping->GetIndex(position);
  if (at < 0 || at >= inst->GetNumberOfVars()) return nullptr;
  const SingleInst_cl* value = (*inst)[at].Get();
  if (value->IsMissing() || !value->IsLegalValue()) return nullptr;
  return value;
}

// ---------------------------------------------------------------- DomainSplitTest_cl

DomainSplitTest_cl::DomainSplitTest_cl(const SingleRv_sptr& rv, int position, int numBranches)
    : SplitTest_cl(numBranches), iRv(rv), iPosition(position) {
  if (!rv->IsDiscrete()) {
    std::cerr << "Error: Trying to split on continuous RV " << rv->GetName() << std::endl;
    abort();
  }
  iBranches.AddLast(rv->GetDomain()->GetDomainSize(), 0);
}

int DomainSplitTest_cl::CheckSplit(const RvVector_sptr&) const {
  int ok = 1;
  for (int v = 0; v < iBranches.GetSize(); v++) {
    if (iBranches[v] > 0) continue;
    std::cerr << "Error: When splitting on " << iRv->GetName() << ", domain value #" << v
              << " is not associated with any branch." << std::endl;
    ok = 0;
  }
  return ok;
}

int DomainSplitTest_cl::Test(const InstVector_sptr& inst, const RvMapping_sptr& mapping) const {
  const SingleInst_cl* value = InstAt(inst, mapping, iPosition);
  if (!value) return -1;
  return iBranches[value->GetIndex()] - 1;
}

void DomainSplitTest_cl::PrintBranch(std::ostream& out, int branch, const RvVector_sptr&) const {
  if (branch >= iNumBranches) return;
  if (branch == iNumBranches - 1) {
    out << "default ";
    return;
  }
  out << "in {";
  int first = 1;
  for (int v = 0; v < iBranches.GetSize(); v++) {
    if (iBranches[v] - 1 != branch) continue;
    Value_cl* value = iRv->GetDomain()->IndexToValue(v);
    out << (first ? "" : ",") << "\"" << value << "\"";
    delete value;
    first = 0;
  }
  out << "} ";
}

void DomainSplitTest_cl::PrintBranchCondition(std::ostream& out, const RvVector_sptr&, int branch) const {
  out << iRv->GetName() << " in branch " << branch;
}

void DomainSplitTest_cl::GetTestRvs(const RvVector_sptr&, RvVector_sptr out) const { out->AddVar(iRv, 1); }

void DomainSplitTest_cl::GetReducedDomain(int position, int branch, DomainSubset_cl* subset) const {
  if (position != iPosition) return;
  auto* discrete = static_cast<DiscreteDomainSubset_cl*>(subset);
  for (int v = 0; v < iBranches.GetSize(); v++)
    if (iBranches[v] - 1 != branch) discrete->GetBits().Clear(v);
}

// ---------------------------------------------------------------- clauses

namespace {

void PrintValue(std::ostream& out, const Value_cl* value) { out << "\"" << value << "\""; }

}  // namespace

int EQRVClause_cl::Test(const InstVector_sptr& inst, const RvMapping_sptr& mapping) const {
  const SingleInst_cl* a = SplitTest_cl::InstAt(inst, mapping, iPositions[0]);
  const SingleInst_cl* b = SplitTest_cl::InstAt(inst, mapping, iPositions[1]);
  if (!a || !b) return -1;
  Value_cl* va = a->GetValue();
  Value_cl* vb = b->GetValue();
  int equal = SplitTest_cl::ValueEqual(va, vb);
  delete va;
  delete vb;
  return equal;
}

void EQRVClause_cl::Print(std::ostream& out, const RvVector_sptr& parents) const {
  out << "(" << parents->GetRv(iPositions[0])->GetName() << " equal " << parents->GetRv(iPositions[1])->GetName()
      << ")";
}

void EQRVClause_cl::PrintBranchCondition(std::ostream& out, const RvVector_sptr& parents, int branch) const {
  out << parents->GetRv(iPositions[0])->GetName() << (branch ? " == " : " != ")
      << parents->GetRv(iPositions[1])->GetName();
}

ValueConditionClause_cl::ValueConditionClause_cl(int position, const Domain_sptr& domain, Value_cl* value,
                                                 int comparison, int direction)
    : iPosition(position),
      iDomain(domain),
      iValue(value),
      iValueIndex(-1),
      iReal(0.0),
      iComparison(comparison),
      iDirection(direction) {
  if (domain->IsDiscrete())
    iValueIndex = domain->ValueToIndex(value);
  else
    iReal = static_cast<const RealValue_cl*>(value)->GetValue();
}

ValueConditionClause_cl::ValueConditionClause_cl(const ValueConditionClause_cl& other)
    : ConditionClause_cl(other),
      iPosition(other.iPosition),
      iDomain(other.iDomain),
      iValue(other.iValue->Clone()),
      iValueIndex(other.iValueIndex),
      iReal(other.iReal),
      iComparison(other.iComparison),
      iDirection(other.iDirection) {}

int ValueConditionClause_cl::Test(const InstVector_sptr& inst, const RvMapping_sptr& mapping) const {
  const SingleInst_cl* value = SplitTest_cl::InstAt(inst, mapping, iPosition);
  if (!value) return -1;
  return iValueIndex >= 0 ? TestValue(value->GetIndex()) : TestReal(value->GetRealValue());
}

void EVClause_cl::Print(std::ostream& out, const RvVector_sptr& parents) const {
  out << "(" << parents->GetRv(iPosition)->GetName() << " = ";
  PrintValue(out, iValue);
  out << ")";
}

void EVClause_cl::PrintBranchCondition(std::ostream& out, const RvVector_sptr& parents, int branch) const {
  out << parents->GetRv(iPosition)->GetName() << (branch ? " = " : " != ");
  PrintValue(out, iValue);
}

void EVClause_cl::GetReducedDomain(int position, int branch, DomainSubset_cl* subset) const {
  if (position != iPosition) return;
  if (iValueIndex < 0) {
    static_cast<RealDomainSubset_cl*>(subset)->SetDomainSubset(iReal, 0);
    return;
  }
  Bitset_cl& bits = static_cast<DiscreteDomainSubset_cl*>(subset)->GetBits();
  if (!branch) {
    bits.Clear(iValueIndex);
    return;
  }
  int keep = bits.IsSet(iValueIndex);
  bits.SetAll(0);
  bits.SetBit(iValueIndex, keep);
}

void GTEClause_cl::Print(std::ostream& out, const RvVector_sptr& parents) const {
  out << "(" << parents->GetRv(iPosition)->GetName() << (iDirection ? " >= " : " <= ");
  PrintValue(out, iValue);
  out << ")";
}

void GTEClause_cl::PrintBranchCondition(std::ostream& out, const RvVector_sptr& parents, int branch) const {
  static const char* const kWords[2][2] = {{" > ", " <= "}, {" < ", " >= "}};
  out << parents->GetRv(iPosition)->GetName() << kWords[iDirection][branch];
  PrintValue(out, iValue);
}

// A real variable keeps only a lower bound, so direction 0 leaves its subset as it is.
void GTEClause_cl::GetReducedDomain(int position, int branch, DomainSubset_cl* subset) const {
  if (position != iPosition) return;
  if (iValueIndex < 0) {
    if (iDirection) static_cast<RealDomainSubset_cl*>(subset)->SetDomainSubset(iReal, 1);
    return;
  }
  Bitset_cl& bits = static_cast<DiscreteDomainSubset_cl*>(subset)->GetBits();
  for (int v = 0; v < bits.GetNumBits(); v++)
    if (TestValue(v) != branch) bits.Clear(v);
}

// ---------------------------------------------------------------- ConditionSplitTest_cl

ConditionSplitTest_cl::ConditionSplitTest_cl(const ConditionSplitTest_cl& other)
    : SplitTest_cl(other), iClauses(other.iClauses.GetSize() + 1, nullptr) {
  for (int i = 0; i < other.iClauses.GetSize(); i++) iClauses.AddLast(other.iClauses[i]->Clone());
}

int ConditionSplitTest_cl::IsLegalSplitToAdd(int position) const {
  for (int i = 0; i < iClauses.GetSize(); i++) {
    const ConditionClause_cl* clause = iClauses[i];
    if (clause->GetKind() == EQRV_CLAUSE && (clause->GetPosition(0) == position || clause->GetPosition(1) == position))
      return 0;
  }
  return 1;
}

int ConditionSplitTest_cl::Test(const InstVector_sptr& inst, const RvMapping_sptr& mapping) const {
  int all = 1;
  for (int i = 0; i < iClauses.GetSize(); i++) {
    int r = iClauses[i]->Test(inst, mapping);
    if (r < 0) return -1;
    all &= r;
  }
  return all;
}

// Every clause is read, so that a missing tested value always gives -1 whatever the other clauses say.
int ConditionSplitTest_cl::Test(int const* row, short const* columns) const {
  int all = 1;
  for (int i = 0; i < iClauses.GetSize(); i++) {
    const ConditionClause_cl* clause = iClauses[i];
    int r;
    switch (clause->GetKind()) {
      case EQRV_CLAUSE:
        r = static_cast<const EQRVClause_cl*>(clause)->Test(row, columns);
        break;
      case VALUE_CLAUSE:
        r = static_cast<const ValueConditionClause_cl*>(clause)->Test(row, columns);
        break;
      default:
        std::cerr << "Invalid Clause Type: " << clause->GetKind() << std::endl;
        continue;
    }
    if (r < 0) return -1;
    all &= r;
  }
  return all;
}

void ConditionSplitTest_cl::PrintCondition(std::ostream& out, const RvVector_sptr& parents) const {
  out << "( ";
  for (int i = 0; i < iClauses.GetSize(); i++) {
    if (i > 0) out << " and\n";
    iClauses[i]->Print(out, parents);
  }
  out << " )";
}

void ConditionSplitTest_cl::PrintBranchCondition(std::ostream& out, const RvVector_sptr& parents, int branch) const {
  for (int i = 0; i < iClauses.GetSize(); i++) {
    if (i > 0) out << " AND ";
    iClauses[i]->PrintBranchCondition(out, parents, branch);
  }
}

int ConditionSplitTest_cl::GetStorageSize() const {
  int size = static_cast<int>(sizeof(*this));
  for (int i = 0; i < iClauses.GetSize(); i++) size += iClauses[i]->GetStorageSize();
  return size;
}

int ConditionSplitTest_cl::IsSplitInMapping(const RvMapping_sptr& mapping) const {
  for (int i = 0; i < iClauses.GetSize(); i++)
    if (mapping->GetIndex(iClauses[i]->GetPosition(0)) < 0) return 0;
  return 1;
}

int ConditionSplitTest_cl::IsSingleRvTest() const {
  if (iClauses.GetSize() == 0) return 0;
  int position = iClauses[0]->GetPosition(0);
  for (int i = 0; i < iClauses.GetSize(); i++)
    if (iClauses[i]->GetNumTestRvs() != 1 || iClauses[i]->GetPosition(0) != position) return 0;
  return 1;
}

void ConditionSplitTest_cl::GetTestRvs(const RvVector_sptr& parents, RvVector_sptr out) const {
  for (int i = 0; i < iClauses.GetSize(); i++)
    for (int k = 0; k < iClauses[i]->GetNumTestRvs(); k++) out->AddVar(parents->GetRv(iClauses[i]->GetPosition(k)), 1);
}

void ConditionSplitTest_cl::GetReducedDomain(int position, int branch, DomainSubset_cl* subset) const {
  for (int i = 0; i < iClauses.GetSize(); i++) iClauses[i]->GetReducedDomain(position, branch, subset);
}

void ConditionSplitTest_cl::RemapPositions(const Vector_tmpl<int>& map) {
  for (int i = 0; i < iClauses.GetSize(); i++)
    for (int k = 0; k < iClauses[i]->GetNumTestRvs(); k++)
      iClauses[i]->SetPosition(k, map[iClauses[i]->GetPosition(k)]);
}
