// The Dummy step.
#include "module/vorn_step_dummy.h"

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "data/vorn_data.h"
#include "module/module_graph.h"
#include "module/vorn.h"
#include "pipeline/vorn_run.h"
#include "pipeline/output_file.h"

namespace {
const char kCaller[] = "VornStepDummy_cl::Run";
}  // namespace

VornStepDummy_cl::VornStepDummy_cl(PropertyTreeIter_cl* iter, VornRun_cl* run) : VornStep_cl(iter, run) {
  iFile = iter->GetProperty("File");
  iOutputFile = iter->GetProperty("OutputFile");
  iMicroarrayName = iter->GetProperty("MicroarrayName");
  iAttributeGroup = iter->GetProperty("AttributeGroup");
}

void VornStepDummy_cl::Run() {
  PrintRunHeader("VornStepDummy_cl");
  VornData_cl* data = iRun->GetData();
  Microarray_cl* microarray = data->FindMicroarray(iMicroarrayName, kCaller);
  TreeCpd_sptr tree = Conv2TreeCpd(iRun->CreateVorn()->CreateExpressionCpd(iMicroarrayName, nullptr, 0, 0));
  // A tree whose root was never split is one module of every gene.
  VornTreeNodeInfos_cl infos;
  if (tree->GetRoot()->IsLeaf()) infos.Set(tree->GetRoot(), new VornTreeNodeInfo_cl(data->GetSpecies(iMicroarrayName)));
  ModuleGraph_cl graph(tree, &infos, microarray->GetGenesHash(),
                       data->GetSpecies(iMicroarrayName)->GetGeneAttributes());
  if (iOutputFile.IsNull()) return;
  Name_sptr file = iRun->Resolve(iOutputFile);
  std::ofstream out;
  OpenOutputFile(out, file, kCaller);
  graph.Sample(out, 5000, 50);
}
