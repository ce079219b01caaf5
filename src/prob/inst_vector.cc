// Joint assignments to a scope, with the cached flat index and the walks over all assignments.
#include "prob/inst_vector.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

InstVector_sptr Conv2InstVector(const VarsVector_sptr& vars) {
  return InstVector_sptr(dynamic_cast<InstVector_cl*>(vars.Get()));
}

bool LongIndex_cl::operator==(const LongIndex_cl& other) const {
  for (int i = 0; i < kRuns; i++)
    if (iIndex[i] != other.iIndex[i]) return false;
  return true;
}

bool LongIndex_cl::operator<(const LongIndex_cl& other) const {
  for (int i = 0; i < kRuns; i++)
    if (iIndex[i] != other.iIndex[i]) return iIndex[i] < other.iIndex[i];
  return false;
}

std::ostream& operator<<(std::ostream& out, const LongIndex_cl& index) {
  out << "(";
  for (int i = 0; i < LongIndex_cl::kRuns; i++) out << (i > 0 ? ", " : "") << index.iIndex[i];
  return out << ")";
}

// ---------------------------------------------------------------- construction

InstVector_cl::InstVector_cl(const SingleVar_sptr& var) : InstVector_cl(1) {
  SingleInst_sptr inst = Conv2SingleInst(var);
  AddLast(SingleInst_cl::Create(inst ? inst->GetRv() : Conv2SingleRv(var)));
}

InstVector_cl::InstVector_cl(const RvVector_sptr& rvs) : InstVector_cl(rvs->GetNumberOfVars()) {
  for (int i = 0; i < rvs->GetNumberOfVars(); i++) AddLast(SingleInst_cl::Create(rvs->GetRv(i)));
}

InstVector_cl::InstVector_cl(const SingleInst_sptr& inst) : InstVector_cl(1) { AddLast(inst); }

InstVector_cl::InstVector_cl(const InstVector_sptr& other) : InstVector_cl(other->iSize) {
  for (int i = 0; i < other->iSize; i++) AddLast(other->iData[i]->Copy());
  iIndex = other->iIndex;
  iChanged = other->iChanged;
}

// ---------------------------------------------------------------- flat index

int InstVector_cl::ComputeIndex(int discreteOnly) const {
  // Unsigned, so that an assignment outside the domains wraps instead of overflowing.
  uint32_t index = 0;
  for (int i = 0; i < iSize; i++) {
    const SingleInst_cl& inst = *iData[i];
    if (discreteOnly && !inst.IsDiscrete()) continue;
    index = index * static_cast<uint32_t>(inst.GetJointDomainSize()) + static_cast<uint32_t>(inst.GetIndex());
  }
  return static_cast<int>(index);
}

int InstVector_cl::GetIndex() {
  if (IsChanged()) RecalculateIndex();
  return iIndex;
}

void InstVector_cl::RecalculateIndex() {
  iIndex = ComputeIndex(0);
  ResetChanged();
}

int InstVector_cl::IsIndexCorrect() const { return iIndex == ComputeIndex(0); }

void InstVector_cl::SetFromFlatIndex(int flatIndex, int discreteOnly) {
  Vector_tmpl<int> indices(iSize > 0 ? iSize : 1);
  indices.AddEmptyLast(iSize);
  DecodeFlatIndex(flatIndex, indices.GetData(), discreteOnly);
  for (int i = 0; i < iSize; i++)
    if (!discreteOnly || iData[i]->IsDiscrete()) iData[i]->SetValue(indices[i]);
  iIndex = flatIndex;
  ResetChanged();
}

void InstVector_cl::SetValue(int flatIndex) {
  if (!IsChanged() && iIndex == flatIndex) return;
  SetFromFlatIndex(flatIndex, 0);
}

void InstVector_cl::ForceSetValue(int flatIndex) { SetFromFlatIndex(flatIndex, 0); }

void InstVector_cl::SetValueDisc(int flatIndex) { SetFromFlatIndex(flatIndex, 1); }

int InstVector_cl::GetIndexDisc() {
  if (IsChanged()) RecalculateIndexDisc();
  return iIndex;
}

void InstVector_cl::RecalculateIndexDisc() {
  iIndex = ComputeIndex(1);
  ResetChanged();
}

// ---------------------------------------------------------------- walks

void InstVector_cl::Odometer(const RvVector_sptr& fixed, int first, int forward) {
  for (int i = iSize - 1; i >= first; i--) {
    SingleInst_cl& inst = *iData[i];
    if (!fixed.IsNull() && fixed->IsMember(iData[i])) continue;
    if (!inst.IsLegalValue()) break;
    if (forward) inst.NextInst();
    else inst.PrevInst();
    if (inst.IsLegalValue() || i == first) break;
    if (forward) inst.SetFirstValue();
    else inst.SetLastValue();
  }
  RecalculateIndex();
}

void InstVector_cl::NextInst() { Odometer(RvVector_sptr(), 0, 1); }

