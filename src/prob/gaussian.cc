// Gaussians: densities, learning, conditioning, marginals, the canonical form and Gaussian messages.
#include "prob/gaussian.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <vector>

Gaussian_sptr Conv2Gaussian(const Measure_sptr& m) { return Conv2X<Gaussian_sptr>(m, "Gaussian_cl"); }
FullGaussian_sptr Conv2FullGaussian(const Measure_sptr& m) { return Conv2X<FullGaussian_sptr>(m, "FullGaussian_cl"); }
IndepGaussian_sptr Conv2IndepGaussian(const Measure_sptr& m) {
  return Conv2X<IndepGaussian_sptr>(m, "IndepGaussian_cl");
}
GaussianMsg_sptr Conv2GaussianMsg(const Measure_sptr& m) { return Conv2X<GaussianMsg_sptr>(m, "GaussianMsg_cl"); }

namespace {

const double kLog2Pi = std::log(2.0 * M_PI);

using Indices = std::vector<int>;

SqrMatrix_sptr SubSquare(const SqrMatrix_sptr& m, const Indices& idx) {
  SqrMatrix_sptr out = new SqrMatrix_cl(static_cast<int>(idx.size()));
  for (size_t i = 0; i < idx.size(); i++)
    for (size_t j = 0; j < idx.size(); j++) out->SetElement(i, j, m->GetElement(idx[i], idx[j]));
  return out;
}

// rows x cols block as plain row-major numbers.
std::vector<double> Block(const SqrMatrix_sptr& m, const Indices& rows, const Indices& cols) {
  std::vector<double> out(rows.size() * cols.size());
  for (size_t i = 0; i < rows.size(); i++)
    for (size_t j = 0; j < cols.size(); j++) out[i * cols.size() + j] = m->GetElement(rows[i], cols[j]);
  return out;
}

MatrixVector_sptr SubVector(const MatrixVector_sptr& v, const Indices& idx) {
  MatrixVector_sptr out = new MatrixVector_cl(static_cast<int>(idx.size()));
  for (size_t i = 0; i < idx.size(); i++) out->SetEntry(i, v->GetEntry(idx[i]));
  return out;
}

// Positions in scope of the variables of vars, in vars' order; the program stops when one is absent.
Indices PositionsOf(const RvVector_sptr& scope, const RvVector_sptr& vars, const char* who) {
  Indices out;
  for (int i = 0; i < vars->GetNumberOfVars(); i++) {
    int at = scope->GetFirstEntry(SingleVar_sptr(vars->GetRv(i)));
    if (at < 0) {
      std::cerr << who << ": variable " << vars->GetRv(i)->GetName() << " is not in the scope" << std::endl;
      abort();
    }
    out.push_back(at);
  }
  return out;
}

double LogDetOf(SqrMatrix_sptr m) {
  double det = m->GetDeterminant();
  return std::log(det);
}

}  // namespace

// ---------------------------------------------------------------- Gaussian_cl

Gaussian_cl::Gaussian_cl(RvVector_sptr vars) : iRVs(vars), iN(vars->GetNumberOfVars()) {}

Gaussian_cl::Gaussian_cl(const Gaussian_cl& other)
    : Measure_cl(other), iRVs(other.iRVs), iN(other.iN), iNormConst(other.iNormConst) {}

SqrMatrix_sptr Gaussian_cl::GetCovMatrix() {
  SqrMatrix_sptr cov = new SqrMatrix_cl(iN);
  for (int i = 0; i < iN; i++)
    for (int j = 0; j < iN; j++) cov->SetElement(i, j, GetCov(i, j));
  return cov;
}

MatrixVector_sptr Gaussian_cl::GetMeanVector() {
  MatrixVector_sptr mean = new MatrixVector_cl(iN);
  for (int i = 0; i < iN; i++) mean->SetEntry(i, GetMean(i));
  return mean;
}

double Gaussian_cl::GetLogValue(const double* x) {
  SqrMatrix_sptr inverse = GetInverseCov();
  std::vector<double> d(iN);
  for (int i = 0; i < iN; i++) d[i] = x[i] - GetMean(i);
  double quad = 0.0;
  for (int i = 0; i < iN; i++)
    for (int j = 0; j < iN; j++) quad += d[i] * inverse->GetElement(i, j) * d[j];
  return -0.5 * quad - 0.5 * (iN * kLog2Pi + GetLogDet());
}

double Gaussian_cl::GetValue(const double* x) { return std::exp(GetLogValue(x)) / GetNormalizingConstant(); }

