// Reading the pipeline file into the shared data and the vector of runs.
#include "pipeline/vorn_reader.h"

#include <iostream>

#include "data/microarray.h"
#include "data/vorn_attribute_group.h"
#include "data/vorn_data.h"
#include "pipeline/vorn_run.h"

VornReader_cl::VornReader_cl() : iData(new VornData_cl), iRuns(10, nullptr) {}

VornReader_cl::~VornReader_cl() {
  delete iData;
  iRuns.DeleteAll();
}

PropertyTreeIter_cl* VornReader_cl::CloneChildIter(PropertyTreeIter_cl* iter, const char* tag) {
  PropertyTreeIter_cl* child = iter->Clone();
  for (child->FirstChild(); child->NotNull(); child->NextSibling())
    if (child->IsNameEqual(tag)) return child;
  delete child;
  return nullptr;
}

void VornReader_cl::Read(PropertyTreeIter_cl* iter) {
  std::cerr << "VornReader_cl::Read(" << iter->GetName() << ")" << std::endl;
  if (PropertyTreeIter_cl* child = CloneChildIter(iter, "MicroarraySet")) {
    ReadMicroarrays(child);
    delete child;
  }
  if (PropertyTreeIter_cl* child = CloneChildIter(iter, "AttributeGroupSet")) {
    ReadAttributeGroups(child);
    delete child;
  }
  if (PropertyTreeIter_cl* child = CloneChildIter(iter, "RunVec")) {
    ReadRuns(child);
    delete child;
  }
  std::cerr << "EOF: Constructor" << std::endl;
}

void VornReader_cl::ReadMicroarrays(PropertyTreeIter_cl* iter) {
  std::cerr << "BOF: ReadMicroarrays(" << iter->GetName() << ")" << std::endl;
  for (iter->FirstChild(); iter->NotNull(); iter->NextSibling()) {
    PropertyTreeIter_cl* child = iter->Clone();
    iData->AddMicroarray(new Microarray_cl(child));
    delete child;
  }
  std::cerr << "EOF: ReadMicroarrays()" << std::endl;
}

void VornReader_cl::ReadAttributeGroups(PropertyTreeIter_cl* iter) {
  std::cerr << "BOF: ReadAttributeGroups(" << iter->GetName() << ")" << std::endl;
  for (iter->FirstChild(); iter->NotNull(); iter->NextSibling()) {
    PropertyTreeIter_cl* child = iter->Clone();
    iData->AddAttributeGroup(new VornAttributeGroup_cl(child));
    delete child;
  }
  std::cerr << "EOF: ReadAttributeGroups" << std::endl;
}

void VornReader_cl::ReadRuns(PropertyTreeIter_cl* iter) {
  std::cerr << "BOF: ReadRuns(" << iter->GetName() << ")" << std::endl;
  for (iter->FirstChild(); iter->NotNull(); iter->NextSibling()) {
    PropertyTreeIter_cl* child = iter->Clone();
    iRuns.AddLast(new VornRun_cl(child, iData));
    delete child;
  }
  std::cerr << "EOF: ReadRuns()" << std::endl;
}

void VornReader_cl::Run() {
  for (int i = 0; i < iRuns.GetSize(); i++) iRuns[i]->Run();
}
