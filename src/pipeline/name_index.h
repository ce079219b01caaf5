// The look-up index of name sets: from a name's text straight to its first entry in chain order.
#ifndef VORN_PIPELINE_NAME_INDEX_H
#define VORN_PIPELINE_NAME_INDEX_H

#include <cstdint>
#include <cstring>

#include "pipeline/name.h"

// The chains of a name set follow the name hash, whose few distinct values for names such as
// "probe_1".."probe_999999" make chains thousands long; the chains fix the visiting order, so
// look-ups go through this open-addressing table instead. Each slot holds one distinct name:
// the entry a chain walk would find first, and how many entries carry that name. Entry is the
// set's entry type, with iKey and iNext.
template <class Entry>
class NameIndex_tmpl {
 public:
  NameIndex_tmpl() = default;
  NameIndex_tmpl(const NameIndex_tmpl&) = delete;
  NameIndex_tmpl& operator=(const NameIndex_tmpl&) = delete;
  ~NameIndex_tmpl() { delete[] iSlots; }

  Entry* Find(const Name_sptr& key) const {
    if (iUsed == 0) return nullptr;
    const Slot& s = iSlots[SlotOf(key, Hash(key))];
    return s.iCount ? s.iFirst : nullptr;
  }
  // The entry whose name's text equals text, as Name_cl::IsEqual(const char*) compares.
  Entry* Find(const char* text) const {
    if (iUsed == 0) return nullptr;
    uint32_t h = Name_cl::ComputeIndexHash(text, text ? static_cast<int>(strlen(text)) : 0);
    for (uint32_t i = h & iMask; iSlots[i].iCount; i = (i + 1) & iMask) {
      const Name_cl* name = iSlots[i].iName;
      if (iSlots[i].iHash == h && name && name->IsEqual(text)) return iSlots[i].iFirst;
    }
    return nullptr;
  }

  // e has just been put at the head of its chain, so it is now the first entry with its name.
  void Linked(Entry* e) {
    if (!iSlots) Allocate(16);
    uint32_t h = Hash(e->iKey);
    Slot& s = iSlots[SlotOf(e->iKey, h)];
    if (s.iCount) {
      Place(s, e);
      s.iCount++;
      iShadowed++;
      return;
    }
    s = Slot{e, e->iKey.Get(), h, 1};
    if (++iUsed * 4 > (iMask + 1) * 3) Grow();
  }
  // e, the first entry with its name, has left its chain; e->iNext still leads to the entries
  // that followed it, among which the next one with the same name now comes first.
  void Unlinked(Entry* e) {
    uint32_t i = SlotOf(e->iKey, Hash(e->iKey));
    Slot& s = iSlots[i];
    if (s.iCount == 1) {
      Erase(i);
      return;
    }
    s.iCount--;
    iShadowed--;
    for (Entry* n = e->iNext; n; n = n->iNext)
      if (n->iKey == e->iKey) {
        Place(s, n);
        return;
      }
  }
  // After the chains were rebuilt: a name held by several entries may now meet another of them
  // first. Visiting the set in order finds the new first ones.
  template <class Set>
  void Refresh(const Set& set) {
    if (iShadowed == 0) return;
    for (Entry* e : set) {
      Slot& s = iSlots[SlotOf(e->iKey, Hash(e->iKey))];
      if (s.iCount > 1 && !(s.iCount & kSeen)) {
        Place(s, e);
        s.iCount |= kSeen;
      }
    }
    for (uint32_t i = 0; i <= iMask; i++) iSlots[i].iCount &= ~kSeen;
  }
  void Clear() {
    if (iSlots) memset(static_cast<void*>(iSlots), 0, sizeof(Slot) * (iMask + 1));
    iUsed = 0;
    iShadowed = 0;
  }

 private:
  // The name is the first entry's key object, kept here so that a look-up can compare names
  // while the entry itself is still being fetched.
  struct Slot {
    Entry* iFirst;
    const Name_cl* iName;
    uint32_t iHash;
    uint32_t iCount;  // entries with this name; 0 marks an empty slot
  };
  static constexpr uint32_t kSeen = 0x80000000u;

  static uint32_t Hash(const Name_sptr& key) {
    return key ? key->GetIndexHash() : Name_cl::ComputeIndexHash(nullptr, 0);
  }
  // Name equality as Name_sptr compares, from the slot's own copy of the name.
  static bool Matches(const Name_cl* name, const Name_sptr& key) {
    if (name == key.Get()) return true;
    return name && key && name->IsEqual(*key);
  }
  void Place(Slot& s, Entry* e) {
    s.iFirst = e;
    s.iName = e->iKey.Get();
  }

  // The slot holding key's name, or the empty slot where it would go.
  uint32_t SlotOf(const Name_sptr& key, uint32_t h) const {
    uint32_t i = h & iMask;
    while (iSlots[i].iCount && !(iSlots[i].iHash == h && Matches(iSlots[i].iName, key))) i = (i + 1) & iMask;
    return i;
  }
  void Allocate(uint32_t size) {
    iSlots = new Slot[size]();
    iMask = size - 1;
  }
  void Grow() {
    Slot* old = iSlots;
    uint32_t oldSize = iMask + 1;
    Allocate(oldSize * 2);
    for (uint32_t k = 0; k < oldSize; k++) {
      if (!old[k].iCount) continue;
      uint32_t i = old[k].iHash & iMask;
      while (iSlots[i].iCount) i = (i + 1) & iMask;
      iSlots[i] = old[k];
    }
    delete[] old;
  }
  // Linear-probing removal: later slots of the run move back into the hole when their home
  // position allows it, so no probe sequence is broken.
  void Erase(uint32_t hole) {
    for (uint32_t j = (hole + 1) & iMask; iSlots[j].iCount; j = (j + 1) & iMask) {
      uint32_t home = iSlots[j].iHash & iMask;
      if (((j - home) & iMask) >= ((j - hole) & iMask)) {
        iSlots[hole] = iSlots[j];
        hole = j;
      }
    }
    iSlots[hole] = Slot{};
    iUsed--;
  }

  Slot* iSlots = nullptr;
  uint32_t iMask = 0;
  uint32_t iUsed = 0;
  uint32_t iShadowed = 0;  // entries hidden behind an earlier one with the same name
};

#endif
