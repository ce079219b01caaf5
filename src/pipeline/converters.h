// Conversions from vectors to the hash sets that index them.
#ifndef VORN_PIPELINE_CONVERTERS_H
#define VORN_PIPELINE_CONVERTERS_H

#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"

class Converters_cl {
 public:
  // A new set from each element to its index (size + 1 buckets, default -1). A repeated element
  // is inserted again, so its last index shadows the earlier ones.
  static NameSet_tmpl<int>* Vec2Hash(const Vector_tmpl<Name_sptr>& vec);
  static IntSet_tmpl<int>* Vec2Hash(const Vector_tmpl<int>& vec);
};

#endif
