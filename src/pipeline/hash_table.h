// The older fixed-size chained tables, keyed by name or by object id; they never grow.
#ifndef VORN_PIPELINE_HASH_TABLE_H
#define VORN_PIPELINE_HASH_TABLE_H

#include "pipeline/hash_set.h"
#include "pipeline/id.h"
#include "pipeline/name.h"

template <class K, class V>
class TableEntry_tmpl {
 public:
  TableEntry_tmpl(const K& key, const V& value, TableEntry_tmpl* next) : iKey(key), iValue(value), iNext(next) {}
  virtual ~TableEntry_tmpl() = default;

  K iKey;
  V iValue;
  TableEntry_tmpl* iNext;
};

template <class K, class V>
class Hash_tmpl {
 public:
  using Entry = TableEntry_tmpl<K, V>;

  Hash_tmpl(int size, const V& def) : iSize(size < 1 ? 1 : size), iNumEntries(0), iDefault(def) {
    iTable = new Entry*[iSize]();
  }
  Hash_tmpl(const Hash_tmpl&) = delete;
  Hash_tmpl& operator=(const Hash_tmpl&) = delete;
  virtual ~Hash_tmpl() {
    RemoveAll();
    delete[] iTable;
  }

  virtual int GetHashValue(const K& key) const = 0;
  virtual bool IsEqual(const K& a, const K& b) const { return a == b; }

  int GetSize() const { return iSize; }
  int GetNumEntries() const { return iNumEntries; }
  const V& GetDefault() const { return iDefault; }

  // Prepends without looking for the key, so a later entry shadows an earlier one.
  void Insert(const K& key, const V& value) {
    int b = GetHashValue(key);
    iTable[b] = new Entry(key, value, iTable[b]);
    iNumEntries++;
  }
  // The first match's value, or the default.
  V& GetEntry(const K& key) {
    Entry* e = Find(key);
    return e ? e->iValue : iDefault;
  }
  const V& GetEntry(const K& key) const {
    Entry* e = Find(key);
    return e ? e->iValue : iDefault;
  }
  bool Exists(const K& key) const { return Find(key) != nullptr; }
  V Remove(const K& key) {
    for (Entry** link = &iTable[GetHashValue(key)]; *link; link = &(*link)->iNext)
      if (IsEqual((*link)->iKey, key)) {
        Entry* e = *link;
        *link = e->iNext;
        V value = e->iValue;
        delete e;
        iNumEntries--;
        return value;
      }
    return iDefault;
  }
  void RemoveAll() {
    DeleteChains(iTable, iSize);
    iNumEntries = 0;
  }

  // Visits the slots in index order and each chain from its head.
  using Iterator = ChainIterator_tmpl<Entry>;
  Iterator begin() const { return Iterator(iTable, iSize, 0); }
  Iterator end() const { return Iterator(iTable, iSize, iSize); }

 protected:
  Entry* Find(const K& key) const {
    for (Entry* e = iTable[GetHashValue(key)]; e; e = e->iNext)
      if (IsEqual(e->iKey, key)) return e;
    return nullptr;
  }

  Entry** iTable;
  int iSize;
  int iNumEntries;
  V iDefault;
};

template <class V>
class SymbolTable_tmpl : public Hash_tmpl<Name_sptr, V> {
 public:
  SymbolTable_tmpl(int size, const V& def) : Hash_tmpl<Name_sptr, V>(size, def) {}
  int GetHashValue(const Name_sptr& key) const override {
    return HashToBucket(NameHashValue(key.CStr()), kHashMultiplier, this->iSize);
  }
};

// Keyed by object, found by the object's integer id.
template <class V>
class IdTable_tmpl : public Hash_tmpl<Id_cl*, V> {
 public:
  IdTable_tmpl(int size, const V& def) : Hash_tmpl<Id_cl*, V>(size, def) {}
  int GetHashValue(Id_cl* const& key) const override { return HashToBucket(key->GetId(), kHashMultiplier, this->iSize); }
  bool IsEqual(Id_cl* const& a, Id_cl* const& b) const override { return a->GetId() == b->GetId(); }
};

#endif
