// The engine frame shared by hierarchical and k-means clustering of the rows of a matrix.
#ifndef VORN_CLUSTERING_CLUSTERING_H
#define VORN_CLUSTERING_CLUSTERING_H

#include <ostream>

#include "clustering/clustering_metric.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "prob/matrix.h"

class VornRun_cl;

// An engine clusters one metric per object. Cluster(n) runs Prepare, Run and Cleanup in turn.
class Clustering_cl {
 public:
  // Reads Metric, hands a clone of the iterator and the run to the metrics.
  Clustering_cl(Name_sptr method, PropertyTreeIter_cl* iter, VornRun_cl* run);
  Clustering_cl(Name_sptr method, Name_sptr metric);
  virtual ~Clustering_cl();
  Clustering_cl(const Clustering_cl&) = delete;
  Clustering_cl& operator=(const Clustering_cl&) = delete;

  // Takes the metrics over.
  virtual void Load(Vector_tmpl<ClusteringMetric_cl*>* metrics);
  // A metric per row of the matrix, or with groups one per group of rows.
  virtual void Load(Matrix_sptr matrix, Vector_tmpl<Vector_tmpl<int>*>* groups);
  virtual void Cluster(int numClusters);
  // A new vector with the cluster number of each object, -1 for none.
  virtual Vector_tmpl<int>* GetClusters() = 0;
  // New vectors of the objects of each cluster that stands apart from its surroundings.
  virtual Vector_tmpl<Vector_tmpl<int>*>* GetSeparableClusters(double minCostDifference, double maxSingletonParentCost,
                                                               int maxSize);
  void SetLogger(std::ostream* log) { iLog = log; }
  // The tree view pair base.cdt and base.gtr; engines without a tree stop.
  virtual void PrintTreeView(Name_sptr base, const Vector_tmpl<Name_sptr>* rowNames,
                             const Vector_tmpl<Name_sptr>* columnNames);
  void SetData(Matrix_sptr matrix) { iMatrix = matrix; }
  Matrix_sptr GetData() const { return iMatrix; }
  // A new vector of the objects in the order the result shows them.
  virtual Vector_tmpl<int>* GetClusterOrder() = 0;
  virtual void Prepare() = 0;
  virtual void Run() = 0;
  virtual void Cleanup() {}

  Name_sptr GetMethod() const { return iMethod; }
  Name_sptr GetMetricName() const { return iMetricName; }
  int GetNumObjects() const { return iMetrics ? iMetrics->GetSize() : 0; }
  ClusteringMetric_cl* GetMetric(int i) const { return (*iMetrics)[i]; }

 protected:
  void DeleteMetrics();

  Matrix_sptr iMatrix;
  Name_sptr iMethod;
  Name_sptr iMetricName;
  Vector_tmpl<ClusteringMetric_cl*>* iMetrics = nullptr;
  VornRun_cl* iRun = nullptr;
  int iNumClusters = 1;
  std::ostream* iLog = nullptr;
};

#endif
