// A fixed-length ring of vectors, newest first, that re-uses the vectors it drops.
#ifndef VORN_PIPELINE_VECTOR_QUEUE_H
#define VORN_PIPELINE_VECTOR_QUEUE_H

#include "pipeline/vector.h"

// Get(0) is the newest vector. Pushing onto a full ring re-uses the oldest; disposed vectors wait
// on a free list for the next push, so a long run allocates at most length vectors.
template <class T>
class GeneralVectorQueue_tmpl {
 public:
  explicit GeneralVectorQueue_tmpl(int length, int vectorCapacity = 10, const T& def = T())
      : iLength(length < 1 ? 1 : length), iRing(iLength, nullptr), iFree(iLength, nullptr), iVectorCapacity(vectorCapacity), iDefault(def) {
    iRing.AddEmptyLast(iLength);
  }
  GeneralVectorQueue_tmpl(const GeneralVectorQueue_tmpl&) = delete;
  GeneralVectorQueue_tmpl& operator=(const GeneralVectorQueue_tmpl&) = delete;
  ~GeneralVectorQueue_tmpl() {
    iRing.DeleteAll();
    iFree.DeleteAll();
  }

  int GetLength() const { return iLength; }
  int GetCount() const { return iCount; }

  // A new, empty newest vector.
  Vector_tmpl<T>* PushNew() {
    Vector_tmpl<T>* vec = Take();
    vec->RemoveAll();
    Push(vec);
    return vec;
  }
  // A new newest vector holding a copy of the current newest (empty when there is none).
  Vector_tmpl<T>* PushCopy() {
    Vector_tmpl<T>* newest = Get(0);
    Vector_tmpl<T>* vec = Take();
    if (newest) *vec = *newest;
    else vec->RemoveAll();
    Push(vec);
    return vec;
  }
  // The vector pushed age pushes ago, or null.
  Vector_tmpl<T>* Get(int age) const { return age >= 0 && age < iCount ? iRing[Slot(age)] : nullptr; }
  // Takes the vector of that age out of the ring; the older ones move up by one.
  void Dispose(int age) {
    if (age < 0 || age >= iCount) return;
    iFree.AddLast(iRing[Slot(age)]);
    for (int a = age; a + 1 < iCount; a++) iRing[Slot(a)] = iRing[Slot(a + 1)];
    iRing[Slot(iCount - 1)] = nullptr;
    iCount--;
  }

 private:
  int Slot(int age) const { return (iNewest - age + iLength) % iLength; }
  // A full ring hands over its oldest vector; otherwise the free list or a new vector serves.
  Vector_tmpl<T>* Take() {
    if (iCount == iLength) {
      Vector_tmpl<T>* oldest = iRing[Slot(iCount - 1)];
      iRing[Slot(iCount - 1)] = nullptr;
      iCount--;
      return oldest;
    }
    if (iFree.GetSize() == 0) return new Vector_tmpl<T>(iVectorCapacity, iDefault);
    Vector_tmpl<T>* vec = iFree.GetLast();
    iFree.RemoveLastElement();
    return vec;
  }
  void Push(Vector_tmpl<T>* vec) {
    iNewest = (iNewest + 1) % iLength;
    iRing[iNewest] = vec;
    iCount++;
  }

  int iLength;
  Vector_tmpl<Vector_tmpl<T>*> iRing;
  Vector_tmpl<Vector_tmpl<T>*> iFree;
  int iVectorCapacity;
  T iDefault;
  int iNewest = 0;
  int iCount = 0;
};

#endif
