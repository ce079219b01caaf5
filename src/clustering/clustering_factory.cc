// Making a clustering engine from the Method key of a step.
#include "clustering/clustering_factory.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

#include "clustering/hierarchical_clustering.h"
#include "clustering/kmeans_clustering.h"

Clustering_cl* ClusteringFactory_cl::CreateClustering(PropertyTreeIter_cl* iter, VornRun_cl* run) {
  Name_sptr method = iter->GetProperty("Method");
  const char* text = method.IsNull() ? "" : method->GetText();
  if (strcmp(text, "Hierarchical") == 0) return new HierarchicalClustering_cl(iter, run);
  if (strcmp(text, "K-means") == 0) return new KmeansClustering_cl(iter, run);
  std::cerr << "Unrecognized clustering method " << text << std::endl;
  abort();
}
