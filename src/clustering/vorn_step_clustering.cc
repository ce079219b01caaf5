// The Clustering step: the older agglomerative engine on a gene graph of the run.
#include "clustering/vorn_step_clustering.h"

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "clustering/hierarchical_cluster.h"
#include "pipeline/enum_converter.h"
#include "pipeline/not_built.h"
#include "pipeline/vorn_run.h"
#include "pipeline/output_file.h"

VornStepClustering_cl::VornStepClustering_cl(PropertyTreeIter_cl* iter, VornRun_cl* run) : VornStep_cl(iter, run) {
  Save(iter);
}

void VornStepClustering_cl::ReadKeys() {
  iGeneGraphName = iSavedIter->GetProperty("GeneGraphName");
  iLinkage = EnumConverter_tmpl<ClusterLinkageMethod_cl, CLUSTER_LINKAGE_NUM>::FromString(
      CLUSTER_LINKAGE_METHOD_STR, iSavedIter->GetProperty("LinkageMethod"), nullptr);
  iSavedIter->GetDoubleProperty("LinkagePercent", &iLinkagePercent, 1.0);
  iOutputFile = iSavedIter->GetProperty("OutputFile");
  std::cerr << "VornStepClustering_cl::Run linkage method: " << CLUSTER_LINKAGE_METHOD_STR[iLinkage] << std::endl;
  std::cerr << "VornStepClustering_cl::Run linkage percent: " << iLinkagePercent << std::endl;
}

void VornStepClustering_cl::Run() {
  PrintRunHeader("VornStepClustering_cl");
  ReadKeys();
  if (!iRun->GetRepository().iGeneGraphs.GetEntry(iGeneGraphName)) {
    std::cerr << "VornStepClustering_cl::Run Unknown gene graph " << iGeneGraphName << std::endl;
    abort();
  }
  // Only the gene graph loader can put a graph in the run, and it comes with gene mappings.
  StopNotBuilt("Clustering of a loaded gene graph is not built yet");
}

void VornStepClustering_cl::ClusterGraph(const ClusterGraph_cl& graph) {
  Cluster_cl* engine = Cluster_cl::Create(iSavedIter);
  for (int i = 0; i < graph.GetNumObjects(); i++)
    engine->AddNode(new SparseClusterNode_cl(&graph, i, iLinkage, iLinkagePercent));
  std::cerr << "VornStepClustering_cl::Run clustering" << std::endl;
  engine->Run();
  std::cerr << "VornStepClustering_cl::Run Output file" << std::endl;
  if (!iOutputFile.IsNull()) {
    std::cerr << "VornStepClustering_cl::Run WriteFile" << std::endl;
    std::ofstream out;
    OpenOutputFile(out, iRun->Resolve(iOutputFile), "VornStepClustering_cl::Run");
    engine->WriteFile(out);
  }
  delete engine;
}
