#include "link/register_text.h"

#include <gtest/gtest.h>

#include "link/register_map.h"

namespace recscope {
namespace {

TEST(RegisterText, FirstCharacterIsInTheLowByte) {
  EXPECT_EQ(RegisterToText(0x4241), "AB");
  EXPECT_EQ(RegisterToText(0x584B), "KX");
}

TEST(RegisterText, ZeroByteBecomesABlank) {
  EXPECT_EQ(RegisterToText(0x0041), "A ");
  EXPECT_EQ(RegisterToText(0x4100), " A");
  EXPECT_EQ(RegisterToText(0), "  ");
}

TEST(RegisterText, BytesGoThroughTheCodePage) {
  // Half-width katakana: 0xC1 and 0xC0, the word sign-extended from 16 bits.
  EXPECT_EQ(RegisterToText(static_cast<std::int16_t>(0xC0C1)), "\xEF\xBE\x81\xEF\xBE\x80");
  EXPECT_EQ(RegisterToText(0x20B1), "\xEF\xBD\xB1 ");
}

TEST(RegisterText, GetStrToStrCutsAtTheFirstZeroByte) {
  const std::vector<std::uint8_t> data{'x', 'K', 'T', 'X', '-', '1', 0, 'Z', 'Z', 'y'};
  EXPECT_EQ(GetStrToStr(data, 8, 1), "KTX-1");
}

TEST(RegisterText, GetStrToStrRemovesTrailingBlanksOnly) {
  const std::vector<std::uint8_t> data{' ', 'A', ' ', 'B', ' ', ' ', ' ', ' '};
  EXPECT_EQ(GetStrToStr(data, 8, 0), " A B");
  EXPECT_EQ(GetStrToStr(data, 2, 2), " B");
  EXPECT_EQ(GetStrToStr(data, 3, 4), "");
}

TEST(RegisterText, GetStrToStrConvertsDoubleByteTextFromTheCodePage) {
  // "温度" in code page 932, then blanks.
  const std::vector<std::uint8_t> data{0x89, 0xB7, 0x93, 0x78, ' ', ' ', ' ', ' '};
  EXPECT_EQ(GetStrToStr(data, 8, 0), "\xE6\xB8\xA9\xE5\xBA\xA6");
}

TEST(RegisterText, GetStrToStrEndsWithTheBuffer) {
  const std::vector<std::uint8_t> data{'A', 'B', 'C'};
  EXPECT_EQ(GetStrToStr(data, 16, 1), "BC");
  EXPECT_EQ(GetStrToStr(data, 4, 3), "");
}

TEST(RegisterText, GetStrToWordIsLowByteFirstAndSigned) {
  const std::vector<std::uint8_t> data{0x34, 0x12, 0xFE, 0xFF, 0x00, 0x80};
  EXPECT_EQ(GetStrToWord(data, 0), 0x1234);
  EXPECT_EQ(GetStrToWord(data, 2), -2);
  EXPECT_EQ(GetStrToWord(data, 4), -32768);
  EXPECT_EQ(GetStrToWord(data, 1), static_cast<std::int16_t>(0xFE12));
  EXPECT_EQ(GetStrToWord(data, 5), static_cast<std::int16_t>(0x0080));
}

// The map as InitSet.txt gives it: "SNO." stands both as a simple item and as a
// block item, so that the order of the search shows.
RegisterMap SampleMap() {
  return ParseInitSet(
      "1,\"P  \",44001,30,1\r\n"
      "0,\"PILC\",0,1,\"model\",32\r\n"
      "0,\"SNO.\",99,1,\"\",2\r\n"
      "0,\"SNO.\",16,0,0,0,0\r\n"
      "0,\"PVER\",24,0,0,0,0\r\n"
      "0,\"NULL\",0,0,0,0,0\r\n"
      "1,\"C  \",40001,64,30\r\n"
      "0,\"TAG \",0,1,\"\",8\r\n"
      "0,\"COLR\",8,0,0,0,0\r\n"
      "0,\"TAIS\",19,0\r\n");
}

TEST(RegisterLookupTest, FourBlanksGiveTheBaseAddressAndPublishTheGroup) {
  PublishedGroup published;
  EXPECT_EQ(RegisterLookup(SampleMap(), "    ", "C  ", published), 40001);
  EXPECT_EQ(published.baseAddress, 40001);
  EXPECT_EQ(published.wordsPerRecord, 64);
  EXPECT_EQ(published.recordCount, 30);
  EXPECT_EQ(published.recordBytes, 12);
}

TEST(RegisterLookupTest, ItemGivesItsWordOffsetSimpleItemsFirst) {
  PublishedGroup published;
  const RegisterMap map = SampleMap();
  EXPECT_EQ(RegisterLookup(map, "PVER", "P  ", published), 24);
  EXPECT_EQ(RegisterLookup(map, "PILC", "P  ", published), 0);
  EXPECT_EQ(RegisterLookup(map, "SNO.", "P  ", published), 16);
  EXPECT_EQ(RegisterLookup(map, "TAG ", "C  ", published), 0);
  EXPECT_EQ(RegisterLookup(map, "COLR", "C  ", published), 8);
  // An item lookup publishes nothing.
  EXPECT_EQ(published.baseAddress, 0);
}

TEST(RegisterLookupTest, MissingItemGives0LikeAnItemAtOffset0) {
  PublishedGroup published;
  const RegisterMap map = SampleMap();
  EXPECT_EQ(RegisterLookup(map, "A1TY", "P  ", published), 0);
  EXPECT_EQ(RegisterLookup(map, "NULL", "P  ", published), 0);
  // Items are found in their own group only.
  EXPECT_EQ(RegisterLookup(map, "COLR", "P  ", published), 0);
}

TEST(RegisterLookupTest, MissingGroupGives0AndPublishesNothing) {
  PublishedGroup published;
  const RegisterMap map = SampleMap();
  RegisterLookup(map, "    ", "P  ", published);
  EXPECT_EQ(RegisterLookup(map, "    ", "Q  ", published), 0);
  EXPECT_EQ(published.baseAddress, 44001);
  EXPECT_EQ(published.wordsPerRecord, 30);
  EXPECT_EQ(RegisterLookup(map, "INDX", "Q  ", published), 0);
}

}  // namespace
}  // namespace recscope
