// The command driver against the simulated recorder through a real
// pseudo-terminal: reads and writes, the one-second wait and its four attempts,
// the wait on exactly six bytes, replies the driver takes or lets time out,
// line events, the settings text with its "NONE" that opens no port, and the
// port's own settings put back on close.
#include "link/command_driver.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <termios.h>
#include <unistd.h>
#include <QCoreApplication>
#include <QTimer>

#include <chrono>

#include "platform/serial_line.h"
#include "simulated_recorder.h"

using namespace recscope;
using recscope::testing::SimulatedRecorder;
using Clock = std::chrono::steady_clock;

namespace {

QCoreApplication &App() {
  static int argc = 1;
  static char name[] = "link_tests";
  static char *argv[] = {name, nullptr};
  static QCoreApplication *app = new QCoreApplication(argc, argv);
  return *app;
}

// A driver on the simulated recorder's line with the settings of the run.
struct Link {
  explicit Link(const SimulatedRecorder &recorder, ComPortSettings settings = {}) {
    App();
    line.setDevice(recorder.device());
    driver.Line = &line;
    CrcTableInit(driver);
    ComPortOpen(driver, settings);
  }
  ~Link() { ComPortClose(driver); }
  SerialComLine line;
  CommandDriver driver;
};

double Seconds(Clock::time_point since) {
  return std::chrono::duration<double>(Clock::now() - since).count();
}

// Holding register 40001 + 64 (k - 1) + 28 of the recorder is RMAX of channel
// k: 1000 + k.
constexpr int kRmaxOfChannel2 = 64 + 28;

TEST(ComSettingsText, SelectedPortGivesBaudParityLetterDataAndStopBits) {
  ComPortSettings settings;
  EXPECT_EQ(ComSettingsText(settings), "19200,O,8,1");
  settings.SelectedPort = 2;
  settings.BaudRate[2] = 9600;
  settings.Parity[2] = "EVEN";
  settings.DataBits[2] = 7;
  settings.StopBits[2] = 2;
  EXPECT_EQ(ComSettingsText(settings), "9600,E,7,2");
  settings.Parity[2] = "なし";
  EXPECT_EQ(ComSettingsText(settings), "9600,N,7,2");
}

TEST(ComSettingsText, NoneGivesAnEmptyParityFieldThePortRefuses) {
  ComPortSettings settings;
  settings.Parity[1] = "NONE";
  EXPECT_EQ(ComSettingsText(settings), "19200,,8,1");
  EXPECT_FALSE(ParseComSettingsText(ComSettingsText(settings)).valid);
  const ComLineSettings good = ParseComSettingsText("9600,E,7,2");
  ASSERT_TRUE(good.valid);
  EXPECT_EQ(good.baudRate, 9600);
  EXPECT_EQ(good.parity, 'E');
  EXPECT_EQ(good.dataBits, 7);
  EXPECT_EQ(good.stopBits, 2);
}

TEST(ComLineEvents, OnlyFramingOverrunAndParityAreKept) {
  CommandDriver driver;
  ComLineEvent(driver, 1005);
  EXPECT_EQ(driver.ComErrorFlag, 0);
  for (int event : {1004, 1006, 1009}) {
    driver.ComErrorFlag = 0;
    ComLineEvent(driver, event);
    EXPECT_EQ(driver.ComErrorFlag, event);
  }
}

TEST(SerialLineMarks, MarkedBytesRaiseAParityEventAndDoubled0xFFIsOneByte) {
  App();
  SerialComLine line;
  std::vector<int> events;
  line.EventHandler = [&events](int e) { events.push_back(e); };
  // 0xFF arrives doubled; a faulty byte comes behind 0xFF 0x00; a mark can be
  // cut between two reads.
  line.TakeRaw({0x01, 0xFF, 0xFF, 0x02, 0xFF});
  line.TakeRaw({0x00});
  line.TakeRaw({0x41, 0x03});
  EXPECT_EQ(line.ReadInput(), (std::vector<std::uint8_t>{0x01, 0xFF, 0x02, 0x41, 0x03}));
  EXPECT_EQ(events, (std::vector<int>{kComEventFraming}));
}

TEST(CommandDriverPty, ReadOfHoldingRegistersStoresTheWordsSignExtended) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  ASSERT_TRUE(link.line.IsOpen());
  // RMIN and RMAX of channel 2: -2 and 1002.
  EXPECT_EQ(ComTransact(link.driver, kComReadHolding, 64 + 27, 2, 3, 10, ComReplyLength(1, 2)),
            kComSuccess);
  EXPECT_EQ(link.driver.Registers[0], -2);
  EXPECT_EQ(link.driver.Registers[1], 1002);
  EXPECT_EQ(link.driver.RequestsSent, 1);
  EXPECT_EQ(recorder.Requests(), (std::vector<std::string>{"3 91 2"}));
}

