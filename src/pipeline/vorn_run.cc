// One run of the pipeline.
#include "pipeline/vorn_run.h"

#include <cstring>
#include <iostream>
#include <string>

#include "pipeline/vorn_steps.h"

VornRun_cl::VornRun_cl(PropertyTreeIter_cl* iter, VornData_cl* data)
    : iActiveSteps(10, nullptr), iData(data), iClusters(32, nullptr, 0.5, 2.0) {
  Name_sptr logger = iter->GetProperty("Logger");
  // A log that cannot be opened leaves a failed stream: its lines are lost without a message.
  if (!logger.IsNull()) iLog = new std::ofstream(logger->GetText(), std::ios::out | std::ios::trunc);
  iName = iter->GetProperty("Name");
  std::cerr << "VornRun_cl Read Name=" << iName << std::endl;
  iSteps = new VornSteps_cl(iter, this);
  iNextRegulatorId = 1;
}

VornRun_cl::~VornRun_cl() {
  delete iSteps;
  iVorn.Delete();
  delete iLog;
  DeleteVornClusters();
}

void VornRun_cl::DeleteVornCluster(Name_sptr name) {
  VornCluster_cl* cluster = iClusters.Remove(name);
  if (cluster) iDeleteCluster(cluster);
}

void VornRun_cl::DeleteVornClusters() {
  for (auto* entry : iClusters) iDeleteCluster(entry->iValue);
  iClusters.RemoveAll();
}

void VornRun_cl::Run() { iSteps->Run(); }

int VornRun_cl::GetLoopIteration(LoopIterationType_cl type) {
  for (int i = iActiveSteps.GetSize() - 1; i >= 0; i--) {
    int iteration = iActiveSteps[i]->GetLoopIteration(type);
    if (iteration != -1) return iteration;
  }
  return -1;
}

Name_sptr VornRun_cl::Resolve(Name_sptr name, LoopIterationType_cl type) {
  if (name.IsNull()) return name;
  const char* variable = LOOP_ITERATION_TYPE_STR[type];
  int at = name->IndexOf(variable);
  if (at < 0) return name;
  std::string text(name->GetText(), at);
  text += std::to_string(GetLoopIteration(type));
  text += name->GetText() + at + strlen(variable);
  // Resolved names are held to 255 characters.
  if (text.size() > 255) text.resize(255);
  return Name_sptr(text.c_str());
}

Name_sptr VornRun_cl::Resolve(Name_sptr name) {
  if (name.IsNull()) return name;
  return Resolve(Resolve(name, EM_LOOP_ITERATION), LOOP_ITERATION);
}
