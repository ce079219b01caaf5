// Temporary files, joins of containers into text and parsers of delimited text into containers.
#include "pipeline/utils.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>

#include "pipeline/random.h"

namespace {

// The tokens of text, which strtok_r cuts in place.
Vector_tmpl<char*> Tokenize(char* text, const char* delimiters) {
  Vector_tmpl<char*> tokens(10, nullptr);
  if (!text) return tokens;
  char* save = nullptr;
  for (char* t = strtok_r(text, delimiters, &save); t; t = strtok_r(nullptr, delimiters, &save)) tokens.AddLast(t);
  return tokens;
}

int ParseInt(const char* token) { return static_cast<int>(strtol(token, nullptr, 10)); }

Name_sptr ToName(const std::ostringstream& out) { return Name_sptr(out.str().c_str()); }

template <class Vec>
Name_sptr Join(const Vec& vec, const char* separator) {
  std::ostringstream out;
  for (int i = 0; i < vec.GetSize(); i++) {
    if (i > 0) out << separator;
    out << vec[i];
  }
  return ToName(out);
}

template <class Set>
Name_sptr JoinPairs(const Set& set, const char* separator) {
  std::ostringstream out;
  bool first = true;
  for (auto* e : set) {
    if (!first) out << separator;
    out << e->iKey << separator << e->iValue;
    first = false;
  }
  return ToName(out);
}

template <class V, class Parse>
Vector_tmpl<V>* ParseVec(char* text, const char* delimiters, const V& def, Parse parse) {
  Vector_tmpl<char*> tokens = Tokenize(text, delimiters);
  Vector_tmpl<V>* vec = new Vector_tmpl<V>(10, def);
  for (int i = 0; i < tokens.GetSize(); i++) vec->AddLast(parse(tokens[i]));
  return vec;
}

// Whether a trimmed line opens an element that it also closes, as "<a/>" does.
bool IsSelfClosing(const char* line) {
  size_t n = strlen(line);
  while (n > 0 && (line[n - 1] == '\n' || line[n - 1] == '\r' || line[n - 1] == ' ' || line[n - 1] == '\t')) n--;
  return n >= 2 && line[n - 2] == '/' && line[n - 1] == '>';
}

}  // namespace

Name_sptr Utils_cl::CreateTempFileName() {
  static double last = -1.0;
  double now = static_cast<double>(GetLinuxTime()) / 1e6;
  // Two calls within the clock's resolution would otherwise get one file between them.
  if (now <= last) now = last + 0.001;
  last = now;
  char name[64];
  snprintf(name, sizeof name, "tmp.%f", now);
  return Name_sptr(name);
}

void Utils_cl::DeleteFile(Name_sptr file) {
  if (!file.CStr()) return;
  // Quoted, so that blanks or shell characters in a name cannot reach other files.
  std::string quoted = "'";
  for (const char* c = file.CStr(); *c; c++) {
    if (*c == '\'') quoted += "'\\''";
    else quoted += *c;
  }
  quoted += "'";
  std::string command = "rm -f " + quoted;
  // rm -f reports nothing worth stopping for: a missing file is already what the caller wants.
  int status = system(command.c_str());
  (void)status;
}

Name_sptr Utils_cl::CreateTempFileForXMLSection(Name_sptr file, const char* tag) {
  FILE* in = file.CStr() ? fopen(file.CStr(), "r") : nullptr;
  if (!in) {
    std::fprintf(stderr, "Utils_cl::CreateTempFileForXMLSection could not open file %s\n", file.CStr() ? file.CStr() : "<NULL>");
    abort();
  }
  Name_sptr tempName = CreateTempFileName();
  FILE* out = fopen(tempName.CStr(), "w");
  if (!out) {
    std::fprintf(stderr, "Utils_cl::CreateTempFileForXMLSection could not open file %s\n", tempName.CStr());
    abort();
  }
  char* line = nullptr;
  size_t room = 0;
  bool inside = false;
  int depth = 0;
  while (getline(&line, &room, in) >= 0) {
    if (strstr(line, tag)) {
      inside = !inside;
      continue;
    }
    if (!inside) continue;
    const char* text = line;
    while (*text == ' ' || *text == '\t') text++;
    if (text[0] == '<' && text[1] == '/') depth--;
    else if (text[0] == '<' && !IsSelfClosing(text)) depth++;
    else if (text[0] != '<' && depth == 0) fputs(text, out);
  }
  free(line);
  fclose(in);
  fclose(out);
  return tempName;
}

