#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QGuiApplication>

#include "text_recorder.h"
#include "trend/scale_panel.h"
#include "trend/trend_draw.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::DrawnText;
using testing_support::MakeRecord;
using testing_support::TextRecorder;

QGuiApplication &App() {
  static int argc = 1;
  static char name[] = "scale_label_test";
  static char *argv[] = {name, nullptr};
  // Kept to the end of the process, as in the other drawing tests.
  static QGuiApplication *app = new QGuiApplication(argc, argv);
  return *app;
}

std::vector<DrawnText> LabelTexts(double x, double y, const QString &value, bool exponent,
                                  bool horizontal) {
  App();
  TextRecorder device;
  {
    QPainter painter(&device);
    painter.setFont(TrendFont(8));
    ScaleLabel(painter, x, y, value, exponent, horizontal);
  }
  return device.texts();
}

// The right edge of a drawn text in its own font.
double RightOf(const DrawnText &t) {
  QFont font = TrendFont(8);
  font.setPixelSize(t.pixelSize);
  return t.at.x() + QFontMetricsF(font).horizontalAdvance(t.text);
}

double TopOf(const DrawnText &t) {
  QFont font = TrendFont(8);
  font.setPixelSize(t.pixelSize);
  return t.at.y() - QFontMetricsF(font).ascent();
}

void ExpectRaisedExponentAfterTen(const std::vector<DrawnText> &texts, const QString &exponent,
                                  double y) {
  ASSERT_EQ(texts.size(), 2u);
  const DrawnText &ten = texts[0];
  const DrawnText &power = texts[1];
  EXPECT_EQ(ten.text, QStringLiteral("10"));
  EXPECT_EQ(power.text, exponent);
  EXPECT_EQ(ten.pixelSize, 160);
  EXPECT_EQ(power.pixelSize, 120);  // half of 8 points plus 2
  EXPECT_GE(power.at.x(), ten.at.x() + 100);
  EXPECT_GE(power.at.x(), RightOf(ten) - 0.5) << "the exponent starts inside \"10\"";
  EXPECT_NEAR(TopOf(ten), y, 0.01);
  EXPECT_NEAR(TopOf(power), y - 50, 0.01);
}

TEST(ScaleLabel, NegativeExponentKeepsItsSignClearOfTheTen) {
  ExpectRaisedExponentAfterTen(LabelTexts(760, 1000, "-2", true, true), "-2", 1000);
}

TEST(ScaleLabel, NegativeExponentOnTheVerticalViewKeepsItsSign) {
  ExpectRaisedExponentAfterTen(LabelTexts(2000, 520, "-9", true, false), "-9", 520);
}

TEST(ScaleLabel, PositiveExponentStandsAfterTheTenToo) {
  ExpectRaisedExponentAfterTen(LabelTexts(760, 300, "3", true, true), "3", 300);
}

TEST(ScaleLabel, PlainLabelIsRightAlignedOnHorizontalAndCentredOnVertical) {
  App();
  // By the label's width in the panel's font.
  const double width = QFontMetricsF(TrendFont(8)).horizontalAdvance(QStringLiteral("12.5"));
  ASSERT_GT(width, 100);
  std::vector<DrawnText> h = LabelTexts(760, 400, "12.5", false, true);
  ASSERT_EQ(h.size(), 1u);
  EXPECT_EQ(h[0].text, QStringLiteral("12.5"));
  EXPECT_NEAR(h[0].at.x(), 760 - width, 0.01);
  EXPECT_NEAR(RightOf(h[0]), 760, 0.01);
  std::vector<DrawnText> v = LabelTexts(1000, 400, "12.5", false, false);
  ASSERT_EQ(v.size(), 1u);
  EXPECT_NEAR(v[0].at.x(), 1000 - width / 2, 0.01);
  QRectF box = ScaleLabelBox(TrendFont(8), 1000, 400, QStringLiteral("12.5"), false, false);
  EXPECT_NEAR(box.center().x(), 1000, 0.01);
  EXPECT_NEAR(box.width(), width, 0.01);
  std::vector<DrawnText> edge = LabelTexts(100, 400, "12.5", false, true);
  ASSERT_EQ(edge.size(), 1u);
  EXPECT_DOUBLE_EQ(edge[0].at.x(), 0);  // never left of the panel
}

// A whole panel of a log channel from 10^-2 to 10^3: its low end label prints the
// exponent with its minus sign, clear of the "10" before it.
TEST(ScaleLabel, LogPanelPrintsTheLowEndExponentWithItsSign) {
  App();
  for (bool horizontal : {true, false}) {
    RecordFileInfo info = MakeRecord(1000, 1, 0, 0, 1);
    ChannelInfo &ch = info.Channels[0];
    ch.ScaleKind = 1;
    ch.ScaleLow = -2;
    ch.ScaleHigh = 3;
    ch.Decimals = 0;
    TrendView view;
    InitTrendView(view, info, 1);
    TrendScene scene;
    scene.info = &info;
    scene.view = &view;
    scene.layout = LayoutTrend(15000, 8250, 1, horizontal);
    TextRecorder device;
    {
      QPainter painter(&device);
      DrawScalePanel(painter, scene, 0);
    }
    const std::vector<DrawnText> &texts = device.texts();
    bool found = false;
    for (std::size_t i = 1; i < texts.size(); ++i) {
      if (texts[i].text != QStringLiteral("-2")) continue;
      found = true;
      EXPECT_EQ(texts[i - 1].text, QStringLiteral("10"));
      EXPECT_GE(texts[i].at.x(), RightOf(texts[i - 1]) - 0.5) << "horizontal " << horizontal;
    }
    EXPECT_TRUE(found) << "horizontal " << horizontal;
  }
}

}  // namespace
}  // namespace recscope
