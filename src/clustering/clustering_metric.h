// How alike two rows or merged groups of rows are, and how to merge them: the clustering metrics.
#ifndef VORN_CLUSTERING_CLUSTERING_METRIC_H
#define VORN_CLUSTERING_CLUSTERING_METRIC_H

#include <ostream>

#include "pipeline/heap.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "prob/matrix.h"

class VornRun_cl;

// One object or one merged group, with its cost against what it was last compared with. A cell
// equal to the missing value is absent, and a dimension counts only where both sides have a value.
class ClusteringMetric_cl : public HeapEntry_cl {
 public:
  ClusteringMetric_cl();
  ~ClusteringMetric_cl() override = default;
  ClusteringMetric_cl(const ClusteringMetric_cl&) = delete;
  ClusteringMetric_cl& operator=(const ClusteringMetric_cl&) = delete;

  // A missing cost never has priority; against a missing cost any other has; else the lower wins.
  int IHaveHigherPriority(const HeapEntry_cl* other) const override;
  virtual void Init(Matrix_sptr matrix, int row) = 0;
  // One row as above; several: the merge of a metric made for each row.
  virtual void Init(Matrix_sptr matrix, Vector_tmpl<int>* rows);
  virtual void Set(const ClusteringMetric_cl* other);
  virtual ClusteringMetric_cl* Clone() const = 0;
  // A metric of the same kind with no contents.
  virtual ClusteringMetric_cl* GetEmpty() const = 0;
  int GetValidDimensions() const { return iValidDimensions; }
  // Becomes the merge of the two; the cost stays as it is.
  virtual void Combine(ClusteringMetric_cl* a, ClusteringMetric_cl* b) = 0;
  // Merges the list left to right.
  virtual void Combine(Vector_tmpl<ClusteringMetric_cl*>* metrics);
  virtual void ComputeCost(ClusteringMetric_cl* a, ClusteringMetric_cl* b) = 0;
  // One: its cost; two: the pair form; more: the merge of all but the last against the last.
  virtual void ComputeCost(Vector_tmpl<ClusteringMetric_cl*>* metrics);
  // The pair costs of a against each of n others, the very numbers ComputeCost(a, other) gives, in
  // costs; this metric is left with the last pair's cost.
  virtual void ComputeCosts(ClusteringMetric_cl* a, ClusteringMetric_cl* const* others, int n, double* costs);
  virtual const char* GetName() const = 0;
  double GetCost() const { return iCost; }
  void SetCost(double cost) { iCost = cost; }
  virtual void CleanUp() {}
  virtual void Print(std::ostream& out) const;

  // One weight per dimension, or null for all 1; the metrics do not own the vector.
  static void SetDimensionWeights(Vector_tmpl<double>* weights);
  static Vector_tmpl<double>* GetDimensionWeights() { return iDimensionWeights; }
  // The missing value when no weights are set.
  static double GetDimensionWeight(int i);
  static void SetProperties(PropertyTreeIter_cl* properties);
  static PropertyTreeIter_cl* GetProperties() { return iProperties; }
  static void SetRun(VornRun_cl* run) { iRun = run; }

 protected:
  // The weight that sums use: 1 without weights.
  static double Weight(int i) { return iDimensionWeights ? (*iDimensionWeights)[i] : 1.0; }
  // The sum of the weights over d dimensions.
  static double TotalWeight(int d);

  double iCost;
  int iValidDimensions = 0;

  static Vector_tmpl<double>* iDimensionWeights;
  static PropertyTreeIter_cl* iProperties;
  static VornRun_cl* iRun;
};

// A profile of one value per dimension and the number of rows merged into it; the base of the
// centroid metrics, which merge by the count-weighted mean.
class ClusteringMetricProfile_cl : public ClusteringMetric_cl {
 public:
  ~ClusteringMetricProfile_cl() override { delete[] iProfile; }

