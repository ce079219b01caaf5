// The PrintMicroarray step: writes a microarray as a tab file, optionally only some genes or in a given order.
#ifndef VORN_DATA_VORN_STEP_PRINT_MICROARRAY_H
#define VORN_DATA_VORN_STEP_PRINT_MICROARRAY_H

#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vorn_step.h"

class VornStepPrintMicroarray_cl : public VornStep_cl {
 public:
  VornStepPrintMicroarray_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);

  void Run() override;

 private:
  Name_sptr iMicroarrayName;
  Name_sptr iOutputFile;
  Name_sptr iGeneList;
  // Read for the pipeline file's sake; every experiment is printed.
  Name_sptr iExperimentList;
  // Without a gene list, rows go by this gene attribute's value, smallest first.
  Name_sptr iAttribute;
  int iPrecision;
};

#endif
