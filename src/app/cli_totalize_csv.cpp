// recscope-cli totalize-csv: the CSV conversion of a totalize file, beside it.
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"
#include "totalize/addition.h"
#include "totalize/addition_csv.h"

namespace recscope::cli {
namespace {

constexpr int kCsvDone = 11132;

int RunTotalizeCsv(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {}, {}, parsed, error)) return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("totalize-csv takes one FILE");
  SharedState &state = Shared();
  const TotalizeOpenResult opened = OpenTotalizeFile(state, AbsolutePath(parsed.positional[0]));
  if (!opened.Ok()) throw CatalogueError(opened.MessageId, GetMessageText(opened.MessageId));
  const TotalizeCsvOutcome outcome =
      TotalizeToCsv(state.Totalize(opened.Slot), CsvFormat{state.ListSeparator, state.DecimalChar});
  if (outcome.MessageId != kCsvDone)
    throw CatalogueError(outcome.MessageId, GetMessageText(outcome.MessageId));
  for (const std::string &path : outcome.Files) std::printf("%s\n", path.c_str());
  return kExitDone;
}

const Registration kTotalizeCsv({
    "totalize-csv",
    "convert a totalize file to CSV files beside it",
    "Usage: recscope-cli totalize-csv FILE\n"
    "\n"
    "Opens the totalize file as the desktop program does and writes its CSV\n"
    "conversion beside it: FILE with '.CSV' in place of its last four characters,\n"
    "or, when channels + records + 9 lines would go over 65536, FILE without its\n"
    "extension plus '_1.CSV', '_2.CSV' ... (the first file takes 65536 - (channels\n"
    "+ 9) records, each later one 65536). The separator is ',' or, with\n"
    "--decimal-char ',', ';'. Prints the paths of the files written, one a line.\n"
    "\n"
    "Exit 2 with 'error 11130: ...' when any of the files exists already (nothing\n"
    "is written), 'error 11131: ...' when the conversion fails (no file of it is\n"
    "left), or the open's message when the file is refused.\n",
    RunTotalizeCsv,
});

}  // namespace
}  // namespace recscope::cli
