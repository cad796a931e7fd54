// The card file read against the simulated recorder through a pseudo-terminal:
// the list and its pages, size texts, a binary file fetched byte for byte, a
// text head whose records become text rows, the index of a block in two words,
// a cancel and a card taken out leaving no file, and the statuses 254 and 255.
#include "link/card_read.h"

#include <gtest/gtest.h>
#include <QCoreApplication>

#include <filesystem>
#include <fstream>

#include "platform/serial_line.h"
#include "record_fixture.h"
#include "simulated_recorder.h"

using namespace recscope;
using recscope::testing::SimulatedRecorder;
using recscope::testing_support::MakeInfo;
using recscope::testing_support::MakeRecords;
using recscope::testing_support::ReadAll;
using recscope::testing_support::RecordBytes;

namespace {

QCoreApplication &App() {
  static int argc = 1;
  static char name[] = "card_tests";
  static char *argv[] = {name, nullptr};
  static QCoreApplication *app = new QCoreApplication(argc, argv);
  return *app;
}

struct CardLink {
  explicit CardLink(const SimulatedRecorder &recorder) {
    App();
    line.setDevice(recorder.device());
    driver.Line = &line;
    CrcTableInit(driver);
    ComPortOpen(driver, ComPortSettings{});
    map = ParseInitSet(ReadAll(recscope::testing::kShippedInitSet));
    found = CardLookup(map, registers);
  }
  ~CardLink() { ComPortClose(driver); }
  SerialComLine line;
  CommandDriver driver;
  RegisterMap map;
  CardRegisters registers;
  bool found = false;
};

void Write(const std::string &path, const std::string &bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// A binary record of three channels and two inputs with `records` samples on
// the card as its first file, with an alarm file of `eventBytes` bytes.
struct CardFile {
  std::string measurement;
  std::string events;
};
CardFile PutBinaryFile(const SimulatedRecorder &recorder, int records, int eventBytes = 1300) {
  const RecordFileInfo info = MakeInfo(3, 2);
  const RecordWriter writer(info, 2);
  CardFile file;
  file.measurement = RecordBytes(info, 2, MakeRecords(info, records));
  // A binary alarm file: its head, then events of 38 bytes.
  file.events = recscope::testing_support::AlarmHeader() + std::string(2, '\0');
  while (static_cast<int>(file.events.size()) < eventBytes)
    file.events += recscope::testing_support::BinaryAlarm(
        1700000000 + static_cast<int>(file.events.size()), 1);
  Write(recorder.path("SCARD01.FDT"), file.measurement);
  Write(recorder.path("ACARD01.FDT"), file.events);
  recorder.AddCardFile("SCARD01", 1700000000, static_cast<long long>(file.measurement.size()),
                       recorder.path("SCARD01.FDT"), static_cast<int>(writer.HeaderBytes().size()),
                       writer.RecordLength(), recorder.path("ACARD01.FDT"));
  return file;
}

void PutFiles(const SimulatedRecorder &recorder, int count) {
  Write(recorder.path("blank"), std::string(200, '\0'));
  for (int i = 1; i <= count; ++i)
    recorder.AddCardFile("S" + std::to_string(100000 + i), 1700000000 + 60 * i, 1000 * i,
                         recorder.path("blank"), 100, 10, "");
}

}  // namespace

TEST(CardSizeText, SizeOf999ShowsBytes1000KilobytesAndAMillionMegabytes) {
  EXPECT_EQ(CardSizeText(999), "999B");
  EXPECT_EQ(CardSizeText(1000), "1KB");
  EXPECT_EQ(CardSizeText(999999), "999KB");
  EXPECT_EQ(CardSizeText(1000000), "1MB");
  EXPECT_EQ(CardSizeText(0), "0B");
  EXPECT_EQ(CardSizeText(123456789), "123MB");
}

TEST(CardIndex, SplitsIntoLowAndHighWordsInTheirSignedForm) {
  EXPECT_EQ(SplitCardIndex(70000).low, 70000 - 65536);
  EXPECT_EQ(SplitCardIndex(70000).high, 1);
  EXPECT_EQ(SplitCardIndex(65535).low, -1);
  EXPECT_EQ(SplitCardIndex(65535).high, 0);
  EXPECT_EQ(SplitCardIndex(0x8000).low, -32768);
}

TEST(CardRead, ListsTheCardsFilesWithTimeAndSizeTexts) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutFiles(recorder, 3);
  CardLink link(recorder);
  ASSERT_TRUE(link.found);
  CardList list;
  ASSERT_EQ(CardReadList(link.driver, link.registers, 0, 1, {}, list), CardResult::kDone);
  ASSERT_EQ(list.Entries.size(), 3u);
  EXPECT_EQ(list.Entries[0].Number, 1);
  EXPECT_EQ(list.Entries[0].Name, "S100001 ");
  EXPECT_EQ(list.Entries[0].TimeText, "2023/11/14 22:14:20");
  EXPECT_EQ(list.Entries[2].Name, "S100003 ");
  EXPECT_EQ(list.Entries[2].Size, 3000u);
  EXPECT_EQ(list.Entries[2].SizeText, "3KB");
  EXPECT_FALSE(list.HasNextPage());
  EXPECT_EQ(recorder.CardCommands(), std::vector<std::string>{"1 0 0"});
}