void InstVector_cl::NextInst(const RvVector_sptr& fixed, int first) { Odometer(fixed, first, 1); }

void InstVector_cl::PrevInst() { Odometer(RvVector_sptr(), 0, 0); }

void InstVector_cl::PowerSetStep(int forward) {
  for (int i = iSize - 1; i >= 0; i--) {
    SingleInst_cl& inst = *iData[i];
    if (inst.IsLegalValue()) {
      if (forward) inst.NextInst();
      else inst.PrevInst();
      break;
    }
    if (forward) inst.SetFirstValue();
    else inst.SetLastValue();
  }
  RecalculateIndex();
}

void InstVector_cl::NextPowerSetInst() { PowerSetStep(1); }

void InstVector_cl::PrevPowerSetInst() { PowerSetStep(0); }

void InstVector_cl::SetFirstValue() {
  for (int i = 0; i < iSize; i++) iData[i]->SetFirstValue();
  iIndex = 0;
  ResetChanged();
}

void InstVector_cl::SetLastValue() {
  for (int i = 0; i < iSize; i++) iData[i]->SetLastValue();
  RecalculateIndex();
}

// ---------------------------------------------------------------- values by text and by key

void InstVector_cl::SetValue(Name_sptr names) {
  std::string copy(names.CStr() ? names.CStr() : "");
  char* save = nullptr;
  int i = 0;
  for (char* token = strtok_r(copy.data(), " ", &save); token && i < iSize;
       token = strtok_r(nullptr, " ", &save), i++) {
    std::cout << "InstVector_cl::SetValue Read value=" << token << std::endl;
    SingleInst_cl& inst = *iData[i];
    if (inst.IsDiscrete()) inst.SetValue(inst.GetDomain()->ParseDiscreteValue(token));
    else inst.SetValue(inst.GetDomain()->ParseRealValue(token));
  }
  SetChanged();
}

Vector_tmpl<int> InstVector_cl::LongIndexRuns() const {
  Vector_tmpl<int> runs(iSize > 0 ? iSize : 1);
  int run = 0;
  int32_t product = 1;
  for (int i = 0; i < iSize; i++) {
    uint32_t size = static_cast<uint32_t>(iData[i]->GetJointDomainSize());
    int32_t next = static_cast<int32_t>(static_cast<uint32_t>(product) * size);
    if (next < product) {
      if (++run == LongIndex_cl::kRuns) {
        std::cerr << "InstVector_cl::GetLongIndex the joint index needs more than " << LongIndex_cl::kRuns << " ints"
                  << std::endl;
        abort();
      }
      next = static_cast<int32_t>(size);
    }
    product = next;
    runs.AddLast(run);
  }
  return runs;
}

LongIndex_cl InstVector_cl::GetLongIndex() const {
  Vector_tmpl<int> runs = LongIndexRuns();
  uint32_t values[LongIndex_cl::kRuns] = {0, 0, 0, 0, 0};
  for (int i = 0; i < iSize; i++) {
    uint32_t& v = values[runs[i]];
    v = v * static_cast<uint32_t>(iData[i]->GetJointDomainSize()) + static_cast<uint32_t>(iData[i]->GetIndex());
  }
  LongIndex_cl index;
  for (int r = 0; r < LongIndex_cl::kRuns; r++) index.iIndex[r] = static_cast<int>(values[r]);
  return index;
}

void InstVector_cl::SetLongIndex(const LongIndex_cl& index) {
  Vector_tmpl<int> runs = LongIndexRuns();
  uint32_t values[LongIndex_cl::kRuns];
  for (int r = 0; r < LongIndex_cl::kRuns; r++) values[r] = static_cast<uint32_t>(index.iIndex[r]);
  for (int i = iSize - 1; i >= 0; i--) {
    uint32_t size = static_cast<uint32_t>(iData[i]->GetJointDomainSize());
    uint32_t& v = values[runs[i]];
    if (size == 0) continue;
    iData[i]->SetValue(static_cast<int>(v % size));
    v /= size;
  }
  SetChanged();
}

Name_sptr InstVector_cl::GetHashKey() const {
  std::string key;
  char text[400];
  for (int i = iSize - 1; i >= 0; i--) {
    const SingleInst_cl& inst = *iData[i];
    if (inst.IsDiscrete()) snprintf(text, sizeof text, "%d#", inst.GetIndex());
    else snprintf(text, sizeof text, "%.8f#", inst.GetRealValue());
    key += text;
  }
  return Name_sptr(key.c_str());
}

void InstVector_cl::SetWithHashKey(Name_sptr key) {
  std::string copy(key.CStr() ? key.CStr() : "");
  char* save = nullptr;
  char* token = strtok_r(copy.data(), "#", &save);
  for (int i = iSize - 1; i >= 0 && token; i--, token = strtok_r(nullptr, "#", &save)) {
    SingleInst_cl& inst = *iData[i];
    if (inst.IsDiscrete()) inst.SetValue(static_cast<int>(strtol(token, nullptr, 10)));
    else inst.SetValue(strtod(token, nullptr));
  }
  SetChanged();
}

