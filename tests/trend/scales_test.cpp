#include <gtest/gtest.h>

#include "shell/catalogue.h"
#include "trend/colour_table.h"
#include "trend/scale_edit.h"
#include "trend/scale_steps.h"
#include "trend/unit_table.h"
#include "trend/wave_scale.h"
#include "trend/zoom_setting.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;

TEST(ScaleSteps, SpanOf40000And19999) {
  EXPECT_EQ(GridStepMinor(40000), 4000);
  EXPECT_EQ(GridStepLabel(40000), 20000);
  EXPECT_EQ(GridStepMinor(19999), 1000);
  EXPECT_EQ(GridStepLabel(19999), 5000);
}

TEST(ScaleSteps, RowEdgesAndNegativeSpan) {
  EXPECT_EQ(GridStepLabel(3), 1);
  EXPECT_EQ(GridStepLabel(4), 2);
  EXPECT_EQ(GridStepMinor(20), 2);
  EXPECT_EQ(GridStepMinor(199), 10);
  EXPECT_EQ(GridStepMinor(200), 20);
  EXPECT_EQ(GridStepLabel(39999), 10000);
  EXPECT_EQ(GridStepMinor(-1), 4000);
  EXPECT_EQ(GridStepLabel(-1), 20000);
}

TEST(ScaleSteps, ZeroSpanCannotReachTheStepsWaveKeepsTheEndsApart) {
  RecordFileInfo info = MakeRecord(10, 2, 0, 0);
  info.Channels[0].ScaleLow = info.Channels[0].ScaleHigh = 50;
  double a = 0, b = 0;
  ScaleEnds(info, 1, a, b);
  EXPECT_NE(a, b);
}

TEST(WaveScale, EqualEndsBelowMinusEightRaiseTheTopOtherwiseLowerTheBottom) {
  RecordFileInfo info = MakeRecord(10, 2, 0, 0);
  info.Channels[0].ScaleLow = info.Channels[0].ScaleHigh = -9;
  info.Channels[1].ScaleLow = info.Channels[1].ScaleHigh = -8;
  double a = 0, b = 0;
  ScaleEnds(info, 1, a, b);
  EXPECT_EQ(a, -9);
  EXPECT_EQ(b, -8);
  ScaleEnds(info, 2, a, b);
  EXPECT_EQ(a, -9);
  EXPECT_EQ(b, -8);
}

TEST(WaveScale, ValueOnVTopIsInsideOneAboveLiesOnTheEdge) {
  RecordFileInfo info = MakeRecord(10, 1, 0, 0);  // scale 0..1000
  WaveScale s = MakeWaveScale(info, 1, 516, 3250, 3570);
  // vTop = Round((135 / 3250 + 1) x 1000) = 1042 is still placed by the scale,
  // just over the zone's top; 1043 is put on the plot's edge.
  EXPECT_EQ(s.vTop, 1042);
  EXPECT_EQ(WaveHeight(s, 1042), -2);
  EXPECT_EQ(WaveHeight(s, static_cast<std::int32_t>(s.vTop + 1)), 0);
  EXPECT_EQ(WaveHeight(s, static_cast<std::int32_t>(s.vBot - 1)), s.Hmax);
  EXPECT_EQ(WaveHeight(s, 32767), 0);
  EXPECT_EQ(WaveHeight(s, -32768), s.Hmax);
  EXPECT_EQ(WaveHeight(s, 0), 135 + 3250);
  EXPECT_EQ(WaveHeight(s, 1000), 135);
}

TEST(WaveScale, UpsideDownScaleMirrors) {
  RecordFileInfo info = MakeRecord(10, 1, 0, 0);
  info.Channels[0].ScaleLow = 1000;
  info.Channels[0].ScaleHigh = 0;
  WaveScale s = MakeWaveScale(info, 1, 516, 3250, 3570);
  EXPECT_EQ(WaveHeight(s, 0), 135);  // ScaleHigh still at the zone's top
  EXPECT_EQ(WaveHeight(s, 1000), 135 + 3250);
  EXPECT_EQ(WaveHeight(s, 32767), s.Hmax);  // over range to the bottom edge
  EXPECT_EQ(WaveHeight(s, -32767), 0);
}

