// The property tree: value syntax of the typed getters, empty attributes, tokens and the DOM walk.
#include "pipeline/prop_tree.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "pipeline/enum_converter.h"
#include "pipeline/xml_parser.h"

namespace {
// Parses a document held in a string and stands an iterator on its root element.
class Tree {
 public:
  explicit Tree(const std::string& xml)
      : iDocument(iParser.ParseBuffer(xml.data(), xml.size(), "test.xml")), iRoot(iDocument->getDocumentElement()) {}
  XmlIter_cl& Root() { return iRoot; }

 private:
  XmlParser_cl iParser;
  xercesc::DOMDocument* iDocument;
  XmlIter_cl iRoot;
};
}  // namespace

TEST(PropertyTree, TypedGettersReadLeadingNumbersAndDefaults) {
  Tree tree(R"(<Step I="12abc" D=" 2.5e1x" B="TRUE" F="False" E="" N="-3"/>)");
  XmlIter_cl& it = tree.Root();
  int i = -1;
  EXPECT_EQ(it.GetIntProperty("I", &i), 1);
  EXPECT_EQ(i, 12);
  double d = 0;
  EXPECT_EQ(it.GetDoubleProperty("D", &d), 1);
  EXPECT_DOUBLE_EQ(d, 25.0);
  int b = -1;
  it.GetBooleanProperty("B", &b);
  EXPECT_EQ(b, 1);
  it.GetBooleanProperty("F", &b);
  EXPECT_EQ(b, 0);
  // An empty attribute counts as absent: the default applies, and without one the output is left.
  i = 77;
  EXPECT_EQ(it.GetIntProperty("E", &i), 0);
  EXPECT_EQ(i, 77);
  EXPECT_EQ(it.GetIntProperty("E", &i, 5), 0);
  EXPECT_EQ(i, 5);
  EXPECT_TRUE(it.GetProperty("E").IsNull());
  EXPECT_TRUE(it.GetProperty("Missing").IsNull());
  EXPECT_STREQ(it.GetProperty("Missing", Name_sptr("dflt"))->GetText(), "dflt");
  EXPECT_STREQ(it.GetProperty("N")->GetText(), "-3");
  EXPECT_STREQ(it.GetName()->GetText(), "Step");
  EXPECT_TRUE(it.IsNameEqual("Step"));
  EXPECT_FALSE(it.IsNameEqual("step"));
  EXPECT_TRUE(it.IsPropertyEqual("N", "-3"));
  EXPECT_FALSE(it.IsPropertyEqual("N", "-"));
}

TEST(PropertyTreeDeathTest, UnreadableValuesStopWithTheirMessages) {
  Tree tree(R"(<Step I="abc" D="x1" B="1"/>)");
  int i;
  double d;
  EXPECT_DEATH(tree.Root().GetIntProperty("I", &i), "^Property_cl::GetIntValue\\(\\) unrecognized int value: abc\n");
  EXPECT_DEATH(tree.Root().GetDoubleProperty("D", &d),
               "^Property_cl::GetDoubleValue\\(\\) unrecognized double value: x1\n");
  EXPECT_DEATH(tree.Root().GetBooleanProperty("B", &i),
               "^Property_cl::GetBooleanValue\\(\\) unrecognized boolean value: 1\n");
}

TEST(PropertyTree, WalkSkipsNonElementsAndClonesStandAlone) {
  Tree tree("<R>text<!-- c --><A k='1'/>more<B/><?pi x?><C><D/></C></R>");
  XmlIter_cl& it = tree.Root();
  PropertyTreeIter_cl* keep = it.Clone();
  it.FirstChild();
  std::string seen;
  for (; it.NotNull(); it.NextSibling()) seen += it.GetName()->GetText();
  EXPECT_EQ(seen, "ABC");
  it.NextSibling();  // past the end stays there
  EXPECT_FALSE(it.NotNull());
  it.FirstChild();
  EXPECT_FALSE(it.NotNull());
  EXPECT_TRUE(keep->IsNameEqual("R"));
  keep->FirstChild();
  EXPECT_TRUE(keep->IsNameEqual("A"));
  delete keep;
}

TEST(PropertyTree, NonAsciiKeepsTheLowByteOfEachUnit) {
  Tree tree("<?xml version='1.0' encoding='utf-8'?><R v='a\xc3\xa9z\xe2\x82\xac'/>");
  Name_sptr v = tree.Root().GetProperty("v");
  ASSERT_EQ(v->GetLength(), 4);
  EXPECT_EQ(static_cast<unsigned char>(v->GetText()[1]), 0xe9);
  EXPECT_EQ(static_cast<unsigned char>(v->GetText()[3]), 0xac);  // U+20AC keeps 0xAC
}

TEST(Property, TokensSplitInPlace) {
  Property_cl p;
  const char* text = "a,,bc";
  p.SetLength(5);
  memcpy(p.GetText(), text, 5);
  p.NextToken(',');
  EXPECT_STREQ(p.GetToken(), "a");
  p.NextToken(',');
  EXPECT_STREQ(p.GetToken(), "");
  p.NextToken(',');
  EXPECT_STREQ(p.GetToken(), "bc");
  p.NextToken(',');
  EXPECT_EQ(p.GetToken(), nullptr);
  // A value longer than the first buffer grows it and keeps its text.
  std::string longValue(100000, 'x');
  p.SetLength(static_cast<int>(longValue.size()));
  memcpy(p.GetText(), longValue.data(), longValue.size());
  EXPECT_EQ(std::string(p.GetText()), longValue);
  p.Reset();
  EXPECT_EQ(p.GetLength(), 0);
}

namespace {
const char* COLOR_STR[3] = {"Red", "Green", "None"};
enum Color_cl { RED, GREEN, NONE };
}  // namespace

TEST(EnumConverter, ExactTextThenDefaultIgnoringCase) {
  EXPECT_EQ((EnumConverter_tmpl<Color_cl, 3>::FromString(COLOR_STR, Name_sptr("Green"), "Red")), GREEN);
  EXPECT_EQ((EnumConverter_tmpl<Color_cl, 3>::FromString(COLOR_STR, Name_sptr(), "Red")), RED);
  EXPECT_EQ((EnumConverter_tmpl<Color_cl, 3>::FromString(COLOR_STR, Name_sptr(), "none")), NONE);
}

TEST(EnumConverterDeathTest, UnknownOrMissingValuesStop) {
  EXPECT_DEATH((EnumConverter_tmpl<Color_cl, 3>::FromString(COLOR_STR, Name_sptr("green"), "Red")),
               "^EnumConverter_tmpl::FromString Unrecognized type green\n");
  EXPECT_DEATH((EnumConverter_tmpl<Color_cl, 3>::FromString(COLOR_STR, Name_sptr(), nullptr)),
               "^EnumConverter_tmpl::FromString Unrecognized type <NULL>\n");
}

TEST(XmlParserDeathTest, MissingAndBrokenFilesStop) {
  EXPECT_DEATH(XmlParser_cl().Parse("/nonexistent/pipeline.xml", false, true),
               "^xml file '/nonexistent/pipeline.xml' does not exist\n");
  EXPECT_DEATH(XmlParser_cl().ParseBuffer("<a><b></a>", 10, "broken.xml"),
               "^Fatal Error at file \"broken.xml\", line 1, column 9\n   Message: .*\nErrors in xml file: broken.xml\n");
}
