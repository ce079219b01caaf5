// Binary max-heaps of prioritised entries, and the top-k selection built on them.
#ifndef VORN_PIPELINE_HEAP_H
#define VORN_PIPELINE_HEAP_H

#include "pipeline/vector.h"

// An element of a heap; the heap keeps iHeapIndex up to date.
class HeapEntry_cl {
 public:
  virtual ~HeapEntry_cl() = default;
  virtual int IHaveHigherPriority(const HeapEntry_cl* other) const = 0;
  int iHeapIndex = -1;
};

// The smallest value comes out first.
template <class T>
class ValueHeapEntry_tmpl : public HeapEntry_cl {
 public:
  explicit ValueHeapEntry_tmpl(const T& value) : iValue(value) {}
  int IHaveHigherPriority(const HeapEntry_cl* other) const override {
    return static_cast<const ValueHeapEntry_tmpl*>(other)->iValue > iValue;
  }
  T iValue;
};

template <class T>
class IndexedValueHeapEntry_tmpl : public ValueHeapEntry_tmpl<T> {
 public:
  IndexedValueHeapEntry_tmpl(const T& value, int index) : ValueHeapEntry_tmpl<T>(value), iIndex(index) {}
  int iIndex;
};

// The largest value comes out first.
class ValsAndIndeces_cl : public HeapEntry_cl {
 public:
  ValsAndIndeces_cl(double value, int index) : iValue(value), iIndex(index) {}
  int IHaveHigherPriority(const HeapEntry_cl* other) const override {
    return iValue > static_cast<const ValsAndIndeces_cl*>(other)->iValue;
  }
  double iValue;
  int iIndex;
};

// A heap owns its entries: RemoveAll and the destructor delete them. The heap made by CopyTopK
// only views entries that stay owned by their first heap: it neither deletes them nor moves their
// iHeapIndex, which keeps UpdateKey on the first heap right.
class Heap_cl {
 public:
  explicit Heap_cl(int capacity = 10);
  Heap_cl(const Heap_cl&) = delete;
  Heap_cl& operator=(const Heap_cl&) = delete;
  ~Heap_cl();

  int GetSize() const { return iEntries.GetSize(); }
  int IsValid() const { return iIsValid; }
  HeapEntry_cl* GetEntry(int i) const { return iEntries[i]; }

  // With keepHeap on a valid heap the entry rises to its place; otherwise it is appended and the
  // heap is rebuilt on the next read.
  void Insert(HeapEntry_cl* entry, int keepHeap = 1);
  void BuildHeap();
  HeapEntry_cl* Maximum();
  HeapEntry_cl* ExtractMax();
  void Heapify(int i);
  // After the entry's priority changed.
  void UpdateKey(HeapEntry_cl* entry);
  void RemoveAll();
  // A new heap of the up to k best entries; they also stay in this heap.
  Heap_cl* CopyTopK(int k);

  // Indices of the k largest values, largest first.
  static Vector_tmpl<int>* GetTopK(const double* values, int n, int k);

 private:
  void Place(int i, HeapEntry_cl* entry) {
    iEntries[i] = entry;
    if (iOwnsEntries) entry->iHeapIndex = i;
  }
  void SiftUp(int i);

  Vector_tmpl<HeapEntry_cl*> iEntries;
  int iIsValid;
  int iOwnsEntries = 1;
};

#endif