Name_sptr Utils_cl::CharVecToString(const Vector_tmpl<char>& vec, const char* separator) { return Join(vec, separator); }

Name_sptr Utils_cl::NameVecToString(const Vector_tmpl<Name_sptr>& vec, const char* separator) {
  return Join(vec, separator);
}

Name_sptr Utils_cl::Int2NameToString(const IntSet_tmpl<Name_sptr>& set, const char* separator) {
  return JoinPairs(set, separator);
}

Name_sptr Utils_cl::VectorIntHash2NameToString(const VectorIntHash_tmpl<Name_sptr>& hash, const char* separator) {
  return JoinPairs(hash.GetSet(), separator);
}

Name_sptr Utils_cl::VectorNameHash2IntToString(const VectorNameHash_tmpl<int>& hash, const char* separator) {
  return JoinPairs(hash.GetSet(), separator);
}

Vector_tmpl<double>* Utils_cl::StrToDoubleVec(char* text, const char* delimiters) {
  return ParseVec<double>(text, delimiters, -1.0, [](const char* t) { return strtod(t, nullptr); });
}

Vector_tmpl<int>* Utils_cl::StrToIntVec(char* text, const char* delimiters) {
  return ParseVec<int>(text, delimiters, -1, ParseInt);
}

Vector_tmpl<char>* Utils_cl::StrToIntCharVec(char* text, const char* delimiters) {
  return ParseVec<char>(text, delimiters, -1, [](const char* t) { return static_cast<char>(ParseInt(t)); });
}

Vector_tmpl<Name_sptr>* Utils_cl::StrToNameVec(char* text, const char* delimiters) {
  return ParseVec<Name_sptr>(text, delimiters, Name_sptr(), [](const char* t) { return Name_sptr(t); });
}

VectorNameHash_tmpl<int>* Utils_cl::StringToVectorNameHash2Int(char* text, const char* delimiters) {
  Vector_tmpl<char*> tokens = Tokenize(text, delimiters);
  VectorNameHash_tmpl<int>* hash = new VectorNameHash_tmpl<int>(10, -1);
  for (int i = 0; i + 1 < tokens.GetSize(); i += 2) hash->AddLast(Name_sptr(tokens[i]), ParseInt(tokens[i + 1]));
  return hash;
}

IntSet_tmpl<Name_sptr>* Utils_cl::StringToInt2Name(char* text, const char* delimiters) {
  Vector_tmpl<char*> tokens = Tokenize(text, delimiters);
  IntSet_tmpl<Name_sptr>* set = new IntSet_tmpl<Name_sptr>(32, Name_sptr());
  for (int i = 0; i + 1 < tokens.GetSize(); i += 2) set->Insert(ParseInt(tokens[i]), Name_sptr(tokens[i + 1]));
  return set;
}

VectorIntHash_tmpl<Name_sptr>* Utils_cl::StringToVectorIntHash2Name(char* text, const char* delimiters) {
  Vector_tmpl<char*> tokens = Tokenize(text, delimiters);
  VectorIntHash_tmpl<Name_sptr>* hash = new VectorIntHash_tmpl<Name_sptr>(10, Name_sptr());
  for (int i = 0; i + 1 < tokens.GetSize(); i += 2) hash->AddLast(ParseInt(tokens[i]), Name_sptr(tokens[i + 1]));
  return hash;
}

void Utils_cl::Sort(Vector_tmpl<double>* vec) { vec->SortWithOperator(); }

void Utils_cl::Sort(Vector_tmpl<int>* vec) { vec->SortWithOperator(); }
