// Conversions from vectors to the hash sets that index them.
#include "pipeline/converters.h"

namespace {
template <class Set, class Vec>
Set* IndexOf(const Vec& vec) {
  Set* set = new Set(vec.GetSize() + 1, -1);
  for (int i = 0; i < vec.GetSize(); i++) set->Insert(vec[i], i);
  return set;
}
}  // namespace

NameSet_tmpl<int>* Converters_cl::Vec2Hash(const Vector_tmpl<Name_sptr>& vec) {
  return IndexOf<NameSet_tmpl<int>>(vec);
}

IntSet_tmpl<int>* Converters_cl::Vec2Hash(const Vector_tmpl<int>& vec) { return IndexOf<IntSet_tmpl<int>>(vec); }
