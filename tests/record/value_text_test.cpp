#include "record/value_text.h"

#include <gtest/gtest.h>

#include "record/number_field.h"

using namespace recscope;

TEST(ValueText, SpecialValuesShowTheirTexts) {
  EXPECT_EQ(ValueText(-32768, 1, 30), "ｲｼﾞｮｳ");
  EXPECT_EQ(ValueText(-32768, 1, 34), "ｲｼﾞｮｳ");
  EXPECT_EQ(ValueText(-32768, 1, 29), "ﾊﾞｰﾝｱｳﾄ");
  EXPECT_EQ(ValueText(32767, 1, 1), "ｵｰﾊﾞｰ");
  EXPECT_EQ(ValueText(-32767, 1, 1), "ｱﾝﾀﾞｰ");
}

TEST(ValueText, DecimalsFormatTheValue) {
  EXPECT_EQ(ValueText(1234, 2, 1), "12.34");
  EXPECT_EQ(ValueText(-5, 1, 1), "-0.5");
  EXPECT_EQ(ValueText(7, 4, 1), "0.0007");
  EXPECT_EQ(ValueText(1234, 2, 1, ","), "12,34");
}

TEST(ValueText, ChannelWithDecimalsZeroShowsTheNumberAsIs) {
  EXPECT_EQ(ValueText(1234, 0, 1), "1234");
  EXPECT_EQ(ValueText(-12, 5, 1), "-12");
}

TEST(LogValueText, ExponentMinusTwoAndAHalf) {
  // Range 0..1000 raw over exponents -5..0: raw 500 is e = -2.5.
  EXPECT_EQ(LogValueText(0, 1000, -5, 0, 0, 500), "3.16E-3");
  EXPECT_EQ(LogValueText(0, 1000, -5, 0, 0, 1000), "1.00E+0");
  EXPECT_EQ(LogValueText(0, 1000, -5, 0, 0, 0), "1.00E-5");
  EXPECT_EQ(LogValueText(0, 1000, -5, 0, 0, 500, ","), "3,16E-3");
}

TEST(LogValueText, ExponentIsLimitedToNine) {
  EXPECT_EQ(LogValueText(0, 10, 0, 20, 0, 10), "1.00E+9");
}

TEST(LogScaleRaw, PowersOfTenToRaw) {
  EXPECT_EQ(LogScaleRaw(0, 1000, -5, 0, 0, -5), 0);
  EXPECT_EQ(LogScaleRaw(0, 1000, -5, 0, 0, 0), 1000);
  EXPECT_EQ(LogScaleRaw(0, 1000, -5, 0, 0, -2), 600);
  EXPECT_EQ(LogScaleRaw(0, 1000, -3, -3, 0, 5), 0);  // no exponent span: lo
  EXPECT_EQ(LogScaleRaw(0, 100000, 0, 1, 0, 1), 32767);
}

TEST(SnapToSample, PeriodTenOffsetFiveGoesDownSixGoesUp) {
  EXPECT_EQ(SnapToSample(1005, 1000, 2000, 10), 1000);
  EXPECT_EQ(SnapToSample(1006, 1000, 2000, 10), 1010);
  EXPECT_EQ(SnapToSample(999, 1000, 2000, 10), 1000);
  EXPECT_EQ(SnapToSample(2001, 1000, 2000, 10), 2000);
}

TEST(NumberField, PointInPlace) {
  EXPECT_EQ(*ReadNumberField("  12.34", 2), 1234);
  EXPECT_EQ(*ReadNumberField("-3276.8", 1), -32768);
  EXPECT_EQ(*ReadNumberField("   1234", 0), 1234);
  EXPECT_EQ(*ReadNumberField("  -0.05", 2), -5);
  EXPECT_FALSE(ReadNumberField("  ab.cd", 2));
  EXPECT_FALSE(ReadNumberField("       ", 0));
}

TEST(NumberField, MoreDecimalsThanTheFieldHoldsIsNoNumber) {
  EXPECT_FALSE(ReadNumberField("1234567", 7));
  EXPECT_FALSE(ReadNumberField("1234567", 9));
  EXPECT_EQ(*ReadNumberField("1.23456", 5), 123456);
}
