// The XML writer: exact layout, pairs with null parts, and escaping that survives a parse.
#include "pipeline/xml_printer.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include <sstream>
#include <string>

using namespace xercesc;

TEST(XmlPrinter, LayoutIndentsTwoBlanksPerLevel) {
  std::ostringstream out;
  XmlPrinter_cl printer(&out);
  printer.StartDoc();
  printer.StartNode("a", "k", "v");
  printer.EmptyNode("b");
  printer.StartNode("c", "x", "1", nullptr, "skipped", "y", nullptr, "z", "");
  printer.EmptyNode("d", "p", "1", "q", "2", "r", "3", "s", "4", "t", "5", "u", "6", "v", "7", "w", "8", "x", "9",
                    "y", "10");
  EXPECT_EQ(printer.GetDepth(), 2);
  printer.EndNode("c");
  printer.EndNode("a");
  printer.LineBreak();
  EXPECT_EQ(out.str(),
            "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n"
            "<a k=\"v\">\n"
            "  <b/>\n"
            "  <c x=\"1\" z=\"\">\n"
            "    <d p=\"1\" q=\"2\" r=\"3\" s=\"4\" t=\"5\" u=\"6\" v=\"7\" w=\"8\" x=\"9\" y=\"10\"/>\n"
            "  </c>\n"
            "</a>\n"
            "\n");
}

TEST(XmlPrinter, WithoutIndentAndAttrWithEmptyKey) {
  std::ostringstream out;
  XmlPrinter_cl printer(&out, 0);
  printer.StartNode("a");
  printer.EmptyNode("b");
  printer.Attr("k", "v");
  printer.Attr("", "raw text");
  printer.Attr("n", nullptr);
  printer.EndNode("a");
  EXPECT_EQ(out.str(), "<a>\n<b/>\n k=\"v\" raw text</a>\n");
}

TEST(XmlPrinter, EscapesOnlyWhatWouldBreakTheMarkup) {
  std::ostringstream plain;
  XmlPrinter_cl::WriteEscaped(plain, "it's a gene: ACGT/1 \t;x");
  EXPECT_EQ(plain.str(), "it's a gene: ACGT/1 \t;x");
  std::ostringstream marked;
  XmlPrinter_cl::WriteEscaped(marked, "a&b<c>\"d\"&");
  EXPECT_EQ(marked.str(), "a&amp;b&lt;c&gt;&quot;d&quot;&amp;");
}

TEST(XmlPrinter, ParserReadsBackTheOriginalValues) {
  const char* value = "<b> & \"q\" 'x' &amp;";
  std::ostringstream out;
  XmlPrinter_cl printer(&out);
  printer.StartDoc();
  printer.StartNode("root", "name", value);
  printer.EmptyNode("child", "k", "a>b");
  printer.EndNode("root");
  std::string xml = out.str();

  XMLPlatformUtils::Initialize();
  {
    XercesDOMParser parser;
    MemBufInputSource source(reinterpret_cast<const XMLByte*>(xml.data()), xml.size(), "printer-test");
    parser.parse(source);
    ASSERT_EQ(parser.getErrorCount(), 0u);
    DOMElement* root = parser.getDocument()->getDocumentElement();
    XMLCh* key = XMLString::transcode("name");
    char* read = XMLString::transcode(root->getAttribute(key));
    EXPECT_STREQ(read, value);
    XMLString::release(&read);
    XMLString::release(&key);
  }
  XMLPlatformUtils::Terminate();
}