void Gaussian_cl::ExtractValues(const InstVector_sptr& inst, double* x) const {
  for (int i = 0; i < iN; i++) {
    SingleInst_sptr value = inst->GetInst(SingleVar_sptr(iRVs->GetRv(i)));
    if (value.IsNull()) {
      std::cerr << "Gaussian_cl: variable " << iRVs->GetRv(i)->GetName() << " is not in the assignment" << std::endl;
      abort();
    }
    x[i] = value->GetRealValue();
  }
}

double Gaussian_cl::GetValue(InstVector_sptr inst) {
  std::vector<double> x(iN + 1);
  ExtractValues(inst, x.data());
  return GetValue(x.data());
}

double Gaussian_cl::GetLogValue(InstVector_sptr inst) {
  std::vector<double> x(iN + 1);
  ExtractValues(inst, x.data());
  return GetLogValue(x.data()) - std::log(GetNormalizingConstant());
}

void Gaussian_cl::LearnMean(double** rows, const double* weights, int n) {
  double total = 0.0;
  for (int r = 0; r < n; r++) total += weights[r];
  if (total < 1e-100) return;
  for (int i = 0; i < iN; i++) {
    double sum = 0.0;
    for (int r = 0; r < n; r++) sum += weights[r] * rows[r][i];
    SetMean(i, sum / total);
  }
}

void Gaussian_cl::Learn(double** rows, const double* weights, int n) {
  double total = 0.0;
  for (int r = 0; r < n; r++) total += weights[r];
  if (total < 1e-100) return;
  LearnMean(rows, weights, n);
  for (int i = 0; i < iN; i++) {
    for (int j = i; j < iN; j++) {
      double sum = 0.0;
      for (int r = 0; r < n; r++) sum += weights[r] * (rows[r][i] - GetMean(i)) * (rows[r][j] - GetMean(j));
      SetCov(i, j, sum / total);
    }
  }
}

double Gaussian_cl::GetLogP() { return -0.5 * iN * kLog2Pi - 0.5 * GetLogDet(); }

double Gaussian_cl::GetNormalizingConstant() {
  if (iNormConst > 0.0) return iNormConst;
  std::vector<double> low(iN), high(iN);
  int cut = 0;
  for (int i = 0; i < iN; i++) {
    double sd = std::sqrt(GetVariance(i));
    low[i] = GetMean(i) - 4.0 * sd;
    high[i] = GetMean(i) + 4.0 * sd;
    RealDomain_sptr domain = Conv2RealDomain(iRVs->GetRv(i)->GetDomain());
    if (domain.IsNull()) continue;
    if (domain->HasLower() && domain->GetLower() > low[i]) {
      low[i] = domain->GetLower();
      cut = 1;
    }
    if (domain->HasUpper() && domain->GetUpper() < high[i]) {
      high[i] = domain->GetUpper();
      cut = 1;
    }
  }
  iNormConst = 1.0;
  if (!cut) return iNormConst;
  // Cells of 0.2 standard deviations, coarsened evenly when the grid would be too large.
  double perDim = 40.0;
  if (std::pow(perDim, iN) > kMaxGridPoints) perDim = std::floor(std::pow(kMaxGridPoints, 1.0 / iN));
  std::vector<int> counts(iN);
  std::vector<double> step(iN);
  double volume = 1.0;
  for (int i = 0; i < iN; i++) {
    step[i] = 8.0 * std::sqrt(GetVariance(i)) / perDim;
    counts[i] = std::max(1, static_cast<int>(std::ceil((high[i] - low[i]) / step[i])));
    volume *= step[i];
  }
  std::vector<int> at(iN, 0);
  std::vector<double> x(iN);
  double sum = 0.0;
  for (;;) {
    for (int i = 0; i < iN; i++) x[i] = std::min(high[i], low[i] + (at[i] + 0.5) * step[i]);
    sum += std::exp(GetLogValue(x.data()));
    int k = iN - 1;
    while (k >= 0 && ++at[k] == counts[k]) at[k--] = 0;
    if (k < 0) break;
  }
  iNormConst = sum * volume;
  return iNormConst;
}

int Gaussian_cl::IsLegalCov() { return GetCovMatrix()->IsPositiveDefinite(0); }

double Gaussian_cl::GetEntropy() { return 0.5 * (GetLogDet() + iN * kLog2Pi + iN); }

namespace {

// (mp - mq)' inv (mp - mq) and tr(inv cov) for two Gaussians over the same variables.
void QuadAndTrace(Gaussian_cl* p, Gaussian_cl* q, double& quad, double& trace) {
  SqrMatrix_sptr inverse = q->GetInverseCov();
  int n = p->GetNumVars();
  quad = trace = 0.0;
  for (int i = 0; i < n; i++) {
    for (int j = 0; j < n; j++) {
      quad += (p->GetMean(i) - q->GetMean(i)) * inverse->GetElement(i, j) * (p->GetMean(j) - q->GetMean(j));
      trace += inverse->GetElement(i, j) * p->GetCov(j, i);
    }
  }
}

}  // namespace

