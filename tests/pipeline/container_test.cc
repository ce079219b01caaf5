// Bags of id-carrying objects: removal by id fills holes from the end; the cursor stops on the default.
#include "pipeline/container.h"

#include <gtest/gtest.h>

#include <vector>

#include "pipeline/id.h"

namespace {
std::vector<int> Ids(Container_tmpl<Id_cl*>& bag) {
  std::vector<int> ids;
  ContainerIter_tmpl<Id_cl*> iter(&bag);
  while (Id_cl* item = *iter++) ids.push_back(item->GetId());
  return ids;
}
}  // namespace

TEST(Container, RemoveTakesEveryElementWithTheIdAndFillsFromTheEnd) {
  Id_cl a(1), b(2), c(3), d(2), e(4);
  Container_tmpl<Id_cl*> bag(2, nullptr);
  for (Id_cl* x : {&a, &b, &c, &d, &e}) bag.Add(x);
  EXPECT_EQ(bag.GetSize(), 5);
  Id_cl key(2);
  EXPECT_EQ(bag.Remove(&key), 2);
  // b's hole takes e; d, by then the last element, simply goes.
  EXPECT_EQ(Ids(bag), (std::vector<int>{1, 4, 3}));
  EXPECT_EQ(bag.Remove(bag[0]), 1);  // an element of the bag itself as the key
  EXPECT_EQ(Ids(bag), (std::vector<int>{3, 4}));
}

TEST(Container, RemoveFirstPtrMatchesThePointerOnly) {
  Id_cl a(1), twin(1), c(3);
  Container_tmpl<Id_cl*> bag(4, nullptr);
  for (Id_cl* x : {&a, &twin, &c}) bag.Add(x);
  EXPECT_EQ(bag.RemoveFirstPtr(&twin), 1);
  EXPECT_EQ(bag.GetSize(), 2);
  EXPECT_EQ(bag[1], &c);
  EXPECT_EQ(bag.RemoveFirstPtr(&twin), 0);
  bag.ResetChanged();
  bag.RemoveAll();
  EXPECT_TRUE(bag.IsChanged());
  EXPECT_EQ(bag.GetSize(), 0);
}

TEST(ContainerIter, ProbeOutOfRangeGivesTheDefaultSlot) {
  Id_cl a(1);
  Container_tmpl<Id_cl*> bag(1, nullptr);
  bag.Add(&a);
  ContainerIter_tmpl<Id_cl*> iter(&bag);
  EXPECT_EQ(*iter.Probe(0), &a);
  EXPECT_EQ(*iter.Probe(1), nullptr);
  EXPECT_EQ(*iter.Probe(-1), nullptr);
  EXPECT_EQ(*iter++, &a);
  EXPECT_EQ(iter.GetPosition(), 1);
  EXPECT_EQ(*iter++, nullptr);
  iter.Reset();
  EXPECT_EQ(*iter.Current(), &a);
}
