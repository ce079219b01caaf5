// Precomputed index arithmetic between factor scopes.
#include "prob/factor_mapping.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

FactorMapping_cl::FactorMapping_cl(const FactorMapping_cl& other)
    : iNumSmall(other.iNumSmall),
      iNumPerSmall(other.iNumPerSmall),
      iFirst(new int[other.iNumSmall]),
      iSecond(new int[other.iNumPerSmall]),
      iCurrentSmall(other.iCurrentSmall),
      iCurrentInner(other.iCurrentInner) {
  std::memcpy(iFirst, other.iFirst, sizeof(int) * iNumSmall);
  std::memcpy(iSecond, other.iSecond, sizeof(int) * iNumPerSmall);
}

FactorMapping_cl::~FactorMapping_cl() {
  delete[] iFirst;
  delete[] iSecond;
}

namespace {

// Fills offsets[c] for each combination c of the chosen big positions (last one fastest): the sum of
// each position's value times its stride in the big table.
void FillOffsets(int* offsets, int count, const int* positions, const int* sizes, const int* strides, int n) {
  for (int c = 0; c < count; c++) {
    int rest = c;
    int offset = 0;
    for (int k = n - 1; k >= 0; k--) {
      int size = sizes[positions[k]];
      offset += (rest % size) * strides[positions[k]];
      rest /= size;
    }
    offsets[c] = offset;
  }
}

}  // namespace

void FactorMapping_cl::Reset(RvVector_sptr small, RvVector_sptr big) {
  int nBig = big->GetNumberOfVars();
  int nSmall = small->GetNumberOfVars();
  int* sizes = new int[nBig + 1];
  int* strides = new int[nBig + 1];
  int* inSmall = new int[nBig + 1];
  int* smallPositions = new int[nSmall + 1];
  int* restPositions = new int[nBig + 1];
  int stride = 1;
  for (int i = nBig - 1; i >= 0; i--) {
    sizes[i] = big->GetRv(i)->GetDomain()->GetDomainSize();
    strides[i] = stride;
    stride *= sizes[i];
    inSmall[i] = 0;
  }
  iNumSmall = 1;
  for (int i = 0; i < nSmall; i++) {
    int at = big->GetFirstEntry(SingleVar_sptr(small->GetRv(i)));
    if (at < 0) {
      std::cerr << "FactorMapping_cl::Reset: variable " << small->GetRv(i)->GetName() << " is not in the larger scope"
                << std::endl;
      abort();
    }
    smallPositions[i] = at;
    inSmall[at] = 1;
    iNumSmall *= sizes[at];
  }
  int nRest = 0;
  iNumPerSmall = 1;
  for (int i = 0; i < nBig; i++) {
    if (inSmall[i]) continue;
    restPositions[nRest++] = i;
    iNumPerSmall *= sizes[i];
  }
  delete[] iFirst;
  delete[] iSecond;
  iFirst = new int[iNumSmall];
  iSecond = new int[iNumPerSmall];
  FillOffsets(iFirst, iNumSmall, smallPositions, sizes, strides, nSmall);
  FillOffsets(iSecond, iNumPerSmall, restPositions, sizes, strides, nRest);
  iCurrentSmall = iCurrentInner = 0;
  delete[] sizes;
  delete[] strides;
  delete[] inSmall;
  delete[] smallPositions;
  delete[] restPositions;
}
