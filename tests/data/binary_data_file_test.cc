// Direct-access files of doubles and characters: creation, raw reads and writes, removal.
#include "data/binary_data_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "data_test_helpers.h"

TEST(BinaryDataFile, DoublesAtByteOffsets) {
  Name_sptr name(TempPath("d").c_str());
  BinaryDataFile_cl file(name, 5000, 2.5);
  EXPECT_EQ(ReadWholeFile(name->GetText()).size(), 5000 * sizeof(double));
  EXPECT_EQ(file.ReadDouble(0), 2.5);
  EXPECT_EQ(file.ReadDouble(4999 * sizeof(double)), 2.5);
  file.Write(8 * 17, -1.25);
  EXPECT_EQ(file.ReadDouble(8 * 17), -1.25);
  EXPECT_EQ(file.ReadDouble(8 * 16), 2.5);
  file.DeleteFile();
  EXPECT_NE(access(name->GetText(), F_OK), 0);
}

TEST(BinaryDataFile, CharactersAtByteOffsets) {
  Name_sptr name(TempPath("c").c_str());
  BinaryDataFile_cl file(name, 10, 'a');
  file.Write(3L, 'z');
  EXPECT_EQ(file.ReadChar(3), 'z');
  EXPECT_EQ(file.ReadChar(9), 'a');
  EXPECT_EQ(ReadWholeFile(name->GetText()).substr(0, 5), "aaaza");
  file.DeleteFile();
}

TEST(BinaryDataFileDeathTest, ReadsOutsideTheFileAndUncreatableFilesStop) {
  Name_sptr name(TempPath("o").c_str());
  BinaryDataFile_cl file(name, 2, 'a');
  EXPECT_DEATH(file.ReadChar(2), "^BinaryDataFile_cl::ReadChar Offset 2 is outside file .*_o\n$");
  EXPECT_DEATH(file.ReadDouble(-8), "^BinaryDataFile_cl::ReadDouble Offset -8 is outside file .*_o\n$");
  file.DeleteFile();
  EXPECT_DEATH(BinaryDataFile_cl(Name_sptr("/nonexistent/b.bin"), 1, 1.0),
               "^BinaryDataFile_cl Cannot create file /nonexistent/b.bin\n$");
}
