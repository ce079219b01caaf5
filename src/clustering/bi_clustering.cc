// Groups of rows that share a run of equal values over the same contiguous columns: biclusters.
#include "clustering/bi_clustering.h"

#include <algorithm>
#include <cstdlib>

ContiguousColumnCluster_cl::ContiguousColumnCluster_cl(int first, int last, int numRows)
    : iFirst(first), iLast(last), iRows(numRows, 0), iRowList(8, -1), iScores(8, 0.0) {}

int ContiguousColumnCluster_cl::IHaveHigherPriority(const HeapEntry_cl* other) const {
  return GetAverageMismatch() < static_cast<const ContiguousColumnCluster_cl*>(other)->GetAverageMismatch();
}

void ContiguousColumnCluster_cl::AddRow(int row, int first, int last, double score) {
  if (!iRows.IsSet(row)) iRowList.AddLast(row);
  iRows.Set(row);
  iScores.AddLast(score);
  iMismatches += std::abs(iFirst - first) + std::abs(iLast - last);
}

double ContiguousColumnCluster_cl::GetAverageMismatch() const {
  return GetNumRows() > 0 ? static_cast<double>(iMismatches) / GetNumRows() : 0.0;
}

int ContiguousColumnCluster_cl::PassesFilter(int minRows, double maxAverageMismatch) const {
  return GetNumRows() >= minRows && GetNumRows() > 0 && GetAverageMismatch() <= maxAverageMismatch;
}

int ContiguousColumnCluster_cl::GetColumnDifference(const ContiguousColumnCluster_cl* other) const {
  return std::abs(iFirst - other->iFirst) + std::abs(iLast - other->iLast);
}

int ContiguousColumnCluster_cl::GetNumCommonRows(const ContiguousColumnCluster_cl* other) const {
  const ContiguousColumnCluster_cl* smaller = GetNumRows() <= other->GetNumRows() ? this : other;
  const ContiguousColumnCluster_cl* larger = smaller == this ? other : this;
  int common = 0;
  for (int i = 0; i < smaller->iRowList.GetSize(); i++) common += larger->iRows.IsSet(smaller->iRowList[i]);
  return common;
}

MatrixFilter_cl* ContiguousColumnCluster_cl::CreateCluster() const {
  Vector_tmpl<int>* rows = new Vector_tmpl<int>(GetNumRows() + 1, -1);
  for (int r = 0; r < iRows.GetNumBits(); r++)
    if (iRows.IsSet(r)) rows->AddLast(r);
  Vector_tmpl<int>* columns = new Vector_tmpl<int>(iLast - iFirst + 1, -1);
  for (int c = iFirst; c <= iLast; c++) columns->AddLast(c);
  return new MatrixFilter_cl(rows, 1, columns, 1);
}

// ---------------------------------------------------------------- the search

Vector_tmpl<MatrixFilter_cl*>* BiClustering_cl::FindContiguousColumnClusters(const DoubleSet_tmpl<int>& cuts,
                                                                            int minColumns, int minRows,
                                                                            int maxMismatch, double maxAverageMismatch,
                                                                            double minOverlap) {
  // A negative allowance would give empty windows; no mismatch at all is its least sensible value.
  if (maxMismatch < 0) maxMismatch = 0;
  CreateContiguousClusterCounts(cuts, minColumns, maxMismatch);
  FilterContiguousClusterCounts(minRows, maxAverageMismatch);
  FilterOverlappingContiguousClusters(maxMismatch, minOverlap);
  Vector_tmpl<MatrixFilter_cl*>* filters = new Vector_tmpl<MatrixFilter_cl*>(iClusters.GetSize() + 1, nullptr);
  for (int i = 0; i < iClusters.GetSize(); i++) filters->AddLast(iClusters[i]->CreateCluster());
  DeleteClusters();
  return filters;
}

void BiClustering_cl::CreateContiguousClusterCounts(const DoubleSet_tmpl<int>& cuts, int minColumns,
                                                    int maxMismatch) {
  DeleteClusters();
  int rows = iMatrix->GetNumRows(), columns = iMatrix->GetNumCols();
  iClusterTable = new DoubleSet_tmpl<ContiguousColumnCluster_cl*>(64, nullptr);
  for (int r = 0; r < rows; r++) {
    for (int f = 0; f < columns;) {
      double value = iMatrix->GetElement(r, f);
      int l = f;
      while (l + 1 < columns && iMatrix->GetElement(r, l + 1) == value) l++;
      if (l - f + 1 >= minColumns && cuts.GetEntry(value) != 0) AddRun(r, f, l, value, maxMismatch);
      f = l + 1;
    }
  }
}

void BiClustering_cl::AddRun(int row, int f, int l, double value, int m) {
  int columns = iMatrix->GetNumCols();
  for (int a = std::max(0, f - m); a <= std::min(columns - 1, f + m); a++) {
    // What is left of the allowance for the end once the start has used its share.
    int d = m - std::abs(f - a);
    for (int b = std::max(l - d, a); b <= std::min(l + d, columns - 1); b++) {
      double key = ContiguousColumnCluster_cl::GetKey(a, b, columns);
      ContiguousColumnCluster_cl* cluster = iClusterTable->GetEntry(key);
      if (!cluster) {
        cluster = new ContiguousColumnCluster_cl(a, b, iMatrix->GetNumRows());
        iClusterTable->Insert(key, cluster);
        iClusters.AddLast(cluster);
      }
      cluster->AddRow(row, f, l, value);
    }
  }
}

void BiClustering_cl::FilterContiguousClusterCounts(int minRows, double maxAverageMismatch) {
  int kept = 0;
  for (int i = 0; i < iClusters.GetSize(); i++) {
    if (iClusters[i]->PassesFilter(minRows, maxAverageMismatch)) iClusters[kept++] = iClusters[i];
    else delete iClusters[i];
  }
  iClusters.RemoveLast(iClusters.GetSize() - kept);
  delete iClusterTable;
  iClusterTable = nullptr;
}

void BiClustering_cl::FilterOverlappingContiguousClusters(int maxMismatch, double minOverlap) {
  Heap_cl heap(iClusters.GetSize() + 1);
  for (int i = 0; i < iClusters.GetSize(); i++) heap.Insert(iClusters[i], 0);
  iClusters.RemoveAll();
  while (HeapEntry_cl* entry = heap.ExtractMax()) {
    ContiguousColumnCluster_cl* best = static_cast<ContiguousColumnCluster_cl*>(entry);
    // A cluster that a better one overlapped stays in the heap until it comes out.
    if (best->IsDropped()) {
      delete best;
      continue;
    }
    iClusters.AddLast(best);
    for (int i = 0; i < heap.GetSize(); i++) {
      ContiguousColumnCluster_cl* other = static_cast<ContiguousColumnCluster_cl*>(heap.GetEntry(i));
      if (other->IsDropped() || best->GetColumnDifference(other) > 2 * maxMismatch) continue;
      double common = best->GetNumCommonRows(other);
      if (common / best->GetNumRows() >= minOverlap || common / other->GetNumRows() >= minOverlap) other->Drop();
    }
  }
}

void BiClustering_cl::DeleteClusters() {
  iClusters.DeleteAll();
  delete iClusterTable;
  iClusterTable = nullptr;
}
