// The Clustering step: the older agglomerative engine on a gene graph of the run.
#ifndef VORN_CLUSTERING_VORN_STEP_CLUSTERING_H
#define VORN_CLUSTERING_VORN_STEP_CLUSTERING_H

#include "clustering/cluster_graph.h"
#include "clustering/sparse_cluster_node.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vorn_step.h"

// Keeps its element and reads the keys at every run, so that names may follow the loop counters.
class VornStepClustering_cl : public VornStep_cl {
 public:
  VornStepClustering_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);

  void Run() override;
  // Reads the keys of the element and prints the linkage lines.
  void ReadKeys();
  // Clusters the objects of the relation with the keys last read and writes OutputFile.
  void ClusterGraph(const ClusterGraph_cl& graph);

 private:

  Name_sptr iGeneGraphName;
  ClusterLinkageMethod_cl iLinkage = MIN_LINKAGE;
  double iLinkagePercent = 1.0;
  Name_sptr iOutputFile;
};

#endif
