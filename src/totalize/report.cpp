#include "totalize/report.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <optional>

#include "platform/text_encoding.h"
#include "record/level_files.h"
#include "record/range_statistics.h"
#include "record/value_text.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/file_bytes.h"
#include "shell/rounding.h"
#include "views/cursor_statistics.h"

namespace recscope {

const char *const kChohyoPlaceholder = "       -   ";

namespace {

constexpr int kFileOpenError = 11107;
constexpr int kChannelWord = 41205;
constexpr int kNoValidSample = 19309;
constexpr std::size_t kTagBytes = 8;
constexpr std::int64_t kTemplateLimit = 32767;
// Rows of level 1 read at once while the extremes' times are looked for.
constexpr std::int64_t kWalkChunk = 4096;

std::string Digits(int value, int width) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*d", width, value);
  return text;
}

// The number at the start of `text` after leading blanks, as a plain decimal
// reading takes it; 0 when there is none.
int LeadingNumber(const std::string &text) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  long value = 0;
  bool any = false;
  while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])) && value < 100000) {
    value = value * 10 + (text[i] - '0');
    ++i;
    any = true;
  }
  return any ? static_cast<int>(value) : 0;
}

// Characters `from` (1-based) to `from + count - 1` of `key`, as far as it goes.
std::string Mid(const std::string &key, std::size_t from, std::size_t count) {
  if (from - 1 >= key.size()) return {};
  return key.substr(from - 1, count);
}

bool DigitsAt(const std::string &key, std::size_t from, std::size_t count) {
  if (key.size() < from - 1 + count) return false;
  for (std::size_t i = 0; i < count; ++i)
    if (!std::isdigit(static_cast<unsigned char>(key[from - 1 + i]))) return false;
  return true;
}

// "?####DSP".
bool IsRowLabelKey(const std::string &key) {
  return key.size() == 8 && DigitsAt(key, 2, 4) && key.compare(5, 3, "DSP") == 0;
}

std::string WorkingFileName(const std::string &folder, int slot, bool sums, int level) {
  return folder + "/Operation_" + std::to_string(slot) + (sums ? "_COM_" : "_") +
         std::to_string(level) + ".OPL";
}

// "yyyy/mm/dd hh:nn:ss" of a time.
std::string FullTime(std::int64_t t) { return RecordTimeText(t); }

std::string NumberFormat(double value, int decimals, const std::string &decimalChar) {
  return FormatDecimals(value, decimals, decimalChar);
}

std::string ValueCell(const ChannelInfo &ch, std::int16_t raw, const std::string &decimalChar) {
  const std::string text = ValueText(raw, ch.Decimals, ch.InputType, decimalChar);
  if (ch.ScaleKind == 1 && SpecialValueText(raw, ch.InputType).empty())
    return LogValueText(ch.RangeLow, ch.RangeHigh, ch.ExponentLow, ch.ExponentHigh, ch.Decimals,
                        raw, decimalChar);
  return text;
}

// The integral with `divisor` (twice the seconds of a minute, hour or day).
std::string IntegralCell(const ChannelInfo &ch, const ChohyoCell &cell, double divisor,
                         std::int32_t cycle, const std::string &decimalChar) {
  if (ch.ScaleKind == 1) return kChohyoPlaceholder;
  if (cell.Count == 0) return GetMessageText(kNoValidSample);
  const double x = std::trunc(cell.Sum / (divisor / cycle));
  return NumberFormat(x / std::pow(10.0, ch.Decimals), ch.Decimals, decimalChar);
}

