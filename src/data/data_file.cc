// Tab-separated data files read into typed columns under a descriptor of their layout.
#include "data/data_file.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "data/line_iterator.h"
#include "data/line_tokenizer.h"

namespace {
const DataFileDescriptor_cl kStringsDescriptor(1, 1, 1, 0, -1, 0, -1, -1, -1);

// Fits one column range to the file; a range that starts past the last column is empty.
void NormalizeRange(int& first, int& last, int numColumns) {
  if (first > numColumns - 1) {
    first = 0;
    last = -1;
    return;
  }
  if (last > numColumns - 1 || last == -999) last = numColumns - 1;
  if (first < 0) first = 0;
}

int RangeSize(int first, int last) { return last >= first ? last - first + 1 : 0; }

// strtod and strtol read only from a terminated text; fields are views into a line.
const char* Terminate(const char* text, size_t length) {
  static std::string copy;  // scratch text only
  copy.assign(text, length);
  return copy.c_str();
}

// The value strtod gives for the field. Plain decimal numbers take the faster exact parser,
// which rounds as strtod does; every other form (blanks, a plus sign, hexadecimal, infinity, not
// a number, out of range) goes to strtod itself.
double ParseReal(const char* text, size_t length) {
  const char* end = text + length;
  const char* p = text;
  if (p < end && *p == '-') p++;
  if (p < end && ((*p >= '0' && *p <= '9') || *p == '.') &&
      !(*p == '0' && p + 1 < end && (p[1] == 'x' || p[1] == 'X'))) {
    double value;
    if (std::from_chars(text, end, value).ec == std::errc()) return value;
  }
  return strtod(Terminate(text, length), nullptr);
}

int ParseInt(const char* text, size_t length) {
  return static_cast<int>(strtol(Terminate(text, length), nullptr, 10));
}

char* CopyText(const char* text, size_t length) {
  char* copy = new char[length + 1];
  memcpy(copy, text, length);
  copy[length] = '\0';
  return copy;
}
}  // namespace

void DataFileDescriptor_cl::Normalize(int numColumns) {
  NormalizeRange(iFirstIntColumn, iLastIntColumn, numColumns);
  NormalizeRange(iFirstRealColumn, iLastRealColumn, numColumns);
}

DataFile_cl::DataFile_cl(Name_sptr file) : DataFile_cl(file, kStringsDescriptor) {}

DataFile_cl::DataFile_cl(Name_sptr file, const DataFileDescriptor_cl* descriptor)
    : DataFile_cl(file, descriptor ? *descriptor : kStringsDescriptor) {}

DataFile_cl::DataFile_cl(Name_sptr file, const DataFileDescriptor_cl& descriptor)
    : iDescriptor(descriptor), iFileName(file), iStrings(10, nullptr), iStringSlots(10, -1), iColumnIndex(100, -1),
      iColumnNames(10, nullptr) {
  if (!file.IsNull()) Load();
}

DataFile_cl::~DataFile_cl() {
  delete[] iInts;
  delete[] iReals;
  for (int r = 0; r < iStrings.GetSize(); r++) {
    Vector_tmpl<char*>* cells = iStrings[r];
    for (int i = 0; i < cells->GetSize(); i++) delete[] (*cells)[i];
    delete cells;
  }
}

void DataFile_cl::StopUnlessReadable(Name_sptr file, const char* reader) {
  FILE* f = file.IsNull() || !file->GetText() ? nullptr : fopen(file->GetText(), "rb");
  if (!f) {
    std::cerr << reader << " Cannot open file " << file << std::endl;
    abort();
  }
  fclose(f);
}

NameSet_tmpl<int>* DataFile_cl::LoadList(Name_sptr file, int headerRows) {
  if (file.IsNull()) return nullptr;
  DataFile_cl list(file, DataFileDescriptor_cl(headerRows, 1, 0, 0, -1, 0, -1, -1, -1));
  return list.GetRowKeysHash(nullptr);
}

void DataFile_cl::Load() {
  StopUnlessReadable(iFileName, "DataFile_cl::Load");
  long lines = ReadNames();
  int numColumns = iColumnNames.GetSize();
  iDescriptor.Normalize(numColumns);
  long headerRows = iDescriptor.iHeaderRows > 0 ? iDescriptor.iHeaderRows : 0;
  long records = lines - headerRows;
  if (records > 2147483647L) {
    std::cerr << "DataFile_cl::Load Too many lines in " << iFileName << std::endl;
    abort();
  }
  iNumRecords = records > 0 ? static_cast<int>(records) : 0;
  Allocate();
  ReadRecords();
}

