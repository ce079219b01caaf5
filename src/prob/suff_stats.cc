// Sufficient statistics: weighted counts over discrete scopes, moments over real ones, moments per discrete cell.
#include "prob/suff_stats.h"

#include <algorithm>
#include <cstdlib>
#include <iomanip>
#include <iostream>

// ---------------------------------------------------------------- SuffStats_cl

SuffStats_cl::SuffStats_cl(int numVars)
    : iNumVars(static_cast<unsigned short>(numVars)), iNumHidden(0), iColumns(new unsigned short[numVars > 0 ? numVars : 1]) {
  for (int i = 0; i < numVars; i++) iColumns[i] = static_cast<unsigned short>(i);
}

SuffStats_cl::SuffStats_cl(const SuffStats_cl& other)
    : iNumVars(other.iNumVars), iNumHidden(other.iNumHidden), iColumns(new unsigned short[other.iNumVars > 0 ? other.iNumVars : 1]) {
  std::copy(other.iColumns, other.iColumns + iNumVars, iColumns);
}

SuffStats_cl::~SuffStats_cl() { delete[] iColumns; }

void SuffStats_cl::Fail(const char* operation) const {
  std::cerr << ClassName() << "::" << operation << " is not supported" << std::endl;
  abort();
}

SuffStats_cl* SuffStats_cl::Copy() const { Fail("Copy"); }
void SuffStats_cl::CopyMyValues(SuffStats_cl*) const { Fail("CopyMyValues"); }
RvVector_sptr SuffStats_cl::GetRvs() const { Fail("GetRvs"); }
void SuffStats_cl::Add(const SuffStats_cl*) { Fail("Add"); }
void SuffStats_cl::AddRecord(const int*, const double*, double) { Fail("AddRecord"); }
int SuffStats_cl::IsRecordComplete(const int*, const double*) const { Fail("IsRecordComplete"); }
void SuffStats_cl::Reset() { Fail("Reset"); }
void SuffStats_cl::WriteFile(std::ostream&) const { Fail("WriteFile"); }

void SuffStats_cl::MapRvsToIndices(const IntSet_tmpl<int>& columns) {
  RvVector_sptr rvs = GetRvs();
  iNumHidden = 0;
  for (int i = 0; i < iNumVars; i++) {
    int column = columns.GetEntry(rvs->GetRv(i)->GetId());
    if (column < 0) {
      iColumns[i] = kHiddenColumn;
      iNumHidden++;
    } else {
      iColumns[i] = static_cast<unsigned short>(column);
    }
  }
}

void SuffStats_cl::SetColumns(const int* columns) {
  iNumHidden = 0;
  for (int i = 0; i < iNumVars; i++) {
    iColumns[i] = columns[i] < 0 ? kHiddenColumn : static_cast<unsigned short>(columns[i]);
    if (columns[i] < 0) iNumHidden++;
  }
}

// ---------------------------------------------------------------- TableSuffStats_cl

static RvVector_sptr SortedById(const RvVector_sptr& scope) {
  RvVector_sptr sorted = new RvVector_cl(scope->GetNumberOfVars() + 1);
  for (int i = 0; i < scope->GetNumberOfVars(); i++) sorted->AddLast(scope->GetRv(i));
  std::stable_sort(&(*sorted)[0], &(*sorted)[0] + sorted->GetSize(),
                   [](const SingleRv_sptr& a, const SingleRv_sptr& b) { return a->GetId() < b->GetId(); });
  return sorted;
}

TableSuffStats_cl::TableSuffStats_cl(const RvVector_sptr& scope, int copy, int keepOrder)
    : SuffStats_cl(scope->GetNumberOfVars()), iDiscColumns(nullptr), iStrides(nullptr) {
  iScope = keepOrder ? (copy ? RvVector_sptr(new RvVector_cl(VarsVector_sptr(scope), 0)) : scope) : SortedById(scope);
  iDiscrete = iScope->GetDiscrete(0);
  iNumDiscrete = iDiscrete->GetNumberOfVars();
  iStrides = new int[iNumDiscrete > 1 ? iNumDiscrete - 1 : 1];
  int stride = 1;
  for (int k = iNumDiscrete - 1; k > 0; k--) {
    stride *= iDiscrete->GetRv(k)->GetDomain()->GetDomainSize();
    iStrides[k - 1] = stride;
  }
}