TEST(CardRead, CardWithExactlyTenFilesHasNoNextPage) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutFiles(recorder, 10);
  CardLink link(recorder);
  CardList list;
  ASSERT_EQ(CardReadList(link.driver, link.registers, 0, 1, {}, list), CardResult::kDone);
  EXPECT_EQ(list.Entries.size(), 10u);
  EXPECT_EQ(list.Remaining, 0);
  EXPECT_FALSE(list.HasNextPage());
  ASSERT_EQ(CardNextPage(link.driver, link.registers, 1, {}, list), CardResult::kDone);
  EXPECT_EQ(list.Position, 0);
  EXPECT_EQ(recorder.CardCommands().size(), 1u);
}

TEST(CardRead, EleventhFileIsOnTheNextPageAskedForFromIndexTen) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutFiles(recorder, 11);
  CardLink link(recorder);
  CardList list;
  ASSERT_EQ(CardReadList(link.driver, link.registers, 0, 1, {}, list), CardResult::kDone);
  EXPECT_EQ(list.Entries.size(), 10u);
  EXPECT_EQ(list.Remaining, 1);
  EXPECT_TRUE(list.HasNextPage());
  ASSERT_EQ(CardNextPage(link.driver, link.registers, 1, {}, list), CardResult::kDone);
  EXPECT_EQ(list.Position, 10);
  ASSERT_EQ(list.Entries.size(), 11u);
  EXPECT_EQ(list.Entries[10].Name, "S100011 ");
  EXPECT_EQ(list.Entries[10].Number, 11);
  EXPECT_FALSE(list.HasNextPage());
  EXPECT_TRUE(list.HasEarlierPage());
  CardEarlierPage(list);
  EXPECT_EQ(list.Position, 0);
  EXPECT_EQ(recorder.CardCommands(), (std::vector<std::string>{"1 0 0", "1 10 0"}));
}

