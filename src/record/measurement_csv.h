#pragma once
// The CSV conversion of a measurement record: the measurement CSV, laid out line
// for line like the text encoding of the record (header, channel, DI and group
// lines, the column titles, one row a record), split into "_1.CSV", "_2.CSV" ...
// when a file would hold more than 65536 lines, and the alarm CSV beside it.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "record/record_file_info.h"
#include "record/working_files.h"

namespace recscope {

// Lines a CSV file may hold.
constexpr std::int64_t kCsvLineLimit = 65536;

// The separators of the CSV: ListSeparator between fields, DecimalChar in values.
struct CsvFormat {
  std::string Separator = ",";
  std::string DecimalChar = ".";
};

// `path` with its last four characters replaced by `ending` (".CSV").
std::string ReplaceLastFour(const std::string &path, const std::string &ending);

// The names of one conversion. `Parts` holds the measurement CSV files in order
// (one file, or "_1.CSV", "_2.CSV" ... when split) with the data rows of each;
// `AlarmCsv` is empty when the record has no alarm file.
struct MeasurementCsvPlan {
  bool Split = false;
  std::string SingleName;  // FilePath with ".CSV": looked at even when split
  std::vector<std::string> Parts;
  std::vector<std::int64_t> PartRows;
  std::string AlarmCsv;
};
MeasurementCsvPlan PlanMeasurementCsv(const RecordFileInfo &info, const AlarmFileInfo &alarms);

// Rows of each file of a conversion: one entry when ChannelTotal + RecordCount +
// GroupCount + 5 stay below 65537, otherwise the first file takes what its lines
// before the data leave of 65536 and each later one 65536.
std::vector<std::int64_t> CsvPartRows(std::int64_t channelTotal, std::int64_t recordCount,
                                      std::int64_t groupCount);

// A value in the number format of its decimals (1 "####0.0", 2 "###0.00",
// 3 "##0.000", 4 "#0.0000", any other "######0"), right-aligned in 7 characters.
std::string CsvNumber(double value, int decimals, const std::string &decimalChar);
// The same for a raw value of `decimals` (raw x 10^-decimals), exactly.
std::string CsvRawNumber(std::int32_t raw, int decimals, const std::string &decimalChar);

// A time of a binary record as the CSV writes it: "yyyy/m/d hh:mm:ss".
std::string CsvTimeText(std::int64_t seconds);

// The lines in front of the data rows (header, channels, DIs, groups, column
// titles), in code page 932.
std::string MeasurementCsvHeader(const RecordFileInfo &info, const CsvFormat &format);

// The alarm CSV of a binary alarm file's bytes, in code page 932: three header
// lines, then one line an event in file order. Empty when the bytes are no
// binary alarm file.
bool BinaryAlarmCsv(std::string_view alarmBytes, const CsvFormat &format, std::string &out);

// Outcome of a conversion: the catalogue message that ends it and the files made.
struct CsvOutcome {
  int MessageId = 0;  // 11132 done, 11130 a target exists, 11131 failed
  std::vector<std::string> Files;
};

// The whole conversion of an open record. Nothing is touched when a target
// exists; on failure no file of the conversion is left. `progress` gets the
// bar's value and maximum as the rows go out.
CsvOutcome ConvertMeasurementCsv(const RecordFileInfo &info, const AlarmFileInfo &alarms,
                                 const CsvFormat &format, const ProgressFn &progress = {});

}  // namespace recscope