TEST(WaveScale, MidRuleWithAClippedEndRunsToTheEdge) {
  RecordFileInfo info = MakeRecord(10, 1, 0, 0);
  WaveScale s = MakeWaveScale(info, 1, 516, 3250, 3570);
  EXPECT_EQ(MidHeight(s, 0, 2000), 0);
  EXPECT_EQ(MidHeight(s, 1000, s.Hmax), s.Hmax);
  EXPECT_EQ(MidHeight(s, 1000, 2000), 1500);
  EXPECT_EQ(MidHeight(s, 1001, 2000), 1500);  // 1500.5 to the even neighbour
}

TEST(WaveScale, ColumnsAreOneOrTwoPitchesApart) {
  // PlotSpan 10 columns (PX = 10), 7 columns in a full range.
  std::vector<int> xs;
  for (int i = 0; i < 7; ++i) xs.push_back(ColumnPosition(150, 15, 7, i));
  EXPECT_EQ(xs, (std::vector<int>{0, 15, 45, 75, 90, 120, 150}));
}

TEST(Colours, TableGreysAndTexts) {
  std::string colour = "1";
  ColorFromCode(6, colour);
  EXPECT_EQ(colour, std::to_string(234 + 256 * 234));
  ColorFromCode(0, colour);
  EXPECT_EQ(colour, std::to_string(234 + 256 * 234));
  ColorFromCode(15, colour);
  EXPECT_EQ(colour, std::to_string(234 + 256 * 234));
  EXPECT_EQ(GetMessageText(ColourNameMessageId(1)), "赤");
  EXPECT_EQ(ColourNameMessageId(14), 11213);
  Rgb grey1 = GreyOfStep(1);
  EXPECT_EQ(grey1.r, 0xE0);
  EXPECT_EQ(GreyOfStep(0).g, 0xFF);
  EXPECT_EQ(GreyOfStep(10).b, 0x50);
  Rgb back = RgbOfColourText(ColourText({53, 85, 90}));
  EXPECT_EQ(back.r, 53);
  EXPECT_EQ(back.g, 85);
  EXPECT_EQ(back.b, 90);
}

TEST(ScaleEdit, TextsOfEightCharactersAreRefusedFirst) {
  RecordFileInfo info = MakeRecord(10, 1, 0, 0);
  EXPECT_EQ(CheckScaleEdit(info, 1, "12345678", "x").messageId, 18300);
  EXPECT_EQ(CheckScaleEdit(info, 1, "1234567", "x").messageId, 18301);
}

TEST(ScaleEdit, MaximumOf100AndMinimumOf100Point0AreEqual) {
  RecordFileInfo info = MakeRecord(10, 1, 0, 0);
  EXPECT_EQ(CheckScaleEdit(info, 1, "100", "100.0").messageId, 18303);
}

TEST(ScaleEdit, ThreeDecimalsAccept32767AndRefuse32768) {
  RecordFileInfo info = MakeRecord(10, 1, 0, 0);
  info.Channels[0].Decimals = 3;
  EXPECT_EQ(CheckScaleEdit(info, 1, "32.767", "0").messageId, 0);
  ScaleEditCheck refused = CheckScaleEdit(info, 1, "32.768", "0");
  EXPECT_EQ(refused.messageId, 20115);
  // The upper end fills @FORMIN@ and the lower end @FORMAX@.
  EXPECT_EQ(refused.messageText, "32.767から-32.767の値を入力してください");
}

TEST(ScaleEdit, LogarithmicLimitsAreReportedNineFirst) {
  RecordFileInfo info = MakeRecord(10, 1, 0, 0);
  info.Channels[0].ScaleKind = 1;
  ScaleEditCheck refused = CheckScaleEdit(info, 1, "10", "1");
  EXPECT_EQ(refused.messageText, "9から-9の値を入力してください");
}

