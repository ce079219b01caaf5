// The writer of the viewer file.
#include "export/tarsil_printer.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

#include "data/data_file.h"
#include "data/microarray.h"
#include "data/species_attributes.h"
#include "data/vorn_data.h"
#include "pipeline/missing.h"

namespace {
const char* TARSIL_FORMAT_TYPE_STR[TARSIL_FORMAT_TYPE_NUM] = {"Tarsil", "Cluster"};

void Cell(std::ostream& out, const char* text) {
  XmlPrinter_cl::WriteEscaped(out, text);
  out << '\t';
}

// The part of a variable's name after its last ".".
const char* ShortName(Name_sptr name) {
  const char* dot = std::strrchr(name.CStr(), '.');
  return dot ? dot + 1 : name.CStr();
}

// A discrete value as its name, a real one as "%f", a missing one as nothing.
std::string ValueText(double value, const Vector_tmpl<Name_sptr>* names) {
  if (value == kMissingReal) return "";
  if (names) {
    int index = static_cast<int>(value);
    return index >= 0 && index < names->GetSize() ? (*names)[index].CStr() : "";
  }
  char text[400];
  std::snprintf(text, sizeof text, "%f", value);
  return text;
}
}  // namespace

TarsilFormatType_cl BioTokens_cl::GetTarsilFormatType(Name_sptr name) {
  for (int i = 0; i < TARSIL_FORMAT_TYPE_NUM; i++)
    if (!name.IsNull() && name->IsEqual(TARSIL_FORMAT_TYPE_STR[i])) return static_cast<TarsilFormatType_cl>(i);
  std::cerr << "BioTokens_cl::GetTarsilFormatType Unrecognized Tarsil format type " << name << std::endl;
  abort();
}

Vector_tmpl<Name_sptr>* TarsilPrinter_cl::CreateValueNames(Domain_sptr domain) {
  if (domain.IsNull() || !domain->IsDiscrete()) return nullptr;
  Name_sptr text = domain->ToString("\t");
  Vector_tmpl<Name_sptr>* names = new Vector_tmpl<Name_sptr>(10, nullptr);
  std::string all = text.CStr();
  size_t start = 0;
  while (start <= all.size()) {
    size_t tab = all.find('\t', start);
    if (tab == std::string::npos) tab = all.size();
    names->AddLast(Name_sptr(all.substr(start, tab - start).c_str()));
    start = tab + 1;
  }
  return names;
}

void TarsilPrinter_cl::PrintRawData(XmlPrinter_cl& printer, Microarray_cl* microarray,
                                    const NameSet_tmpl<Name_sptr>* descriptions) {
  printer.StartNode("TSCRawData");
  std::ostream& out = printer.GetStream();
  out << "UID\tNAME\tGWEIGHT\t";
  for (int e = 0; e < microarray->GetNumExperiments(); e++) Cell(out, microarray->GetExperimentName(e).CStr());
  out << '\n';
  Matrix_sptr values = microarray->GetMatrix();
  for (int g = 0; g < microarray->GetNumGenes(); g++) {
    Name_sptr gene = microarray->GetGeneName(g);
    Name_sptr description = descriptions ? descriptions->GetEntry(gene) : Name_sptr();
    Cell(out, gene.CStr());
    Cell(out, description.IsNull() ? gene.CStr() : description.CStr());
    out << "1\t";
    const double* row = values->GetRow(g);
    for (int e = 0; e < microarray->GetNumExperiments(); e++) {
      if (row[e] != kMissingReal) out << row[e];
      out << '\t';
    }
    out << '\n';
  }
  printer.EndNode("TSCRawData");
}

