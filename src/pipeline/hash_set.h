// Chained hash tables from key to value, whose visiting order is part of the output of many steps.
#ifndef VORN_PIPELINE_HASH_SET_H
#define VORN_PIPELINE_HASH_SET_H

#include <cmath>
#include <cstdint>

#include "pipeline/id.h"
#include "pipeline/name.h"
#include "pipeline/name_index.h"
#include "pipeline/vector.h"

// The multiplicative finish shared by every key kind: the fractional part of key * multiplier
// (taken towards minus infinity) scaled to the bucket count.
inline int HashToBucket(double key, double multiplier, int numBuckets) {
  double x = key * multiplier;
  double whole = std::trunc(x);
  if (x < 0) whole -= 1.0;
  double scaled = numBuckets * (x - whole);
  // Keys beyond the exact range of doubles (or not a number) all fall in bucket 0.
  if (!(scaled >= 0.0 && scaled < numBuckets)) return 0;
  return static_cast<int>(scaled);
}

inline constexpr double kHashMultiplier = 0.6180339887;
inline constexpr double kRealHashMultiplier = 1000.6180339887;

// The name hash: each signed character plus twice the running value, in wrapping 32-bit arithmetic.
inline int NameHashValue(const char* text) {
  uint32_t h = 0;
  if (text)
    for (const signed char* c = reinterpret_cast<const signed char*>(text); *c; c++)
      h = static_cast<uint32_t>(static_cast<int32_t>(*c)) + 2u * h;
  return static_cast<int32_t>(h);
}

// Visits chained buckets in index order and each chain from its head. Entry has iNext.
template <class Entry>
class ChainIterator_tmpl {
 public:
  ChainIterator_tmpl(Entry* const* buckets, int count, int bucket) : iBuckets(buckets), iCount(count), iBucket(bucket) {
    SkipEmpty();
  }
  Entry* operator*() const { return iEntry; }
  ChainIterator_tmpl& operator++() {
    iEntry = iEntry->iNext;
    if (!iEntry) {
      iBucket++;
      SkipEmpty();
    }
    return *this;
  }
  bool operator!=(const ChainIterator_tmpl& other) const { return iEntry != other.iEntry; }

 private:
  void SkipEmpty() {
    while (!iEntry && iBucket < iCount) {
      iEntry = iBuckets[iBucket];
      if (!iEntry) iBucket++;
    }
  }
  Entry* const* iBuckets;
  int iCount;
  int iBucket;
  Entry* iEntry = nullptr;
};

// Deletes every entry of every chain and leaves the buckets empty.
template <class Entry>
void DeleteChains(Entry** buckets, int count) {
  for (int b = 0; b < count; b++) {
    for (Entry* e = buckets[b]; e;) {
      Entry* next = e->iNext;
      delete e;
      e = next;
    }
    buckets[b] = nullptr;
  }
}

template <class K, class V>
struct HashEntry_tmpl {
  K iKey;
  V iValue;
  HashEntry_tmpl* iNext;
  HashEntry_tmpl* iPrev;  // lets a found entry be unlinked without walking its chain
};

template <class K, class V>
class HashSet_tmpl {
 public:
  using Entry = HashEntry_tmpl<K, V>;

  HashSet_tmpl(int buckets, const V& def, double loadFactor = 0.5, double growthFactor = 2.0)
      : iNumEntries(0), iNumBuckets(buckets < 1 ? 1 : buckets), iDefault(def), iLoadFactor(loadFactor), iGrowthFactor(growthFactor) {
    iBuckets = new Entry*[iNumBuckets]();
  }
  HashSet_tmpl(const HashSet_tmpl&) = delete;
  HashSet_tmpl& operator=(const HashSet_tmpl&) = delete;
  virtual ~HashSet_tmpl() {
    RemoveAll();
    delete[] iBuckets;
  }

  virtual int GetHashValue(const K& key) const = 0;
  virtual bool IsEqual(const K& a, const K& b) const { return a == b; }

  int GetSize() const { return iNumEntries; }
  int GetNumBuckets() const { return iNumBuckets; }
  const V& GetDefault() const { return iDefault; }

