// recscope-cli saveas: a range of a record saved under a new name, with the
// alarm events of the range.
#include <cstdio>
#include <memory>
#include <string>

#include "app/cli_common.h"
#include "record/open_record.h"
#include "record/save_as.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

int RunSaveAs(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--from", "--to", "--out"}, {"--yes"}, parsed, error))
    return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("saveas takes one FILE");
  const std::string *fromText = parsed.find("--from");
  const std::string *toText = parsed.find("--to");
  const std::string *out = parsed.find("--out");
  if (!fromText || !toText || !out) return UsageError("saveas needs --from, --to and --out");
  long long from = 0, to = 0;
  try {
    from = ParseCliTime(*fromText);
    to = ParseCliTime(*toText);
  } catch (const std::invalid_argument &e) {
    return UsageError(e.what());
  }
  const bool yes = parsed.find("--yes") != nullptr;

  const SharedState &state = Shared();
  auto record = std::make_unique<RecordSlot>();
  const int refused = ReadRecordFamily(state, AbsolutePath(parsed.positional[0]), *record);
  if (refused != 0) throw CatalogueError(refused, GetMessageText(refused));
  std::string declined;
  const SaveAsOutcome outcome =
      SaveRecordRange(record->Record, record->Alarms, record->Period(), from, to,
                      AbsolutePath(*out), [&](const std::string &alarmTarget) {
                        if (!yes) declined = alarmTarget;
                        return yes;
                      });
  if (!declined.empty())
    throw CatalogueError(11185, GetMessageText(11185, "@SaveFileName@", declined));
  if (outcome.MessageId != 11184)
    throw CatalogueError(outcome.MessageId, GetMessageText(outcome.MessageId));
  for (const std::string &path : outcome.Files) std::printf("%s\n", path.c_str());
  return kExitDone;
}

const Registration kSaveAs({
    "saveas",
    "save a range of a record under a new name",
    "Usage: recscope-cli saveas FILE --from T1 --to T2 --out PATH [--yes]\n"
    "\n"
    "What the desktop program's save of the shown range does with the trend window\n"
    "showing T1 to T2: the record's header region and its records from T1 (the\n"
    "record at or before it) to T2 (held to the file's last time) go into PATH byte\n"
    "for byte, and when the record has an alarm file, its header and the events from\n"
    "T1 to T2 go into the same name with 'A' as first letter. Times are seconds or\n"
    "'yyyy/mm/dd hh:mm:ss'. PATH must be S<1 to 7 characters>.FDT in any case.\n"
    "--yes answers the question whether an existing alarm file is overwritten.\n"
    "Prints the paths written, one a line.\n"
    "\n"
    "Exit 2 with 'error ID: TEXT': 11180 a wrong name, 11181 PATH exists, 11185\n"
    "the alarm file exists and --yes was not given, 11182 or 11183 a failed write\n"
    "(no file is left), or the open's message when the record is refused.\n",
    RunSaveAs,
});

}  // namespace
}  // namespace recscope::cli