std::string ValueKey(const std::string &key, int offset, const ChohyoContext &context) {
  const RecordFileInfo &info = *context.Info;
  const ChohyoTable &table = *context.Table;
  const int c = LeadingNumber(Mid(key, 7, 2)) + offset;
  if (c > table.Channels || c < 1) return kChohyoPlaceholder;
  const int a = LeadingNumber(Mid(key, 2, 2));
  const int b = LeadingNumber(Mid(key, 4, 2));
  int bin = table.Bins;
  if (b == a + 1) {
    // A bin the period does not have, as the 31st day of a short month.
    if (a >= table.Bins) return kChohyoPlaceholder;
    bin = a;
  }
  if (table.Cells.empty()) return kChohyoPlaceholder;
  const ChohyoCell &cell = table.At(bin, c);
  if (cell.MaxTime == 0) return kChohyoPlaceholder;
  const ChannelInfo &ch = info.Channels.at(static_cast<std::size_t>(c - 1));
  const std::string item = Mid(key, 9, 2);
  const std::string &dc = context.DecimalChar;
  if (item == "PV") return ValueCell(ch, cell.Pv, dc);
  if (item == "MX") return ValueCell(ch, cell.Max, dc);
  if (item == "MI") return ValueCell(ch, cell.Min, dc);
  if (item == "TX") return FormatTime(cell.MaxTime, context.DateFormatNo);
  if (item == "TI") return FormatTime(cell.MinTime, context.DateFormatNo);
  if (item == "AV") {
    if (ch.ScaleKind == 1) return kChohyoPlaceholder;
    if (cell.Count == 0) return GetMessageText(kNoValidSample);
    return NumberFormat(cell.Sum / cell.Count / std::pow(10.0, ch.Decimals), ch.Decimals, dc);
  }
  if (item == "SM") return IntegralCell(ch, cell, 120, context.Cycle, dc);
  if (item == "SH") return IntegralCell(ch, cell, 7200, context.Cycle, dc);
  if (item == "SD") return IntegralCell(ch, cell, 172800, context.Cycle, dc);
  return kChohyoPlaceholder;
}

std::string ChannelKey(const std::string &key, int offset, const ChohyoContext &context) {
  const int c = LeadingNumber(Mid(key, 2, 2)) + offset;
  if (c > context.Table->Channels || c < 1) return kChohyoPlaceholder;
  const ChannelInfo &ch = context.Info->Channels.at(static_cast<std::size_t>(c - 1));
  if (key.size() != 7 || !DigitsAt(key, 2, 2)) return kChohyoPlaceholder;
  const std::string field = key.substr(3);
  if (field == "CHNO") return GetMessageText(kChannelWord) + Digits(ch.ChannelNo, 2);
  if (field == "TAG ") return LeftCp932Bytes(ch.Tag, kTagBytes);
  if (field == "TAG2") return LeftCp932Bytes(MidCp932Bytes(ch.Tag, kTagBytes), kTagBytes);
  if (field == "UNIT") return ch.Unit;
  return kChohyoPlaceholder;
}

enum class CellKind { kEmpty, kLiteral, kWorkTime, kDaily, kMonthly, kAnnual, kKey };

CellKind KindOf(const std::string &cell) {
  if (cell.empty()) return CellKind::kEmpty;
  if (cell[0] != '"') return CellKind::kLiteral;
  if (cell == "\"WORKTIME\"") return CellKind::kWorkTime;
  if (cell == "\"D_DAILY\"") return CellKind::kDaily;
  if (cell == "\"M_MONTHLY\"") return CellKind::kMonthly;
  if (cell == "\"A_ANNUAL\"") return CellKind::kAnnual;
  return CellKind::kKey;
}

// The key of a cell in double quote characters: first and last character gone.
std::string KeyOf(const std::string &cell) {
  return cell.size() >= 2 ? cell.substr(1, cell.size() - 2) : std::string();
}

// The sheet cells of one template cell: dates spill over two or three cells.
std::vector<std::string> SheetTexts(const std::string &cell, int offset,
                                    const ChohyoContext &context) {
  const std::int64_t base = context.Table->BaseTime;
  switch (KindOf(cell)) {
    case CellKind::kEmpty:
      return {""};
    case CellKind::kLiteral:
      return {cell};
    case CellKind::kWorkTime: {
      const CivilTime t = ToCivil(context.Now);
      return {Digits(t.year, 4) + "/", Digits(t.month, 2) + "/" + Digits(t.day, 2),
              Digits(t.hour, 2) + "-" + Digits(t.minute, 2) + "-" + Digits(t.second, 2)};
    }
    case CellKind::kDaily: {
      const CivilTime t = ToCivil(base);
      return {Digits(t.year, 4) + "/", Digits(t.month, 2) + "/" + Digits(t.day, 2)};
    }
    case CellKind::kMonthly: {
      const CivilTime t = ToCivil(base);
      return {Digits(t.year, 4) + "/", Digits(t.month, 2)};
    }
    case CellKind::kAnnual:
      return {Digits(ToCivil(base).year, 4)};
    case CellKind::kKey:
      break;
  }
  return {EvaluateChohyoKey(KeyOf(cell), offset, context)};
}

