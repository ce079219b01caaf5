// The data shared by all runs of the process: microarrays, attribute groups and attribute values.
#ifndef VORN_DATA_VORN_DATA_H
#define VORN_DATA_VORN_DATA_H

#include "data/species_attributes.h"
#include "data/species_vorn.h"
#include "data/vorn_attribute_group.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"
#include "prob/matrix.h"
#include "prob/randomizable.h"

class Microarray_cl;

class VornData_cl : public Randomizable_cl {
 public:
  VornData_cl();
  ~VornData_cl() override;
  VornData_cl(const VornData_cl&) = delete;
  VornData_cl& operator=(const VornData_cl&) = delete;

  // Gets or creates the species of the microarray's name and sets its microarray; the data owns it.
  void AddMicroarray(Microarray_cl* microarray);
  // Null for an unknown name.
  Microarray_cl* GetMicroarray(Name_sptr name) const;
  // The microarray, or a stop with "<caller> Unknown microarray <name>".
  Microarray_cl* FindMicroarray(Name_sptr name, const char* caller) const;
  SpeciesVorn_cl* GetSpecies(Name_sptr name) const { return iSpecies.GetEntry(name); }
  const NameSet_tmpl<SpeciesVorn_cl*>& GetAllSpecies() const { return iSpecies; }

  // Searches the tables of meta gene, gene, experiment, expression, link and chromosomes groups in
  // this order; reports an unknown name and gives null.
  VornAttributeGroup_cl* GetAttributeGroup(Name_sptr name) const;
  // The group, or a stop with "<caller> Unknown attribute group <name>".
  VornAttributeGroup_cl* FindAttributeGroup(Name_sptr name, const char* caller) const;
  // Enters the group in the table of its type and owns it; a group of no known type is ignored.
  void AddAttributeGroup(VornAttributeGroup_cl* group);
  // Removes the group from its table, its columns from every species' values, and deletes it.
  void DeleteAttributeGroup(VornAttributeGroup_cl* group);
  const NameSet_tmpl<VornAttributeGroup_cl*>* GetAttributeGroups(AttributeGroupType_cl type) const;

  // Appends the values to the microarray's gene or experiment values and owns them no further; the
  // rows must be the microarray's genes or experiments.
  void AddAttributeGroup(Name_sptr microarray, SpeciesAttributes_cl* values, AttributeGroupType_cl type);
  // The microarray's gene or experiment values; null for an unknown microarray.
  SpeciesAttributes_cl* GetAttributes(Name_sptr microarray, AttributeGroupType_cl type) const;
  // Look-ups by attribute name over the species in visiting order; the first that knows it answers.
  Attr_cl* GetAttribute(Name_sptr name) const;
  AttributeGroupType_cl GetAttributeType(Name_sptr name) const;
  Name_sptr GetAttributeMicroarrayName(Name_sptr name) const;

  // A row per meta gene and a column per microarray, each cell the index of its row; shuffling it
  // reassigns the meta genes of each microarray's genes.
  Matrix_sptr GetMatrix() override;
  void SetMatrix(Matrix_sptr matrix) override;

 private:
  SpeciesVorn_cl* FindSpeciesOfAttribute(Name_sptr name) const;
  NameSet_tmpl<VornAttributeGroup_cl*>* GroupTable(AttributeGroupType_cl type);

  NameSet_tmpl<SpeciesVorn_cl*> iSpecies;
  // By type, in the order of AttributeGroupType_cl.
  NameSet_tmpl<VornAttributeGroup_cl*>* iGroups[ATTRIBUTE_GROUP_TYPE_NUM];
  // Every microarray ever entered: one that was replaced under its name may still be held by a
  // run's repository, so all live until the data dies.
  Vector_tmpl<Microarray_cl*> iOwned;
};

#endif
