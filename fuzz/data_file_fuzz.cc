// Feeds arbitrary bytes to the tab file reader under descriptors in use and under made-up ones.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <sstream>

#include "abort_road.h"
#include "data/data_file.h"

namespace {
const DataFileDescriptor_cl kInUse[] = {
    {1, 1, 1, 0, -1, 0, -1, -1, -1},   {1, 1, 0, 0, -1, 1, -999, -1, -1}, {2, 2, 0, 0, -1, 2, -999, -1, -1},
    {1, 1, 0, 1, -999, 0, -1, -1, -1}, {0, 1, 0, 0, -1, 0, -1, -1, -1},   {0, 0, -1, 0, -1, 0, -1, -1, -1},
};

// A field of a made-up descriptor: small values around the file's columns, and the "to the end" mark.
int Field(uint8_t byte) { return byte == 255 ? -999 : static_cast<int>(byte % 16) - 3; }

DataFileDescriptor_cl PickDescriptor(const uint8_t*& data, size_t& size) {
  if (size < 8 || data[0] < 128) {
    DataFileDescriptor_cl picked = kInUse[size ? data[0] % 6 : 0];
    if (size) data++, size--;
    return picked;
  }
  DataFileDescriptor_cl made(Field(data[1]), Field(data[2]), Field(data[3]), Field(data[4]), Field(data[5]),
                             Field(data[6]), Field(data[7]), -1, -1);
  data += 8;
  size -= 8;
  return made;
}

void Exercise(const DataFile_cl& file) {
  Matrix_sptr matrix = file.CreateMatrix(nullptr, nullptr);
  NameSet_tmpl<int>* rows = file.GetRowKeysHash(nullptr);
  NameSet_tmpl<int>* columns = file.GetColumnKeysHash(nullptr);
  Matrix_sptr filtered = file.CreateMatrix(rows, columns);
  delete file.GetMatrixColumnKeys(columns);
  delete file.GetRowKeys(rows);
  delete file.GetColumnKeys(columns);
  Vector_tmpl<Name_sptr>* names = file.GetColumnKeys(nullptr);
  delete file.GetRows(*names);
  delete file.GetColumns(*names);
  delete names;
  delete rows;
  delete columns;
  for (int r = 0; r < file.GetNumRecords(); r++) {
    file.GetKey(r);
    for (int c = -1; c <= file.GetNumColumns() + 2; c++) {
      file.GetString(r, c);
      file.GetInt(r, c);
      file.GetDouble(r, c);
    }
  }
  std::ostringstream out;
  file.Print(out, 1, 1, 1, 1, 1);
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VORN_FUZZ_GUARDED({
    DataFileDescriptor_cl descriptor = PickDescriptor(data, size);
    WriteFuzzFile("input.tab", data, size);
    DataFile_cl file(Name_sptr("input.tab"), descriptor);
    Exercise(file);
    delete DataFile_cl::LoadList(Name_sptr("input.tab"), descriptor.iHeaderRows);
  });
  return 0;
}
