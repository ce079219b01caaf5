// Instantiations of one variable: a discrete index or a real value, with their walks and conversions.
#include "prob/single_inst.h"

#include <cmath>
#include <iostream>
#include <memory>

namespace {

[[noreturn]] void TypeError(const char* what) {
  std::cerr << what << ": type error" << std::endl;
  abort();
}

// The int part of x, or the missing index when x has none; never undefined behaviour.
int SafeTruncate(double x) {
  if (!(x > -2147483649.0 && x < 2147483648.0)) return DiscreteSingleInst_cl::kMissing;
  return static_cast<int>(x);
}

// The instantiations compare only with instantiations of the same kind.
template <class Inst>
const Inst* SameKind(const SingleVar_sptr& other) {
  return dynamic_cast<const Inst*>(other.Get());
}

}  // namespace

SingleInst_sptr Conv2SingleInst(const SingleVar_sptr& var) {
  return SingleInst_sptr(dynamic_cast<SingleInst_cl*>(var.Get()));
}
DiscreteSingleInst_sptr Conv2DiscreteSingleInst(const SingleVar_sptr& var) {
  return DiscreteSingleInst_sptr(dynamic_cast<DiscreteSingleInst_cl*>(var.Get()));
}
RealSingleInst_sptr Conv2RealSingleInst(const SingleVar_sptr& var) {
  return RealSingleInst_sptr(dynamic_cast<RealSingleInst_cl*>(var.Get()));
}

SingleInst_sptr SingleInst_cl::Create(SingleRv_sptr rv) {
  if (rv->IsDiscrete()) return new DiscreteSingleInst_cl(rv);
  return new RealSingleInst_cl(rv);
}

void SingleInst_cl::PrintNameAndValue(std::ostream& out) const {
  out << GetName() << "=";
  if (!IsLegalValue()) {
    out << "???";
    return;
  }
  std::unique_ptr<Value_cl> value(GetValue());
  out << value.get();
}

// ---------------------------------------------------------------- DiscreteSingleInst_cl

void DiscreteSingleInst_cl::SetValue(double value) { iIndex = SafeTruncate(value); }

double DiscreteSingleInst_cl::GetRealValue() const { TypeError("GetRealValue"); }

void DiscreteSingleInst_cl::GeneralInitialize(const SingleInst_sptr& source, Random_cl* random) {
  if (source->IsDiscrete()) {
    iIndex = source->GetIndex();
    return;
  }
  RealDomain_sptr from = Conv2RealDomain(source->GetDomain());
  int n = GetDomain()->GetDomainSize();
  double width = (from->GetUpper() - from->GetLower()) / n;
  iIndex = SafeTruncate(std::floor((source->GetRealValue() - from->GetLower()) / width));
  if (iIndex == n) iIndex = n - 1;
}

int DiscreteSingleInst_cl::IsEqual(const SingleVar_sptr& other) const {
  const DiscreteSingleInst_cl* inst = SameKind<DiscreteSingleInst_cl>(other);
  return inst && GetId() == inst->GetId() && iIndex == inst->iIndex;
}

int DiscreteSingleInst_cl::IsLess(const SingleVar_sptr& other) const {
  if (GetId() != other->GetId()) return GetId() < other->GetId();
  const DiscreteSingleInst_cl* inst = SameKind<DiscreteSingleInst_cl>(other);
  return inst && iIndex < inst->iIndex;
}

// ---------------------------------------------------------------- RealSingleInst_cl

int RealSingleInst_cl::IsLegalValue() const {
  if (!iIsSet) return 0;
  RealDomain_sptr domain = Conv2RealDomain(GetDomain());
  return !domain || domain->IsLegalValue(iValue);
}

int RealSingleInst_cl::IsFirstValue() const { TypeError("Real IsFirstValue"); }
int RealSingleInst_cl::IsLastValue() const { TypeError("Real IsLastValue"); }
void RealSingleInst_cl::SetFirstValue() { TypeError("Real SetFirstValue"); }
void RealSingleInst_cl::SetLastValue() { TypeError("Real SetLastValue"); }
void RealSingleInst_cl::NextInst() { TypeError("Real NextInst"); }
void RealSingleInst_cl::PrevInst() { TypeError("Real PrevInst"); }
int RealSingleInst_cl::GetIndex() const { TypeError("Real GetIndex"); }

void RealSingleInst_cl::GeneralInitialize(const SingleInst_sptr& source, Random_cl* random) {
  RealDomain_sptr own = Conv2RealDomain(GetDomain());
  if (source->IsDiscrete()) {
    double width = (own->GetUpper() - own->GetLower()) / source->GetDomain()->GetDomainSize();
    double u = random ? random->SampleUniform() : 0.5;
    SetValue(own->GetLower() + source->GetIndex() * width + u * width);
    return;
  }
  double x = source->GetRealValue();
  RealDomain_sptr from = Conv2RealDomain(source->GetDomain());
  if (own->HasLower() && own->HasUpper())
    SetValue(own->GetLower() +
             (own->GetUpper() - own->GetLower()) * (x - from->GetLower()) / (from->GetUpper() - from->GetLower()));
  else
    SetValue(x);
}

SingleInst_sptr RealSingleInst_cl::Copy() const {
  RealSingleInst_cl* copy = new RealSingleInst_cl(iRv);
  copy->iValue = iValue;
  copy->iIsSet = iIsSet;
  return copy;
}

int RealSingleInst_cl::IsEqual(const SingleVar_sptr& other) const {
  const RealSingleInst_cl* inst = SameKind<RealSingleInst_cl>(other);
  return inst && GetId() == inst->GetId() && iValue == inst->iValue;
}

int RealSingleInst_cl::IsLess(const SingleVar_sptr& other) const {
  if (GetId() != other->GetId()) return GetId() < other->GetId();
  const RealSingleInst_cl* inst = SameKind<RealSingleInst_cl>(other);
  return inst && iValue < inst->iValue;
}
