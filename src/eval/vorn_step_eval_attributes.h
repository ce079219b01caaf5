// The EvalAttributes step: tests each module cluster for over-represented annotations.
#ifndef VORN_EVAL_VORN_STEP_EVAL_ATTRIBUTES_H
#define VORN_EVAL_VORN_STEP_EVAL_ATTRIBUTES_H

#include "data/vorn_attribute_group.h"
#include "eval/eval_formatter.h"
#include "eval/math_util.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "pipeline/vorn_step.h"
#include "prob/matrix.h"

// The annotation values of the objects, a row per gene (or experiment) of the microarray, with the
// column totals over the evaluated objects and over all of them.
struct EvalAttributesData_cl {
  Matrix_sptr iValues;
  Vector_tmpl<Name_sptr> iNames;
  // Per column: present values and their sum, on the evaluated rows and on all rows.
  Vector_tmpl<int> iDatasetPresent, iDatasetSum, iGlobalPresent, iGlobalSum;
  // The rows of the objects that the module clusters know and that have data.
  Vector_tmpl<int> iEvaluatedRows;
};

class VornStepEvalAttributes_cl : public VornStep_cl {
 public:
  VornStepEvalAttributes_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);

  void Run() override;

 private:
  // The rows of each object name, from the microarray.
  NameSet_tmpl<int>* GetObjects();
  void LoadData(EvalAttributesData_cl& data);
  void ComputeClustersSignificance(const EvalAttributesData_cl& data, Matrix_sptr reduce,
                                   const Vector_tmpl<Name_sptr>& reduceNames, EvalFormatter_cl& report);
  // Tests one (sub-)cluster, given by its rows, against every column.
  void ComputeSignificance(Name_sptr name, const Vector_tmpl<int>& members, const EvalAttributesData_cl& data,
                           EvalFormatter_cl& report);
  void AddResult(EvalFormatter_cl& report, Name_sptr cluster, int clusterSize, Name_sptr attribute, int datasetCount,
                 int globalCount, SingleFormatter_cl* formatter);

  Name_sptr iMicroarrayName;
  Name_sptr iAttributeGroup;
  Name_sptr iAttributesReduce;
  AttributeGroupType_cl iAttributesType;
  Name_sptr iAttributesFile;
  int iOutputIntersectingMembers;
  StatisticTestType_cl iTestType;
  Name_sptr iOutputFile;
  FormatType_cl iFormat;
  int iMinCount;
  double iMinPValue;
  MultipleHypothesisCorrection_cl iCorrection;
  // Tests that got past their size check, for the correction.
  int iNumTests = 0;
  // Names of the microarray's objects of the evaluated type.
  const Vector_tmpl<Name_sptr>* iObjectNames = nullptr;
};

#endif
