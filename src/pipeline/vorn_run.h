// One run of the pipeline: its steps, its named results, its model and module clusters.
#ifndef VORN_PIPELINE_VORN_RUN_H
#define VORN_PIPELINE_VORN_RUN_H

#include <fstream>

#include "pipeline/data_repository.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/owner.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "pipeline/vorn_step.h"

class VornData_cl;
class VornSteps_cl;
class Vorn_cl;
class VornCluster_cl;
class MotifFinder_cl;
class Matrix_sptr;
enum AttributeGroupType_cl : int;

class VornRun_cl {
 public:
  // Opens the Logger file, reads Name and builds every step of the run.
  VornRun_cl(PropertyTreeIter_cl* iter, VornData_cl* data);
  ~VornRun_cl();
  VornRun_cl(const VornRun_cl&) = delete;
  VornRun_cl& operator=(const VornRun_cl&) = delete;

  void Run();

  Name_sptr GetName() const { return iName; }
  VornData_cl* GetData() { return iData; }
  DataRepository_cl& GetRepository() { return iRepository; }
  std::ostream* GetLog() { return iLog; }
  VornSteps_cl* GetSteps() { return iSteps; }
  int NextRegulatorId() { return iNextRegulatorId++; }

  // The stack of running steps, outermost first; loop counters are looked up through it.
  void PushActiveStep(VornStep_cl* step) { iActiveSteps.AddLast(step); }
  void PopActiveStep() { iActiveSteps.RemoveLast(1); }
  // The innermost running step's answer for that counter, or -1.
  int GetLoopIteration(LoopIterationType_cl type);
  // Replaces the first variable of that type by its counter; a null name stays null.
  Name_sptr Resolve(Name_sptr name, LoopIterationType_cl type);
  // Resolves "$(EMLoopIteration)" and then "$(LoopIteration)".
  Name_sptr Resolve(Name_sptr name);

  // The relational model and the motif finder, made on first use; each is defined by the subsystem
  // that owns its class (the motif finder through VornFactory_cl), so that ownership sees it whole.
  Vorn_cl* CreateVorn();
  void DeleteVorn();
  MotifFinder_cl* CreateMotifFinder(PropertyTreeIter_cl* iter);

  // Module clusters, get-or-create by name.
  VornCluster_cl* CreateVornCluster(Name_sptr name, Name_sptr fileName);
  VornCluster_cl* CreateVornCluster(Name_sptr name, const Vector_tmpl<Name_sptr>& files);
  VornCluster_cl* CreateVornCluster(Name_sptr name, Vector_tmpl<Name_sptr>* rows, Vector_tmpl<Name_sptr>* columns,
                                    Matrix_sptr values);
  VornCluster_cl* CreateVornCluster(Name_sptr name, AttributeGroupType_cl type);
  VornCluster_cl* CreateVornClusterFromAttributes(Name_sptr name, Name_sptr attributeGroup);
  VornCluster_cl* CreateVornClusterFromExperiments(Name_sptr microarray, double low, double high);
  VornCluster_cl* CreateVornClusterFromMicroarray(Name_sptr microarray);
  VornCluster_cl* GetVornCluster(Name_sptr name) const { return iClusters.GetEntry(name); }
  // Enters a new cluster under a name; the run owns it from then on.
  template <class T = VornCluster_cl>
  void EnterVornCluster(Name_sptr name, T* cluster) {
    iDeleteCluster = [](VornCluster_cl* c) { delete static_cast<T*>(c); };
    iClusters.Insert(name, cluster);
  }
  NameSet_tmpl<VornCluster_cl*>& GetVornClusters() { return iClusters; }
  void DeleteVornCluster(Name_sptr name);
  void DeleteVornClusters();

 private:
  Name_sptr iName;
  VornSteps_cl* iSteps = nullptr;
  Vector_tmpl<VornStep_cl*> iActiveSteps;
  VornData_cl* iData;
  DataRepository_cl iRepository;
  Owner_tmpl<Vorn_cl> iVorn;
  NameSet_tmpl<VornCluster_cl*> iClusters;
  void (*iDeleteCluster)(VornCluster_cl*) = nullptr;
  Owner_tmpl<MotifFinder_cl> iMotifFinder;
  std::ofstream* iLog = nullptr;
  int iNextRegulatorId = 1;
};

#endif
