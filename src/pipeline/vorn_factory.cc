// Choosing the motif finder of a run from its pipeline keys.
#include "pipeline/vorn_factory.h"

#include <cstdlib>
#include <iostream>

#include "pipeline/not_built.h"

MotifFinder_cl* VornFactory_cl::CreateMotifFinder(PropertyTreeIter_cl* iter) {
  Name_sptr name = iter->GetProperty("MotifFinder", Name_sptr("Orlith"));
  std::cerr << "VornFactory_cl CreateMotifFinder " << name << std::endl;
  if (name->IsEqual("Orlith")) StopNotBuilt("The Orlith motif finder is not built yet");
  std::cerr << "Unrecognized motif finder " << name << std::endl;
  abort();
}
