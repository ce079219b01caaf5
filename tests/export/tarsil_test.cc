// The viewer file: every written file is well-formed and reads back to the same data; the reader's error roads.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "data/microarray.h"
#include "data/species_attributes.h"
#include "data/vorn_data.h"
#include "export/tarsil_printer.h"
#include "export/tarsil_tree.h"
#include "pipeline/missing.h"
#include "pipeline/xml_parser.h"

namespace {

const char kHead[] = "<?xml version=\"1.0\"?>\n<Tarsil>\n";

// Parses the text, reads it and copies it into the data under the name.
void ReadInto(const std::string& text, VornData_cl* data, const char* name) {
  XmlParser_cl parser;
  xercesc::DOMDocument* document = parser.ParseBuffer(text.data(), text.size(), "test.xml");
  TarsilTree_cl tree(document->getDocumentElement());
  tree.Copy(data, Name_sptr(name));
}

std::string Objects(const char* genes) {
  return std::string(kHead) +
         "<TarsilAttributes><Attributes Id=\"0\">"
         "<Attribute Name=\"kind\" Id=\"0\" Value=\"a&lt;b  c\td\"/>"
         "<Attribute Name=\"w\" Id=\"1\" Value=\"Continuous\"/></Attributes></TarsilAttributes>"
         "<TSCHierarchyClusterData NumClusters=\"0\"><Root ClusterNum=\"0\" NumChildren=\"0\"/>"
         "</TSCHierarchyClusterData>"
         "<TarsilObjects><Objects Type=\"Genes\">" +
         std::string(genes) +
         "</Objects></TarsilObjects>"
         "<TSCRawData>\nUID\tNAME\tGWEIGHT\tx&amp;1\tx2\t\nG&lt;1\tG\t1\t1.5\t\t\nG2\tG2\t1\t\t-2\t\n</TSCRawData>"
         "</Tarsil>";
}

}  // namespace

TEST(TarsilTree, ReadsRawDataAndFullAndSparseAttributes) {
  VornData_cl data;
  ReadInto(Objects("<Gene Id=\"0\" ORF=\"G&lt;1\" Desc=\"x\"><Attributes AttributesGroupId=\"0\" Type=\"Full\" "
                   "Value=\"c;0.125000\"/></Gene>"
                   "<Gene Id=\"1\" ORF=\"G2\" Desc=\"x\"><Attributes AttributesGroupId=\"0\" Type=\"Sparse\" "
                   "Value=\"1\"/></Gene>"),
           &data, "back");
  Microarray_cl* microarray = data.GetMicroarray(Name_sptr("back"));
  ASSERT_NE(microarray, nullptr);
  ASSERT_EQ(microarray->GetNumGenes(), 2);
  ASSERT_EQ(microarray->GetNumExperiments(), 2);
  EXPECT_EQ(microarray->GetGeneName(0), Name_sptr("G<1"));
  EXPECT_EQ(microarray->GetExperimentName(0), Name_sptr("x&1"));
  EXPECT_EQ(microarray->GetMatrix()->GetRow(0)[0], 1.5);
  EXPECT_EQ(microarray->GetMatrix()->GetRow(0)[1], kMissingReal);
  EXPECT_EQ(microarray->GetMatrix()->GetRow(1)[0], kMissingReal);
  EXPECT_EQ(microarray->GetMatrix()->GetRow(1)[1], -2.0);
  SpeciesAttributes_cl* values = data.GetAttributes(Name_sptr("back"), GENE_ATTRIBUTES);
  ASSERT_NE(values, nullptr);
  int kind = values->GetColumn(Name_sptr("kind")), w = values->GetColumn(Name_sptr("w"));
  // The domain text splits at blanks and tabs: "a<b", "c", "d".
  EXPECT_EQ(values->GetValue(0, kind), 1.0);
  EXPECT_EQ(values->GetValue(0, w), 0.125);
  // Sparse: position 1 (w) is set, position 0 is 0, the index of "a<b".
  EXPECT_EQ(values->GetValue(1, kind), 0.0);
  EXPECT_EQ(values->GetValue(1, w), 1.0);
  EXPECT_NE(data.GetAttributeGroup(Name_sptr("back_genes")), nullptr);
}

