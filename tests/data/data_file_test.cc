// Tab files under every descriptor in use: cell types, missing cells, line ends, long lines,
// duplicate keys, filters, matrices and writing back.
#include "data/data_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>

#include "pipeline/random.h"
#include "data_test_helpers.h"

namespace {
const DataFileDescriptor_cl kMicroarray(1, 1, 0, 0, -1, 1, -999, -1, -1);
const DataFileDescriptor_cl kMembership(1, 1, 0, 1, -999, 0, -1, -1, -1);
const DataFileDescriptor_cl kList(0, 1, 0, 0, -1, 0, -1, -1, -1);
const DataFileDescriptor_cl kPlainStrings(0, 0, -1, 0, -1, 0, -1, -1, -1);

std::string Text(const Name_sptr& name) { return name.IsNull() || !name->GetText() ? "<null>" : name->GetText(); }

std::string Join(const Vector_tmpl<Name_sptr>* names) {
  std::string text;
  for (int i = 0; i < names->GetSize(); i++) text += (i ? "," : "") + Text((*names)[i]);
  delete names;
  return text;
}
}  // namespace

TEST(DataFile, MicroarrayDescriptorReadsKeysAndReals) {
  DataFile_cl file(WriteTempFile("m", "Gene\tE1\tE2\ng1\t1.5\t-2\ng2\t\t3e2\n"), kMicroarray);
  ASSERT_EQ(file.GetNumRecords(), 2);
  EXPECT_EQ(file.GetNumColumns(), 3);
  EXPECT_EQ(file.GetNumRealColumns(), 2);
  EXPECT_EQ(file.GetNumStringColumns(), 1);
  EXPECT_EQ(file.GetNumIntColumns(), 0);
  EXPECT_EQ(Text(file.GetKey(1)), "g2");
  EXPECT_EQ(file.GetDouble(0, 1), 1.5);
  EXPECT_EQ(file.GetDouble(0, "E2"), -2.0);
  EXPECT_EQ(file.GetDouble(1, Name_sptr("E1")), kMissingReal);
  EXPECT_EQ(file.GetDouble(1, 2), 300.0);
  EXPECT_EQ(Text(file.GetDataColumnName(1)), "E2");
  EXPECT_EQ(file.GetColumnType(0), 0);
  EXPECT_EQ(file.GetColumnType(2), 2);
  // Unknown columns and columns of another type.
  EXPECT_EQ(file.GetDouble(0, "E9"), kMissingReal);
  EXPECT_EQ(file.GetString(0, "E9"), nullptr);
  EXPECT_EQ(file.GetInt(0, "E1"), kMissingInt);
  EXPECT_EQ(file.GetString(0, 1), nullptr);
  EXPECT_EQ(file.GetDouble(0, 0), kMissingReal);
}

TEST(DataFile, DefaultDescriptorHoldsStringsKeyedOnColumnOne) {
  DataFile_cl file(WriteTempFile("s", "id\tname\tnote\n1\talpha\t\n2\tbeta\tx y\n"));
  ASSERT_EQ(file.GetNumRecords(), 2);
  EXPECT_EQ(file.GetNumStringColumns(), 3);
  EXPECT_EQ(Text(file.GetKey(0)), "alpha");
  EXPECT_STREQ(file.GetString(0, "id"), "1");
  EXPECT_EQ(file.GetString(0, "note"), nullptr);  // an empty cell
  EXPECT_STREQ(file.GetString(1, 2), "x y");
  EXPECT_EQ(Join(file.GetColumnKeys(nullptr)), "note");  // from the header column on, without the key
}

