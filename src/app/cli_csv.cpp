// recscope-cli csv: the CSV conversion of a measurement record, beside it.
#include <cstdio>
#include <memory>
#include <string>

#include "app/cli_common.h"
#include "record/measurement_csv.h"
#include "record/open_record.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

int RunCsv(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {}, {}, parsed, error)) return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("csv takes one FILE");
  const SharedState &state = Shared();
  auto record = std::make_unique<RecordSlot>();
  const int refused = ReadRecordFamily(state, AbsolutePath(parsed.positional[0]), *record);
  if (refused != 0) throw CatalogueError(refused, GetMessageText(refused));
  const CsvOutcome outcome = ConvertMeasurementCsv(
      record->Record, record->Alarms, CsvFormat{state.ListSeparator, state.DecimalChar});
  if (outcome.MessageId != 11132)
    throw CatalogueError(outcome.MessageId, GetMessageText(outcome.MessageId));
  for (const std::string &path : outcome.Files) std::printf("%s\n", path.c_str());
  return kExitDone;
}

const Registration kCsv({
    "csv",
    "convert a measurement record to CSV files beside it",
    "Usage: recscope-cli csv FILE\n"
    "\n"
    "Reads and checks the measurement file as the desktop program's open does (no\n"
    "working files are made) and writes its CSV conversion beside it: FILE with\n"
    "'.CSV' in place of its last four characters, or '_1.CSV', '_2.CSV' ... when\n"
    "the rows go over the limit of 65536 lines a file, and the alarm file's CSV\n"
    "when the record has one. The separator is ',' or, with --decimal-char ',', ';'.\n"
    "Prints the paths of the files written, one a line.\n"
    "\n"
    "Exit 2 with 'error 11130: ...' when any of the files exists already (nothing\n"
    "is written), 'error 11131: ...' when the conversion fails (no file of it is\n"
    "left), or the open's message when the record is refused.\n",
    RunCsv,
});

}  // namespace
}  // namespace recscope::cli
