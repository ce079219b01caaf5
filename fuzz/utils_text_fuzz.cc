// Feeds arbitrary text to the delimited-text parsers, the section extractor and the name set index.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "abort_road.h"
#include "pipeline/hash_set.h"
#include "pipeline/utils.h"

namespace {

// Parsers: each token read as a name joins back to text that splits into the same tokens.
void CheckParsers(const std::string& input) {
  std::string a = input, b = input, c = input, d = input, e = input, f = input, g = input;
  delete Utils_cl::StrToDoubleVec(a.data(), " ,\t\n");
  delete Utils_cl::StrToIntVec(b.data(), " ,\t\n");
  delete Utils_cl::StrToIntCharVec(c.data(), " ,\t\n");
  delete Utils_cl::StringToVectorNameHash2Int(e.data(), " ,");
  delete Utils_cl::StringToInt2Name(f.data(), " ,");
  delete Utils_cl::StringToVectorIntHash2Name(g.data(), " ,");
  Vector_tmpl<Name_sptr>* names = Utils_cl::StrToNameVec(d.data(), " ,\t\n");
  Name_sptr joined = Utils_cl::NameVecToString(*names, " ");
  std::string again = joined.CStr() ? joined.CStr() : "";
  Vector_tmpl<Name_sptr>* reread = Utils_cl::StrToNameVec(again.data(), " ");
  if (reread->GetSize() != names->GetSize()) __builtin_trap();
  for (int i = 0; i < names->GetSize(); i++)
    if (!((*reread)[i] == (*names)[i])) __builtin_trap();
  delete reread;

  // The index of a name set must give what a walk in visiting order finds first, through inserts,
  // shadowing, removals and growth driven by the tokens.
  NameSet_tmpl<int> set(1, -1);
  for (int i = 0; i < names->GetSize(); i++) {
    Name_sptr name = (*names)[i];
    if (name->GetLength() % 3 == 0) set.Remove(name);
    else set.Insert(name, i);
  }
  for (int i = 0; i < names->GetSize(); i++) {
    Name_sptr name = (*names)[i];
    int expected = -1;
    for (auto* entry : set)
      if (entry->iKey == name) {
        expected = entry->iValue;
        break;
      }
    if (set.GetEntry(name) != expected || set.GetEntry(name->GetText()) != expected) __builtin_trap();
  }
  delete names;
}

// The section extractor on the input as a file: it must not fail on any text.
void CheckSection(const std::string& input) {
  FILE* file = fopen("section.txt", "w");
  if (!file) return;
  fwrite(input.data(), 1, input.size(), file);
  fclose(file);
  Name_sptr temp = Utils_cl::CreateTempFileForXMLSection(Name_sptr("section.txt"), "Track");
  remove(temp.CStr());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string input(reinterpret_cast<const char*>(data), size);
  VORN_FUZZ_GUARDED(CheckParsers(input); CheckSection(input));
  return 0;
}
