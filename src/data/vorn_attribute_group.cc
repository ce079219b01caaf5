// Attributes and attribute groups.
#include "data/vorn_attribute_group.h"

#include <cstdlib>
#include <iostream>
#include <string>

#include "data/data_file.h"
#include "data/microarray.h"
#include "pipeline/enum_converter.h"

const char* ATTRIBUTE_GROUP_TYPE_STR[ATTRIBUTE_GROUP_TYPE_NUM] = {"ExperimentAttributes",  "GeneAttributes",
                                                                  "MetaGeneAttributes",    "ExpressionAttributes",
                                                                  "LinkAttributes",        "ChromosomesAttributes"};

int VornAttributeGroup_cl::iAttrIdCounter = 1;

namespace {
const char kReader[] = "VornAttributeGroup_cl::Read";

// Every name of the pipeline file's groups is needed as a table key.
Name_sptr RequireName(PropertyTreeIter_cl* iter, const char* what) {
  Name_sptr name = iter->GetProperty("Name");
  if (name.IsNull()) {
    std::cerr << kReader << " " << what << " without a Name" << std::endl;
    abort();
  }
  return name;
}
}  // namespace

// ---------------------------------------------------------------- Attr_cl

Attr_cl::Attr_cl(Name_sptr name, int id, SingleRv_sptr rv)
    : iName(name), iId(new Id_cl(id)), iRv(rv), iParents(32, nullptr, 0.5, 2.0) {}

Attr_cl::~Attr_cl() {
  delete iId;
  delete iChildren;
}

void Attr_cl::AddParent(Attr_cl* parent) {
  if (!iParents.Exists(parent->GetName())) iParents.Insert(parent->GetName(), parent);
}

void Attr_cl::AddParents(const Vector_tmpl<Attr_cl*>* parents) {
  if (!parents) return;
  for (int i = 0; i < parents->GetSize(); i++) AddParent((*parents)[i]);
}

RvVector_sptr Attr_cl::CreateParentRvs() const {
  RvVector_sptr rvs(new RvVector_cl());
  for (auto* entry : iParents) rvs->AddLast(entry->iValue->GetRv());
  return rvs;
}

void Attr_cl::SetChildren(Vector_tmpl<Attr_cl*>* children) {
  if (children != iChildren) delete iChildren;
  iChildren = children;
}

void Attr_cl::WriteFile(std::ostream& out) const { out << "Attr[" << iName << "] id[" << GetId() << "]"; }

// ---------------------------------------------------------------- VornAttributeGroup_cl

VornAttributeGroup_cl::VornAttributeGroup_cl(Name_sptr name, AttributeGroupType_cl type, Domain_sptr domain)
    : iName(name), iType(type), iValueDomain(domain), iAttributes(32, nullptr), iPassedAttributes(32, nullptr) {}

VornAttributeGroup_cl::VornAttributeGroup_cl(PropertyTreeIter_cl* iter)
    : iAttributes(32, nullptr), iPassedAttributes(32, nullptr) {
  Read(iter);
}

VornAttributeGroup_cl::VornAttributeGroup_cl(Name_sptr name, VornAttributeGroup_cl* first,
                                             VornAttributeGroup_cl* second)
    : iName(name),
      iType(first->GetType()),
      iValueDomain(first->GetValueDomain()),
      iAttributes(32, nullptr),
      iPassedAttributes(32, nullptr) {
  for (auto* a : first->GetAttributes())
    for (auto* b : second->GetAttributes()) {
      if (a->iKey == b->iKey) continue;
      std::string combined = std::string(a->iKey->GetText()) + "_" + b->iKey->GetText();
      AddAttribute(Name_sptr(combined.c_str()), iValueDomain);
    }
}

VornAttributeGroup_cl::~VornAttributeGroup_cl() {
  for (auto* entry : iAttributes)
    if (!iPassedAttributes.Exists(entry->iKey) || iPassedAttributes.GetEntry(entry->iKey) != entry->iValue)
      delete entry->iValue;
}

void VornAttributeGroup_cl::Read(PropertyTreeIter_cl* iter) {
  iName = RequireName(iter, "An attribute group");
  iType = EnumConverter_tmpl<AttributeGroupType_cl, ATTRIBUTE_GROUP_TYPE_NUM>::FromString(
      ATTRIBUTE_GROUP_TYPE_STR, iter->GetProperty("Type"), "ExperimentAttributes");
  iValueDomain = CreateValueDomain(iter->GetProperty("ValueDomain", Name_sptr("Continuous")));
  NameSet_tmpl<Domain_sptr> gathered(32, Domain_sptr());
  Name_sptr namesFile = iter->GetProperty("AttributesNameFile");
  if (!namesFile.IsNull()) {
    DataFile_cl::StopUnlessReadable(namesFile, kReader);
    NameSet_tmpl<int>* names = DataFile_cl::LoadList(namesFile, 0);
    for (auto* entry : *names)
      if (entry->iKey->GetLength() > 0) gathered.Insert(entry->iKey, iValueDomain);
    delete names;
  }
  PropertyTreeIter_cl* child = iter->Clone();
  for (child->FirstChild(); child->NotNull(); child->NextSibling()) {
    Name_sptr name = RequireName(child, "An attribute");
    Name_sptr domain = child->GetProperty("ValueDomain");
    gathered.Insert(name, domain.IsNull() ? iValueDomain : CreateValueDomain(domain));
  }
  delete child;
  AddAttributes(gathered);
}

Attr_cl* VornAttributeGroup_cl::AddAttribute(Name_sptr name, Domain_sptr domain) {
  Attr_cl* attribute = new Attr_cl(name, iAttrIdCounter++, SingleRv_sptr(new SingleRv_cl(name, domain)));
  AddAttribute(attribute);
  return attribute;
}

void VornAttributeGroup_cl::AddAttributes(const NameSet_tmpl<Domain_sptr>& attributes) {
  for (auto* entry : attributes) AddAttribute(entry->iKey, entry->iValue);
}

void VornAttributeGroup_cl::DeleteAttribute(Name_sptr name) {
  Attr_cl* attribute = iAttributes.Remove(name);
  if (!attribute) return;
  if (iPassedAttributes.GetEntry(name) == attribute) iPassedAttributes.Remove(name);
  else delete attribute;
}

void VornAttributeGroup_cl::PassOwnership(Name_sptr name) {
  Attr_cl* attribute = iAttributes.GetEntry(name);
  if (attribute && iPassedAttributes.GetEntry(name) != attribute) iPassedAttributes.Insert(name, attribute);
}

Vector_tmpl<Name_sptr>* VornAttributeGroup_cl::CreateAttributeNameVec() const {
  Vector_tmpl<Name_sptr>* names = new Vector_tmpl<Name_sptr>(iAttributes.GetSize() + 1, nullptr);
  for (auto* entry : iAttributes) names->AddLast(entry->iKey);
  return names;
}
