// Entry of the vorn_learn program.
#include "pipeline/vorn_main.h"

int main(int argc, char** argv) { return VornMain(argc, argv); }
