// Fixed-size tables: no growth, prepending chains, id look-ups.
#include "pipeline/hash_table.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(SymbolTable, NeverGrowsAndPrependsSoLaterEntriesShadow) {
  SymbolTable_tmpl<int> table(3, -1);
  for (int i = 0; i < 50; i++) table.Insert(Name_sptr(("n" + std::to_string(i)).c_str()), i);
  EXPECT_EQ(table.GetSize(), 3);
  EXPECT_EQ(table.GetNumEntries(), 50);
  EXPECT_EQ(table.GetEntry(Name_sptr("n17")), 17);
  table.Insert(Name_sptr("n17"), 99);
  EXPECT_EQ(table.GetEntry(Name_sptr("n17")), 99);
  EXPECT_EQ(table.Remove(Name_sptr("n17")), 99);
  EXPECT_EQ(table.GetEntry(Name_sptr("n17")), 17);
  EXPECT_EQ(table.Remove(Name_sptr("none")), -1);
  EXPECT_EQ(table.GetNumEntries(), 50);
}

TEST(SymbolTable, VisitsSlotsInOrderAndChainsNewestFirst) {
  // Same slots as the growing name sets: in 4 slots a 3, b 2, c 0, and "gene1" shares a's slot.
  SymbolTable_tmpl<int> table(4, 0);
  for (const char* k : {"a", "b", "c", "gene1"}) table.Insert(Name_sptr(k), 1);
  std::vector<std::string> keys;
  for (auto* e : table) keys.push_back(e->iKey.CStr());
  EXPECT_EQ(keys, (std::vector<std::string>{"c", "b", "gene1", "a"}));
  table.RemoveAll();
  EXPECT_FALSE(table.begin() != table.end());
}

TEST(IdTable, FindsByIdNotByObject) {
  IdTable_tmpl<const char*> table(0, nullptr);  // a size below 1 still makes one slot
  EXPECT_EQ(table.GetSize(), 1);
  Id_cl five(5), seven(7), otherFive(5);
  table.Insert(&five, "five");
  table.Insert(&seven, "seven");
  EXPECT_STREQ(table.GetEntry(&otherFive), "five");
  EXPECT_TRUE(table.Exists(&seven));
  Id_cl nine(9);
  EXPECT_EQ(table.GetEntry(&nine), nullptr);
}
