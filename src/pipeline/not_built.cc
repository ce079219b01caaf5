// The stop for parts of a pipeline file that this build of the program does not have yet.
#include "pipeline/not_built.h"

#include <cstdlib>
#include <iostream>

namespace {
void (*gHandler)() = nullptr;
}

void SetNotBuiltHandlerForTesting(void (*handler)()) { gHandler = handler; }

void StopNotBuilt(const char* line) {
  std::cerr << line << std::endl;
  if (gHandler) gHandler();
  exit(-1);
}
