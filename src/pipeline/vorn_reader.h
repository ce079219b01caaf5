// Reading the pipeline file into the shared data and the vector of runs, and running the runs.
#ifndef VORN_PIPELINE_VORN_READER_H
#define VORN_PIPELINE_VORN_READER_H

#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"

class VornData_cl;
class VornRun_cl;

class VornReader_cl {
 public:
  VornReader_cl();
  ~VornReader_cl();
  VornReader_cl(const VornReader_cl&) = delete;
  VornReader_cl& operator=(const VornReader_cl&) = delete;

  // Reads MicroarraySet, AttributeGroupSet and RunVec, in this order whatever their order in the file.
  void Read(PropertyTreeIter_cl* iter);
  // Runs every run in file order.
  void Run();
  // A new iterator on the first element child with that tag, or null; the caller deletes it.
  static PropertyTreeIter_cl* CloneChildIter(PropertyTreeIter_cl* iter, const char* tag);

  VornData_cl* GetData() { return iData; }
  int GetNumRuns() const { return iRuns.GetSize(); }
  VornRun_cl* GetRun(int i) { return iRuns[i]; }

 private:
  void ReadMicroarrays(PropertyTreeIter_cl* iter);
  void ReadAttributeGroups(PropertyTreeIter_cl* iter);
  void ReadRuns(PropertyTreeIter_cl* iter);

  VornData_cl* iData;
  Vector_tmpl<VornRun_cl*> iRuns;
};

#endif
