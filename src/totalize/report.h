#pragma once
// Daily, monthly and annual reports of a measurement record. The statistics of
// the period are gathered bin by bin from the slot's working files into a table
// of cells; a template of the site says which value goes into which cell of the
// sheet, and the same template walk writes the report CSV.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "record/record_file_info.h"

namespace recscope {

enum ReportType { kDailyReport = 1, kMonthlyReport = 2, kAnnualReport = 3 };

// The placeholder of a cell without a value: seven blanks, a dash, three blanks.
extern const char *const kChohyoPlaceholder;

// One cell of the statistics table: one bin of one channel. MaxTime 0 means the
// cell is empty; Count 0 means no valid sample was summed.
struct ChohyoCell {
  std::int16_t Pv = 0;
  std::int16_t Max = 0;
  std::int16_t Min = 0;
  std::int32_t MaxTime = 0;
  std::int32_t MinTime = 0;
  double Sum = 0;
  std::int32_t Count = 0;
};

// The table of one report: bins 0 to B - 1 are the hours, days or months of the
// period, bin B the whole period; channels 1 to n are the analog channels.
struct ChohyoTable {
  int Type = kDailyReport;
  std::int64_t BaseTime = 0;
  std::int64_t PeriodStart = 0;
  int Bins = 0;      // B
  int Channels = 0;  // n
  std::vector<ChohyoCell> Cells;

  ChohyoCell &At(int bin, int channel) {
    return Cells.at(static_cast<std::size_t>(bin) * Channels + (channel - 1));
  }
  const ChohyoCell &At(int bin, int channel) const {
    return Cells.at(static_cast<std::size_t>(bin) * Channels + (channel - 1));
  }
};

// The type's name (41201 日報, 41202 月報, 41203 年報) and its template file.
std::string ReportTypeName(int type);
std::string ReportTemplateName(int type);

// The start of the period that holds `baseTime`: the day at 00:00:00, the first
// of the month, or January 1; B: 24, the days of the month, or 12; and the start
// of bin i of the period.
std::int64_t ReportPeriodStart(int type, std::int64_t baseTime);
int ReportBinCount(int type, std::int64_t baseTime);
std::int64_t ReportBinStart(int type, std::int64_t periodStart, int bin);

// Gathers the table of `type` for the period holding `baseTime` from the working
// files of `slot`. Returns 0, or 11107 when a working file is missing or cannot
// be read (the table is then left empty).
int GatherChohyoTable(const RecordFileInfo &info, const std::string &programFolder, int slot,
                      std::int32_t cycle, int type, std::int64_t baseTime, ChohyoTable &table);

// What a key is evaluated against.
struct ChohyoContext {
  const RecordFileInfo *Info = nullptr;
  const ChohyoTable *Table = nullptr;
  std::int32_t Cycle = 1;  // seconds a sample
  int DateFormatNo = 1;    // the date display setting
  std::string DecimalChar = ".";
  std::int64_t Now = 0;  // the time of "WORKTIME"
};

// The cell evaluation: `key` is the template cell without its double quote
// characters, `offset` the block's channel offset. The date keys give the time
// as "yyyy/mm/dd hh:nn:ss"; the sheet and the CSV split or shorten it.
std::string EvaluateChohyoKey(const std::string &key, int offset, const ChohyoContext &context);

// A template read whole: K and the sheet lines split into cells (UTF-8).
struct ReportTemplate {
  int K = 0;
  std::vector<std::vector<std::string>> Lines;
};

// Reads a template file of code page 932. False when it cannot be read, is
// longer than 32767 bytes, has fewer than four lines or K is not above 0. Lines
// are read while the position of the next byte is below the file's length.
bool ReadReportTemplate(const std::string &path, ReportTemplate &out);
bool ParseReportTemplate(const std::string &bytes, ReportTemplate &out);

// The numbers of the blocks: 0 to L, L = n / K less 1 when K divides n. Empty
// for K not above 0.
int ReportBlockCount(int channels, int k);

// The sheet: one row a template line and block, as many columns as the widest
// row needs (date cells spill to the right; the next template cell is written
// at its own index). Every row has all columns.
std::vector<std::vector<std::string>> MakeChohyoSheet(const ReportTemplate &tpl,
                                                      const ChohyoContext &context);

// The CSV lines (UTF-8, without line ends): each cell's value followed by the
// list separator.
std::vector<std::string> ChohyoCsvLines(const ReportTemplate &tpl, const ChohyoContext &context,
                                        const std::string &listSeparator);

// The CSV's name: the record's path without its last four characters, the type's
// name, the base time as "yyyymmdd", "yyyymm" or "yyyy", and ".csv".
std::string ReportCsvPath(const std::string &recordPath, int type, std::int64_t baseTime);

// Reads the template at `templatePath` and writes the CSV to `target` in code
// page 932, lines ended by CR LF, replacing an older file through a temporary
// name. Returns 0, or 11107 when the template or the write fails (nothing of the
// CSV is then left).
int SaveChohyoCsv(const std::string &templatePath, const ChohyoContext &context,
                  const std::string &listSeparator, const std::string &target);

// The local clock's time of now as the system's second count.
std::int64_t ReportNow();

// The clock "WORKTIME" reads: ReportNow unless a test has set its own.
std::function<std::int64_t()> &ReportClock();

// The statistics table of the program: a new report replaces it.
ChohyoTable &SharedChohyoTable();

}  // namespace recscope
