// Splitting one line of a tab file into its fields.
#ifndef VORN_DATA_LINE_TOKENIZER_H
#define VORN_DATA_LINE_TOKENIZER_H

#include <cstddef>

// Walks a line held by the caller. Fields end at a tab or the line feed; consecutive tabs give
// empty fields, a tab right before the line feed gives none, and a carriage return stays in the
// last field. A field is only seen when a delimiter follows it, so the text behind the last tab
// of a last line without a line feed is not seen.
class LineTokenizer_cl {
 public:
  LineTokenizer_cl(const char* line, size_t length) : iLine(line), iLength(length) {}

  int HasNextToken() const;
  // The next field as a view into the line.
  void NextToken(const char** start, size_t* length);
  // The next field, copied into one buffer shared by all tokenizers that the next call overwrites.
  const char* NextToken();

 private:
  const char* iLine;
  size_t iLength;
  size_t iPosition = 0;
  // The delimiter that ends the field at iPosition, once HasNextToken found it; null until then.
  mutable const char* iDelimiter = nullptr;
};

#endif
