// Feeds arbitrary bytes to the two domain readers: the delimited text form and the XML element.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "abort_road.h"
#include "pipeline/prop_tree_printer.h"
#include "pipeline/xml_parser.h"
#include "prob/domain.h"

namespace {

std::string TextOf(const Domain_sptr& domain) {
  Name_sptr text = domain->ToString(",");
  return text.CStr() ? text.CStr() : "";
}

// The text form: what is written with a delimiter reads back to the same text.
void CheckText(const std::string& input) {
  std::string cut = input;
  Domain_sptr domain = DomainFactory_cl::CreateDomain(cut.data(), ",; \t", "Continuous");
  std::string written = TextOf(domain);
  std::string again = written;
  Domain_sptr reread = DomainFactory_cl::CreateDomain(again.data(), ",", "Continuous");
  // A single name that equals the real word reads back as the real domain; that is the format's own rule.
  if (reread->GetType() == domain->GetType() && TextOf(reread) != written) __builtin_trap();
  if (!domain->IsDiscrete()) return;
  for (int i = 0; i < domain->GetDomainSize(); i++) {
    Name_sptr name = Conv2NameDomain(domain)->IndexToName(i);
    if (domain->ParseDiscreteValue(name->GetText()) > i) __builtin_trap();
  }
}

std::string Print(const Domain_sptr& domain) {
  std::ostringstream out;
  PropertyTreePrinter_cl printer(&out);
  domain->Print(&printer);
  return out.str();
}

Domain_sptr ReadXml(XmlParser_cl* parser, const std::string& xml) {
  xercesc::DOMDocument* document = parser->ParseBuffer(xml.data(), xml.size(), "domain.xml");
  XmlIter_cl iter(document->getDocumentElement());
  return DomainFactory_cl::CreateDomain(&iter);
}

// The XML element: once printed and read back, a domain prints the same after every further read.
// The first cycle may still change a value: the printer leaves tabs and line ends in attribute
// values as they are, and the parser reads them back as blanks.
void CheckXml(XmlParser_cl* parser, const std::string& input) {
  std::string first = Print(ReadXml(parser, input));
  std::string second = Print(ReadXml(parser, first));
  std::string third = Print(ReadXml(parser, second));
  if (third != second) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static XmlParser_cl* parser = new XmlParser_cl;
  if (size == 0) return 0;
  // The first byte chooses the reader; the text form stops at the first NUL, as a C string does.
  std::string input(reinterpret_cast<const char*>(data) + 1, size - 1);
  VORN_FUZZ_GUARDED({
    if (data[0] & 1) CheckXml(parser, input);
    else CheckText(input.c_str());
  });
  return 0;
}
