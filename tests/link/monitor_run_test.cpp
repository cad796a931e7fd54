// The communication monitor without windows against the simulated recorder on
// a pseudo-terminal: the ring's edges, the samples and alarm changes written
// into the record pair byte for byte, slot 17's records and the user units.
#include "link/monitor_run.h"

#include <gtest/gtest.h>
#include <QCoreApplication>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "link/monitor_views.h"
#include "platform/serial_line.h"
#include "shell/shared_state.h"
#include "simulated_recorder.h"
#include "trend/unit_table.h"

using namespace recscope;
using recscope::testing::SimulatedRecorder;

namespace {

QCoreApplication &App() {
  static int argc = 1;
  static char name[] = "link_tests";
  static char *argv[] = {name, nullptr};
  static QCoreApplication *app = new QCoreApplication(argc, argv);
  return *app;
}

std::string ReadAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

constexpr std::int32_t kFirstTime = 1700000000;  // the simulated clock's start
// Head of the monitor's record: 108, 30 channels of 56, 5 inputs of 24, 4 groups
// of 26 and the two closing bytes.
constexpr std::size_t kMeasurementHead = 108 + 30 * 56 + 5 * 24 + 4 * 26 + 2;
constexpr std::size_t kAlarmHead = 102 + 2;
constexpr std::size_t kSampleBytes = 4 + 2 * 30 + 2;
constexpr std::size_t kEventBytes = 38;

void Byte(std::string &out, int v) { out.push_back(static_cast<char>(v & 0xFF)); }
void Word(std::string &out, int v) {
  Byte(out, v);
  Byte(out, v >> 8);
}
void Long(std::string &out, std::int32_t v) {
  Word(out, v & 0xFFFF);
  Word(out, (v >> 16) & 0xFFFF);
}

// A sample as the recorder serves it: values 10 x channel, inputs 1, 3 and 5 on,
// which the input word holds in bits 0, 4 and 8.
std::string ExpectedSample(std::int32_t time) {
  std::string out;
  Long(out, time);
  for (int c = 1; c <= 30; ++c) Word(out, 10 * c);
  Word(out, 0x0111);
  return out;
}

// An alarm event: time, "A", channel, alarm number, action (the recorder sets
// alarm kind n for alarm n), state, and zeros to 38 bytes.
std::string ExpectedEvent(std::int32_t time, int channel, int alarm, int state) {
  std::string out;
  Long(out, time);
  Byte(out, 'A');
  Byte(out, channel);
  Byte(out, alarm);
  Byte(out, alarm);
  Byte(out, state);
  out.resize(kEventBytes, '\0');
  return out;
}

struct MonitorPty : ::testing::Test {
  MonitorPty() {
    App();
    char pattern[] = "/tmp/recscope-monitor-XXXXXX";
    folder = ::mkdtemp(pattern);
    line.setDevice(recorder.device());
    driver.Line = &line;
    ResetSharedState(Shared());
    Shared().ProgramFolder = folder;
    map = ParseInitSet(ReadAll(recscope::testing::kShippedInitSet));
    hooks.ComErrorDialog = [this](int code) {
      asked.push_back(code);
      return answer;
    };
  }
  ~MonitorPty() override {
    run.Stop();
    ResetSharedState(Shared());
    std::error_code error;
    std::filesystem::remove_all(folder, error);
  }
  bool Start() {
    return recorder.ready() && run.Start(driver, ComPortSettings{}, map, folder, hooks, Shared());
  }

