// Lets a fuzz input end on the program's own error road (a message, then abort) without ending the run.
#ifndef VORN_FUZZ_ABORT_ROAD_H
#define VORN_FUZZ_ABORT_ROAD_H

#include <csetjmp>
#include <csignal>

#include "pipeline/not_built.h"

// abort() raises SIGABRT; the handler jumps back to the harness, which counts the input as handled.
// Objects of the abandoned call leak, so fuzzers run with leak detection off.
inline sigjmp_buf gAbortRoad;

inline void JumpBackFromAbort(int) { siglongjmp(gAbortRoad, 1); }
inline void JumpBackFromNotBuilt() { siglongjmp(gAbortRoad, 1); }

inline void InstallAbortRoad() {
  struct sigaction action = {};
  action.sa_handler = JumpBackFromAbort;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_NODEFER;
  sigaction(SIGABRT, &action, nullptr);
  SetNotBuiltHandlerForTesting(JumpBackFromNotBuilt);
}

// Runs body; returns normally whether the body finished or took the error road.
#define VORN_FUZZ_GUARDED(body)          \
  do {                                   \
    InstallAbortRoad();                  \
    if (sigsetjmp(gAbortRoad, 1) == 0) { \
      body;                              \
    }                                    \
  } while (0)

#endif
