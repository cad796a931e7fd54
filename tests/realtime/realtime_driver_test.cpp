// The real-time driver on its timers against the simulated recorders of both
// families, over TCP and over a pseudo-terminal: the steps from finding the
// recorder to the cycle, the ring and its file, gaps, the comparison with the
// last run, and a recorder that goes away.
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QElapsedTimer>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>

#include "realtime/realtime_acquisition.h"
#include "realtime/realtime_link.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "simulated_realtime_recorder.h"

using namespace recscope;
using recscope::testing::SimulatedRealtimeRecorder;

namespace {

QCoreApplication &App() {
  static int argc = 1;
  static char name[] = "realtime_driver_tests";
  static char *argv[] = {name, nullptr};
  static QCoreApplication *app = new QCoreApplication(argc, argv);
  return *app;
}

constexpr std::int32_t kT0 = 1700000000;  // a whole multiple of 1, 2 and 5 seconds

std::vector<std::uint8_t> FileBytes(const std::string &path, std::size_t at, std::size_t n) {
  std::ifstream in(path, std::ios::binary);
  std::vector<std::uint8_t> bytes(n, 0xEE);
  in.seekg(static_cast<std::streamoff>(at));
  in.read(reinterpret_cast<char *>(bytes.data()), static_cast<std::streamsize>(n));
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  return bytes;
}

// One acquisition against a simulated recorder, with a clock the test moves.
class Acquisition {
 public:
  Acquisition(SimulatedRealtimeRecorder &recorder, RealtimeState &state, const std::string &home,
              bool tcp)
      : state_(state), home_(home) {
    App();
    state_.Settings.Communication = tcp ? 0 : 1;
    state_.Settings.Ip = "127.0.0.1";
    state_.Settings.Com = 1;
    timers_ = std::make_unique<RealLinkTimers>(state_, home_, [this] { return now; });
    timers_->driver().TcpPort = recorder.port();
    timers_->setSerialDevice(recorder.device());
  }
  RealLinkDriver &driver() { return timers_->driver(); }
  void Start() { driver().Start(); }
  // Runs the event loop until `done` holds or `ms` have passed.
  bool RunUntil(const std::function<bool()> &done, int ms) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
      if (clock.elapsed() > ms) return false;
      QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
  }
  bool ReachCycle(int ms = 20000) {
    return RunUntil([this] { return state_.Step == 7 && driver().RealLinkState() == 0; }, ms);
  }
  // Moves the clock to `t` and waits for the sample of that time.
  bool SampleAt(std::int32_t t, int ms = 5000) {
    now = t;
    const std::int32_t slot =
        RealSlotOfTime(RealAlignedTime(t, state_.CycleSeconds), state_.CycleSeconds);
    return RunUntil(
        [this, slot] { return state_.Ring.LastWritten == slot && driver().RealLinkState() == 0; },
        ms);
  }

  std::int32_t now = kT0;

 private:
  RealtimeState &state_;
  std::string home_;
  std::unique_ptr<RealLinkTimers> timers_;
};

class RealDriver : public ::testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/recscope-realhome-XXXXXX";
    home_ = ::mkdtemp(pattern);
  }
  void TearDown() override {
    std::error_code error;
    std::filesystem::remove_all(home_, error);
  }
  std::string timeFile() const { return RealTimeFilePath(home_); }
  std::string home_;
};

