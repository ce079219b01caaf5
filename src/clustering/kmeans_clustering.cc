// K-means clustering of the rows of a matrix under a clustering metric.
#include "clustering/kmeans_clustering.h"

#include <cmath>
#include <iostream>

#include "data/data_file.h"

KmeansClustering_cl::KmeansClustering_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : Clustering_cl(Name_sptr("K-means"), iter, run), iAssignment(10, -1), iCentres(10, nullptr), iDead(10, 0) {
  iter->GetIntProperty("MaxIterations", &iMaxIterations, 100);
  iter->GetDoubleProperty("CostTolerance", &iCostTolerance, 0.01);
  iter->GetDoubleProperty("SwitchTolerance", &iSwitchTolerance, 0.01);
}

KmeansClustering_cl::KmeansClustering_cl(Name_sptr metric, int maxIterations, double costTolerance,
                                         double switchTolerance)
    : Clustering_cl(Name_sptr("K-means"), metric),
      iMaxIterations(maxIterations),
      iCostTolerance(costTolerance),
      iSwitchTolerance(switchTolerance),
      iAssignment(10, -1),
      iCentres(10, nullptr),
      iDead(10, 0) {}

KmeansClustering_cl::~KmeansClustering_cl() { DeleteCentres(); }

void KmeansClustering_cl::DeleteCentres() {
  iCentres.DeleteAll();
  iDead.RemoveAll();
}

void KmeansClustering_cl::Prepare() {
  DeleteCentres();
  int n = GetNumObjects();
  iAssignment.RemoveAll();
  iAssignment.AddLast(n, -1);
  Vector_tmpl<int> order(n + 1, -1);
  for (int i = 0; i < n; i++) order.AddLast(i);
  order.Randomize();
  int k = iNumClusters < n ? iNumClusters : n;
  for (int c = 0; c < k; c++) {
    iCentres.AddLast((*iMetrics)[order[c]]->Clone());
    iDead.AddLast(0);
  }
  iIterations = 0;
}

void KmeansClustering_cl::Run() {
  int n = GetNumObjects();
  int k = iCentres.GetSize();
  if (n == 0 || k == 0) return;
  ClusteringMetric_cl* trial = (*iMetrics)[0]->GetEmpty();
  ClusteringMetric_cl* best = (*iMetrics)[0]->GetEmpty();
  Vector_tmpl<Vector_tmpl<ClusteringMetric_cl*>*> members(k, nullptr);
  for (int c = 0; c < k; c++) members.AddLast(new Vector_tmpl<ClusteringMetric_cl*>(10, nullptr));
  double previous = 0.0;
  for (int iteration = 0; iteration < iMaxIterations; iteration++) {
    iIterations = iteration + 1;
    for (int c = 0; c < k; c++) members[c]->RemoveAll();
    int switches = 0;
    for (int row = 0; row < n; row++) {
      ClusteringMetric_cl* metric = (*iMetrics)[row];
      int winner = -1;
      for (int c = 0; c < k; c++) {
        if (iDead[c]) continue;
        trial->ComputeCost(metric, iCentres[c]);
        if (winner >= 0 && !trial->IHaveHigherPriority(best)) continue;
        winner = c;
        ClusteringMetric_cl* swap = best;
        best = trial;
        trial = swap;
      }
      if (winner != iAssignment[row]) switches++;
      iAssignment[row] = winner;
      members[winner]->AddLast(metric);
    }
    double total = 0.0;
    for (int c = 0; c < k; c++) {
      if (iDead[c]) continue;
      if (members[c]->GetSize() == 0) {
        std::cerr << "Cluster " << c << " empty!" << std::endl;
        iDead[c] = 1;
        continue;
      }
      iCentres[c]->ComputeCost(members[c]);
      iCentres[c]->Combine(members[c]);
      if (iCentres[c]->GetCost() != kMissingReal) total += iCentres[c]->GetCost();
    }
    double costChange = previous != 0.0 ? fabs((total - previous) / previous) * 100.0 : (total == 0.0 ? 0.0 : 100.0);
    double switchChange = 100.0 * switches / n;
    PrintRuntimeInfo(iteration, total, switches, costChange, switchChange);
    previous = total;
    if (iteration > 0 && (iCostTolerance >= costChange || iSwitchTolerance >= switchChange)) break;
  }
  for (int c = 0; c < k; c++) delete members[c];
  delete trial;
  delete best;
}

void KmeansClustering_cl::PrintRuntimeInfo(int iteration, double cost, int switches, double costChange,
                                           double switchChange) const {
  std::cerr << "K-means iteration " << iteration << ": cost = " << cost << " (change " << costChange
            << "%), switches = " << switches << " (" << switchChange << "%)" << std::endl;
}

Vector_tmpl<int>* KmeansClustering_cl::GetClusters() { return new Vector_tmpl<int>(iAssignment); }

Vector_tmpl<int>* KmeansClustering_cl::GetClusterOrder() {
  int n = iAssignment.GetSize();
  Vector_tmpl<int>* order = new Vector_tmpl<int>(n + 1, -1);
  for (int c = -1; c < iCentres.GetSize(); c++)
    for (int row = 0; row < n; row++)
      if (iAssignment[row] == c) order->AddLast(row);
  return order;
}
