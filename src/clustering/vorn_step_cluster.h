// The Cluster step: clusters the rows of a microarray and writes the tree files or the reordered rows.
#ifndef VORN_CLUSTERING_VORN_STEP_CLUSTER_H
#define VORN_CLUSTERING_VORN_STEP_CLUSTER_H

#include "clustering/clustering.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "pipeline/vorn_step.h"

class Microarray_cl;

enum ClusterInputType_cl { CLUSTER_INPUT_MICROARRAY = 0, CLUSTER_INPUT_ATTRIBUTES = 1, CLUSTER_INPUT_NUM = 2 };
extern const char* CLUSTER_INPUT_TYPE_STR[CLUSTER_INPUT_NUM];

enum ClusterOutputFormat_cl {
  CLUSTER_OUTPUT_ATTRIBUTES = 0,
  CLUSTER_OUTPUT_TREE_VIEW = 1,
  CLUSTER_OUTPUT_TARSIL = 2,
  CLUSTER_OUTPUT_MICROARRAY = 3,
  CLUSTER_OUTPUT_CLUSTERS = 4,
  CLUSTER_OUTPUT_NUM = 5
};
extern const char* CLUSTER_OUTPUT_FORMAT_STR[CLUSTER_OUTPUT_NUM];

// The engine is made when the step first runs, so that it sees the data earlier steps loaded.
class VornStepCluster_cl : public VornStep_cl {
 public:
  VornStepCluster_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);
  ~VornStepCluster_cl() override;

  void Run() override;
  void Load(PropertyTreeIter_cl* iter) override;
  using VornStep_cl::Load;

 private:
  void WriteFile();

  Name_sptr iMicroarrayName;
  ClusterInputType_cl iInputType;
  Name_sptr iSeparateClusterObjectsFile;
  Name_sptr iOutputFile;
  ClusterOutputFormat_cl iOutputFormat;
  int iNumClusters;
  double iMinCostDifferenceFromParent;
  double iMaxCostOfParentClusterForSingleton;
  int iMaxClusterSize;

  Clustering_cl* iClustering = nullptr;
  Microarray_cl* iMicroarray = nullptr;
  // The names of the rows that go to the engine, in its row order.
  Vector_tmpl<Name_sptr> iGeneNames;
};

#endif
