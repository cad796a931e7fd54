// What the print settings dialog's OK does without its window, and the length
// test of the page title in bytes of the code page.
#include "print/print_setting_form.h"

#include <gtest/gtest.h>

#include "../shell/temp_folder.h"
#include "shell/ini_file.h"
#include "shell/settings.h"

using namespace recscope;
using recscope::testing::ReadBytes;
using recscope::testing::TempFolder;
using recscope::testing::WriteBytes;

namespace {

const char *kIni =
    "[PRINT]\r\nDLINE=3\r\nWLINE=4\r\nMLINE=5\r\nSLINE=6\r\nSCALE=9\r\nPALL=2\r\nDAY=1\r\n"
    "HOR=2\r\nMIN=30\r\nPAG=7\r\nCURSOR=1\r\n";

TrendView ViewOf(std::int32_t start, std::int32_t end) {
  TrendView view;
  view.DisplayStart = start;
  view.DisplayEnd = end;
  return view;
}

std::string Repeat(const std::string &piece, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += piece;
  return out;
}

}  // namespace

TEST(PrintSettingForm, FieldsShowTheSettingsInHandWithTheScaleWidthOfSline) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, kIni);
  PrintConfig config;
  PrintSettingsLoad(config, ini);
  const PrintSettingForm form = PrintSettingFormOf(config);
  EXPECT_EQ(form.DataLine, 3);
  EXPECT_EQ(form.WakuLine, 4);
  EXPECT_EQ(form.MasuLine, 5);
  EXPECT_EQ(form.ScaleLine, 6);
  EXPECT_EQ(form.Range, kRangeBySetTime);
  EXPECT_EQ(form.Day, 1);
  EXPECT_EQ(form.Hour, 2);
  EXPECT_EQ(form.Minute, 30);
  EXPECT_EQ(form.Pages, 7);
  EXPECT_FALSE(form.FlagValues);
}

TEST(PrintSettingForm, OkOnTheDisplayOnlyStoresTheDisplayRangeWithNoStep) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, kIni);
  PrintConfig config;
  PrintSettingsLoad(config, ini);
  PrintSettingForm form = PrintSettingFormOf(config);
  form.Range = kRangeScreen;
  TrendView view = ViewOf(1000, 4600);
  AcceptPrintSettingForm(form, config, view, ini);
  EXPECT_EQ(config.PrintMode, "Screen");
  EXPECT_EQ(config.PALL, 0);
  EXPECT_EQ(view.PrintStart, 1000);
  EXPECT_EQ(view.PrintEnd, 4600);
  EXPECT_EQ(view.PrintStep, 0);
  EXPECT_EQ(ReadIni("PALL", "PRINT", ini), "0");
}

TEST(PrintSettingForm, OkByTheDisplayWidthStepsByTheDisplayWidth) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, kIni);
  PrintConfig config;
  PrintSettingsLoad(config, ini);
  PrintSettingForm form = PrintSettingFormOf(config);
  form.Range = kRangeByDisplay;
  TrendView view = ViewOf(1000, 4600);
  AcceptPrintSettingForm(form, config, view, ini);
  EXPECT_EQ(config.PrintMode, "All");
  EXPECT_EQ(config.PALL, 1);
  EXPECT_EQ(view.PrintStart, 1000);
  EXPECT_EQ(view.PrintEnd, 4600);
  EXPECT_EQ(view.PrintStep, 3600);
  EXPECT_EQ(ReadIni("PALL", "PRINT", ini), "1");
}

TEST(PrintSettingForm, OkByASetTimeStepsByDaysHoursAndMinutes) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, kIni);
  PrintConfig config;
  PrintSettingsLoad(config, ini);
  PrintSettingForm form = PrintSettingFormOf(config);
  form.Range = kRangeBySetTime;
  form.Day = 2;
  form.Hour = 3;
  form.Minute = 4;
  TrendView view = ViewOf(1000, 4600);
  AcceptPrintSettingForm(form, config, view, ini);
  EXPECT_EQ(config.PrintMode, "All");
  EXPECT_EQ(config.PALL, 2);
  EXPECT_EQ(view.PrintStep, 2 * 86400 + 3 * 3600 + 4 * 60);
  EXPECT_EQ(ReadIni("DAY", "PRINT", ini), "2");
  EXPECT_EQ(ReadIni("HOR", "PRINT", ini), "3");
  EXPECT_EQ(ReadIni("MIN", "PRINT", ini), "4");
}

TEST(PrintSettingForm, CursorIsOneUnlessTheFlagOptionIsChosen) {
  PrintSettingForm form;
  form.FlagValues = false;
  EXPECT_EQ(PrintSettingsOfForm(form).CURSOR, 1);
  form.FlagValues = true;
  EXPECT_EQ(PrintSettingsOfForm(form).CURSOR, 0);
}

TEST(PrintSettingForm, OkWritesTheWholeSectionWithTheScaleWidthUnderScale) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, kIni);
  PrintConfig config;
  PrintSettingsLoad(config, ini);
  PrintSettingForm form;
  form.DataLine = 2;
  form.WakuLine = 3;
  form.MasuLine = 1;
  form.ScaleLine = 8;
  form.Range = kRangeByDisplay;
  form.Day = 0;
  form.Hour = 6;
  form.Minute = 15;
  form.Pages = 12;
  form.FlagValues = true;
  TrendView view = ViewOf(0, 60);
  AcceptPrintSettingForm(form, config, view, ini);
  EXPECT_EQ(ReadBytes(ini),
            "[PRINT]\r\nDLINE=2\r\nWLINE=3\r\nMLINE=1\r\nSLINE=6\r\nSCALE=8\r\nPALL=1\r\nDAY=0\r\n"
            "HOR=6\r\nMIN=15\r\nPAG=12\r\nCURSOR=0\r\n");
  EXPECT_EQ(config.SLINE, 8);  // the width in hand until the program ends
}

TEST(PrintTitle, EightyDoubleByteCharactersAre160BytesAndAreRefused) {
  const std::string title = Repeat("あ", 80);
  EXPECT_EQ(PrintTitleBytes(title), 160u);
  EXPECT_FALSE(PrintTitleFits(title));
}

TEST(PrintTitle, EightyBytesFitAndEightyOneDoNot) {
  EXPECT_TRUE(PrintTitleFits(Repeat("a", 80)));
  EXPECT_FALSE(PrintTitleFits(Repeat("a", 81)));
  EXPECT_TRUE(PrintTitleFits(Repeat("漢", 40)));
  EXPECT_FALSE(PrintTitleFits(Repeat("漢", 40) + "a"));
  // Half-width kana take one byte each in the code page.
  EXPECT_EQ(PrintTitleBytes(Repeat("ｶ", 80)), 80u);
  EXPECT_TRUE(PrintTitleFits(Repeat("ｶ", 80)));
  EXPECT_TRUE(PrintTitleFits(""));
}
