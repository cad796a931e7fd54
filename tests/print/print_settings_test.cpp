#include "print/print_settings.h"

#include <gtest/gtest.h>

#include "../shell/temp_folder.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

using namespace recscope;
using recscope::testing::TempFolder;
using recscope::testing::WriteBytes;

namespace {
const char *kIni =
    "[PRINT]\r\nDLINE=3\r\nWLINE=4\r\nMLINE=5\r\nSLINE=6\r\nSCALE=9\r\nPALL=2\r\nDAY=1\r\n"
    "HOR=2\r\nMIN=30\r\nPAG=7\r\nCURSOR=1\r\n";
}

TEST(PrintSettings, LoadTakesEveryKeyAndTheScaleWidthFromSline) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, kIni);
  PrintConfig config;
  PrintSettingsLoad(config, ini);
  EXPECT_EQ(config.DLINE, 3);
  EXPECT_EQ(config.WLINE, 4);
  EXPECT_EQ(config.MLINE, 5);
  EXPECT_EQ(config.SLINE, 6);  // not SCALE's 9
  EXPECT_EQ(config.PALL, 2);
  EXPECT_EQ(config.DAY, 1);
  EXPECT_EQ(config.HOR, 2);
  EXPECT_EQ(config.MIN, 30);
  EXPECT_EQ(config.PAG, 7);
  EXPECT_EQ(config.CURSOR, 1);
  EXPECT_EQ(config.PrintMode, "All");
}

TEST(PrintSettings, PrintModeIsScreenForTheDisplayOnlyAndAllOtherwise) {
  EXPECT_EQ(PrintModeOf(0), "Screen");
  EXPECT_EQ(PrintModeOf(1), "All");
  EXPECT_EQ(PrintModeOf(2), "All");
}

TEST(PrintSettings, AcceptWritesEveryKeyWithTheScaleWidthUnderScale) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, kIni);
  PrintConfig config;
  PrintSettingsLoad(config, ini);
  PrintSettings chosen = config;
  chosen.DLINE = 2;
  chosen.WLINE = 3;
  chosen.MLINE = 1;
  chosen.SLINE = 4;
  chosen.PALL = 0;
  chosen.DAY = 3;
  chosen.HOR = 4;
  chosen.MIN = 15;
  chosen.PAG = 2;
  chosen.CURSOR = 0;
  PrintSettingsAccept(config, chosen, ini);
  EXPECT_EQ(config.PrintMode, "Screen");
  EXPECT_EQ(config.SLINE, 4);
  EXPECT_EQ(ReadIni("DLINE", "PRINT", ini), "2");
  EXPECT_EQ(ReadIni("WLINE", "PRINT", ini), "3");
  EXPECT_EQ(ReadIni("MLINE", "PRINT", ini), "1");
  EXPECT_EQ(ReadIni("SCALE", "PRINT", ini), "4");
  EXPECT_EQ(ReadIni("SLINE", "PRINT", ini), "6");
  EXPECT_EQ(ReadIni("PALL", "PRINT", ini), "0");
  EXPECT_EQ(ReadIni("DAY", "PRINT", ini), "3");
  EXPECT_EQ(ReadIni("HOR", "PRINT", ini), "4");
  EXPECT_EQ(ReadIni("MIN", "PRINT", ini), "15");
  EXPECT_EQ(ReadIni("PAG", "PRINT", ini), "2");
  EXPECT_EQ(ReadIni("CURSOR", "PRINT", ini), "0");
}

TEST(PrintSettings, AfterARestartTheScaleWidthIsSlineNotTheLastChosen) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, kIni);
  PrintConfig running;
  PrintSettingsLoad(running, ini);
  PrintSettings chosen = running;
  chosen.SLINE = 11;
  PrintSettingsAccept(running, chosen, ini);
  EXPECT_EQ(running.SLINE, 11);  // holds while the program runs
  PrintConfig restarted;
  PrintSettingsLoad(restarted, ini);
  EXPECT_EQ(restarted.SLINE, 6);
  EXPECT_EQ(restarted.DLINE, running.DLINE);
}