TEST_F(RealDriver, KtxRecorderOverTcpIsReadStepByStepIntoTheStateAndTheCycle) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, true);
  run.Start();
  EXPECT_FALSE(state.StartEnabled);
  ASSERT_TRUE(run.ReachCycle());
  EXPECT_EQ(state.ModelText, "KTX-30 TEST");
  EXPECT_EQ(state.SerialText, "SN001234");
  EXPECT_EQ(state.VersionText, "V14.00");
  EXPECT_EQ(state.ChannelCount, 30);
  EXPECT_EQ(state.GroupCount, 4);
  EXPECT_EQ(state.StateMessageId, 19750);
  EXPECT_TRUE(state.AnalyzeEnabled);
  EXPECT_FALSE(state.LampBlinking);
  // The blocks in their order, 64 words a request, on port and function by number.
  const std::vector<std::string> log = recorder.Log();
  std::vector<std::string> requests;
  for (const std::string &line : log)
    if (line.rfind("tid", 0) != 0) requests.push_back(line);
  ASSERT_GE(requests.size(), 37u);
  EXPECT_EQ(requests[0], "3 4000 30");
  EXPECT_EQ(requests[1], "3 0 64");
  EXPECT_EQ(requests[30], "3 1856 64");
  EXPECT_EQ(requests[31], "3 2424 64");
  EXPECT_EQ(requests[32], "3 2488 8");
  EXPECT_EQ(requests[33], "3 3031 33");
  EXPECT_EQ(requests[34], "3 3300 64");
  EXPECT_EQ(requests[35], "3 3364 20");
  EXPECT_EQ(requests[36], "4 86 44");
  // Channels, groups, tabs and units.
  EXPECT_EQ(state.Channels[4].Tag1, "TAG05");
  EXPECT_EQ(state.Channels[4].Tag2, "T2_05");
  EXPECT_EQ(state.Channels[4].ColorNo, 5);
  EXPECT_EQ(state.Channels[4].Further, 7);
  EXPECT_EQ(state.Channels[29].InputType, 0);
  EXPECT_EQ(state.Channels[0].RangeLow, -100);  // ScaleKind 1: the range words are read
  EXPECT_EQ(state.Channels[0].ExponentHigh, 5);
  EXPECT_EQ(state.Channels[4].RangeLow, 0);  // ScaleKind 0: they stay 0
  EXPECT_EQ(state.Groups[1].Name, "GROUP2");
  EXPECT_EQ(state.Groups[1].Channels[0], 11);
  EXPECT_EQ(state.GroupSizes, (std::vector<std::int32_t>{10, 10, 10, 0}));
  EXPECT_EQ(state.TabNames, (std::vector<std::string>{"G9", "G1", "G2", "G3"}));
  EXPECT_EQ(state.CommonPoint, 2);
  EXPECT_EQ(state.Display[2].Decimals, 2);  // the common point
  EXPECT_EQ(state.Display[3].Decimals, 1);  // its own
  EXPECT_EQ(state.UnitTextOf(156), "UU01   ");
  EXPECT_EQ(state.UserUnits[11], "UU12   ");
  EXPECT_EQ(ReadIni("CYCLE", "REALTIME", ViewerComIniPath(home_)), "0");
  // The setup file: 32 + 30 × 68 + 4 × 26 + 4 + 84 bytes.
  EXPECT_EQ(std::filesystem::file_size(RealSetFilePath(home_)), 2264u);
  // The first sample of the cycle, in memory and at its place in the file.
  ASSERT_TRUE(run.SampleAt(kT0 + 1));
  const std::int32_t slot = RealSlotOfTime(kT0 + 1, 1);
  EXPECT_EQ(state.Ring.Time(slot), kT0 + 1);
  EXPECT_EQ(state.Ring.Valid(slot), 1);
  EXPECT_EQ(state.Ring.Value(slot, 0), 11);  // 10 × channel + reads before
  EXPECT_EQ(state.Ring.Value(slot, 29), 301);
  EXPECT_EQ(FileBytes(timeFile(), static_cast<std::size_t>(slot - 1) * 126, 126),
            state.Ring.RecordBytes(slot));
}

TEST_F(RealDriver, ScaleLowEqualToScaleHighIsWidenedByItsScaleKind) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, true);
  run.Start();
  ASSERT_TRUE(run.ReachCycle());
  // 0 and 0 with ScaleKind 1: 0 isn't below -8, so the low value goes down.
  EXPECT_EQ(state.Display[0].ScaleLow, -1);
  EXPECT_EQ(state.Display[0].ScaleHigh, 0);
  // -9 and -9 with ScaleKind 1: below -8, so the high value goes up.
  EXPECT_EQ(state.Display[1].ScaleLow, -9);
  EXPECT_EQ(state.Display[1].ScaleHigh, -8);
  EXPECT_EQ(state.Display[5].ScaleLow, 0);
  EXPECT_EQ(state.Display[5].ScaleHigh, 1000);
  // With ScaleKind 0 the limit is -32767.
  std::int16_t low = -9, high = -9;
  RealWidenScale(low, high, 0);
  EXPECT_EQ(low, -10);
  EXPECT_EQ(high, -9);
}