void TarsilPrinter_cl::PrintAttributeList(XmlPrinter_cl& printer, SpeciesAttributes_cl* values, const char* id) {
  if (!values || values->GetNumAttributes() == 0) return;
  printer.StartNode("Attributes", "Id", id);
  for (int a = 0; a < values->GetNumAttributes(); a++) {
    Attr_cl* attribute = values->GetAttr(a);
    Domain_sptr domain = attribute->GetRv()->GetDomain();
    Name_sptr domainText = domain->IsDiscrete() ? domain->ToString(" ") : Name_sptr("Continuous");
    printer.EmptyNode("Attribute", "Name", ShortName(attribute->GetName()), "Id", std::to_string(a).c_str(), "Value",
                      domainText.CStr());
  }
  printer.EndNode("Attributes");
}

void TarsilPrinter_cl::PrintObjects(XmlPrinter_cl& printer, SpeciesAttributes_cl* values,
                                    const Vector_tmpl<Name_sptr>& names, int isGene, Name_sptr urlPrefix) {
  printer.StartNode("Objects", "Type", isGene ? "Genes" : "Experiments", "URLPrefix", urlPrefix.CStr());
  int numAttributes = values ? values->GetNumAttributes() : 0;
  Vector_tmpl<Vector_tmpl<Name_sptr>*> valueNames(numAttributes + 1, nullptr);
  Vector_tmpl<int> columns(numAttributes + 1, -1);
  for (int a = 0; a < numAttributes; a++) {
    valueNames.AddLast(CreateValueNames(values->GetAttr(a)->GetRv()->GetDomain()));
    columns.AddLast(values->GetColumn(values->GetAttr(a)->GetName()));
  }
  const char* tag = isGene ? "Gene" : "Experiment";
  for (int i = 0; i < names.GetSize(); i++) {
    std::string id = std::to_string(i);
    const char* name = names[i].CStr();
    if (numAttributes == 0) {
      if (isGene) printer.EmptyNode(tag, "Id", id.c_str(), "ORF", name, "Desc", name);
      else printer.EmptyNode(tag, "Id", id.c_str(), "name", name);
      continue;
    }
    if (isGene) printer.StartNode(tag, "Id", id.c_str(), "ORF", name, "Desc", name);
    else printer.StartNode(tag, "Id", id.c_str(), "name", name);
    std::string text;
    for (int a = 0; a < numAttributes; a++) {
      if (a) text += ';';
      text += ValueText(i < values->GetNumRows() ? values->GetValue(i, columns[a]) : kMissingReal, valueNames[a]);
    }
    printer.EmptyNode("Attributes", "AttributesGroupId", isGene ? "0" : "1", "Type", "Full", "Value", text.c_str());
    printer.EndNode(tag);
  }
  for (int a = 0; a < numAttributes; a++) delete valueNames[a];
  printer.EndNode("Objects");
}

void TarsilPrinter_cl::PrintAttributes(XmlPrinter_cl& printer, VornData_cl* data, Microarray_cl* microarray,
                                       Name_sptr urlPrefix) {
  SpeciesAttributes_cl* genes = data->GetAttributes(microarray->GetName(), GENE_ATTRIBUTES);
  SpeciesAttributes_cl* experiments = data->GetAttributes(microarray->GetName(), EXPERIMENT_ATTRIBUTES);
  printer.StartNode("TarsilAttributes");
  PrintAttributeList(printer, genes, "0");
  PrintAttributeList(printer, experiments, "1");
  printer.EndNode("TarsilAttributes");
  printer.StartNode("TarsilObjects");
  PrintObjects(printer, genes, microarray->GetGeneNames(), 1, urlPrefix);
  PrintObjects(printer, experiments, microarray->GetExperimentNames(), 0, Name_sptr());
  printer.EndNode("TarsilObjects");
}

void TarsilPrinter_cl::PrintEmptyTree(XmlPrinter_cl& printer) {
  printer.StartNode("TSCHierarchyClusterData", "NumClusters", "0");
  printer.LineBreak();
  printer.EmptyNode("Root", "ClusterNum", "0", "NumChildren", "0");
  printer.EndNode("TSCHierarchyClusterData");
}

