// Attributes (named random variables of genes, experiments and cells) and the named groups that hold them.
#ifndef VORN_DATA_VORN_ATTRIBUTE_GROUP_H
#define VORN_DATA_VORN_ATTRIBUTE_GROUP_H

#include <ostream>

#include "pipeline/hash_set.h"
#include "pipeline/id.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "prob/bn_cpd.h"
#include "prob/domain.h"
#include "prob/single_var.h"
#include "prob/vars.h"

// The kinds of object an attribute group describes; 6 (the count) stands for "none".
enum AttributeGroupType_cl : int {
  EXPERIMENT_ATTRIBUTES = 0,
  GENE_ATTRIBUTES = 1,
  META_GENE_ATTRIBUTES = 2,
  EXPRESSION_ATTRIBUTES = 3,
  LINK_ATTRIBUTES = 4,
  CHROMOSOMES_ATTRIBUTES = 5,
  ATTRIBUTE_GROUP_TYPE_NUM = 6
};
extern const char* ATTRIBUTE_GROUP_TYPE_STR[ATTRIBUTE_GROUP_TYPE_NUM];

class Attr_cl {
 public:
  Attr_cl(Name_sptr name, int id, SingleRv_sptr rv);
  ~Attr_cl();
  Attr_cl(const Attr_cl&) = delete;
  Attr_cl& operator=(const Attr_cl&) = delete;

  Name_sptr GetName() const { return iName; }
  int GetId() const { return iId->GetId(); }
  SingleRv_sptr GetRv() const { return iRv; }
  void SetRv(SingleRv_sptr rv) { iRv = rv; }
  BnCpd_sptr GetCpd() const { return iCpd; }
  void SetCpd(BnCpd_sptr cpd) { iCpd = cpd; }

  NameSet_tmpl<Attr_cl*>& GetParents() { return iParents; }
  // A parent already entered under its name is not entered twice.
  void AddParent(Attr_cl* parent);
  void AddParents(const Vector_tmpl<Attr_cl*>* parents);
  void RemoveParent(Name_sptr name) { iParents.Remove(name); }
  // The parents' variables in the visiting order of the parent set.
  RvVector_sptr CreateParentRvs() const;

  // The cached children of the model; the attribute owns the vector.
  Vector_tmpl<Attr_cl*>* GetChildren() const { return iChildren; }
  void SetChildren(Vector_tmpl<Attr_cl*>* children);

  // "Attr[<name>] id[<id>]".
  void WriteFile(std::ostream& out) const;

 private:
  Name_sptr iName;
  Id_cl* iId;
  SingleRv_sptr iRv;
  BnCpd_sptr iCpd;
  NameSet_tmpl<Attr_cl*> iParents;
  Vector_tmpl<Attr_cl*>* iChildren = nullptr;
};

// The group owns its attributes, except those passed on to another owner by PassOwnership.
// Tables follow the containers' rules: a second attribute of a name shadows the first in look-ups
// and both are owned.
class VornAttributeGroup_cl {
 public:
  VornAttributeGroup_cl(Name_sptr name, AttributeGroupType_cl type, Domain_sptr domain);
  // From an element of AttributeGroupSet.
  explicit VornAttributeGroup_cl(PropertyTreeIter_cl* iter);
  // Every combination "<a>_<b>" of an attribute a of first and b of second with different names,
  // on the domain of first.
  VornAttributeGroup_cl(Name_sptr name, VornAttributeGroup_cl* first, VornAttributeGroup_cl* second);
  ~VornAttributeGroup_cl();
  VornAttributeGroup_cl(const VornAttributeGroup_cl&) = delete;
  VornAttributeGroup_cl& operator=(const VornAttributeGroup_cl&) = delete;

  // Keys Name, Type, ValueDomain, AttributesNameFile and children with Name and ValueDomain.
  void Read(PropertyTreeIter_cl* iter);

  // A new attribute with the next id and a new variable of that name and domain.
  Attr_cl* AddAttribute(Name_sptr name, Domain_sptr domain);
  void AddAttribute(Attr_cl* attribute) { iAttributes.Insert(attribute->GetName(), attribute); }
  // Adds every entry of a table of names and domains, in its visiting order.
  void AddAttributes(const NameSet_tmpl<Domain_sptr>& attributes);
  void DeleteAttribute(Name_sptr name);
  // The attribute stays in the group, which no longer deletes it.
  void PassOwnership(Name_sptr name);

  Name_sptr GetName() const { return iName; }
  AttributeGroupType_cl GetType() const { return iType; }
  Domain_sptr GetValueDomain() const { return iValueDomain; }
  Attr_cl* GetAttribute(Name_sptr name) const { return iAttributes.GetEntry(name); }
  int HasAttribute(Name_sptr name) const { return iAttributes.Exists(name); }
  int GetNumAttributes() const { return iAttributes.GetSize(); }
  const NameSet_tmpl<Attr_cl*>& GetAttributes() const { return iAttributes; }
  // A new vector of the names in visiting order.
  Vector_tmpl<Name_sptr>* CreateAttributeNameVec() const;

  // Numbers every attribute of every group, from 1.
  static int iAttrIdCounter;

 private:
  Name_sptr iName;
  AttributeGroupType_cl iType = EXPERIMENT_ATTRIBUTES;
  Domain_sptr iValueDomain;
  NameSet_tmpl<Attr_cl*> iAttributes;
  NameSet_tmpl<Attr_cl*> iPassedAttributes;
};

#endif
