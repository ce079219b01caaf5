// Opening the files that steps write, with the one stop for a file that cannot be written.
#ifndef VORN_PIPELINE_OUTPUT_FILE_H
#define VORN_PIPELINE_OUTPUT_FILE_H

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "pipeline/name.h"

// Truncates and opens the file, or stops with "<caller> Cannot write file <file>".
inline void OpenOutputFile(std::ofstream& out, Name_sptr file, const char* caller) {
  if (file.CStr()) out.open(file.CStr(), std::ios::out | std::ios::trunc);
  if (!out) {
    std::cerr << caller << " Cannot write file " << file << std::endl;
    abort();
  }
}

#endif
