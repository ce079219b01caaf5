// Reading a text file line by line, whatever the length of its lines.
#ifndef VORN_DATA_LINE_ITERATOR_H
#define VORN_DATA_LINE_ITERATOR_H

#include <cstddef>
#include <cstdio>

#include "pipeline/name.h"

// Lines are views into a block buffer that is refilled from the file: no line is copied, and a
// line longer than the buffer makes the buffer grow until the whole line fits.
class LineIterator_cl {
 public:
  explicit LineIterator_cl(Name_sptr file);
  ~LineIterator_cl();
  LineIterator_cl(const LineIterator_cl&) = delete;
  LineIterator_cl& operator=(const LineIterator_cl&) = delete;

  // Opens the file from its start and reads the first line; 0 when the file cannot be opened.
  int Reset();
  // Reads the next line; past the last one NotNull() becomes 0.
  void operator++();
  int NotNull() const { return iOpen; }

  // The current line with its line feed, when it has one; not terminated by a null character.
  const char* GetLine() const { return iBuffer + iLineStart; }
  size_t GetLength() const { return iLineLength; }
  Name_sptr GetFileName() const { return iFileName; }

  static constexpr size_t kInitialBufferSize = 524288;

 private:
  void Close();
  // Moves the unread tail to the front of the buffer, growing it when the tail fills it, and reads more.
  int Refill();

  Name_sptr iFileName;
  FILE* iFile = nullptr;
  int iOpen = 0;
  char* iBuffer;
  size_t iBufferSize;
  size_t iFill = 0;        // bytes of the buffer that hold file text
  size_t iLineStart = 0;
  size_t iLineLength = 0;
  int iEndOfFile = 0;
};

#endif
