// Temporary files, section extraction, joins and the strtok-based parsers.
#include "pipeline/utils.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

namespace {
std::string Slurp(const char* file) {
  std::ifstream in(file);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}
void Write(const char* file, const std::string& text) { std::ofstream(file) << text; }
}  // namespace

TEST(Utils, TempNamesAreDistinctAndDeleteFileRemovesOnlyThatFile) {
  Name_sptr a = Utils_cl::CreateTempFileName();
  Name_sptr b = Utils_cl::CreateTempFileName();
  EXPECT_EQ(strncmp(a.CStr(), "tmp.", 4), 0);
  EXPECT_FALSE(a == b);
  const char* odd = "utils test 'odd' name;x";
  Write(odd, "x");
  Write("utils_test_keep", "x");
  Utils_cl::DeleteFile(Name_sptr(odd));
  EXPECT_NE(access(odd, F_OK), 0);
  EXPECT_EQ(access("utils_test_keep", F_OK), 0);
  Utils_cl::DeleteFile(Name_sptr("utils_test_keep"));
  EXPECT_NE(access("utils_test_keep", F_OK), 0);
}

TEST(Utils, XmlSectionKeepsOnlyPlainLinesDirectlyBelowTheTag) {
  std::string longLine(200000, 'q');
  Write("utils_test_section.xml",
        "<Root>\n"
        "  <Track Type=\"x\">\n"
        "    line one\n"
        "    <Child a=\"1\">\n"
        "      hidden\n"
        "      <Deeper>\n"
        "        hidden too\n"
        "      </Deeper>\n"
        "    </Child>\n"
        "    <Empty a=\"2\"/>\n"
        "\t line two\n" +
            longLine +
            "\n"
            "  </Track>\n"
            "  outside\n"
            "</Root>\n");
  Name_sptr temp = Utils_cl::CreateTempFileForXMLSection(Name_sptr("utils_test_section.xml"), "Track");
  EXPECT_EQ(Slurp(temp.CStr()), "line one\nline two\n" + longLine + "\n");
  Utils_cl::DeleteFile(temp);
  Utils_cl::DeleteFile(Name_sptr("utils_test_section.xml"));
}

TEST(UtilsDeathTest, XmlSectionOfAMissingFileStops) {
  EXPECT_DEATH(Utils_cl::CreateTempFileForXMLSection(Name_sptr("/nonexistent/f.xml"), "T"),
               "^Utils_cl::CreateTempFileForXMLSection could not open file /nonexistent/f.xml\n");
}

TEST(Utils, JoinsPutTheSeparatorBetweenElements) {
  Vector_tmpl<Name_sptr> names(2, Name_sptr());
  for (const char* n : {"a", "b", "c"}) names.AddLast(Name_sptr(n));
  EXPECT_STREQ(Utils_cl::NameVecToString(names, ", ").CStr(), "a, b, c");
  Vector_tmpl<char> chars(2, 0);
  for (char c : {'x', 'y'}) chars.AddLast(c);
  EXPECT_STREQ(Utils_cl::CharVecToString(chars, "").CStr(), "xy");
  EXPECT_EQ(Utils_cl::NameVecToString(Vector_tmpl<Name_sptr>(), ",").CStr(), nullptr);
  // Keys 1 and 2 lie in buckets 19 and 7 of 32: the set visits 2 first.
  IntSet_tmpl<Name_sptr> set(32, Name_sptr());
  set.Insert(1, Name_sptr("a"));
  set.Insert(2, Name_sptr("b"));
  EXPECT_STREQ(Utils_cl::Int2NameToString(set, ";").CStr(), "2;b;1;a");
}

TEST(Utils, ParsersSplitInPlaceWithDefaultsAndNullText) {
  char text[] = "1.5 2\t-3e1";
  Vector_tmpl<double>* d = Utils_cl::StrToDoubleVec(text, " \t");
  ASSERT_EQ(d->GetSize(), 3);
  EXPECT_DOUBLE_EQ((*d)[2], -30.0);
  EXPECT_EQ(d->GetDefault(), -1.0);
  EXPECT_EQ(d->GetCapacity(), 10);
  EXPECT_STREQ(text, "1.5");  // strtok cut the text
  delete d;
  char ints[] = ",,7,,08,-2,";
  Vector_tmpl<int>* i = Utils_cl::StrToIntVec(ints, ",");
  ASSERT_EQ(i->GetSize(), 3);
  EXPECT_EQ((*i)[1], 8);  // base 10, not octal
  delete i;
  char small[] = "3 120";
  Vector_tmpl<char>* c = Utils_cl::StrToIntCharVec(small, " ");
  EXPECT_EQ((*c)[1], 120);
  delete c;
  char words[] = "alpha beta";
  Vector_tmpl<Name_sptr>* n = Utils_cl::StrToNameVec(words, " ");
  EXPECT_STREQ((*n)[1].CStr(), "beta");
  EXPECT_TRUE(n->GetDefault().IsNull());
  delete n;
  Vector_tmpl<int>* none = Utils_cl::StrToIntVec(nullptr, ",");
  EXPECT_EQ(none->GetSize(), 0);
  delete none;
}

TEST(Utils, PairParsersAlternateAndDropAnUnpairedTail) {
  char text[] = "a 1 b 2 a 3 dangling";
  VectorNameHash_tmpl<int>* byName = Utils_cl::StringToVectorNameHash2Int(text, " ");
  ASSERT_EQ(byName->GetSize(), 3);
  EXPECT_EQ((*byName)[2], 3);
  EXPECT_EQ(byName->GetEntry(Name_sptr("a")), 3);
  EXPECT_EQ(byName->GetEntry(Name_sptr("dangling")), -1);
  // In 32 buckets "a" lies in 30 and "b" in 18; the set holds both entries of "a", newest first.
  EXPECT_STREQ(Utils_cl::VectorNameHash2IntToString(*byName, " ").CStr(), "b 2 a 3 a 1");
  delete byName;
  char ints[] = "5:five:6:six";
  IntSet_tmpl<Name_sptr>* byInt = Utils_cl::StringToInt2Name(ints, ":");
  EXPECT_STREQ(byInt->GetEntry(6).CStr(), "six");
  delete byInt;
  IntSet_tmpl<Name_sptr>* empty = Utils_cl::StringToInt2Name(nullptr, ":");
  EXPECT_EQ(empty->GetSize(), 0);
  delete empty;
  char pairs[] = "1 one 2 two";
  VectorIntHash_tmpl<Name_sptr>* hash = Utils_cl::StringToVectorIntHash2Name(pairs, " ");
  EXPECT_STREQ((*hash)[1].CStr(), "two");
  EXPECT_STREQ(Utils_cl::VectorIntHash2NameToString(*hash, " ").CStr(), "2 two 1 one");
  delete hash;
}

TEST(Utils, SortWrappersSortAscending) {
  Vector_tmpl<double> d;
  for (double x : {3.0, -1.0, 2.5, -1.0}) d.AddLast(x);
  Utils_cl::Sort(&d);
  EXPECT_TRUE(d.IsSorted());
  EXPECT_EQ(d[0], -1.0);
  Vector_tmpl<int> i;
  for (int x = 12; x > 0; x--) i.AddLast(x);
  Utils_cl::Sort(&i);
  EXPECT_EQ(i[0], 1);
  EXPECT_EQ(i[11], 12);
}