  void Init(Matrix_sptr matrix, int row) override;
  using ClusteringMetric_cl::Init;
  void Set(const ClusteringMetric_cl* other) override;
  void Combine(ClusteringMetric_cl* a, ClusteringMetric_cl* b) override;
  using ClusteringMetric_cl::Combine;
  void CleanUp() override;

  int GetNumDimensions() const { return iDims; }
  const double* GetProfile() const { return iProfile; }
  double GetCount() const { return iCount; }
  int GetNumPresent() const { return iNumPresent; }

 protected:
  // Room for d dimensions; contents stay undefined.
  void Allocate(int d);
  // Recounts the present dimensions and their weighted sums from the profile.
  void Summarise();

  double* iProfile = nullptr;
  int iDims = 0;
  double iCount = 0.0;
  // Caches of the profile that let a pair of complete profiles skip the per-cell presence tests.
  int iNumPresent = 0;
  double iSum = 0.0;
  double iSumSquares = 0.0;
};

// "Euclidean": the mean pairwise distance of the merged objects, scaled up for absent dimensions.
class ClusteringMetricEuclidean_cl : public ClusteringMetricProfile_cl {
 public:
  ClusteringMetric_cl* Clone() const override;
  ClusteringMetric_cl* GetEmpty() const override { return new ClusteringMetricEuclidean_cl; }
  void ComputeCost(ClusteringMetric_cl* a, ClusteringMetric_cl* b) override;
  void ComputeCost(Vector_tmpl<ClusteringMetric_cl*>* metrics) override;
  // The count-weighted mean of the present values of each dimension.
  void Combine(Vector_tmpl<ClusteringMetric_cl*>* metrics) override;
  using ClusteringMetricProfile_cl::Combine;
  const char* GetName() const override { return "Euclidean"; }

 private:
  // The mean of the pairwise distances of the m objects that have any value, or their one distance.
  void SetPairCost(double total, int contributing, int m, double count, int valid);
};

// "Pearson" (centred) and "UncenteredPearson": a correlation, so the higher cost comes first.
class ClusteringMetricPearson_cl : public ClusteringMetricProfile_cl {
 public:
  explicit ClusteringMetricPearson_cl(int isCentered) : iIsCentered(isCentered) {}

  int IHaveHigherPriority(const HeapEntry_cl* other) const override;
  ClusteringMetric_cl* Clone() const override;
  ClusteringMetric_cl* GetEmpty() const override { return new ClusteringMetricPearson_cl(iIsCentered); }
  void ComputeCost(ClusteringMetric_cl* a, ClusteringMetric_cl* b) override;
  using ClusteringMetric_cl::ComputeCost;
  // Complete profiles without weights go four at a time, their cross sums interleaved.
  void ComputeCosts(ClusteringMetric_cl* a, ClusteringMetric_cl* const* others, int n, double* costs) override;
  const char* GetName() const override { return iIsCentered ? "Pearson" : "UncenteredPearson"; }
  // The weighted mean and population deviation of the profile, missing without weight or variance.
  void ComputeStats();
  void Print(std::ostream& out) const override;

 private:
  // The cost from the sums over the valid ones of d dimensions.
  void SetCostFromSums(int d, double sx, double sy, double sxx, double syy, double sxy, double sw, int valid);

  int iIsCentered;
  double iMean = -1.7976931348623157e308;
  double iStdDev = -1.7976931348623157e308;
};

class ClusteringMetricFactory_cl {
 public:
  // "Euclidean", "Pearson", "UncenteredPearson"; any other name stops with "Unrecognized metric <name>".
  static ClusteringMetric_cl* CreateMetric(Name_sptr name);
  static ClusteringMetric_cl* CreateMetric(Name_sptr name, Matrix_sptr matrix, int row);
  // One scratch metric of the last asked name, made again when the name changes.
  static ClusteringMetric_cl* GetTmpMetric(const char* name);
};

#endif
