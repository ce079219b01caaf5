// The relational model over the loaded data.
#include "module/vorn.h"

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "data/microarray.h"
#include "prob/tree_cpd.h"

Vorn_cl::Vorn_cl(VornData_cl* data) : iData(data), iRelations(32, nullptr, 0.5, 2.0), iExpressionAttrs(10, nullptr) {
  CreateRelations();
}

Vorn_cl::~Vorn_cl() {
  iRelations.DeleteAll();
  iExpressionAttrs.DeleteAll();
}

Name_sptr Vorn_cl::GetTableName(const char* prefix, Name_sptr species) {
  std::string name = prefix;
  if (!species.IsNull()) name += species->GetText();
  return Name_sptr(name.c_str());
}

Name_sptr Vorn_cl::ExtractSpecies(const char* name, const char* prefix) {
  size_t length = strlen(prefix);
  if (strncmp(name, prefix, length) != 0) return Name_sptr();
  return Name_sptr(name + length);
}

Rel_cl* Vorn_cl::AddRel(Name_sptr name, AttributeGroupType_cl type) {
  Rel_cl* rel = new Rel_cl(name, type);
  iRelations.Insert(name, rel);
  return rel;
}

void Vorn_cl::CreateRelations() {
  CreateAttributeRelations("g_", GENE_ATTRIBUTES);
  CreateAttributeRelations("c_", EXPERIMENT_ATTRIBUTES);
  CreateMicroarraySpotRelations();
  // Meta gene values come with gene mappings; until then the relation is empty.
  AddRel(Name_sptr("meta_genes"), META_GENE_ATTRIBUTES);
}

void Vorn_cl::CreateAttributeRelations(const char* prefix, AttributeGroupType_cl type) {
  for (auto* entry : iData->GetAllSpecies()) {
    Rel_cl* rel = AddRel(GetTableName(prefix, entry->iKey), type);
    SpeciesAttributes_cl* values = entry->iValue->GetAttributeData(type);
    for (int i = 0; i < values->GetNumAttributes(); i++) rel->AddAttribute(values->GetAttr(i));
  }
}

void Vorn_cl::CreateMicroarraySpotRelations() {
  for (auto* entry : iData->GetAllSpecies()) {
    Microarray_cl* microarray = entry->iValue->GetMicroarray();
    if (!microarray) continue;
    Rel_cl* rel = AddRel(GetTableName("e_", entry->iKey), EXPRESSION_ATTRIBUTES);
    Name_sptr name = GetExpressionCpdName(entry->iKey);
    Attr_cl* attribute = new Attr_cl(name, VornAttributeGroup_cl::iAttrIdCounter++,
                                     SingleRv_sptr(new SingleRv_cl(name, microarray->GetValueDomain())));
    iExpressionAttrs.AddLast(attribute);
    rel->AddAttribute(attribute);
  }
}

Rel_cl* Vorn_cl::FindRel(AttributeGroupType_cl type, Name_sptr species) const {
  switch (type) {
    case META_GENE_ATTRIBUTES:
      return GetMetaGeneRel();
    case GENE_ATTRIBUTES:
      return GetGeneRel(species);
    case EXPERIMENT_ATTRIBUTES:
      return GetExperimentRel(species);
    case EXPRESSION_ATTRIBUTES:
      return GetExpressionRel(species);
    case LINK_ATTRIBUTES:
      return GetLinkRel(species);
    default:
      return nullptr;
  }
}

SpeciesAttributes_cl* Vorn_cl::GetAttributes(Name_sptr species, AttributeGroupType_cl type) const {
  if (type != GENE_ATTRIBUTES && type != EXPERIMENT_ATTRIBUTES) return nullptr;
  return iData->GetAttributes(species, type);
}

Attr_cl* Vorn_cl::GetExpressionAttr(Name_sptr species) const {
  Rel_cl* rel = GetExpressionRel(species);
  return rel ? rel->GetAttribute(GetExpressionCpdName(species)) : nullptr;
}

Name_sptr Vorn_cl::GetSpeciesName(Rel_cl* rel) const {
  const char* name = rel->GetName()->GetText();
  Name_sptr species;
  if (strcmp(name, "meta_genes") == 0) species = Name_sptr("");
  for (const char* prefix : {"g_", "c_", "e_"})
    if (species.IsNull()) species = ExtractSpecies(name, prefix);
  if (species.IsNull()) species = rel->GetName();
  std::cerr << "Vorn_cl::GetSpeciesName " << rel->GetName() << " ===> " << species << std::endl;
  return species;
}

int Vorn_cl::GetRelType(Rel_cl* rel) const {
  const char* name = rel->GetName()->GetText();
  int type = ATTRIBUTE_GROUP_TYPE_NUM;
  if (strcmp(name, "meta_genes") == 0) type = META_GENE_ATTRIBUTES;
  else if (strncmp(name, "g_", 2) == 0) type = GENE_ATTRIBUTES;
  else if (strncmp(name, "c_", 2) == 0) type = EXPERIMENT_ATTRIBUTES;
  else if (strncmp(name, "e_", 2) == 0) type = EXPRESSION_ATTRIBUTES;
  std::cerr << "Vorn_cl::GetRelType " << rel->GetName() << " ===> " << type << std::endl;
  return type;
}

Vector_tmpl<Attr_cl*>* Vorn_cl::GetAttributeChildren(Attr_cl* attribute) {
  if (attribute->GetChildren()) return attribute->GetChildren();
  Vector_tmpl<Attr_cl*>* children = new Vector_tmpl<Attr_cl*>(10, nullptr);
  SingleVar_sptr var(attribute->GetRv());
  ForEachAttribute([&](Attr_cl* other) {
    BnCpd_sptr cpd = other->GetCpd();
    if (!cpd.IsNull() && cpd->GetRVs()->IsMember(var) && !children->IsMember(other)) children->AddLast(other);
  });
  attribute->SetChildren(children);
  return children;
}

void Vorn_cl::ClearAttributeChildren() {
  ForEachAttribute([](Attr_cl* attribute) { attribute->SetChildren(nullptr); });
}

BnCpd_sptr Vorn_cl::CreateExpressionCpd(Name_sptr species, const Vector_tmpl<Attr_cl*>* parents, int replace,
                                        int detached) {
  Attr_cl* attribute = GetExpressionAttr(species);
  if (!attribute) {
    std::cerr << "Vorn_cl::CreateExpressionCpd Unknown microarray " << species << std::endl;
    abort();
  }
  if (detached) return BnCpd_sptr(new TreeCpd_cl(attribute->GetRv(), RvVector_sptr(new RvVector_cl())));
  if (replace) attribute->SetCpd(nullptr);
  if (attribute->GetCpd().IsNull()) {
    attribute->AddParents(parents);
    attribute->SetCpd(BnCpd_sptr(new TreeCpd_cl(attribute->GetRv(), attribute->CreateParentRvs())));
    ClearAttributeChildren();
  }
  return attribute->GetCpd();
}

void Vorn_cl::DeleteVarFromPrm(Attr_cl* attribute) {
  Name_sptr name = attribute->GetName();
  for (auto* rel : iRelations)
    if (rel->iValue->GetAttribute(name) == attribute) rel->iValue->RemoveAttribute(name);
  ForEachAttribute([&](Attr_cl* other) {
    if (other->GetParents().GetEntry(name) == attribute) other->RemoveParent(name);
  });
  ClearAttributeChildren();
}