  // No check for an existing key: a second insert shadows the first until it is removed.
  void Insert(const K& key, const V& value) {
    if (iNumEntries > iNumBuckets * iLoadFactor) Expand();
    int b = GetHashValue(key);
    Entry* e = new Entry{key, value, iBuckets[b], nullptr};
    if (e->iNext) e->iNext->iPrev = e;
    iBuckets[b] = e;
    iNumEntries++;
    Linked(e);
  }
  // The first match's value, or the default: a stored default reads as absent.
  V& GetEntry(const K& key) {
    Entry* e = Find(key);
    return e ? e->iValue : iDefault;
  }
  const V& GetEntry(const K& key) const {
    Entry* e = Find(key);
    return e ? e->iValue : iDefault;
  }
  bool Exists(const K& key) const { return Find(key) != nullptr; }
  int Increment(const K& key, const V& delta) {
    if (Entry* e = Find(key)) {
      e->iValue += delta;
      return 1;
    }
    V value = iDefault;
    value += delta;
    Insert(key, value);
    return 0;
  }
  V Remove(const K& key) {
    Entry* e = Unlink(key);
    if (!e) return iDefault;
    V value = e->iValue;
    delete e;
    return value;
  }
  void RemoveAll() {
    DeleteChains(iBuckets, iNumBuckets);
    iNumEntries = 0;
    Cleared();
  }
  // The Delete forms also delete the value objects, the key objects, or both.
  void Delete(const K& key) {
    Entry* e = Unlink(key);
    if (!e) return;
    delete e->iValue;
    delete e;
  }
  void DeleteIncludingKey(const K& key) {
    Entry* e = Unlink(key);
    if (!e) return;
    delete e->iKey;
    delete e->iValue;
    delete e;
  }
  void DeleteAll() {
    for (Entry* e : *this) delete e->iValue;
    RemoveAll();
  }
  void DeleteAllKeys() {
    for (Entry* e : *this) delete e->iKey;
    RemoveAll();
  }
  void DeleteAllIncludingKeys() {
    for (Entry* e : *this) {
      delete e->iKey;
      delete e->iValue;
    }
    RemoveAll();
  }
  // Inserts every entry of the argument, in its visiting order.
  void CopyMyValues(const HashSet_tmpl& other) {
    for (Entry* e : other) Insert(e->iKey, e->iValue);
  }
  void CloneMyValues(const HashSet_tmpl& other) {
    for (Entry* e : other) Insert(e->iKey, e->iValue ? e->iValue->Clone() : iDefault);
  }

  void Expand() {
    int newCount = static_cast<int>(iNumBuckets * iGrowthFactor);
    if (newCount <= iNumBuckets) newCount = iNumBuckets + 1;
    Entry** old = iBuckets;
    int oldCount = iNumBuckets;
    iBuckets = new Entry*[newCount]();
    iNumBuckets = newCount;
    for (int b = 0; b < oldCount; b++) {
      for (Entry* e = old[b]; e;) {
        Entry* next = e->iNext;
        int nb = GetHashValue(e->iKey);
        e->iNext = iBuckets[nb];
        e->iPrev = nullptr;
        if (e->iNext) e->iNext->iPrev = e;
        iBuckets[nb] = e;
        e = next;
      }
    }
    delete[] old;
    Rehashed();
  }

  // Visits the buckets in index order and each chain from its head.
  using Iterator = ChainIterator_tmpl<Entry>;
  Iterator begin() const { return Iterator(iBuckets, iNumBuckets, 0); }
  Iterator end() const { return Iterator(iBuckets, iNumBuckets, iNumBuckets); }

 protected:
  // The first match in chain order, which is what every look-up returns.
  virtual Entry* Find(const K& key) const {
    for (Entry* e = iBuckets[GetHashValue(key)]; e; e = e->iNext)
      if (IsEqual(e->iKey, key)) return e;
    return nullptr;
  }
  // Takes the first match out of its chain; the entry keeps its iNext for Unlinked.
  Entry* Unlink(const K& key) {
    Entry* e = Find(key);
    if (!e) return nullptr;
    if (e->iPrev) e->iPrev->iNext = e->iNext;
    else iBuckets[GetHashValue(e->iKey)] = e->iNext;
    if (e->iNext) e->iNext->iPrev = e->iPrev;
    iNumEntries--;
    Unlinked(e);
    return e;
  }
  // Hooks for a look-up index kept beside the chains: e was put at the head of its chain; e was
  // taken out; the chains were rebuilt by Expand; the set was emptied.
  virtual void Linked(Entry* e) {}
  virtual void Unlinked(Entry* e) {}
  virtual void Rehashed() {}
  virtual void Cleared() {}

