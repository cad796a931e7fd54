#pragma once
// Times are signed second counts from 1970/1/1 00:00:00, taken as plain civil
// time: no time zone and no daylight saving ever enter.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace recscope {

struct CivilTime {
  int year = 1970;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

CivilTime ToCivil(std::int64_t seconds);
std::int64_t FromCivil(const CivilTime &civil);

// "yyyy/mm/dd hh:mm:ss", the form of every time in the record files.
std::string RecordTimeText(std::int64_t seconds);

// Reads "yyyy/mm/dd hh:mm:ss" (fields of one or two digits for month, day, hour,
// minute and second are accepted). Nothing when the text is no such time.
std::optional<std::int64_t> ParseRecordTime(std::string_view text);

// The operator's date format 1 to 5: "yyyy/mm/dd hh:mm:ss", "dd/mm/yyyy hh:mm:ss",
// "dd-mmm-yy hh:mm:ss", "mm/dd/yyyy hh:mm:ss", "mmm-dd-yy hh:mm:ss". Any other
// number gives the first.
std::string FormatTime(std::int64_t seconds, int dateFormatNo);

}  // namespace recscope