TEST(PrintSettings, SharedStateStartLoadsThePrintKeys) {
  TempFolder folder;
  WriteBytes(ViewerComIniPath(folder.str()), kIni);
  SharedState state;
  state.ProgramFolder = folder.str();
  StartSharedState(state, ".");
  EXPECT_EQ(state.Print.DLINE, 3);
  EXPECT_EQ(state.Print.SLINE, 6);
  EXPECT_EQ(state.Print.PAG, 7);
  EXPECT_EQ(state.Print.PrintMode, "All");
  EXPECT_EQ(state.Print.Orientation, kLandscape);  // no DIRECTION: a horizontal trend
}

TEST(PrintSettings, AVerticalTrendStartsOnPortraitPages) {
  TempFolder folder;
  WriteBytes(ViewerComIniPath(folder.str()), std::string(kIni) + "[TREND]\r\nDIRECTION=Ver\r\n");
  SharedState state;
  state.ProgramFolder = folder.str();
  StartSharedState(state, ".");
  EXPECT_EQ(state.TrendOrientation, 0);
  EXPECT_EQ(state.Print.Orientation, kPortrait);
}

TEST(PrintSettings, PaperTableGivesTheScales) {
  EXPECT_DOUBLE_EQ(PaperScale(8), 1.414);
  EXPECT_DOUBLE_EQ(PaperScale(11), 0.704);
  EXPECT_DOUBLE_EQ(PaperScale(12), 1.19);
  EXPECT_DOUBLE_EQ(PaperScale(13), 0.865);
  EXPECT_DOUBLE_EQ(PaperScale(9), 1.0);
  EXPECT_DOUBLE_EQ(PaperScale(1), 1.0);   // letter prints as A4
  EXPECT_DOUBLE_EQ(PaperScale(-3), 1.0);  // odd codes too
  EXPECT_STREQ(PaperName(8), "A3");
  EXPECT_STREQ(PaperName(11), "A5");
  EXPECT_STREQ(PaperName(12), "B4");
  EXPECT_STREQ(PaperName(13), "B5");
  EXPECT_STREQ(PaperName(70), "A4");
}

TEST(PrintSettings, PaperCode8GivesAnA4PageTimes1414) {
  PageExtent page = PrintablePage(kPaperA3, kPortrait);
  EXPECT_DOUBLE_EQ(page.Width, 11680 * 1.414);
  EXPECT_DOUBLE_EQ(page.Height, 16495 * 1.414);
}

TEST(PrintSettings, OrientationSwapsThePage) {
  PageExtent portrait = PrintablePage(kPaperA4, kPortrait);
  EXPECT_DOUBLE_EQ(portrait.Width, 11680);
  EXPECT_DOUBLE_EQ(portrait.Height, 16495);
  PageExtent landscape = PrintablePage(kPaperA4, kLandscape);
  EXPECT_DOUBLE_EQ(landscape.Width, 16495);
  EXPECT_DOUBLE_EQ(landscape.Height, 11680);
  PageExtent b5 = PrintablePage(kPaperB5, kLandscape);
  EXPECT_DOUBLE_EQ(b5.Width, 16495 * 0.865);
  EXPECT_DOUBLE_EQ(b5.Height, 11680 * 0.865);
}

TEST(PrintSettings, ContinuousStepByDisplayWidthOrBySetTime) {
  PrintConfig config;
  config.DAY = 1;
  config.HOR = 2;
  config.MIN = 30;
  config.PALL = 0;
  config.PrintMode = "Screen";
  EXPECT_EQ(ContinuousStep(config, 3600), 0);
  config.PALL = 1;
  config.PrintMode = "All";
  EXPECT_EQ(ContinuousStep(config, 3600), 3600);
  config.PALL = 2;
  EXPECT_EQ(ContinuousStep(config, 3600), 86400 + 2 * 3600 + 30 * 60);
  config.DAY = 0;
  config.HOR = 0;
  config.MIN = 0;
  EXPECT_EQ(ContinuousStep(config, 3600), 0);
}