double Gaussian_cl::GetKLDist(Measure_sptr other) {
  Gaussian_sptr q = Conv2Gaussian(other);
  double quad, trace;
  QuadAndTrace(this, q.Get(), quad, trace);
  return q->GetEntropy() - GetEntropy() - 0.5 * iN + 0.5 * quad + 0.5 * trace;
}

double Gaussian_cl::GetSumKLDists(Gaussian_sptr q) {
  double quadQ, traceQ, quadP, traceP;
  QuadAndTrace(this, q.Get(), quadQ, traceQ);
  QuadAndTrace(q.Get(), this, quadP, traceP);
  return 0.5 * (quadQ + quadP + traceQ + traceP) - iN;
}

SqrMatrix_sptr Gaussian_cl::GetCorrelationMatrix() {
  SqrMatrix_sptr out = new SqrMatrix_cl(iN);
  for (int i = 0; i < iN; i++) {
    for (int j = 0; j < iN; j++) {
      double c = GetCov(i, j);
      out->SetElement(i, j, c == 0.0 ? 0.0 : c / std::sqrt(GetVariance(i) * GetVariance(j)));
    }
  }
  return out;
}

void Gaussian_cl::Sample(Sample_sptr const& sample) {
  std::vector<double> z(iN + 1), x(iN + 1);
  for (int i = 0; i < iN; i++) z[i] = iRandom.SampleNormal();
  ConvertToMyCoordinates(z.data(), x.data());
  for (int i = 0; i < iN; i++) sample->GetInst(SingleVar_sptr(iRVs->GetRv(i)))->SetValue(x[i]);
  sample->SetChanged();
  sample->MultProb(std::exp(GetLogValue(x.data())));
}

// ---------------------------------------------------------------- FullGaussian_cl

FullGaussian_cl::FullGaussian_cl(RvVector_sptr vars)
    : Gaussian_cl(vars), iMean(new MatrixVector_cl(iN)), iCov(new SqrMatrix_cl(iN)) {}

FullGaussian_cl::FullGaussian_cl(RvVector_sptr vars, MatrixVector_sptr mean, SqrMatrix_sptr cov, int copy)
    : Gaussian_cl(vars), iMean(mean), iCov(cov) {
  if (!copy) return;
  iMean = new MatrixVector_cl(iN);
  iCov = new SqrMatrix_cl(iN);
  mean->CopyMyValues(iMean);
  cov->CopyMyValues(iCov);
}

FullGaussian_cl::FullGaussian_cl(FullGaussian_sptr* components, const double* weights, int n)
    : Gaussian_cl(components[0]->GetRVs()), iMean(new MatrixVector_cl(iN)), iCov(new SqrMatrix_cl(iN)) {
  double total = 0.0;
  for (int k = 0; k < n; k++) total += weights[k];
  for (int i = 0; i < iN; i++) {
    double m = 0.0;
    for (int k = 0; k < n; k++) m += weights[k] * components[k]->GetMean(i);
    iMean->SetEntry(i, m / total);
  }
  for (int i = 0; i < iN; i++) {
    for (int j = 0; j < iN; j++) {
      double s = 0.0;
      for (int k = 0; k < n; k++)
        s += weights[k] * (components[k]->GetCov(i, j) + components[k]->GetMean(i) * components[k]->GetMean(j));
      iCov->SetElement(i, j, s / total - iMean->GetEntry(i) * iMean->GetEntry(j));
    }
  }
}

FullGaussian_cl::FullGaussian_cl(const FullGaussian_cl& other)
    : Measure_cl(other), Gaussian_cl(other), iMean(new MatrixVector_cl(other.iN)), iCov(new SqrMatrix_cl(other.iN)) {
  other.iMean->CopyMyValues(iMean);
  other.iCov->CopyMyValues(iCov);
}

void FullGaussian_cl::ValueChange() {
  iInverseValid = iLogDetValid = iRootValid = 0;
  Gaussian_cl::ValueChange();
}

void FullGaussian_cl::SetMean(int i, double value) {
  iMean->SetEntry(i, value);
  ValueChange();
}

void FullGaussian_cl::SetCov(int i, int j, double value) {
  iCov->SetElement(i, j, value);
  iCov->SetElement(j, i, value);
  ValueChange();
}

