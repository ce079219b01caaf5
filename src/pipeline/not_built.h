// The stop for parts of a pipeline file that this build of the program does not have yet.
#ifndef VORN_PIPELINE_NOT_BUILT_H
#define VORN_PIPELINE_NOT_BUILT_H

// Prints the line and ends the program with status 255, before any step has run.
[[noreturn]] void StopNotBuilt(const char* line);

// For fuzzing only: called instead of ending the program; it must not return.
void SetNotBuiltHandlerForTesting(void (*handler)());

#endif