long DataFile_cl::ReadNames() {
  LineIterator_cl lines(iFileName);
  if (!lines.Reset()) StopUnlessReadable(iFileName, "DataFile_cl::Load");
  if (!lines.NotNull()) return 0;
  LineTokenizer_cl tokens(lines.GetLine(), lines.GetLength());
  while (tokens.HasNextToken()) {
    const char* text;
    size_t length;
    tokens.NextToken(&text, &length);
    Name_sptr name(new Name_cl(text, static_cast<int>(length)));
    iColumnIndex.Insert(name, iColumnNames.GetSize());
    iColumnNames.AddLast(name);
  }
  long count = 0;
  for (; lines.NotNull(); ++lines) count++;
  return count;
}

void DataFile_cl::Allocate() {
  const DataFileDescriptor_cl& d = iDescriptor;
  iNumIntColumns = RangeSize(d.iFirstIntColumn, d.iLastIntColumn);
  iNumRealColumns = RangeSize(d.iFirstRealColumn, d.iLastRealColumn);
  iNumStringColumns = 0;
  for (int c = 0; c < iColumnNames.GetSize(); c++)
    iStringSlots.AddLast(GetColumnType(c) == 0 ? iNumStringColumns++ : -1);
  // Every cell is written while the records are read, so the arrays need no first value.
  size_t records = static_cast<size_t>(iNumRecords);
  if (iNumIntColumns > 0) iInts = new int[records * iNumIntColumns];
  if (iNumRealColumns > 0) iReals = new double[records * iNumRealColumns];
  for (int r = 0; r < iNumRecords; r++)
    iStrings.AddLast(new Vector_tmpl<char*>(iNumStringColumns > 0 ? iNumStringColumns : 1, nullptr));
}

void DataFile_cl::ReadRecords() {
  LineIterator_cl lines(iFileName);
  if (!lines.Reset()) StopUnlessReadable(iFileName, "DataFile_cl::Load");
  for (int skip = 0; skip < iDescriptor.iHeaderRows && lines.NotNull(); skip++) ++lines;
  int numColumns = iColumnNames.GetSize();
  int record = 0;
  for (; record < iNumRecords && lines.NotNull(); record++, ++lines) {
    LineTokenizer_cl tokens(lines.GetLine(), lines.GetLength());
    int column = 0;
    for (; tokens.HasNextToken(); column++) {
      const char* text;
      size_t length;
      tokens.NextToken(&text, &length);
      AddDataItem(record, column, text, length);
    }
    for (; column < numColumns; column++) AddDataItem(record, column, "", 0);
  }
  // The file shrank between the two passes: the records it no longer has stay empty.
  for (; record < iNumRecords; record++)
    for (int column = 0; column < numColumns; column++) AddDataItem(record, column, "", 0);
}

void DataFile_cl::AddDataItem(int record, int column, const char* text, size_t length) {
  const DataFileDescriptor_cl& d = iDescriptor;
  switch (GetColumnType(column)) {
    case 1:
      iInts[static_cast<size_t>(record) * iNumIntColumns + (column - d.iFirstIntColumn)] =
          length ? ParseInt(text, length) : kMissingInt;
      return;
    case 2:
      iReals[static_cast<size_t>(record) * iNumRealColumns + (column - d.iFirstRealColumn)] =
          length ? ParseReal(text, length) : kMissingReal;
      return;
    default: {
      int numColumns = iColumnNames.GetSize();
      // Fields past the last named column are kept as string cells of columns that don't exist.
      int slot = column < numColumns ? iStringSlots[column] : iNumStringColumns + (column - numColumns);
      iStrings[record]->Store(slot, length ? CopyText(text, length) : nullptr);
    }
  }
}

int DataFile_cl::GetColumnType(int column) const {
  const DataFileDescriptor_cl& d = iDescriptor;
  if (column >= d.iFirstIntColumn && column <= d.iLastIntColumn) return 1;
  if (column >= d.iFirstRealColumn && column <= d.iLastRealColumn) return 2;
  return 0;
}