TEST(CardRead, BinaryFileAndItsEventsArrivedByteForByte) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  const CardFile card = PutBinaryFile(recorder, 250);
  CardLink link(recorder);
  std::vector<int> phases;
  int lastProgress = -1;
  int progressMaximum = -1;
  CardHooks hooks;
  hooks.Phase = [&](int id) { phases.push_back(id); };
  hooks.Progress = [&](int value, int maximum) {
    lastProgress = value;
    progressMaximum = maximum;
  };
  const std::string out = recorder.path("SOUT.FDT");
  const std::string alarm = recorder.path("AOUT.FDT");
  ASSERT_EQ(CardFetch(link.driver, link.registers, 1, out, alarm, hooks), CardResult::kDone);
  EXPECT_EQ(ReadAll(out), card.measurement);
  EXPECT_EQ(ReadAll(alarm), card.events);
  EXPECT_EQ(phases, (std::vector<int>{18902, 18903, 18904}));
  EXPECT_EQ(progressMaximum, 2);  // the two blocks of event data
  EXPECT_EQ(lastProgress, 2);
  // Records of 14 bytes: 71 a block, so 250 records are blocks from 0, 71,
  // 142 and 213.
  EXPECT_EQ(RecordWriter(MakeInfo(3, 2), 2).RecordLength(), 14);
  std::vector<std::string> data;
  for (const std::string &c : recorder.CardCommands())
    if (c.rfind("4 ", 0) == 0) data.push_back(c);
  EXPECT_EQ(data, (std::vector<std::string>{"4 0 1", "4 71 1", "4 142 1", "4 213 1"}));
}

TEST(CardRead, TextHeadTurnsTheRecordsIntoTextRows) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  const RecordFileInfo info = MakeInfo(2, 1);
  const std::vector<DataRecord> records = MakeRecords(info, 40);
  const RecordWriter text(info, 1);
  const RecordWriter binary(info, 2);
  std::string served = text.HeaderBytes();
  for (const DataRecord &r : records) binary.AppendRecord(served, r);
  Write(recorder.path("served"), served);
  recorder.AddCardFile("STEXT01", 1700000000, static_cast<long long>(served.size()),
                       recorder.path("served"), static_cast<int>(text.HeaderBytes().size()),
                       binary.RecordLength(), "");
  CardLink link(recorder);
  const std::string out = recorder.path("SOUT.FDT");
  ASSERT_EQ(CardFetch(link.driver, link.registers, 1, out, recorder.path("AOUT.FDT"), {}),
            CardResult::kDone);
  const std::string fetched = ReadAll(out);
  // The whole file as the text encoding writes it.
  EXPECT_EQ(fetched, RecordBytes(info, 1, records));
  // The first row by hand: the time, channel 1's minimum and maximum and
  // channel 2 with one decimal, DI 1's two states.
  const std::size_t head = text.HeaderBytes().size();
  EXPECT_EQ(fetched.substr(head, 61),
            "2023/11/14 22:13:20,  -50.0,  -48.7,  -47.4,      0,      1\r\n");
  EXPECT_TRUE(std::filesystem::exists(recorder.path("AOUT.FDT")));
  EXPECT_EQ(ReadAll(recorder.path("AOUT.FDT")), "");
}

TEST(CardRead, BlockIndexAbove65535GoesOutInTwoWords) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutBinaryFile(recorder, 5);
  CardLink link(recorder);
  // The block of record 70000 of file 1: the recorder takes the index from its
  // low word 4464 and its high word 1.
  EXPECT_EQ(CardCommand(link.driver, link.registers, 70000, 1, kCardMeasurement, {}, false),
            CardResult::kDone);
  EXPECT_EQ(CardCommand(link.driver, link.registers, 0x1FFFF, 1, kCardMeasurement, {}, false),
            CardResult::kDone);
  EXPECT_EQ(recorder.CardCommands(), (std::vector<std::string>{"4 70000 1", "4 131071 1"}));
}

