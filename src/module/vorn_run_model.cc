// The run's relational model and module clusters, made on first use and kept by name.
#include <iostream>

#include "data/data_file.h"
#include "data/vorn_data.h"
#include "module/vorn.h"
#include "module/vorn_cluster.h"
#include "pipeline/vorn_run.h"

namespace {
// Tab files of cluster membership: gene names in column 0 below a header row of cluster names.
const DataFileDescriptor_cl kMembershipDescriptor(1, 1, 0, 0, -1, 1, -999, -1, -1);

// Genes of a microarray of that name are found by name; otherwise the cluster collects its own.
const NameSet_tmpl<int>* GenesOf(VornData_cl* data, Name_sptr name) {
  Microarray_cl* microarray = data->GetMicroarray(name);
  return microarray ? microarray->GetGenesHash() : nullptr;
}
}  // namespace

Vorn_cl* VornRun_cl::CreateVorn() {
  if (!iVorn.Get()) iVorn.Own(new Vorn_cl(iData));
  return iVorn.Get();
}

void VornRun_cl::DeleteVorn() { iVorn.Delete(); }

VornCluster_cl* VornRun_cl::CreateVornCluster(Name_sptr name, Name_sptr fileName) {
  if (VornCluster_cl* cluster = GetVornCluster(name)) return cluster;
  DataFile_cl::StopUnlessReadable(fileName, "VornRun_cl::CreateVornCluster");
  DataFile_cl file(fileName, kMembershipDescriptor);
  Vector_tmpl<Name_sptr>* clusters = file.GetMatrixColumnKeys(nullptr);
  Vector_tmpl<Name_sptr>* genes = file.GetRowKeys(nullptr);
  VornCluster_cl* cluster =
      new VornCluster_cl(name, *clusters, *genes, file.CreateMatrix(nullptr, nullptr), GenesOf(iData, name));
  delete clusters;
  delete genes;
  EnterVornCluster(name, cluster);
  return cluster;
}

VornCluster_cl* VornRun_cl::CreateVornCluster(Name_sptr name, const Vector_tmpl<Name_sptr>& files) {
  if (VornCluster_cl* cluster = GetVornCluster(name)) return cluster;
  VornCluster_cl* cluster = new VornCluster_cl(name, files, GenesOf(iData, name));
  EnterVornCluster(name, cluster);
  return cluster;
}

VornCluster_cl* VornRun_cl::CreateVornCluster(Name_sptr name, Vector_tmpl<Name_sptr>* rows,
                                              Vector_tmpl<Name_sptr>* columns, Matrix_sptr values) {
  if (VornCluster_cl* cluster = GetVornCluster(name)) return cluster;
  VornCluster_cl* cluster = new VornCluster_cl(name, *columns, *rows, values, GenesOf(iData, name));
  EnterVornCluster(name, cluster);
  return cluster;
}

VornCluster_cl* VornRun_cl::CreateVornCluster(Name_sptr name, AttributeGroupType_cl type) {
  if (VornCluster_cl* cluster = GetVornCluster(name)) return cluster;
  VornCluster_cl* cluster = new VornCluster_cl(name, CreateVorn(), type);
  EnterVornCluster(name, cluster);
  return cluster;
}

VornCluster_cl* VornRun_cl::CreateVornClusterFromAttributes(Name_sptr name, Name_sptr attributeGroup) {
  if (VornCluster_cl* cluster = GetVornCluster(name)) return cluster;
  VornAttributeGroup_cl* group = iData->FindAttributeGroup(attributeGroup, "VornRun_cl::CreateVornClusterFromAttributes");
  VornCluster_cl* cluster = new VornCluster_cl(name, CreateVorn(), group);
  EnterVornCluster(name, cluster);
  return cluster;
}

VornCluster_cl* VornRun_cl::CreateVornClusterFromExperiments(Name_sptr microarray, double low, double high) {
  if (VornCluster_cl* cluster = GetVornCluster(microarray)) return cluster;
  VornCluster_cl* cluster =
      new VornCluster_cl(iData->FindMicroarray(microarray, "VornRun_cl::CreateVornClusterFromExperiments"), low, high);
  EnterVornCluster(microarray, cluster);
  return cluster;
}

VornCluster_cl* VornRun_cl::CreateVornClusterFromMicroarray(Name_sptr microarray) {
  if (VornCluster_cl* cluster = GetVornCluster(microarray)) return cluster;
  VornCluster_cl* cluster =
      new VornCluster_cl(iData->FindMicroarray(microarray, "VornRun_cl::CreateVornClusterFromMicroarray"));
  EnterVornCluster(microarray, cluster);
  return cluster;
}
