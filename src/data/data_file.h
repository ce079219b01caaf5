// Tab-separated data files read into typed columns under a descriptor of their layout.
#ifndef VORN_DATA_DATA_FILE_H
#define VORN_DATA_DATA_FILE_H

#include <cstddef>
#include <ostream>

#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/missing.h"
#include "pipeline/vector.h"
#include "prob/matrix.h"

// Which lines and columns of a tab file hold what. A last column of -999 means "to the last
// column"; a range with first 0 and last -1 is empty.
class DataFileDescriptor_cl {
 public:
  DataFileDescriptor_cl(int headerRows, int headerColumns, int keyColumn, int firstIntColumn, int lastIntColumn,
                        int firstRealColumn, int lastRealColumn, int weightsRow, int weightColumn)
      : iHeaderRows(headerRows),
        iHeaderColumns(headerColumns),
        iKeyColumn(keyColumn),
        iFirstIntColumn(firstIntColumn),
        iLastIntColumn(lastIntColumn),
        iFirstRealColumn(firstRealColumn),
        iLastRealColumn(lastRealColumn),
        iWeightsRow(weightsRow),
        iWeightColumn(weightColumn) {}

  // Fits the integer and real ranges to a file of that many columns.
  void Normalize(int numColumns);

  int iHeaderRows;
  int iHeaderColumns;
  int iKeyColumn;  // -1: no key
  int iFirstIntColumn;
  int iLastIntColumn;
  int iFirstRealColumn;
  int iLastRealColumn;
  int iWeightsRow;
  int iWeightColumn;
};

// The file is read in two passes over its lines: the first line gives the column names and the
// line count sizes the arrays, then the records are parsed. Numbers sit in flat row-major arrays,
// one for the integer and one for the real columns; every other cell is a string.
class DataFile_cl {
 public:
  // Without a descriptor: one header row, strings only, key in column 1.
  explicit DataFile_cl(Name_sptr file);
  // Copy the descriptor and load at once, unless the name is null.
  DataFile_cl(Name_sptr file, const DataFileDescriptor_cl* descriptor);
  DataFile_cl(Name_sptr file, const DataFileDescriptor_cl& descriptor);
  ~DataFile_cl();
  DataFile_cl(const DataFile_cl&) = delete;
  DataFile_cl& operator=(const DataFile_cl&) = delete;

  // The keys of a list file (one name per line behind headerRows lines) as a new set from key to
  // its running number; null for a null name.
  static NameSet_tmpl<int>* LoadList(Name_sptr file, int headerRows);
  // Stops the program with "<reader> Cannot open file <file>" when the file cannot be read.
  static void StopUnlessReadable(Name_sptr file, const char* reader);

  Name_sptr GetFileName() const { return iFileName; }
  const DataFileDescriptor_cl& GetDescriptor() const { return iDescriptor; }
  int GetNumRecords() const { return iNumRecords; }
  int GetNumColumns() const { return iColumnNames.GetSize(); }
  int GetNumIntColumns() const { return iNumIntColumns; }
  int GetNumRealColumns() const { return iNumRealColumns; }
  int GetNumStringColumns() const { return iNumStringColumns; }

  // Cells: null, the missing integer or the missing real for an unknown column or one of another type.
  const char* GetString(int record, int column) const;
  const char* GetString(int record, const char* column) const { return GetString(record, GetColumnIndex(column)); }
  const char* GetString(int record, Name_sptr column) const { return GetString(record, GetColumnIndex(column)); }
  int GetInt(int record, int column) const;
  int GetInt(int record, const char* column) const { return GetInt(record, GetColumnIndex(column)); }
  int GetInt(int record, Name_sptr column) const { return GetInt(record, GetColumnIndex(column)); }
  // An integer column reads as its value, the missing integer as the missing real.
  double GetDouble(int record, int column) const;
  double GetDouble(int record, const char* column) const { return GetDouble(record, GetColumnIndex(column)); }
  double GetDouble(int record, Name_sptr column) const { return GetDouble(record, GetColumnIndex(column)); }
  // A new name of the record's key cell; an empty name without a key or for an empty cell.
  Name_sptr GetKey(int record) const;

  Name_sptr GetColumnName(int column) const;
  void SetColumnName(int column, Name_sptr name);
  // The name of the i-th real column.
  Name_sptr GetDataColumnName(int i) const { return GetColumnName(iDescriptor.iFirstRealColumn + i); }
  // 1 integer, 2 real, 0 string.
  int GetColumnType(int column) const;

  // Filters map a name to a value other than -1 to let it through; null lets everything through.
  // The vectors and sets are new; the sets map each key to its running number among those kept.
  Vector_tmpl<Name_sptr>* GetRowKeys(const NameSet_tmpl<int>* filter) const;
  NameSet_tmpl<int>* GetRowKeysHash(const NameSet_tmpl<int>* filter) const;
  // The columns from the header columns on, without the key column.
  Vector_tmpl<Name_sptr>* GetColumnKeys(const NameSet_tmpl<int>* filter) const;
  NameSet_tmpl<int>* GetColumnKeysHash(const NameSet_tmpl<int>* filter) const;
  // Record or column index of each name, -1 for a name that is not there.
  Vector_tmpl<int>* GetRows(const Vector_tmpl<Name_sptr>& names) const;
  Vector_tmpl<int>* GetColumns(const Vector_tmpl<Name_sptr>& names) const;

  // The records in the row filter by the real columns, then the integer columns, in the column filter.
  Matrix_sptr CreateMatrix(const NameSet_tmpl<int>* rowFilter, const NameSet_tmpl<int>* columnFilter) const;
  // The names of the columns of CreateMatrix, in its order.
  Vector_tmpl<Name_sptr>* GetMatrixColumnKeys(const NameSet_tmpl<int>* columnFilter) const;

  // Writes the file back with the selected kinds of column; a missing number is an empty field.
  void Print(std::ostream& out, int header, int keys, int strings, int integers, int reals) const;

 private:
  void Load();
  // Reads the column names from the first line and counts the lines; returns the line count.
  long ReadNames();
  void Allocate();
  void ReadRecords();
  void AddDataItem(int record, int column, const char* text, size_t length);
  int GetColumnIndex(const char* column) const { return iColumnIndex.GetEntry(column); }
  int GetColumnIndex(Name_sptr column) const { return iColumnIndex.GetEntry(column); }
  int IsRecordKept(int record, const NameSet_tmpl<int>* filter) const;
  Vector_tmpl<int>* CreateMatrixColumns(const NameSet_tmpl<int>* columnFilter) const;

  DataFileDescriptor_cl iDescriptor;
  Name_sptr iFileName;
  int iNumRecords = 0;
  int iNumIntColumns = 0;
  int iNumRealColumns = 0;
  int* iInts = nullptr;
  double* iReals = nullptr;
  Vector_tmpl<Vector_tmpl<char*>*> iStrings;
  int iNumStringColumns = 0;
  // The slot of each string column of the header in a record's string vector.
  Vector_tmpl<int> iStringSlots;
  NameSet_tmpl<int> iColumnIndex;
  Vector_tmpl<Name_sptr> iColumnNames;
};

#endif
