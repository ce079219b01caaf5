// The Randomize step: shuffles microarrays, or the meta genes of the data, in place.
#ifndef VORN_DATA_VORN_STEP_RANDOMIZE_H
#define VORN_DATA_VORN_STEP_RANDOMIZE_H

#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "pipeline/vorn_step.h"

// The shuffles, by the index of their text in RANDOMIZATION_TYPE_STR.
enum RandomizationType_cl {
  RANDOMIZE_MATRIX = 0,
  RANDOMIZE_BY_ROWS,
  RANDOMIZE_THE_ROWS,
  RANDOMIZE_BY_COLUMNS,
  RANDOMIZE_THE_COLUMNS,
  RANDOMIZATION_TYPE_NUM
};
extern const char* RANDOMIZATION_TYPE_STR[RANDOMIZATION_TYPE_NUM];

// One child of the step: a Microarray by MicroarrayName, or the MetaGeneMappings of the data.
class RandomizeStruct_cl {
 public:
  explicit RandomizeStruct_cl(PropertyTreeIter_cl* iter);

  int iMetaGeneMappings;
  Name_sptr iMicroarrayName;
  RandomizationType_cl iType;
  double iPercentage;
};

class VornStepRandomize_cl : public VornStep_cl {
 public:
  VornStepRandomize_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);
  ~VornStepRandomize_cl() override;

  // Shuffles each target in turn, each cell or line moving with probability Percentage.
  void Run() override;

 private:
  Vector_tmpl<RandomizeStruct_cl*> iTargets;
};

#endif
