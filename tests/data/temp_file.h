// Small files written by the data tests, one set per test so that tests can run side by side.
#ifndef VORN_TESTS_DATA_TEMP_FILE_H
#define VORN_TESTS_DATA_TEMP_FILE_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "pipeline/name.h"

// A path in the test's scratch folder named after the running test and the given tag.
inline std::string TempPath(const std::string& tag) {
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  return testing::TempDir() + "vorn_" + std::to_string(getpid()) + "_" + test->test_suite_name() + "_" +
         test->name() + "_" + tag;
}

// Writes the bytes as they are and returns the file's name.
inline Name_sptr WriteTempFile(const std::string& tag, const std::string& content) {
  std::string path = TempPath(tag);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << content;
  return Name_sptr(path.c_str());
}

inline std::string ReadWholeFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

#endif
