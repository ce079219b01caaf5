// The universal growable sequence: growth, swap-removal and the sort show in output order.
#ifndef VORN_PIPELINE_VECTOR_H
#define VORN_PIPELINE_VECTOR_H

#include <ostream>

#include "pipeline/random.h"

// Abstract base of all vectors.
class VecInterface_cl {
 public:
  virtual void Swap(int i, int j) = 0;
  virtual int GetSize() const = 0;
  virtual void SetChanged() = 0;
  virtual void ResetChanged() = 0;
  virtual int IsChanged() const = 0;
  virtual void Reverse() = 0;
  virtual ~VecInterface_cl() = default;
};

// How two sorted sets relate (FindSet2SetRelationWithOperator).
enum Set2SetRelation_cl { SET_DISJOINT = 0, SET_EQUAL = 1, SET_SUBSET = 2, SET_SUPERSET = 3, SET_OVERLAP = 4 };

template <class T, class Self>
class GeneralVector_tmpl : public VecInterface_cl {
 public:
  explicit GeneralVector_tmpl(int capacity = 10, const T& def = T()) : iSize(0), iCapacity(capacity < 1 ? 1 : capacity), iChanged(1), iDefault(def) {
    iData = new T[iCapacity];
    for (int i = 0; i < iCapacity; i++) iData[i] = iDefault;
  }
  GeneralVector_tmpl(const GeneralVector_tmpl& other) : iSize(other.iSize), iCapacity(other.iCapacity), iChanged(1), iDefault(other.iDefault) {
    iData = new T[iCapacity];
    for (int i = 0; i < iCapacity; i++) iData[i] = i < iSize ? other.iData[i] : iDefault;
  }
  GeneralVector_tmpl& operator=(const GeneralVector_tmpl& other) {
    if (this == &other) return *this;
    T* data = new T[other.iCapacity];
    for (int i = 0; i < other.iCapacity; i++) data[i] = i < other.iSize ? other.iData[i] : other.iDefault;
    delete[] iData;
    iData = data;
    iSize = other.iSize;
    iCapacity = other.iCapacity;
    iDefault = other.iDefault;
    SetChanged();
    return *this;
  }
  ~GeneralVector_tmpl() override { delete[] iData; }

  // --- size and flags
  int GetSize() const override { return iSize; }
  int GetCapacity() const { return iCapacity; }
  const T& GetDefault() const { return iDefault; }
  void SetChanged() override { iChanged = 1; }
  void ResetChanged() override { iChanged = 0; }
  int IsChanged() const override { return iChanged; }

  // --- access, unchecked
  T& operator[](int i) { return iData[i]; }
  const T& operator[](int i) const { return iData[i]; }
  T* GetData() { return iData; }
  const T* GetData() const { return iData; }
  T& GetLast() { return iData[iSize - 1]; }
  void SetElement(int i, const T& value) {
    iData[i] = value;
    SetChanged();
  }
  // Stores at i, first growing the vector with default elements when i lies past its end.
  void Store(int i, const T& value) {
    if (i >= iSize) AddEmptyLast(i + 1 - iSize);
    SetElement(i, value);
  }
  void Swap(int i, int j) override {
    T tmp = iData[i];
    iData[i] = iData[j];
    iData[j] = tmp;
    SetChanged();
  }
  void Reverse() override {
    for (int i = 0, j = iSize - 1; i < j; i++, j--) Swap(i, j);
    SetChanged();
  }

  // --- grow
  void AddLast(const T& value) {
    if (iSize == iCapacity) Grow();
    iData[iSize++] = value;
    SetChanged();
  }
  void AddLast(int count, const T& value) {
    for (int i = 0; i < count; i++) AddLast(value);
  }
  void AddEmptyLast(int count) {
    for (int i = 0; i < count; i++) AddLast(iDefault);
  }
  void InsertAt(int index, const T& value) {
    if (iSize == iCapacity) Grow();
    for (int i = iSize; i > index; i--) iData[i] = iData[i - 1];
    iData[index] = value;
    iSize++;
    SetChanged();
  }
  void Concat(const GeneralVector_tmpl* other) {
    int n = other->iSize;  // a vector may be concatenated to itself
    for (int i = 0; i < n; i++) AddLast(other->iData[i]);
  }