TableSuffStats_cl::TableSuffStats_cl(int cells)
    : SuffStats_cl(0), iNumDiscrete(0), iDiscColumns(nullptr), iStrides(new int[1]) {
  (void)cells;
}

TableSuffStats_cl::TableSuffStats_cl(const TableSuffStats_cl& other)
    : SuffStats_cl(other), iScope(other.iScope), iDiscrete(other.iDiscrete), iNumDiscrete(other.iNumDiscrete),
      iDiscColumns(nullptr), iStrides(new int[other.iNumDiscrete > 1 ? other.iNumDiscrete - 1 : 1]) {
  std::copy(other.iStrides, other.iStrides + (iNumDiscrete > 1 ? iNumDiscrete - 1 : 0), iStrides);
}

TableSuffStats_cl::~TableSuffStats_cl() {
  delete[] iDiscColumns;
  delete[] iStrides;
}

void TableSuffStats_cl::BuildDiscreteColumns() {
  iDiscColumns = new unsigned short[iNumDiscrete > 0 ? iNumDiscrete : 1];
  int k = 0;
  for (int i = 0; i < iNumVars; i++)
    if (iScope->GetRv(i)->IsDiscrete()) iDiscColumns[k++] = iColumns[i];
}

void TableSuffStats_cl::MapRvsToIndices(const IntSet_tmpl<int>& columns) {
  SuffStats_cl::MapRvsToIndices(columns);
  delete[] iDiscColumns;
  iDiscColumns = nullptr;
}

int TableSuffStats_cl::ComputeIndex(const int* discrete) {
  if (!iDiscColumns) BuildDiscreteColumns();
  int index = iNumDiscrete > 0 ? discrete[iDiscColumns[iNumDiscrete - 1]] : 0;
  for (int k = 0; k < iNumDiscrete - 1; k++) index += discrete[iDiscColumns[k]] * iStrides[k];
  return index;
}

int TableSuffStats_cl::IsRecordComplete(const int* discrete, const double*) const {
  if (iNumHidden > 0) return 0;
  for (int i = 0; i < iNumVars; i++)
    if (iScope->GetRv(i)->IsDiscrete() && discrete[iColumns[i]] == kRowMissingInt) return 0;
  return 1;
}

// ---------------------------------------------------------------- CountsSuffStats_cl

CountsSuffStats_cl::CountsSuffStats_cl(const RvVector_sptr& scope, int copy, int keepOrder)
    : TableSuffStats_cl(scope, copy, keepOrder), iNumCells(iDiscrete->GetJointDomainSize()),
      iWeights(new double[iNumCells]()), iTotal(0.0) {}

CountsSuffStats_cl::CountsSuffStats_cl(int cells)
    : TableSuffStats_cl(cells), iNumCells(cells), iWeights(new double[cells]()), iTotal(0.0) {}

CountsSuffStats_cl::CountsSuffStats_cl(const CountsSuffStats_cl& other)
    : TableSuffStats_cl(other), iNumCells(other.iNumCells), iWeights(new double[other.iNumCells]), iTotal(other.iTotal) {
  std::copy(other.iWeights, other.iWeights + iNumCells, iWeights);
}

CountsSuffStats_cl::~CountsSuffStats_cl() { delete[] iWeights; }

void CountsSuffStats_cl::CopyMyValues(SuffStats_cl* target) const {
  auto* counts = static_cast<CountsSuffStats_cl*>(target);
  std::copy(iWeights, iWeights + iNumCells, counts->iWeights);
  counts->iTotal = iTotal;
}

