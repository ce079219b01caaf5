// A direct-access file of fixed-size elements.
#include "data/binary_data_file.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

BinaryDataFile_cl::BinaryDataFile_cl(Name_sptr name, int n, double value) : iName(name) { Create(n, value); }

BinaryDataFile_cl::BinaryDataFile_cl(Name_sptr name, int n, char value) : iName(name) { Create(n, value); }

template <class T>
void BinaryDataFile_cl::Create(int n, T value) {
  const char* file = iName.IsNull() ? nullptr : iName->GetText();
  std::ofstream out;
  if (file) out.open(file, std::ios::out | std::ios::binary | std::ios::trunc);
  if (!out) {
    std::cerr << "BinaryDataFile_cl Cannot create file " << iName << std::endl;
    abort();
  }
  // Written in blocks: the file may be far larger than one write should be.
  const int kBlock = 4096;
  T block[kBlock];
  for (int i = 0; i < kBlock; i++) block[i] = value;
  for (int left = n; left > 0; left -= kBlock)
    out.write(reinterpret_cast<const char*>(block), sizeof(T) * (left < kBlock ? left : kBlock));
  out.close();
  iStream.open(file, std::ios::in | std::ios::out | std::ios::binary);
  if (!iStream) {
    std::cerr << "BinaryDataFile_cl Cannot open file " << iName << std::endl;
    abort();
  }
}

void BinaryDataFile_cl::Transfer(long offset, char* bytes, long size, int write, const char* operation) {
  iStream.clear();
  iStream.seekg(offset);
  if (write) iStream.write(bytes, size);
  else iStream.read(bytes, size);
  if (offset < 0 || !iStream) {
    std::cerr << "BinaryDataFile_cl::" << operation << " Offset " << offset << " is outside file " << iName
              << std::endl;
    abort();
  }
}

double BinaryDataFile_cl::ReadDouble(long offset) {
  double value;
  Transfer(offset, reinterpret_cast<char*>(&value), sizeof value, 0, "ReadDouble");
  return value;
}

char BinaryDataFile_cl::ReadChar(long offset) {
  char value;
  Transfer(offset, &value, 1, 0, "ReadChar");
  return value;
}

void BinaryDataFile_cl::Write(long offset, double value) {
  Transfer(offset, reinterpret_cast<char*>(&value), sizeof value, 1, "Write");
}

void BinaryDataFile_cl::Write(long offset, char value) { Transfer(offset, &value, 1, 1, "Write"); }

void BinaryDataFile_cl::DeleteFile() {
  iStream.close();
  if (!iName.IsNull() && iName->GetText()) remove(iName->GetText());
}
