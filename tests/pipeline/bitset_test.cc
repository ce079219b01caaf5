// Bit sets: the word-at-a-time range setter against the plain one, counting with a limit, copies.
#include "pipeline/bitset.h"

#include <gtest/gtest.h>

#include <sstream>

#include "pipeline/random.h"

TEST(Bitset, FastRangeSetEqualsBitByBitOnRandomRanges) {
  Random_cl random(17);
  for (int trial = 0; trial < 2000; trial++) {
    int bits = 1 + static_cast<int>(random.SampleUniform() * 200);
    int start = trial % 2;
    Bitset_cl slow(bits, start), fast(bits, start);
    for (int op = 0; op < 4; op++) {
      int from = static_cast<int>(random.SampleUniform() * bits);
      int to = from + static_cast<int>(random.SampleUniform() * (bits - from));
      int value = random.SampleUniform() < 0.5;
      slow.SetBits(from, to, value);
      fast.SetBitsFast(from, to, value);
    }
    for (int i = 0; i < bits; i++) ASSERT_EQ(slow.IsSet(i), fast.IsSet(i)) << "trial " << trial << " bit " << i;
  }
}

TEST(Bitset, WordEdgesAndInclusiveEnds) {
  Bitset_cl b(96, 0);
  EXPECT_EQ(b.GetSizeInBytes(), 12);
  b.SetBitsFast(31, 64, 1);  // last bit of word 0, all of word 1, first bit of word 2
  EXPECT_FALSE(b.IsSet(30));
  EXPECT_TRUE(b.IsSet(31));
  EXPECT_TRUE(b.IsSet(64));
  EXPECT_FALSE(b.IsSet(65));
  EXPECT_EQ(b.CountTrue(0, 96, 1000), 34);
  b.SetBitsFast(32, 63, 0);
  EXPECT_EQ(b.CountTrue(0, 96, 1000), 2);
  b.SetBitsFast(5, 4, 1);  // an empty range
  EXPECT_EQ(b.CountTrue(0, 96, 1000), 2);
}

TEST(Bitset, CountStopsAtLimitAndExcludesTheEnd) {
  Bitset_cl b(40, 1);
  EXPECT_EQ(b.GetSizeInBytes(), 8);
  EXPECT_EQ(b.CountTrue(0, 40, 1000), 40);
  EXPECT_EQ(b.CountTrue(10, 20, 1000), 10);
  EXPECT_EQ(b.CountTrue(0, 40, 7), 7);
  EXPECT_EQ(b.CountTrue(3, 3, 7), 0);
}

TEST(Bitset, CopiesAndPrinting) {
  Bitset_cl b(10, 0);
  b.Set(1);
  b.Set(4);
  b.Set(9);
  Bitset_cl copy(b);
  b.Clear(1);
  EXPECT_TRUE(copy.IsSet(1));
  Bitset_cl range(&copy, 1, 4);  // bits 1 to 4, both included
  EXPECT_EQ(range.GetNumBits(), 4);
  std::ostringstream out;
  range.Print(out, "1", "0", ",");
  EXPECT_EQ(out.str(), "1,0,0,1,");
  std::ostringstream first;
  copy.PrintFirstKBits(first, 3, "x", ".", "");
  EXPECT_EQ(first.str(), ".x.");
  Bitset_cl assigned(1, 0);
  assigned = copy;
  EXPECT_EQ(assigned.CountTrue(0, 10, 10), 3);
}
