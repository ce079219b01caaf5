// The reader of the viewer file.
#include "export/tarsil_tree.h"

#include <cstdlib>
#include <iostream>
#include <sstream>

#include "data/microarray.h"
#include "data/species_attributes.h"
#include "data/vorn_data.h"
#include "export/tarsil_printer.h"
#include "pipeline/missing.h"
#include "pipeline/not_built.h"
#include "pipeline/xml_parser.h"

namespace {
std::vector<std::string> Split(const std::string& text, char delimiter) {
  std::vector<std::string> parts;
  size_t start = 0;
  while (true) {
    size_t end = text.find(delimiter, start);
    parts.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
    if (end == std::string::npos) return parts;
    start = end + 1;
  }
}

std::string Property(PropertyTreeIter_cl* iter, const char* key) {
  Name_sptr value = iter->GetProperty(key);
  return value.IsNull() ? std::string() : std::string(value.CStr());
}

// A number, or the missing real for an empty or unreadable text.
double ParseReal(const std::string& text) {
  if (text.empty()) return kMissingReal;
  char* end;
  double value = std::strtod(text.c_str(), &end);
  return end == text.c_str() ? kMissingReal : value;
}

// The file's value text cut at tabs and blanks, joined by ";" for the domain reader.
Domain_sptr DomainOf(Name_sptr text) {
  std::string joined, word;
  std::istringstream in(text.IsNull() ? "" : text.CStr());
  while (in >> word) {
    if (!joined.empty()) joined += ';';
    joined += word;
  }
  if (joined.empty() || joined == "Continuous") return CreateValueDomain(Name_sptr("Continuous"));
  return CreateValueDomain(Name_sptr(joined.c_str()));
}
}  // namespace

TarsilTree_cl::TarsilTree_cl(xercesc::DOMElement* root) {
  XmlIter_cl iter(root);
  iter.FirstChild();
  for (; iter.NotNull(); iter.NextSibling()) {
    if (iter.IsNameEqual("TarsilAttributes")) ReadAttributes(&iter);
    else if (iter.IsNameEqual("TSCHierarchyClusterData")) iter.GetIntProperty("NumClusters", &iNumClusters, 0);
    else if (iter.IsNameEqual("TarsilObjects")) ReadObjects(&iter);
  }
  XMLCh* tag = xercesc::XMLString::transcode("TSCRawData");
  xercesc::DOMNodeList* raw = root->getElementsByTagName(tag);
  if (raw->getLength() > 0) {
    char* text = xercesc::XMLString::transcode(raw->item(0)->getTextContent());
    ReadRawData(text);
    xercesc::XMLString::release(&text);
  }
  xercesc::XMLString::release(&tag);
}

void TarsilTree_cl::ReadAttributes(PropertyTreeIter_cl* iter) {
  PropertyTreeIter_cl* set = iter->Clone();
  for (set->FirstChild(); set->NotNull(); set->NextSibling()) {
    int id;
    set->GetIntProperty("Id", &id, 0);
    std::vector<TarsilAttribute_cl>& attributes = iAttributeSets[id];
    PropertyTreeIter_cl* child = set->Clone();
    for (child->FirstChild(); child->NotNull(); child->NextSibling()) {
      TarsilAttribute_cl attribute;
      attribute.iName = child->GetProperty("Name", Name_sptr(""));
      child->GetIntProperty("Id", &attribute.iId, static_cast<int>(attributes.size()));
      attribute.iValue = child->GetProperty("Value");
      attributes.push_back(attribute);
    }
    delete child;
  }
  delete set;
}

void TarsilTree_cl::ReadObjects(PropertyTreeIter_cl* iter) {
  PropertyTreeIter_cl* set = iter->Clone();
  for (set->FirstChild(); set->NotNull(); set->NextSibling()) {
    std::string type = Property(set, "Type");
    if (type != "Genes" && type != "Experiments") {
      std::cout << "Unrecognized Object Type=" << type << std::endl;
      abort();
    }
    std::vector<TarsilObject_cl>& objects = type == "Genes" ? iGenes : iExperiments;
    PropertyTreeIter_cl* child = set->Clone();
    for (child->FirstChild(); child->NotNull(); child->NextSibling()) {
      TarsilObject_cl object;
      object.iName = child->GetProperty(type == "Genes" ? "ORF" : "name", Name_sptr(""));
      ReadObjectAttributes(child, object);
      objects.push_back(object);
    }
    delete child;
  }
  delete set;
}

void TarsilTree_cl::ReadObjectAttributes(PropertyTreeIter_cl* iter, TarsilObject_cl& object) {
  PropertyTreeIter_cl* child = iter->Clone();
  for (child->FirstChild(); child->NotNull(); child->NextSibling()) {
    child->GetIntProperty("AttributesGroupId", &object.iAttributesId, -1);
    auto set = iAttributeSets.find(object.iAttributesId);
    if (set == iAttributeSets.end()) {
      std::cerr << "Did not find attributes with id " << object.iAttributesId << " in attribute list for object"
                << std::endl;
      abort();
    }
    size_t size = set->second.size();
    std::string representation = Property(child, "Type");
    std::vector<std::string> values = Split(Property(child, "Value"), ';');
    if (representation == "Full") {
      values.resize(size);
    } else if (representation == "Sparse") {
      // The positions of the attributes that are set; the others are 0.
      std::vector<int> set(size, 0);
      for (const std::string& position : values) {
        int p = std::atoi(position.c_str());
        if (!position.empty() && p >= 0 && static_cast<size_t>(p) < size) set[p] = 1;
      }
      values.assign(size, std::string());
      for (size_t i = 0; i < size; i++) values[i].push_back(set[i] ? '1' : '0');
      object.iSparse = 1;
    } else {
      std::cout << "Unrecognized Attribute Representation=" << representation << std::endl;
      abort();
    }
    object.iValues = values;
  }
  delete child;
}

