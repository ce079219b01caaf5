// Helpers of the data tests: small files written per test, so that tests can run side by side, and name filters.
#ifndef VORN_TESTS_DATA_DATA_TEST_HELPERS_H
#define VORN_TESTS_DATA_DATA_TEST_HELPERS_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <initializer_list>
#include <memory>
#include <string>

#include "pipeline/hash_set.h"
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

// A filter that lets the names through, each mapped to its position in the list.
inline std::unique_ptr<NameSet_tmpl<int>> Filter(std::initializer_list<const char*> names) {
  auto filter = std::make_unique<NameSet_tmpl<int>>(8, -1);
  int i = 0;
  for (const char* name : names) filter->Insert(Name_sptr(name), i++);
  return filter;
}

#endif
