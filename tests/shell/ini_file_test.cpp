#include "shell/ini_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/text_encoding.h"
#include "temp_folder.h"

using namespace recscope;
using recscope::testing::ReadBytes;
using recscope::testing::TempFolder;
using recscope::testing::WriteBytes;

TEST(IniFile, MissingFileSectionOrKeyReadsAsError) {
  TempFolder folder;
  const std::string ini = folder.file("VIEWERCOM.INI");
  EXPECT_EQ(ReadIni("DLINE", "PRINT", ini), "ERROR");
  WriteBytes(ini, "[PRINT]\r\nDLINE=3\r\n");
  EXPECT_EQ(ReadIni("WLINE", "PRINT", ini), "ERROR");
  EXPECT_EQ(ReadIni("DLINE", "TREND", ini), "ERROR");
  EXPECT_EQ(ReadIni("DLINE", "PRINT", ini), "3");
}

TEST(IniFile, StoredErrorCannotBeToldFromMissing) {
  TempFolder folder;
  const std::string ini = folder.file("a.ini");
  WriteIni("ERROR", "AUTO", "FTP", ini);
  EXPECT_EQ(ReadIni("AUTO", "FTP", ini), ReadIni("NOKEY", "FTP", ini));
}

TEST(IniFile, ValueOfExactly255CharactersComesBackWhole) {
  TempFolder folder;
  const std::string ini = folder.file("a.ini");
  const std::string value(255, 'x');
  WriteIni(value, "K", "S", ini);
  EXPECT_EQ(ReadIni("K", "S", ini), value);
}

TEST(IniFile, LongerValueIsCutAt254) {
  TempFolder folder;
  const std::string ini = folder.file("a.ini");
  std::string value;
  for (int i = 0; i < 300; ++i) value += static_cast<char>('a' + i % 26);
  WriteIni(value, "K", "S", ini);
  EXPECT_EQ(ReadIni("K", "S", ini), value.substr(0, 254));
  WriteIni(std::string(256, 'y'), "K", "S", ini);
  EXPECT_EQ(ReadIni("K", "S", ini), std::string(254, 'y'));
}

TEST(IniFile, ValueEndsAtFirstZeroCharacter) {
  TempFolder folder;
  const std::string ini = folder.file("a.ini");
  WriteBytes(ini, std::string("[S]\r\nK=abc\0def\r\n", 16));
  EXPECT_EQ(ReadIni("K", "S", ini), "abc");
}

TEST(IniFile, SectionAndKeyMatchRegardlessOfCase) {
  TempFolder folder;
  const std::string ini = folder.file("a.ini");
  WriteBytes(ini, "[Trend]\r\nDirection=Ver\r\n");
  EXPECT_EQ(ReadIni("DIRECTION", "TREND", ini), "Ver");
  EXPECT_EQ(ReadIni("direction", "trend", ini), "Ver");
  WriteIni("Hori", "DIRECTION", "TREND", ini);
  // The key is replaced in place and keeps its spelling; no second section appears.
  EXPECT_EQ(ReadBytes(ini), "[Trend]\r\nDirection=Hori\r\n");
}

TEST(IniFile, CodePage932OnDisk) {
  TempFolder folder;
  const std::string ini = folder.file("a.ini");
  const std::string name = "記録計ｱﾗｰﾑ";
  WriteIni(name, "USER", "FTP_1", ini);
  const std::string bytes = ReadBytes(ini);
  EXPECT_NE(bytes.find(Utf8ToCp932(name)), std::string::npos);
  EXPECT_EQ(bytes.find(name), std::string::npos);
  EXPECT_EQ(ReadIni("USER", "FTP_1", ini), name);
}

TEST(IniFile, DoubleByteCharacterIsNotSplitByTheBufferCut) {
  TempFolder folder;
  const std::string ini = folder.file("a.ini");
  // 253 single bytes and then a double-byte character: 255 bytes, whole.
  const std::string whole = std::string(253, 'a') + "記";
  WriteIni(whole, "K", "S", ini);
  EXPECT_EQ(ReadIni("K", "S", ini), whole);
  // One byte more and the character would straddle the cut at 254.
  WriteIni(std::string(253, 'a') + "記録", "K", "S", ini);
  EXPECT_EQ(ReadIni("K", "S", ini), std::string(253, 'a'));
}

