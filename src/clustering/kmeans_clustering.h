// K-means clustering of the rows of a matrix under a clustering metric.
#ifndef VORN_CLUSTERING_KMEANS_CLUSTERING_H
#define VORN_CLUSTERING_KMEANS_CLUSTERING_H

#include "clustering/clustering.h"

// Centres start as clones of k rows drawn at random; a cluster that loses all members stays dead.
class KmeansClustering_cl : public Clustering_cl {
 public:
  // Reads Metric, MaxIterations (100), CostTolerance and SwitchTolerance (percent, 0.01 each).
  KmeansClustering_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);
  KmeansClustering_cl(Name_sptr metric, int maxIterations, double costTolerance, double switchTolerance);
  ~KmeansClustering_cl() override;

  void Prepare() override;
  void Run() override;
  void Cleanup() override {}
  Vector_tmpl<int>* GetClusters() override;
  // Rows by cluster, and by row number within a cluster.
  Vector_tmpl<int>* GetClusterOrder() override;

  int GetNumIterations() const { return iIterations; }
  int IsDead(int cluster) const { return iDead[cluster]; }
  const ClusteringMetric_cl* GetCentre(int cluster) const { return iCentres[cluster]; }

 private:
  void PrintRuntimeInfo(int iteration, double cost, int switches, double costChange, double switchChange) const;
  void DeleteCentres();

  int iMaxIterations = 100;
  double iCostTolerance = 0.01;
  double iSwitchTolerance = 0.01;
  Vector_tmpl<int> iAssignment;
  Vector_tmpl<ClusteringMetric_cl*> iCentres;
  Vector_tmpl<int> iDead;
  int iIterations = 0;
};

#endif