TEST_F(RealDriver, FirmwareBelowVersion14HasCommonPointFlag0SoEachChannelsOwnPointIsTaken) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 13});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, true);
  run.Start();
  ASSERT_TRUE(run.ReachCycle());
  EXPECT_EQ(RealVersionNumber(state.VersionText), 13);
  EXPECT_EQ(state.Channels[2].CommonPoint, 0);
  EXPECT_EQ(state.CommonPoint, 0);
  EXPECT_EQ(state.Display[2].Decimals, 1);
}

TEST_F(RealDriver, KtxChannels19To30NeverShowAnAlarmEvenWithEveryBitSet) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, true);
  run.Start();
  ASSERT_TRUE(run.ReachCycle());
  ASSERT_TRUE(run.SampleAt(kT0 + 1));
  for (int c = 0; c < 18; ++c)
    EXPECT_EQ(state.AlarmFlags[c], (std::array<std::uint8_t, 4>{1, 1, 1, 1})) << c;
  for (int c = 18; c < 30; ++c)
    EXPECT_EQ(state.AlarmFlags[c], (std::array<std::uint8_t, 4>{0, 0, 0, 0})) << c;
}

TEST_F(RealDriver, ZnqRecorderIsFoundAtTheSecondHeaderAndItsAlarmFlagsReach70Channels) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "znq", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, true);
  run.Start();
  ASSERT_TRUE(run.ReachCycle(30000));
  EXPECT_EQ(state.ModelText, "ZNQ-72 TEST");
  EXPECT_EQ(state.ChannelCount, 72);
  EXPECT_EQ(state.GroupCount, 8);
  EXPECT_EQ(state.TabNames,
            (std::vector<std::string>{"G9", "G1", "G2", "G3", "G4", "G5", "G6", "G7"}));
  std::vector<std::string> requests;
  for (const std::string &line : recorder.Log())
    if (line.rfind("tid", 0) != 0) requests.push_back(line);
  ASSERT_GE(requests.size(), 3u);
  EXPECT_EQ(requests[0], "3 4000 30");
  EXPECT_EQ(requests[1], "3 7900 30");
  EXPECT_EQ(requests[2], "3 0 64");
  // 96 words of current values: 64 and then 32.
  EXPECT_EQ(requests[requests.size() - 2], "4 76 64");
  EXPECT_EQ(requests.back(), "4 140 32");
  ASSERT_TRUE(run.SampleAt(kT0 + 1));
  const std::int32_t slot = RealSlotOfTime(kT0 + 1, 1);
  EXPECT_EQ(state.Ring.Value(slot, 71), 721);
  EXPECT_EQ(state.AlarmFlags[69], (std::array<std::uint8_t, 4>{1, 1, 1, 1}));
  EXPECT_EQ(state.AlarmFlags[70], (std::array<std::uint8_t, 4>{0, 0, 0, 0}));
  EXPECT_EQ(state.AlarmFlags[71], (std::array<std::uint8_t, 4>{0, 0, 0, 0}));
  // Records of 294 bytes in the file.
  EXPECT_EQ(FileBytes(timeFile(), static_cast<std::size_t>(slot - 1) * 294, 294),
            state.Ring.RecordBytes(slot));
}

TEST_F(RealDriver, ModelOfNeitherFamilyFailsAfterStep1AndTheTwoHeadersGoOnInTurn) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "none", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, true);
  run.Start();
  ASSERT_TRUE(run.RunUntil([&] { return run.driver().FailCount >= 2; }, 8000));
  EXPECT_EQ(state.StateMessageId, 19751);
  EXPECT_LT(state.Step, 2);
  EXPECT_TRUE(state.Running);
  std::vector<std::string> requests;
  for (const std::string &line : recorder.Log())
    if (line.rfind("tid", 0) != 0) requests.push_back(line);
  ASSERT_GE(requests.size(), 4u);
  EXPECT_EQ(requests[0], "3 4000 30");
  EXPECT_EQ(requests[1], "3 7900 30");
  EXPECT_EQ(requests[2], "3 4000 30");
  EXPECT_EQ(requests[3], "3 7900 30");
}