// The one CSV field of a template cell.
std::string CsvText(const std::string &cell, int offset, const ChohyoContext &context) {
  const CivilTime t = ToCivil(context.Table->BaseTime);
  switch (KindOf(cell)) {
    case CellKind::kEmpty:
      return "";
    case CellKind::kLiteral:
      return cell;
    case CellKind::kWorkTime:
      return FullTime(context.Now);
    case CellKind::kDaily:
      return Digits(t.year, 4) + "/" + Digits(t.month, 2) + "/" + Digits(t.day, 2) + " ";
    case CellKind::kMonthly:
      return Digits(t.year, 4) + "/" + Digits(t.month, 2) + " ";
    case CellKind::kAnnual:
      return Digits(t.year, 4) + "/";
    case CellKind::kKey:
      break;
  }
  return EvaluateChohyoKey(KeyOf(cell), offset, context);
}

// One line as a line input reads it: up to CR, LF or CR LF, which are consumed.
std::string ReadLine(const std::string &bytes, std::size_t &pos) {
  const std::size_t start = pos;
  while (pos < bytes.size() && bytes[pos] != '\r' && bytes[pos] != '\n') ++pos;
  std::string line = bytes.substr(start, pos - start);
  if (pos < bytes.size()) {
    if (bytes[pos] == '\r' && pos + 1 < bytes.size() && bytes[pos + 1] == '\n') ++pos;
    ++pos;
  }
  return line;
}

std::vector<std::string> SplitCells(const std::string &line) {
  std::vector<std::string> cells;
  std::size_t start = 0;
  for (;;) {
    const std::size_t comma = line.find(',', start);
    cells.push_back(
        line.substr(start, comma == std::string::npos ? std::string::npos : comma - start));
    if (comma == std::string::npos) return cells;
    start = comma + 1;
  }
}

}  // namespace

std::string ReportTypeName(int type) {
  return GetMessageText(type == kMonthlyReport ? 41202 : type == kAnnualReport ? 41203 : 41201);
}

std::string ReportTemplateName(int type) {
  return type == kMonthlyReport  ? "MonthlyReportFormat.txt"
         : type == kAnnualReport ? "AnnualReportFormat.txt"
                                 : "DailyReportFormat.txt";
}

std::int64_t ReportPeriodStart(int type, std::int64_t baseTime) {
  CivilTime t = ToCivil(baseTime);
  t.hour = t.minute = t.second = 0;
  if (type == kMonthlyReport || type == kAnnualReport) t.day = 1;
  if (type == kAnnualReport) t.month = 1;
  return FromCivil(t);
}

std::int64_t ReportBinStart(int type, std::int64_t periodStart, int bin) {
  if (type == kDailyReport) return periodStart + 3600LL * bin;
  if (type == kMonthlyReport) return periodStart + 86400LL * bin;
  CivilTime t = ToCivil(periodStart);
  const int months = t.month - 1 + bin;
  t.year += months / 12;
  t.month = months % 12 + 1;
  return FromCivil(t);
}

int ReportBinCount(int type, std::int64_t baseTime) {
  if (type == kDailyReport) return 24;
  if (type == kAnnualReport) return 12;
  // The day number of the month's last day: the first of the next month less one day.
  const std::int64_t first = ReportPeriodStart(kMonthlyReport, baseTime);
  CivilTime next = ToCivil(first);
  if (++next.month > 12) {
    next.month = 1;
    ++next.year;
  }
  return ToCivil(FromCivil(next) - 86400).day;
}

