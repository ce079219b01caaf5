// The Tarsil step.
#include "export/vorn_step_tarsil.h"

#include <fstream>
#include <iostream>
#include <vector>

#include "data/data_file.h"
#include "data/vorn_data.h"
#include "export/tarsil_tree.h"
#include "module/vorn.h"
#include "module/vorn_cluster.h"
#include "pipeline/not_built.h"
#include "pipeline/vorn_run.h"
#include "pipeline/xml_parser.h"
#include "pipeline/output_file.h"

namespace {
const char kCaller[] = "VornTarsilStruct_cl::Run";
}  // namespace

VornTarsilStruct_cl::VornTarsilStruct_cl(PropertyTreeIter_cl* iter) : iAttributeSets(10, nullptr), iAnalyses(10, nullptr) {
  iName = iter->GetProperty("Name");
  iOutputFile = iter->GetProperty("OutputFile");
  iFile = iter->GetProperty("File");
  iGeneNamesFile = iter->GetProperty("GeneNamesFile");
  iURLPrefix = iter->GetProperty("URLPrefix");
  iter->GetBooleanProperty("UseMetaGeneNames", &iUseMetaGeneNames, 0);
  PropertyTreeIter_cl* child = iter->Clone();
  for (child->FirstChild(); child->NotNull(); child->NextSibling()) {
    Name_sptr group = child->GetProperty("AttributeGroup");
    if (group.IsNull()) continue;
    if (child->IsNameEqual("Attributes")) iAttributeSets.AddLast(group);
    else if (child->IsNameEqual("Analysis")) iAnalyses.AddLast(group);
  }
  delete child;
}

void VornTarsilStruct_cl::Run(VornRun_cl* run, TarsilFormatType_cl format) {
  if (iOutputFile.IsNull()) {
    if (iFile.IsNull()) {
      std::cerr << "VornTarsilStruct_cl no input or output file given to Tarsil step" << std::endl;
      abort();
    }
    Read(run);
    return;
  }
  if (format == TARSIL_FORMAT_CLUSTER) {
    VornCluster_cl* cluster = run->GetVornCluster(iName);
    if (!cluster) {
      std::cerr << kCaller << " Unknown module cluster " << iName << std::endl;
      abort();
    }
    std::ofstream out;
    OpenOutputFile(out, run->Resolve(iOutputFile), kCaller);
    cluster->WriteFile(out);
    return;
  }
  Write(run);
}

void VornTarsilStruct_cl::Read(VornRun_cl* run) {
  Name_sptr file = run->Resolve(iFile);
  DataFile_cl::StopUnlessReadable(file, kCaller);
  std::ifstream in(file.CStr(), std::ios::binary);
  std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  XmlParser_cl parser;
  xercesc::DOMDocument* document = parser.ParseBuffer(bytes.data(), bytes.size(), file.CStr());
  if (!document || !document->getDocumentElement()) {
    std::cerr << kCaller << " No viewer data in file " << file << std::endl;
    abort();
  }
  TarsilTree_cl tree(document->getDocumentElement());
  tree.Copy(run->GetData(), iName);
}

void VornTarsilStruct_cl::Write(VornRun_cl* run) {
  if (iUseMetaGeneNames) StopNotBuilt("Tarsil with UseMetaGeneNames is not built yet");
  VornData_cl* data = run->GetData();
  Microarray_cl* microarray = data->FindMicroarray(iName, kCaller);
  NameSet_tmpl<Name_sptr>* descriptions = TarsilPrinter_cl::BuildGeneDescriptions(iGeneNamesFile);
  std::ofstream out;
  OpenOutputFile(out, run->Resolve(iOutputFile), kCaller);
  XmlPrinter_cl printer(&out);
  printer.StartDoc();
  printer.StartNode("Tarsil");
  std::cerr << "Print Microarray name=" << iName << std::endl;
  TarsilPrinter_cl::PrintRawData(printer, microarray, descriptions);
  delete descriptions;
  std::cerr << "Print Attributes" << std::endl;
  TarsilPrinter_cl::PrintAttributes(printer, data, microarray, iURLPrefix);
  std::cerr << "Print Tree" << std::endl;
  // A learned expression tree would be written here; without a model there is none.
  Attr_cl* expression = run->CreateVorn()->GetExpressionAttr(iName);
  if (expression && !expression->GetCpd().IsNull())
    StopNotBuilt("Tarsil export of a learned regulation tree is not built yet");
  TarsilPrinter_cl::PrintEmptyTree(printer);
  TarsilPrinter_cl::PrintAttributeSets(printer, data, iAttributeSets);
  TarsilPrinter_cl::PrintAnalyses(printer, data, microarray, iAnalyses);
  printer.EndNode("Tarsil");
}

VornStepTarsil_cl::VornStepTarsil_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : VornStep_cl(iter, run), iStructs(10, nullptr) {
  iFormat = BioTokens_cl::GetTarsilFormatType(iter->GetProperty("FormatType", Name_sptr("Tarsil")));
  Save(iter);
}

VornStepTarsil_cl::~VornStepTarsil_cl() { iStructs.DeleteAll(); }

void VornStepTarsil_cl::Load(PropertyTreeIter_cl* iter) {
  PropertyTreeIter_cl* child = iter->Clone();
  for (child->FirstChild(); child->NotNull(); child->NextSibling()) iStructs.AddLast(new VornTarsilStruct_cl(child));
  delete child;
}

void VornStepTarsil_cl::Run() {
  PrintRunHeader("VornStepTarsil_cl");
  VornStep_cl::Load();
  for (int i = 0; i < iStructs.GetSize(); i++) iStructs[i]->Run(iRun, iFormat);
}