TEST_F(RealDriver, TransactionNumber32767IsSentAndTheNextOneIs0) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, true);
  run.driver().block().setTransactionNumber(32766);
  run.Start();
  ASSERT_TRUE(run.RunUntil([&] { return state.Step >= 3; }, 10000));
  std::vector<std::string> ids;
  for (const std::string &line : recorder.Log())
    if (line.rfind("tid", 0) == 0) ids.push_back(line);
  ASSERT_GE(ids.size(), 4u);
  EXPECT_EQ(ids[0], "tid 32766");
  EXPECT_EQ(ids[1], "tid 32767");
  EXPECT_EQ(ids[2], "tid 0");
  EXPECT_EQ(ids[3], "tid 1");
}

TEST_F(RealDriver, SkippedCycleLeavesOneBlankSlotInMemoryAndInTheFile) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, true);
  run.Start();
  ASSERT_TRUE(run.ReachCycle());
  ASSERT_TRUE(run.SampleAt(kT0 + 1));
  const std::int32_t first = RealSlotOfTime(kT0 + 1, 1);
  // Something in the slot that the skipped cycle owns, in memory and in the file.
  state.Ring.Write(first + 1, 12345, std::vector<std::int32_t>(30, 99));
  ASSERT_TRUE(WriteRealTimeRecord(state.Ring, timeFile(), first + 1));
  ASSERT_EQ(FileBytes(timeFile(), static_cast<std::size_t>(first) * 126, 126),
            state.Ring.RecordBytes(first + 1));
  ASSERT_TRUE(run.SampleAt(kT0 + 3));
  EXPECT_EQ(state.Ring.LastWritten, first + 2);
  EXPECT_EQ(state.Ring.Valid(first + 1), 0);
  EXPECT_EQ(state.Ring.Time(first + 1), 0);
  EXPECT_EQ(state.Ring.Value(first + 1, 0), 0);
  EXPECT_EQ(FileBytes(timeFile(), static_cast<std::size_t>(first) * 126, 126),
            std::vector<std::uint8_t>(126, 0));
  EXPECT_EQ(state.Ring.Valid(first + 2), 1);
  EXPECT_EQ(state.Ring.Valid(first), 1);
}

TEST_F(RealDriver, GapThatPassesSlot86400BlanksToTheEndAndFromSlot1) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, true);
  const std::int32_t day = 86400 * 19675;  // a whole number of days
  run.now = day + 86397;
  run.Start();
  ASSERT_TRUE(run.ReachCycle());
  ASSERT_TRUE(run.SampleAt(day + 86398));
  ASSERT_EQ(state.Ring.LastWritten, 86399);
  for (std::int32_t s : {86400, 1, 2}) {
    state.Ring.Write(s, 777, std::vector<std::int32_t>(30, 5));
    ASSERT_TRUE(WriteRealTimeRecord(state.Ring, timeFile(), s));
  }
  // Two days' seconds on: slot 3 of the next lap.
  ASSERT_TRUE(run.SampleAt(day + 86400 + 2));
  EXPECT_EQ(state.Ring.LastWritten, 3);
  for (std::int32_t s : {86400, 1, 2}) {
    EXPECT_EQ(state.Ring.Valid(s), 0) << s;
    EXPECT_EQ(FileBytes(timeFile(), static_cast<std::size_t>(s - 1) * 126, 126),
              std::vector<std::uint8_t>(126, 0))
        << s;
  }
  EXPECT_EQ(state.Ring.Valid(86399), 1);
  EXPECT_EQ(state.Ring.Time(3), day + 86400 + 2);
}

