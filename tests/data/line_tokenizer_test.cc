// Fields of a tab line: empty fields, the line end, carriage returns and the unterminated last line.
#include "data/line_tokenizer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {
std::vector<std::string> Fields(const std::string& line) {
  LineTokenizer_cl tokens(line.data(), line.size());
  std::vector<std::string> fields;
  while (tokens.HasNextToken()) {
    const char* start;
    size_t length;
    tokens.NextToken(&start, &length);
    fields.emplace_back(start, length);
  }
  return fields;
}
using F = std::vector<std::string>;
}  // namespace

TEST(LineTokenizer, FieldsEndAtTabsAndTheLineFeed) {
  EXPECT_EQ(Fields("a\tb\tc\n"), (F{"a", "b", "c"}));
  EXPECT_EQ(Fields("a\t\t\tb\n"), (F{"a", "", "", "b"}));
  EXPECT_EQ(Fields("\ta\n"), (F{"", "a"}));
  EXPECT_EQ(Fields("a b;c,d\n"), (F{"a b;c,d"}));  // blanks and punctuation are not delimiters
}

TEST(LineTokenizer, ATabBeforeTheLineFeedAddsNoField) {
  EXPECT_EQ(Fields("a\tb\t\n"), (F{"a", "b"}));
  EXPECT_EQ(Fields("a\t\t\n"), (F{"a", ""}));
  EXPECT_EQ(Fields("\n"), F{});
  EXPECT_EQ(Fields(""), F{});
}

TEST(LineTokenizer, CarriageReturnStaysInTheLastField) {
  EXPECT_EQ(Fields("a\tb\r\n"), (F{"a", "b\r"}));
  EXPECT_EQ(Fields("a\t\r\n"), (F{"a", "\r"}));
}

TEST(LineTokenizer, TextBehindTheLastTabOfAnUnterminatedLineIsNotSeen) {
  EXPECT_EQ(Fields("a\tb\tc"), (F{"a", "b"}));
  EXPECT_EQ(Fields("abc"), F{});
  EXPECT_EQ(Fields("a\t"), (F{"a"}));
}

TEST(LineTokenizer, CopiedTokensShareOneBuffer) {
  std::string line = "first\tsecond\n";
  LineTokenizer_cl tokens(line.data(), line.size());
  const char* first = tokens.NextToken();
  EXPECT_STREQ(first, "first");
  const char* second = tokens.NextToken();
  EXPECT_STREQ(second, "second");
  EXPECT_EQ(first, second);
  EXPECT_FALSE(tokens.HasNextToken());
}
