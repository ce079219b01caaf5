// The Print step: writes a microarray, attribute values, a module cluster or the model's expression CPD.
#ifndef VORN_DATA_VORN_STEP_PRINT_H
#define VORN_DATA_VORN_STEP_PRINT_H

#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vorn_step.h"

enum PrintType_cl {
  PRINT_MICROARRAY = 0,
  PRINT_ATTRIBUTES,
  PRINT_META_GENE_MAPPING,
  PRINT_MOTIFS,
  PRINT_CLUSTERS,
  PRINT_CPD,
  PRINT_TYPE_NUM
};
extern const char* PRINT_TYPE_STR[PRINT_TYPE_NUM];

class VornStepPrint_cl : public VornStep_cl {
 public:
  VornStepPrint_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);

  void Run() override;

 private:
  Name_sptr iMicroarrayName;
  Name_sptr iOutputFile;
  Name_sptr iAttributeGroup;
  PrintType_cl iPrintType;
};

#endif