const char* DataFile_cl::GetString(int record, int column) const {
  if (column < 0 || GetColumnType(column) != 0) return nullptr;
  int numColumns = iColumnNames.GetSize();
  int slot = column < numColumns ? iStringSlots[column] : iNumStringColumns + (column - numColumns);
  const Vector_tmpl<char*>* cells = iStrings[record];
  return slot < cells->GetSize() ? (*cells)[slot] : nullptr;
}

int DataFile_cl::GetInt(int record, int column) const {
  if (column < 0 || GetColumnType(column) != 1) return kMissingInt;
  return iInts[static_cast<size_t>(record) * iNumIntColumns + (column - iDescriptor.iFirstIntColumn)];
}

double DataFile_cl::GetDouble(int record, int column) const {
  if (column < 0) return kMissingReal;
  switch (GetColumnType(column)) {
    case 1: {
      int value = GetInt(record, column);
      return value == kMissingInt ? kMissingReal : value;
    }
    case 2:
      return iReals[static_cast<size_t>(record) * iNumRealColumns + (column - iDescriptor.iFirstRealColumn)];
    default:
      return kMissingReal;
  }
}

// Never a null handle: sets of keys are searched by text, which every key in them must have a name for.
Name_sptr DataFile_cl::GetKey(int record) const { return Name_sptr(GetString(record, iDescriptor.iKeyColumn)); }

Name_sptr DataFile_cl::GetColumnName(int column) const {
  return column >= 0 && column < iColumnNames.GetSize() ? iColumnNames[column] : Name_sptr();
}

void DataFile_cl::SetColumnName(int column, Name_sptr name) {
  if (column < 0 || column >= iColumnNames.GetSize() || name.IsNull()) return;
  Name_sptr old = iColumnNames[column];
  if (iColumnIndex.GetEntry(old) == column) iColumnIndex.Remove(old);
  iColumnNames.SetElement(column, name);
  iColumnIndex.Insert(name, column);
}

int DataFile_cl::IsRecordKept(int record, const NameSet_tmpl<int>* filter) const {
  if (!filter) return 1;
  const char* key = GetString(record, iDescriptor.iKeyColumn);
  return filter->GetEntry(key) != -1;
}

Vector_tmpl<Name_sptr>* DataFile_cl::GetRowKeys(const NameSet_tmpl<int>* filter) const {
  Vector_tmpl<Name_sptr>* keys = new Vector_tmpl<Name_sptr>(iNumRecords + 1, nullptr);
  for (int r = 0; r < iNumRecords; r++)
    if (IsRecordKept(r, filter)) keys->AddLast(GetKey(r));
  return keys;
}

NameSet_tmpl<int>* DataFile_cl::GetRowKeysHash(const NameSet_tmpl<int>* filter) const {
  NameSet_tmpl<int>* keys = new NameSet_tmpl<int>(iNumRecords + 1, -1, 0.5, 2.0);
  int kept = 0;
  for (int r = 0; r < iNumRecords; r++)
    if (IsRecordKept(r, filter)) keys->Insert(GetKey(r), kept++);
  return keys;
}

Vector_tmpl<Name_sptr>* DataFile_cl::GetColumnKeys(const NameSet_tmpl<int>* filter) const {
  Vector_tmpl<Name_sptr>* keys = new Vector_tmpl<Name_sptr>(iColumnNames.GetSize() + 1, nullptr);
  for (int c = iDescriptor.iHeaderColumns > 0 ? iDescriptor.iHeaderColumns : 0; c < iColumnNames.GetSize(); c++)
    if (c != iDescriptor.iKeyColumn && (!filter || filter->GetEntry(iColumnNames[c]) != -1))
      keys->AddLast(iColumnNames[c]);
  return keys;
}

NameSet_tmpl<int>* DataFile_cl::GetColumnKeysHash(const NameSet_tmpl<int>* filter) const {
  Vector_tmpl<Name_sptr>* names = GetColumnKeys(filter);
  NameSet_tmpl<int>* keys = new NameSet_tmpl<int>(names->GetSize() + 1, -1, 0.5, 2.0);
  for (int i = 0; i < names->GetSize(); i++) keys->Insert((*names)[i], i);
  delete names;
  return keys;
}