Name_sptr InstVector_cl::GetPrintName() const {
  std::string name;
  char text[400];
  for (int i = 0; i < iSize; i++) {
    const SingleInst_cl& inst = *iData[i];
    if (inst.IsDiscrete()) snprintf(text, sizeof text, "%d", inst.GetIndex());
    else snprintf(text, sizeof text, "%.8f", inst.GetRealValue());
    if (i > 0) name += "_";
    name += text;
  }
  return Name_sptr(name.c_str());
}

// ---------------------------------------------------------------- parts

SingleInst_sptr InstVector_cl::GetInst(const SingleVar_sptr& var) const {
  int at = GetFirstEntry(var);
  return at < 0 ? SingleInst_sptr() : iData[at];
}

int InstVector_cl::ExtractValues(double* values) const {
  int legal = 1;
  for (int i = 0; i < iSize; i++) {
    if (iData[i]->IsDiscrete()) continue;
    if (!iData[i]->IsLegalValue()) legal = 0;
    values[i] = iData[i]->GetRealValue();
  }
  return legal;
}

InstVector_sptr InstVector_cl::Select(int (*keep)(const SingleInst_cl&), int unique) const {
  InstVector_sptr result = new InstVector_cl(iSize > 0 ? iSize : 1);
  for (int i = 0; i < iSize; i++)
    if (keep(*iData[i]) && !(unique && result->IsMember(iData[i]))) result->AddLast(iData[i]);
  return result;
}

InstVector_sptr InstVector_cl::GetLegalInst(int unique) const {
  return Select([](const SingleInst_cl& inst) { return inst.IsLegalValue(); }, unique);
}

InstVector_sptr InstVector_cl::GetRealInst(int unique) const {
  return Select([](const SingleInst_cl& inst) { return inst.IsDiscrete() ? 0 : 1; }, unique);
}

InstVector_sptr InstVector_cl::GetDiscreteInst(int unique) const {
  return Select([](const SingleInst_cl& inst) { return inst.IsDiscrete(); }, unique);
}

InstVector_sptr InstVector_cl::GetInsts(const VarsVector_sptr& vars) const {
  InstVector_sptr result = new InstVector_cl();
  for (int k = 0; k < vars->GetNumberOfVars(); k++) {
    int at = GetFirstEntry(vars->GetVar(k));
    if (at >= 0) result->AddLast(iData[at]);
  }
  return result;
}

InstVector_sptr InstVector_cl::GetInstsBySortedRVs(const VarsVector_sptr& vars) const {
  InstVector_sptr result = new InstVector_cl();
  for (int i = 0, k = 0; i < iSize && k < vars->GetNumberOfVars();) {
    int a = iData[i]->GetId(), b = vars->GetVar(k)->GetId();
    if (a == b) {
      result->AddLast(iData[i]);
      i++;
      k++;
    } else if (a < b) {
      i++;
    } else {
      k++;
    }
  }
  return result;
}

InstVector_sptr InstVector_cl::GetIndexAssignment(int flatIndex, const RvVector_sptr& scope) {
  InstVector_sptr assignment = new InstVector_cl(scope);
  assignment->ForceSetValue(flatIndex);
  return assignment;
}

void InstVector_cl::Merge(const InstVector_sptr& other) {
  for (int i = 0; i < other->iSize; i++) AddLast(other->iData[i]);
}

int InstVector_cl::IsLegalValue() const {
  for (int i = 0; i < iSize; i++)
    if (!iData[i]->IsLegalValue()) return 0;
  return 1;
}

int InstVector_cl::IsEntirelyIllegalValue() const {
  for (int i = 0; i < iSize; i++)
    if (iData[i]->IsLegalValue()) return 0;
  return 1;
}

// ---------------------------------------------------------------- values between vectors

void InstVector_cl::Copy(const InstVector_sptr& target) const {
  for (int i = 0, j = 0; i < iSize && j < target->iSize; i++) {
    if (target->iData[j]->GetId() != iData[i]->GetId()) continue;
    target->iData[j]->SetValue(iData[i]);
    j++;
  }
  target->SetChanged();
  if (target->IsPureDiscrete()) target->RecalculateIndex();
}

void InstVector_cl::GetValuesFrom(const InstVector_sptr& source, RvMapping_sptr mapping) {
  if (mapping.IsNull()) mapping = new RvMapping_cl(*this, *source, 0);
  for (int i = 0; i < iSize; i++) {
    int at = mapping->GetIndex(i);
    if (at >= 0) iData[i]->SetValue(source->iData[at]);
  }
  SetChanged();
}

void InstVector_cl::GeneralInitialize(const InstVector_sptr& source, Random_cl* random) {
  for (int i = 0; i < iSize; i++) iData[i]->GeneralInitialize(source->iData[i], random);
  SetChanged();
}