void CountsSuffStats_cl::Add(const SuffStats_cl* other) {
  const auto* counts = static_cast<const CountsSuffStats_cl*>(other);
  for (int i = 0; i < iNumCells; i++) iWeights[i] += counts->iWeights[i];
  iTotal += counts->iTotal;
}

void CountsSuffStats_cl::AddRecord(const int* discrete, const double* real, double weight) {
  if (weight == 0.0 || !IsRecordComplete(discrete, real)) return;
  iWeights[ComputeIndex(discrete)] += weight;
  iTotal += weight;
}

void CountsSuffStats_cl::Reset() { SetAllWeights(0.0); }

void CountsSuffStats_cl::WriteFile(std::ostream& out) const {
  for (int i = 0; i < iNumCells; i++) out << iWeights[i] << ' ';
  out << '\n';
}

void CountsSuffStats_cl::AddToWeight(int cell, double weight) {
  iWeights[cell] += weight;
  iTotal += weight;
}

void CountsSuffStats_cl::SetWeight(int cell, double weight) {
  iTotal += weight - iWeights[cell];
  iWeights[cell] = weight;
}

void CountsSuffStats_cl::SumTotal() {
  iTotal = 0.0;
  for (int i = 0; i < iNumCells; i++) iTotal += iWeights[i];
}

void CountsSuffStats_cl::SetWeights(const double* weights) {
  std::copy(weights, weights + iNumCells, iWeights);
  SumTotal();
}

void CountsSuffStats_cl::SetWeights(const int* weights) {
  for (int i = 0; i < iNumCells; i++) iWeights[i] = weights[i];
  SumTotal();
}

void CountsSuffStats_cl::AddWeights(const double* weights) {
  for (int i = 0; i < iNumCells; i++) iWeights[i] += weights[i];
  SumTotal();
}

void CountsSuffStats_cl::AddWeights(const int* weights) {
  for (int i = 0; i < iNumCells; i++) iWeights[i] += weights[i];
  SumTotal();
}

void CountsSuffStats_cl::SetAllWeights(double weight) {
  std::fill(iWeights, iWeights + iNumCells, weight);
  iTotal = weight * iNumCells;
}

void CountsSuffStats_cl::DivideBy(double divisor) {
  for (int i = 0; i < iNumCells; i++) iWeights[i] /= divisor;
  iTotal /= divisor;
}

// ---------------------------------------------------------------- MomentsSuffStats_cl

MomentsSuffStats_cl::MomentsSuffStats_cl(const RvVector_sptr& scope)
    : SuffStats_cl(scope->GetNumberOfVars()), iScope(scope), iFirst(new double[iNumVars > 0 ? iNumVars : 1]()),
      iSecond(new double[iNumVars > 0 ? iNumVars * iNumVars : 1]()), iWeight(0.0) {}

MomentsSuffStats_cl::MomentsSuffStats_cl(int n)
    : SuffStats_cl(n), iFirst(new double[n > 0 ? n : 1]()), iSecond(new double[n > 0 ? n * n : 1]()), iWeight(0.0) {}

MomentsSuffStats_cl::MomentsSuffStats_cl(const MomentsSuffStats_cl& other)
    : SuffStats_cl(other), iScope(other.iScope), iFirst(new double[iNumVars > 0 ? iNumVars : 1]),
      iSecond(new double[iNumVars > 0 ? iNumVars * iNumVars : 1]), iWeight(other.iWeight) {
  std::copy(other.iFirst, other.iFirst + iNumVars, iFirst);
  std::copy(other.iSecond, other.iSecond + iNumVars * iNumVars, iSecond);
}

MomentsSuffStats_cl::~MomentsSuffStats_cl() {
  delete[] iFirst;
  delete[] iSecond;
}

void MomentsSuffStats_cl::CopyMyValues(SuffStats_cl* target) const {
  static_cast<MomentsSuffStats_cl*>(target)->SetMoments(iWeight, iFirst, iSecond);
}

