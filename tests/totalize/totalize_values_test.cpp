#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "totalize/addition.h"
#include "totalize/totalize_writer.h"
#include "totalize_fixture.h"

namespace recscope {
namespace {

TEST(TotalizeKinds, LettersGiveKindsAndCaptionsInTheirDeliberateOrder) {
  const char letters[] = {'T', 'D', 'W', 'M', 'Y', 'R', 'E'};
  const int ids[] = {19201, 19203, 19202, 19204, 19204, 19205, 19206};
  const char *names[] = {"日報積算値表示",    "月報積算値表示", "週報積算値表示",
                         "年報積算値表示",    "年報積算値表示", "日報(時間)積算値表示",
                         "外部入力積算値表示"};
  for (int i = 0; i < 7; ++i) {
    SCOPED_TRACE(letters[i]);
    EXPECT_EQ(TotalizeKindOfLetter(letters[i]), i + 1);
    EXPECT_EQ(TotalizeKindOfLetter(static_cast<char>(letters[i] - 'A' + 'a')), i + 1);
    EXPECT_EQ(TotalizeKindMessageId(i + 1), ids[i]);
    EXPECT_EQ(TotalizeKindName(i + 1), names[i]);
  }
  EXPECT_EQ(TotalizeKindOfLetter('S'), 0);
  EXPECT_EQ(TotalizeKindOfLetter('A'), 0);
  EXPECT_EQ(TotalizeKindMessageId(0), 0);
  EXPECT_EQ(TotalizeKindMessageId(8), 0);
  EXPECT_EQ(TotalizeKindName(8), "");
}

TEST(TotalizeKinds, FixedPeriodCaptionIsNeverUsed) {
  for (int kind = 1; kind <= 7; ++kind) EXPECT_NE(TotalizeKindMessageId(kind), 19200);
}

TEST(TotalizeKinds, NameTestUpperCasesLetterAndExtensionOfTheLastPart) {
  EXPECT_EQ(TotalizeKindOfPath("/data/T0001.FDT"), 1);
  EXPECT_EQ(TotalizeKindOfPath("/data/t0001.fdt"), 1);
  EXPECT_EQ(TotalizeKindOfPath("C:\\REC\\e01.Fdt"), 7);
  EXPECT_EQ(TotalizeKindOfPath("w.FDT"), 3);
  EXPECT_EQ(TotalizeKindOfPath("/T/S0001.FDT"), 0);
  EXPECT_EQ(TotalizeKindOfPath("/data/T0001.CSV"), 0);
  EXPECT_EQ(TotalizeKindOfPath("/data/T0001"), 0);
  EXPECT_EQ(TotalizeKindOfPath("/data/T0001.FDT.bak"), 0);
  EXPECT_EQ(TotalizeKindOfPath("/data/"), 0);
}

TEST(TotalizeKinds, ErrorCodesGiveTheirMessages) {
  EXPECT_EQ(TotalizeErrorMessageId(kTotalizeBadFile), 11120);
  EXPECT_EQ(TotalizeErrorMessageId(kTotalizeNoChannels), 11121);
  EXPECT_EQ(TotalizeErrorMessageId(kTotalizeBadMember), 11122);
  EXPECT_EQ(TotalizeErrorMessageId(kTotalizeBadLength), 11123);
  EXPECT_EQ(TotalizeErrorMessageId(kTotalizeNoData), 11124);
}

TEST(TotalizeValueText, EveryDecimalCountUpToFourHasItsFormat) {
  EXPECT_EQ(FormatTotalizeValue(12345, 0), "12345");
  EXPECT_EQ(FormatTotalizeValue(12345, 1), "1234.5");
  EXPECT_EQ(FormatTotalizeValue(12345, 2), "123.45");
  EXPECT_EQ(FormatTotalizeValue(12345, 3), "12.345");
  EXPECT_EQ(FormatTotalizeValue(12345, 4), "1.2345");
  EXPECT_EQ(FormatTotalizeValue(5, 4), "0.0005");
  EXPECT_EQ(FormatTotalizeValue(0, 2), "0.00");
  EXPECT_EQ(FormatTotalizeValue(0, 0), "0");
  EXPECT_EQ(FormatTotalizeValue(-5, 1), "-0.5");
  EXPECT_EQ(FormatTotalizeValue(-12345, 2), "-123.45");
  EXPECT_EQ(FormatTotalizeValue(100, 2), "1.00");
}

TEST(TotalizeValueText, DecimalsFiveIsScaledButRoundedToAWholeNumber) {
  EXPECT_EQ(FormatTotalizeValue(123456, 5), "1");
  EXPECT_EQ(FormatTotalizeValue(149999, 5), "1");
  EXPECT_EQ(FormatTotalizeValue(150000, 5), "2");
  EXPECT_EQ(FormatTotalizeValue(250000, 5), "3");
  EXPECT_EQ(FormatTotalizeValue(-250000, 5), "-3");
  EXPECT_EQ(FormatTotalizeValue(98765432, 5), "988");
}

TEST(TotalizeValueText, DecimalsAboveFiveAlsoShowNoDigits) {
  EXPECT_EQ(FormatTotalizeValue(2500000, 6), "3");
  EXPECT_EQ(FormatTotalizeValue(123456789, 7), "12");
  EXPECT_EQ(FormatTotalizeValue(7, 9), "0");
}

TEST(TotalizeValueText, WholeRangeOfRawValuesKeepsItsDigits) {
  EXPECT_EQ(FormatTotalizeValue(std::numeric_limits<std::int32_t>::max(), 0), "2147483647");
  EXPECT_EQ(FormatTotalizeValue(std::numeric_limits<std::int32_t>::min(), 0), "-2147483648");
  EXPECT_EQ(FormatTotalizeValue(std::numeric_limits<std::int32_t>::min(), 2), "-21474836.48");
  EXPECT_EQ(FormatTotalizeValue(std::numeric_limits<std::int32_t>::max(), 4), "214748.3647");
}

TEST(TotalizeValueText, MachineDecimalCharacterStandsForThePoint) {
  EXPECT_EQ(FormatTotalizeValue(12345, 1, ","), "1234,5");
  EXPECT_EQ(FormatTotalizeValue(12345, 0, ","), "12345");
}

TEST(TotalizeWriter, BinaryLayoutHasItsOffsetsAndEndMark) {
  const TotalizeFileContent content = testing_support::MakeTotalizeContent(0);
  const std::string bytes =
      TotalizeFileBytes(content, true, testing_support::MakeTotalizeRecords(2));
  const std::size_t dataStart = 110 + 22 * 3 + 26 * 4;
  ASSERT_EQ(bytes.size(), dataStart + 2 * (8 + 4 * 3));
  EXPECT_EQ(bytes.substr(0, 11), "TTEST01.FDT");
  EXPECT_EQ(bytes[102], '\0');
  EXPECT_EQ(bytes[103], 3);
  EXPECT_EQ(bytes[107], 0);
  EXPECT_EQ(bytes[108], 1);  // first ChannelNo
  EXPECT_EQ(bytes.substr(109, 8), "FLOW1   ");
  EXPECT_EQ(bytes[108 + 22], 5);
  EXPECT_EQ(bytes.substr(108 + 66, 16), "LINE A          ");
  EXPECT_EQ(static_cast<unsigned char>(bytes[dataStart - 2]), 0xFF);
  EXPECT_EQ(static_cast<unsigned char>(bytes[dataStart - 1]), 0xFF);
  EXPECT_EQ(static_cast<unsigned char>(bytes[dataStart + 8]), 11);  // 10 x 1 + 1
}

TEST(TotalizeWriter, TextLayoutHasFixedLineLengths) {
  const TotalizeFileContent content = testing_support::MakeTotalizeContent(8);
  const std::string bytes =
      TotalizeFileBytes(content, false, testing_support::MakeTotalizeRecords(1));
  const std::size_t dataStart = 136 + 40 * 3 + 51 * 8;
  ASSERT_EQ(bytes.size(), dataStart + 41 + 12 * 3);
  EXPECT_EQ(bytes.substr(102, 2), "03");
  EXPECT_EQ(bytes.substr(114, 2), "08");
  EXPECT_EQ(bytes[135], '\n');
  EXPECT_EQ(bytes.substr(136, 40), "CH01,FLOW1   ,03,00,m3     ,  100.0,1 \r\n");
  EXPECT_EQ(bytes.substr(136 + 120, 51), "G1,LINE A          ,01,05,00,00,00,00,00,00,00,00\r\n");
  EXPECT_EQ(bytes.substr(dataStart),
            "2026/01/02 00:00:00,2026/01/02 01:00:00,        1.1,         -1,    123.457\r\n");
  EXPECT_EQ(TotalizeValueField(-5, 2), "      -0.05");
}

}  // namespace
}  // namespace recscope
