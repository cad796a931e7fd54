// The setup read against the simulated recorder with the shipped register map:
// the record pair byte for byte, the fourth alarm's value, the question after a
// failed request answered No and Yes, a group with no records, and the choice
// of the file number.
#include "link/parameter_read.h"

#include <gtest/gtest.h>
#include <QCoreApplication>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/serial_line.h"
#include "platform/text_encoding.h"
#include "record/open_record.h"
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

RegisterMap ShippedMap() { return ParseInitSet(ReadAll(recscope::testing::kShippedInitSet)); }

class Folder {
 public:
  Folder() {
    char pattern[] = "/tmp/recscope-read-XXXXXX";
    path_ = ::mkdtemp(pattern);
  }
  ~Folder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  const std::string &path() const { return path_; }
  std::string file(const std::string &name) const { return path_ + "/" + name; }
  void touch(const std::string &name) const { std::ofstream(file(name)) << "x"; }

 private:
  std::string path_;
};

struct Link {
  explicit Link(const SimulatedRecorder &recorder) {
    App();
    line.setDevice(recorder.device());
    driver.Line = &line;
    CrcTableInit(driver);
    ComPortOpen(driver, ComPortSettings{});
  }
  ~Link() { ComPortClose(driver); }
  SerialComLine line;
  CommandDriver driver;
};

// What the recorder's setup must give in the measurement file, composed from
// the values sim_recorder.py serves.
std::string Padded(const std::string &text, std::size_t bytes) {
  std::string out = text;
  out.resize(bytes, ' ');
  return out;
}
void Byte(std::string &out, int v) { out.push_back(static_cast<char>(v & 0xFF)); }
void Word(std::string &out, int v) {
  Byte(out, v);
  Byte(out, v >> 8);
}

std::string ExpectedHead(const std::string &name) {
  return Padded(name, 32) + "\r\n" + Padded("KTX-30 SIMULATED", 32) + "\r\n" +
         Padded("A1234567", 20) + Padded("Ver.0115", 12) + "\r\n";
}

std::string ExpectedMeasurementFile(const std::string &name) {
  std::string out = ExpectedHead(name);
  out += std::string{'\0', '\x1e', '\0', '\0', '\x05', '\0'};
  for (int k = 1; k <= 30; ++k) {
    char tag[16];
    std::snprintf(tag, sizeof tag, "CH%02dTAG ", k);
    Byte(out, k);
    out += Padded(tag, 16);
    Byte(out, k % 16);
    Byte(out, 1);
    if (k <= 12) {
      char unit[16];
      std::snprintf(unit, sizeof unit, "USR%02dab", k);
      out += unit;
    } else {
      out += Padded(Utf8ToCp932(UnitText(k)), 7);
    }
    Word(out, -k);
    Word(out, 1000 + k);
    Byte(out, 1);
    Byte(out, 0);
    Word(out, 10 * k);
    Word(out, 20 * k);
    Byte(out, 250);
    Byte(out, 3);
    Byte(out, 1);
    Byte(out, 0);
    const int values[4] = {100 + k, -(200 + k), 300 + k, 300 + k};
    for (int n = 1; n <= 4; ++n) {
      Byte(out, n);
      Byte(out, n % 2);
      Word(out, values[n - 1]);
    }
  }
  for (int k = 1; k <= 5; ++k) {
    char tag[16];
    std::snprintf(tag, sizeof tag, "DI%dTAG  ", k);
    Byte(out, 128 + k);
    out += Padded(tag, 16);
    Byte(out, 8 + k);
    Word(out, 0);
    Word(out, 1);
    Byte(out, 1);
    Byte(out, 0);
  }
  for (int k = 1; k <= 4; ++k) {
    out += Padded("GROUP " + std::to_string(k), 16);
    for (int m = 1; m <= 10; ++m) Byte(out, k <= 3 ? 10 * (k - 1) + m : (m <= 5 ? 128 + m : 0));
  }
  out += "\xff\xff";
  return out;
}

ParameterReadHooks Answering(std::vector<int> &asked, int answer) {
  ParameterReadHooks hooks;
  hooks.ComErrorDialog = [&asked, answer](int code) {
    asked.push_back(code);
    return answer;
  };
  return hooks;
}

