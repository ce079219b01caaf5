// The index of a domain value: a plain int, or one int per component of a composite domain.
#ifndef VORN_PROB_INDEX_H
#define VORN_PROB_INDEX_H

#include "pipeline/vector.h"

class Index_cl {
 public:
  Index_cl(int index = 0) : iIndex(index) {}  // NOLINT: plain ints convert implicitly
  // Takes the vector over; copies of the index deep-copy it.
  explicit Index_cl(Vector_tmpl<int>* indices) : iIndex(0), iIndices(indices) {}
  Index_cl(const Index_cl& other) : iIndex(other.iIndex), iIndices(CopyOf(other.iIndices)) {}
  Index_cl& operator=(const Index_cl& other) {
    if (this == &other) return *this;
    Vector_tmpl<int>* indices = CopyOf(other.iIndices);
    delete iIndices;
    iIndices = indices;
    iIndex = other.iIndex;
    return *this;
  }
  ~Index_cl() { delete iIndices; }

  int IsVector() const { return iIndices != nullptr; }
  Vector_tmpl<int>* GetIndices() const { return iIndices; }
  int GetNumIndices() const { return iIndices ? iIndices->GetSize() : 1; }
  // A plain index stands for itself at every position.
  int GetIndexAt(int i) const { return iIndices ? (*iIndices)[i] : iIndex; }
  operator int() const { return iIndex; }  // NOLINT
  bool operator==(const Index_cl& other) const {
    if (!iIndices || !other.iIndices) return !iIndices && !other.iIndices && iIndex == other.iIndex;
    if (iIndices->GetSize() != other.iIndices->GetSize()) return false;
    for (int i = 0; i < iIndices->GetSize(); i++)
      if ((*iIndices)[i] != (*other.iIndices)[i]) return false;
    return true;
  }

 private:
  static Vector_tmpl<int>* CopyOf(const Vector_tmpl<int>* v) { return v ? new Vector_tmpl<int>(*v) : nullptr; }

  int iIndex;
  Vector_tmpl<int>* iIndices = nullptr;
};

#endif
