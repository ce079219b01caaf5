// The Tarsil step: writes a microarray's data for the viewer, or reads a saved viewer file back into the run.
#ifndef VORN_EXPORT_VORN_STEP_TARSIL_H
#define VORN_EXPORT_VORN_STEP_TARSIL_H

#include "export/tarsil_printer.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "pipeline/vorn_step.h"

class VornRun_cl;

// One child of the step: a microarray to write or a file to read.
class VornTarsilStruct_cl {
 public:
  explicit VornTarsilStruct_cl(PropertyTreeIter_cl* iter);

  void Run(VornRun_cl* run, TarsilFormatType_cl format);

 private:
  void Read(VornRun_cl* run);
  void Write(VornRun_cl* run);

  Name_sptr iName;
  Name_sptr iOutputFile;
  Name_sptr iFile;
  Name_sptr iGeneNamesFile;
  Name_sptr iURLPrefix;
  int iUseMetaGeneNames;
  Vector_tmpl<Name_sptr> iAttributeSets;
  Vector_tmpl<Name_sptr> iAnalyses;
};

class VornStepTarsil_cl : public VornStep_cl {
 public:
  VornStepTarsil_cl(PropertyTreeIter_cl* iter, VornRun_cl* run);
  ~VornStepTarsil_cl() override;

  void Run() override;
  void Load(PropertyTreeIter_cl* iter) override;

 private:
  TarsilFormatType_cl iFormat;
  Vector_tmpl<VornTarsilStruct_cl*> iStructs;
};

#endif
