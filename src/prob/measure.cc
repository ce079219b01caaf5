// The measure interface: shared operations and the stops of operations a class cannot do.
#include "prob/measure.h"

#include <cmath>
#include <cstdlib>
#include <iostream>

Measure_cl::Measure_cl() : iRandom(NextSeed()) {}

Measure_cl::Measure_cl(const Measure_cl&) : RefCount_cl(), iRandom(NextSeed()) {}

long Measure_cl::NextSeed() {
  long seed = Random_cl::GetGlobalRandSeed();
  double x = seed * 0.6180339887;
  Random_cl::SetGlobalRandSeed(static_cast<long>((x - std::floor(x)) * 2147483646.0));
  return seed;
}

void Measure_cl::Unsupported(const char* operation) const {
  std::cerr << "Measure_cl::" << operation << " is not supported by measure type " << GetType() << std::endl;
  abort();
}

RvVector_sptr Measure_cl::GetRVs() const { Unsupported("GetRVs"); }
Measure_sptr Measure_cl::Copy() const { Unsupported("Copy"); }
void Measure_cl::CopyMyValues(Measure_sptr) const { Unsupported("CopyMyValues"); }
double Measure_cl::GetValue(InstVector_sptr) { Unsupported("GetValue"); }
double Measure_cl::Normalize(double) { Unsupported("Normalize"); }
double Measure_cl::GetKLDist(Measure_sptr) { Unsupported("GetKLDist"); }
void Measure_cl::Sample(Sample_sptr const&) { Unsupported("Sample"); }
Measure_sptr Measure_cl::Instantiate(InstVector_sptr, Measure_sptr) { Unsupported("Instantiate"); }
Measure_sptr Measure_cl::ReduceTo(RvVector_sptr, Measure_sptr) { Unsupported("ReduceTo"); }
Measure_sptr Measure_cl::MinimizeTo(RvVector_sptr) { Unsupported("MinimizeTo"); }
double Measure_cl::GetMean(int) { Unsupported("GetMean"); }
double Measure_cl::GetCov(int, int) { Unsupported("GetCov"); }
void Measure_cl::LinearCombination(Measure_sptr, double, double, double, double, int, int, int) {
  Unsupported("LinearCombination");
}
Measure_sptr Measure_cl::GetMeasureOfInst(InstVector_sptr, int) { Unsupported("GetMeasureOfInst"); }
void Measure_cl::WriteFile(std::ostream&) const { Unsupported("WriteFile"); }
void Measure_cl::Translate(Translation_sptr, int) { Unsupported("Translate"); }

void Measure_cl::WriteFile(std::ostream& out, int indent) const {
  Indent(out, indent);
  WriteFile(out);
}

double Measure_cl::GetLogValue(InstVector_sptr inst) { return std::log(GetValue(inst)); }

InstVector_sptr Measure_cl::FillEmptyInst(InstVector_sptr inst, RvMapping_sptr mapping) {
  RvVector_sptr scope = GetRVs();
  if (iScratchInst.IsNull() || iScratchInst->GetNumberOfVars() != scope->GetNumberOfVars()) {
    iScratchInst = new InstVector_cl(scope);
  }
  if (mapping.IsNull()) mapping = new RvMapping_cl(*scope, *inst, 0);
  for (int i = 0; i < scope->GetNumberOfVars(); i++) {
    int at = mapping->GetIndex(i);
    if (at < 0) {
      std::cerr << "Measure_cl::FillEmptyInst: variable " << scope->GetRv(i)->GetName() << " is not in the assignment"
                << std::endl;
      abort();
    }
    (*iScratchInst)[i]->SetValue((*inst)[at]);
  }
  iScratchInst->SetChanged();
  return iScratchInst;
}

double Measure_cl::GetValueOfSuperset(InstVector_sptr inst, RvMapping_sptr mapping) {
  return GetValue(FillEmptyInst(inst, mapping));
}

double Measure_cl::GetLogValueOfSuperset(InstVector_sptr inst, RvMapping_sptr mapping) {
  return GetLogValue(FillEmptyInst(inst, mapping));
}

double Measure_cl::GetValueOfSubset(InstVector_sptr inst) {
  RvVector_sptr scope = GetRVs();
  if (scope->IsEqualStrict(inst)) return GetValue(inst);
  if (scope->IsEqual(inst)) return GetValueOfSuperset(inst, RvMapping_sptr());
  RvVector_sptr vars = new RvVector_cl(inst, 1);
  return ReduceTo(vars, Measure_sptr())->GetValueOfSuperset(inst, RvMapping_sptr());
}

Sample_sptr Measure_cl::NewSample() {
  Sample_sptr sample = new Sample_cl(GetRVs(), 1.0, 1.0);
  Sample(sample);
  return sample;
}

void Measure_cl::SampleIntoSuperset(Sample_sptr const& sample, RvMapping_sptr mapping) {
  RvVector_sptr scope = GetRVs();
  if (iScratchSample.IsNull() || iScratchSample->GetNumberOfVars() != scope->GetNumberOfVars()) {
    iScratchSample = new Sample_cl(scope, 1.0, 1.0);
  }
  iScratchSample->SetWeight(1.0);
  iScratchSample->SetProb(1.0);
  Sample(iScratchSample);
  if (mapping.IsNull()) mapping = new RvMapping_cl(*scope, *sample, 0);
  for (int i = 0; i < scope->GetNumberOfVars(); i++) (*sample)[mapping->GetIndex(i)]->SetValue((*iScratchSample)[i]);
  sample->SetChanged();
  sample->SetWeight(sample->GetWeight() * iScratchSample->GetWeight());
  sample->MultProb(iScratchSample->GetProb());
}

Measure_sptr Measure_cl::SumOut(RvVector_sptr vars) { return ReduceTo(GetRVs()->GetRest(vars), Measure_sptr()); }

int Measure_cl::IsRightMeasure(Measure_sptr m, RvVector_sptr scope) const {
  return !m.IsNull() && m->DoesInheritFrom(GetType()) && m->GetRVs()->IsEqualStrict(scope);
}

void Measure_cl::CalcMaximumMarginal(SingleRv_sptr rv, int& index, double& value) {
  index = -1;
  value = 0.0;
  if (!rv->IsDiscrete()) {
    std::cerr << "Measure_cl::CalcMaximumMarginal does not currently support Reals" << std::endl;
    return;
  }
  Measure_sptr marginal = ReduceTo(new RvVector_cl(SingleVar_sptr(rv)), Measure_sptr());
  InstVector_sptr inst = new InstVector_cl(SingleVar_sptr(rv));
  for (int k = 0; k < rv->GetDomain()->GetDomainSize(); k++) {
    (*inst)[0]->SetValue(k);
    inst->SetChanged();
    double v = marginal->GetValue(inst);
    if (v > value) {
      value = v;
      index = k;
    }
  }
}

void Measure_cl::PrintMarginal(SingleRv_sptr rv, double lower, double upper, std::ostream& out, double scale) {
  Measure_sptr marginal = ReduceTo(new RvVector_cl(SingleVar_sptr(rv)), Measure_sptr());
  InstVector_sptr inst = new InstVector_cl(SingleVar_sptr(rv));
  double step = (upper - lower) / 3000.0;
  for (int k = 0; k < 3000; k++) {
    double x = lower + k * step;
    (*inst)[0]->SetValue(x);
    inst->SetChanged();
    out << x << " " << scale * marginal->GetValue(inst) << std::endl;
  }
}

void Measure_cl::Indent(std::ostream& out, int indent) {
  for (int i = 0; i < indent; i++) out << ' ';
}
