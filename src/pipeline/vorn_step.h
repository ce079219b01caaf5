// The common base of every pipeline step and the loop counters that names can refer to.
#ifndef VORN_PIPELINE_VORN_STEP_H
#define VORN_PIPELINE_VORN_STEP_H

#include <ostream>

#include "pipeline/name.h"
#include "pipeline/prop_tree.h"

class VornRun_cl;

// Which loop counter a name variable stands for.
enum LoopIterationType_cl { LOOP_ITERATION = 0, EM_LOOP_ITERATION = 1 };
// The variable text of each counter, by LoopIterationType_cl.
extern const char* LOOP_ITERATION_TYPE_STR[2];

class VornStep_cl {
 public:
  // Reads Name; a step's own constructor reads its keys and does no work on data.
  VornStep_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);
  virtual ~VornStep_cl();
  VornStep_cl(const VornStep_cl&) = delete;
  VornStep_cl& operator=(const VornStep_cl&) = delete;

  virtual void Run() = 0;
  virtual int IsComplete() { return iIsComplete; }
  // -1 unless this step counts iterations of that type.
  virtual int GetLoopIteration(LoopIterationType_cl type) { return -1; }
  // Keeps a clone of the step's element so that its keys can be read when it first runs.
  virtual void Save(PropertyTreeIter_cl* iter);
  // Reads the saved keys once, at the first call; later calls only report that they were read.
  int Load();
  virtual void Load(PropertyTreeIter_cl* iter);

  Name_sptr GetName() const { return iName; }

 protected:
  // The progress line "<Class>::Run Name=<name>" that opens Run().
  void PrintRunHeader(const char* className) const;

  VornRun_cl* iRun;
  std::ostream* iLog;
  Name_sptr iName;
  int iIsComplete = 1;
  PropertyTreeIter_cl* iSavedIter = nullptr;
  int iLoaded = 0;
};

#endif
