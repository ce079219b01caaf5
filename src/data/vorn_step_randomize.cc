// The Randomize step.
#include "data/vorn_step_randomize.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

#include "data/microarray.h"
#include "data/vorn_data.h"
#include "pipeline/vorn_run.h"

const char* RANDOMIZATION_TYPE_STR[RANDOMIZATION_TYPE_NUM] = {"Matrix", "ByRows", "TheRows", "ByColumns",
                                                              "TheColumns"};

namespace {
RandomizationType_cl GetRandomizationType(Name_sptr type) {
  for (int i = 0; i < RANDOMIZATION_TYPE_NUM; i++)
    if (type->IsEqual(RANDOMIZATION_TYPE_STR[i])) return static_cast<RandomizationType_cl>(i);
  std::cerr << "BioTokens_cl::GetRandomizationType Unrecognized randomization type " << type << std::endl;
  abort();
}
}  // namespace

RandomizeStruct_cl::RandomizeStruct_cl(PropertyTreeIter_cl* iter)
    : iMetaGeneMappings(iter->IsNameEqual("MetaGeneMappings")),
      iMicroarrayName(iter->GetProperty("MicroarrayName")),
      iType(GetRandomizationType(iter->GetProperty("Type", Name_sptr("Matrix")))) {
  iter->GetDoubleProperty("Percentage", &iPercentage, 1.0);
}

VornStepRandomize_cl::VornStepRandomize_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : VornStep_cl(iter, run), iTargets(10, nullptr) {
  PropertyTreeIter_cl* child = iter->Clone();
  for (child->FirstChild(); child->NotNull(); child->NextSibling())
    if (child->IsNameEqual("Microarray") || child->IsNameEqual("MetaGeneMappings"))
      iTargets.AddLast(new RandomizeStruct_cl(child));
  delete child;
}

VornStepRandomize_cl::~VornStepRandomize_cl() { iTargets.DeleteAll(); }

void VornStepRandomize_cl::Run() {
  PrintRunHeader("VornStepRandomize_cl");
  VornData_cl* data = iRun->GetData();
  for (int i = 0; i < iTargets.GetSize(); i++) {
    const RandomizeStruct_cl& target = *iTargets[i];
    Randomizable_cl* shuffled = data;
    if (!target.iMetaGeneMappings) shuffled = data->FindMicroarray(target.iMicroarrayName, "VornStepRandomize_cl::Run");
    switch (target.iType) {
      case RANDOMIZE_MATRIX:
        shuffled->Permute(target.iPercentage);
        break;
      case RANDOMIZE_BY_ROWS:
        shuffled->PermuteByRows(target.iPercentage);
        break;
      case RANDOMIZE_THE_ROWS:
        shuffled->PermuteTheRows(target.iPercentage);
        break;
      case RANDOMIZE_BY_COLUMNS:
        shuffled->PermuteByColumns(target.iPercentage);
        break;
      case RANDOMIZE_THE_COLUMNS:
        shuffled->PermuteTheColumns(target.iPercentage);
        break;
      case RANDOMIZATION_TYPE_NUM:
        break;
    }
  }
}