SqrMatrix_sptr FullGaussian_cl::GetInverseCov() {
  if (!iInverseValid) {
    iInverse = iCov->GetInverse();
    iInverseValid = 1;
  }
  return iInverse;
}

double FullGaussian_cl::GetLogDet() {
  if (!iLogDetValid) {
    iLogDet = LogDetOf(iCov);
    iLogDetValid = 1;
  }
  return iLogDet;
}

SqrMatrix_sptr FullGaussian_cl::GetSquareRoot() {
  if (!iRootValid) {
    iRoot = iCov->SquareRootMethod();
    iRootValid = 1;
  }
  return iRoot;
}

void FullGaussian_cl::ConvertToMyCoordinates(const double* z, double* x) {
  SqrMatrix_sptr root = GetSquareRoot();
  for (int i = 0; i < iN; i++) {
    double sum = iMean->GetEntry(i);
    for (int k = 0; k <= i; k++) sum += root->GetElement(i, k) * z[k];
    x[i] = sum;
  }
}

void FullGaussian_cl::ConvertFromCanonical(const CanonicalGaussian_cl* canonical) {
  iCov = canonical->GetK()->GetInverse();
  for (int i = 0; i < iN; i++) {
    double sum = 0.0;
    for (int j = 0; j < iN; j++) sum += iCov->GetElement(i, j) * canonical->GetH()->GetEntry(j);
    iMean->SetEntry(i, sum);
  }
  ValueChange();
}

Measure_sptr FullGaussian_cl::Instantiate(InstVector_sptr inst, Measure_sptr) {
  Indices fixed, free;
  std::vector<double> x2;
  for (int i = 0; i < iN; i++) {
    SingleInst_sptr value = inst->GetInst(SingleVar_sptr(iRVs->GetRv(i)));
    if (value.IsNull()) {
      free.push_back(i);
    } else {
      fixed.push_back(i);
      x2.push_back(value->GetRealValue());
    }
  }
  if (fixed.empty()) return this;
  if (free.empty()) {
    Factor_sptr value = new Factor_cl(new RvVector_cl(), 0, 0);
    value->SetValue(GetValue(x2.data()), 0);
    return value;
  }
  size_t n1 = free.size(), n2 = fixed.size();
  SqrMatrix_sptr s22 = SubSquare(iCov, fixed);
  Matrix_sptr s21 = new Matrix_cl(n2, n1);
  std::vector<double> b21 = Block(iCov, fixed, free);
  for (size_t i = 0; i < n2; i++)
    for (size_t j = 0; j < n1; j++) s21->SetElement(i, j, b21[i * n1 + j]);
  // A = (S22^-1 S21)': the regression of the free variables on the fixed ones.
  Matrix_sptr a = s22->ComputeInvAB(s21)->Transpose();
  RvVector_sptr vars = new RvVector_cl();
  for (int i : free) vars->AddLast(iRVs->GetRv(i));
  FullGaussian_sptr result = new FullGaussian_cl(vars);
  for (size_t i = 0; i < n1; i++) {
    double m = iMean->GetEntry(free[i]);
    for (size_t k = 0; k < n2; k++) m += a->GetElement(i, k) * (x2[k] - iMean->GetEntry(fixed[k]));
    result->iMean->SetEntry(i, m);
    for (size_t j = 0; j < n1; j++) {
      double c = iCov->GetElement(free[i], free[j]);
      for (size_t k = 0; k < n2; k++) c -= a->GetElement(i, k) * s21->GetElement(k, j);
      result->iCov->SetElement(i, j, c);
    }
  }
  result->iCov->MakeSymmetric();
  result->ValueChange();
  return result;
}

Measure_sptr FullGaussian_cl::ReduceTo(RvVector_sptr vars, Measure_sptr) {
  Indices idx = PositionsOf(iRVs, vars, "FullGaussian_cl::ReduceTo");
  RvVector_sptr scope = new RvVector_cl();
  scope->Merge(vars);
  return new FullGaussian_cl(scope, SubVector(iMean, idx), SubSquare(iCov, idx), 0);
}

void FullGaussian_cl::WriteFile(std::ostream& out) const {
  out << "FullGaussian_cl: " << VarsVector_sptr(iRVs) << "\nmean:";
  for (int i = 0; i < iN; i++) out << " " << iMean->GetEntry(i);
  out << "\ncov:\n";
  for (int i = 0; i < iN; i++) {
    for (int j = 0; j < iN; j++) out << (j ? " " : "") << iCov->GetElement(i, j);
    out << "\n";
  }
}

// ---------------------------------------------------------------- IndepGaussian_cl

IndepGaussian_cl::IndepGaussian_cl(RvVector_sptr vars) : Gaussian_cl(vars) {
  iMeans.AddLast(iN, 0.0);
  iVariances.AddLast(iN, 1.0);
}

