// The Cluster step: clusters the rows of a microarray and writes the tree files or the reordered rows.
#include "clustering/vorn_step_cluster.h"

#include <iostream>

#include "clustering/clustering_factory.h"
#include "data/data_file.h"
#include "data/microarray.h"
#include "data/vorn_data.h"
#include "pipeline/enum_converter.h"
#include "pipeline/not_built.h"
#include "pipeline/vorn_run.h"

const char* CLUSTER_INPUT_TYPE_STR[CLUSTER_INPUT_NUM] = {"Microarray", "Attributes"};
const char* CLUSTER_OUTPUT_FORMAT_STR[CLUSTER_OUTPUT_NUM] = {"Attributes", "TreeView", "Tarsil", "Microarray",
                                                             "Clusters"};

namespace {
const char kCaller[] = "VornStepCluster_cl::Load";
}  // namespace

VornStepCluster_cl::VornStepCluster_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : VornStep_cl(iter, run), iGeneNames(10, nullptr) {
  iMicroarrayName = iter->GetProperty("MicroarrayName");
  iInputType = EnumConverter_tmpl<ClusterInputType_cl, CLUSTER_INPUT_NUM>::FromString(
      CLUSTER_INPUT_TYPE_STR, iter->GetProperty("InputType"), "Microarray");
  iSeparateClusterObjectsFile = iter->GetProperty("SeparateClusterObjectsFile");
  iOutputFile = iter->GetProperty("OutputFile");
  iOutputFormat = EnumConverter_tmpl<ClusterOutputFormat_cl, CLUSTER_OUTPUT_NUM>::FromString(
      CLUSTER_OUTPUT_FORMAT_STR, iter->GetProperty("OutputFormat"), "Attributes");
  iter->GetIntProperty("NumClusters", &iNumClusters, 1);
  iter->GetDoubleProperty("MinCostDifferenceFromParent", &iMinCostDifferenceFromParent, 0.05);
  iter->GetDoubleProperty("MaxCostOfParentClusterForSingleton", &iMaxCostOfParentClusterForSingleton, 0.7);
  iter->GetIntProperty("MaxClusterSize", &iMaxClusterSize, 50);
  // What the remaining keys feed (attribute groups, experiment weight groups, module clusters and
  // the viewer export) comes with other subsystems; a file asking for them stops before any work.
  if (iInputType == CLUSTER_INPUT_ATTRIBUTES) StopNotBuilt("Cluster with InputType Attributes is not built yet");
  if (iOutputFormat == CLUSTER_OUTPUT_ATTRIBUTES)
    StopNotBuilt("Cluster with OutputFormat Attributes is not built yet");
  if (iOutputFormat == CLUSTER_OUTPUT_CLUSTERS) StopNotBuilt("Cluster with OutputFormat Clusters is not built yet");
  if (!iter->GetProperty("AttributeGroup").IsNull()) StopNotBuilt("Cluster with AttributeGroup is not built yet");
  PropertyTreeIter_cl* child = iter->Clone();
  child->FirstChild();
  int hasGroups = child->NotNull();
  delete child;
  if (hasGroups) StopNotBuilt("Cluster with weight groups of experiments is not built yet");
  Save(iter);
}

VornStepCluster_cl::~VornStepCluster_cl() { delete iClustering; }

void VornStepCluster_cl::Load(PropertyTreeIter_cl* iter) {
  iClustering = ClusteringFactory_cl::CreateClustering(iter, iRun);
  iClustering->SetLogger(iLog);
  iMicroarray = iRun->GetData()->FindMicroarray(iMicroarrayName, kCaller);
  Matrix_sptr matrix = iMicroarray->GetMatrix();
  const Vector_tmpl<Name_sptr>& genes = iMicroarray->GetGeneNames();
  if (iSeparateClusterObjectsFile.IsNull()) {
    iGeneNames = genes;
  } else {
    DataFile_cl::StopUnlessReadable(iSeparateClusterObjectsFile, kCaller);
    NameSet_tmpl<int>* separate = DataFile_cl::LoadList(iSeparateClusterObjectsFile, 0);
    Vector_tmpl<int>* rows = new Vector_tmpl<int>(genes.GetSize() + 1, -1);
    for (int i = 0; i < genes.GetSize(); i++) {
      if (separate->Exists(genes[i])) continue;
      rows->AddLast(i);
      iGeneNames.AddLast(genes[i]);
    }
    delete separate;
    MatrixFilter_cl filter(rows, 1, nullptr, 0);
    matrix = matrix->Copy(&filter);
  }
  iClustering->Load(matrix, nullptr);
}

void VornStepCluster_cl::Run() {
  std::cerr << "bof VornStepCluster_cl::Run() Name=" << iName << std::endl;
  VornStep_cl::Load();
  iClustering->Cluster(iNumClusters);
  WriteFile();
  std::cerr << "eof VornStepCluster_cl::Run()" << std::endl;
}

void VornStepCluster_cl::WriteFile() {
  // The viewer file of a Tarsil clustering is written by the Tarsil step, not here.
  if (iOutputFile.IsNull() || iOutputFormat == CLUSTER_OUTPUT_TARSIL) return;
  Name_sptr file = iRun->Resolve(iOutputFile);
  if (iOutputFormat == CLUSTER_OUTPUT_TREE_VIEW) {
    iClustering->PrintTreeView(file, &iGeneNames, &iMicroarray->GetExperimentNames());
    return;
  }
  std::cerr << "Getting row order from the clustering." << std::endl;
  Vector_tmpl<int>* order = iClustering->GetClusterOrder();
  std::cerr << "Done getting row order from the clustering." << std::endl;
  Vector_tmpl<Name_sptr> rows(order->GetSize() + 1, nullptr);
  for (int i = 0; i < order->GetSize(); i++) rows.AddLast(iGeneNames[(*order)[i]]);
  delete order;
  iMicroarray->WriteFile(file, "VornStepCluster_cl::WriteFile", &rows, nullptr);
}