void MomentsSuffStats_cl::Add(const SuffStats_cl* other) {
  const auto* moments = static_cast<const MomentsSuffStats_cl*>(other);
  AddMoments(moments->iWeight, moments->iFirst, moments->iSecond);
}

void MomentsSuffStats_cl::AddRecord(const int* discrete, const double* real, double weight) {
  if (!IsRecordComplete(discrete, real)) return;
  for (int i = 0; i < iNumVars; i++) {
    double x = real[iColumns[i]];
    iFirst[i] += weight * x;
    for (int j = i; j < iNumVars; j++) iSecond[i * iNumVars + j] += weight * x * real[iColumns[j]];
  }
  iWeight += weight;
}

int MomentsSuffStats_cl::IsRecordComplete(const int*, const double* real) const {
  if (iNumHidden > 0) return 0;
  for (int i = 0; i < iNumVars; i++)
    if (real[iColumns[i]] == kRowMissingReal) return 0;
  return 1;
}

void MomentsSuffStats_cl::Reset() {
  std::fill(iFirst, iFirst + iNumVars, 0.0);
  std::fill(iSecond, iSecond + iNumVars * iNumVars, 0.0);
  iWeight = 0.0;
}

void MomentsSuffStats_cl::SetMoments(double weight, const double* first, const double* second) {
  iWeight = weight;
  std::copy(first, first + iNumVars, iFirst);
  std::copy(second, second + iNumVars * iNumVars, iSecond);
}

void MomentsSuffStats_cl::AddMoments(double weight, const double* first, const double* second) {
  iWeight += weight;
  for (int i = 0; i < iNumVars; i++) iFirst[i] += first[i];
  for (int i = 0; i < iNumVars * iNumVars; i++) iSecond[i] += second[i];
}

void MomentsSuffStats_cl::WriteFile(std::ostream& out) const {
  out << "Rvs: ";
  if (!iScope.IsNull()) out << VarsVector_sptr(iScope);
  out << '\n' << "total weight: " << iWeight << '\n';
  out << "# First Moments: \n";
  std::streamsize precision = out.precision(10);
  for (int i = 0; i < iNumVars; i++) out << iFirst[i] << ' ';
  out << '\n' << "# Second Moments: \n";
  for (int i = 0; i < iNumVars; i++) {
    for (int j = 0; j < iNumVars; j++) out << GetSecond(i, j) << ' ';
    out << '\n';
  }
  out.precision(precision);
}

// ---------------------------------------------------------------- MomentsTableSuffStats_cl

MomentsTableSuffStats_cl::MomentsTableSuffStats_cl(const RvVector_sptr& scope) : TableSuffStats_cl(scope, 0, 0) {
  iReal = iScope->GetReal(0);
  iNumCells = iDiscrete->GetJointDomainSize();
  iCells = new MomentsSuffStats_cl*[iNumCells];
  for (int c = 0; c < iNumCells; c++) iCells[c] = new MomentsSuffStats_cl(iReal);
  PassRealColumns();
}

MomentsTableSuffStats_cl::MomentsTableSuffStats_cl(int cells)
    : TableSuffStats_cl(cells), iNumCells(cells), iCells(new MomentsSuffStats_cl*[cells > 0 ? cells : 1]) {
  for (int c = 0; c < iNumCells; c++) iCells[c] = new MomentsSuffStats_cl(1);
}

MomentsTableSuffStats_cl::MomentsTableSuffStats_cl(const MomentsTableSuffStats_cl& other)
    : TableSuffStats_cl(other), iReal(other.iReal), iNumCells(other.iNumCells),
      iCells(new MomentsSuffStats_cl*[other.iNumCells > 0 ? other.iNumCells : 1]) {
  for (int c = 0; c < iNumCells; c++) iCells[c] = new MomentsSuffStats_cl(*other.iCells[c]);
}

MomentsTableSuffStats_cl::~MomentsTableSuffStats_cl() {
  for (int c = 0; c < iNumCells; c++) delete iCells[c];
  delete[] iCells;
}

