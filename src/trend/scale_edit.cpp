#include "trend/scale_edit.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "shell/catalogue.h"
#include "shell/rounding.h"

namespace recscope {

namespace {

constexpr int kTooLong = 18300;
constexpr int kNotNumeric = 18301;
constexpr int kOutOfRange = 20115;
constexpr int kEqualValues = 18303;
constexpr int kNearlyEqual = 18304;
constexpr std::size_t kTextLimit = 8;

std::size_t CharCount(const std::string &text) {
  std::size_t count = 0;
  for (unsigned char c : text)
    if ((c & 0xC0) != 0x80) ++count;
  return count;
}

ScaleEditCheck Refuse(int id) { return {id, GetMessageText(id), {}}; }

// The range message keeps its reversed order: the upper end fills @FORMIN@ and the
// lower end @FORMAX@.
ScaleEditCheck RefuseRange(const std::string &upper, const std::string &lower) {
  MessagePlaceholders placeholders = {{"@FORMIN@", upper}, {"@FORMAX@", lower}};
  return {kOutOfRange, GetMessageText(kOutOfRange, placeholders), placeholders};
}

bool IsDi(const RecordFileInfo &info, int channelIndex) {
  return channelIndex > static_cast<int>(info.Channels.size());
}

}  // namespace

std::string PlainNumberText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.15g", value);
  return text;
}

bool ReadPlainNumber(const std::string &text, double &value) {
  const char *begin = text.c_str();
  while (*begin == ' ') ++begin;
  if (*begin == '\0') return false;
  char *end = nullptr;
  value = std::strtod(begin, &end);
  if (end == begin) return false;
  while (*end == ' ') ++end;
  return *end == '\0' && std::isfinite(value);
}

ScaleEditTexts ScaleEditStartTexts(const RecordFileInfo &info, int channelIndex) {
  if (channelIndex < 1) return {};
  if (IsDi(info, channelIndex)) {
    std::size_t di = channelIndex - info.Channels.size() - 1;
    if (di >= info.Dis.size()) return {};
    return {std::to_string(info.Dis[di].ScaleHigh), std::to_string(info.Dis[di].ScaleLow)};
  }
  const ChannelInfo &ch = info.Channels[channelIndex - 1];
  if (ch.ScaleKind == 1) return {std::to_string(ch.ScaleHigh), std::to_string(ch.ScaleLow)};
  return {PlainNumberText(ch.DisplayHigh), PlainNumberText(ch.DisplayLow)};
}

ScaleEditCheck CheckScaleEdit(const RecordFileInfo &info, int channelIndex,
                              const std::string &maxText, const std::string &minText) {
  if (CharCount(maxText) >= kTextLimit || CharCount(minText) >= kTextLimit) return Refuse(kTooLong);
  double high = 0;
  double low = 0;
  if (!ReadPlainNumber(maxText, high) || !ReadPlainNumber(minText, low)) return Refuse(kNotNumeric);

  bool di = IsDi(info, channelIndex);
  const ChannelInfo *ch = di ? nullptr : &info.Channels[channelIndex - 1];
  int kind = ch ? ch->ScaleKind : 0;
  double m = ch ? std::pow(10.0, ch->Decimals) : 1.0;

  if (kind == 1) {
    if (high > 9 || high < -9 || low > 9 || low < -9) return RefuseRange("9", "-9");
  } else {
    auto inside = [m](double v) { return v * m > -32768.0 && v * m < 32768.0; };
    if (!inside(high) || !inside(low))
      return RefuseRange(PlainNumberText(32767 / m), PlainNumberText(-32767 / m));
  }
  if (high == low) return Refuse(kEqualValues);
  if (kind == 0 && RoundHalfEven(high * m) == RoundHalfEven(low * m)) return Refuse(kNearlyEqual);
  return {};
}

void ApplyScaleEdit(RecordFileInfo &info, int channelIndex, const std::string &maxText,
                    const std::string &minText) {
  double high = 0;
  double low = 0;
  ReadPlainNumber(maxText, high);
  ReadPlainNumber(minText, low);
  if (IsDi(info, channelIndex)) {
    DiInfo &di = info.Dis[channelIndex - info.Channels.size() - 1];
    di.ScaleHigh = static_cast<std::int16_t>(RoundToInt(high));
    di.ScaleLow = static_cast<std::int16_t>(RoundToInt(low));
    return;
  }
  ChannelInfo &ch = info.Channels[channelIndex - 1];
  if (ch.ScaleKind == 1) {
    ch.DisplayHigh = static_cast<double>(RoundToInt(high));
    ch.DisplayLow = static_cast<double>(RoundToInt(low));
    ch.ScaleHigh = static_cast<std::int16_t>(ch.DisplayHigh);
    ch.ScaleLow = static_cast<std::int16_t>(ch.DisplayLow);
    return;
  }
  double m = std::pow(10.0, ch.Decimals);
  ch.DisplayHigh = high;
  ch.DisplayLow = low;
  ch.ScaleHigh = static_cast<std::int16_t>(RoundToInt(m * high));
  ch.ScaleLow = static_cast<std::int16_t>(RoundToInt(m * low));
}

}  // namespace recscope