TEST(ParameterReadPty, WritesTheHeadChannelDiAndGroupRecordsAsTheRecorderGivesThem) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  Folder home;
  std::vector<int> asked;
  ParameterRecord record;
  ASSERT_TRUE(
      ComParameterRead(link.driver, ShippedMap(), home.path(), Answering(asked, 6), record));
  record.Close();
  EXPECT_TRUE(asked.empty());
  EXPECT_EQ(record.MeasurementPath, home.file("S100000.FDT"));
  EXPECT_EQ(record.AlarmPath, home.file("A100000.FDT"));
  EXPECT_EQ(ReadAll(record.MeasurementPath), ExpectedMeasurementFile("S100000.FDT"));
  EXPECT_EQ(ReadAll(record.AlarmPath), ExpectedHead("S100000.FDT") + std::string(2, '\0'));
  // 12 units, 1 header, 30 channel and 30 alarm records, 5 inputs, 4 groups.
  const std::vector<std::string> seen = recorder.Requests();
  ASSERT_EQ(seen.size(), 82u);
  EXPECT_EQ(seen[0], "3 3300 7");
  EXPECT_EQ(seen[12], "3 4000 30");
  EXPECT_EQ(seen[13], "3 0 64");
  EXPECT_EQ(seen[14], "3 0 64");
  EXPECT_EQ(seen[15], "3 64 64");
  EXPECT_EQ(seen[73], "3 2000 16");
  // Groups: the map's total of 36 bytes gives 18 words a read.
  EXPECT_EQ(seen[78], "3 2424 18");
  EXPECT_EQ(seen[81], "3 2478 18");
  // The user units stand at 156 to 167.
  EXPECT_EQ(record.UnitTable[156], "USR01ab");
  EXPECT_EQ(record.UnitTable[167], "USR12ab");
  EXPECT_EQ(record.Record.Channels.size(), 30u);
  EXPECT_EQ(record.Record.Dis.size(), 5u);
  EXPECT_EQ(record.Record.Groups[3].Members[0], 129);
}

TEST(ParameterReadPty, FourthAlarmValueInTheFileEqualsTheThirdWhileTheRecordKeepsItsOwn) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  Folder home;
  std::vector<int> asked;
  ParameterRecord record;
  ASSERT_TRUE(
      ComParameterRead(link.driver, ShippedMap(), home.path(), Answering(asked, 6), record));
  record.Close();
  const std::string file = ReadAll(record.MeasurementPath);
  for (int k = 1; k <= 30; ++k) {
    const std::size_t channel = 108 + 56 * static_cast<std::size_t>(k - 1);
    auto value = [&](int n) {
      const std::size_t at = channel + 42 + 4 * static_cast<std::size_t>(n - 1);
      return static_cast<std::int16_t>(static_cast<std::uint8_t>(file[at]) |
                                       (static_cast<std::uint8_t>(file[at + 1]) << 8));
    };
    EXPECT_EQ(value(3), 300 + k);
    EXPECT_EQ(value(4), value(3));
    // In memory the fourth alarm is the recorder's, scaled by one decimal.
    EXPECT_DOUBLE_EQ(record.Record.Channels[static_cast<std::size_t>(k - 1)].AlarmValue[3],
                     (400 + k) / 10.0);
  }
}

TEST(ParameterReadPty, TheRecordPairWithASampleOpensAsARecord) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  Folder home;
  std::vector<int> asked;
  ParameterRecord record;
  ASSERT_TRUE(
      ComParameterRead(link.driver, ShippedMap(), home.path(), Answering(asked, 6), record));
  // One binary sample behind the head: a time, 30 values, the DI word.
  std::string sample;
  const std::int32_t when = 1700000000;
  for (int i = 0; i < 4; ++i) Byte(sample, when >> (8 * i));
  for (int c = 1; c <= 30; ++c) Word(sample, 10 * c);
  Word(sample, 0);
  std::fwrite(sample.data(), 1, sample.size(), record.Measurement);
  record.Close();
  SharedState state;
  state.ProgramFolder = home.path();
  ResetSharedState(state);
  const OpenOutcome outcome = OpenRecordFile(state, record.MeasurementPath);
  ASSERT_TRUE(outcome.opened) << outcome.messageId;
  const RecordFileInfo &info = state.Slot(outcome.slot).Record;
  EXPECT_EQ(info.AnalogCount, 30);
  EXPECT_EQ(info.DiCount, 5);
  EXPECT_EQ(info.RecordCount, 1);
  EXPECT_EQ(info.Channels[1].Tag, "CH02TAG         ");
  EXPECT_EQ(info.Channels[0].Unit, "USR01ab");
  EXPECT_EQ(info.Groups[0].GroupName, "GROUP 1         ");
  EXPECT_EQ(info.ModelText.substr(0, 16), "KTX-30 SIMULATED");
}

