// Splitting one line of a tab file into its fields.
#include "data/line_tokenizer.h"

#include <cstring>
#include <string>

namespace {
// The first tab or line feed at or after from, or null.
const char* FindDelimiter(const char* from, const char* end) {
  for (const char* c = from; c < end; c++)
    if (*c == '\t' || *c == '\n') return c;
  return nullptr;
}
}  // namespace

int LineTokenizer_cl::HasNextToken() const {
  if (iPosition >= iLength || iLine[iPosition] == '\n') return 0;
  if (!iDelimiter) iDelimiter = FindDelimiter(iLine + iPosition, iLine + iLength);
  return iDelimiter != nullptr;
}

void LineTokenizer_cl::NextToken(const char** start, size_t* length) {
  const char* from = iLine + iPosition;
  const char* end = iDelimiter ? iDelimiter : FindDelimiter(from, iLine + iLength);
  if (!end) end = iLine + iLength;
  *start = from;
  *length = end - from;
  iPosition = end - iLine + 1;
  iDelimiter = nullptr;
}

const char* LineTokenizer_cl::NextToken() {
  // Scratch text only: no output depends on how it is held.
  static std::string token;
  const char* start;
  size_t length;
  NextToken(&start, &length);
  token.assign(start, length);
  return token.c_str();
}
