// The real-time driver's frames against the simulated recorder through a real
// pseudo-terminal: blocks walked 64 words a request into the little-endian data
// buffer, the register numbering, and the RTU reply with one good CRC byte.
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QElapsedTimer>

#include "link/realtime_frames.h"
#include "link/register_text.h"
#include "platform/serial_line.h"
#include "simulated_recorder.h"

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

// Reads a block request by request as the real-time driver does on RS-232C:
// each reply is taken once it has the expected length, within 2 seconds.
RealBlockRead::Outcome ReadBlock(SerialComLine &line, RealBlockRead &block, std::int32_t start,
                                 int words) {
  block.Load(start, words);
  while (true) {
    const std::vector<std::uint8_t> request = block.BuildRequest(RealLink::Serial, 1);
    line.ReadInput();
    if (!line.Write(request)) return RealBlockRead::Outcome::Rejected;
    QElapsedTimer clock;
    clock.start();
    while (line.InputCount() < block.expectedLength() && clock.elapsed() < 2000) line.Pump();
    const RealBlockRead::Outcome outcome = block.TakeReply(RealLink::Serial, line.ReadInput());
    if (outcome != RealBlockRead::Outcome::More) return outcome;
  }
}

struct RealLine {
  explicit RealLine(const SimulatedRecorder &recorder) {
    App();
    line.setDevice(recorder.device());
    line.Open(1, "19200,O,8,1");
  }
  SerialComLine line;
};

TEST(RealtimePty, ChannelBlockOf1920WordsTakes30RequestsOf64) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  RealLine link(recorder);
  ASSERT_TRUE(link.line.IsOpen());
  RealBlockRead block;
  ASSERT_EQ(ReadBlock(link.line, block, 40001, 1920), RealBlockRead::Outcome::Done);
  const std::vector<std::string> seen = recorder.Requests();
  ASSERT_EQ(seen.size(), 30u);
  EXPECT_EQ(seen.front(), "3 0 64");
  EXPECT_EQ(seen.back(), "3 1856 64");
  // Channel 3's record at word 128: its tag, and RMAX (offset 28) 1003 as a
  // little-endian word.
  EXPECT_EQ(GetStrToStr(block.data(), 8, 2 * 128), "CH03TAG");
  EXPECT_EQ(GetStrToWord(block.data(), 2 * (128 + 28)), 1003);
  EXPECT_EQ(GetStrToWord(block.data(), 2 * (128 + 27)), -3);
}

TEST(RealtimePty, LastRequestOfA2304WordGroupCarries64AndA33WordBlockIsOneRequest) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  RealLine link(recorder);
  RealBlockRead block;
  ASSERT_EQ(ReadBlock(link.line, block, 40001, 2304), RealBlockRead::Outcome::Done);
  ASSERT_EQ(recorder.Requests().size(), 36u);
  EXPECT_EQ(recorder.Requests().back(), "3 2240 64");
  ASSERT_EQ(ReadBlock(link.line, block, 43032, 33), RealBlockRead::Outcome::Done);
  ASSERT_EQ(recorder.Requests().size(), 37u);
  EXPECT_EQ(recorder.Requests().back(), "3 3031 33");
}

TEST(RealtimePty, Register30087IsFunction4Address86) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  RealLine link(recorder);
  RealBlockRead block;
  ASSERT_EQ(ReadBlock(link.line, block, 30087, 44), RealBlockRead::Outcome::Done);
  EXPECT_EQ(recorder.Requests(), (std::vector<std::string>{"4 86 44"}));
  // Process values from word 14: channel 1 is 10.
  EXPECT_EQ(GetStrToWord(block.data(), 2 * 14), 10);
}

TEST(RealtimePty,
     ReplyWithTheCrcLowByteWrongPassesWithBothWrongFailsAndAnExceptionStaysIncomplete) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  RealLine link(recorder);
  RealBlockRead block;
  recorder.Fault("badcrclow", 1);
  EXPECT_EQ(ReadBlock(link.line, block, 40001, 10), RealBlockRead::Outcome::Done);
  recorder.Fault("badcrc", 1);
  EXPECT_EQ(ReadBlock(link.line, block, 40001, 10), RealBlockRead::Outcome::Rejected);
  // An exception reply of 5 bytes never reaches the expected length: the reply
  // stays incomplete until the driver's own time-out.
  recorder.Fault("exception", 1);
  EXPECT_EQ(ReadBlock(link.line, block, 40001, 10), RealBlockRead::Outcome::Incomplete);
}

}  // namespace
