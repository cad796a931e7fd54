// recscope-cli couple: joins records of one run into SC<name>.FDT.
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "record/file_coupling.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

int RunCouple(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {}, {"--yes"}, parsed, error)) return UsageError(error);
  const bool yes = parsed.find("--yes") != nullptr;
  std::vector<std::string> paths;
  for (const std::string &file : parsed.positional) {
    const int refused = AddCouplingSelection(paths, AbsolutePath(file));
    if (refused != 0) throw CatalogueError(refused, GetMessageText(refused));
  }
  const CouplingOutcome outcome =
      CoupleFiles(Shared(), paths, [yes](const std::string &) { return yes; });
  if (!outcome.Findings.empty()) {
    const int id = outcome.Findings.front();
    throw CatalogueError(id, GetMessageText(id));
  }
  if (outcome.MessageId != 19810)
    throw CatalogueError(outcome.MessageId, GetMessageText(outcome.MessageId));
  for (const std::string &path : outcome.Files) std::printf("%s\n", path.c_str());
  return kExitDone;
}

const Registration kCouple({
    "couple",
    "join records of one run into SC<name>.FDT",
    "Usage: recscope-cli couple FILE FILE... [--yes]\n"
    "\n"
    "What the file coupling window does with the files chosen in this order: each\n"
    "later file is compared with the first (encoding, sampling period, channel\n"
    "counts, channel numbers, record types, group count, alarm file encodings),\n"
    "then all are joined in the order of their first times into SC<name>.FDT beside\n"
    "the first FILE (its name from the third character on), gaps filled with zero\n"
    "records a period apart and overlaps passed over, and their alarm events into\n"
    "AC<name>.FDT. --yes answers the question whether an existing target is\n"
    "overwritten. Prints the paths written, one a line.\n"
    "\n"
    "Exit 2 with 'error ID: TEXT': 19812 a FILE named twice, 19809 fewer than two\n"
    "files, 19806 a target exists and --yes was not given, the first failed\n"
    "comparison (19800 to 19805, 19813), or 19811 when the join fails (no target is\n"
    "left).\n",
    RunCouple,
});

}  // namespace
}  // namespace recscope::cli