Vector_tmpl<int>* DataFile_cl::GetRows(const Vector_tmpl<Name_sptr>& names) const {
  NameSet_tmpl<int>* records = new NameSet_tmpl<int>(iNumRecords + 1, -1, 0.5, 2.0);
  for (int r = 0; r < iNumRecords; r++) records->Insert(GetKey(r), r);
  Vector_tmpl<int>* rows = new Vector_tmpl<int>(names.GetSize() + 1, -1);
  for (int i = 0; i < names.GetSize(); i++) rows->AddLast(records->GetEntry(names[i]));
  delete records;
  return rows;
}

Vector_tmpl<int>* DataFile_cl::GetColumns(const Vector_tmpl<Name_sptr>& names) const {
  Vector_tmpl<int>* columns = new Vector_tmpl<int>(names.GetSize() + 1, -1);
  for (int i = 0; i < names.GetSize(); i++) columns->AddLast(iColumnIndex.GetEntry(names[i]));
  return columns;
}

Vector_tmpl<int>* DataFile_cl::CreateMatrixColumns(const NameSet_tmpl<int>* columnFilter) const {
  const DataFileDescriptor_cl& d = iDescriptor;
  Vector_tmpl<int>* columns = new Vector_tmpl<int>(iNumRealColumns + iNumIntColumns + 1, -1);
  // A column inside both ranges is an integer column, and is listed once.
  auto add = [&](int first, int last, int type) {
    for (int c = first; c <= last; c++)
      if (GetColumnType(c) == type && (!columnFilter || columnFilter->GetEntry(iColumnNames[c]) != -1))
        columns->AddLast(c);
  };
  add(d.iFirstRealColumn, d.iLastRealColumn, 2);
  add(d.iFirstIntColumn, d.iLastIntColumn, 1);
  return columns;
}

Vector_tmpl<Name_sptr>* DataFile_cl::GetMatrixColumnKeys(const NameSet_tmpl<int>* columnFilter) const {
  Vector_tmpl<int>* columns = CreateMatrixColumns(columnFilter);
  Vector_tmpl<Name_sptr>* keys = new Vector_tmpl<Name_sptr>(columns->GetSize() + 1, nullptr);
  for (int i = 0; i < columns->GetSize(); i++) keys->AddLast(iColumnNames[(*columns)[i]]);
  delete columns;
  return keys;
}

Matrix_sptr DataFile_cl::CreateMatrix(const NameSet_tmpl<int>* rowFilter, const NameSet_tmpl<int>* columnFilter) const {
  Vector_tmpl<int>* columns = CreateMatrixColumns(columnFilter);
  int numRows = 0;
  for (int r = 0; r < iNumRecords; r++) numRows += IsRecordKept(r, rowFilter);
  Matrix_sptr matrix = Matrix_cl::AllocateCorrectType(numRows, columns->GetSize());
  for (int r = 0, row = 0; r < iNumRecords; r++) {
    if (!IsRecordKept(r, rowFilter)) continue;
    double* cells = matrix->GetRow(row++);
    for (int i = 0; i < columns->GetSize(); i++) cells[i] = GetDouble(r, (*columns)[i]);
  }
  delete columns;
  return matrix;
}

void DataFile_cl::Print(std::ostream& out, int header, int keys, int strings, int integers, int reals) const {
  int numColumns = iColumnNames.GetSize();
  auto selected = [&](int column) {
    int type = GetColumnType(column);
    return (type == 0 && strings) || (type == 1 && integers) || (type == 2 && reals);
  };
  if (header) {
    if (keys) out << "Key\t";
    for (int c = 0; c < numColumns; c++)
      if (selected(c)) out << iColumnNames[c] << '\t';
    out << '\n';
  }
  for (int r = 0; r < iNumRecords; r++) {
    if (keys) out << GetKey(r) << '\t';
    for (int c = 0; c < numColumns; c++) {
      if (!selected(c)) continue;
      switch (GetColumnType(c)) {
        case 0:
          if (const char* text = GetString(r, c)) out << text;
          break;
        case 1:
          if (GetInt(r, c) != kMissingInt) out << GetInt(r, c);
          break;
        default:
          if (GetDouble(r, c) != kMissingReal) out << GetDouble(r, c);
      }
      out << '\t';
    }
    out << '\n';
  }
}
