#include "views/cursor_statistics.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "record/value_text.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

std::string TwoDigits(std::int64_t n) {
  char text[8];
  std::snprintf(text, sizeof text, "%02d", static_cast<int>(n));
  return text;
}

// Average texts of a logarithmic channel: it has none.
constexpr const char *kNoAverageText = "            -   ";

}  // namespace

ComputeSpan get_ComputeTime(bool cursor1Set, std::int64_t cursor1Time, bool cursor2Set,
                            std::int64_t cursor2Time, std::int64_t fileStart, std::int64_t fileEnd,
                            std::int64_t period, int dateFormatNo) {
  const std::int64_t t1 =
      cursor1Set ? SnapToSample(cursor1Time, fileStart, fileEnd, period) : fileStart;
  const std::int64_t t2 =
      cursor2Set ? SnapToSample(cursor2Time, fileStart, fileEnd, period) : fileEnd;
  ComputeSpan span;
  span.Start = std::min(t1, t2);
  span.End = std::max(t1, t2);
  span.StTimeText = FormatTime(span.Start, dateFormatNo);
  span.EndTimeText = FormatTime(span.End, dateFormatNo);
  const std::int64_t width = span.End - span.Start;
  const std::int64_t rest = width % 86400;
  span.TimeWidthText = std::to_string(width / 86400) + GetMessageText(18104) +
                       TwoDigits(rest / 3600) + ":" + TwoDigits(rest / 60 % 60) + ":" +
                       TwoDigits(rest % 60);
  span.DataNum = (period > 0 ? width / period : 0) + 1;
  span.DataNumText = std::to_string(span.DataNum);
  return span;
}

std::string FormatDecimals(double value, int decimals, const std::string &decimalChar) {
  if (!std::isfinite(value)) return std::to_string(value);
  // The value as 15 significant digits, then rounded on those decimal digits.
  char text[64];
  std::snprintf(text, sizeof text, "%.14e", std::fabs(value));
  std::string digits;
  digits += text[0];
  digits.append(text + 2, 14);
  int exponent = std::atoi(text + 17);
  // digits d0 d1 ... d14 stand for d0.d1...d14 x 10^exponent. Keep those with a
  // place of at least 10^-decimals, and round on the first one dropped.
  const int keep = exponent + 1 + decimals;  // digits in front of the cut
  std::string kept;
  bool roundUp = false;
  if (keep < 0) {
    kept = "";
  } else if (keep >= static_cast<int>(digits.size())) {
    kept = digits + std::string(static_cast<size_t>(keep) - digits.size(), '0');
  } else {
    kept = digits.substr(0, static_cast<size_t>(keep));
    roundUp = digits[static_cast<size_t>(keep)] >= '5';
  }
  if (roundUp) {
    int i = static_cast<int>(kept.size()) - 1;
    while (i >= 0 && kept[static_cast<size_t>(i)] == '9') kept[static_cast<size_t>(i--)] = '0';
    if (i >= 0)
      ++kept[static_cast<size_t>(i)];
    else
      kept.insert(0, "1");
  }
  // kept now holds the number x 10^decimals as digits.
  if (kept.size() < static_cast<size_t>(decimals) + 1)
    kept.insert(0, static_cast<size_t>(decimals) + 1 - kept.size(), '0');
  std::string whole = kept.substr(0, kept.size() - static_cast<size_t>(decimals));
  const size_t nonZero = whole.find_first_not_of('0');
  whole = nonZero == std::string::npos ? "0" : whole.substr(nonZero);
  std::string out = value < 0 ? "-" : "";
  out += whole;
  if (decimals > 0) out += decimalChar + kept.substr(kept.size() - static_cast<size_t>(decimals));
  return out;
}

CursorCells CurComputeCells(const RecordFileInfo &info, int tableIndex,
                            const ChannelStatistics &stats, const std::string &decimalChar) {
  CursorCells cells;
  if (tableIndex >= info.AnalogCount) {
    // A DI shows its states and no average.
    cells.MaxText = ValueText(stats.Max, 0, 0, decimalChar);
    cells.MinText = ValueText(stats.Min, 0, 0, decimalChar);
    return cells;
  }
  const ChannelInfo &ch = info.Channels[static_cast<size_t>(tableIndex)];
  if (ch.ScaleKind == 1) {
    cells.MaxText = LogValueText(ch.RangeLow, ch.RangeHigh, ch.ExponentLow, ch.ExponentHigh,
                                 ch.Decimals, stats.Max, decimalChar);
    cells.MinText = LogValueText(ch.RangeLow, ch.RangeHigh, ch.ExponentLow, ch.ExponentHigh,
                                 ch.Decimals, stats.Min, decimalChar);
    cells.AvgText = kNoAverageText;
    return cells;
  }
  cells.MaxText = ValueText(stats.Max, ch.Decimals, ch.InputType, decimalChar);
  cells.MinText = ValueText(stats.Min, ch.Decimals, ch.InputType, decimalChar);
  if (stats.Count == 0) {
    // The table holds the mark 32768 in the average's place.
    cells.AvgText = GetMessageText(19309);
  } else {
    const double average = stats.Sum / stats.Count / std::pow(10.0, ch.Decimals);
    cells.AvgText = FormatDecimals(average, ch.Decimals, decimalChar);
  }
  return cells;
}

}  // namespace recscope
