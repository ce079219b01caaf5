// The ring of vectors: newest first, fixed length, re-use of dropped vectors.
#include "pipeline/vector_queue.h"

#include <gtest/gtest.h>

TEST(VectorQueue, NewestFirstAndTheOldestDropsWhenFull) {
  GeneralVectorQueue_tmpl<int> queue(3, 4, -1);
  Vector_tmpl<int>* first = queue.PushNew();
  first->AddLast(1);
  for (int i = 2; i <= 3; i++) queue.PushNew()->AddLast(i);
  EXPECT_EQ(queue.GetCount(), 3);
  EXPECT_EQ((*queue.Get(0))[0], 3);
  EXPECT_EQ((*queue.Get(2))[0], 1);
  EXPECT_EQ(queue.Get(3), nullptr);
  Vector_tmpl<int>* fourth = queue.PushNew();  // drops the oldest and re-uses it, emptied
  EXPECT_EQ(fourth, first);
  EXPECT_EQ(fourth->GetSize(), 0);
  EXPECT_EQ(queue.GetCount(), 3);
  EXPECT_EQ((*queue.Get(2))[0], 2);
}

TEST(VectorQueue, PushCopyAndDispose) {
  GeneralVectorQueue_tmpl<int> queue(4);
  EXPECT_EQ(queue.PushCopy()->GetSize(), 0);
  queue.Get(0)->AddLast(5);
  Vector_tmpl<int>* copy = queue.PushCopy();
  EXPECT_NE(copy, queue.Get(1));
  EXPECT_EQ((*copy)[0], 5);
  copy->AddLast(6);
  EXPECT_EQ(queue.Get(1)->GetSize(), 1);
  queue.PushNew()->AddLast(7);
  Vector_tmpl<int>* middle = queue.Get(1);
  queue.Dispose(1);  // the older ones move up
  EXPECT_EQ(queue.GetCount(), 2);
  EXPECT_EQ((*queue.Get(0))[0], 7);
  EXPECT_EQ((*queue.Get(1))[0], 5);
  EXPECT_EQ(queue.PushNew(), middle);
  queue.Dispose(9);
  EXPECT_EQ(queue.GetCount(), 3);
}
