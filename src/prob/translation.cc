// Correspondences between variable ids, and the images of variables, scopes and assignments under them.
#include "prob/translation.h"

#include <iostream>

Translation_cl::Translation_cl() : iDirection(TRANSLATION_FORWARD), iRvTable(nullptr) {}

Translation_cl::~Translation_cl() { delete iRvTable; }

void Translation_cl::SetDirection(int direction) {
  if (direction != TRANSLATION_FORWARD && direction != TRANSLATION_BACKWARD) {
    std::cerr << "Invalid translation direction argument (was: " << iDirection << ", new: " << direction << ")."
              << std::endl;
    abort();
  }
  iDirection = direction;
}

void Translation_cl::AddPair(IntSet_tmpl<int>* tables, Vector_tmpl<int>* lists, int from, int to) {
  tables[TRANSLATION_FORWARD].Insert(from, to);
  tables[TRANSLATION_BACKWARD].Insert(to, from);
  lists[TRANSLATION_FORWARD].AddLast(from);
  lists[TRANSLATION_BACKWARD].AddLast(to);
}

void Translation_cl::AddAbsoluteCorresp(const Id_cl* from, const Id_cl* to) {
  AddPair(iAbsolute, iAbsoluteIds, from->GetId(), to->GetId());
  SetRvTable(nullptr);
}

void Translation_cl::AddRelativeCorresp(const Id_cl* from, const Id_cl* to) {
  AddPair(iRelative, iRelativeIds, from->GetId(), to->GetId());
  SetRvTable(nullptr);
}

void Translation_cl::SetRvTable(IntSet_tmpl<SingleRv_sptr>* table) {
  if (table == iRvTable) return;
  delete iRvTable;
  iRvTable = table;
}

SingleRv_sptr Translation_cl::TranslateRv(const SingleRv_sptr& rv) const {
  int id = rv->GetId();
  int image = iAbsolute[iDirection].Exists(id) ? iAbsolute[iDirection].GetEntry(id) : iRelative[iDirection].GetEntry(id);
  if (!iRvTable || !iRvTable->Exists(image)) return rv;
  return iRvTable->GetEntry(image);
}

RvVector_sptr Translation_cl::TranslateRvVector(const RvVector_sptr& rvs, int unique) const {
  RvVector_sptr images = new RvVector_cl(rvs->GetNumberOfVars() > 0 ? rvs->GetNumberOfVars() : 1);
  for (int i = 0; i < rvs->GetNumberOfVars(); i++) images->AddVar(TranslateRv(rvs->GetRv(i)), unique);
  return images;
}

void Translation_cl::FillInstVector(InstVector_cl* target, const InstVector_sptr& source) const {
  for (int i = 0; i < source->GetNumberOfVars(); i++) {
    SingleInst_sptr inst = SingleInst_cl::Create(TranslateRv(source->GetRv(i)));
    inst->SetValue((*source)[i]);
    target->AddLast(inst);
  }
}

InstVector_sptr Translation_cl::TranslateInstVec(const InstVector_sptr& insts) const {
  InstVector_sptr images = new InstVector_cl();
  FillInstVector(images.Get(), insts);
  return images;
}

Sample_sptr Translation_cl::TranslateSample(const Sample_sptr& sample) const {
  Sample_sptr image = new Sample_cl(new RvVector_cl(), sample->GetWeight(), sample->GetProb());
  FillInstVector(image.Get(), sample);
  return image;
}

RvVectorCont_cl* Translation_cl::TranslateRvVectorCont(const RvVectorCont_cl* scopes) const {
  RvVectorCont_cl* images = new RvVectorCont_cl();
  for (int i = 0; i < scopes->GetSize(); i++) images->AddLast(TranslateRvVector((*scopes)[i], 0));
  return images;
}

Vector_tmpl<int>* Translation_cl::GatherRvs() const {
  Vector_tmpl<int>* ids = GatherIndividualRvs();
  ids->Concat(&iRelativeIds[iDirection]);
  return ids;
}

Vector_tmpl<int>* Translation_cl::GatherIndividualRvs() const {
  Vector_tmpl<int>* ids = new Vector_tmpl<int>();
  ids->Concat(&iAbsoluteIds[iDirection]);
  return ids;
}

Vector_tmpl<int>* Translation_cl::GatherTogetherRvs() const {
  Vector_tmpl<int>* ids = new Vector_tmpl<int>();
  ids->Concat(&iRelativeIds[iDirection]);
  return ids;
}
