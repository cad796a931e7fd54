#include "shell/civil_time.h"

#include <chrono>
#include <cstdio>

namespace recscope {
namespace {

constexpr const char *kMonthNames[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
  std::int64_t q = a / b;
  if ((a % b != 0) && ((a < 0) != (b < 0))) --q;
  return q;
}

}  // namespace

CivilTime ToCivil(std::int64_t seconds) {
  using namespace std::chrono;
  std::int64_t days = FloorDiv(seconds, 86400);
  std::int64_t rest = seconds - days * 86400;
  year_month_day ymd{sys_days{std::chrono::days{days}}};
  CivilTime c;
  c.year = static_cast<int>(ymd.year());
  c.month = static_cast<int>(static_cast<unsigned>(ymd.month()));
  c.day = static_cast<int>(static_cast<unsigned>(ymd.day()));
  c.hour = static_cast<int>(rest / 3600);
  c.minute = static_cast<int>(rest / 60 % 60);
  c.second = static_cast<int>(rest % 60);
  return c;
}

std::int64_t FromCivil(const CivilTime &c) {
  using namespace std::chrono;
  // Months and days out of their range roll over, as date arithmetic of the
  // recorder's era did (day 0 is the last day of the month before).
  auto ym = year{c.year} / month{1} + months{c.month - 1};
  sys_days monthStart = sys_days{ym / day{1}};
  std::int64_t days = monthStart.time_since_epoch().count() + (c.day - 1);
  return days * 86400 + std::int64_t{c.hour} * 3600 + std::int64_t{c.minute} * 60 + c.second;
}

std::string RecordTimeText(std::int64_t seconds) {
  CivilTime c = ToCivil(seconds);
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%04d/%02d/%02d %02d:%02d:%02d", c.year, c.month, c.day,
                c.hour, c.minute, c.second);
  return buffer;
}

std::optional<std::int64_t> ParseRecordTime(std::string_view text) {
  int field[6] = {0, 0, 0, 0, 0, 0};
  const char separators[5] = {'/', '/', ' ', ':', ':'};
  size_t pos = 0;
  for (int f = 0; f < 6; ++f) {
    size_t start = pos;
    while (pos < text.size() && text[pos] >= '0' && text[pos] <= '9' && pos - start < 4) {
      field[f] = field[f] * 10 + (text[pos] - '0');
      ++pos;
    }
    if (pos == start) return std::nullopt;
    if (f < 5) {
      if (pos >= text.size() || text[pos] != separators[f]) return std::nullopt;
      ++pos;
    }
  }
  if (pos != text.size()) return std::nullopt;
  if (field[1] < 1 || field[1] > 12 || field[2] < 1 || field[2] > 31 || field[3] > 23 ||
      field[4] > 59 || field[5] > 59)
    return std::nullopt;
  return FromCivil({field[0], field[1], field[2], field[3], field[4], field[5]});
}

std::string FormatTime(std::int64_t seconds, int dateFormatNo) {
  CivilTime c = ToCivil(seconds);
  char buffer[48];
  const char *mon = kMonthNames[(c.month - 1) % 12];
  int yy = ((c.year % 100) + 100) % 100;
  switch (dateFormatNo) {
    case 2:
      std::snprintf(buffer, sizeof buffer, "%02d/%02d/%04d %02d:%02d:%02d", c.day, c.month, c.year,
                    c.hour, c.minute, c.second);
      break;
    case 3:
      std::snprintf(buffer, sizeof buffer, "%02d-%s-%02d %02d:%02d:%02d", c.day, mon, yy, c.hour,
                    c.minute, c.second);
      break;
    case 4:
      std::snprintf(buffer, sizeof buffer, "%02d/%02d/%04d %02d:%02d:%02d", c.month, c.day, c.year,
                    c.hour, c.minute, c.second);
      break;
    case 5:
      std::snprintf(buffer, sizeof buffer, "%s-%02d-%02d %02d:%02d:%02d", mon, c.day, yy, c.hour,
                    c.minute, c.second);
      break;
    default:
      return RecordTimeText(seconds);
  }
  return buffer;
}

}  // namespace recscope
