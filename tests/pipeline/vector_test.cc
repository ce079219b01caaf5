// Vectors: growth constants, swap-removal, the tie behaviour of the sort and the set walks.
#include "pipeline/vector.h"

#include <gtest/gtest.h>

#include <sstream>

#include "pipeline/name.h"

TEST(Vector, GrowsByHalfPlusOne) {
  Vector_tmpl<int> v(10, -1);
  for (int i = 0; i < 10; i++) v.AddLast(i);
  EXPECT_EQ(v.GetCapacity(), 10);
  v.AddLast(10);
  EXPECT_EQ(v.GetCapacity(), 16);
  Vector_tmpl<int> one(0, -1);
  EXPECT_EQ(one.GetCapacity(), 1);
  one.AddLast(1);
  one.AddLast(2);
  EXPECT_EQ(one.GetCapacity(), 2);
  one.AddLast(3);
  EXPECT_EQ(one.GetCapacity(), 4);
}

TEST(Vector, RemovalOrderAndDefaults) {
  Vector_tmpl<int> v(4, -7);
  for (int x : {5, 6, 7, 6, 8}) v.AddLast(x);
  EXPECT_TRUE(v.RemoveFirst(6));  // the last element fills the hole
  EXPECT_EQ(v.GetSize(), 4);
  EXPECT_EQ(v[1], 8);
  EXPECT_EQ(v[4], -7);
  EXPECT_TRUE(v.RemoveFirstKeepOrder(8));
  EXPECT_EQ(v[1], 7);
  EXPECT_EQ(v[2], 6);
  v.RemoveLast(5);
  EXPECT_EQ(v.GetSize(), 0);
  EXPECT_EQ(v[0], -7);
  EXPECT_FALSE(v.RemoveFirst(1));
}

TEST(Vector, ChangedFlagFollowsEveryMutation) {
  Vector_tmpl<int> v;
  EXPECT_TRUE(v.IsChanged());
  v.ResetChanged();
  v.AddLast(3);
  EXPECT_TRUE(v.IsChanged());
  v.ResetChanged();
  v.SortWithOperator();
  EXPECT_TRUE(v.IsChanged());
  v.ResetChanged();
  v.Swap(0, 0);
  EXPECT_TRUE(v.IsChanged());
}

// A value whose order ignores its tag, to watch where sorting puts equal elements.
struct Tagged {
  int key = 0;
  int tag = 0;
  bool operator<(const Tagged& o) const { return key < o.key; }
  bool operator==(const Tagged& o) const { return key == o.key && tag == o.tag; }
};

TEST(Vector, SortTiesFollowQuicksortAndBubbleSteps) {
  // Nine elements take the bubble sort, which never moves equal neighbours.
  Vector_tmpl<Tagged> small;
  for (int i = 0; i < 9; i++) small.AddLast({i % 3, i});
  small.SortWithOperator();
  int expectSmall[9] = {0, 3, 6, 1, 4, 7, 2, 5, 8};
  for (int i = 0; i < 9; i++) EXPECT_EQ(small[i].tag, expectSmall[i]) << i;

  // Ten take the quicksort: middle pivot, left block of strictly smaller elements.
  Vector_tmpl<Tagged> big;
  for (int i = 0; i < 10; i++) big.AddLast({i % 2, i});
  big.SortWithOperator();
  int expectBig[10] = {4, 2, 8, 0, 6, 5, 7, 3, 1, 9};
  for (int i = 0; i < 10; i++) EXPECT_EQ(big[i].tag, expectBig[i]) << i;
  EXPECT_TRUE(big.IsSorted());
}

TEST(Vector, SortCarriesTheOtherVector) {
  Vector_tmpl<double> keys;
  Vector_tmpl<int> ids;
  double raw[12] = {3, 1, 4, 1, 5, 9, 2, 6, 5, 3, 5, 8};
  for (int i = 0; i < 12; i++) {
    keys.AddLast(raw[i]);
    ids.AddLast(i);
  }
  keys.SortWithOperatorAndSortOtherVecAccordingly(&ids);
  for (int i = 0; i < 12; i++) EXPECT_EQ(raw[ids[i]], keys[i]);
  EXPECT_TRUE(keys.IsSorted());
}

