// Making a step object from the Type of its element: the one place that knows every step class.
#include "pipeline/step_factory.h"

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "clustering/vorn_step_cluster.h"
#include "clustering/vorn_step_clustering.h"
#include "data/vorn_step_delete.h"
#include "data/vorn_step_load_attributes.h"
#include "data/vorn_step_load_clusters.h"
#include "data/vorn_step_load_microarray.h"
#include "data/vorn_step_microarray_stats.h"
#include "data/vorn_step_print.h"
#include "data/vorn_step_print_microarray.h"
#include "data/vorn_step_randomize.h"
#include "eval/vorn_step_eval_attributes.h"
#include "export/vorn_step_tarsil.h"
#include "module/vorn_step_dummy.h"
#include "pipeline/not_built.h"
#include "pipeline/vorn_step_loop.h"
#include "sequence/step_create_labeled_sequences.h"
#include "sequence/step_load_sequence.h"
#include "sequence/step_load_sequence_alignment.h"

namespace {
using Maker = VornStep_cl* (*)(PropertyTreeIter_cl*, VornRun_cl*);

template <class Step>
VornStep_cl* Make(PropertyTreeIter_cl* iter, VornRun_cl* run) {
  return new Step(iter, run);
}

struct StepType {
  const char* iType;
  Maker iMake;  // null while the step's subsystem is not built
};

// Every step type of the pipeline file, compared exactly and in this order.
const StepType kStepTypes[] = {
    {"ChromosomeDomains", nullptr},  // StepChromosomeDomains_cl
    {"LoadWeightMatrixScores", nullptr},  // StepLoadWeightMatrixScores_cl
    {"ChromosomeSegmentation", nullptr},  // StepChromosomeSegmentation_cl
    {"Loop", Make<VornStepLoop_cl>},
    {"Cluster", Make<VornStepCluster_cl>},
    {"LoadSequence", Make<StepLoadSequence_cl>},
    {"Clustering", Make<VornStepClustering_cl>},
    {"LoadSequenceAlignment", Make<StepLoadSequenceAlignment_cl>},
    {"CompareChromosomeTracks", nullptr},  // StepCompareChromosomeTracks_cl
    {"LoadSequenceModelStep", nullptr},  // StepLoadSequenceModelStep_cl
    {"CreateSequenceAlignment", nullptr},  // StepCreateSequenceAlignment_cl
    {"MergeChromosomeTracks", nullptr},  // StepMergeChromosomeTracks_cl
    {"CreateChromosomeTrack", nullptr},  // StepCreateChromosomeTrack_cl
    {"MicroarrayStats", Make<VornStepMicroarrayStats_cl>},
    {"Dummy", Make<VornStepDummy_cl>},
    {"Print", Make<VornStepPrint_cl>},
    {"EM", nullptr},  // VornStepEM_cl
    {"PrintMicroarray", Make<VornStepPrintMicroarray_cl>},
    {"EvalAttributes", Make<VornStepEvalAttributes_cl>},
    {"Randomize", Make<VornStepRandomize_cl>},
    {"EvalClusters", nullptr},  // VornStepEvalClusters_cl
    {"Structure", nullptr},  // VornStepStructure_cl
    {"EvalExpression", nullptr},  // VornStepEvalExpression_cl
    {"Sgd", nullptr},  // VornStepSgd_cl
    {"EvalLocations", nullptr},  // VornStepEvalLocations_cl
    {"WeightMatricesStats", nullptr},  // StepWeightMatricesStats_cl
    {"EvalMotifs", nullptr},  // VornStepEvalMotifs_cl
    {"DeleteVars", Make<VornStepDelete_cl>},
    {"EvalSplits", nullptr},  // VornStepEvalSplits_cl
    {"AddVars", nullptr},  // VornStepSoftmaxAdd_cl
    {"EvalStructureLearning", nullptr},  // VornStepEvalStructureLearning_cl
    {"KNN", nullptr},  // VornStepKNN_cl
    {"EvalTest", nullptr},  // VornStepEvalTest_cl
    {"ComputeSequencesLikelihood", nullptr},  // StepComputeSequencesLikelihood_cl
    {"FitPeaks", nullptr},  // StepFitPeaks_cl
    {"ExhaustiveModelSampling", nullptr},  // StepExhaustiveModelSampling_cl
    {"GenerateMapping", nullptr},  // VornStepGenerateMapping_cl
    {"CompareWeightMatrices", nullptr},  // StepCompareWeightMatrices_cl
    {"Tarsil", Make<VornStepTarsil_cl>},
    {"UpdateWeightMatrixPartitionFunction", nullptr},  // StepUpdateWeightMatrixPartitionFunction_cl
    {"Init", nullptr},  // VornStepInit_cl
    {"LearnWeightMatrixParameters", nullptr},  // StepLearnWeightMatrixParameters_cl
    {"LeastSquares", nullptr},  // VornStepLeastSquares_cl
    {"CreatePssmLikeFeatureWeightMatrix", nullptr},  // StepCreatePssmLikeFeatureWeightMatrix_cl
    {"LearnAberrationModel", nullptr},  // StepLearnAberrationModel_cl
    {"ComputeSequencesFeaturesIndications", nullptr},  // StepComputeSequencesFeaturesIndications_cl
    {"LearnSequenceExpressionModel", nullptr},  // StepLearnSequenceExpressionModel_cl
    {"ComputeSequencesFeaturesExpectation", nullptr},  // StepComputeFeaturesExpectation_cl
    {"LearnSequenceModel", nullptr},  // StepLearnSequenceModel_cl
    {"FindMotif", nullptr},  // StepFindMotif_cl
    {"LearnLinkerModel", nullptr},  // StepLearnLinkerModel_cl
    {"ScoreUnalignedSeqsForMotif", nullptr},  // StepScoreUnalignedSeqsForMotif_cl
    {"LearnWeightMatrix", nullptr},  // StepLearnWeightMatrix_cl
    {"ScoreMotifHitsInPositiveSet", nullptr},  // StepScoreMotifHitsInPositiveSet_cl
    {"LoadAttributes", Make<VornStepLoadAttributes_cl>},
    {"WeightMatrix2Logo", nullptr},  // StepWeightMatrix2Logo_cl
    {"LoadBlast", nullptr},  // VornStepLoadBlast_cl
    {"CreateLabeledSequences", Make<StepCreateLabeledSequences_cl>},
    {"LoadClusters", Make<VornStepLoadClusters_cl>},
    {"EvalKmerSetMotifModel", nullptr},  // StepEvalKmerSetMotifModel_cl
    {"LoadGeneGraph", nullptr},  // VornStepLoadGeneGraph_cl
    {"AnalyzeChromosomeFeaturesConfigurations", nullptr},  // StepAnalyzeChromosomeFeaturesConfig_cl
    {"LoadMapping", nullptr},  // VornStepLoadMapping_cl
    {"ComputeBestSubSeqsLikelihood", nullptr},  // StepComputeBestSubSeqsLikelihood_cl
    {"LearnModelMirna", nullptr},  // VornStepLearnModelMirna_cl
    {"LoadRnaModel", nullptr},  // VornStepRnaLoadModel_cl
    {"LoadRnaBgParams", nullptr},  // VornStepRnaLoadBgParams_cl
    {"LoadRnaModelParams", nullptr},  // VornStepRnaLoadModelParams_cl
    {"LoadRnaData", nullptr},  // VornStepRnaLoadData_cl
    {"LearnRnaModelParams", nullptr},  // VornStepRnaLearnModelParams_cl
    {"LearnRnaBgParams", nullptr},  // VornStepRnaLearnBgParams_cl
    {"MatchRnaModel", nullptr},  // VornStepRnaMatchModel_cl
    {"SampleRnaModel", nullptr},  // VornStepRnaSampleModel_cl
    {"PrintRnaModel", nullptr},  // VornStepRnaPrintModel_cl
    {"LoadMicroarray", Make<VornStepLoadMicroarray_cl>},
    {"LoadPeakShape", nullptr},  // StepLoadPeakShape_cl
    {"LoadWeightMatrices", nullptr},  // StepLoadWeightMatrices_cl
};

VornStepFactory_cl::StepMaker gTestMaker = nullptr;
}  // namespace

void VornStepFactory_cl::SetTestStepMaker(StepMaker maker) { gTestMaker = maker; }

VornStep_cl* VornStepFactory_cl::CreateStep(PropertyTreeIter_cl* iter, VornRun_cl* run) {
  Name_sptr type = iter->GetProperty("Type");
  if (type.IsNull()) {
    std::cerr << "Unrecognized step (no Type)" << std::endl;
    abort();
  }
  if (gTestMaker)
    if (VornStep_cl* step = gTestMaker(type->GetText(), iter, run)) return step;
  for (const StepType& known : kStepTypes) {
    if (strcmp(known.iType, type->GetText()) != 0) continue;
    if (known.iMake) return known.iMake(iter, run);
    std::string line = std::string("Step type ") + type->GetText() + " is not built yet";
    StopNotBuilt(line.c_str());
  }
  std::cerr << "Unrecognized step " << type << std::endl;
  abort();
}
