// Choosing the motif finder of a run from its pipeline keys.
#ifndef VORN_PIPELINE_VORN_FACTORY_H
#define VORN_PIPELINE_VORN_FACTORY_H

#include "pipeline/prop_tree.h"

class MotifFinder_cl;

class VornFactory_cl {
 public:
  // Reads MotifFinder (default "Orlith"); any other name is fatal.
  static MotifFinder_cl* CreateMotifFinder(PropertyTreeIter_cl* iter);
};

#endif
