// The DeleteVars step: prunes regulator attributes whose loss costs the expression CPD little score.
#ifndef VORN_DATA_VORN_STEP_DELETE_H
#define VORN_DATA_VORN_STEP_DELETE_H

#include "data/vorn_attribute_group.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vorn_step.h"
#include "prob/bn_cpd.h"

class VornStepDelete_cl : public VornStep_cl {
 public:
  // The score of a CPD over a microarray's data, higher being better.
  using Scorer = double (*)(BnCpd_sptr cpd, VornRun_cl* run, Name_sptr microarray);

  VornStepDelete_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);

  // Marks the step incomplete on every run, so that a loop around it ends by its iteration limit.
  void Run() override;

  // Set by the learning parameters, which know how to score; without it a CPD cannot be pruned.
  static Scorer iScorer;

 private:
  // The score of a copy of the target's CPD without the removed attribute (none: unchanged).
  double ComputeScore(Attr_cl* removed, Attr_cl* target) const;
  // Enters the attributes of the group that may go into the list, at most MaxAttsDel of them.
  void CreateDelList(VornAttributeGroup_cl* group, Attr_cl* target, VornAttributeGroup_cl* list) const;

  Name_sptr iMicroarrayName;
  Name_sptr iAttributeGroup;
  // Read for the pipeline file's sake: the list of what is to go is named after the target.
  Name_sptr iSecondAttributeGroup;
  double iMaxScoreLoss;
  int iMaxAttsDel;
};

#endif