void IndepGaussian_cl::SetMean(int i, double value) {
  iMeans[i] = value;
  ValueChange();
}

void IndepGaussian_cl::SetCov(int i, int j, double value) {
  if (i == j) SetVariance(i, value);
}

void IndepGaussian_cl::SetVariance(int i, double value) {
  iVariances[i] = value;
  ValueChange();
}

SqrMatrix_sptr IndepGaussian_cl::GetInverseCov() {
  SqrMatrix_sptr inverse = new SqrMatrix_cl(iN);
  for (int i = 0; i < iN; i++) inverse->SetElement(i, i, 1.0 / iVariances[i]);
  return inverse;
}

double IndepGaussian_cl::GetLogDet() {
  double sum = 0.0;
  for (int i = 0; i < iN; i++) sum += std::log(iVariances[i]);
  return sum;
}

double IndepGaussian_cl::GetLogValue(const double* x) {
  double sum = 0.0;
  for (int i = 0; i < iN; i++) {
    double d = x[i] - iMeans[i];
    sum -= 0.5 * (kLog2Pi + std::log(iVariances[i]) + d * d / iVariances[i]);
  }
  return sum;
}

void IndepGaussian_cl::Learn(double** rows, const double* weights, int n) {
  double total = 0.0;
  for (int r = 0; r < n; r++) total += weights[r];
  if (total < 1e-100) return;
  LearnMean(rows, weights, n);
  for (int i = 0; i < iN; i++) {
    double sum = 0.0;
    for (int r = 0; r < n; r++) sum += weights[r] * (rows[r][i] - iMeans[i]) * (rows[r][i] - iMeans[i]);
    SetVariance(i, sum / total);
  }
}

void IndepGaussian_cl::ConvertToMyCoordinates(const double* z, double* x) {
  for (int i = 0; i < iN; i++) x[i] = iMeans[i] + std::sqrt(iVariances[i]) * z[i];
}

Measure_sptr IndepGaussian_cl::ReduceTo(RvVector_sptr vars, Measure_sptr) {
  Indices idx = PositionsOf(iRVs, vars, "IndepGaussian_cl::ReduceTo");
  RvVector_sptr scope = new RvVector_cl();
  scope->Merge(vars);
  IndepGaussian_sptr result = new IndepGaussian_cl(scope);
  for (size_t i = 0; i < idx.size(); i++) {
    result->SetMean(i, iMeans[idx[i]]);
    result->SetVariance(i, iVariances[idx[i]]);
  }
  return result;
}

void IndepGaussian_cl::WriteFile(std::ostream& out) const {
  out << "IndepGaussian_cl: " << VarsVector_sptr(iRVs) << "\n";
  for (int i = 0; i < iN; i++) out << "mean=" << iMeans[i] << " var=" << iVariances[i] << "\n";
}

// ---------------------------------------------------------------- CanonicalGaussian_cl

CanonicalGaussian_cl::CanonicalGaussian_cl(RvVector_sptr vars) : iRVs(new RvVector_cl()) {
  iRVs->Merge(vars);
  int n = iRVs->GetNumberOfVars();
  iK = new SqrMatrix_cl(n);
  iK->SetEntries(0.0);
  iH = new MatrixVector_cl(n);
}

// y = m + w'p + e, e ~ N(0, v): with z = (p, y) and a = (-w, 1), the log density is
// -(a'z - m)^2 / (2v) - 1/2 log(2 pi v).
CanonicalGaussian_cl::CanonicalGaussian_cl(const GaussianCpd_sptr& cpd) : CanonicalGaussian_cl(cpd->GetRVs()) {
  int n = iRVs->GetNumberOfVars();
  std::vector<double> a(n);
  for (int i = 0; i + 1 < n; i++) a[i] = -cpd->GetWeight(i);
  a[n - 1] = 1.0;
  double v = cpd->GetVariance(), m = cpd->GetMean();
  for (int i = 0; i < n; i++) {
    iH->SetEntry(i, a[i] * m / v);
    for (int j = 0; j < n; j++) iK->SetElement(i, j, a[i] * a[j] / v);
  }
  iG = -m * m / (2.0 * v) - 0.5 * std::log(2.0 * M_PI * v);
}

CanonicalGaussian_cl::CanonicalGaussian_cl(const CanonicalGaussian_cl& other)
    : iRVs(new RvVector_cl()), iG(other.iG), iWeight(other.iWeight), iWeightValid(other.iWeightValid) {
  iRVs->Merge(other.iRVs);
  iK = new SqrMatrix_cl(*other.iK);
  iH = new MatrixVector_cl(other.iH->GetSize());
  other.iH->CopyMyValues(iH);
}