TEST(Vector, PointerElementsSortByPointee) {
  Vector_tmpl<int*> v(2, nullptr);
  int values[11] = {9, 8, 7, 6, 5, 4, 3, 2, 1, 0, -1};
  for (int& x : values) v.AddLast(&x);
  v.Sort();
  for (int i = 0; i < 11; i++) EXPECT_EQ(*v[i], i - 1);
}

TEST(Vector, SetWalksOnSortedVectors) {
  Vector_tmpl<int> a, b, both;
  for (int x : {1, 3, 5, 7}) a.AddLast(x);
  for (int x : {3, 4, 5}) b.AddLast(x);
  a.FindIntersectionWithOperator(b, &both);
  ASSERT_EQ(both.GetSize(), 2);
  EXPECT_EQ(both[1], 5);
  EXPECT_EQ(a.FindSet2SetRelationWithOperator(b), SET_OVERLAP);
  EXPECT_EQ(both.FindSet2SetRelationWithOperator(a), SET_SUBSET);
  a.UnionIntoMeWithOperator(b);
  std::ostringstream out;
  a.WriteFileWithOperator(out);
  EXPECT_EQ(out.str(), "Vector = { 1 3 4 5 7 }\n");
  a.InsertToSortedVecWithOperator(4);
  EXPECT_EQ(a[3], 4);
  EXPECT_EQ(a[4], 5);
  EXPECT_EQ(a.BinarySearch(7), 5);
  EXPECT_EQ(a.BinarySearch(2), -1);
  EXPECT_EQ(a.BinaryRangeSearchWithOperator(2), 0);
  EXPECT_EQ(a.BinaryRangeSearchWithOperator(0), -1);
}

TEST(Vector, NumbersMedianAndMovingAverage) {
  Vector_tmpl<double> v;
  for (double x : {4.0, 1.0, 3.0, 2.0}) v.AddLast(x);
  EXPECT_DOUBLE_EQ(v.MedianValueWithOperator(), 2.5);
  Vector_tmpl<double> empty(1, -9.0);
  EXPECT_DOUBLE_EQ(empty.MedianValueWithOperator(), -9.0);
  Vector_tmpl<double> m;
  for (double x : {1.0, 2.0, 3.0, 4.0, 5.0}) m.AddLast(x);
  m.MovingAverageValuesWithOperator(3);
  EXPECT_DOUBLE_EQ(m[0], 1.5);  // window clipped at the ends
  EXPECT_DOUBLE_EQ(m[2], 3.0);
  EXPECT_DOUBLE_EQ(m[4], 4.5);
  EXPECT_DOUBLE_EQ(m.SumDotProductValuesWithOperator(m), 1.5 * 1.5 + 4 + 9 + 16 + 4.5 * 4.5);
}

TEST(Vector, RandomizeIsAPermutationFixedByTheSeed) {
  auto shuffled = [] {
    Random_cl::iGlobalRandomizer.Reset(77);
    Vector_tmpl<int> v;
    for (int i = 0; i < 20; i++) v.AddLast(i);
    v.Randomize();
    return v;
  };
  Vector_tmpl<int> a = shuffled(), b = shuffled();
  int seen[20] = {};
  for (int i = 0; i < 20; i++) {
    EXPECT_EQ(a[i], b[i]);
    seen[a[i]]++;
  }
  for (int s : seen) EXPECT_EQ(s, 1);
}

TEST(Vector, NamesAndDeleteAll) {
  Vector_tmpl<Name_sptr> names;
  names.AddLast(Name_sptr("b"));
  names.AddLast(Name_sptr("a"));
  EXPECT_EQ(names.GetFirstAppearance(Name_sptr("a")), 1);
  Vector_tmpl<int*> owned(1, nullptr);
  owned.AddLast(new int(1));
  owned.AddLast(nullptr);
  owned.DeleteAll();
  EXPECT_EQ(owned.GetSize(), 0);
}
