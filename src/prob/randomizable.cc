// Shuffling the matrix that an object exposes: cells, rows, columns, or cells within chosen lines.
#include "prob/randomizable.h"

Randomizable_cl::Randomizable_cl() {
  Random_cl::SetGlobalRandSeed(static_cast<long>(GetLinuxTime() & 0xffffffffLL));
  iRandom.Reset(Random_cl::GetGlobalRandSeed());
}

void Randomizable_cl::TransposeStored() { SetMatrix(GetMatrix()->Transpose()); }

void Randomizable_cl::Permute(double p) {
  Matrix_sptr m = GetMatrix();
  int rows = m->GetNumRows(), cols = m->GetNumCols();
  for (int r = 0; r < rows; r++)
    for (int c = 0; c < cols; c++) {
      if (!Moves(p)) continue;
      int r2 = Draw(rows);
      int c2 = Draw(cols);
      m->SwapElements(r, c, r2, c2);
    }
  SetMatrix(m);
}

void Randomizable_cl::PermuteByRows(double p) {
  Matrix_sptr m = GetMatrix();
  int rows = m->GetNumRows(), cols = m->GetNumCols();
  for (int r = 0; r < rows; r++)
    for (int c = 0; c < cols; c++)
      if (Moves(p)) m->SwapElements(r, c, r, Draw(cols));
  SetMatrix(m);
}

void Randomizable_cl::PermuteByColumns(double p) {
  TransposeStored();
  PermuteByRows(p);
  TransposeStored();
}

void Randomizable_cl::PermuteTheRows(double p) {
  Matrix_sptr m = GetMatrix();
  int rows = m->GetNumRows();
  for (int r = 0; r < rows; r++)
    if (Moves(p)) m->SwapRows(r, Draw(rows));
  SetMatrix(m);
}

void Randomizable_cl::PermuteTheColumns(double p) {
  TransposeStored();
  PermuteTheRows(p);
  TransposeStored();
}

void Randomizable_cl::PermuteOnlyClusterOfRowsInGivenColumns(const Vector_tmpl<int>* rows,
                                                             const Vector_tmpl<int>* columns, double p) {
  Matrix_sptr m = GetMatrix();
  int n = rows->GetSize();
  for (int i = 0; i < n; i++)
    for (int k = 0; k < columns->GetSize(); k++) {
      if (!Moves(p)) continue;
      int c = (*columns)[k];
      m->SwapElements((*rows)[i], c, (*rows)[Draw(n)], c);
    }
  SetMatrix(m);
}

// All rows form one cluster: drawing a position in the list of all rows draws the row itself.
void Randomizable_cl::PermuteByRowsInGivenColumns(const Vector_tmpl<int>* columns, double p) {
  int rows = GetMatrix()->GetNumRows();
  Vector_tmpl<int> all(rows > 0 ? rows : 1);
  for (int r = 0; r < rows; r++) all.AddLast(r);
  PermuteOnlyClusterOfRowsInGivenColumns(&all, columns, p);
}
