// Names: empty versus null text, searching, slicing and in-place editing.
#include "pipeline/name.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

TEST(Name, EmptyTextIsNullAndEqualsOnlyNull) {
  Name_cl empty("");
  EXPECT_EQ(empty.GetText(), nullptr);
  EXPECT_EQ(empty.GetLength(), 0);
  EXPECT_TRUE(empty.IsEqual(static_cast<const char*>(nullptr)));
  EXPECT_FALSE(empty.IsEqual(""));
  Name_cl abc("abc");
  EXPECT_TRUE(abc.IsEqual("abc"));
  EXPECT_FALSE(abc.IsEqual(static_cast<const char*>(nullptr)));
  EXPECT_EQ(Name_cl("abc", 0).GetText(), nullptr);
}

TEST(Name, SearchAndSlice) {
  Name_cl name("aaaXaa");
  EXPECT_EQ(name.IndexOf("aa"), 0);
  EXPECT_EQ(name.LastIndexOf("aa"), 4);
  EXPECT_EQ(Name_cl("aaa").LastIndexOf("aa"), 1);  // overlapping occurrences count
  EXPECT_EQ(name.IndexOf("b"), -1);
  Name_sptr sub = name.SubString(0, -1);
  ASSERT_NE(sub->GetText(), nullptr);
  EXPECT_STREQ(sub->GetText(), "");
  EXPECT_STREQ(name.SubString(2, 3)->GetText(), "aX");
  EXPECT_TRUE(name.EndsWith(Name_sptr("Xaa")));
  EXPECT_FALSE(name.EndsWith(Name_sptr("")));
  EXPECT_FALSE(name.EndsWith(Name_sptr("aaaaXaa")));
}

TEST(Name, ConcatIsSeenByEveryHolder) {
  Name_sptr a("mid");
  Name_sptr b = a;
  a->Concat("_");
  a->Concat(3);
  EXPECT_STREQ(b->GetText(), "mid_3");
  Name_sptr c("x");
  c->Concat1('>');
  c->Concat1(12);
  c->Concat(static_cast<const char*>(nullptr));
  EXPECT_STREQ(c->GetText(), "12>x");
  Name_sptr d("a,b,,c");
  d->RemoveChar(',');
  EXPECT_STREQ(d->GetText(), "abc");
}

TEST(Name, HandlesCompareByContent) {
  EXPECT_TRUE(Name_sptr("g1") == Name_sptr("g1"));
  EXPECT_FALSE(Name_sptr("g1") == Name_sptr());
  EXPECT_TRUE(Name_sptr() == Name_sptr(nullptr));
  std::ostringstream out;
  out << Name_sptr("gene") << Name_sptr() << Name_sptr("");
  EXPECT_EQ(out.str(), "gene");
}

TEST(Name, TextsAcrossTheInlineLimitSurviveEveryEdit) {
  // Short texts are kept inside the object, longer ones on the heap; edits move between the two.
  for (int length = 17; length <= 23; length++) {
    std::string text(length, 'g');
    Name_sptr name(text.c_str());
    EXPECT_EQ(name->GetLength(), length);
    name->Concat("xy");
    EXPECT_EQ(std::string(name->GetText()), text + "xy");
    name->RemoveChar('x');
    name->RemoveChar('y');
    EXPECT_EQ(std::string(name->GetText()), text);
    name->Concat1("ab");
    EXPECT_EQ(std::string(name->GetText()), "ab" + text);
    EXPECT_EQ(std::string(name->SubString(2, length + 1)->GetText()), text);
    EXPECT_EQ(std::string(name->SubString(0, 1)->GetText()), "ab");
  }
  Name_sptr grown("");
  for (int i = 0; i < 30; i++) grown->Concat('z');
  EXPECT_EQ(std::string(grown->GetText()), std::string(30, 'z'));
}

TEST(Name, IndexHashFollowsTheText) {
  Name_sptr a("gene_17"), b("gene_1");
  EXPECT_NE(a->GetIndexHash(), b->GetIndexHash());
  b->Concat('7');  // an edit drops the cached hash
  EXPECT_EQ(a->GetIndexHash(), b->GetIndexHash());
  EXPECT_EQ(a->GetIndexHash(), Name_cl::ComputeIndexHash("gene_17", 7));
  EXPECT_NE(Name_cl::ComputeIndexHash(nullptr, 0), 0u);
  std::string longText(40, 'q');
  Name_sptr c(longText.c_str());
  uint32_t before = c->GetIndexHash();
  c->RemoveChar('q');
  EXPECT_NE(c->GetIndexHash(), before);
}
