// One relation of the relational model: a named table of attributes of one kind of object.
#ifndef VORN_MODULE_REL_H
#define VORN_MODULE_REL_H

#include "data/vorn_attribute_group.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"

class Rel_cl {
 public:
  Rel_cl(Name_sptr name, AttributeGroupType_cl type) : iName(name), iType(type), iAttributes(32, nullptr, 0.5, 2.0) {}
  Rel_cl(const Rel_cl&) = delete;
  Rel_cl& operator=(const Rel_cl&) = delete;

  Name_sptr GetName() const { return iName; }
  AttributeGroupType_cl GetType() const { return iType; }
  // The relation points to attributes that their groups own.
  void AddAttribute(Attr_cl* attribute) { iAttributes.Insert(attribute->GetName(), attribute); }
  Attr_cl* RemoveAttribute(Name_sptr name) { return iAttributes.Remove(name); }
  Attr_cl* GetAttribute(Name_sptr name) const { return iAttributes.GetEntry(name); }
  const NameSet_tmpl<Attr_cl*>& GetAttributes() const { return iAttributes; }

 private:
  Name_sptr iName;
  AttributeGroupType_cl iType;
  NameSet_tmpl<Attr_cl*> iAttributes;
};

#endif