TEST(IniFile, WriteAddsKeyToItsSectionAndSectionAtTheEnd) {
  TempFolder folder;
  const std::string ini = folder.file("a.ini");
  WriteBytes(ini, "; settings\r\n[PRINT]\r\nDLINE=1\r\n\r\n[TREND]\r\nDIRECTION=Ver\r\n");
  WriteIni("2", "WLINE", "print", ini);
  WriteIni("0", "AUTO", "FTP", ini);
  EXPECT_EQ(ReadBytes(ini),
            "; settings\r\n[PRINT]\r\nDLINE=1\r\nWLINE=2\r\n\r\n[TREND]\r\nDIRECTION=Ver\r\n"
            "[FTP]\r\nAUTO=0\r\n");
  EXPECT_EQ(ReadIni("WLINE", "PRINT", ini), "2");
  EXPECT_EQ(ReadIni("AUTO", "FTP", ini), "0");
}

TEST(IniFile, WriteCreatesTheFileAndLeavesNoTemporaryBehind) {
  TempFolder folder;
  const std::string ini = folder.file("new.ini");
  WriteIni("1", "HYOUJINUM", "DATETYPE", ini);
  EXPECT_EQ(ReadBytes(ini), "[DATETYPE]\r\nHYOUJINUM=1\r\n");
  int files = 0;
  for (const auto &entry : std::filesystem::directory_iterator(folder.str())) {
    (void)entry;
    ++files;
  }
  EXPECT_EQ(files, 1);
}

TEST(IniFile, GarbageLinesAreSkippedAndKept) {
  TempFolder folder;
  const std::string ini = folder.file("a.ini");
  const std::string garbage = "\xff\xfe garbage\r\n=novalue\r\n[broken\r\n";
  WriteBytes(ini, garbage + "[S]\r\nno equals here\r\n  K  =  spaced value  \r\n");
  EXPECT_EQ(ReadIni("K", "S", ini), "spaced value");
  EXPECT_EQ(ReadIni("no equals here", "S", ini), "ERROR");
  WriteIni("v", "K2", "S", ini);
  const std::string after = ReadBytes(ini);
  EXPECT_EQ(after.substr(0, garbage.size()), garbage);
  EXPECT_EQ(ReadIni("K2", "S", ini), "v");
}

TEST(IniFile, EnclosingQuotesAreDropped) {
  TempFolder folder;
  const std::string ini = folder.file("a.ini");
  WriteBytes(ini, "[S]\r\nA=\"quoted text\"\r\nB=\"half\r\nC=\r\n");
  EXPECT_EQ(ReadIni("A", "S", ini), "quoted text");
  EXPECT_EQ(ReadIni("B", "S", ini), "\"half");
  EXPECT_EQ(ReadIni("C", "S", ini), "");
}

TEST(IniFile, UnreadableFileReadsAsMissingAndWriteFailsQuietly) {
  TempFolder folder;
  // A folder where the file should be: nothing can be read or written.
  const std::string ini = folder.file("VIEWERCOM.INI");
  std::filesystem::create_directory(ini);
  EXPECT_EQ(ReadIni("DLINE", "PRINT", ini), "ERROR");
  WriteIni("1", "DLINE", "PRINT", ini);
  EXPECT_TRUE(std::filesystem::is_directory(ini));
  EXPECT_FALSE(std::filesystem::exists(ini + ".tmp"));
}

TEST(IniFile, FileIsNotHeldBetweenCalls) {
  TempFolder folder;
  const std::string ini = folder.file("a.ini");
  WriteIni("1", "K", "S", ini);
  EXPECT_EQ(ReadIni("K", "S", ini), "1");
  // Another writer changes the file: the next read sees it at once.
  WriteBytes(ini, "[S]\r\nK=2\r\n");
  EXPECT_EQ(ReadIni("K", "S", ini), "2");
  std::filesystem::remove(ini);
  EXPECT_EQ(ReadIni("K", "S", ini), "ERROR");
}
