#pragma once
// The CSV conversion of an open totalize file: header, channel and group lines,
// column heads and one line a record, read straight from the file. A file holds
// at most 65536 lines; a longer conversion goes into "_1.CSV", "_2.CSV" ...
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "record/measurement_csv.h"
#include "totalize/totalize_window.h"

namespace recscope {

// The output names of a conversion with their data lines: one file named as the
// source with ".CSV" for its last four characters while n + r + 9 lines fit into
// 65536; otherwise "_1.CSV" and on in place of the extension, the first taking
// 65536 - (n + 9) data lines and each later one 65536.
struct TotalizeCsvPlan {
  std::vector<std::string> Files;
  std::vector<std::int64_t> DataLines;
};
TotalizeCsvPlan PlanTotalizeCsv(const std::string &sourcePath, std::int64_t channelCount,
                                std::int64_t recordCount);

// The lines in front of the data (header, channel lines, group lines, column
// heads), in code page 932, each ending in CR LF.
std::string TotalizeCsvHead(const TotalizeWindow &slot, const CsvFormat &format);

// A time of a binary file as the CSV writes it: "yyyy/mm/dd hh:mm:ss" with a zero
// in the tens place of the month or the day turned into a blank.
std::string TotalizeCsvTime(std::int64_t seconds);

// The raw number of an eleven-character value of a text file with `decimals`:
// its point cut out by position. Nothing when the rest is no number.
std::optional<std::int32_t> TotalizeTextRaw(std::string_view field, int decimals);

// The data line of one record's bytes (binary or text by slot.IsBinary), without
// its line end. False when a value does not read or is wider than eleven
// characters.
bool TotalizeCsvDataLine(const TotalizeWindow &slot, std::string_view record,
                         const CsvFormat &format, std::string &line);

struct TotalizeCsvOutcome {
  int MessageId = 0;  // 11132 done, 11130 an output exists, 11131 failed
  std::vector<std::string> Files;
};

// TotalizeToCsv: the conversion of the slot's file beside it. Nothing is written
// when an output exists; on failure no output is left. `progress` gets the bar's
// value and maximum: up to 100 in steps of r / 100 records (one more with a
// remainder), or up to r a record at a time below 100 records.
TotalizeCsvOutcome TotalizeToCsv(const TotalizeWindow &slot, const CsvFormat &format,
                                 const std::function<void(int, int)> &progress = {});

}  // namespace recscope