TEST(DataFile, MembershipDescriptorReadsIntegers) {
  DataFile_cl file(WriteTempFile("i", "Gene\tc1\tc2\ng1\t1\t0\ng2\t\t7x\n"), kMembership);
  EXPECT_EQ(file.GetNumIntColumns(), 2);
  EXPECT_EQ(file.GetColumnType(1), 1);
  EXPECT_EQ(file.GetInt(0, "c1"), 1);
  EXPECT_EQ(file.GetInt(1, "c1"), kMissingInt);
  EXPECT_EQ(file.GetInt(1, "c2"), 7);  // the leading number of the text, as strtol reads it
  EXPECT_EQ(file.GetDouble(1, "c2"), 7.0);
  EXPECT_EQ(file.GetDouble(1, "c1"), kMissingReal);
  Matrix_sptr m = file.CreateMatrix(nullptr, nullptr);
  ASSERT_EQ(m->GetNumRows(), 2);
  EXPECT_EQ(m->GetElement(1, 0), kMissingReal);
  EXPECT_EQ(m->GetElement(1, 1), 7.0);
}

TEST(DataFile, ListWithoutHeaderRowsCountsTheFirstLineAsARecord) {
  Name_sptr name = WriteTempFile("l", "g1\ng2\ng2\n");
  DataFile_cl file(name, kList);
  ASSERT_EQ(file.GetNumRecords(), 3);
  EXPECT_EQ(Text(file.GetColumnName(0)), "g1");  // the first line also names the columns
  EXPECT_EQ(Join(file.GetRowKeys(nullptr)), "g1,g2,g2");
  std::unique_ptr<NameSet_tmpl<int>> keys(DataFile_cl::LoadList(name, 0));
  EXPECT_EQ(keys->GetEntry("g1"), 0);
  EXPECT_EQ(keys->GetEntry("g2"), 2);  // the later duplicate shadows the earlier one
  EXPECT_EQ(keys->GetSize(), 3);
  EXPECT_EQ(DataFile_cl::LoadList(Name_sptr(), 0), nullptr);
  std::unique_ptr<NameSet_tmpl<int>> skipped(DataFile_cl::LoadList(name, 1));
  EXPECT_EQ(skipped->GetEntry("g1"), -1);
}

TEST(DataFile, PlainStringsHaveNoKey) {
  DataFile_cl file(WriteTempFile("p", "a\tb\nc\td\n"), kPlainStrings);
  ASSERT_EQ(file.GetNumRecords(), 2);
  EXPECT_EQ(file.GetKey(0)->GetText(), nullptr);
  EXPECT_STREQ(file.GetString(0, 0), "a");
  EXPECT_STREQ(file.GetString(1, 1), "d");
}

TEST(DataFile, MicroarraySetDescriptorWithTwoHeaderColumnsAndTwoHeaderRows) {
  // RowHeaders 2, ColHeaders 2, KeyCol 0: reals from the third column on.
  DataFileDescriptor_cl descriptor(2, 2, 0, 0, -1, 2, -999, -1, -1);
  DataFile_cl file(WriteTempFile("x", "ID\tDesc\tA\tB\nEWEIGHT\t\t1\t1\ng1\tkinase\t0.5\t0.25\n"), descriptor);
  ASSERT_EQ(file.GetNumRecords(), 1);
  EXPECT_EQ(Text(file.GetKey(0)), "g1");
  EXPECT_STREQ(file.GetString(0, "Desc"), "kinase");
  EXPECT_EQ(file.GetDouble(0, "B"), 0.25);
  EXPECT_EQ(Join(file.GetColumnKeys(nullptr)), "A,B");
  EXPECT_EQ(Join(file.GetMatrixColumnKeys(nullptr)), "A,B");
}

TEST(DataFile, RangesAreFittedToTheColumnCount) {
  // Integers start past the last column, so there are none; reals stop at the last column.
  DataFileDescriptor_cl descriptor(1, 1, 0, 5, 9, 1, 40, -1, -1);
  DataFile_cl file(WriteTempFile("r", "k\ta\tb\nr1\t1\t2\n"), descriptor);
  EXPECT_EQ(file.GetNumIntColumns(), 0);
  EXPECT_EQ(file.GetNumRealColumns(), 2);
  EXPECT_EQ(file.GetDescriptor().iLastRealColumn, 2);
  EXPECT_EQ(file.GetDescriptor().iFirstIntColumn, 0);
  EXPECT_EQ(file.GetDescriptor().iLastIntColumn, -1);
}

