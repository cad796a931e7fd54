#include "platform/text_encoding.h"

#include <gtest/gtest.h>

using namespace recscope;

TEST(TextEncoding, HalfWidthKanaRoundTrips) {
  std::string utf8 = "ｲｼﾞｮｳ";
  std::string raw = Utf8ToCp932(utf8);
  EXPECT_EQ(raw, std::string("\xB2\xBC\xDE\xAE\xB3"));
  EXPECT_EQ(Cp932ToUtf8(raw), utf8);
}

TEST(TextEncoding, DoubleByteTextRoundTrips) {
  std::string utf8 = "全体表示";
  std::string raw = Utf8ToCp932(utf8);
  EXPECT_EQ(raw.size(), 8u);
  EXPECT_EQ(Cp932ToUtf8(raw), utf8);
}

TEST(TextEncoding, BrokenBytesBecomeReplacementNotFailure) {
  std::string raw("A\x81", 2);  // a lead byte with nothing behind it
  std::string text = Cp932ToUtf8(raw);
  EXPECT_EQ(text.substr(0, 1), "A");
  EXPECT_GT(text.size(), 1u);
}

TEST(TextEncoding, LeftBytesNeverSplitsADoubleByteCharacter) {
  EXPECT_EQ(LeftCp932Bytes("炉温度ABC", 5), "炉温");
  EXPECT_EQ(LeftCp932Bytes("炉温度ABC", 8), "炉温度AB");
  EXPECT_EQ(MidCp932Bytes("ABCDEFGHIJ", 8), "IJ");
}
