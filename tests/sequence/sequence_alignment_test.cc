// Alignment columns, strands, subsets and the XML file of both kinds of alignment.
#include "sequence/sequence_alignment.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>

#include "pipeline/xml_parser.h"

namespace {

SequenceManager_cl* Group() {
  auto* group = new SequenceManager_cl(Name_sptr("g"), Name_sptr("ACGTNX"), 4, true);
  const char* records[][2] = {{"a", "ACGTAC"}, {"b", "GGTTA"}, {"c&<x>", "TTTT"}};
  for (auto& r : records)
    group->AddSequence(
        new Sequence_cl(Name_sptr(r[0]), r[1], static_cast<int>(strlen(r[1])), group->GetAlphabetTable()));
  return group;
}

SequenceAlignment_cl* Parse(const std::string& xml, const SequenceManager_cl* target) {
  static XmlParser_cl* parser = new XmlParser_cl;
  xercesc::DOMDocument* document = parser->ParseBuffer(xml.data(), xml.size(), "alignment.xml");
  XmlIter_cl root(document->getDocumentElement());
  return SequenceAlignment_cl::Create(&root, target);
}

std::string Xml(const SequenceAlignment_cl* alignment) {
  std::ostringstream out;
  alignment->WriteFile(out);
  return out.str();
}

std::string Letters(const SequenceAlignment_cl* alignment, int first = 0, int last = -1, int reversed = 0) {
  std::ostringstream out;
  alignment->WriteSequenceFile(out, first, last, reversed);
  return out.str();
}

const char* kGapless =
    "<SequenceAlignment Name=\"al\" Type=\"GaplessAlignment\">\n"
    "<Sequence Name=\"a\" AlignmentStart=\"0\" SequenceStart=\"1\" Weight=\"1\" SequenceEnd=\"4\"></Sequence>\n"
    "<Sequence Name=\"b\" AlignmentStart=\"2\" SequenceStart=\"0\" Weight=\"0.5\" SequenceEnd=\"4\"></Sequence>\n"
    "<Sequence Name=\"c&amp;&lt;x&gt;\" AlignmentStart=\"1\" SequenceStart=\"0\" Weight=\"2\" SequenceEnd=\"3\">"
    "</Sequence>\n"
    "</SequenceAlignment>\n";

TEST(SequenceAlignment, GaplessColumnsAndXmlRoundTrip) {
  SequenceManager_cl* group = Group();
  SequenceAlignment_cl* alignment = Parse(kGapless, group);
  EXPECT_EQ(Xml(alignment), kGapless);
  // a: CGTA at 0-3; b: GGTTA at 2-6; c: TTTT at 1-4.
  EXPECT_EQ(alignment->GetAlignmentLength(), 7);
  EXPECT_EQ(alignment->GetFirstFullAlignmentPosition(), 2);
  EXPECT_EQ(alignment->GetLastFullAlignmentPosition(), 3);
  EXPECT_EQ(alignment->GetFullLength(), 2);
  EXPECT_EQ(Letters(alignment), ">a\nCGTA---\n>b\n--GGTTA\n>c&<x>\n-TTTT--\n");
  EXPECT_EQ(Letters(alignment, 1, 3, 1), ">a\nTAC\n>b\nCC-\n>c&<x>\nAAA\n");
  EXPECT_EQ(alignment->GetChar(0, 4), -1);
  EXPECT_FALSE(alignment->HasChar(1, 1));
  EXPECT_EQ(alignment->GetChar(1, 2), 2);
  Vector_tmpl<Vector_tmpl<int>*>* counts = alignment->GetSequenceCharsCounts();
  ASSERT_EQ(counts->GetSize(), 2);
  EXPECT_EQ((*(*counts)[0])[2], 1);  // column 2: T, G, T
  EXPECT_EQ((*(*counts)[0])[3], 2);
  counts->DeleteAll();
  delete counts;
  // The alignment holds copies: the group keeps its letters.
  alignment->ReverseComplement(0);
  EXPECT_EQ(alignment->GetSequenceStart(0), 1);
  EXPECT_EQ(alignment->GetSequenceEnd(0), 4);
  EXPECT_EQ(Letters(alignment, 0, 3).substr(0, 7), ">a\nTACG");
  EXPECT_EQ(group->GetSequence(0)->GetLetter(0), 0);
  alignment->SetAlignmentStart(1, -3);
  alignment->FixAlignmentOffsetToBeNonNegavite();
  EXPECT_EQ(alignment->GetAlignmentStart(0), 3);
  EXPECT_EQ(alignment->GetAlignmentStart(1), 0);
  delete alignment;
  delete group;
}

TEST(SequenceAlignment, ReadingDefaultsAndResets) {
  SequenceManager_cl* group = Group();
  SequenceAlignment_cl* alignment = Parse(
      "<SequenceAlignment Name=\"d\" Type=\"GaplessAlignment\"><Sequence Name=\"b\" SequenceEnd=\"-1\"/>"
      "<Sequence Name=\"a\"/><Other/></SequenceAlignment>",
      group);
  EXPECT_EQ(Xml(alignment),
            "<SequenceAlignment Name=\"d\" Type=\"GaplessAlignment\">\n"
            "<Sequence Name=\"b\" AlignmentStart=\"0\" SequenceStart=\"0\" Weight=\"1\" SequenceEnd=\"4\"></Sequence>\n"
            "<Sequence Name=\"a\" AlignmentStart=\"0\" SequenceStart=\"0\" Weight=\"1\" SequenceEnd=\"5\"></Sequence>\n"
            "</SequenceAlignment>\n");
  EXPECT_EQ(alignment->GetFullLength(), 5);
  GaplessSequenceAlignment_cl whole(Name_sptr("w"), group);
  EXPECT_EQ(whole.GetNumSequences(), 3);
  EXPECT_EQ(whole.GetAlignmentLength(), 6);
  EXPECT_EQ(whole.GetFullLength(), 4);
  delete alignment;
  delete group;
}

TEST(SequenceAlignment, GappedInsertsShiftLettersAndRoundTrip) {
  SequenceManager_cl* group = Group();
  const char* xml =
      "<SequenceAlignment Name=\"gap\" Type=\"GappedAlignment\">\n"
      "<Sequence Name=\"a\" AlignmentStart=\"1\" SequenceStart=\"0\" Weight=\"1\" SequenceEnd=\"5\" "
      "SequenceInserts=\"2;5\"></Sequence>\n"
      "<Sequence Name=\"b\" AlignmentStart=\"0\" SequenceStart=\"0\" Weight=\"1\" SequenceEnd=\"4\"></Sequence>\n"
      "</SequenceAlignment>\n";
  SequenceAlignment_cl* alignment = Parse(xml, group);
  EXPECT_EQ(Xml(alignment), xml);
  // a spans 1 to 8 with gaps at 2 and 5: A - C G - T A C.
  EXPECT_EQ(alignment->GetAlignmentLength(), 9);
  EXPECT_TRUE(alignment->HasChar(0, 2));
  EXPECT_EQ(alignment->GetChar(0, 2), -1);
  EXPECT_EQ(Letters(alignment), ">a\n-A-CG-TAC\n>b\nGGTTA----\n");
  EXPECT_EQ(static_cast<GappedSequenceAlignment_cl*>(alignment)->GetNumInsertsUpToPosition(0, 5), 2);
  Vector_tmpl<int> inserts;
  inserts.AddLast(0);
  alignment->SetSequenceAlignmentInserts(1, &inserts, 3);
  alignment->RecomputeAlignmentLength();
  EXPECT_EQ(Letters(alignment), ">a\n-A-CG-TAC\n>b\nGGT-TA---\n");
  EXPECT_EQ(alignment->GetSequenceAlignmentInserts(1)->GetSize(), 1);
  delete alignment;
  delete group;
}

TEST(SequenceAlignment, SubsetsKeepLengthsAndCopyPlaces) {
  SequenceManager_cl* group = Group();
  SequenceAlignment_cl* alignment = Parse(kGapless, group);
  Vector_tmpl<int> indices;
  indices.AddLast(1);
  indices.AddLast(1);
  SequenceManager_cl* chosen = nullptr;
  SequenceAlignment_cl* subset = alignment->GetSubsetByIndices(Name_sptr("sub"), &indices, chosen);
  ASSERT_NE(chosen, nullptr);
  EXPECT_EQ(chosen->GetSequence(1)->GetName(), Name_sptr("b_DUP1"));
  EXPECT_EQ(subset->GetAlignmentLength(), 7);
  EXPECT_EQ(subset->GetFullLength(), 2);
  EXPECT_EQ(subset->GetAlignmentStart(1), 2);
  EXPECT_EQ(subset->GetWeight(1), 0.5);
  delete subset;
  delete chosen;
  delete alignment;
  delete group;
}

TEST(SequenceAlignment, BadInputStops) {
  SequenceManager_cl* group = Group();
  EXPECT_DEATH(Parse("<SequenceAlignment Name=\"x\" Type=\"Gapless\"/>", group),
               "^EnumConverter_tmpl::FromString Unrecognized type Gapless\n");
  EXPECT_DEATH(Parse("<SequenceAlignment Name=\"x\" Type=\"GaplessAlignment\"><Sequence Name=\"zz\"/>"
                     "</SequenceAlignment>",
                     group),
               "^SequenceAlignment_cl::Create Unknown sequence zz in sequence group g\n");
  EXPECT_DEATH(Parse("<SequenceAlignment Name=\"x\" Type=\"GaplessAlignment\"><Sequence Name=\"a\" SequenceEnd=\"6\"/>"
                     "</SequenceAlignment>",
                     group),
               "^SequenceAlignment_cl Sequence a of length 6 cannot be aligned with SequenceStart=0 SequenceEnd=6 "
               "AlignmentStart=0\n");
  GaplessSequenceAlignment_cl gapless(Name_sptr("w"), group);
  EXPECT_DEATH(gapless.GetSequenceAlignmentInserts(0),
               "^SequenceAlignment_cl::GetSequenceAlignmentInserts is not defined for this kind of alignment\n");
  EXPECT_DEATH(SequenceAlignment_cl::Create(Name_sptr("/no/such.xml"), group),
               "^xml file '/no/such.xml' does not exist\n");
  delete group;
}

}  // namespace