void CanonicalGaussian_cl::ConvertFromMoments(FullGaussian_sptr moments) {
  int n = iRVs->GetNumberOfVars();
  iK = new SqrMatrix_cl(*moments->GetInverseCov());
  double hm = 0.0;
  for (int i = 0; i < n; i++) {
    double h = 0.0;
    for (int j = 0; j < n; j++) h += iK->GetElement(i, j) * moments->GetMean(j);
    iH->SetEntry(i, h);
    hm += h * moments->GetMean(i);
  }
  iG = moments->GetLogP() - 0.5 * hm;
  iWeightValid = 0;
}

double CanonicalGaussian_cl::GetWeight() {
  if (iWeightValid) return iWeight;
  int n = iRVs->GetNumberOfVars();
  SqrMatrix_sptr k = new SqrMatrix_cl(*iK);
  double det = n ? k->GetDeterminant() : 0.0;
  if (det == 0.0) {
    iWeight = std::exp(iG);
  } else {
    SqrMatrix_sptr inverse = k->GetInverse();
    double hm = 0.0;
    for (int i = 0; i < n; i++)
      for (int j = 0; j < n; j++) hm += iH->GetEntry(i) * inverse->GetElement(i, j) * iH->GetEntry(j);
    // log P of the moments: -(n/2) log 2 pi - 1/2 log det K^-1.
    double logP = -0.5 * n * kLog2Pi + 0.5 * std::log(det);
    iWeight = std::exp(0.5 * hm + iG - logP);
  }
  iWeightValid = 1;
  return iWeight;
}

void CanonicalGaussian_cl::MultiplyWeight(double factor) {
  iG += std::log(factor);
  iWeightValid = 0;
}

void CanonicalGaussian_cl::AddRVs(const RvVector_sptr& vars) {
  RvVector_sptr grown = RvVector_cl::UnionRvVectors(iRVs, vars, 1, 1);
  int n = iRVs->GetNumberOfVars(), m = grown->GetNumberOfVars();
  if (m == n) return;
  SqrMatrix_sptr k = new SqrMatrix_cl(m);
  k->SetEntries(0.0);
  MatrixVector_sptr h = new MatrixVector_cl(m);
  for (int i = 0; i < n; i++) {
    h->SetEntry(i, iH->GetEntry(i));
    for (int j = 0; j < n; j++) k->SetElement(i, j, iK->GetElement(i, j));
  }
  iRVs = grown;
  iK = k;
  iH = h;
}

void CanonicalGaussian_cl::Multiply(const CanonicalGaussian_cl* other, int op) {
  AddRVs(other->iRVs);
  double sign = op == OPERATOR_DIVIDE ? -1.0 : 1.0;
  Indices at = PositionsOf(iRVs, other->iRVs, "CanonicalGaussian_cl::Multiply");
  for (size_t i = 0; i < at.size(); i++) {
    iH->SetEntry(at[i], iH->GetEntry(at[i]) + sign * other->iH->GetEntry(i));
    for (size_t j = 0; j < at.size(); j++)
      iK->SetElement(at[i], at[j], iK->GetElement(at[i], at[j]) + sign * other->iK->GetElement(i, j));
  }
  iG += sign * other->iG;
  iWeightValid = 0;
}

// Integrating out b: K' = Kaa - Kab Kbb^-1 Kba, h' = ha - Kab Kbb^-1 hb,
// g' = g + 1/2 (nb log 2 pi - log det Kbb + hb' Kbb^-1 hb).
CanonicalGaussian_cl* CanonicalGaussian_cl::ReduceTo(RvVector_sptr vars) const {
  Indices keep = PositionsOf(iRVs, vars, "CanonicalGaussian_cl::ReduceTo"), out;
  for (int i = 0; i < iRVs->GetNumberOfVars(); i++)
    if (std::find(keep.begin(), keep.end(), i) == keep.end()) out.push_back(i);
  auto* result = new CanonicalGaussian_cl(vars);
  size_t na = keep.size(), nb = out.size();
  SqrMatrix_sptr kbb = SubSquare(iK, out);
  double logDetB = nb ? LogDetOf(new SqrMatrix_cl(*kbb)) : 0.0;
  SqrMatrix_sptr inv = nb ? kbb->GetInverse() : kbb;
  std::vector<double> kab = Block(iK, keep, out);
  // M = Kab Kbb^-1 (na x nb).
  std::vector<double> m(na * nb, 0.0);
  for (size_t i = 0; i < na; i++)
    for (size_t j = 0; j < nb; j++)
      for (size_t k = 0; k < nb; k++) m[i * nb + j] += kab[i * nb + k] * inv->GetElement(k, j);
  for (size_t i = 0; i < na; i++) {
    double h = iH->GetEntry(keep[i]);
    for (size_t k = 0; k < nb; k++) h -= m[i * nb + k] * iH->GetEntry(out[k]);
    result->iH->SetEntry(i, h);
    for (size_t j = 0; j < na; j++) {
      double c = iK->GetElement(keep[i], keep[j]);
      for (size_t k = 0; k < nb; k++) c -= m[i * nb + k] * kab[j * nb + k];
      result->iK->SetElement(i, j, c);
    }
  }
  double quad = 0.0;
  for (size_t i = 0; i < nb; i++)
    for (size_t j = 0; j < nb; j++) quad += iH->GetEntry(out[i]) * inv->GetElement(i, j) * iH->GetEntry(out[j]);
  result->iG = iG + 0.5 * (nb * kLog2Pi - logDetB + quad);
  return result;
}

