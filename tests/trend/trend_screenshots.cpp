// Developer tool: draws a hand-made record (three linear channels, one
// logarithmic channel and a DI, with alarms, a message and a flag) in both
// orientations into PNG files, for a look by eye before the real sample is at hand.
// Usage: trend_screenshots OUTPUT_FOLDER
#include <QGuiApplication>
#include <cmath>
#include <cstdio>

#include "shell/shared_state.h"
#include "trend/render_request.h"
#include "trend_fixture.h"

using namespace recscope;
using namespace recscope::testing_support;

int main(int argc, char **argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: trend_screenshots OUTPUT_FOLDER\n");
    return 1;
  }
  QGuiApplication app(argc, argv);
  TempFolder home;
  SharedState state;
  state.ProgramFolder = home.str();
  RecordFileInfo info = MakeRecord(86400, 4, 1, 1700000000, 1);
  info.Channels[3].ScaleKind = 1;  // 10^-2 .. 10^3 over raw 0..5000
  info.Channels[3].RangeLow = 0;
  info.Channels[3].RangeHigh = 5000;
  info.Channels[3].ExponentLow = -2;
  info.Channels[3].ExponentHigh = 3;
  info.Channels[3].ScaleLow = -2;
  info.Channels[3].ScaleHigh = 3;
  info.Channels[3].Decimals = 0;
  info.Channels[3].Unit = "Pa";
  info.Channels[1].ScaleLow = -500;
  info.Channels[1].ScaleHigh = 500;
  info.Groups[1].Members = {4};
  info.Groups[1].GroupName = "LOG";
  WriteLevels(info, home.str(), 1,
              [](std::int64_t r, int c) -> std::pair<std::int16_t, std::int16_t> {
                double t = static_cast<double>(r);
                switch (c) {
                  case 0: {
                    double v = 500 + 350 * std::sin(t / 6000.0);
                    return {static_cast<std::int16_t>(v - 20), static_cast<std::int16_t>(v + 20)};
                  }
                  case 1: {
                    auto v = static_cast<std::int16_t>(400 * std::sin(t / 2500.0 + 1));
                    return {v, v};
                  }
                  case 2: {
                    auto v = static_cast<std::int16_t>(200 + (r / 3600) * 40 % 700);
                    return {v, v};
                  }
                  case 3: {
                    auto v = static_cast<std::int16_t>(2500 + 2000 * std::sin(t / 9000.0));
                    return {v, v};
                  }
                  default: {
                    auto v = static_cast<std::int16_t>((r / 5000) % 2);
                    return {v, v};
                  }
                }
              });
  state.Slot(1).Record = info;
  state.Slot(1).SamplePeriod = 1;
  AlarmEvent alarm;
  alarm.Time = info.FirstTime + 20000;
  alarm.ChannelNo = 1;
  alarm.AlarmNo = 1;
  alarm.AlarmAction = 1;
  alarm.AlarmState = 1;
  alarm.Shown = -1;
  state.Slot(1).Alarms.Alarms.push_back(alarm);
  MessageEvent message;
  message.Time = info.FirstTime + 45000;
  message.Text = "ﾊﾞﾙﾌﾞ開";
  message.Shown = -1;
  state.Slot(1).Alarms.Messages.push_back(message);
  FlagEvent flag;
  flag.Time = info.FirstTime + 70000;
  flag.Text = "FLAG1";
  flag.Shown = -1;
  state.Slot(1).Flags.push_back(flag);

  std::string out = argv[1];
  RenderRequest request;
  request.state = &state;
  request.slot = 1;
  request.scales = 3;
  request.cursor1 = info.FirstTime + 30000;
  request.cursor2 = info.FirstTime + 60000;
  bool ok = RenderTrendImage(request).save(QString::fromStdString(out + "/trend_horizontal.png"));
  request.horizontal = false;
  request.widthPx = 800;
  request.heightPx = 900;
  ok = RenderTrendImage(request).save(QString::fromStdString(out + "/trend_vertical.png")) && ok;
  request.horizontal = true;
  request.widthPx = 1000;
  request.heightPx = 550;
  request.scales = 1;
  request.group = 2;
  ok = RenderTrendImage(request).save(QString::fromStdString(out + "/trend_log.png")) && ok;
  return ok ? 0 : 1;
}