// Writing what was read gives the text back: escaped names, discrete values by name, reals to six places.
TEST(TarsilTree, WriteAfterReadKeepsTheValues) {
  VornData_cl data;
  ReadInto(Objects("<Gene Id=\"0\" ORF=\"G&lt;1\" Desc=\"G&lt;1\"><Attributes AttributesGroupId=\"0\" Type=\"Full\" "
                   "Value=\"a&lt;b;0.333333\"/></Gene>"
                   "<Gene Id=\"1\" ORF=\"G2\" Desc=\"G2\"><Attributes AttributesGroupId=\"0\" Type=\"Full\" "
                   "Value=\"d;\"/></Gene>"),
           &data, "back");
  std::ostringstream out;
  XmlPrinter_cl printer(&out);
  TarsilPrinter_cl::PrintAttributes(printer, &data, data.GetMicroarray(Name_sptr("back")), Name_sptr());
  std::string text = out.str();
  EXPECT_NE(text.find("<Attribute Name=\"kind\" Id=\"0\" Value=\"a&lt;b c d\"/>"), std::string::npos) << text;
  EXPECT_NE(text.find("ORF=\"G&lt;1\""), std::string::npos);
  EXPECT_NE(text.find("Value=\"a&lt;b;0.333333\""), std::string::npos);
  EXPECT_NE(text.find("Value=\"d;\""), std::string::npos);
  XmlParser_cl parser;
  std::string document = "<T>" + text + "</T>";
  EXPECT_NE(parser.ParseBuffer(document.data(), document.size(), "w.xml"), nullptr);
}

TEST(TarsilPrinter, GeneDescriptionsNeedThreeFields) {
  std::string file = ::testing::TempDir() + "gene_names.txt";
  std::ofstream(file) << "YAL1\tACT1\tactin\textra\nYAL2\tonly\nYAL3\tX\t\n";
  NameSet_tmpl<Name_sptr>* descriptions = TarsilPrinter_cl::BuildGeneDescriptions(Name_sptr(file.c_str()));
  EXPECT_EQ(descriptions->GetEntry(Name_sptr("YAL1")), Name_sptr("ACT1 - actin"));
  EXPECT_TRUE(descriptions->GetEntry(Name_sptr("YAL2")).IsNull());
  EXPECT_EQ(descriptions->GetEntry(Name_sptr("YAL3")), Name_sptr("X - "));
  delete descriptions;
}

TEST(TarsilDeathTest, ErrorRoads) {
  VornData_cl data;
  EXPECT_DEATH(BioTokens_cl::GetTarsilFormatType(Name_sptr("Html")),
               "^BioTokens_cl::GetTarsilFormatType Unrecognized Tarsil format type Html\n$");
  EXPECT_DEATH(ReadInto(std::string(kHead) + "<TarsilObjects><Objects Type=\"Cells\"/></TarsilObjects></Tarsil>",
                        &data, "x"),
               "");
  EXPECT_DEATH(ReadInto(Objects("<Gene ORF=\"g\"><Attributes AttributesGroupId=\"7\" Type=\"Full\"/></Gene>"), &data,
                        "x"),
               "^Did not find attributes with id 7 in attribute list for object\n$");
  EXPECT_DEATH(ReadInto(Objects("<Gene ORF=\"g\"><Attributes AttributesGroupId=\"0\" Type=\"Dense\"/></Gene>"), &data,
                        "x"),
               "");
  EXPECT_EXIT(ReadInto(std::string(kHead) + "<TSCHierarchyClusterData NumClusters=\"1\"/></Tarsil>", &data, "x"),
              ::testing::ExitedWithCode(255), "regulation tree");
}

// The pipeline case with reserved characters in every kind of name: each file it writes is
// well-formed for Xerces and for xmllint, and reads back.
TEST(TarsilPipeline, WrittenFilesAreWellFormed) {
  std::string work = ::testing::TempDir() + "tarsil_pipeline";
  std::string source = std::string(VORN_TEST_DATA) + "/../e2e/cases/tarsil_export_roundtrip";
  std::string command = "rm -rf '" + work + "' && cp -r '" + source + "' '" + work + "' && cd '" + work + "' && ASAN_OPTIONS=detect_leaks=0 '" +
                        VORN_LEARN_BIN + "' pipeline.xml 2>/dev/null";
  ASSERT_EQ(std::system(command.c_str()), 0);
  int haveXmllint = std::system("xmllint --version >/dev/null 2>&1") == 0;
  for (const char* name : {"first.xml", "second.xml", "analyses.xml"}) {
    std::string file = work + "/" + name;
    if (haveXmllint) {
      EXPECT_EQ(std::system(("xmllint --noout '" + file + "'").c_str()), 0) << name;
    }
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    VornData_cl data;
    ReadInto(text.str(), &data, "again");
    EXPECT_EQ(data.GetMicroarray(Name_sptr("again"))->GetNumGenes(), 4) << name;
    EXPECT_EQ(data.GetMicroarray(Name_sptr("again"))->GetGeneName(3), Name_sptr("\"quoted\"")) << name;
  }
}
