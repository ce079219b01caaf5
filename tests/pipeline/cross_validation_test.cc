// Folds for cross-validation: sizes, partition and reproducibility under a seeded generator.
#include "pipeline/cross_validation.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace {
std::vector<int> Items(Vector_tmpl<int>* vec) {
  std::vector<int> items;
  for (int i = 0; i < vec->GetSize(); i++) items.push_back((*vec)[i]);
  return items;
}
}  // namespace

TEST(CrossValidation, FoldsPartitionTheItemsAndTrainingKeepsItemOrder) {
  Vector_tmpl<int> items;
  for (int i = 0; i < 11; i++) items.AddLast(i * 10);
  Random_cl::iGlobalRandomizer.Reset(7);
  CrossValidation_tmpl<int> cv(items, 3, -1);
  std::multiset<int> seen;
  for (int f = 0; f < cv.GetNumFolds(); f++) {
    std::vector<int> test = Items(cv.GetTestVec(f));
    std::vector<int> train = Items(cv.GetTrainVec(f));
    EXPECT_LE(test.size(), 11u / 3 + 1);
    EXPECT_EQ(test.size() + train.size(), 11u);
    EXPECT_TRUE(std::is_sorted(train.begin(), train.end()));
    for (int t : test) EXPECT_EQ(std::count(train.begin(), train.end(), t), 0);
    seen.insert(test.begin(), test.end());
  }
  EXPECT_EQ(seen.size(), 11u);
  EXPECT_EQ(std::set<int>(seen.begin(), seen.end()).size(), 11u);

  Random_cl::iGlobalRandomizer.Reset(7);
  CrossValidation_tmpl<int> again(items, 3, -1);
  for (int f = 0; f < 3; f++) EXPECT_EQ(Items(again.GetTestVec(f)), Items(cv.GetTestVec(f)));
}

TEST(CrossValidation, MoreFoldsThanItemsLeavesSomeFoldsEmpty) {
  Vector_tmpl<int> items;
  items.AddLast(1);
  items.AddLast(2);
  CrossValidation_tmpl<int> cv(items, 5, 0);
  int filled = 0;
  for (int f = 0; f < 5; f++) {
    EXPECT_LE(cv.GetTestVec(f)->GetSize(), 1);
    filled += cv.GetTestVec(f)->GetSize();
  }
  EXPECT_EQ(filled, 2);
  CrossValidation_tmpl<int> none(items, 0, 0);  // a fold count below 1 means one fold
  EXPECT_EQ(none.GetNumFolds(), 1);
  EXPECT_EQ(none.GetTestVec(0)->GetSize(), 2);
  EXPECT_EQ(none.GetTrainVec(0)->GetSize(), 0);
}