void TarsilTree_cl::ReadRawData(const std::string& text) {
  int header = 1;
  for (std::string line : Split(text, '\n')) {
    if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::vector<std::string> fields = Split(line, '\t');
    // Every field is followed by a tab, which leaves an empty last field.
    if (fields.size() > 1 && fields.back().empty()) fields.pop_back();
    if (header) {
      header = 0;
      iRawExperiments.assign(fields.size() > 3 ? fields.begin() + 3 : fields.end(), fields.end());
      continue;
    }
    iRawGenes.push_back(fields[0]);
    std::vector<std::string> row(iRawExperiments.size());
    for (size_t e = 0; e < row.size() && e + 3 < fields.size(); e++) row[e] = fields[e + 3];
    iRawValues.push_back(row);
  }
}

void TarsilTree_cl::Copy(VornData_cl* data, Name_sptr name) const {
  if (iNumClusters > 0) StopNotBuilt("Tarsil reading a regulation tree from a viewer file is not built yet");
  Vector_tmpl<Name_sptr> genes(iRawGenes.size() + 1, nullptr), experiments(iRawExperiments.size() + 1, nullptr);
  for (const std::string& gene : iRawGenes) genes.AddLast(Name_sptr(gene.c_str()));
  for (const std::string& experiment : iRawExperiments) experiments.AddLast(Name_sptr(experiment.c_str()));
  Microarray_cl* microarray = new Microarray_cl(name, genes, experiments, kMissingReal);
  Matrix_sptr values = microarray->GetMatrix();
  for (size_t g = 0; g < iRawValues.size(); g++)
    for (size_t e = 0; e < iRawValues[g].size(); e++) values->GetRow(g)[e] = ParseReal(iRawValues[g][e]);
  data->AddMicroarray(microarray);
  CreateAttributes(data, name, 1);
  CreateAttributes(data, name, 0);
}

void TarsilTree_cl::CreateAttributes(VornData_cl* data, Name_sptr name, int isGene) const {
  const std::vector<TarsilObject_cl>& objects = isGene ? iGenes : iExperiments;
  if (objects.empty()) return;
  auto set = iAttributeSets.find(objects[0].iAttributesId);
  if (set == iAttributeSets.end() || set->second.empty()) return;
  AttributeGroupType_cl type = isGene ? GENE_ATTRIBUTES : EXPERIMENT_ATTRIBUTES;
  Name_sptr groupName(name.CStr());
  groupName->Concat(isGene ? "_genes" : "_experiments");
  VornAttributeGroup_cl* group =
      new VornAttributeGroup_cl(groupName, type, CreateValueDomain(Name_sptr("Continuous")));
  const std::vector<TarsilAttribute_cl>& attributes = set->second;
  Vector_tmpl<Name_sptr> names(attributes.size() + 1, nullptr);
  Vector_tmpl<Vector_tmpl<Name_sptr>*> valueNames(attributes.size() + 1, nullptr);
  for (const TarsilAttribute_cl& attribute : attributes) {
    Attr_cl* added = group->AddAttribute(attribute.iName, DomainOf(attribute.iValue));
    names.AddLast(attribute.iName);
    valueNames.AddLast(TarsilPrinter_cl::CreateValueNames(added->GetRv()->GetDomain()));
  }
  Microarray_cl* microarray = data->GetMicroarray(name);
  NameSet_tmpl<int>* rows = isGene ? microarray->GetGenesHash() : microarray->GetExperimentsHash();
  int numRows = isGene ? microarray->GetNumGenes() : microarray->GetNumExperiments();
  Matrix_sptr values = Matrix_cl::AllocateCorrectType(numRows, names.GetSize());
  for (int r = 0; r < numRows; r++)
    for (int a = 0; a < names.GetSize(); a++) values->GetRow(r)[a] = kMissingReal;
  for (const TarsilObject_cl& object : objects) {
    int row = rows->GetEntry(object.iName);
    if (row < 0 || object.iAttributesId != set->first) continue;
    for (int a = 0; a < names.GetSize(); a++) {
      const std::string& text = object.iValues[a];
      if (!valueNames[a] || object.iSparse) {
        values->GetRow(row)[a] = ParseReal(text);
        continue;
      }
      for (int v = 0; v < valueNames[a]->GetSize(); v++)
        if (!text.empty() && (*valueNames[a])[v]->IsEqual(text.c_str())) values->GetRow(row)[a] = v;
    }
  }
  for (int a = 0; a < valueNames.GetSize(); a++) delete valueNames[a];
  data->AddAttributeGroup(group);
  SpeciesAttributes_cl* attributeValues = new SpeciesAttributes_cl;
  attributeValues->Load(values, names, group);
  data->AddAttributeGroup(name, attributeValues, type);
}