// Fixing b at x: K' = Kaa, h' = ha - Kab x, g' = g + hb'x - 1/2 x'Kbb x.
CanonicalGaussian_cl* CanonicalGaussian_cl::Instantiate(InstVector_sptr inst) const {
  Indices keep, fixed;
  std::vector<double> x;
  RvVector_sptr vars = new RvVector_cl();
  for (int i = 0; i < iRVs->GetNumberOfVars(); i++) {
    SingleInst_sptr value = inst->GetInst(SingleVar_sptr(iRVs->GetRv(i)));
    if (value.IsNull()) {
      keep.push_back(i);
      vars->AddLast(iRVs->GetRv(i));
    } else {
      fixed.push_back(i);
      x.push_back(value->GetRealValue());
    }
  }
  auto* result = new CanonicalGaussian_cl(vars);
  for (size_t i = 0; i < keep.size(); i++) {
    double h = iH->GetEntry(keep[i]);
    for (size_t k = 0; k < fixed.size(); k++) h -= iK->GetElement(keep[i], fixed[k]) * x[k];
    result->iH->SetEntry(i, h);
    for (size_t j = 0; j < keep.size(); j++) result->iK->SetElement(i, j, iK->GetElement(keep[i], keep[j]));
  }
  double g = iG;
  for (size_t k = 0; k < fixed.size(); k++) {
    g += iH->GetEntry(fixed[k]) * x[k];
    for (size_t l = 0; l < fixed.size(); l++) g -= 0.5 * x[k] * iK->GetElement(fixed[k], fixed[l]) * x[l];
  }
  result->iG = g;
  return result;
}

double CanonicalGaussian_cl::GetLogValue(const double* x) const {
  int n = iRVs->GetNumberOfVars();
  double value = iG;
  for (int i = 0; i < n; i++) {
    value += iH->GetEntry(i) * x[i];
    for (int j = 0; j < n; j++) value -= 0.5 * x[i] * iK->GetElement(i, j) * x[j];
  }
  return value;
}

void CanonicalGaussian_cl::WriteFile(std::ostream& out) const {
  int n = iRVs->GetNumberOfVars();
  out << "CanonicalGaussian_cl: " << VarsVector_sptr(iRVs) << "\ng=" << iG << "\nh:";
  for (int i = 0; i < n; i++) out << " " << iH->GetEntry(i);
  out << "\nK:\n";
  for (int i = 0; i < n; i++) {
    for (int j = 0; j < n; j++) out << (j ? " " : "") << iK->GetElement(i, j);
    out << "\n";
  }
}

// ---------------------------------------------------------------- GaussianMsg_cl

GaussianMsg_cl::GaussianMsg_cl(RvVector_sptr discrete, RvVector_sptr real)
    : iRVs(RvVector_cl::UnionRvVectors(discrete, real, 1, 1)),
      iDiscrete(new RvVector_cl()),
      iReal(new RvVector_cl()),
      iCells(discrete->GetJointDomainSize() + 1, nullptr) {
  iDiscrete->Merge(discrete);
  iReal->Merge(real);
  for (int i = 0; i < iDiscrete->GetJointDomainSize(); i++) iCells.AddLast(new CanonicalGaussian_cl(iReal));
}

GaussianMsg_cl::GaussianMsg_cl(const GaussianMsg_cl& other)
    : Measure_cl(other),
      iRVs(other.iRVs),
      iDiscrete(other.iDiscrete),
      iReal(other.iReal),
      iCells(other.iCells.GetSize() + 1, nullptr) {
  for (int i = 0; i < other.iCells.GetSize(); i++) iCells.AddLast(new CanonicalGaussian_cl(*other.iCells[i]));
}

