// The engine frame shared by hierarchical and k-means clustering of the rows of a matrix.
#include "clustering/clustering.h"

#include <cstdlib>
#include <iostream>

Clustering_cl::Clustering_cl(Name_sptr method, PropertyTreeIter_cl* iter, VornRun_cl* run)
    : iMethod(method), iMetricName(iter->GetProperty("Metric")), iRun(run) {
  ClusteringMetric_cl::SetProperties(iter->Clone());
  ClusteringMetric_cl::SetRun(run);
  std::cerr << "Clustering_cl::Clustering_cl(" << iMethod << "," << iMetricName << ")" << std::endl;
}

Clustering_cl::Clustering_cl(Name_sptr method, Name_sptr metric) : iMethod(method), iMetricName(metric) {}

Clustering_cl::~Clustering_cl() { DeleteMetrics(); }

void Clustering_cl::DeleteMetrics() {
  if (!iMetrics) return;
  iMetrics->DeleteAll();
  delete iMetrics;
  iMetrics = nullptr;
}

void Clustering_cl::Load(Vector_tmpl<ClusteringMetric_cl*>* metrics) {
  if (metrics == iMetrics) return;
  DeleteMetrics();
  iMetrics = metrics;
}

void Clustering_cl::Load(Matrix_sptr matrix, Vector_tmpl<Vector_tmpl<int>*>* groups) {
  iMatrix = matrix;
  int n = groups ? groups->GetSize() : matrix->GetNumRows();
  Vector_tmpl<ClusteringMetric_cl*>* metrics = new Vector_tmpl<ClusteringMetric_cl*>(n > 0 ? n : 1, nullptr);
  for (int i = 0; i < n; i++) {
    ClusteringMetric_cl* metric = ClusteringMetricFactory_cl::CreateMetric(iMetricName);
    if (groups) metric->Init(matrix, (*groups)[i]);
    else metric->Init(matrix, i);
    metrics->AddLast(metric);
  }
  Load(metrics);
}

void Clustering_cl::Cluster(int numClusters) {
  iNumClusters = numClusters;
  Prepare();
  Run();
  Cleanup();
}

Vector_tmpl<Vector_tmpl<int>*>* Clustering_cl::GetSeparableClusters(double, double, int) {
  Vector_tmpl<int>* assignment = GetClusters();
  Vector_tmpl<Vector_tmpl<int>*>* clusters = new Vector_tmpl<Vector_tmpl<int>*>(10, nullptr);
  for (int i = 0; i < assignment->GetSize(); i++) {
    int c = (*assignment)[i];
    if (c < 0) continue;
    while (clusters->GetSize() <= c) clusters->AddLast(new Vector_tmpl<int>(10, -1));
    (*clusters)[c]->AddLast(i);
  }
  delete assignment;
  return clusters;
}

void Clustering_cl::PrintTreeView(Name_sptr, const Vector_tmpl<Name_sptr>*, const Vector_tmpl<Name_sptr>*) {
  std::cerr << "Clustering_cl::PrintTreeView The method " << iMethod << " builds no tree" << std::endl;
  abort();
}
