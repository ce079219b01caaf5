// Groups of rows that share a run of equal values over the same contiguous columns: biclusters.
#ifndef VORN_CLUSTERING_BI_CLUSTERING_H
#define VORN_CLUSTERING_BI_CLUSTERING_H

#include "pipeline/bitset.h"
#include "pipeline/hash_set.h"
#include "pipeline/heap.h"
#include "pipeline/vector.h"
#include "prob/matrix.h"

// The rows whose runs lie near one window of columns, with how far each run's ends were from the
// window's. In a heap the lower average mismatch comes first.
class ContiguousColumnCluster_cl : public HeapEntry_cl {
 public:
  ContiguousColumnCluster_cl(int first, int last, int numRows);

  int IHaveHigherPriority(const HeapEntry_cl* other) const override;
  // A window's key in the table of windows of a matrix with that many columns.
  static double GetKey(int first, int last, int numColumns) {
    return static_cast<double>(first) * numColumns + last;
  }
  // The row's run from column first to column last with its value as score.
  void AddRow(int row, int first, int last, double score);
  int PassesFilter(int minRows, double maxAverageMismatch) const;
  double GetAverageMismatch() const;
  // How far apart the two windows' ends are, summed over both ends.
  int GetColumnDifference(const ContiguousColumnCluster_cl* other) const;
  int GetNumCommonRows(const ContiguousColumnCluster_cl* other) const;
  int GetNumRows() const { return iRowList.GetSize(); }
  int GetFirst() const { return iFirst; }
  int GetLast() const { return iLast; }
  int GetMismatches() const { return iMismatches; }
  const Vector_tmpl<double>& GetScores() const { return iScores; }
  // Marks the cluster as covered by a better one.
  void Drop() { iDropped = 1; }
  int IsDropped() const { return iDropped; }
  // A new filter of the cluster's rows, ascending, and its columns.
  MatrixFilter_cl* CreateCluster() const;

 private:
  int iFirst;
  int iLast;
  Bitset_cl iRows;
  // The rows in the order they joined, each once, beside the bits for walking them.
  Vector_tmpl<int> iRowList;
  Vector_tmpl<double> iScores;
  int iMismatches = 0;
  int iDropped = 0;
};

class BiClustering_cl {
 public:
  explicit BiClustering_cl(Matrix_sptr matrix) : iMatrix(matrix) {}

  // A new vector of filters, one per kept cluster, best first. A run counts when it spans at least
  // minColumns columns and its value maps to a non-zero entry of cuts; a cluster needs minRows rows
  // and at most maxAverageMismatch per row; windows within 2 maxMismatch of a kept one that share
  // minOverlap of either one's rows are dropped.
  Vector_tmpl<MatrixFilter_cl*>* FindContiguousColumnClusters(const DoubleSet_tmpl<int>& cuts, int minColumns,
                                                             int minRows, int maxMismatch, double maxAverageMismatch,
                                                             double minOverlap);

 private:
  void CreateContiguousClusterCounts(const DoubleSet_tmpl<int>& cuts, int minColumns, int maxMismatch);
  void AddRun(int row, int first, int last, double value, int maxMismatch);
  void FilterContiguousClusterCounts(int minRows, double maxAverageMismatch);
  void FilterOverlappingContiguousClusters(int maxMismatch, double minOverlap);
  void DeleteClusters();

  Matrix_sptr iMatrix;
  // The windows in the order they were made, and the table that finds one by its key.
  Vector_tmpl<ContiguousColumnCluster_cl*> iClusters;
  DoubleSet_tmpl<ContiguousColumnCluster_cl*>* iClusterTable = nullptr;
};

#endif
