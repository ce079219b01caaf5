// Reading a text file line by line, whatever the length of its lines.
#include "data/line_iterator.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

LineIterator_cl::LineIterator_cl(Name_sptr file)
    : iFileName(file), iBuffer(static_cast<char*>(malloc(kInitialBufferSize))), iBufferSize(kInitialBufferSize) {}

LineIterator_cl::~LineIterator_cl() {
  Close();
  free(iBuffer);
}

void LineIterator_cl::Close() {
  if (iFile) fclose(iFile);
  iFile = nullptr;
  iOpen = 0;
}

int LineIterator_cl::Reset() {
  Close();
  iFill = iLineStart = iLineLength = 0;
  iEndOfFile = 0;
  if (iFileName.IsNull() || !iFileName->GetText()) return 0;
  iFile = fopen(iFileName->GetText(), "rb");
  if (!iFile) return 0;
  iOpen = 1;
  ++*this;
  return 1;
}

int LineIterator_cl::Refill() {
  size_t tail = iFill - iLineStart;
  if (iLineStart > 0) {
    memmove(iBuffer, iBuffer + iLineStart, tail);
    iLineStart = 0;
    iFill = tail;
  }
  if (iFill == iBufferSize) {
    size_t size = iBufferSize * 2;
    char* grown = static_cast<char*>(realloc(iBuffer, size));
    if (!grown) {
      std::cerr << "LineIterator_cl::Refill Out of memory for a line of " << iFileName << std::endl;
      abort();
    }
    iBuffer = grown;
    iBufferSize = size;
  }
  size_t read = fread(iBuffer + iFill, 1, iBufferSize - iFill, iFile);
  iFill += read;
  if (read == 0) iEndOfFile = 1;
  return read > 0;
}

void LineIterator_cl::operator++() {
  if (!iOpen) return;
  iLineStart += iLineLength;
  iLineLength = 0;
  size_t scanned = 0;  // bytes of the current line already searched for its line feed
  for (;;) {
    const char* from = iBuffer + iLineStart + scanned;
    const char* end = static_cast<const char*>(memchr(from, '\n', iFill - iLineStart - scanned));
    if (end) {
      iLineLength = end - (iBuffer + iLineStart) + 1;
      return;
    }
    scanned = iFill - iLineStart;
    if (iEndOfFile || !Refill()) break;
  }
  // A last line without a line feed is still a line; an empty rest is the end of the file.
  iLineLength = iFill - iLineStart;
  if (iLineLength == 0) Close();
}