TEST_F(RealDriver, ReopeningWithTheSameRecorderAndCycleKeepsTheSamplesAChangedCycleDiscardsThem) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  const std::int32_t slot = RealSlotOfTime(kT0 + 1, 1);
  {
    RealtimeState state;
    Acquisition run(recorder, state, home_, true);
    run.Start();
    ASSERT_TRUE(run.ReachCycle());
    ASSERT_TRUE(run.SampleAt(kT0 + 1));
    ASSERT_TRUE(run.SampleAt(kT0 + 2));
    run.driver().RealLinkStop();
  }
  {
    // A new start of the program: the setup of the last run from RealSetFile,
    // its cycle from the CYCLE key.
    RealtimeState state;
    ASSERT_TRUE(ReadRealSetFile(state, RealSetFilePath(home_), 1));
    Acquisition run(recorder, state, home_, true);
    run.now = kT0 + 10;
    run.Start();
    ASSERT_TRUE(run.ReachCycle());
    EXPECT_EQ(state.Ring.Valid(slot), 1);
    EXPECT_EQ(state.Ring.Time(slot), kT0 + 1);
    EXPECT_EQ(state.Ring.Value(slot, 0), 11);
    EXPECT_EQ(state.Ring.Valid(slot + 1), 1);
    run.driver().RealLinkStop();
  }
  {
    RealtimeState state;
    ASSERT_TRUE(ReadRealSetFile(state, RealSetFilePath(home_), 1));
    state.Settings.Cycle = 1;  // 2 seconds
    Acquisition run(recorder, state, home_, true);
    run.now = kT0 + 20;
    run.Start();
    ASSERT_TRUE(run.ReachCycle());
    EXPECT_EQ(state.CycleSeconds, 2);
    EXPECT_EQ(state.Ring.Valid(slot), 0);
    EXPECT_EQ(state.Ring.Valid(slot + 1), 0);
    EXPECT_FALSE(std::filesystem::exists(timeFile()));
    EXPECT_EQ(state.LastCycle, 2);
  }
}

TEST_F(RealDriver, RecorderGoingAwayOverTcpGivesRealLinkFailAndTheCycleTriesAgainCalmly) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, true);
  run.Start();
  ASSERT_TRUE(run.ReachCycle());
  ASSERT_TRUE(run.SampleAt(kT0 + 1));
  recorder.Kill();
  run.now = kT0 + 2;
  ASSERT_TRUE(run.RunUntil([&] { return run.driver().FailCount >= 1; }, 5000));
  EXPECT_EQ(state.StateMessageId, 19751);
  EXPECT_EQ(state.LampColour, kRealLampBlue);
  EXPECT_EQ(state.Step, 7);  // a failed cycle keeps the step
  EXPECT_TRUE(state.Running);
  EXPECT_EQ(state.Ring.LastWritten, RealSlotOfTime(kT0 + 1, 1));
  // The next cycle tries again, and fails again, without anything stopping.
  run.now = kT0 + 3;
  ASSERT_TRUE(run.RunUntil([&] { return run.driver().FailCount >= 2; }, 5000));
  run.driver().RealLinkStop();
  EXPECT_FALSE(state.Running);
  EXPECT_TRUE(state.StartEnabled);
  EXPECT_EQ(run.driver().RealLinkState(), 0);
}

TEST_F(RealDriver, ExceptionReplyOverTcpEndsInRealLinkFailAfterTheFiveSecondWait) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  recorder.Fault("exception", 1);
  RealtimeState state;
  Acquisition run(recorder, state, home_, true);
  run.Start();
  ASSERT_TRUE(run.RunUntil([&] { return run.driver().FailCount >= 1; }, 8000));
  EXPECT_EQ(state.Step, 0);
  // Then it starts over and finds the recorder.
  ASSERT_TRUE(run.ReachCycle());
  EXPECT_EQ(run.driver().FailCount, 1);
}

