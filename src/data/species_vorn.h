// Everything that belongs to one microarray: the microarray and the attribute values of its genes and experiments.
#ifndef VORN_DATA_SPECIES_VORN_H
#define VORN_DATA_SPECIES_VORN_H

#include "data/microarray.h"
#include "data/species_attributes.h"
#include "data/vorn_attribute_group.h"
#include "pipeline/name.h"

class SpeciesVorn_cl {
 public:
  explicit SpeciesVorn_cl(Name_sptr name);
  ~SpeciesVorn_cl();
  SpeciesVorn_cl(const SpeciesVorn_cl&) = delete;
  SpeciesVorn_cl& operator=(const SpeciesVorn_cl&) = delete;

  Name_sptr GetName() const { return iName; }
  // The microarray is the data store's; the species only points to it.
  Microarray_cl* GetMicroarray() const { return iMicroarray; }
  void SetMicroarray(Microarray_cl* microarray) { iMicroarray = microarray; }

  SpeciesAttributes_cl* GetExperimentAttributes() const { return iExperimentAttributes; }
  SpeciesAttributes_cl* GetGeneAttributes() const { return iGeneAttributes; }
  // The values of gene or experiment attributes; any other type stops the program.
  SpeciesAttributes_cl* GetAttributeData(AttributeGroupType_cl type) const;
  // The first type, experiment then gene, whose values have the attribute; 6 when none has.
  AttributeGroupType_cl GetAttributeType(Name_sptr name) const;
  // Looks in the experiment attributes first.
  Attr_cl* GetAttribute(Name_sptr name) const;
  // The number of objects of that type: experiments or genes of the microarray.
  int GetNumObjects(AttributeGroupType_cl type) const;

 private:
  Name_sptr iName;
  Microarray_cl* iMicroarray = nullptr;
  SpeciesAttributes_cl* iExperimentAttributes;
  SpeciesAttributes_cl* iGeneAttributes;
};

#endif
