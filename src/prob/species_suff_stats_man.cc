// The statistics manager of one species on complete data: family and matrix queries, and the split sweeps of tree learning.
#include "prob/species_suff_stats_man.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "pipeline/missing.h"

SpeciesSuffStatsMan_cl::SpeciesSuffStatsMan_cl(SpeciesVorn_cl* species)
    : iMatrix(species->GetMicroarray() ? species->GetMicroarray()->GetMatrix() : Matrix_sptr()),
      iGeneAttributes(species->GetGeneAttributes()), iExperimentAttributes(species->GetExperimentAttributes()) {}

SpeciesSuffStatsMan_cl::SpeciesSuffStatsMan_cl(SpeciesAttributes_cl* attributes)
    : iGeneAttributes(attributes), iExperimentAttributes(nullptr) {}

SpeciesSuffStatsMan_cl::~SpeciesSuffStatsMan_cl() {
  RemoveStats();
  delete[] iSums;
  delete[] iSumSquares;
  delete[] iWeights;
}

void SpeciesSuffStatsMan_cl::AddStats(SuffStats_cl* stats) {
  if (iStats.GetSize() > 999) RemoveStats();
  iStats.AddLast(stats);
}

void SpeciesSuffStatsMan_cl::RemoveStats() {
  for (int i = 0; i < iStats.GetSize(); i++) delete iStats[i];
  iStats.RemoveAll();
}

SuffStats_cl* SpeciesSuffStatsMan_cl::ComputeStats(SingleSuffStatsQuery_cl* query) {
  auto* vornQuery = dynamic_cast<VornSuffStatsQuery_cl*>(query);
  int type = vornQuery ? vornQuery->GetQueryType() : VornSuffStatsQuery_cl::FAMILY;
  SuffStats_cl* stats = query->CreateStats();
  AddStats(stats);
  switch (type) {
    case VornSuffStatsQuery_cl::MATRIX_FILTER:
      ComputeMatrixStats(static_cast<MatrixFilterSuffStatsQuery_cl*>(query)->GetFilter(), stats);
      break;
    case VornSuffStatsQuery_cl::FAMILY:
      ComputeFamilyStats(stats, iGeneAttributes);
      break;
    default:
      std::cerr << "SpeciesCompSuffStatsMan_cl::ComputeStats unrecognized query type " << type << std::endl;
      abort();
  }
  query->SetStats(stats);
  return stats;
}

// The number that each value of a discrete child stands for: its name read by strtol, or the
// value itself in an int domain.
static std::vector<int> ValueNumbers(const SingleRv_sptr& child) {
  Domain_sptr domain = child->GetDomain();
  NameDomain_sptr names = Conv2NameDomain(domain);
  IntDomain_sptr ints = Conv2IntDomain(domain);
  std::vector<int> number(domain->GetDomainSize());
  for (int i = 0; i < domain->GetDomainSize(); i++)
    number[i] = names.IsNull() ? ints->GetLower() + i : static_cast<int>(strtol(names->IndexToName(i).CStr(), nullptr, 10));
  return number;
}

void SpeciesSuffStatsMan_cl::ComputeMatrixStats(const MatrixFilter_cl* filter, SuffStats_cl* stats) {
  if (auto* moments = dynamic_cast<MomentsSuffStats_cl*>(stats)) {
    double n, sx, sxx;
    iMatrix->ComputeMoments(filter, kMissingReal, n, sx, sxx);
    moments->SetMoments(n, &sx, &sxx);
    return;
  }
  // A discrete child's values are numbers: each cell, truncated, counts for the value of that name.
  auto* counts = static_cast<CountsSuffStats_cl*>(stats);
  std::vector<int> number = ValueNumbers(counts->GetRvs()->GetRv(0));
  IntSet_tmpl<int> values(2 * static_cast<int>(number.size()) + 1, -1);
  for (size_t i = 0; i < number.size(); i++) values.Insert(number[i], static_cast<int>(i));
  std::vector<int> cells(counts->GetNumCells(), 0);
  iMatrix->ComputeCounts(filter, kMissingInt, cells.data(), values);
  counts->SetWeights(cells.data());
}

void SpeciesSuffStatsMan_cl::ComputeFamilyStats(SuffStats_cl* stats, SpeciesAttributes_cl* attributes) {
  // Each row of the attribute table is one record, read in the table's column order.
  RvVector_sptr rvs = attributes->GetRvs();
  IntSet_tmpl<int> columns(2 * rvs->GetNumberOfVars() + 1, -1);
  for (int i = 0; i < rvs->GetNumberOfVars(); i++) columns.Insert(rvs->GetRv(i)->GetId(), i);
  stats->MapRvsToIndices(columns);
  int n = rvs->GetNumberOfVars();
  std::vector<int> discrete(n > 0 ? n : 1);
  std::vector<double> real(n > 0 ? n : 1);
  for (int row = 0; row < attributes->GetNumRows(); row++) {
    for (int i = 0; i < n; i++) {
      double v = attributes->GetValue(row, attributes->GetColumn(rvs->GetRv(i)->GetName()));
      int missing = v == kMissingReal;
      real[i] = missing ? kRowMissingReal : v;
      discrete[i] = missing ? kRowMissingInt : static_cast<int>(v);
    }
    stats->AddRecord(discrete.data(), real.data(), 1.0);
  }
}

