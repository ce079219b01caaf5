// A direct-access file of fixed-size elements, the backing store of tables too large for memory.
#ifndef VORN_DATA_BINARY_DATA_FILE_H
#define VORN_DATA_BINARY_DATA_FILE_H

#include <fstream>

#include "pipeline/name.h"

class BinaryDataFile_cl {
 public:
  // Create the file with n copies of the value, then reopen it for reading and writing.
  BinaryDataFile_cl(Name_sptr name, int n, double value);
  BinaryDataFile_cl(Name_sptr name, int n, char value);
  BinaryDataFile_cl(const BinaryDataFile_cl&) = delete;
  BinaryDataFile_cl& operator=(const BinaryDataFile_cl&) = delete;

  Name_sptr GetName() const { return iName; }
  // Offsets are in bytes; the raw bytes of the value are transferred.
  double ReadDouble(long offset);
  char ReadChar(long offset);
  void Write(long offset, double value);
  void Write(long offset, char value);
  // Closes and removes the file.
  void DeleteFile();

 private:
  template <class T>
  void Create(int n, T value);
  void Transfer(long offset, char* bytes, long size, int write, const char* operation);

  Name_sptr iName;
  std::fstream iStream;
};

#endif
