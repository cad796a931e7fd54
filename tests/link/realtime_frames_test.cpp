#include "link/realtime_frames.h"

#include <gtest/gtest.h>

#include "link/modbus_crc.h"

namespace recscope {
namespace {

using Frame = std::vector<std::uint8_t>;

// A recorder that answers a read from its registers: word i of the holding or
// input registers is 0x0100 * (i % 256) + (i / 256 + 1) % 256 + function.
std::uint16_t RegisterWord(int function, int address) {
  return static_cast<std::uint16_t>(0x0100 * (address % 256) + (address / 256 + 1) % 256 +
                                    function);
}

Frame Answer(RealLink link, const Frame &request) {
  Frame reply;
  const std::size_t pdu = link == RealLink::Serial ? 0 : 6;
  const int function = request[pdu + 1];
  const int address = request[pdu + 2] * 256 + request[pdu + 3];
  const int words = request[pdu + 5];
  if (link == RealLink::Ethernet) {
    const int length = 3 + 2 * words;
    reply = {request[0],
             request[1],
             0,
             0,
             static_cast<std::uint8_t>(length >> 8),
             static_cast<std::uint8_t>(length & 0xFF)};
  }
  reply.push_back(request[pdu]);
  reply.push_back(static_cast<std::uint8_t>(function));
  reply.push_back(static_cast<std::uint8_t>(2 * words));
  for (int k = 0; k < words; ++k) {
    const std::uint16_t w = RegisterWord(function, address + k);
    reply.push_back(static_cast<std::uint8_t>(w >> 8));
    reply.push_back(static_cast<std::uint8_t>(w & 0xFF));
  }
  if (link == RealLink::Serial) AppendCrc(reply, RealCrc(reply));
  return reply;
}

// Reads a whole block and gives the word count of each request.
std::vector<int> ReadBlock(RealBlockRead &read, RealLink link, std::int32_t start, int words) {
  std::vector<int> counts;
  read.Load(start, words);
  for (int guard = 0; guard < 1000; ++guard) {
    const Frame request = read.BuildRequest(link, 1);
    counts.push_back(read.requestWords());
    const Frame reply = Answer(link, request);
    EXPECT_EQ(reply.size(), static_cast<std::size_t>(read.expectedLength()));
    const RealBlockRead::Outcome outcome = read.TakeReply(link, reply);
    if (outcome == RealBlockRead::Outcome::Done) return counts;
    EXPECT_EQ(outcome, RealBlockRead::Outcome::More);
    if (outcome != RealBlockRead::Outcome::More) break;
  }
  ADD_FAILURE() << "block not done";
  return counts;
}

TEST(RealtimeFrames, Register40001GivesFunction3Address0) {
  const RealAddress a = RealRegisterAddress(40001);
  EXPECT_EQ(a.function, 3);
  EXPECT_EQ(a.address, 0);
  const Frame expected{0x01, 0x03, 0x00, 0x00, 0x00, 0x40, 0x44, 0x3A};
  EXPECT_EQ(BuildRealRtuRequest(1, 40001, 64), expected);
}

TEST(RealtimeFrames, Register30087GivesFunction4Address86) {
  const RealAddress a = RealRegisterAddress(30087);
  EXPECT_EQ(a.function, 4);
  EXPECT_EQ(a.address, 86);
  const Frame rtu{0x11, 0x04, 0x00, 0x56, 0x00, 0x2C, 0x13, 0x57};
  EXPECT_EQ(BuildRealRtuRequest(0x11, 30087, 44), rtu);
  const Frame tcp{0x00, 0x07, 0x00, 0x00, 0x00, 0x06, 0x11, 0x04, 0x00, 0x56, 0x00, 0x2C};
  EXPECT_EQ(BuildRealTcpRequest(7, 0x11, 30087, 44), tcp);
}

TEST(RealtimeFrames, AddressRuleTakesTheTenThousandsDigit) {
  EXPECT_EQ(RealRegisterAddress(47901).function, 3);
  EXPECT_EQ(RealRegisterAddress(47901).address, 7900);
  EXPECT_EQ(RealRegisterAddress(30077).function, 4);
  EXPECT_EQ(RealRegisterAddress(30077).address, 76);
  EXPECT_EQ(RealRegisterAddress(45825).address, 5824);
}

TEST(RealtimeFrames, TcpRequestHasTheMbapHeaderAndNoCrc) {
  const Frame expected{0x01, 0x02, 0x00, 0x00, 0x00, 0x06, 0x01, 0x03, 0x09, 0x78, 0x00, 0x12};
  EXPECT_EQ(BuildRealTcpRequest(0x0102, 1, 42425, 18), expected);
}

TEST(RealtimeFrames, TransactionNumber32767IsSentAndTheNextIs0) {
  RealBlockRead read;
  read.Load(40001, 128);
  read.setTransactionNumber(32766);
  EXPECT_EQ(read.BuildRequest(RealLink::Ethernet, 1)[1], 0xFE);
  const Frame sent = read.BuildRequest(RealLink::Ethernet, 1);
  EXPECT_EQ(sent[0], 0x7F);
  EXPECT_EQ(sent[1], 0xFF);
  EXPECT_EQ(read.transactionNumber(), 0);
  const Frame next = read.BuildRequest(RealLink::Ethernet, 1);
  EXPECT_EQ(next[0], 0x00);
  EXPECT_EQ(next[1], 0x00);
  EXPECT_EQ(NextTransactionNumber(32767), 0);
  EXPECT_EQ(NextTransactionNumber(0), 1);
}

TEST(RealtimeFrames, SerialRequestsLeaveTheTransactionNumberAlone) {
  RealBlockRead read;
  read.Load(40001, 10);
  read.setTransactionNumber(5);
  read.BuildRequest(RealLink::Serial, 1);
  EXPECT_EQ(read.transactionNumber(), 5);
}

TEST(RealtimeFrames, RequestWordsAre64OrTheWordsLeft) {
  EXPECT_EQ(RealRequestWords(1920), 64);
  EXPECT_EQ(RealRequestWords(65), 64);
  EXPECT_EQ(RealRequestWords(64), 64);
  EXPECT_EQ(RealRequestWords(33), 33);
  EXPECT_EQ(RealReplyLength(RealLink::Serial, 64), 133);
  EXPECT_EQ(RealReplyLength(RealLink::Ethernet, 64), 137);
}

TEST(RealtimeFrames, GroupOf1920WordsTakes30RequestsOf64) {
  RealBlockRead read;
  const std::vector<int> counts = ReadBlock(read, RealLink::Serial, 40001, 1920);
  EXPECT_EQ(counts, std::vector<int>(30, 64));
  EXPECT_EQ(read.wordsLeft(), 0);
  EXPECT_EQ(read.nextStart(), 40001 + 1920);
  EXPECT_EQ(read.writePosition(), 2u * 1920u);
}

TEST(RealtimeFrames, LastRequestOfAGroupOf2304WordsCarries64) {
  RealBlockRead read;
  const std::vector<int> counts = ReadBlock(read, RealLink::Ethernet, 40001, 2304);
  ASSERT_EQ(counts.size(), 36u);
  EXPECT_EQ(counts.back(), 64);
}

TEST(RealtimeFrames, GroupOf33WordsIsASingleRequest) {
  RealBlockRead read;
  const std::vector<int> counts = ReadBlock(read, RealLink::Serial, 43032, 33);
  EXPECT_EQ(counts, std::vector<int>{33});
}

TEST(RealtimeFrames, DataBufferHoldsLittleEndianWordsOnBothLinks) {
  for (RealLink link : {RealLink::Serial, RealLink::Ethernet}) {
    RealBlockRead read;
    ReadBlock(read, link, 30087, 100);
    for (int i = 0; i < 100; ++i) {
      const std::uint16_t w = RegisterWord(4, 86 + i);
      ASSERT_EQ(read.data()[2 * i], w & 0xFF) << i;
      ASSERT_EQ(read.data()[2 * i + 1], w >> 8) << i;
    }
    EXPECT_EQ(read.data()[200], 0);
  }
}

TEST(RealtimeFrames, RtuReplyWithWrongCrcLowAndRightHighPasses) {
  RealBlockRead read;
  read.Load(40001, 2);
  Frame reply = Answer(RealLink::Serial, read.BuildRequest(RealLink::Serial, 1));
  reply[reply.size() - 2] ^= 0x5A;
  EXPECT_TRUE(RealRtuReplyAccepted(reply, 3));
  EXPECT_EQ(read.TakeReply(RealLink::Serial, reply), RealBlockRead::Outcome::Done);
}

TEST(RealtimeFrames, RtuReplyWithRightCrcLowAndWrongHighPasses) {
  Frame reply{0x01, 0x03, 0x02, 0x12, 0x34};
  AppendCrc(reply, RealCrc(reply));
  reply.back() ^= 0x01;
  EXPECT_TRUE(RealRtuReplyAccepted(reply, 3));
}

TEST(RealtimeFrames, RtuReplyWithBothCrcBytesWrongFails) {
  RealBlockRead read;
  read.Load(40001, 2);
  Frame reply = Answer(RealLink::Serial, read.BuildRequest(RealLink::Serial, 1));
  reply[reply.size() - 2] ^= 0x5A;
  reply[reply.size() - 1] ^= 0x01;
  EXPECT_FALSE(RealRtuReplyAccepted(reply, 3));
  EXPECT_EQ(read.TakeReply(RealLink::Serial, reply), RealBlockRead::Outcome::Rejected);
  EXPECT_EQ(read.wordsLeft(), 2);
  EXPECT_EQ(read.writePosition(), 0u);
}

TEST(RealtimeFrames, RtuExceptionReplyFails) {
  const Frame exception{0x01, 0x83, 0x02, 0xC0, 0xF1};
  EXPECT_FALSE(RealRtuReplyAccepted(exception, 3));
  // The same five bytes answer a request of function 4 with a function that is
  // not its exception: it passes the check.
  EXPECT_TRUE(RealRtuReplyAccepted(exception, 4));
}

TEST(RealtimeFrames, ReplyOfAnotherLengthIsNotYetComplete) {
  RealBlockRead read;
  read.Load(40001, 4);
  Frame reply = Answer(RealLink::Serial, read.BuildRequest(RealLink::Serial, 1));
  reply.pop_back();
  EXPECT_EQ(read.TakeReply(RealLink::Serial, reply), RealBlockRead::Outcome::Incomplete);
  EXPECT_EQ(read.wordsLeft(), 4);
}

TEST(RealtimeFrames, TcpReplyOfAnotherTransactionFails) {
  RealBlockRead read;
  read.Load(30087, 44);
  read.setTransactionNumber(300);
  Frame reply = Answer(RealLink::Ethernet, read.BuildRequest(RealLink::Ethernet, 1));
  reply[1] ^= 0x01;
  EXPECT_EQ(read.TakeReply(RealLink::Ethernet, reply), RealBlockRead::Outcome::Rejected);
  reply[1] ^= 0x01;
  reply[0] ^= 0x80;
  EXPECT_EQ(read.TakeReply(RealLink::Ethernet, reply), RealBlockRead::Outcome::Rejected);
  reply[0] ^= 0x80;
  EXPECT_EQ(read.TakeReply(RealLink::Ethernet, reply), RealBlockRead::Outcome::Done);
}

TEST(RealtimeFrames, TcpExceptionFunctionFails) {
  const Frame request = BuildRealTcpRequest(9, 1, 30087, 44);
  Frame reply = Answer(RealLink::Ethernet, request);
  EXPECT_TRUE(RealTcpReplyAccepted(reply, request));
  reply[7] = 0x84;
  EXPECT_FALSE(RealTcpReplyAccepted(reply, request));
}

}  // namespace
}  // namespace recscope
