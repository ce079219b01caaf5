// The LoadClusters step: makes the run's module cluster of a microarray and, optionally, its membership attributes.
#ifndef VORN_DATA_VORN_STEP_LOAD_CLUSTERS_H
#define VORN_DATA_VORN_STEP_LOAD_CLUSTERS_H

#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "pipeline/vorn_step.h"

class VornCluster_cl;

enum ClusterFileFormat_cl {
  CLUSTERS_MEMBERSHIP_MATRIX = 0,
  CLUSTERS_MULTIPLE_FILES,
  CLUSTERS_FROM_MICROARRAY,
  CLUSTERS_FROM_MICROARRAY_EXPERIMENTS,
  CLUSTERS_FROM_ATTRIBUTES,
  CLUSTERS_DELETE,
  CLUSTER_FILE_FORMAT_NUM
};
extern const char* CLUSTER_FILE_FORMAT_STR[CLUSTER_FILE_FORMAT_NUM];

class VornStepLoadClusters_cl : public VornStep_cl {
 public:
  VornStepLoadClusters_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);

  void Run() override;

 private:
  // With Targets: a 0/1 gene attribute per cluster, values included.
  void CreateAttributes(VornCluster_cl* cluster);

  Name_sptr iMicroarrayName;
  ClusterFileFormat_cl iFormat;
  Name_sptr iFile;
  Name_sptr iAttributeGroup;
  Name_sptr iTargets;
  double iMinValue;
  double iMaxValue;
  Vector_tmpl<Name_sptr> iFiles;
};

#endif
