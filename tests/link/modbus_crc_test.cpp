#include "link/modbus_crc.h"

#include <gtest/gtest.h>

#include <random>
#include <string_view>

namespace recscope {
namespace {

std::vector<std::uint8_t> Bytes(std::string_view s) { return {s.begin(), s.end()}; }

TEST(ModbusCrc, CheckValueOfTheDigitsIs4B37InBothForms) {
  const auto digits = Bytes("123456789");
  EXPECT_EQ(RealCrc(digits), 0x4B37);
  EXPECT_EQ(TableCrc(BuildCrcTable(), digits), 0x4B37);
}

TEST(ModbusCrc, EmptyInputLeavesTheInitialValue) {
  EXPECT_EQ(RealCrc({}), 0xFFFF);
  EXPECT_EQ(TableCrc(BuildCrcTable(), {}), 0xFFFF);
}

TEST(ModbusCrc, TableEntriesAreTheCrcOfEachByte) {
  const CrcTable table = BuildCrcTable();
  EXPECT_EQ(table[0], 0x0000);
  EXPECT_EQ(table[1], 0xC0C1);
  EXPECT_EQ(table[2], 0xC181);
  EXPECT_EQ(table[3], 0x0140);
  EXPECT_EQ(table[128], 0xA001);
  EXPECT_EQ(table[255], 0x4040);
}

TEST(ModbusCrc, TableAndBitwiseFormsAgreeOnRandomInputs) {
  const CrcTable table = BuildCrcTable();
  std::mt19937 rng(20261122);
  std::uniform_int_distribution<int> lengthOf(0, 256);
  std::uniform_int_distribution<int> byteOf(0, 255);
  for (int round = 0; round < 5000; ++round) {
    std::vector<std::uint8_t> input(static_cast<std::size_t>(lengthOf(rng)));
    for (auto &b : input) b = static_cast<std::uint8_t>(byteOf(rng));
    ASSERT_EQ(TableCrc(table, input), RealCrc(input)) << "round " << round;
  }
}

TEST(ModbusCrc, TableRoutineTakesNoMoreThanItsBufferOf256Bytes) {
  std::vector<std::uint8_t> input(300);
  for (std::size_t i = 0; i < input.size(); ++i) input[i] = static_cast<std::uint8_t>(i * 7);
  const std::uint16_t first256 = RealCrc(std::span<const std::uint8_t>(input).first(256));
  EXPECT_EQ(TableCrc(BuildCrcTable(), input), first256);
  EXPECT_NE(RealCrc(input), first256);
}

TEST(ModbusCrc, AppendedLowByteFirst) {
  std::vector<std::uint8_t> frame{0x01, 0x03, 0x00, 0x00, 0x00, 0x0A};
  AppendCrc(frame, RealCrc(frame));
  const std::vector<std::uint8_t> expected{0x01, 0x03, 0x00, 0x00, 0x00, 0x0A, 0xC5, 0xCD};
  EXPECT_EQ(frame, expected);
}

TEST(ModbusCrc, CrcTableInitFillsTheTableAndResetsTheStation) {
  CommandFrameState state;
  state.stationIndex = 4;
  CrcTableInit(state);
  EXPECT_EQ(state.stationIndex, 0);
  EXPECT_EQ(state.table, BuildCrcTable());
}

}  // namespace
}  // namespace recscope