TEST(CommandDriverPty, Register40001IsAddress0WithFunction3And30087Address86Function4) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  // Tag of channel 1: "CH01TAG ", first character in the low byte.
  ASSERT_EQ(ComTransact(link.driver, kComReadHolding, 40001 - 40001, 1, 3, 10, 7), kComSuccess);
  EXPECT_EQ(link.driver.Registers[0], 'C' | ('H' << 8));
  ASSERT_EQ(ComTransact(link.driver, kComReadInput, 30087 - 30001, 44, 3, 10, 93), kComSuccess);
  EXPECT_EQ(link.driver.Registers[2], 0b10101);  // "DIB "
  EXPECT_EQ(link.driver.Registers[14], 10);      // "PV  " of channel 1
  EXPECT_EQ(recorder.Requests(), (std::vector<std::string>{"3 0 1", "4 86 44"}));
}

TEST(CommandDriverPty, ReplyOfExactlySixBytesWaitsPastTheOneSecondUntilMoreBytesCome) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  recorder.Fault("six", 1, 2500);
  const Clock::time_point begin = Clock::now();
  EXPECT_EQ(ComTransact(link.driver, kComReadHolding, kRmaxOfChannel2, 1, 3, 10, 7), kComSuccess);
  EXPECT_GE(Seconds(begin), 2.4);
  EXPECT_EQ(link.driver.RequestsSent, 1);
  EXPECT_EQ(link.driver.Registers[0], 1002);
}

TEST(CommandDriverPty, SixByteWaitWithABoundEndsWithoutAFurtherAttempt) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  link.driver.SixByteWaitBound = std::chrono::milliseconds(1500);
  recorder.Fault("six", 1, 0);
  const Clock::time_point begin = Clock::now();
  EXPECT_EQ(ComTransact(link.driver, kComReadHolding, kRmaxOfChannel2, 1, 3, 10, 7),
            kComSixByteWaitBounded);
  EXPECT_GE(Seconds(begin), 1.4);
  EXPECT_LT(Seconds(begin), 4.0);
  EXPECT_EQ(link.driver.RequestsSent, 1);
}

TEST(CommandDriverPty, ReplyOfTheRightLengthWithAWrongCrcPasses) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  recorder.Fault("badcrc", 1);
  EXPECT_EQ(ComTransact(link.driver, kComReadHolding, kRmaxOfChannel2, 1, 3, 10, 7), kComSuccess);
  EXPECT_EQ(link.driver.Registers[0], 1002);
  EXPECT_EQ(link.driver.RequestsSent, 1);
}

TEST(CommandDriverPty, NoReplyTimesOutAfterFourAttemptsOfOneSecond) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  recorder.Fault("noreply", 4);
  const Clock::time_point begin = Clock::now();
  EXPECT_EQ(ComTransact(link.driver, kComReadHolding, kRmaxOfChannel2, 1, 3, 10, 7), kComTimeOut);
  EXPECT_GE(Seconds(begin), 3.8);
  EXPECT_LT(Seconds(begin), 6.0);
  EXPECT_EQ(link.driver.RequestsSent, 4);
  EXPECT_EQ(recorder.Requests().size(), 4u);
}

TEST(CommandDriverPty, OneLostReplyIsMadeGoodByTheNextAttempt) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  recorder.Fault("noreply", 1);
  EXPECT_EQ(ComTransact(link.driver, kComReadHolding, kRmaxOfChannel2, 1, 3, 10, 7), kComSuccess);
  EXPECT_EQ(link.driver.RequestsSent, 2);
  EXPECT_EQ(link.driver.Registers[0], 1002);
}

TEST(CommandDriverPty, ExceptionReplyAndTooLongAReplyNeverMatchTheLengthAndTimeOut) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  // Two attempts of each kind, then good replies: the driver does not look at
  // the function byte, only at the count.
  recorder.Fault("exception", 2);
  recorder.Fault("long", 2);
  EXPECT_EQ(ComTransact(link.driver, kComReadHolding, kRmaxOfChannel2, 1, 3, 10, 7), kComTimeOut);
  EXPECT_EQ(link.driver.RequestsSent, 4);
}