void SpeciesSuffStatsMan_cl::ResetMomentsArrays(int n) {
  if (n > iMomentsLength) {
    delete[] iSums;
    delete[] iSumSquares;
    delete[] iWeights;
    iSums = new double[n];
    iSumSquares = new double[n];
    iWeights = new double[n];
    iMomentsLength = n;
  }
  std::memset(iSums, 0, sizeof(double) * n);
  std::memset(iSumSquares, 0, sizeof(double) * n);
  std::memset(iWeights, 0, sizeof(double) * n);
}

void SpeciesSuffStatsMan_cl::ClearSplitCache() {
  iCache.iMatrix = nullptr;
  iCache.iSplitRows = -1;
}

// Whether a stored side equals the filter's side, a null side standing for all of count.
static bool SameSide(const std::vector<int>& stored, const Vector_tmpl<int>* side, int count) {
  int n = side ? side->GetSize() : count;
  if (static_cast<int>(stored.size()) != n) return false;
  for (int i = 0; i < n; i++)
    if (stored[i] != (side ? (*side)[i] : i)) return false;
  return true;
}

static void CopySide(std::vector<int>& stored, const Vector_tmpl<int>* side, int count) {
  int n = side ? side->GetSize() : count;
  stored.resize(n);
  for (int i = 0; i < n; i++) stored[i] = side ? (*side)[i] : i;
}

void SpeciesSuffStatsMan_cl::PrepareSplitCache(const MatrixFilter_cl* filter, int splitRows) {
  const Matrix_cl* m = iMatrix.Get();
  if (iCache.iMatrix == m && iCache.iSplitRows == splitRows &&
      SameSide(iCache.iRows, filter->GetRows(), m->GetNumRows()) &&
      SameSide(iCache.iColumns, filter->GetColumns(), m->GetNumCols()))
    return;
  iCache.iMatrix = m;
  iCache.iSplitRows = splitRows;
  CopySide(iCache.iRows, filter->GetRows(), m->GetNumRows());
  CopySide(iCache.iColumns, filter->GetColumns(), m->GetNumCols());
  const std::vector<int>& split = splitRows ? iCache.iRows : iCache.iColumns;
  const std::vector<int>& other = splitRows ? iCache.iColumns : iCache.iRows;
  iCache.iCells.resize(split.size() * other.size());
  iCache.iStart.resize(split.size() + 1);
  double* out = iCache.iCells.data();
  size_t at = 0;
  if (splitRows) {
    for (size_t i = 0; i < split.size(); i++) {
      iCache.iStart[i] = static_cast<int>(at);
      const double* row = m->GetRow(split[i]);
      for (int c : other)
        if (row[c] != kMissingReal) out[at++] = row[c];
    }
  } else {
    // The copy is built by rows so that the matrix is read in its own order, each column's cells
    // landing in their place; a first pass counts each column's non-missing cells.
    std::vector<int> fill(split.size() + 1, 0);
    for (int r : other) {
      const double* row = m->GetRow(r);
      for (size_t i = 0; i < split.size(); i++) fill[i + 1] += row[split[i]] != kMissingReal;
    }
    for (size_t i = 0; i < split.size(); i++) fill[i + 1] += fill[i];
    for (size_t i = 0; i <= split.size(); i++) iCache.iStart[i] = fill[i];
    for (int r : other) {
      const double* row = m->GetRow(r);
      for (size_t i = 0; i < split.size(); i++)
        if (row[split[i]] != kMissingReal) out[fill[i]++] = row[split[i]];
    }
    at = iCache.iStart[split.size()];
  }
  iCache.iStart[split.size()] = static_cast<int>(at);
}

template <class BucketOf>
void SpeciesSuffStatsMan_cl::AssignBuckets(SpeciesAttributes_cl* attributes, int attribute, BucketOf bucketOf,
                                           Vector_tmpl<Vector_tmpl<int>*>& objects, Vector_tmpl<int>* counts) {
  const std::vector<int>& split = iCache.iSplitRows ? iCache.iRows : iCache.iColumns;
  const Matrix_cl* values = attributes->GetMatrix().Get();
  iBuckets.resize(split.size());
  for (size_t i = 0; i < split.size(); i++) {
    int bucket = bucketOf(values->GetRow(split[i])[attribute]);
    iBuckets[i] = bucket;
    if (bucket < 0) continue;
    objects[bucket]->AddLast(split[i]);
    if (counts) (*counts)[bucket]++;
  }
}

