// The abstract text buffer that names can be built from.
#ifndef VORN_PIPELINE_CHAR_BUFFER_H
#define VORN_PIPELINE_CHAR_BUFFER_H

class CharBuffer_cl {
 public:
  virtual ~CharBuffer_cl() = default;
  virtual int GetLength() = 0;
  virtual char GetChar(int index) = 0;
};

#endif
