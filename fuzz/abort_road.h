// Lets a fuzz input end on the program's own error road (a message, then abort) without ending the run.
#ifndef VORN_FUZZ_ABORT_ROAD_H
#define VORN_FUZZ_ABORT_ROAD_H

#include <csetjmp>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <unistd.h>

#include "pipeline/not_built.h"

// abort() raises SIGABRT; the handler jumps back to the harness, which counts the input as handled.
// Objects of the abandoned call leak, so fuzzers run with leak detection off.
inline sigjmp_buf gAbortRoad;

inline void JumpBackFromAbort(int) { siglongjmp(gAbortRoad, 1); }
inline void JumpBackFromNotBuilt() { siglongjmp(gAbortRoad, 1); }

// Pipeline keys name files to write (a run's Logger, say): inputs run in a scratch folder of their own.
inline void EnterScratchFolder() {
  static bool entered = false;
  if (entered) return;
  entered = true;
  char folder[] = "/tmp/vorn_fuzz_XXXXXX";
  if (mkdtemp(folder) && chdir(folder) == 0) return;
  abort();
}

inline void InstallAbortRoad() {
  EnterScratchFolder();
  struct sigaction action = {};
  action.sa_handler = JumpBackFromAbort;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_NODEFER;
  sigaction(SIGABRT, &action, nullptr);
  SetNotBuiltHandlerForTesting(JumpBackFromNotBuilt);
}

// Readers take file names: the harnesses hand them the input through a file of the scratch folder.
inline void WriteFuzzFile(const char* path, const void* data, size_t size) {
  FILE* file = fopen(path, "wb");
  if (!file) abort();
  fwrite(data, 1, size, file);
  fclose(file);
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