  // --- shrink; vacated slots take the default element
  void RemoveLast(int count = 1) {
    if (count > iSize) count = iSize;
    for (int i = 0; i < count; i++) iData[--iSize] = iDefault;
    SetChanged();
  }
  void RemoveLastElement() { RemoveLast(1); }
  void RemoveAll() {
    for (int i = 0; i < iSize; i++) iData[i] = iDefault;
    iSize = 0;
    SetChanged();
  }
  // Swaps the first equal element with the last and drops it: order changes.
  int RemoveFirst(const T& value) {
    int i = GetFirstAppearance(value);
    if (i < 0) return 0;
    iData[i] = iData[iSize - 1];
    iData[--iSize] = iDefault;
    SetChanged();
    return 1;
  }
  int RemoveFirstKeepOrder(const T& value) {
    int i = GetFirstAppearance(value);
    if (i < 0) return 0;
    RemoveIndexKeepOrder(i);
    return 1;
  }
  void RemoveIndexKeepOrder(int index) {
    for (int i = index; i + 1 < iSize; i++) iData[i] = iData[i + 1];
    iData[--iSize] = iDefault;
    SetChanged();
  }
  // For vectors of pointers: deletes each non-null element, then empties.
  void DeleteAll() {
    for (int i = 0; i < iSize; i++)
      if (iData[i]) delete iData[i];
    RemoveAll();
  }

  // --- search, linear unless named binary
  int IsMember(const T& value) const { return GetFirstAppearance(value) >= 0; }
  int GetFirstAppearance(const T& value) const { return GetIndexOfNext(value, 0); }
  int GetIndexOfNext(const T& value, int from) const {
    for (int i = from < 0 ? 0 : from; i < iSize; i++)
      if (iData[i] == value) return i;
    return -1;
  }
  int GetIndexOfPrev(const T& value, int from) const {
    for (int i = from >= iSize ? iSize - 1 : from; i >= 0; i--)
      if (iData[i] == value) return i;
    return -1;
  }
  // Index of an element equal to value in an ascending vector, or -1.
  int BinarySearch(const T& value) const {
    int lo = 0, hi = iSize - 1;
    while (lo <= hi) {
      int mid = (lo + hi) / 2;
      if (iData[mid] < value) lo = mid + 1;
      else if (value < iData[mid]) hi = mid - 1;
      else return mid;
    }
    return -1;
  }
  // Index of the last element not greater than value in an ascending vector, -1 when all are greater.
  int BinaryRangeSearchWithOperator(const T& value) const {
    int lo = 0, hi = iSize - 1, found = -1;
    while (lo <= hi) {
      int mid = (lo + hi) / 2;
      if (value < iData[mid]) hi = mid - 1;
      else {
        found = mid;
        lo = mid + 1;
      }
    }
    return found;
  }
  int GetIndexOfMaxWithOperator() const {
    int best = iSize > 0 ? 0 : -1;
    for (int i = 1; i < iSize; i++)
      if (iData[best] < iData[i]) best = i;
    return best;
  }
  int GetIndexOfMinWithOperator() const {
    int best = iSize > 0 ? 0 : -1;
    for (int i = 1; i < iSize; i++)
      if (iData[i] < iData[best]) best = i;
    return best;
  }
  int IsSorted() const {
    for (int i = 1; i < iSize; i++)
      if (iData[i] < iData[i - 1]) return 0;
    return 1;
  }