  Entry** iBuckets;
  int iNumEntries;
  int iNumBuckets;
  V iDefault;
  double iLoadFactor;
  double iGrowthFactor;
};

template <class V>
class NameSet_tmpl : public HashSet_tmpl<Name_sptr, V> {
 public:
  using Entry = typename HashSet_tmpl<Name_sptr, V>::Entry;

  NameSet_tmpl(int buckets, const V& def, double loadFactor = 0.5, double growthFactor = 2.0)
      : HashSet_tmpl<Name_sptr, V>(buckets, def, loadFactor, growthFactor) {}
  int GetHashValue(const Name_sptr& key) const override {
    return HashToBucket(NameHashValue(key.CStr()), kHashMultiplier, this->iNumBuckets);
  }
  bool IsEqual(const Name_sptr& a, const Name_sptr& b) const override { return a == b; }
  using HashSet_tmpl<Name_sptr, V>::GetEntry;
  using HashSet_tmpl<Name_sptr, V>::Exists;
  // Look-up by plain text, without making a name.
  const V& GetEntry(const char* text) const {
    Entry* e = iIndex.Find(text);
    return e ? e->iValue : this->iDefault;
  }
  bool Exists(const char* text) const { return iIndex.Find(text) != nullptr; }
  // A new set of the entries whose key is in keep, with this set's values.
  NameSet_tmpl* Reduce(const NameSet_tmpl& keep) const {
    NameSet_tmpl* reduced = new NameSet_tmpl(this->iNumBuckets, this->iDefault, this->iLoadFactor, this->iGrowthFactor);
    for (auto* e : *this)
      if (keep.Exists(e->iKey)) reduced->Insert(e->iKey, e->iValue);
    return reduced;
  }

 protected:
  // Look-ups go through the index; the chains keep only the visiting order.
  Entry* Find(const Name_sptr& key) const override { return iIndex.Find(key); }
  void Linked(Entry* e) override { iIndex.Linked(e); }
  void Unlinked(Entry* e) override { iIndex.Unlinked(e); }
  void Rehashed() override { iIndex.Refresh(*this); }
  void Cleared() override { iIndex.Clear(); }

 private:
  NameIndex_tmpl<Entry> iIndex;
};

template <class V>
class IntSet_tmpl : public HashSet_tmpl<int, V> {
 public:
  IntSet_tmpl(int buckets, const V& def, double loadFactor = 0.5, double growthFactor = 2.0)
      : HashSet_tmpl<int, V>(buckets, def, loadFactor, growthFactor) {}
  int GetHashValue(const int& key) const override { return HashToBucket(key, kHashMultiplier, this->iNumBuckets); }
};

template <class V>
class IdSet_tmpl : public HashSet_tmpl<Id_cl*, V> {
 public:
  IdSet_tmpl(int buckets, const V& def, double loadFactor = 0.5, double growthFactor = 2.0)
      : HashSet_tmpl<Id_cl*, V>(buckets, def, loadFactor, growthFactor) {}
  int GetHashValue(Id_cl* const& key) const override { return HashToBucket(key->GetId(), kHashMultiplier, this->iNumBuckets); }
  bool IsEqual(Id_cl* const& a, Id_cl* const& b) const override { return a->GetId() == b->GetId(); }
};

template <class V>
class DoubleSet_tmpl : public HashSet_tmpl<double, V> {
 public:
  DoubleSet_tmpl(int buckets, const V& def, double loadFactor = 0.5, double growthFactor = 2.0)
      : HashSet_tmpl<double, V>(buckets, def, loadFactor, growthFactor) {}
  int GetHashValue(const double& key) const override { return HashToBucket(key, kRealHashMultiplier, this->iNumBuckets); }
};

