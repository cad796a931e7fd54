// recscope-cli report: the daily, monthly or annual report of a record, filled
// from the home folder's template and saved as the report CSV.
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "record/open_record.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"
#include "totalize/report.h"

namespace recscope::cli {
namespace {

int RunReport(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--type", "--base", "--out", "--now"}, {"--sheet"}, parsed, error))
    return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("report takes one FILE");
  const std::string *typeText = parsed.find("--type");
  if (!typeText) return UsageError("report needs --type day|month|year");
  int type = 0;
  if (*typeText == "day") type = kDailyReport;
  if (*typeText == "month") type = kMonthlyReport;
  if (*typeText == "year") type = kAnnualReport;
  if (type == 0) return UsageError("--type is day, month or year");
  const std::string *baseText = parsed.find("--base");
  const std::string *nowText = parsed.find("--now");
  long long base = 0;
  long long now = 0;
  try {
    if (baseText) base = ParseCliTime(*baseText);
    if (nowText) now = ParseCliTime(*nowText);
  } catch (const std::invalid_argument &e) {
    return UsageError(e.what());
  }

  SharedState &state = Shared();
  const OpenOutcome outcome = OpenRecordFile(state, AbsolutePath(parsed.positional[0]));
  if (!outcome.opened) throw CatalogueError(outcome.messageId, GetMessageText(outcome.messageId));
  const int slot = outcome.slot;
  const RecordSlot &record = state.Slot(slot);
  ChohyoTable &table = SharedChohyoTable();
  // Without --base the report is made for the period of the first data, as the
  // desktop program does when cursor 1 is not set.
  int result = GatherChohyoTable(record.Record, state.ProgramFolder, slot, record.Period(), type,
                                 baseText ? base : record.Record.FirstTime, table);
  ChohyoContext context;
  context.Info = &record.Record;
  context.Table = &table;
  context.Cycle = record.Period();
  context.DateFormatNo = state.DateFormatNo;
  context.DecimalChar = state.DecimalChar;
  context.Now = nowText ? now : ReportNow();
  const std::string templatePath = ProgramFilePath(state.ProgramFolder, ReportTemplateName(type));
  const std::string target = parsed.find("--out")
                                 ? AbsolutePath(*parsed.find("--out"))
                                 : ReportCsvPath(record.Record.FilePath, type, table.BaseTime);
  std::string sheetText;
  if (result == 0 && parsed.find("--sheet")) {
    ReportTemplate tpl;
    if (!ReadReportTemplate(templatePath, tpl)) {
      result = 11107;
    } else {
      for (const auto &row : MakeChohyoSheet(tpl, context)) {
        for (const std::string &cell : row) sheetText += cell + "\t";
        sheetText += "\n";
      }
    }
  }
  if (result == 0) result = SaveChohyoCsv(templatePath, context, state.ListSeparator, target);
  // As closing the trend window does: the slot is freed and its working files go.
  CloseRecordSlot(state, slot);
  if (result != 0) throw CatalogueError(result, GetMessageText(result));
  std::fputs(sheetText.c_str(), stdout);
  std::printf("%s\n", target.c_str());
  return kExitDone;
}

const Registration kReport({
    "report",
    "daily, monthly or annual report of a record as CSV",
    "Usage: recscope-cli report FILE --type day|month|year [--base T] [--out PATH]\n"
    "                           [--sheet] [--now T]\n"
    "\n"
    "Gathers the statistics of the day, month or year that holds the base time T\n"
    "(default: the record's first data time) from the record's working files and\n"
    "walks the home folder's template (DailyReportFormat.txt, MonthlyReportFormat.txt\n"
    "or AnnualReportFormat.txt, code page 932) as the report window does. The CSV\n"
    "goes to PATH, or beside FILE: FILE without its last four characters, 日報, 月報\n"
    "or 年報, the base date as yyyymmdd, yyyymm or yyyy, and '.csv'; an existing\n"
    "file is replaced. Prints the CSV's path.\n"
    "\n"
    "--sheet  first prints the report window's grid: one line a row, each cell\n"
    "         followed by a tab.\n"
    "--now T  the time the \"WORKTIME\" cells show (default: the clock).\n"
    "Times are whole seconds from 1970/1/1 00:00:00 or 'yyyy/mm/dd hh:mm:ss'.\n"
    "\n"
    "Exit 2 with 'error 11107: ...' when a working file or the template is missing\n"
    "or unreadable, K is not above 0, or the CSV cannot be written (nothing of it is\n"
    "then left). The working files are built for slot 1 in the home folder and\n"
    "deleted at the end.\n",
    RunReport,
});

}  // namespace
}  // namespace recscope::cli