TEST(DataFile, ShortLinesArePaddedAndLongLinesKeepTheirSurplusAsStrings) {
  DataFile_cl file(WriteTempFile("pad", "Gene\tE1\tE2\ng1\t1\ng2\t1\t2\textra\tmore\n\n"), kMicroarray);
  ASSERT_EQ(file.GetNumRecords(), 3);
  EXPECT_EQ(file.GetDouble(0, "E2"), kMissingReal);
  EXPECT_STREQ(file.GetString(1, 3), "extra");
  EXPECT_STREQ(file.GetString(1, 4), "more");
  EXPECT_EQ(file.GetString(0, 3), nullptr);
  EXPECT_EQ(file.GetColumnType(4), 0);
  // An empty line is a record of empty cells.
  EXPECT_EQ(file.GetKey(2)->GetText(), nullptr);
  EXPECT_EQ(file.GetDouble(2, "E1"), kMissingReal);
}

TEST(DataFile, CarriageReturnsStayInTheLastField) {
  DataFile_cl file(WriteTempFile("crlf", "Gene\tE1\tE2\r\ng1\t1\t2.5\r\n"), kMicroarray);
  EXPECT_EQ(Text(file.GetColumnName(2)), "E2\r");
  EXPECT_EQ(file.GetDouble(0, 2), 2.5);  // strtod stops at the carriage return
  DataFile_cl strings(WriteTempFile("crlf2", "a\tb\r\nc\td\r\n"), kPlainStrings);
  EXPECT_STREQ(strings.GetString(1, 1), "d\r");
}

TEST(DataFile, TheLastFieldOfAnUnterminatedLastLineIsNotSeen) {
  DataFile_cl file(WriteTempFile("eof", "Gene\tE1\tE2\ng1\t1\t2\ng2\t3\t4"), kMicroarray);
  ASSERT_EQ(file.GetNumRecords(), 2);
  EXPECT_EQ(file.GetDouble(1, "E1"), 3.0);
  EXPECT_EQ(file.GetDouble(1, "E2"), kMissingReal);
  // A one-column list loses its whole last line the same way.
  DataFile_cl list(WriteTempFile("eof2", "g1\ng2"), kList);
  ASSERT_EQ(list.GetNumRecords(), 2);
  EXPECT_EQ(list.GetKey(1)->GetText(), nullptr);
}

TEST(DataFile, EmptyFileAndHeaderOnly) {
  DataFile_cl empty(WriteTempFile("e", ""), kMicroarray);
  EXPECT_EQ(empty.GetNumRecords(), 0);
  EXPECT_EQ(empty.GetNumColumns(), 0);
  EXPECT_EQ(empty.CreateMatrix(nullptr, nullptr)->GetNumRows(), 0);
  DataFile_cl header(WriteTempFile("h", "Gene\tE1\n"), kMicroarray);
  EXPECT_EQ(header.GetNumRecords(), 0);
  EXPECT_EQ(Join(header.GetColumnKeys(nullptr)), "E1");
}

TEST(DataFile, VeryLongLinesAreReadWhole) {
  const int kColumns = 120000;  // well over the first line buffer of 524288 bytes
  std::string header = "Gene", row = "g1";
  for (int c = 0; c < kColumns; c++) {
    header += "\tE" + std::to_string(c);
    row += "\t" + std::to_string(c) + ".25";
  }
  DataFile_cl file(WriteTempFile("wide", header + "\n" + row + "\n"), kMicroarray);
  ASSERT_EQ(file.GetNumRealColumns(), kColumns);
  EXPECT_EQ(file.GetDouble(0, "E0"), 0.25);
  EXPECT_EQ(file.GetDouble(0, ("E" + std::to_string(kColumns - 1)).c_str()), kColumns - 1 + 0.25);
}