TEST_F(RealDriver, KtxRecorderOverThePseudoTerminalReachesTheCycle) {
  SimulatedRealtimeRecorder recorder({.tcp = false, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, false);
  run.Start();
  ASSERT_TRUE(run.ReachCycle(30000));
  EXPECT_EQ(state.ModelText, "KTX-30 TEST");
  EXPECT_EQ(state.TabNames, (std::vector<std::string>{"G9", "G1", "G2", "G3"}));
  ASSERT_TRUE(run.SampleAt(kT0 + 1));
  EXPECT_EQ(state.Ring.Value(RealSlotOfTime(kT0 + 1, 1), 1), 21);
  EXPECT_EQ(recorder.Log().front(), "3 4000 30");
  EXPECT_EQ(run.driver().FailCount, 0);
}

TEST_F(RealDriver, ZnqRecorderOverThePseudoTerminalReachesTheCycle) {
  SimulatedRealtimeRecorder recorder({.tcp = false, .family = "znq", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, false);
  run.Start();
  ASSERT_TRUE(run.ReachCycle(30000));
  EXPECT_EQ(state.ModelText, "ZNQ-72 TEST");
  EXPECT_EQ(state.ChannelCount, 72);
  EXPECT_EQ(state.TabNames,
            (std::vector<std::string>{"G9", "G1", "G2", "G3", "G4", "G5", "G6", "G7"}));
  ASSERT_TRUE(run.SampleAt(kT0 + 1));
  const std::int32_t slot = RealSlotOfTime(kT0 + 1, 1);
  // Channel c reads 10 × c + the reads before: the first of the cycle is the
  // second read, the last channel comes with the second block of 32 words.
  EXPECT_EQ(state.Ring.Value(slot, 0), 11);
  EXPECT_EQ(state.Ring.Value(slot, 71), 721);
  const std::vector<std::string> log = recorder.Log();
  ASSERT_GE(log.size(), 4u);
  EXPECT_EQ(log[0], "3 4000 30");
  EXPECT_EQ(log[1], "3 7900 30");
  EXPECT_EQ(log[log.size() - 2], "4 76 64");
  EXPECT_EQ(log.back(), "4 140 32");
  EXPECT_EQ(run.driver().FailCount, 0);
  EXPECT_EQ(FileBytes(timeFile(), static_cast<std::size_t>(slot - 1) * 294, 294),
            state.Ring.RecordBytes(slot));
}

TEST_F(RealDriver, RtuReplyWithOneGoodCrcBytePassesAndWithBothWrongFails) {
  SimulatedRealtimeRecorder recorder({.tcp = false, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  recorder.Fault("badcrclow", 1);
  recorder.Fault("badcrc", 1);
  RealtimeState state;
  Acquisition run(recorder, state, home_, false);
  run.Start();
  // The first header read passes with its low CRC byte wrong; the second
  // request (a channel read) fails and the connection starts over at step 0.
  ASSERT_TRUE(run.RunUntil([&] { return run.driver().FailCount >= 1; }, 5000));
  const std::vector<std::string> log = recorder.Log();
  ASSERT_GE(log.size(), 2u);
  EXPECT_EQ(log[0], "3 4000 30");
  EXPECT_EQ(log[1], "3 0 64");
  EXPECT_EQ(state.Step, 0);
  ASSERT_TRUE(run.ReachCycle(30000));
  EXPECT_EQ(run.driver().FailCount, 1);
}

TEST_F(RealDriver, RecorderGoingAwayOnThePseudoTerminalTimesOutIntoRealLinkFail) {
  SimulatedRealtimeRecorder recorder({.tcp = false, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  RealtimeState state;
  Acquisition run(recorder, state, home_, false);
  run.Start();
  ASSERT_TRUE(run.ReachCycle(30000));
  recorder.Kill();
  run.now = kT0 + 2;
  QElapsedTimer clock;
  clock.start();
  ASSERT_TRUE(run.RunUntil([&] { return run.driver().FailCount >= 1; }, 8000));
  EXPECT_GE(clock.elapsed(), 4500);  // the reply wait of 5 seconds
  EXPECT_EQ(state.StateMessageId, 19751);
  EXPECT_EQ(state.Step, 7);
  EXPECT_EQ(run.driver().RealLinkState(), 0);
}

}  // namespace