TEST(CommandDriverPty, LineEventDuringTheWaitGivesResult1OnEveryAttempt) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  // A pseudo-terminal cannot carry a framing or parity error, so the event the
  // serial port would raise is raised here while each reply is awaited.
  QTimer events;
  QObject::connect(&events, &QTimer::timeout, [&link] { link.line.EventHandler(kComEventParity); });
  events.start(0);
  EXPECT_EQ(ComTransact(link.driver, kComReadHolding, kRmaxOfChannel2, 1, 3, 10, 7), kComLineError);
  EXPECT_EQ(link.driver.RequestsSent, 4);
  events.stop();
  // Another event number is no line error.
  QTimer other;
  QObject::connect(&other, &QTimer::timeout, [&link] { link.line.EventHandler(1005); });
  other.start(0);
  EXPECT_EQ(ComTransact(link.driver, kComReadHolding, kRmaxOfChannel2, 1, 3, 10, 7), kComSuccess);
}

TEST(CommandDriverPty, WriteOfSeveralWordsHasByteCount2NAndACrcOverItsTrueLength) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  Link link(recorder);
  // 9 + 2N bytes before the CRC: an odd frame length whatever N is. The
  // recorder answers only a request whose CRC is right.
  for (int n = 0; n < 3; ++n) link.driver.Writes[static_cast<std::size_t>(n)] = 7 + n;
  ASSERT_EQ(ComTransact(link.driver, kComWriteSeveral, 44101 - 40001, 3, 3, 10, 8), kComSuccess);
  EXPECT_EQ(link.driver.RequestsSent, 1);
  link.driver.Writes[0] = -5;
  ASSERT_EQ(ComTransact(link.driver, kComWriteOne, 44101 - 40001 + 6, 1, 3, 10, 8), kComSuccess);
  ASSERT_EQ(ComTransact(link.driver, kComReadHolding, 44101 - 40001, 8, 3, 10, 21), kComSuccess);
  EXPECT_EQ(link.driver.Registers[0], 7);
  EXPECT_EQ(link.driver.Registers[1], 8);
  EXPECT_EQ(link.driver.Registers[2], 9);
  EXPECT_EQ(link.driver.Registers[6], -5);
  const std::vector<std::string> seen = recorder.Requests();
  ASSERT_EQ(seen.size(), 3u);
  EXPECT_EQ(seen[0], "16 4100 3");
  EXPECT_EQ(seen[1].substr(0, 7), "6 4106 ");
}

TEST(CommandDriverPty, NoneInTheDialogGivesNoOpenPortAndTheTransactionFailsWith5) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  ComPortSettings settings;
  settings.Parity[1] = "NONE";
  Link link(recorder, settings);
  EXPECT_FALSE(link.line.IsOpen());
  EXPECT_EQ(ComTransact(link.driver, kComReadHolding, 0, 1, 3, 10, 7), kComPortFailure);
  EXPECT_TRUE(recorder.Requests().empty());
}

TEST(CommandDriverPty, EachOpenSetsEverySettingAndCloseRestoresThePort) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  auto settingsOf = [&recorder] {
    termios t{};
    const int fd = ::open(recorder.device().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    ::tcgetattr(fd, &t);
    ::close(fd);
    return t;
  };
  const termios before = settingsOf();
  ComPortSettings settings;
  settings.Parity[1] = "EVEN";
  Link link(recorder, settings);
  ASSERT_TRUE(link.line.IsOpen());
  // The same settings again: only the parity-enable flag would differ from
  // what the terminal holds, and the open still succeeds.
  ComPortOpen(link.driver, settings);
  ASSERT_TRUE(link.line.IsOpen());
  EXPECT_EQ(ComTransact(link.driver, kComReadHolding, kRmaxOfChannel2, 1, 3, 10, 7), kComSuccess);
  ComPortClose(link.driver);
  EXPECT_FALSE(link.line.IsOpen());
  const termios after = settingsOf();
  EXPECT_EQ(after.c_cflag, before.c_cflag);
  EXPECT_EQ(after.c_iflag, before.c_iflag);
  EXPECT_EQ(cfgetospeed(&after), cfgetospeed(&before));
}

}  // namespace