TEST(DataFile, DuplicateKeysAndColumnNamesShadow) {
  DataFile_cl file(WriteTempFile("dup", "Gene\tA\tA\ng\t1\t2\ng\t3\t4\n"), kMicroarray);
  EXPECT_EQ(file.GetDouble(0, "A"), 2.0);  // the later column of a name wins look-ups by name
  std::unique_ptr<NameSet_tmpl<int>> rows(file.GetRowKeysHash(nullptr));
  EXPECT_EQ(rows->GetEntry("g"), 1);
  EXPECT_EQ(rows->GetSize(), 2);
  Vector_tmpl<Name_sptr> wanted;
  wanted.AddLast(Name_sptr("g"));
  wanted.AddLast(Name_sptr("nope"));
  std::unique_ptr<Vector_tmpl<int>> found(file.GetRows(wanted));
  EXPECT_EQ((*found)[0], 1);
  EXPECT_EQ((*found)[1], -1);
  std::unique_ptr<Vector_tmpl<int>> columns(file.GetColumns(wanted));
  EXPECT_EQ((*columns)[0], -1);
  // Both columns and both records stay in the matrix.
  Matrix_sptr m = file.CreateMatrix(nullptr, nullptr);
  EXPECT_EQ(m->GetNumRows(), 2);
  EXPECT_EQ(m->GetNumCols(), 2);
}

TEST(DataFile, SetColumnNameMovesTheLookUp) {
  DataFile_cl file(WriteTempFile("rename", "Gene\tA\tB\ng\t1\t2\n"), kMicroarray);
  file.SetColumnName(1, Name_sptr("Z"));
  EXPECT_EQ(file.GetDouble(0, "Z"), 1.0);
  EXPECT_EQ(file.GetDouble(0, "A"), kMissingReal);
  EXPECT_EQ(Text(file.GetColumnName(1)), "Z");
  EXPECT_TRUE(file.GetColumnName(7).IsNull());
}

TEST(DataFile, FiltersSelectRowsAndColumnsInFileOrder) {
  // Reals in column 1 and 3, integers in column 2: the matrix has reals first, then integers.
  DataFileDescriptor_cl mixed(1, 1, 0, 2, 2, 1, -999, -1, -1);
  DataFile_cl file(WriteTempFile("mix", "Gene\tR1\tI1\tR2\ng1\t0.5\t1\t1.5\ng2\t2.5\t2\t3.5\ng3\t4.5\t3\t5.5\n"), mixed);
  EXPECT_EQ(file.GetColumnType(2), 1);
  EXPECT_EQ(file.GetColumnType(3), 2);
  EXPECT_EQ(Join(file.GetMatrixColumnKeys(nullptr)), "R1,R2,I1");
  auto rows = Filter({"g3", "g1", "absent"});
  auto columns = Filter({"I1", "R2"});
  Matrix_sptr m = file.CreateMatrix(rows.get(), columns.get());
  ASSERT_EQ(m->GetNumRows(), 2);
  ASSERT_EQ(m->GetNumCols(), 2);
  EXPECT_EQ(m->GetElement(0, 0), 1.5);  // g1 R2
  EXPECT_EQ(m->GetElement(0, 1), 1.0);  // g1 I1
  EXPECT_EQ(m->GetElement(1, 0), 5.5);  // g3 R2
  EXPECT_EQ(Join(file.GetRowKeys(rows.get())), "g1,g3");
  EXPECT_EQ(Join(file.GetMatrixColumnKeys(columns.get())), "R2,I1");
  EXPECT_EQ(Join(file.GetColumnKeys(columns.get())), "I1,R2");
  std::unique_ptr<NameSet_tmpl<int>> kept(file.GetColumnKeysHash(columns.get()));
  EXPECT_EQ(kept->GetEntry("R2"), 1);
  std::unique_ptr<NameSet_tmpl<int>> keptRows(file.GetRowKeysHash(rows.get()));
  EXPECT_EQ(keptRows->GetEntry("g3"), 1);
  EXPECT_EQ(keptRows->GetEntry("g2"), -1);
}