  // --- sets on ascending vectors
  void FindIntersectionWithOperator(const GeneralVector_tmpl& other, GeneralVector_tmpl* out) const {
    int i = 0, j = 0;
    while (i < iSize && j < other.iSize) {
      if (iData[i] < other.iData[j]) i++;
      else if (other.iData[j] < iData[i]) j++;
      else {
        out->AddLast(iData[i]);
        i++;
        j++;
      }
    }
  }
  void UnionIntoMeWithOperator(const GeneralVector_tmpl& other) {
    GeneralVector_tmpl merged(iSize + other.iSize + 1, iDefault);
    int i = 0, j = 0;
    while (i < iSize || j < other.iSize) {
      if (j >= other.iSize || (i < iSize && iData[i] < other.iData[j])) merged.AddLast(iData[i++]);
      else if (i >= iSize || other.iData[j] < iData[i]) merged.AddLast(other.iData[j++]);
      else {
        merged.AddLast(iData[i++]);
        j++;
      }
    }
    *this = merged;
  }
  Set2SetRelation_cl FindSet2SetRelationWithOperator(const GeneralVector_tmpl& other) const {
    int i = 0, j = 0, common = 0;
    while (i < iSize && j < other.iSize) {
      if (iData[i] < other.iData[j]) i++;
      else if (other.iData[j] < iData[i]) j++;
      else {
        common++;
        i++;
        j++;
      }
    }
    if (common == 0) return SET_DISJOINT;
    if (common == iSize && common == other.iSize) return SET_EQUAL;
    if (common == iSize) return SET_SUBSET;
    if (common == other.iSize) return SET_SUPERSET;
    return SET_OVERLAP;
  }
  // Inserts before the first greater element, keeping an ascending vector ascending.
  void InsertToSortedVecWithOperator(const T& value) {
    int i = 0;
    while (i < iSize && !(value < iData[i])) i++;
    InsertAt(i, value);
  }

  // --- numbers
  T SumWithOperator() const {
    T sum = T();
    for (int i = 0; i < iSize; i++) sum += iData[i];
    return sum;
  }
  void AddValueWithOperator(const T& value) {
    for (int i = 0; i < iSize; i++) iData[i] += value;
    SetChanged();
  }
  void AddValuesWithOperator(const GeneralVector_tmpl& other) {
    for (int i = 0; i < iSize; i++) iData[i] += other.iData[i];
    SetChanged();
  }
  void DivideByValueWithOperator(const T& value) {
    for (int i = 0; i < iSize; i++) iData[i] /= value;
    SetChanged();
  }
  // Element-wise product in place.
  void DotProductValuesWithOperator(const GeneralVector_tmpl& other) {
    for (int i = 0; i < iSize; i++) iData[i] *= other.iData[i];
    SetChanged();
  }
  T SumDotProductValuesWithOperator(const GeneralVector_tmpl& other) const {
    T sum = T();
    for (int i = 0; i < iSize; i++) sum += iData[i] * other.iData[i];
    return sum;
  }
  // Sorts the vector itself, then takes the middle (mean of the two middles for an even count).
  T MedianValueWithOperator() {
    if (iSize == 0) return iDefault;
    SortWithOperator();
    if (iSize % 2 == 1) return iData[iSize / 2];
    return (iData[iSize / 2 - 1] + iData[iSize / 2]) / 2;
  }
  void MovingAverageValuesWithOperator(int window) {
    if (iSize == 0) return;
    int h = window / 2;
    T* averaged = new T[iSize];
    T sum = T();
    int lo = 0, hi = -1;  // the window [lo, hi] held in sum
    for (int i = 0; i < iSize; i++) {
      int wantLo = i - h < 0 ? 0 : i - h;
      int wantHi = i + h >= iSize ? iSize - 1 : i + h;
      while (hi < wantHi) sum += iData[++hi];
      while (lo < wantLo) sum -= iData[lo++];
      averaged[i] = sum / (hi - lo + 1);
    }
    for (int i = 0; i < iSize; i++) iData[i] = averaged[i];
    delete[] averaged;
    SetChanged();
  }

