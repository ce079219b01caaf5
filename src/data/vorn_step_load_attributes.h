// The LoadAttributes step: fills, combines and deletes attribute groups and their values.
#ifndef VORN_DATA_VORN_STEP_LOAD_ATTRIBUTES_H
#define VORN_DATA_VORN_STEP_LOAD_ATTRIBUTES_H

#include "data/species_attributes.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "pipeline/vorn_step.h"

enum LoadAttributesType_cl {
  LOAD_FROM_FILE = 0,
  LOAD_FROM_MICROARRAY,
  LOAD_FROM_MAPPINGS,
  LOAD_FROM_ATTRIBUTES,
  LOAD_FROM_ATTRIBUTE_COMBINATIONS,
  LOAD_FROM_EXPRESSION_ATTRIBUTES,
  LOAD_FROM_LINK_ATTRIBUTES,
  LOAD_FROM_CHROMOSOME_TRACK,
  LOAD_FROM_CHROMOSOMES_ATTRIBUTES,
  LOAD_DELETE_ATTRIBUTES,
  LOAD_DELETE_ATTRIBUTE_GROUP,
  LOAD_ATTRIBUTES_TYPE_NUM
};
extern const char* LOAD_ATTRIBUTES_TYPE_STR[LOAD_ATTRIBUTES_TYPE_NUM];

class VornStepLoadAttributes_cl : public VornStep_cl {
 public:
  VornStepLoadAttributes_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);

  void Run() override;

 private:
  // Enters the values of the group for the microarray and writes them when asked.
  void Store(SpeciesAttributes_cl* values, VornAttributeGroup_cl* group);

  Name_sptr iAttributeGroup;
  Name_sptr iSecondAttributeGroup;
  Name_sptr iTargets;
  Name_sptr iMicroarrayName;
  Name_sptr iFile;
  Name_sptr iOutputFile;
  Name_sptr iInputTrack;
  LoadAttributesType_cl iLoadType;
  OperationType_cl iOperation;
  Vector_tmpl<Name_sptr> iMicroarrays;
  Vector_tmpl<Name_sptr> iAttributeGroups;
};

#endif