int GatherChohyoTable(const RecordFileInfo &info, const std::string &programFolder, int slot,
                      std::int32_t cycle, int type, std::int64_t baseTime, ChohyoTable &table) {
  table = ChohyoTable{};
  table.Type = type;
  table.BaseTime = baseTime;
  table.PeriodStart = ReportPeriodStart(type, baseTime);
  table.Bins = ReportBinCount(type, baseTime);
  table.Channels = info.AnalogCount;
  table.Cells.assign(static_cast<std::size_t>(table.Bins + 1) * table.Channels, ChohyoCell{});
  auto fail = [&table] {
    table.Cells.assign(table.Cells.size(), ChohyoCell{});
    return kFileOpenError;
  };

  // Every level of both series must be there.
  const int levels = static_cast<int>(info.LevelRows.size());
  if (levels == 0 || cycle <= 0) return fail();
  for (int k = 1; k <= levels; ++k)
    for (bool sums : {false, true}) {
      std::error_code error;
      if (!std::filesystem::is_regular_file(WorkingFileName(programFolder, slot, sums, k), error))
        return fail();
    }

  const int ct = info.ChannelTotal;
  const LevelFiles level1(programFolder, slot, 0, ct, LevelFiles::kValuesOnly);
  if (!level1.ok()) return fail();
  std::vector<std::int16_t> rows;
  std::vector<ChannelStatistics> stats;
  std::int64_t previousEnd = 0;
  for (int i = 0; i <= table.Bins; ++i) {
    std::int64_t start;
    std::int64_t end;
    if (i < table.Bins) {
      start = ReportBinStart(type, table.PeriodStart, i);
      end = ReportBinStart(type, table.PeriodStart, i + 1) - cycle;
    } else {
      start = table.PeriodStart;
      end = previousEnd;
    }
    previousEnd = end;
    if (end < info.FirstTime || start > info.LastTime) continue;
    const std::int64_t clippedStart = std::max<std::int64_t>(start, info.FirstTime);
    const std::int64_t clippedEnd = std::min<std::int64_t>(end, info.LastTime);
    const std::int64_t first = (clippedStart - info.FirstTime) / cycle;
    const std::int64_t last = std::max(
        first, std::min<std::int64_t>((clippedEnd - info.FirstTime) / cycle, info.RecordCount - 1));

    std::vector<std::int16_t> firstRow(2 * static_cast<std::size_t>(ct));
    if (!level1.ReadValueRows(first, 1, firstRow.data())) return fail();
    if (!GetRangeStatistics(info, programFolder, slot, cycle, clippedStart, clippedEnd, stats))
      return fail();
    for (int c = 1; c <= table.Channels; ++c) {
      ChohyoCell &cell = table.At(i, c);
      const std::size_t at = 2 * static_cast<std::size_t>(c - 1);
      cell.Pv = static_cast<std::int16_t>(
          RoundHalfEven((static_cast<double>(firstRow[at]) + firstRow[at + 1]) / 2.0));
      const ChannelStatistics &s = stats.at(static_cast<std::size_t>(c - 1));
      cell.Max = s.Max;
      cell.Min = s.Min;
      cell.Sum = s.Sum;
      cell.Count = s.Count;
    }
    // The first sample whose low is the minimum and whose high is the maximum.
    for (std::int64_t from = first; from <= last; from += kWalkChunk) {
      const std::int64_t count = std::min(kWalkChunk, last - from + 1);
      rows.resize(static_cast<std::size_t>(count) * 2 * ct);
      if (!level1.ReadValueRows(from, count, rows.data())) return fail();
      for (std::int64_t r = 0; r < count; ++r) {
        const std::int32_t time = static_cast<std::int32_t>(info.FirstTime + (from + r) * cycle);
        for (int c = 1; c <= table.Channels; ++c) {
          ChohyoCell &cell = table.At(i, c);
          const std::size_t at = static_cast<std::size_t>(r) * 2 * ct + 2 * (c - 1);
          if (cell.MinTime == 0 && rows[at] == cell.Min) cell.MinTime = time;
          if (cell.MaxTime == 0 && rows[at + 1] == cell.Max) cell.MaxTime = time;
        }
      }
    }
  }
  return 0;
}

std::string EvaluateChohyoKey(const std::string &key, int offset, const ChohyoContext &context) {
  if (key == "WORKTIME") return FullTime(context.Now);
  if (key == "D_DAILY" || key == "M_MONTHLY" || key == "A_ANNUAL")
    return FullTime(context.Table->BaseTime);
  if (!key.empty() && key[0] == 'C') return ChannelKey(key, offset, context);
  if (IsRowLabelKey(key)) {
    const int a = LeadingNumber(Mid(key, 2, 2));
    const int b = LeadingNumber(Mid(key, 4, 2));
    return key[0] == 'D' ? std::to_string(a) + " - " + std::to_string(b) + "H" : std::to_string(b);
  }
  if (key.empty() || (key[0] != 'A' && key[0] != 'M' && key[0] != 'D')) return "\"" + key + "\"";
  return ValueKey(key, offset, context);
}