TEST(ParameterReadPty, NoAfterAFailedRequestDeletesThePairAndReadsAgainUnderTheSameNumber) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  Folder home;
  // The header read fails in all four attempts: "P  " is the 13th request.
  for (int i = 0; i < 12; ++i) recorder.Fault("none", 1);
  recorder.Fault("noreply", 4);
  std::vector<int> asked;
  bool pairStoodAtTheQuestion = false;
  ParameterReadHooks hooks;
  hooks.ComErrorDialog = [&](int code) {
    asked.push_back(code);
    pairStoodAtTheQuestion = std::filesystem::exists(home.file("S100000.FDT")) &&
                             std::filesystem::exists(home.file("A100000.FDT"));
    return 7;  // No
  };
  ParameterRecord record;
  ASSERT_TRUE(ComParameterRead(link.driver, ShippedMap(), home.path(), hooks, record));
  record.Close();
  EXPECT_EQ(asked, std::vector<int>{kComTimeOut});
  EXPECT_TRUE(pairStoodAtTheQuestion);
  // The failed pair went first, so the same number came back.
  EXPECT_EQ(record.MeasurementPath, home.file("S100000.FDT"));
  EXPECT_FALSE(std::filesystem::exists(home.file("S100001.FDT")));
  EXPECT_EQ(ReadAll(record.MeasurementPath), ExpectedMeasurementFile("S100000.FDT"));
  // The first run went on with the reads after the header (4 failed attempts,
  // then 69 more), the second read everything.
  EXPECT_EQ(recorder.Requests().size(), 12u + 4u + 69u + 82u);
}

TEST(ParameterReadPty, YesAfterAFailedRequestStopsAndLeavesNoFile) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  Folder home;
  recorder.Fault("noreply", 4);
  std::vector<int> asked;
  ParameterRecord record;
  EXPECT_FALSE(
      ComParameterRead(link.driver, ShippedMap(), home.path(), Answering(asked, 6), record));
  EXPECT_EQ(asked, std::vector<int>{kComTimeOut});
  EXPECT_FALSE(std::filesystem::exists(home.file("S100000.FDT")));
  EXPECT_FALSE(std::filesystem::exists(home.file("A100000.FDT")));
  // The abort stops the sequence at once: only the four attempts went out.
  EXPECT_EQ(recorder.Requests().size(), 4u);
}

TEST(ParameterReadPty, GroupWithRecordCount0ReadsNothingAndReportsSuccess) {
  Folder maps;
  std::string text = ReadAll(recscope::testing::kShippedInitSet);
  const std::string units = "1,\"U  \",43301,7,12";
  text.replace(text.find(units), units.size(), "1,\"U  \",43301,7,0");
  std::ofstream(maps.file("InitSet.txt"), std::ios::binary) << text;
  SimulatedRecorder recorder(maps.file("InitSet.txt"));
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  Folder home;
  std::vector<int> asked;
  ParameterRecord record;
  ASSERT_TRUE(
      ComParameterRead(link.driver, ParseInitSet(text), home.path(), Answering(asked, 6), record));
  record.Close();
  EXPECT_EQ(recorder.Requests().size(), 70u);
  EXPECT_EQ(recorder.Requests().front(), "3 4000 30");
  // Without user units the channels' unit codes 156 to 167 give blanks.
  EXPECT_EQ(record.Record.Channels[0].Unit, std::string(7, ' '));
}

TEST(ComNewFileName, ANumberHeldByEitherFileOfThePairIsSkipped) {
  Folder home;
  EXPECT_EQ(ComNewFileName(home.path()), "S100000.FDT");
  home.touch("S100000.FDT");
  EXPECT_EQ(ComNewFileName(home.path()), "S100001.FDT");
  home.touch("A100001.FDT");
  EXPECT_EQ(ComNewFileName(home.path()), "S100002.FDT");
  std::filesystem::remove(home.file("S100000.FDT"));
  EXPECT_EQ(ComNewFileName(home.path()), "S100000.FDT");
}

}  // namespace
