// Parsing the pipeline file into a DOM document and walking it as a property tree.
#include "pipeline/xml_parser.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLString.hpp>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>

using namespace xercesc;

std::ostream& operator<<(std::ostream& out, const XMLCh* text) {
  if (!text) return out;
  char* plain = XMLString::transcode(text);
  out << plain;
  XMLString::release(&plain);
  return out;
}

namespace {
void Report(const char* kind, const SAXParseException& e) {
  std::cerr << kind << " at file \"" << e.getSystemId() << "\", line " << e.getLineNumber() << ", column "
            << e.getColumnNumber() << "\n   Message: " << e.getMessage() << std::endl;
}

// Length of a 16-bit string.
int Length16(const XMLCh* text) { return text ? static_cast<int>(XMLString::stringLen(text)) : 0; }

// Compares the low byte of each 16-bit unit against an 8-bit string, lengths first.
int EqualsLowBytes(const XMLCh* text, const char* value) {
  int n = Length16(text);
  if (static_cast<size_t>(n) != strlen(value)) return 0;
  for (int i = 0; i < n; i++)
    if (static_cast<char>(text[i] & 0xff) != value[i]) return 0;
  return 1;
}

// Copies one character per 16-bit unit, keeping the low byte.
void CopyLowBytes(const XMLCh* text, Property_cl* out) {
  int n = Length16(text);
  out->SetLength(n);
  char* dest = out->GetText();
  for (int i = 0; i < n; i++) dest[i] = static_cast<char>(text[i] & 0xff);
}
}  // namespace

void DOMTreeErrorReporter::error(const SAXParseException& e) {
  iSawErrors = true;
  Report("Error", e);
}

void DOMTreeErrorReporter::fatalError(const SAXParseException& e) {
  iSawErrors = true;
  Report("Fatal Error", e);
}

XmlParser_cl::XmlParser_cl() {
  try {
    XMLPlatformUtils::Initialize();
  } catch (const XMLException& e) {
    std::cerr << "Error during Xerces-c Initialization.\n  Exception message:" << e.getMessage() << std::endl;
    abort();
  }
}

XmlParser_cl::~XmlParser_cl() {
  delete iParser;
  delete iReporter;
  XMLPlatformUtils::Terminate();
}

DOMDocument* XmlParser_cl::Parse(const char* fileName, bool doValidate, bool) {
  {
    std::ifstream probe(fileName);
    if (!probe) {
      std::cerr << "xml file '" << fileName << "' does not exist" << std::endl;
      abort();
    }
  }
  XMLCh* path = XMLString::transcode(fileName);
  LocalFileInputSource source(path);
  XMLString::release(&path);
  return ParseSource(source, fileName, doValidate);
}

DOMDocument* XmlParser_cl::ParseBuffer(const char* bytes, size_t length, const char* name) {
  MemBufInputSource source(reinterpret_cast<const XMLByte*>(bytes), length, name);
  return ParseSource(source, name, false);
}

DOMDocument* XmlParser_cl::ParseSource(const InputSource& source, const char* name, bool doValidate) {
  delete iParser;
  delete iReporter;
  iParser = new XercesDOMParser;
  iReporter = new DOMTreeErrorReporter;
  iParser->setValidationScheme(doValidate ? XercesDOMParser::Val_Always : XercesDOMParser::Val_Never);
  iParser->setDoNamespaces(false);
  iParser->setDoSchema(false);
  // The pipeline file is the only input: no external DTD or entity is fetched, and entity
  // expansion is bounded so that a hostile file cannot exhaust memory.
  iParser->setLoadExternalDTD(false);
  iParser->setDisableDefaultEntityResolution(true);
  iParser->setCreateEntityReferenceNodes(false);
  static SecurityManager security;
  security.setEntityExpansionLimit(10000);
  iParser->setSecurityManager(&security);
  iParser->setErrorHandler(iReporter);
  try {
    iParser->parse(source);
  } catch (const XMLException& e) {
    std::cerr << "An error occured during parsing\n   Message: " << e.getMessage() << std::endl;
    abort();
  } catch (const DOMException& e) {
    std::cerr << "A DOM error occured during parsing\n   DOMException code: " << e.code << std::endl;
    abort();
  } catch (...) {
    std::cerr << "An error occured during parsing\n " << std::endl;
    abort();
  }
  if (iReporter->GetSawErrors() || !iParser->getDocument() || !iParser->getDocument()->getDocumentElement()) {
    std::cerr << "Errors in xml file: " << name << std::endl;
    abort();
  }
  return iParser->getDocument();
}

const XMLCh* XmlIter_cl::GetAttribute(const char* key) {
  if (!iNode || iNode->getNodeType() != DOMNode::ELEMENT_NODE) return nullptr;
  XMLCh* wide = XMLString::transcode(key);
  const XMLCh* value = static_cast<DOMElement*>(iNode)->getAttribute(wide);
  XMLString::release(&wide);
  return value;
}

void XmlIter_cl::GetName(Property_cl* out) {
  if (!iNode) {
    out->Reset();
    return;
  }
  CopyLowBytes(iNode->getNodeName(), out);
}

int XmlIter_cl::IsNameEqual(const char* name) { return iNode && EqualsLowBytes(iNode->getNodeName(), name); }

int XmlIter_cl::GetProperty(const char* key, Property_cl* out) {
  const XMLCh* value = GetAttribute(key);
  if (Length16(value) == 0) {
    out->Reset();
    return 0;
  }
  CopyLowBytes(value, out);
  return 1;
}

int XmlIter_cl::IsPropertyEqual(const char* key, const char* value) {
  const XMLCh* attr = GetAttribute(key);
  return attr && EqualsLowBytes(attr, value);
}

void XmlIter_cl::FirstChild() {
  if (!iNode) return;
  DOMNode* child = iNode->getFirstChild();
  while (child && child->getNodeType() != DOMNode::ELEMENT_NODE) child = child->getNextSibling();
  iNode = child;
}

void XmlIter_cl::NextSibling() {
  if (!iNode) return;
  DOMNode* next = iNode->getNextSibling();
  while (next && next->getNodeType() != DOMNode::ELEMENT_NODE) next = next->getNextSibling();
  iNode = next;
}
