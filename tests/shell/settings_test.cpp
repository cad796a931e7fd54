#include "shell/settings.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "shell/ini_file.h"
#include "temp_folder.h"

using namespace recscope;
using recscope::testing::ReadBytes;
using recscope::testing::TempFolder;
using recscope::testing::WriteBytes;

TEST(Settings, IniPathAddsTheSeparatorEvenAfterOne) {
  EXPECT_EQ(ViewerComIniPath("/opt/rs"), "/opt/rs/VIEWERCOM.INI");
  EXPECT_EQ(ViewerComIniPath("/"), "//VIEWERCOM.INI");
}

TEST(Settings, DeliveredFileIsPutInPlaceWhenMissing) {
  TempFolder folder;
  EXPECT_TRUE(EnsureViewerComIni(folder.str()));
  const std::string ini = ViewerComIniPath(folder.str());
  EXPECT_EQ(ReadBytes(ini), kDeliveredViewerComIni);
  for (const char *key :
       {"DLINE", "WLINE", "MLINE", "SLINE", "PALL", "DAY", "HOR", "MIN", "PAG", "CURSOR"})
    EXPECT_NE(ReadIni(key, "PRINT", ini), "ERROR") << key;
}

TEST(Settings, ExistingFileIsLeftAsItIs) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, "[PRINT]\r\nDLINE=7\r\n");
  EXPECT_TRUE(EnsureViewerComIni(folder.str()));
  EXPECT_EQ(ReadBytes(ini), "[PRINT]\r\nDLINE=7\r\n");
}

TEST(Settings, ShippedResourceMatchesTheDeliveredText) {
  EXPECT_EQ(ReadBytes(std::string(RECSCOPE_SOURCE_DIR) + "/resources/VIEWERCOM.INI"),
            kDeliveredViewerComIni);
}

TEST(Settings, PrintSettingsAreReadFromTheFile) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini,
             "[PRINT]\r\nDLINE=3\r\nWLINE=4\r\nMLINE=5\r\nSLINE=6\r\nPALL=1\r\nDAY=2\r\n"
             "HOR=12\r\nMIN=30\r\nPAG=9\r\nCURSOR=1\r\n");
  PrintSettings s = ReadPrintSettings(ini);
  EXPECT_EQ(s.DLINE, 3);
  EXPECT_EQ(s.WLINE, 4);
  EXPECT_EQ(s.MLINE, 5);
  EXPECT_EQ(s.SLINE, 6);
  EXPECT_EQ(s.PALL, 1);
  EXPECT_EQ(s.DAY, 2);
  EXPECT_EQ(s.HOR, 12);
  EXPECT_EQ(s.MIN, 30);
  EXPECT_EQ(s.PAG, 9);
  EXPECT_EQ(s.CURSOR, 1);
}

TEST(Settings, MissingOrBadPrintKeysGetTheDeliveredValueAndTheFileStays) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  const std::string text = "[PRINT]\r\nDLINE=abc\r\nWLINE=\r\nMLINE=99999\r\nSLINE= 2.5 \r\n";
  WriteBytes(ini, text);
  PrintSettings s = ReadPrintSettings(ini);
  PrintSettings delivered = DeliveredPrintSettings();
  EXPECT_EQ(s.DLINE, delivered.DLINE);
  EXPECT_EQ(s.WLINE, delivered.WLINE);
  EXPECT_EQ(s.MLINE, delivered.MLINE);
  EXPECT_EQ(s.SLINE, 2);  // half to even
  EXPECT_EQ(s.PAG, delivered.PAG);
  EXPECT_EQ(s.CURSOR, delivered.CURSOR);
  EXPECT_EQ(ReadBytes(ini), text);
}

TEST(Settings, ScaleLineWrittenAsScaleAndRestartReadsSline) {
  TempFolder folder;
  ASSERT_TRUE(EnsureViewerComIni(folder.str()));
  const std::string ini = ViewerComIniPath(folder.str());
  PrintSettings chosen = ReadPrintSettings(ini);
  const int delivered = chosen.SLINE;
  chosen.SLINE = delivered + 4;
  WritePrintSettings(chosen, ini);
  EXPECT_EQ(ReadIni("SCALE", "PRINT", ini), std::to_string(delivered + 4));
  EXPECT_EQ(ReadIni("SLINE", "PRINT", ini), std::to_string(delivered));
  // The next start reads SLINE again.
  EXPECT_EQ(ReadPrintSettings(ini).SLINE, delivered);
}

TEST(Settings, DateTypeRoundTripAndNoNumberGivesOne) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  EXPECT_EQ(ReadDateType(ini), 1);
  WriteDateType(4, ini);
  EXPECT_EQ(ReadIni("HYOUJINUM", "DATETYPE", ini), "4");
  EXPECT_EQ(ReadDateType(ini), 4);
  WriteIni("yyyy", "HYOUJINUM", "DATETYPE", ini);
  EXPECT_EQ(ReadDateType(ini), 1);
  WriteIni("9", "HYOUJINUM", "DATETYPE", ini);
  EXPECT_EQ(ReadDateType(ini), 1);
}

TEST(Settings, DirectionVerIsVerticalAndWrittenAgain) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, "[TREND]\r\nDIRECTION=Ver\r\n");
  EXPECT_EQ(ReadTrendDirection(ini), 0);
  EXPECT_EQ(ReadIni("DIRECTION", "TREND", ini), "Ver");
}

TEST(Settings, DirectionLowerCaseVerCountsAsHorizontal) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, "[TREND]\r\nDIRECTION=ver\r\n");
  EXPECT_EQ(ReadTrendDirection(ini), -1);
  EXPECT_EQ(ReadIni("DIRECTION", "TREND", ini), "Hori");
}

TEST(Settings, DirectionMissingIsHorizontalAndWritesHori) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  EXPECT_EQ(ReadTrendDirection(ini), -1);
  EXPECT_EQ(ReadIni("DIRECTION", "TREND", ini), "Hori");
}
