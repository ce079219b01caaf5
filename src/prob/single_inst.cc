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

// Same variable and same value; an instantiation equals only one of its own kind.
template <class Inst, class Value>
int SameVariableAndValue(const Inst* self, const SingleVar_sptr& other, Value value) {
  const Inst* inst = dynamic_cast<const Inst*>(other.Get());
  return inst && self->GetId() == inst->GetId() && value(self) == value(inst);
}

// Id order first, then the value.
template <class Inst, class Value>
int IdThenValueLess(const Inst* self, const SingleVar_sptr& other, Value value) {
  if (self->GetId() != other->GetId()) return self->GetId() < other->GetId();
  const Inst* inst = dynamic_cast<const Inst*>(other.Get());
  return inst && value(self) < value(inst);
}

int IndexOf(const DiscreteSingleInst_cl* inst) { return inst->GetIndex(); }
double RealOf(const RealSingleInst_cl* inst) { return inst->GetRealValue(); }

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
  return SameVariableAndValue(this, other, IndexOf);
}

int DiscreteSingleInst_cl::IsLess(const SingleVar_sptr& other) const { return IdThenValueLess(this, other, IndexOf); }

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

int RealSingleInst_cl::IsEqual(const SingleVar_sptr& other) const { return SameVariableAndValue(this, other, RealOf); }

int RealSingleInst_cl::IsLess(const SingleVar_sptr& other) const { return IdThenValueLess(this, other, RealOf); }
