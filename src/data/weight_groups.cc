// Weighted subsets of experiments.
#include "data/weight_groups.h"

#include <iostream>

#include "data/data_file.h"

WeightGroup_cl::WeightGroup_cl(PropertyTreeIter_cl* iter) {
  iName = iter->GetProperty("Name", Name_sptr("-"));
  iFile = iter->GetProperty("File");
  iter->GetDoubleProperty("Weight", &iWeight, 1.0);
  iter->GetDoubleProperty("MinWeight", &iMinWeight, 1.0);
}

void WeightGroup_cl::LoadKeys(const NameSet_tmpl<int>& experiments) {
  DataFile_cl::StopUnlessReadable(iFile, "WeightGroup_cl::LoadKeys");
  NameSet_tmpl<int>* listed = DataFile_cl::LoadList(iFile, 0);
  delete iKeys;
  iKeys = listed->Reduce(experiments);
  delete listed;
  std::cerr << "Found " << iKeys->GetSize() << " items in group for file " << iFile
            << " with group weight=" << iWeight << std::endl;
}

WeightGroups_cl::WeightGroups_cl(PropertyTreeIter_cl* iter) : Vector_tmpl<WeightGroup_cl*>(10, nullptr) {
  PropertyTreeIter_cl* child = iter->Clone();
  for (child->FirstChild(); child->NotNull(); child->NextSibling())
    if (child->IsNameEqual("Experiments")) AddLast(new WeightGroup_cl(child));
  delete child;
}

void WeightGroups_cl::LoadKeys(Microarray_cl* microarray) {
  for (int i = 0; i < GetSize(); i++) (*this)[i]->LoadKeys(*microarray->GetExperimentsHash());
}

Vector_tmpl<Microarray_cl*>* WeightGroups_cl::CreateMicroarrays(Microarray_cl* microarray) const {
  Vector_tmpl<Microarray_cl*>* microarrays = new Vector_tmpl<Microarray_cl*>(GetSize() + 1, nullptr);
  for (int i = 0; i < GetSize(); i++) {
    const NameSet_tmpl<int>* keys = (*this)[i]->GetKeys();
    NameSet_tmpl<int> none(1, -1);
    microarrays->AddLast(microarray->Copy(nullptr, keys ? keys : &none));
  }
  return microarrays;
}
