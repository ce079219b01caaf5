// Parsing the pipeline file into a DOM document and walking it as a property tree.
#ifndef VORN_PIPELINE_XML_PARSER_H
#define VORN_PIPELINE_XML_PARSER_H

#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include <ostream>

#include "pipeline/prop_tree.h"

// Prints XML library text as plain characters.
std::ostream& operator<<(std::ostream& out, const XMLCh* text);

// Reports every parse error on the error stream and remembers that one was seen; warnings are dropped.
class DOMTreeErrorReporter : public xercesc::ErrorHandler {
 public:
  void warning(const xercesc::SAXParseException&) override {}
  void error(const xercesc::SAXParseException& e) override;
  void fatalError(const xercesc::SAXParseException& e) override;
  void resetErrors() override {}
  bool GetSawErrors() const { return iSawErrors; }

 private:
  bool iSawErrors = false;
};

// Owns the XML platform and the parsed document; iterators on it stay valid while it lives.
class XmlParser_cl {
 public:
  XmlParser_cl();
  ~XmlParser_cl();
  XmlParser_cl(const XmlParser_cl&) = delete;
  XmlParser_cl& operator=(const XmlParser_cl&) = delete;

  xercesc::DOMDocument* Parse(const char* fileName, bool doValidate, bool unused);
  // Parses a document held in memory; the name only labels messages.
  xercesc::DOMDocument* ParseBuffer(const char* bytes, size_t length, const char* name);

 private:
  xercesc::DOMDocument* ParseSource(const xercesc::InputSource& source, const char* name, bool doValidate);

  xercesc::XercesDOMParser* iParser = nullptr;
  DOMTreeErrorReporter* iReporter = nullptr;
};

// The cursor over one element of the document.
class XmlIter_cl : public PropertyTreeIter_cl {
 public:
  explicit XmlIter_cl(xercesc::DOMNode* node) : iNode(node) {}

  using PropertyTreeIter_cl::GetName;
  using PropertyTreeIter_cl::GetProperty;
  void GetName(Property_cl* out) override;
  int IsNameEqual(const char* name) override;
  int GetProperty(const char* key, Property_cl* out) override;
  int IsPropertyEqual(const char* key, const char* value) override;
  void FirstChild() override;
  void NextSibling() override;
  int NotNull() override { return iNode != nullptr; }
  PropertyTreeIter_cl* Clone() override { return new XmlIter_cl(iNode); }

 private:
  const XMLCh* GetAttribute(const char* key);

  xercesc::DOMNode* iNode;
};

#endif
