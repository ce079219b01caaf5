// The data shared by all runs of the process: microarrays and attribute groups.
#ifndef VORN_DATA_VORN_DATA_H
#define VORN_DATA_VORN_DATA_H

#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"
#include "prob/matrix.h"
#include "prob/randomizable.h"

class Microarray_cl;

class VornData_cl : public Randomizable_cl {
 public:
  VornData_cl();
  ~VornData_cl() override;
  VornData_cl(const VornData_cl&) = delete;
  VornData_cl& operator=(const VornData_cl&) = delete;

  // Enters the microarray under its name, in place of one of the same name; the data owns it.
  void AddMicroarray(Microarray_cl* microarray);
  // Null for an unknown name.
  Microarray_cl* GetMicroarray(Name_sptr name) const { return iMicroarrays.GetEntry(name); }
  // The microarray, or a stop with "<caller> Unknown microarray <name>".
  Microarray_cl* FindMicroarray(Name_sptr name, const char* caller) const;

  // A row per meta gene and a column per microarray, each cell the index of its row; shuffling it
  // reassigns the meta genes of each microarray's genes.
  Matrix_sptr GetMatrix() override;
  void SetMatrix(Matrix_sptr matrix) override;

 private:
  NameSet_tmpl<Microarray_cl*> iMicroarrays;
  // Every microarray ever entered: one that was replaced under its name may still be held by a
  // run's repository, so all live until the data dies.
  Vector_tmpl<Microarray_cl*> iOwned;
};

#endif