  // --- order. Quicksort above 9 elements, bubble sort below: neither is stable, ties fall as
  // these exact steps leave them.
  void SortWithOperator() { SortBy(ValueLess(), static_cast<NoOther*>(nullptr)); }
  void Sort() { SortBy(PointeeLess(), static_cast<NoOther*>(nullptr)); }
  template <class V>
  void SortWithOperatorAndSortOtherVecAccordingly(V* other) {
    SortBy(ValueLess(), other);
  }
  template <class V>
  void SortAndSortOtherVecAccordingly(V* other) {
    SortBy(PointeeLess(), other);
  }
  void Randomize() {
    for (int i = 0; i < iSize; i++) {
      int j = static_cast<int>(Random_cl::iGlobalRandomizer.SampleUniform() * iSize);
      Swap(i, j);
    }
  }

  // --- output
  void WriteFileWithOperator(std::ostream& out) const {
    out << "Vector = { ";
    for (int i = 0; i < iSize; i++) out << iData[i] << ' ';
    out << "}" << std::endl;
  }
  void WriteFile(std::ostream& out) const {
    out << "Vector = { ";
    for (int i = 0; i < iSize; i++) out << *iData[i] << ' ';
    out << "}" << std::endl;
  }
  void WriteMatlabFileWithOperator(std::ostream& out) const {
    out << "[ ";
    for (int i = 0; i < iSize; i++) out << iData[i] << ' ';
    out << "];" << std::endl;
  }

 protected:
  T* iData;
  int iSize;
  int iCapacity;
  int iChanged;
  T iDefault;

 private:
  struct NoOther {
    void Swap(int, int) {}
  };
  struct ValueLess {
    template <class U>
    bool operator()(const U& a, const U& b) const { return a < b; }
  };
  struct PointeeLess {
    template <class U>
    bool operator()(const U& a, const U& b) const { return *a < *b; }
  };

  void Grow() {
    int capacity = static_cast<int>(static_cast<float>(iSize) * 1.5f) + 1;
    T* data = new T[capacity];
    for (int i = 0; i < iSize; i++) data[i] = iData[i];
    for (int i = iSize; i < capacity; i++) data[i] = iDefault;
    delete[] iData;
    iData = data;
    iCapacity = capacity;
  }

  template <class Less, class V>
  void SwapBoth(int i, int j, V* other) {
    T tmp = iData[i];
    iData[i] = iData[j];
    iData[j] = tmp;
    if (other) other->Swap(i, j);
  }

  template <class Less, class V>
  void SortBy(Less less, V* other) {
    if (iSize > 9) QuickSort(0, iSize - 1, less, other);
    else BubbleSort(less, other);
    SetChanged();
  }

  template <class Less, class V>
  void QuickSort(int first, int last, Less less, V* other) {
    while (first < last) {
      SwapBoth<Less>(first, (first + last) / 2, other);
      T pivot = iData[first];
      int lastSmall = first;
      bool differ = false;
      for (int i = first + 1; i <= last; i++) {
        if (less(iData[i], pivot)) {
          differ = true;
          SwapBoth<Less>(++lastSmall, i, other);
        } else if (less(pivot, iData[i])) {
          differ = true;
        }
      }
      SwapBoth<Less>(first, lastSmall, other);
      if (!differ) return;
      QuickSort(first, lastSmall - 1, less, other);
      first = lastSmall + 1;
    }
  }

  template <class Less, class V>
  void BubbleSort(Less less, V* other) {
    bool swapped = true;
    while (swapped) {
      swapped = false;
      for (int i = 0; i + 1 < iSize; i++)
        if (less(iData[i + 1], iData[i])) {
          SwapBoth<Less>(i, i + 1, other);
          swapped = true;
        }
    }
  }
};

template <class T>
class Vector_tmpl : public GeneralVector_tmpl<T, Vector_tmpl<T>*> {
 public:
  explicit Vector_tmpl(int capacity = 10, const T& def = T()) : GeneralVector_tmpl<T, Vector_tmpl<T>*>(capacity, def) {}
};

#endif