void TarsilPrinter_cl::PrintAttributeSets(XmlPrinter_cl& printer, VornData_cl* data,
                                          const Vector_tmpl<Name_sptr>& groups) {
  if (groups.GetSize() == 0) return;
  printer.StartNode("TarsilAttributeSets");
  for (int i = 0; i < groups.GetSize(); i++) {
    VornAttributeGroup_cl* group = data->FindAttributeGroup(groups[i], "TarsilPrinter_cl::PrintAttributeSets");
    printer.StartNode("Attributes", "Type", group->GetType() == GENE_ATTRIBUTES ? "Genes" : "Experiments", "Name",
                      group->GetName().CStr());
    for (auto* entry : group->GetAttributes()) printer.EmptyNode("Attribute", "Name", entry->iKey.CStr());
    printer.EndNode("Attributes");
  }
  printer.EndNode("TarsilAttributeSets");
}

void TarsilPrinter_cl::PrintAnalyses(XmlPrinter_cl& printer, VornData_cl* data, Microarray_cl* microarray,
                                     const Vector_tmpl<Name_sptr>& groups) {
  for (int i = 0; i < groups.GetSize(); i++) {
    VornAttributeGroup_cl* group = data->FindAttributeGroup(groups[i], "TarsilPrinter_cl::PrintAnalyses");
    int isGene = group->GetType() == GENE_ATTRIBUTES;
    SpeciesAttributes_cl* values = data->GetAttributes(microarray->GetName(), group->GetType());
    const Vector_tmpl<Name_sptr>& objects = isGene ? microarray->GetGeneNames() : microarray->GetExperimentNames();
    printer.StartNode("TarsilAnalysis", "Type", "HeatMap", "Class", "TarsilPackage.Displays.HeatMapGroupDisplay");
    printer.StartNode("Data", "HeatMapType", "2");
    std::ostream& out = printer.GetStream();
    out << "Rows";
    Vector_tmpl<int> columns(10, -1);
    for (auto* entry : group->GetAttributes()) {
      out << '\t';
      XmlPrinter_cl::WriteEscaped(out, entry->iKey.CStr());
      columns.AddLast(values ? values->GetColumn(entry->iKey) : -1);
    }
    out << '\n';
    for (int o = 0; values && o < objects.GetSize() && o < values->GetNumRows(); o++) {
      int nonZero = 0;
      for (int c = 0; c < columns.GetSize(); c++) {
        double value = columns[c] >= 0 ? values->GetValue(o, columns[c]) : 0.0;
        nonZero |= value != 0.0 && value != kMissingReal;
      }
      if (!nonZero) continue;
      Cell(out, objects[o].CStr());
      for (int c = 0; c < columns.GetSize(); c++) {
        double value = columns[c] >= 0 ? values->GetValue(o, columns[c]) : kMissingReal;
        if (value != kMissingReal) out << value;
        out << '\t';
      }
      out << '\n';
    }
    printer.EndNode("Data");
    printer.EndNode("TarsilAnalysis");
  }
}

NameSet_tmpl<Name_sptr>* TarsilPrinter_cl::BuildGeneDescriptions(Name_sptr file) {
  if (file.IsNull()) return nullptr;
  DataFile_cl::StopUnlessReadable(file, "TarsilPrinter_cl::BuildGeneDescriptions");
  std::ifstream in(file.CStr());
  NameSet_tmpl<Name_sptr>* descriptions = new NameSet_tmpl<Name_sptr>(1000, nullptr);
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    size_t first = line.find('\t');
    if (first == std::string::npos) continue;
    size_t second = line.find('\t', first + 1);
    if (second == std::string::npos) continue;
    size_t third = line.find('\t', second + 1);
    std::string text = line.substr(first + 1, second - first - 1) + " - " +
                       line.substr(second + 1, third == std::string::npos ? std::string::npos : third - second - 1);
    descriptions->Insert(Name_sptr(line.substr(0, first).c_str()), Name_sptr(text.c_str()));
  }
  return descriptions;
}