void MomentsTableSuffStats_cl::PassRealColumns() {
  int n = iReal.IsNull() ? 0 : iReal->GetNumberOfVars();
  int* columns = new int[n > 0 ? n : 1];
  int k = 0;
  for (int i = 0; i < iNumVars; i++)
    if (!iScope->GetRv(i)->IsDiscrete()) columns[k++] = iColumns[i] == kHiddenColumn ? -1 : iColumns[i];
  for (int c = 0; c < iNumCells; c++) iCells[c]->SetColumns(columns);
  delete[] columns;
}

void MomentsTableSuffStats_cl::MapRvsToIndices(const IntSet_tmpl<int>& columns) {
  TableSuffStats_cl::MapRvsToIndices(columns);
  PassRealColumns();
}

void MomentsTableSuffStats_cl::CopyMyValues(SuffStats_cl* target) const {
  auto* table = static_cast<MomentsTableSuffStats_cl*>(target);
  for (int c = 0; c < iNumCells; c++) iCells[c]->CopyMyValues(table->iCells[c]);
}

void MomentsTableSuffStats_cl::Add(const SuffStats_cl* other) {
  const auto* table = static_cast<const MomentsTableSuffStats_cl*>(other);
  for (int c = 0; c < iNumCells; c++) iCells[c]->Add(table->iCells[c]);
}

void MomentsTableSuffStats_cl::AddRecord(const int* discrete, const double* real, double weight) {
  if (!TableSuffStats_cl::IsRecordComplete(discrete, real)) return;
  iCells[ComputeIndex(discrete)]->AddRecord(discrete, real, weight);
}

int MomentsTableSuffStats_cl::IsRecordComplete(const int* discrete, const double* real) const {
  if (!TableSuffStats_cl::IsRecordComplete(discrete, real)) return 0;
  return iNumCells == 0 || iCells[0]->IsRecordComplete(discrete, real);
}

void MomentsTableSuffStats_cl::Reset() {
  for (int c = 0; c < iNumCells; c++) iCells[c]->Reset();
}

void MomentsTableSuffStats_cl::WriteFile(std::ostream& out) const {
  for (int c = 0; c < iNumCells; c++) iCells[c]->WriteFile(out);
}

void MomentsTableSuffStats_cl::SetMoments(int cell, double weight, const double* first, const double* second) {
  iCells[cell]->SetMoments(weight, first, second);
}

template <class W>
void MomentsTableSuffStats_cl::WalkMoments(const W* weights, const double* first, const double* second, int add) {
  int n = iNumCells > 0 ? iCells[0]->GetNumVars() : 0;
  for (int c = 0; c < iNumCells; c++, first += n, second += n * n) {
    if (!(weights[c] > 0.0)) continue;
    if (add)
      iCells[c]->AddMoments(weights[c], first, second);
    else
      iCells[c]->SetMoments(weights[c], first, second);
  }
}

void MomentsTableSuffStats_cl::SetMoments(const double* weights, const double* first, const double* second) {
  WalkMoments(weights, first, second, 0);
}
void MomentsTableSuffStats_cl::SetMoments(const int* weights, const double* first, const double* second) {
  WalkMoments(weights, first, second, 0);
}
void MomentsTableSuffStats_cl::AddMoments(const double* weights, const double* first, const double* second) {
  WalkMoments(weights, first, second, 1);
}
void MomentsTableSuffStats_cl::AddMoments(const int* weights, const double* first, const double* second) {
  WalkMoments(weights, first, second, 1);
}

// ---------------------------------------------------------------- MultiSuffStats_cl

MultiSuffStats_cl::~MultiSuffStats_cl() {
  for (int i = 0; i < iStats.GetSize(); i++) delete iStats[i];
}

void MultiSuffStats_cl::Reset() {
  for (int i = 0; i < iStats.GetSize(); i++) iStats[i]->Reset();
}

void MultiSuffStats_cl::WriteFile(std::ostream& out) const {
  for (int i = 0; i < iStats.GetSize(); i++) iStats[i]->WriteFile(out);
}
