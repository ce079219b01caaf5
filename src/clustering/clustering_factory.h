// Making a clustering engine from the Method key of a step.
#ifndef VORN_CLUSTERING_CLUSTERING_FACTORY_H
#define VORN_CLUSTERING_CLUSTERING_FACTORY_H

#include "clustering/clustering.h"
#include "pipeline/prop_tree.h"

class VornRun_cl;

class ClusteringFactory_cl {
 public:
  // "Hierarchical" or "K-means"; any other stops with "Unrecognized clustering method <method>".
  static Clustering_cl* CreateClustering(PropertyTreeIter_cl* iter, VornRun_cl* run);
};

#endif
