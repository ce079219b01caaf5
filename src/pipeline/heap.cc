// Binary max-heaps of prioritised entries, and the top-k selection built on them.
#include "pipeline/heap.h"

Heap_cl::Heap_cl(int capacity) : iEntries(capacity, nullptr), iIsValid(1) {}

Heap_cl::~Heap_cl() { RemoveAll(); }

void Heap_cl::SiftUp(int i) {
  HeapEntry_cl* entry = iEntries[i];
  while (i > 0) {
    int parent = (i - 1) / 2;
    if (!entry->IHaveHigherPriority(iEntries[parent])) break;
    Place(i, iEntries[parent]);
    i = parent;
  }
  Place(i, entry);
}

void Heap_cl::Insert(HeapEntry_cl* entry, int keepHeap) {
  iEntries.AddLast(entry);
  Place(iEntries.GetSize() - 1, entry);
  if (keepHeap && iIsValid) SiftUp(iEntries.GetSize() - 1);
  else iIsValid = 0;
}

void Heap_cl::BuildHeap() {
  for (int i = iEntries.GetSize() / 2; i >= 0; i--) Heapify(i);
  iIsValid = 1;
}

void Heap_cl::Heapify(int i) {
  int size = iEntries.GetSize();
  for (;;) {
    int winner = i;
    int left = 2 * i + 1, right = 2 * i + 2;
    if (left < size && iEntries[left]->IHaveHigherPriority(iEntries[winner])) winner = left;
    if (right < size && iEntries[right]->IHaveHigherPriority(iEntries[winner])) winner = right;
    if (winner == i) return;
    HeapEntry_cl* moved = iEntries[i];
    Place(i, iEntries[winner]);
    Place(winner, moved);
    i = winner;
  }
}

HeapEntry_cl* Heap_cl::Maximum() {
  if (!iIsValid) BuildHeap();
  return iEntries.GetSize() > 0 ? iEntries[0] : nullptr;
}

HeapEntry_cl* Heap_cl::ExtractMax() {
  HeapEntry_cl* top = Maximum();
  if (!top) return nullptr;
  int last = iEntries.GetSize() - 1;
  if (last > 0) Place(0, iEntries[last]);
  iEntries.RemoveLastElement();
  if (last > 0) Heapify(0);
  if (iOwnsEntries) top->iHeapIndex = -1;
  return top;
}

void Heap_cl::UpdateKey(HeapEntry_cl* entry) {
  if (!iIsValid) return;
  if (!iOwnsEntries) {
    BuildHeap();
    return;
  }
  Heapify(entry->iHeapIndex);
  SiftUp(entry->iHeapIndex);
}

void Heap_cl::RemoveAll() {
  if (iOwnsEntries) iEntries.DeleteAll();
  else iEntries.RemoveAll();
  iIsValid = 1;
}

Heap_cl* Heap_cl::CopyTopK(int k) {
  Heap_cl* top = new Heap_cl(k > 0 ? k : 1);
  top->iOwnsEntries = 0;
  Vector_tmpl<HeapEntry_cl*> taken(k > 0 ? k : 1, nullptr);
  for (int i = 0; i < k; i++) {
    HeapEntry_cl* entry = ExtractMax();
    if (!entry) break;
    taken.AddLast(entry);
  }
  for (int i = 0; i < taken.GetSize(); i++) top->Insert(taken[i]);
  for (int i = 0; i < taken.GetSize(); i++) Insert(taken[i]);
  return top;
}

Vector_tmpl<int>* Heap_cl::GetTopK(const double* values, int n, int k) {
  Heap_cl heap(n > 0 ? n : 1);
  for (int i = 0; i < n; i++) heap.Insert(new ValsAndIndeces_cl(values[i], i), 0);
  Vector_tmpl<int>* top = new Vector_tmpl<int>(k > 0 ? k : 1, -1);
  for (int i = 0; i < k; i++) {
    HeapEntry_cl* entry = heap.ExtractMax();
    if (!entry) break;
    top->AddLast(static_cast<ValsAndIndeces_cl*>(entry)->iIndex);
    delete entry;
  }
  return top;
}