MomentsTableSuffStats_cl* SpeciesSuffStatsMan_cl::SweepMoments(int buckets) {
  auto* table = new MomentsTableSuffStats_cl(buckets);
  ResetMomentsArrays(buckets);
  const double* cells = iCache.iCells.data();
  const int* start = iCache.iStart.data();
  for (size_t i = 0; i < iBuckets.size(); i++) {
    int bucket = iBuckets[i];
    if (bucket < 0) continue;
    // Sums run in the same order as cell by cell over the matrix, so the bits are the same;
    // the weight is a count, exact in a double, so it is added at once.
    double s = iSums[bucket], ss = iSumSquares[bucket];
    for (int k = start[i]; k < start[i + 1]; k++) {
      double x = cells[k];
      s += x;
      ss += x * x;
    }
    iSums[bucket] = s;
    iSumSquares[bucket] = ss;
    iWeights[bucket] += start[i + 1] - start[i];
  }
  for (int b = 0; b < buckets; b++) table->SetMoments(b, iWeights[b], &iSums[b], &iSumSquares[b]);
  AddStats(table);
  return table;
}

MultiSuffStats_cl* SpeciesSuffStatsMan_cl::SweepCounts(int buckets, const SingleRv_sptr& child) {
  // A direct table over the range of the value numbers stands for the look-up by number.
  std::vector<int> number = ValueNumbers(child);
  int size = static_cast<int>(number.size());
  int low = size ? *std::min_element(number.begin(), number.end()) : 0;
  int high = size ? *std::max_element(number.begin(), number.end()) : -1;
  std::vector<int> indexOf(static_cast<size_t>(high - low + 1), -1);
  for (int i = size - 1; i >= 0; i--) indexOf[number[i] - low] = i;
  std::vector<long long> tally(static_cast<size_t>(buckets) * size, 0);
  const double* cells = iCache.iCells.data();
  const int* start = iCache.iStart.data();
  for (size_t i = 0; i < iBuckets.size(); i++) {
    if (iBuckets[i] < 0) continue;
    long long* row = &tally[static_cast<size_t>(iBuckets[i]) * size];
    for (int k = start[i]; k < start[i + 1]; k++) {
      double x = cells[k];
      if (!(x > low - 1.0 && x < high + 1.0)) continue;
      int index = indexOf[static_cast<int>(x) - low];
      if (index >= 0) row[index]++;
    }
  }
  auto* multi = new MultiSuffStats_cl(1, buckets);
  for (int b = 0; b < buckets; b++) {
    auto* counts = new CountsSuffStats_cl(size);
    // Counts are whole numbers, so adding them at once equals adding 1.0 cell by cell.
    for (int v = 0; v < size; v++)
      if (tally[static_cast<size_t>(b) * size + v]) counts->AddToWeight(v, static_cast<double>(tally[static_cast<size_t>(b) * size + v]));
    multi->AddStats(counts);
  }
  AddStats(multi);
  return multi;
}

MomentsTableSuffStats_cl* SpeciesSuffStatsMan_cl::ComputeStatsSplit(const MatrixFilter_cl* filter, int attribute,
                                                                    int values, AttributeGroupType_cl type,
                                                                    Vector_tmpl<int>* counts,
                                                                    Vector_tmpl<Vector_tmpl<int>*>& objects) {
  int splitRows = type == GENE_ATTRIBUTES;
  PrepareSplitCache(filter, splitRows);
  counts->RemoveAll();
  counts->AddLast(values, 0);
  // Out-of-range values, the missing mark among them, would index past the buckets.
  auto bucketOf = [values](double v) { return v > -1.0 && v < values ? static_cast<int>(v) : -1; };
  AssignBuckets(splitRows ? iGeneAttributes : iExperimentAttributes, attribute, bucketOf, objects, counts);
  return SweepMoments(values);
}

SuffStats_cl* SpeciesSuffStatsMan_cl::ComputeStatsSplit(const MatrixFilter_cl* filter, int attribute,
                                                        AttributeGroupType_cl type, DoubleSet_tmpl<int>* values,
                                                        Vector_tmpl<Vector_tmpl<int>*>& objects,
                                                        const SingleRv_sptr& child) {
  int splitRows = type == GENE_ATTRIBUTES;
  PrepareSplitCache(filter, splitRows);
  int buckets = values->GetSize();
  auto bucketOf = [values, buckets](double v) {
    int b = values->GetEntry(v);
    return b >= 0 && b < buckets ? b : -1;
  };
  AssignBuckets(splitRows ? iGeneAttributes : iExperimentAttributes, attribute, bucketOf, objects, nullptr);
  if (child->IsDiscrete()) return SweepCounts(buckets, child);
  return SweepMoments(buckets);
}