bool ParseReportTemplate(const std::string &bytes, ReportTemplate &out) {
  out = ReportTemplate{};
  if (static_cast<std::int64_t>(bytes.size()) > kTemplateLimit) return false;
  std::size_t pos = 0;
  std::string kLine;
  for (int line = 1; line <= 4; ++line) {
    // A line input past the end of the file fails.
    if (pos >= bytes.size()) return false;
    kLine = ReadLine(bytes, pos);
  }
  out.K = LeadingNumber(kLine);
  if (out.K <= 0) return false;
  // The test is on the position of the next byte (counted from 1) before each
  // read: a last line of a single byte is not read.
  while (pos + 1 < bytes.size()) out.Lines.push_back(SplitCells(Cp932ToUtf8(ReadLine(bytes, pos))));
  return true;
}

bool ReadReportTemplate(const std::string &path, ReportTemplate &out) {
  const std::optional<std::string> bytes = ReadFileBytes(path);
  if (!bytes) return false;
  return ParseReportTemplate(*bytes, out);
}

int ReportBlockCount(int channels, int k) {
  if (k <= 0) return 0;
  int last = channels / k;
  if (channels % k == 0) --last;
  return last + 1;
}

std::vector<std::vector<std::string>> MakeChohyoSheet(const ReportTemplate &tpl,
                                                      const ChohyoContext &context) {
  std::vector<std::vector<std::string>> grid;
  std::size_t columns = 0;
  auto widen = [&grid, &columns](std::size_t wanted) {
    if (wanted <= columns) return;
    columns = wanted;
    for (auto &row : grid) row.resize(columns);
  };
  const int blocks = ReportBlockCount(context.Table->Channels, tpl.K);
  for (int block = 0; block < blocks; ++block) {
    const int offset = block * tpl.K;
    for (const std::vector<std::string> &line : tpl.Lines) {
      grid.emplace_back(columns);
      widen(line.size());
      for (std::size_t index = 0; index < line.size(); ++index) {
        const std::vector<std::string> texts = SheetTexts(line[index], offset, context);
        widen(index + texts.size());
        for (std::size_t j = 0; j < texts.size(); ++j) grid.back()[index + j] = texts[j];
      }
    }
  }
  return grid;
}

std::vector<std::string> ChohyoCsvLines(const ReportTemplate &tpl, const ChohyoContext &context,
                                        const std::string &listSeparator) {
  std::vector<std::string> lines;
  const int blocks = ReportBlockCount(context.Table->Channels, tpl.K);
  for (int block = 0; block < blocks; ++block) {
    for (const std::vector<std::string> &line : tpl.Lines) {
      std::string text;
      for (const std::string &cell : line)
        text += CsvText(cell, block * tpl.K, context) + listSeparator;
      lines.push_back(text);
    }
  }
  return lines;
}

std::string ReportCsvPath(const std::string &recordPath, int type, std::int64_t baseTime) {
  const std::string stem =
      recordPath.size() >= 4 ? recordPath.substr(0, recordPath.size() - 4) : std::string();
  const CivilTime t = ToCivil(baseTime);
  std::string date = Digits(t.year, 4);
  if (type != kAnnualReport) date += Digits(t.month, 2);
  if (type == kDailyReport) date += Digits(t.day, 2);
  return stem + ReportTypeName(type) + date + ".csv";
}

int SaveChohyoCsv(const std::string &templatePath, const ChohyoContext &context,
                  const std::string &listSeparator, const std::string &target) {
  ReportTemplate tpl;
  if (!ReadReportTemplate(templatePath, tpl)) return kFileOpenError;
  std::string bytes;
  for (const std::string &line : ChohyoCsvLines(tpl, context, listSeparator))
    bytes += Utf8ToCp932(line) + "\r\n";
  return ReplaceFileBytes(target, bytes) ? 0 : kFileOpenError;
}

std::int64_t ReportNow() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  CivilTime t;
  t.year = local.tm_year + 1900;
  t.month = local.tm_mon + 1;
  t.day = local.tm_mday;
  t.hour = local.tm_hour;
  t.minute = local.tm_min;
  t.second = local.tm_sec;
  return FromCivil(t);
}

std::function<std::int64_t()> &ReportClock() {
  static std::function<std::int64_t()> clock = ReportNow;
  return clock;
}

ChohyoTable &SharedChohyoTable() {
  static ChohyoTable table;
  return table;
}

}  // namespace recscope