TEST(ScaleEdit, NearlyEqualAfterRounding) {
  RecordFileInfo info = MakeRecord(10, 1, 0, 0);  // one decimal
  EXPECT_EQ(CheckScaleEdit(info, 1, "10.01", "10.02").messageId, 18304);
}

TEST(ScaleEdit, UpsideDownScaleIsAcceptedAndApplied) {
  RecordFileInfo info = MakeRecord(10, 1, 1, 0);
  ASSERT_EQ(CheckScaleEdit(info, 1, "0", "50.5").messageId, 0);
  ApplyScaleEdit(info, 1, "0", "50.5");
  EXPECT_EQ(info.Channels[0].ScaleHigh, 0);
  EXPECT_EQ(info.Channels[0].ScaleLow, 505);
  EXPECT_EQ(info.Channels[0].DisplayLow, 50.5);
  ApplyScaleEdit(info, 2, "3", "-1");
  EXPECT_EQ(info.Dis[0].ScaleHigh, 3);
  EXPECT_EQ(info.Dis[0].ScaleLow, -1);
}

TEST(ScaleEdit, StartTexts) {
  RecordFileInfo info = MakeRecord(10, 1, 1, 0);
  info.Channels[0].DisplayHigh = 12.5;
  ScaleEditTexts texts = ScaleEditStartTexts(info, 1);
  EXPECT_EQ(texts.maxText, "12.5");
  EXPECT_EQ(texts.minText, "0");
  EXPECT_EQ(ScaleEditStartTexts(info, 2).maxText, "1");
}

TEST(ZoomSetting, EnlargeLimits) {
  EXPECT_EQ(CheckZoomSetting("0", true, 100).messageId, 19100);
  EXPECT_EQ(CheckZoomSetting("101", true, 100).messageId, 19100);
  EXPECT_EQ(CheckZoomSetting("10000", true, 100).messageId, 19100);
  EXPECT_EQ(CheckZoomSetting("abc", true, 100).messageId, 19100);
  ZoomSetting ok = CheckZoomSetting("2", true, 100);
  EXPECT_EQ(ok.messageId, 0);
  EXPECT_EQ(ok.caption, "x2");
  TrendView view;
  ApplyZoomSetting(view, ok);
  EXPECT_EQ(view.ColumnPitch, 30);
  EXPECT_EQ(view.ZoomKind, 0);
}

TEST(ZoomSetting, ReduceIsRoundedUpToALevelMultiple) {
  ZoomSetting refused = CheckZoomSetting("1", false, 300);
  EXPECT_EQ(refused.messageText, "2から300の範囲の数値を入力してください");
  EXPECT_EQ(CheckZoomSetting("301", false, 300).messageId, 19101);
  ZoomSetting ok = CheckZoomSetting("23", false, 300);
  EXPECT_EQ(ok.messageId, 0);
  EXPECT_EQ(ok.level, 1);
  EXPECT_EQ(ok.multiplier, 3);
  EXPECT_EQ(ok.caption, "x1/30  ");
  TrendView view;
  view.ColumnPitch = 30;
  ApplyZoomSetting(view, ok);
  EXPECT_EQ(view.ColumnPitch, 15);
  EXPECT_EQ(view.ZoomKind, 1);
}

TEST(UnitTable, CodesKeepTheirBlankPlaces) {
  std::vector<std::string> units = UnitRead();
  ASSERT_EQ(units.size(), 156u);
  EXPECT_EQ(units[4], "       ");
  EXPECT_EQ(units[6], "t/d    ");
  EXPECT_EQ(UnitText(200), "       ");
  EXPECT_DOUBLE_EQ(ScaleByDecimalsCode(1234, 2), 12.34);
  EXPECT_DOUBLE_EQ(ScaleByDecimalsCode(1234, 7), 1234);
}

}  // namespace
}  // namespace recscope
