// The LoadClusters step.
#include "data/vorn_step_load_clusters.h"

#include <cfloat>
#include <iostream>

#include "data/vorn_data.h"
#include "module/vorn_cluster.h"
#include "pipeline/enum_converter.h"
#include "pipeline/missing.h"
#include "pipeline/vorn_run.h"

const char* CLUSTER_FILE_FORMAT_STR[CLUSTER_FILE_FORMAT_NUM] = {"MembershipMatrix",   "MultipleFiles",
                                                                "FromMicroarray",     "FromMicroarrayExperiments",
                                                                "FromAttributes",     "DeleteClusters"};

namespace {
const char kCaller[] = "VornStepLoadClusters_cl::Run";
}  // namespace

VornStepLoadClusters_cl::VornStepLoadClusters_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : VornStep_cl(iter, run), iFiles(10, nullptr) {
  iMicroarrayName = iter->GetProperty("MicroarrayName");
  iFormat = EnumConverter_tmpl<ClusterFileFormat_cl, CLUSTER_FILE_FORMAT_NUM>::FromString(
      CLUSTER_FILE_FORMAT_STR, iter->GetProperty("ClusterFileFormat"), "MembershipMatrix");
  iFile = iter->GetProperty("File");
  iAttributeGroup = iter->GetProperty("AttributeGroup");
  iTargets = iter->GetProperty("Targets");
  iter->GetDoubleProperty("MinValue", &iMinValue, DBL_MAX);
  iter->GetDoubleProperty("MaxValue", &iMaxValue, kMissingReal);
  PropertyTreeIter_cl* child = iter->Clone();
  for (child->FirstChild(); child->NotNull(); child->NextSibling()) {
    Name_sptr file = child->GetProperty("File");
    if (child->IsNameEqual("Cluster") && !file.IsNull()) iFiles.AddLast(file);
  }
  delete child;
}

void VornStepLoadClusters_cl::Run() {
  PrintRunHeader("VornStepLoadClusters_cl");
  if (iMicroarrayName.IsNull()) {
    std::cerr << kCaller << " MicroarrayName names no microarray" << std::endl;
    abort();
  }
  VornCluster_cl* cluster = nullptr;
  switch (iFormat) {
    case CLUSTERS_MEMBERSHIP_MATRIX:
      cluster = iRun->CreateVornCluster(iMicroarrayName, iRun->Resolve(iFile));
      break;
    case CLUSTERS_MULTIPLE_FILES:
      cluster = iRun->CreateVornCluster(iMicroarrayName, iFiles);
      break;
    case CLUSTERS_FROM_MICROARRAY:
      cluster = iRun->CreateVornClusterFromMicroarray(iMicroarrayName);
      break;
    case CLUSTERS_FROM_MICROARRAY_EXPERIMENTS:
      cluster = iRun->CreateVornClusterFromExperiments(iMicroarrayName, iMinValue, iMaxValue);
      break;
    case CLUSTERS_FROM_ATTRIBUTES:
      cluster = iRun->CreateVornClusterFromAttributes(iMicroarrayName, iAttributeGroup);
      break;
    default:
      iRun->DeleteVornCluster(iMicroarrayName);
      return;
  }
  VornData_cl* data = iRun->GetData();
  if (!data->GetMicroarray(iMicroarrayName)) {
    // A microarray of the cluster's names alone, without values.
    Vector_tmpl<Name_sptr> none(1, nullptr);
    const Vector_tmpl<Name_sptr>* genes = cluster->GetGeneNames();
    const Vector_tmpl<Name_sptr>* experiments = cluster->GetExperimentNames();
    data->AddMicroarray(new Microarray_cl(iMicroarrayName, genes ? *genes : none,
                                          experiments ? *experiments : none, kMissingReal));
  }
  CreateAttributes(cluster);
}

void VornStepLoadClusters_cl::CreateAttributes(VornCluster_cl* cluster) {
  if (iTargets.IsNull()) return;
  VornData_cl* data = iRun->GetData();
  VornAttributeGroup_cl* group = data->GetAttributeGroups(GENE_ATTRIBUTES)->GetEntry(iTargets);
  if (!group) {
    group = new VornAttributeGroup_cl(iTargets, GENE_ATTRIBUTES, CreateValueDomain(Name_sptr("0;1")));
    for (int c = 0; c < cluster->GetSize(); c++)
      group->AddAttribute((*cluster)[c]->GetName(), group->GetValueDomain());
    data->AddAttributeGroup(group);
  }
  Microarray_cl* microarray = data->GetMicroarray(iMicroarrayName);
  NameSet_tmpl<int>* genes = microarray->GetGenesHash();
  Matrix_sptr values = Matrix_cl::AllocateCorrectType(microarray->GetNumGenes(), cluster->GetSize());
  Vector_tmpl<Name_sptr> names(cluster->GetSize() + 1, nullptr);
  for (int c = 0; c < cluster->GetSize(); c++) {
    VornSingleCluster_cl* single = (*cluster)[c];
    names.AddLast(single->GetName());
    Vector_tmpl<Name_sptr>* members = single->CreateGeneNames();
    for (int i = 0; members && i < members->GetSize(); i++) {
      int row = genes->GetEntry((*members)[i]);
      if (row >= 0) values->GetRow(row)[c] = 1.0;
    }
    delete members;
  }
  SpeciesAttributes_cl* attributes = new SpeciesAttributes_cl;
  attributes->Load(values, names, group);
  data->AddAttributeGroup(iMicroarrayName, attributes, GENE_ATTRIBUTES);
}