  SimulatedRecorder recorder;
  std::string folder;
  SerialComLine line;
  CommandDriver driver;
  RegisterMap map;
  MonitorHooks hooks;
  MonitorRun run;
  std::vector<int> asked;
  int answer = 7;
};

TEST_F(MonitorPty, Sample1801OverwritesSample1AndSetsTheFullFlag) {
  ASSERT_TRUE(Start());
  for (int i = 1; i <= 1800; ++i) ASSERT_EQ(run.Tick(), MonitorTickResult::kSampled) << i;
  EXPECT_EQ(run.ring().writeIndex(), 1800);
  EXPECT_FALSE(run.ring().full());
  EXPECT_EQ(run.ring().value(1, 1), kFirstTime);
  EXPECT_EQ(run.ring().value(1, 1800), kFirstTime + 1799);
  ASSERT_EQ(run.Tick(), MonitorTickResult::kSampled);
  EXPECT_EQ(run.ring().writeIndex(), 1);
  EXPECT_TRUE(run.ring().full());
  EXPECT_EQ(run.ring().value(1, 1), kFirstTime + 1800);
  EXPECT_EQ(run.ring().value(1, 2), kFirstTime + 1);
  EXPECT_EQ(run.samplesWritten(), 1801);
  EXPECT_TRUE(asked.empty());
}

TEST_F(MonitorPty, AFailedPollAtWriteIndex1PutsItBackTo1800) {
  ASSERT_TRUE(Start());
  // A tenth of the one-second wait, so that four attempts take 0.4 s.
  driver.WaitTimerInterval = std::chrono::milliseconds(10);
  recorder.Fault("noreply", 4);
  EXPECT_EQ(run.Tick(), MonitorTickResult::kMissed);
  EXPECT_EQ(asked, (std::vector<int>{kComTimeOut}));
  EXPECT_EQ(run.ring().writeIndex(), 1800);
  EXPECT_FALSE(run.ring().full());
  EXPECT_EQ(run.samplesWritten(), 0);
  // The poll goes on: the next index beyond 1800 is 1, and the ring counts as full.
  EXPECT_EQ(run.Tick(), MonitorTickResult::kSampled);
  EXPECT_EQ(run.ring().writeIndex(), 1);
  EXPECT_TRUE(run.ring().full());
}

TEST_F(MonitorPty, AFailedPollAnsweredYesEndsTheCommunication) {
  ASSERT_TRUE(Start());
  driver.WaitTimerInterval = std::chrono::milliseconds(10);
  answer = 6;
  ASSERT_EQ(run.Tick(), MonitorTickResult::kSampled);
  recorder.Fault("noreply", 4);
  EXPECT_EQ(run.Tick(), MonitorTickResult::kEnd);
  EXPECT_EQ(asked, (std::vector<int>{kComTimeOut}));
}

TEST_F(MonitorPty, SamplesWithSkippedSecondsSteppedInAndAlarmChangesGoIntoTheRecordPair) {
  ASSERT_TRUE(Start());
  const std::string measurement = run.files().MeasurementPath;
  const std::string alarm = run.files().AlarmPath;
  EXPECT_EQ(measurement, folder + "/S100000.FDT");
  EXPECT_EQ(alarm, folder + "/A100000.FDT");
  // The first poll as it comes; the second with the clock 3 s on; the third
  // with the alarms of channels 1 and 2 swapped; the fourth back.
  recorder.Fault("none", 1);
  recorder.Fault("skip", 1, 3);
  recorder.Fault("alarm", 1, 0x0012);
  for (int i = 0; i < 4; ++i) ASSERT_EQ(run.Tick(), MonitorTickResult::kSampled) << i;
  run.Stop();

  std::string samples;
  for (std::int32_t t : {0, 1, 2, 3, 4, 5, 6}) samples += ExpectedSample(kFirstTime + t);
  const std::string written = ReadAll(measurement);
  ASSERT_EQ(written.size(), kMeasurementHead + samples.size());
  EXPECT_EQ(written.substr(0, 2), "S1");
  EXPECT_EQ(written.substr(kMeasurementHead - 2, 2), "\xff\xff");
  EXPECT_EQ(written.substr(kMeasurementHead), samples);
  EXPECT_EQ(run.samplesWritten(), 7);

  // 0x0021: channel 1 alarm 1 and channel 2 alarm 2 raised; 0x0012 the other
  // way round.
  const std::string events =
      ExpectedEvent(kFirstTime, 1, 1, 1) + ExpectedEvent(kFirstTime, 2, 2, 1) +
      ExpectedEvent(kFirstTime + 5, 1, 1, 0) + ExpectedEvent(kFirstTime + 5, 1, 2, 1) +
      ExpectedEvent(kFirstTime + 5, 2, 1, 1) + ExpectedEvent(kFirstTime + 5, 2, 2, 0) +
      ExpectedEvent(kFirstTime + 6, 1, 1, 1) + ExpectedEvent(kFirstTime + 6, 1, 2, 0) +
      ExpectedEvent(kFirstTime + 6, 2, 1, 0) + ExpectedEvent(kFirstTime + 6, 2, 2, 1);
  const std::string alarmFile = ReadAll(alarm);
  ASSERT_EQ(alarmFile.size(), kAlarmHead + events.size());
  EXPECT_EQ(alarmFile.substr(kAlarmHead - 2, 2), std::string(2, '\0'));
  EXPECT_EQ(alarmFile.substr(kAlarmHead), events);
  EXPECT_EQ(run.alarmEventsWritten(), 10);
}

TEST_F(MonitorPty, TheRecordBeingWrittenOpensInSlot17WithItsEvents) {
  ASSERT_TRUE(Start());
  for (int i = 0; i < 3; ++i) ASSERT_EQ(run.Tick(), MonitorTickResult::kSampled);
  ASSERT_EQ(run.RefreshSlot(Shared()), 0);
  const RecordSlot &slot = Shared().Slot(kLinkSlot);
  EXPECT_TRUE(slot.InUse());
  EXPECT_EQ(slot.Record.RecordCount, 3);
  EXPECT_EQ(slot.Record.FirstTime, kFirstTime);
  EXPECT_EQ(slot.Alarms.AlarmCount, 2);
  // The fourth alarm's value is the recorder's own, not the file's copy of the third.
  EXPECT_DOUBLE_EQ(slot.Record.Channels[4].AlarmValue[3], 40.5);
  // Another sample, and the slot reads it too.
  ASSERT_EQ(run.Tick(), MonitorTickResult::kSampled);
  ASSERT_EQ(run.RefreshSlot(Shared()), 0);
  EXPECT_EQ(Shared().Slot(kLinkSlot).Record.RecordCount, 4);
  EXPECT_EQ(Shared().Slot(kLinkSlot).Record.LastTime, kFirstTime + 3);
}

TEST_F(MonitorPty, StartFillsSlot17AndHandsTheUserUnitsToTheUnitReader) {
  ASSERT_TRUE(Start());
  EXPECT_EQ(Shared().CurrentFile, kLinkSlot);
  const RecordFileInfo &record = Shared().Slot(kLinkSlot).Record;
  ASSERT_EQ(record.Channels.size(), 30u);
  ASSERT_EQ(record.Dis.size(), 5u);
  EXPECT_EQ(record.AnalogCount, 30);
  EXPECT_EQ(record.DiCount, 5);
  EXPECT_EQ(record.Channels[4].Tag, "CH05TAG ");
  EXPECT_EQ(record.Channels[4].Unit, "USR05ab");
  EXPECT_DOUBLE_EQ(record.Channels[4].AlarmValue[3], 40.5);
  EXPECT_EQ(record.Dis[1].DiNo, 130);
  EXPECT_EQ(record.Groups[3].GroupName, "GROUP 4         ");
  EXPECT_EQ(UnitText(156), "USR01ab");
  EXPECT_EQ(UnitText(167), "USR12ab");
}

TEST_F(MonitorPty, TheViewsTextsOfTheLastSample) {
  ASSERT_TRUE(Start());
  ASSERT_EQ(run.Tick(), MonitorTickResult::kSampled);
  ASSERT_EQ(run.Tick(), MonitorTickResult::kSampled);
  const RecordFileInfo &record = Shared().Slot(kLinkSlot).Record;
  const MonitorRing &ring = run.ring();
  const int at = ring.writeIndex();
  EXPECT_EQ(MonitorTimeText(ring, at), "2023/11/14 22:13:21");
  EXPECT_EQ(GroupsWithMembers(record), (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(InstantValueLine(MonitorCellOf(record, ring, at, 5)), "CH05\tCH05TAG\t5.0\tUSR05ab");
  EXPECT_EQ(InstantValueLine(MonitorCellOf(record, ring, at, 15)), "CH15\tCH15TAG\t15.0\tm3/h");
  EXPECT_EQ(InstantValueLine(MonitorCellOf(record, ring, at, 129)), "DI01\tDI1TAG\t1\t");
  EXPECT_EQ(InstantValueLine(MonitorCellOf(record, ring, at, 130)), "DI02\tDI2TAG\t0\t");
  // Channel 5 stands at (50 - (-5)) / (1005 - (-5)) of its scale.
  EXPECT_DOUBLE_EQ(MonitorCellOf(record, ring, at, 5).Fraction, 55.0 / 1010.0);
  EXPECT_EQ(AllMembers(record).size(), 35u);
  EXPECT_EQ(WholeDisplayRows(35), 6);
  EXPECT_EQ(WholeDisplayRows(36), 6);
  EXPECT_EQ(WholeDisplayRows(37), 7);
}

}  // namespace
