// The relational model over the loaded data: relations of gene, experiment and expression attributes per species.
#ifndef VORN_MODULE_VORN_H
#define VORN_MODULE_VORN_H

#include "data/vorn_attribute_group.h"
#include "data/vorn_data.h"
#include "module/rel.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"
#include "prob/bn_cpd.h"

// Relations are named "meta_genes", "g_<species>", "c_<species>", "e_<species>" and
// "l_<species>"; the one attribute of an expression relation, "exp_level_<species>", belongs to
// the model. The relations are a picture of the data when the model was made.
class Vorn_cl {
 public:
  explicit Vorn_cl(VornData_cl* data);
  ~Vorn_cl();
  Vorn_cl(const Vorn_cl&) = delete;
  Vorn_cl& operator=(const Vorn_cl&) = delete;

  // A new model over the same data.
  Vorn_cl* Clone() const { return new Vorn_cl(iData); }
  VornData_cl* GetData() const { return iData; }

  static Name_sptr GetTableName(const char* prefix, Name_sptr species);
  static Name_sptr GetExpressionCpdName(Name_sptr species) { return GetTableName("exp_level_", species); }
  // The name less the prefix when it starts with it; null otherwise.
  static Name_sptr ExtractSpecies(const char* name, const char* prefix);

  // Null for a relation that is not there.
  Rel_cl* GetRel(Name_sptr name) const { return iRelations.GetEntry(name); }
  Rel_cl* GetMetaGeneRel() const { return GetRel(Name_sptr("meta_genes")); }
  Rel_cl* GetGeneRel(Name_sptr species) const { return GetRel(GetTableName("g_", species)); }
  Rel_cl* GetExperimentRel(Name_sptr species) const { return GetRel(GetTableName("c_", species)); }
  Rel_cl* GetLinkRel(Name_sptr species) const { return GetRel(GetTableName("l_", species)); }
  Rel_cl* GetExpressionRel(Name_sptr species) const { return GetRel(GetTableName("e_", species)); }
  Rel_cl* FindRel(AttributeGroupType_cl type, Name_sptr species) const;
  const NameSet_tmpl<Rel_cl*>& GetRelations() const { return iRelations; }
  // The species' gene or experiment values; null for other types and unknown species.
  SpeciesAttributes_cl* GetAttributes(Name_sptr species, AttributeGroupType_cl type) const;
  Attr_cl* GetExpressionAttr(Name_sptr species) const;

  // Both log their answer on the error stream.
  Name_sptr GetSpeciesName(Rel_cl* rel) const;
  int GetRelType(Rel_cl* rel) const;

  // The attributes whose CPD has this attribute's variable among its variables; cached in the
  // attribute until ClearAttributeChildren.
  Vector_tmpl<Attr_cl*>* GetAttributeChildren(Attr_cl* attribute);
  void ClearAttributeChildren();

  // The expression CPD of the species, a tree over the parents: detached, a new empty tree that is
  // stored nowhere; otherwise the attribute's CPD, made and stored when it has none (replace drops
  // the old one first). An unknown species stops the program.
  BnCpd_sptr CreateExpressionCpd(Name_sptr species, const Vector_tmpl<Attr_cl*>* parents, int replace, int detached);

  // Takes the attribute out of every relation and of the parents of every attribute.
  void DeleteVarFromPrm(Attr_cl* attribute);

 private:
  void CreateRelations();
  void CreateAttributeRelations(const char* prefix, AttributeGroupType_cl type);
  void CreateMicroarraySpotRelations();
  Rel_cl* AddRel(Name_sptr name, AttributeGroupType_cl type);
  // Every attribute of every relation, once each, in visiting order.
  template <class Visit>
  void ForEachAttribute(Visit visit) const {
    for (auto* rel : iRelations)
      for (auto* entry : rel->iValue->GetAttributes()) visit(entry->iValue);
  }

  VornData_cl* iData;
  NameSet_tmpl<Rel_cl*> iRelations;
  Vector_tmpl<Attr_cl*> iExpressionAttrs;
};

#endif