GaussianMsg_cl::~GaussianMsg_cl() { iCells.DeleteAll(); }

double GaussianMsg_cl::GetValue(InstVector_sptr inst) {
  int cell = 0;
  for (int i = 0; i < iDiscrete->GetNumberOfVars(); i++) {
    SingleInst_sptr value = inst->GetInst(SingleVar_sptr(iDiscrete->GetRv(i)));
    if (value.IsNull()) {
      std::cerr << "GaussianMsg_cl: variable " << iDiscrete->GetRv(i)->GetName() << " is not in the assignment"
                << std::endl;
      abort();
    }
    cell = cell * iDiscrete->GetRv(i)->GetDomain()->GetDomainSize() + value->GetIndex();
  }
  CanonicalGaussian_cl* gaussian = iCells[cell];
  std::vector<double> x(gaussian->GetRVs()->GetNumberOfVars() + 1);
  for (int i = 0; i < gaussian->GetRVs()->GetNumberOfVars(); i++) {
    SingleInst_sptr value = inst->GetInst(SingleVar_sptr(gaussian->GetRVs()->GetRv(i)));
    if (value.IsNull()) {
      std::cerr << "GaussianMsg_cl: variable " << gaussian->GetRVs()->GetRv(i)->GetName() << " is not in the assignment"
                << std::endl;
      abort();
    }
    x[i] = value->GetRealValue();
  }
  return std::exp(gaussian->GetLogValue(x.data()));
}

FullGaussian_sptr GaussianMsg_cl::GetFullGaussian(int cell) const {
  FullGaussian_sptr moments = new FullGaussian_cl(iCells[cell]->GetRVs());
  moments->ConvertFromCanonical(iCells[cell]);
  return moments;
}

void GaussianMsg_cl::EnterFactor(Factor_sptr factor, int op, FactorMapping_cl* mapping) {
  const int* first = mapping->GetFirst();
  const int* second = mapping->GetSecond();
  for (int s = 0; s < mapping->GetNumSmall(); s++) {
    double w = factor->GetValue(s);
    for (int k = 0; k < mapping->GetNumPerSmall(); k++) {
      CanonicalGaussian_cl* cell = iCells[first[s] + second[k]];
      if (op == OPERATOR_DIVIDE) {
        if (w > 0.0) cell->MultiplyWeight(1.0 / w);
      } else {
        cell->MultiplyWeight(w);
      }
    }
  }
}

void GaussianMsg_cl::EnterGaussianMsg(GaussianMsg_sptr other, int op, FactorMapping_cl* mapping) {
  const int* first = mapping->GetFirst();
  const int* second = mapping->GetSecond();
  for (int s = 0; s < mapping->GetNumSmall(); s++)
    for (int k = 0; k < mapping->GetNumPerSmall(); k++) iCells[first[s] + second[k]]->Multiply(other->iCells[s], op);
}

Factor_sptr GaussianMsg_cl::GetAsFactor(RvVector_sptr vars) {
  Factor_sptr all = new Factor_cl(iDiscrete, 0, 0);
  for (int i = 0; i < iCells.GetSize(); i++) all->SetValue(iCells[i]->GetWeight(), i);
  if (vars->IsEqualStrict(iDiscrete)) return all;
  return Conv2Factor(all->ReduceTo(vars, Measure_sptr()));
}

template <class Map>
GaussianMsg_sptr GaussianMsg_cl::MapCells(RvVector_sptr real, Map map) const {
  GaussianMsg_sptr result = new GaussianMsg_cl(iDiscrete, real);
  for (int i = 0; i < iCells.GetSize(); i++) {
    delete result->iCells[i];
    result->iCells[i] = map(iCells[i]);
  }
  return result;
}

Measure_sptr GaussianMsg_cl::ReduceTo(RvVector_sptr vars, Measure_sptr) {
  RvVector_sptr real = iReal->GetIntersection(vars, 1);
  return MapCells(real, [&](const CanonicalGaussian_cl* cell) { return cell->ReduceTo(real); });
}

Measure_sptr GaussianMsg_cl::Instantiate(InstVector_sptr inst, Measure_sptr) {
  return MapCells(iReal->GetDifference(inst, 1),
                  [&](const CanonicalGaussian_cl* cell) { return cell->Instantiate(inst); });
}

void GaussianMsg_cl::WriteFile(std::ostream& out) const {
  out << "GaussianMsg_cl: " << VarsVector_sptr(iRVs) << "\n";
  for (int i = 0; i < iCells.GetSize(); i++) {
    out << "cell=" << i << "\n";
    iCells[i]->WriteFile(out);
  }
}