TEST(DataFile, SquareAndOneColumnMatricesHoldTheFileCells) {
  // A square result is made as a unit matrix: every cell must still come from the file.
  DataFile_cl file(WriteTempFile("sq", "Gene\tA\tB\ng1\t5\t6\ng2\t7\t\n"), kMicroarray);
  Matrix_sptr m = file.CreateMatrix(nullptr, nullptr);
  EXPECT_EQ(m->GetElement(0, 0), 5.0);
  EXPECT_EQ(m->GetElement(1, 1), kMissingReal);
  Matrix_sptr column = file.CreateMatrix(nullptr, Filter({"B"}).get());
  EXPECT_EQ(column->GetNumCols(), 1);
  EXPECT_EQ(column->GetElement(0, 0), 6.0);
}

TEST(DataFile, PrintWritesTheSelectedKindsBack) {
  DataFileDescriptor_cl mixed(1, 1, 0, 2, 2, 1, 1, -1, -1);
  DataFile_cl file(WriteTempFile("print", "Gene\tR\tI\tS\ng1\t0.5\t3\tx\ng2\t\t\t\n"), mixed);
  std::ostringstream all;
  file.Print(all, 1, 1, 1, 1, 1);
  EXPECT_EQ(all.str(), "Key\tGene\tR\tI\tS\t\ng1\tg1\t0.5\t3\tx\t\ng2\tg2\t\t\t\t\n");
  std::ostringstream reals;
  file.Print(reals, 0, 0, 0, 0, 1);
  EXPECT_EQ(reals.str(), "0.5\t\n\t\n");
}

TEST(DataFile, NumbersReadAsStrtodReadsThem) {
  // Random decimal texts in many shapes, and the forms that strtod alone knows.
  Random_cl random(7);
  std::string header = "Gene", row = "g";
  std::vector<std::string> texts = {"0x1A", "+2.5", " 3", "inf", "-Infinity", "nan", "1e400", "-1e-400",
                                    "4.9e-324", "2.2250738585072011e-308", ".5", "-.5e1", "5.", "-", ".", "1e",
                                    "1e+", "12abc", "-0", "0.1000000000000000055511151231257827",
                                    "179769313486231580793728971405301e276", "1.5\r", "0X10", "-0x8p-1"};
  for (int i = 0; i < 2000; i++) {
    std::string text = random.SampleUniform() < 0.3 ? "-" : "";
    int digits = 1 + static_cast<int>(random.SampleUniform() * 20);
    for (int d = 0; d < digits; d++) text += static_cast<char>('0' + static_cast<int>(random.SampleUniform() * 10));
    if (random.SampleUniform() < 0.7) text.insert(text.size() - digits / 2, ".");
    if (random.SampleUniform() < 0.4) text += "e" + std::to_string(static_cast<int>(random.SampleUniform() * 640) - 320);
    texts.push_back(text);
  }
  for (size_t i = 0; i < texts.size(); i++) {
    header += "\tc" + std::to_string(i);
    row += "\t" + texts[i];
  }
  DataFile_cl file(WriteTempFile("num", header + "\n" + row + "\n"), kMicroarray);
  for (size_t i = 0; i < texts.size(); i++) {
    double expected = strtod(texts[i].c_str(), nullptr);
    double got = file.GetDouble(0, static_cast<int>(i) + 1);
    if (std::isnan(expected)) EXPECT_TRUE(std::isnan(got)) << texts[i];
    else EXPECT_EQ(memcmp(&expected, &got, sizeof got), 0) << texts[i] << " " << expected << " " << got;
  }
}

TEST(DataFileDeathTest, AFileThatCannotBeOpenedStops) {
  EXPECT_DEATH(DataFile_cl(Name_sptr("/nonexistent/expr.txt"), kMicroarray),
               "^DataFile_cl::Load Cannot open file /nonexistent/expr.txt\n$");
  EXPECT_DEATH(DataFile_cl::StopUnlessReadable(Name_sptr("/nonexistent/g.txt"), "VornStepX_cl::Run"),
               "^VornStepX_cl::Run Cannot open file /nonexistent/g.txt\n$");
}

TEST(DataFile, ANullNameLoadsNothing) {
  DataFile_cl file(Name_sptr{}, &kMicroarray);
  EXPECT_EQ(file.GetNumRecords(), 0);
  EXPECT_EQ(file.GetNumColumns(), 0);
}