TEST(CardRead, CancellingDuringTheMeasurementDataLeavesNoFileBehind) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutBinaryFile(recorder, 250);
  CardLink link(recorder);
  bool running = true;
  int phase = 0;
  CardHooks hooks;
  hooks.Running = [&] { return running; };
  hooks.Phase = [&](int id) { phase = id; };
  hooks.Progress = [&](int value, int) {
    if (phase == kCardPhaseData && value >= 1) running = false;  // the cancel button
  };
  const std::string out = recorder.path("SOUT.FDT");
  const std::string alarm = recorder.path("AOUT.FDT");
  EXPECT_EQ(CardFetch(link.driver, link.registers, 1, out, alarm, hooks), CardResult::kCancelled);
  EXPECT_FALSE(std::filesystem::exists(out));
  EXPECT_FALSE(std::filesystem::exists(alarm));
  // The transfer stopped after the request in hand: the second block was asked
  // for and no further one.
  std::vector<std::string> data;
  for (const std::string &c : recorder.CardCommands())
    if (c.rfind("4 ", 0) == 0) data.push_back(c);
  EXPECT_EQ(data, (std::vector<std::string>{"4 0 1", "4 71 1"}));
}

TEST(CardRead, CardTakenOutDuringTheReadGivesStatus255AtTheNextPoll) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutBinaryFile(recorder, 250);
  CardLink link(recorder);
  int phase = 0;
  bool pulled = false;
  CardHooks hooks;
  hooks.Phase = [&](int id) { phase = id; };
  hooks.Progress = [&](int value, int) {
    // After the first block of data the card goes: the write of the next
    // command is the last request it sees.
    if (phase == kCardPhaseData && value == 1 && !pulled) {
      recorder.Fault("cardout", 1);
      pulled = true;
    }
  };
  const std::string out = recorder.path("SOUT.FDT");
  const std::string alarm = recorder.path("AOUT.FDT");
  const CardResult result = CardFetch(link.driver, link.registers, 1, out, alarm, hooks);
  EXPECT_EQ(result, CardResult::kNoCard);
  EXPECT_EQ(CardResultMessage(result), 18901);
  EXPECT_FALSE(std::filesystem::exists(out));
  EXPECT_FALSE(std::filesystem::exists(alarm));
}

TEST(CardRead, NoCardGivesStatus255AndItsMessage) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  CardLink link(recorder);
  CardList list;
  const CardResult result = CardReadList(link.driver, link.registers, 0, 1, {}, list);
  EXPECT_EQ(result, CardResult::kNoCard);
  EXPECT_EQ(CardResultMessage(result), 18901);
  EXPECT_TRUE(list.Entries.empty());
}

TEST(CardRead, CardWithoutFilesGivesStatus254AndItsMessage) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  recorder.EmptyCard();
  CardLink link(recorder);
  CardList list;
  const CardResult result = CardReadList(link.driver, link.registers, 0, 1, {}, list);
  EXPECT_EQ(result, CardResult::kNoFile);
  EXPECT_EQ(CardResultMessage(result), 18905);
}

TEST(CardRead, FileNotOnTheCardGivesStatus254AndNoFile) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutBinaryFile(recorder, 5);
  CardLink link(recorder);
  const std::string out = recorder.path("SOUT.FDT");
  EXPECT_EQ(CardFetch(link.driver, link.registers, 7, out, recorder.path("AOUT.FDT"), {}),
            CardResult::kNoFile);
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(CardRead, FailedRequestGivesCommunicationErrorAndNoFile) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutBinaryFile(recorder, 250);
  CardLink link(recorder);
  int phase = 0;
  bool faulted = false;
  CardHooks hooks;
  hooks.Phase = [&](int id) { phase = id; };
  hooks.Progress = [&](int value, int) {
    if (phase == kCardPhaseData && value == 1 && !faulted) {
      recorder.Fault("noreply", 4);  // every attempt of the next request
      faulted = true;
    }
  };
  const std::string out = recorder.path("SOUT.FDT");
  const CardResult result =
      CardFetch(link.driver, link.registers, 1, out, recorder.path("AOUT.FDT"), hooks);
  EXPECT_EQ(result, CardResult::kRequestFailed);
  EXPECT_EQ(CardResultMessage(result), 18900);
  EXPECT_FALSE(std::filesystem::exists(out));
}
