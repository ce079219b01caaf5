// Shuffling an exposed matrix: what each operation keeps together, the draw order and the seeding.
#include "prob/randomizable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

// Cells numbered 100 * row + column, so that each value tells where it started.
class Grid_cl : public Randomizable_cl {
 public:
  Grid_cl(int rows, int cols) : iMatrix(new Matrix_cl(rows, cols)) {
    for (int r = 0; r < rows; r++)
      for (int c = 0; c < cols; c++) iMatrix->SetElement(r, c, 100 * r + c);
  }
  Matrix_sptr GetMatrix() override { return iMatrix; }
  void SetMatrix(Matrix_sptr matrix) override { iMatrix = matrix; }
  int At(int r, int c) const { return static_cast<int>(iMatrix->GetElement(r, c)); }
  std::vector<int> Sorted() const {
    std::vector<int> all;
    for (int r = 0; r < iMatrix->GetNumRows(); r++)
      for (int c = 0; c < iMatrix->GetNumCols(); c++) all.push_back(At(r, c));
    std::sort(all.begin(), all.end());
    return all;
  }

  Matrix_sptr iMatrix;
};

std::vector<int> Start(int rows, int cols) { return Grid_cl(rows, cols).Sorted(); }

Vector_tmpl<int> List(std::initializer_list<int> values) {
  Vector_tmpl<int> v;
  for (int x : values) v.AddLast(x);
  return v;
}

}  // namespace

TEST(Randomizable, ConstructionSeedsFromTheClockThroughTheGlobalSeed) {
  Random_cl::SetGlobalRandSeed(-5);
  Grid_cl grid(1, 1);
  long seed = Random_cl::GetGlobalRandSeed();
  EXPECT_GT(seed, 0);
  EXPECT_LE(seed, 0xffffffffL);
  Random_cl same(seed);
  EXPECT_EQ(grid.GetRandom().SampleUniform(), same.SampleUniform());
}

TEST(Randomizable, EachOperationKeepsWhatItShouldTogether) {
  Grid_cl cells(6, 5), byRows(6, 5), byColumns(6, 5), theRows(6, 5), theColumns(6, 5);
  for (Grid_cl* g : {&cells, &byRows, &byColumns, &theRows, &theColumns}) g->GetRandom().Reset(99);
  cells.Permute(1.0);
  byRows.PermuteByRows(1.0);
  byColumns.PermuteByColumns(1.0);
  theRows.PermuteTheRows(1.0);
  theColumns.PermuteTheColumns(1.0);
  for (Grid_cl* g : {&cells, &byRows, &byColumns, &theRows, &theColumns}) EXPECT_EQ(g->Sorted(), Start(6, 5));
  EXPECT_NE(cells.iMatrix->GetElement(0, 0) + cells.iMatrix->GetElement(5, 4), 0 + 504);
  for (int r = 0; r < 6; r++)
    for (int c = 0; c < 5; c++) {
      EXPECT_EQ(byRows.At(r, c) / 100, r);               // a value stays in its row
      EXPECT_EQ(byColumns.At(r, c) % 100, c);            // or in its column
      EXPECT_EQ(theRows.At(r, c) % 100, c);              // whole rows move
      EXPECT_EQ(theRows.At(r, c) / 100, theRows.At(r, 0) / 100);
      EXPECT_EQ(theColumns.At(r, c) / 100, r);           // whole columns move
      EXPECT_EQ(theColumns.At(r, c) % 100, theColumns.At(0, c) % 100);
    }
  EXPECT_EQ(byColumns.iMatrix->GetNumRows(), 6);
}

TEST(Randomizable, ACellMovesOnADrawOfAtLeastOneMinusPThenRowThenColumn) {
  Grid_cl grid(3, 4);
  grid.GetRandom().Reset(7);
  Random_cl replay(7);
  Matrix_sptr model = grid.iMatrix->Copy();
  for (int r = 0; r < 3; r++)
    for (int c = 0; c < 4; c++) {
      if (replay.SampleUniform() < 1.0 - 0.4) continue;
      int r2 = static_cast<int>(replay.SampleUniform() * 3);
      int c2 = static_cast<int>(replay.SampleUniform() * 4);
      model->SwapElements(r, c, r2, c2);
    }
  grid.Permute(0.4);
  for (int r = 0; r < 3; r++)
    for (int c = 0; c < 4; c++) EXPECT_EQ(grid.iMatrix->GetElement(r, c), model->GetElement(r, c));
  Grid_cl still(3, 4);
  still.Permute(0.0);
  EXPECT_EQ(still.At(2, 3), 203);
}

TEST(Randomizable, GivenColumnsAndRowsBoundTheShuffle) {
  Grid_cl grid(8, 4);
  grid.GetRandom().Reset(3);
  Vector_tmpl<int> columns = List({1, 3});
  grid.PermuteByRowsInGivenColumns(&columns, 1.0);
  EXPECT_EQ(grid.Sorted(), Start(8, 4));
  int moved = 0;
  for (int r = 0; r < 8; r++) {
    EXPECT_EQ(grid.At(r, 0), 100 * r);
    EXPECT_EQ(grid.At(r, 2), 100 * r + 2);
    EXPECT_EQ(grid.At(r, 1) % 100, 1);
    moved += grid.At(r, 3) != 100 * r + 3;
  }
  EXPECT_GT(moved, 0);

  Grid_cl cluster(8, 4);
  cluster.GetRandom().Reset(3);
  Vector_tmpl<int> rows = List({2, 5, 6});
  cluster.PermuteOnlyClusterOfRowsInGivenColumns(&rows, &columns, 1.0);
  for (int r = 0; r < 8; r++)
    for (int c = 0; c < 4; c++) {
      bool free = (r == 2 || r == 5 || r == 6) && (c == 1 || c == 3);
      if (!free) EXPECT_EQ(cluster.At(r, c), 100 * r + c);
      else EXPECT_TRUE(cluster.At(r, c) % 100 == c && rows.IsMember(cluster.At(r, c) / 100));
    }
}
