// Everything that belongs to one microarray.
#include "data/species_vorn.h"

#include <cstdlib>
#include <iostream>

SpeciesVorn_cl::SpeciesVorn_cl(Name_sptr name)
    : iName(name), iExperimentAttributes(new SpeciesAttributes_cl), iGeneAttributes(new SpeciesAttributes_cl) {}

SpeciesVorn_cl::~SpeciesVorn_cl() {
  delete iExperimentAttributes;
  delete iGeneAttributes;
}

SpeciesAttributes_cl* SpeciesVorn_cl::GetAttributeData(AttributeGroupType_cl type) const {
  if (type == EXPERIMENT_ATTRIBUTES) return iExperimentAttributes;
  if (type == GENE_ATTRIBUTES) return iGeneAttributes;
  std::cerr << "SpeciesVorn_cl::GetAttributeData Unrecognized Type " << static_cast<int>(type) << std::endl;
  abort();
}

AttributeGroupType_cl SpeciesVorn_cl::GetAttributeType(Name_sptr name) const {
  if (iExperimentAttributes->GetColumn(name) >= 0) return EXPERIMENT_ATTRIBUTES;
  if (iGeneAttributes->GetColumn(name) >= 0) return GENE_ATTRIBUTES;
  return ATTRIBUTE_GROUP_TYPE_NUM;
}

Attr_cl* SpeciesVorn_cl::GetAttribute(Name_sptr name) const {
  Attr_cl* attribute = iExperimentAttributes->GetAttribute(name);
  return attribute ? attribute : iGeneAttributes->GetAttribute(name);
}

int SpeciesVorn_cl::GetNumObjects(AttributeGroupType_cl type) const {
  if (!iMicroarray) return 0;
  return type == EXPERIMENT_ATTRIBUTES ? iMicroarray->GetNumExperiments() : iMicroarray->GetNumGenes();
}
