// The program's whole road, from the command line to the last run, callable in-process.
#ifndef VORN_PIPELINE_VORN_MAIN_H
#define VORN_PIPELINE_VORN_MAIN_H

// Checks the arguments, seeds the generators from the clock and runs the pipeline file.
int VornMain(int argc, char** argv);

// Parses, reads and runs one pipeline file with the generators as they stand; returns 0.
int VornRunPipelineFile(const char* fileName);

// For tests only: puts every random source of the program in a fixed state.
void VornSeedRandomSources(long seed);

#endif
