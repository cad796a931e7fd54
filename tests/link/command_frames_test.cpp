#include "link/command_frames.h"

#include <gtest/gtest.h>

namespace recscope {
namespace {

using Frame = std::vector<std::uint8_t>;

CommandFrameState Ready() {
  CommandFrameState state;
  CrcTableInit(state);
  return state;
}

TEST(CommandFrames, ReadHoldingRegistersIsKind1WithFunction3) {
  RegisterTable write{};
  const Frame expected{0x01, 0x03, 0x01, 0x02, 0x00, 0x0A, 0x65, 0xF1};
  EXPECT_EQ(ComBuildRequest(Ready(), kComReadHolding, 0x0102, 10, write), expected);
}

TEST(CommandFrames, ReadInputRegistersIsKind2WithFunction4) {
  RegisterTable write{};
  // Register 30087 of the input registers: the caller passes 30087 - 30001.
  const Frame expected{0x01, 0x04, 0x00, 0x56, 0x00, 0x2C, 0x11, 0xC7};
  EXPECT_EQ(ComBuildRequest(Ready(), kComReadInput, 30087 - 30001, 44, write), expected);
}

TEST(CommandFrames, HoldingRegister40001IsAddress0) {
  RegisterTable write{};
  const Frame expected{0x01, 0x03, 0x00, 0x00, 0x00, 0x0A, 0xC5, 0xCD};
  EXPECT_EQ(ComBuildRequest(Ready(), kComReadHolding, 40001 - 40001, 10, write), expected);
}

TEST(CommandFrames, WriteOneRegisterSendsWriteTableElement0) {
  RegisterTable write{};
  write[0] = -2;
  write[1] = 0x1234;  // not sent
  const Frame expected{0x01, 0x06, 0x09, 0x78, 0xFF, 0xFE, 0xCA, 0x3F};
  EXPECT_EQ(ComBuildRequest(Ready(), kComWriteOne, 2424, 1, write), expected);
}

TEST(CommandFrames, WriteOfNWordsHasByteCount2NAndCrcOverTheTrueOddLength) {
  RegisterTable write{};
  write[0] = 1;
  write[1] = 0x1234;
  write[2] = -1;
  write[3] = 0x5555;  // beyond N, not sent
  // 13 bytes before the CRC: the frame's odd length is padded for the string
  // handling only; the pad is neither sent nor in the CRC.
  const Frame expected{0x01, 0x10, 0x00, 0x64, 0x00, 0x03, 0x06, 0x00,
                       0x01, 0x12, 0x34, 0xFF, 0xFF, 0xDC, 0x2D};
  const Frame frame = ComBuildRequest(Ready(), kComWriteSeveral, 100, 3, write);
  EXPECT_EQ(frame, expected);
  ASSERT_EQ(frame.size(), 15u);
  EXPECT_EQ(frame[6], 2 * 3);
  Frame padded(frame.begin(), frame.begin() + 13);
  padded.push_back(0);
  EXPECT_NE(RealCrc(padded), RealCrc(std::span<const std::uint8_t>(frame).first(13)));
}

TEST(CommandFrames, WriteOfSeveralMustFitTheBufferOf256Bytes) {
  RegisterTable write{};
  for (std::size_t i = 0; i < write.size(); ++i) write[i] = static_cast<std::int32_t>(i);
  const Frame fits = ComBuildRequest(Ready(), kComWriteSeveral, 0, 124, write);
  ASSERT_EQ(fits.size(), 7u + 248u + 2u);
  EXPECT_EQ(fits[6], 248);
  EXPECT_EQ(fits[7 + 2 * 123], 0x00);
  EXPECT_EQ(fits[8 + 2 * 123], 123);
  const std::uint16_t crc = RealCrc(std::span<const std::uint8_t>(fits).first(255));
  EXPECT_EQ(fits[255], crc & 0xFF);
  EXPECT_EQ(fits[256], crc >> 8);
  EXPECT_TRUE(ComBuildRequest(Ready(), kComWriteSeveral, 0, 125, write).empty());
}

TEST(CommandFrames, UnknownKindBuildsNothing) {
  RegisterTable write{};
  EXPECT_TRUE(ComBuildRequest(Ready(), 5, 0, 1, write).empty());
  EXPECT_TRUE(ComBuildRequest(Ready(), 0, 0, 1, write).empty());
}

TEST(CommandFrames, CommandDriverAlwaysAddressesStation1AfterTableInit) {
  CommandFrameState state;
  state.stationIndex = 7;
  CrcTableInit(state);
  RegisterTable write{};
  EXPECT_EQ(ComBuildRequest(state, kComReadHolding, 0, 1, write)[0], 0x01);
}

TEST(CommandFrames, ReplyLengthsByKind) {
  EXPECT_EQ(ComReplyLength(kComReadHolding, 30), 65);
  EXPECT_EQ(ComReplyLength(kComReadInput, 44), 93);
  EXPECT_EQ(ComReplyLength(kComWriteOne, 1), 8);
  EXPECT_EQ(ComReplyLength(kComWriteSeveral, 3), 8);
}

TEST(CommandFrames, SixBytesInTheInputSuspendTheTimeout) {
  // A read of 10 words waits for 25 bytes. With exactly six bytes in hand the
  // wait goes on although its ticks are spent, until more bytes come.
  EXPECT_EQ(ComWaitStep(6, 25, 0, 0), ComWaitRound::WaitOn);
  EXPECT_EQ(ComWaitStep(7, 25, 0, 0), ComWaitRound::TimedOut);
  EXPECT_EQ(ComWaitStep(5, 25, 0, 0), ComWaitRound::TimedOut);
  EXPECT_EQ(ComWaitStep(25, 25, 0, 0), ComWaitRound::Received);
}

TEST(CommandFrames, WaitRoundsByInputCount) {
  EXPECT_EQ(ComWaitStep(0, 25, 10, 0), ComWaitRound::WaitOn);
  EXPECT_EQ(ComWaitStep(24, 25, 3, 0), ComWaitRound::WaitOn);
  EXPECT_EQ(ComWaitStep(0, 25, 0, 0), ComWaitRound::TimedOut);
  EXPECT_EQ(ComWaitStep(25, 25, 5, 0), ComWaitRound::Received);
  EXPECT_EQ(ComWaitStep(25, 25, 5, 1009), ComWaitRound::LineError);
  // A reply of a write that is six bytes long is complete, not suspended.
  EXPECT_EQ(ComWaitStep(6, 6, 0, 0), ComWaitRound::Received);
}

TEST(CommandFrames, ReplyWithRightLengthAndWrongCrcPasses) {
  // Reply to a read of 2 words, 9 bytes, its CRC bytes both wrong.
  const Frame reply{0x01, 0x03, 0x04, 0x12, 0x34, 0xFF, 0xFE, 0x00, 0x00};
  ASSERT_EQ(reply.size(), static_cast<std::size_t>(ComReplyLength(kComReadHolding, 2)));
  EXPECT_TRUE(ComCheckReply(reply));
  RegisterTable table{};
  table[2] = 99;
  ASSERT_TRUE(ComStoreReply(reply, 9, table));
  EXPECT_EQ(table[0], 0x1234);
  EXPECT_EQ(table[1], -2);  // sign-extended from 16 bits
  EXPECT_EQ(table[2], 99);  // exactly the N data words are stored
}

TEST(CommandFrames, ReplyWithWrongStationAndFunctionPasses) {
  const Frame reply{0x09, 0x84, 0x02, 0x80, 0x00, 0x11, 0x22};
  EXPECT_TRUE(ComCheckReply(reply));
  RegisterTable table{};
  ASSERT_TRUE(ComStoreReply(reply, 7, table));
  EXPECT_EQ(table[0], -32768);
}

TEST(CommandFrames, WriteReplyStoresTheWordAtBytes3And4) {
  // Echo of a single write to address 0x0978 of 0xFFFE.
  const Frame reply{0x01, 0x06, 0x09, 0x78, 0xFF, 0xFE, 0xCA, 0x3F};
  RegisterTable table{};
  table[1] = 5;
  ASSERT_TRUE(ComStoreReply(reply, 8, table));
  EXPECT_EQ(table[0], 0x78FF);
  EXPECT_EQ(table[1], 5);
}

TEST(CommandFrames, ReplyBufferHoldsAtMost513Bytes) {
  Frame reply(515, 0x01);
  RegisterTable table{};
  EXPECT_TRUE(ComStoreReply(reply, 513, table));  // 254 words
  EXPECT_EQ(table[253], 0x0101);
  EXPECT_EQ(table[254], 0);
  RegisterTable untouched{};
  EXPECT_FALSE(ComStoreReply(reply, 515, untouched));
  EXPECT_EQ(untouched[0], 0);
}

}  // namespace
}  // namespace recscope
