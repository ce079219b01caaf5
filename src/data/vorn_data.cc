// The data shared by all runs of the process.
#include "data/vorn_data.h"

#include <cstdlib>
#include <iostream>

#include "data/microarray.h"

namespace {
// GetAttributeGroup's order of search over the types.
const AttributeGroupType_cl kSearchOrder[ATTRIBUTE_GROUP_TYPE_NUM] = {
    META_GENE_ATTRIBUTES,  GENE_ATTRIBUTES, EXPERIMENT_ATTRIBUTES, EXPRESSION_ATTRIBUTES,
    LINK_ATTRIBUTES,       CHROMOSOMES_ATTRIBUTES};

int IsKnownType(AttributeGroupType_cl type) { return type >= 0 && type < ATTRIBUTE_GROUP_TYPE_NUM; }
}  // namespace

VornData_cl::VornData_cl() : iSpecies(32, nullptr, 0.5, 2.0), iOwned(10, nullptr) {
  for (auto& table : iGroups) table = new NameSet_tmpl<VornAttributeGroup_cl*>(32, nullptr, 0.5, 2.0);
}

VornData_cl::~VornData_cl() {
  for (auto* table : iGroups) {
    table->DeleteAll();
    delete table;
  }
  iSpecies.DeleteAll();
  iOwned.DeleteAll();
}

void VornData_cl::AddMicroarray(Microarray_cl* microarray) {
  SpeciesVorn_cl* species = iSpecies.GetEntry(microarray->GetName());
  if (!species) {
    species = new SpeciesVorn_cl(microarray->GetName());
    iSpecies.Insert(microarray->GetName(), species);
  }
  species->SetMicroarray(microarray);
  if (!iOwned.IsMember(microarray)) iOwned.AddLast(microarray);
}

Microarray_cl* VornData_cl::GetMicroarray(Name_sptr name) const {
  SpeciesVorn_cl* species = iSpecies.GetEntry(name);
  return species ? species->GetMicroarray() : nullptr;
}

Microarray_cl* VornData_cl::FindMicroarray(Name_sptr name, const char* caller) const {
  Microarray_cl* microarray = GetMicroarray(name);
  if (!microarray) {
    std::cerr << caller << " Unknown microarray " << name << std::endl;
    abort();
  }
  return microarray;
}

VornAttributeGroup_cl* VornData_cl::GetAttributeGroup(Name_sptr name) const {
  for (AttributeGroupType_cl type : kSearchOrder)
    if (VornAttributeGroup_cl* group = iGroups[type]->GetEntry(name)) return group;
  std::cerr << "VornData_cl::GetAttributeGroup could not find attribute group named = " << name << std::endl;
  return nullptr;
}

VornAttributeGroup_cl* VornData_cl::FindAttributeGroup(Name_sptr name, const char* caller) const {
  for (AttributeGroupType_cl type : kSearchOrder)
    if (VornAttributeGroup_cl* group = iGroups[type]->GetEntry(name)) return group;
  std::cerr << caller << " Unknown attribute group " << name << std::endl;
  abort();
}

NameSet_tmpl<VornAttributeGroup_cl*>* VornData_cl::GroupTable(AttributeGroupType_cl type) {
  return IsKnownType(type) ? iGroups[type] : nullptr;
}

const NameSet_tmpl<VornAttributeGroup_cl*>* VornData_cl::GetAttributeGroups(AttributeGroupType_cl type) const {
  return IsKnownType(type) ? iGroups[type] : nullptr;
}

void VornData_cl::AddAttributeGroup(VornAttributeGroup_cl* group) {
  if (NameSet_tmpl<VornAttributeGroup_cl*>* table = GroupTable(group->GetType()))
    table->Insert(group->GetName(), group);
}

void VornData_cl::DeleteAttributeGroup(VornAttributeGroup_cl* group) {
  NameSet_tmpl<VornAttributeGroup_cl*>* table = GroupTable(group->GetType());
  if (!table || table->GetEntry(group->GetName()) != group) return;
  table->Remove(group->GetName());
  // Values must not outlive the attributes they point to.
  for (auto* entry : iSpecies)
    if (group->GetType() == GENE_ATTRIBUTES || group->GetType() == EXPERIMENT_ATTRIBUTES)
      entry->iValue->GetAttributeData(group->GetType())->Delete(group);
  delete group;
}

void VornData_cl::AddAttributeGroup(Name_sptr microarray, SpeciesAttributes_cl* values, AttributeGroupType_cl type) {
  SpeciesVorn_cl* species = iSpecies.GetEntry(microarray);
  if (!species || !species->GetMicroarray()) {
    std::cerr << "VornData_cl::AddAttributeGroup Unknown microarray " << microarray << std::endl;
    abort();
  }
  int objects = species->GetNumObjects(type);
  if (values->GetNumRows() != objects) {
    std::cerr << "VornData_cl::AddAttributeGroup " << values->GetNumRows() << " rows of values for " << objects
              << (type == EXPERIMENT_ATTRIBUTES ? " experiments" : " genes") << " of microarray " << microarray
              << std::endl;
    abort();
  }
  species->GetAttributeData(type)->Add(values);
  delete values;
}

SpeciesAttributes_cl* VornData_cl::GetAttributes(Name_sptr microarray, AttributeGroupType_cl type) const {
  SpeciesVorn_cl* species = iSpecies.GetEntry(microarray);
  return species ? species->GetAttributeData(type) : nullptr;
}

SpeciesVorn_cl* VornData_cl::FindSpeciesOfAttribute(Name_sptr name) const {
  for (auto* entry : iSpecies)
    if (entry->iValue->GetAttributeType(name) != ATTRIBUTE_GROUP_TYPE_NUM) return entry->iValue;
  return nullptr;
}

Attr_cl* VornData_cl::GetAttribute(Name_sptr name) const {
  SpeciesVorn_cl* species = FindSpeciesOfAttribute(name);
  return species ? species->GetAttribute(name) : nullptr;
}

AttributeGroupType_cl VornData_cl::GetAttributeType(Name_sptr name) const {
  SpeciesVorn_cl* species = FindSpeciesOfAttribute(name);
  return species ? species->GetAttributeType(name) : ATTRIBUTE_GROUP_TYPE_NUM;
}

Name_sptr VornData_cl::GetAttributeMicroarrayName(Name_sptr name) const {
  SpeciesVorn_cl* species = FindSpeciesOfAttribute(name);
  return species ? species->GetName() : Name_sptr();
}

// No gene has a meta gene until gene mappings are loaded, so the matrix has no rows and its
// shuffle has nothing to give back.
Matrix_sptr VornData_cl::GetMatrix() { return Matrix_cl::AllocateCorrectType(0, iSpecies.GetSize()); }

void VornData_cl::SetMatrix(Matrix_sptr) {}
