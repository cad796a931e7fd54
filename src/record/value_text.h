#pragma once
// Texts of raw values as every view shows them, and the conversions of
// logarithmic channels.
#include <cstdint>
#include <string>

namespace recscope {

// The texts of the special raw values, or an empty text for a measurement:
// -32768 "ｲｼﾞｮｳ" (InputType 30..34) or "ﾊﾞｰﾝｱｳﾄ", 32767 "ｵｰﾊﾞｰ", -32767 "ｱﾝﾀﾞｰ".
std::string SpecialValueText(std::int32_t raw, int inputType);

// A raw value of a binary record: special values as their texts, otherwise
// raw x 10^-decimals with 1 to 4 decimals ("####0.0" .. "#0.0000") and the raw
// number as it is for any other count of decimals.
std::string ValueText(std::int32_t raw, int decimals, int inputType,
                      const std::string &decimalChar = ".");

// Raw value of the power of ten `exponent` on a logarithmic channel, cut to
// -32767..32767.
std::int32_t LogScaleRaw(double rangeLow, double rangeHigh, int exponentLow, int exponentHigh,
                         int decimals, double exponent);

// The text of a logarithmic channel's value, "3.16E-3": mantissa with two
// decimals, "E", sign and exponent.
std::string LogValueText(double rangeLow, double rangeHigh, int exponentLow, int exponentHigh,
                         int decimals, std::int32_t raw, const std::string &decimalChar = ".");

// A time put on a sample of the file: the file's ends outside it; inside, the
// nearest sample, exactly half a period staying on the earlier one.
std::int64_t SnapToSample(std::int64_t t, std::int64_t fileStart, std::int64_t fileEnd,
                          std::int64_t period);

}  // namespace recscope
