// Reading lines of any length, with and without a last line feed, and reading a file again.
#include "data/line_iterator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data_test_helpers.h"

namespace {
std::vector<std::string> Lines(LineIterator_cl& lines) {
  std::vector<std::string> all;
  for (; lines.NotNull(); ++lines) all.emplace_back(lines.GetLine(), lines.GetLength());
  return all;
}
using L = std::vector<std::string>;
}  // namespace

TEST(LineIterator, LinesKeepTheirLineEnds) {
  LineIterator_cl lines(WriteTempFile("f", "a\tb\n\nc\r\nlast"));
  ASSERT_TRUE(lines.Reset());
  EXPECT_EQ(Lines(lines), (L{"a\tb\n", "\n", "c\r\n", "last"}));
  ++lines;  // stepping past the end is harmless
  EXPECT_FALSE(lines.NotNull());
}

TEST(LineIterator, EmptyAndMissingFiles) {
  LineIterator_cl empty(WriteTempFile("f", ""));
  EXPECT_TRUE(empty.Reset());
  EXPECT_FALSE(empty.NotNull());
  LineIterator_cl missing(Name_sptr("/nonexistent/dir/file.txt"));
  EXPECT_FALSE(missing.Reset());
  EXPECT_FALSE(missing.NotNull());
  LineIterator_cl unnamed(Name_sptr{});
  EXPECT_FALSE(unnamed.Reset());
}

TEST(LineIterator, LinesLongerThanTheBufferArriveWhole) {
  std::string huge(LineIterator_cl::kInitialBufferSize * 3 + 17, 'x');
  std::string medium(LineIterator_cl::kInitialBufferSize - 1, 'y');
  std::string content = "short\n" + huge + "\n" + medium + "\n" + huge;
  LineIterator_cl lines(WriteTempFile("f", content));
  ASSERT_TRUE(lines.Reset());
  L all = Lines(lines);
  ASSERT_EQ(all.size(), 4u);
  EXPECT_EQ(all[0], "short\n");
  EXPECT_EQ(all[1], huge + "\n");
  EXPECT_EQ(all[2], medium + "\n");
  EXPECT_EQ(all[3], huge);
}

TEST(LineIterator, ResetReadsFromTheStartAgain) {
  LineIterator_cl lines(WriteTempFile("f", "one\ntwo\n"));
  ASSERT_TRUE(lines.Reset());
  ++lines;
  ASSERT_TRUE(lines.Reset());
  EXPECT_EQ(Lines(lines), (L{"one\n", "two\n"}));
  EXPECT_EQ(lines.GetFileName(), Name_sptr(TempPath("f").c_str()));
}
