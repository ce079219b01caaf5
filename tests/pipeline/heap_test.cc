// Heaps: extraction order under ties, deferred rebuilding, key updates and top-k selection.
#include "pipeline/heap.h"

#include <gtest/gtest.h>

#include <vector>

namespace {
std::vector<int> Drain(Heap_cl& heap) {
  std::vector<int> order;
  while (HeapEntry_cl* e = heap.ExtractMax()) {
    order.push_back(static_cast<ValsAndIndeces_cl*>(e)->iIndex);
    delete e;
  }
  return order;
}
}  // namespace

TEST(Heap, EqualPrioritiesComeOutInTheOrderTheSiftingLeaves) {
  // Traced by hand: the 7 rises past two equal 5s; each extraction moves the last entry to the
  // top, where an equal child does not displace it.
  Heap_cl heap(2);
  double values[] = {5, 5, 5, 7, 5};
  for (int i = 0; i < 5; i++) heap.Insert(new ValsAndIndeces_cl(values[i], i));
  EXPECT_EQ(Drain(heap), (std::vector<int>{3, 4, 1, 2, 0}));
  EXPECT_EQ(heap.ExtractMax(), nullptr);
  EXPECT_EQ(heap.Maximum(), nullptr);
}

TEST(Heap, DeferredInsertRebuildsOnFirstReadAndLeftChildWinsTies) {
  Heap_cl heap;
  double values[] = {1, 5, 5};
  for (int i = 0; i < 3; i++) heap.Insert(new ValsAndIndeces_cl(values[i], i), 0);
  EXPECT_FALSE(heap.IsValid());
  EXPECT_EQ(static_cast<ValsAndIndeces_cl*>(heap.Maximum())->iIndex, 1);
  EXPECT_TRUE(heap.IsValid());
  EXPECT_EQ(Drain(heap), (std::vector<int>{1, 2, 0}));
}

TEST(Heap, ValueEntriesComeOutSmallestFirstAndIndicesStayCurrent) {
  Heap_cl heap;
  std::vector<IndexedValueHeapEntry_tmpl<int>*> entries;
  for (int v : {4, 8, 1, 9, 3, 7}) {
    entries.push_back(new IndexedValueHeapEntry_tmpl<int>(v, static_cast<int>(entries.size())));
    heap.Insert(entries.back());
  }
  for (int i = 0; i < heap.GetSize(); i++) EXPECT_EQ(heap.GetEntry(i)->iHeapIndex, i);
  entries[3]->iValue = 0;  // 9 becomes the smallest
  heap.UpdateKey(entries[3]);
  entries[2]->iValue = 100;  // 1 becomes the largest
  heap.UpdateKey(entries[2]);
  std::vector<int> order;
  while (HeapEntry_cl* e = heap.ExtractMax()) {
    order.push_back(static_cast<IndexedValueHeapEntry_tmpl<int>*>(e)->iValue);
    delete e;
  }
  EXPECT_EQ(order, (std::vector<int>{0, 3, 4, 7, 8, 100}));
}

TEST(Heap, CopyTopKLeavesTheOriginalWhole) {
  Heap_cl heap;
  for (int i = 0; i < 6; i++) heap.Insert(new ValsAndIndeces_cl(i * 1.5, i));
  Heap_cl* top = heap.CopyTopK(4);
  EXPECT_EQ(top->GetSize(), 4);
  EXPECT_EQ(heap.GetSize(), 6);
  for (int i = 0; i < heap.GetSize(); i++) EXPECT_EQ(heap.GetEntry(i)->iHeapIndex, i);
  EXPECT_EQ(static_cast<ValsAndIndeces_cl*>(top->ExtractMax())->iIndex, 5);
  EXPECT_EQ(static_cast<ValsAndIndeces_cl*>(top->ExtractMax())->iIndex, 4);
  delete top;  // entries belong to the original
  EXPECT_EQ(Drain(heap), (std::vector<int>{5, 4, 3, 2, 1, 0}));
  Heap_cl* none = heap.CopyTopK(3);
  EXPECT_EQ(none->GetSize(), 0);
  delete none;
}

TEST(Heap, GetTopKGivesIndicesOfLargestFirst) {
  // Ties traced by hand through the build and the extractions.
  double values[] = {2, 9, 9, 1, 9};
  Vector_tmpl<int>* top = Heap_cl::GetTopK(values, 5, 3);
  ASSERT_EQ(top->GetSize(), 3);
  EXPECT_EQ((*top)[0], 1);
  EXPECT_EQ((*top)[1], 4);
  EXPECT_EQ((*top)[2], 2);
  delete top;
  Vector_tmpl<int>* all = Heap_cl::GetTopK(values, 5, 10);
  EXPECT_EQ(all->GetSize(), 5);
  EXPECT_EQ((*all)[4], 3);
  delete all;
}
