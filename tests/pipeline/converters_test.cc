// Vector-to-index conversions.
#include "pipeline/converters.h"

#include <gtest/gtest.h>

TEST(Converters, Vec2HashMapsElementsToIndicesWithDefaultMinusOne) {
  Vector_tmpl<Name_sptr> names(4, Name_sptr());
  for (const char* n : {"a", "b", "a"}) names.AddLast(Name_sptr(n));
  NameSet_tmpl<int>* byName = Converters_cl::Vec2Hash(names);
  EXPECT_EQ(byName->GetNumBuckets(), 4);
  EXPECT_EQ(byName->GetEntry(Name_sptr("b")), 1);
  EXPECT_EQ(byName->GetEntry(Name_sptr("a")), 2);  // the later duplicate shadows
  EXPECT_EQ(byName->GetEntry(Name_sptr("z")), -1);
  delete byName;

  Vector_tmpl<int> ints(4, 0);
  for (int x : {10, -3, 7}) ints.AddLast(x);
  IntSet_tmpl<int>* byInt = Converters_cl::Vec2Hash(ints);
  EXPECT_EQ(byInt->GetEntry(-3), 1);
  EXPECT_EQ(byInt->GetEntry(7), 2);
  EXPECT_EQ(byInt->GetEntry(8), -1);
  delete byInt;
}