template <class E, class V>
class NumVecSet_tmpl : public HashSet_tmpl<Vector_tmpl<E>*, V> {
 public:
  NumVecSet_tmpl(int buckets, const V& def, double multiplier, double loadFactor, double growthFactor)
      : HashSet_tmpl<Vector_tmpl<E>*, V>(buckets, def, loadFactor, growthFactor), iMultiplier(multiplier) {}
  int GetHashValue(Vector_tmpl<E>* const& key) const override {
    E sum = E();
    for (int i = 0; i < key->GetSize(); i++) sum += (*key)[i];
    return HashToBucket(sum, iMultiplier, this->iNumBuckets);
  }
  bool IsEqual(Vector_tmpl<E>* const& a, Vector_tmpl<E>* const& b) const override {
    if (a->GetSize() != b->GetSize()) return false;
    for (int i = 0; i < a->GetSize(); i++)
      if (!((*a)[i] == (*b)[i])) return false;
    return true;
  }

 private:
  double iMultiplier;
};

template <class V>
class IntVecSet_tmpl : public NumVecSet_tmpl<int, V> {
 public:
  IntVecSet_tmpl(int buckets, const V& def, double loadFactor = 0.5, double growthFactor = 2.0)
      : NumVecSet_tmpl<int, V>(buckets, def, kHashMultiplier, loadFactor, growthFactor) {}
};

template <class V>
class DoubleVecSet_tmpl : public NumVecSet_tmpl<double, V> {
 public:
  DoubleVecSet_tmpl(int buckets, const V& def, double loadFactor = 0.5, double growthFactor = 2.0)
      : NumVecSet_tmpl<double, V>(buckets, def, kRealHashMultiplier, loadFactor, growthFactor) {}
};

template <class V>
class IntVecVecSet_tmpl : public HashSet_tmpl<Vector_tmpl<Vector_tmpl<int>*>*, V> {
 public:
  using Key = Vector_tmpl<Vector_tmpl<int>*>*;
  IntVecVecSet_tmpl(int buckets, const V& def, double loadFactor = 0.5, double growthFactor = 2.0)
      : HashSet_tmpl<Key, V>(buckets, def, loadFactor, growthFactor) {}
  int GetHashValue(const Key& key) const override {
    int sum = 0;
    for (int i = 0; i < key->GetSize(); i++)
      for (int j = 0; j < (*key)[i]->GetSize(); j++) sum += (*(*key)[i])[j];
    return HashToBucket(sum, kHashMultiplier, this->iNumBuckets);
  }
  bool IsEqual(const Key& a, const Key& b) const override {
    if (a->GetSize() != b->GetSize()) return false;
    for (int i = 0; i < a->GetSize(); i++) {
      Vector_tmpl<int>& x = *(*a)[i];
      Vector_tmpl<int>& y = *(*b)[i];
      if (x.GetSize() != y.GetSize()) return false;
      for (int j = 0; j < x.GetSize(); j++)
        if (x[j] != y[j]) return false;
    }
    return true;
  }
};

// An insertion-ordered vector paired with a hash set over the same values.
template <class K, class Set, class V>
class VectorHash_tmpl {
 public:
  VectorHash_tmpl(int capacity, const V& def, int buckets = 32) : iVector(capacity, def), iSet(buckets, def) {}
  void AddLast(const K& key, const V& value) {
    iVector.AddLast(value);
    iSet.Insert(key, value);
  }
  int GetSize() const { return iVector.GetSize(); }
  V& operator[](int i) { return iVector[i]; }
  const V& operator[](int i) const { return iVector[i]; }
  const V& GetEntry(const K& key) const { return iSet.GetEntry(key); }
  Vector_tmpl<V>& GetVector() { return iVector; }
  const Vector_tmpl<V>& GetVector() const { return iVector; }
  Set& GetSet() { return iSet; }
  const Set& GetSet() const { return iSet; }

 private:
  Vector_tmpl<V> iVector;
  Set iSet;
};

template <class V>
using VectorNameHash_tmpl = VectorHash_tmpl<Name_sptr, NameSet_tmpl<V>, V>;
template <class V>
using VectorIntHash_tmpl = VectorHash_tmpl<int, IntSet_tmpl<V>, V>;

#endif
