// recscope-cli ftp-delete: the FTP browser's delete, with the alarm twin.
#include <algorithm>
#include <cstdio>
#include <string>

#include "app/cli_ftp_common.h"

namespace recscope::cli {
namespace {

int RunFtpDelete(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--user", "--password", "--port"}, {"--totalize"}, parsed, error))
    return UsageError(error);
  if (parsed.positional.size() < 2) return UsageError("ftp-delete takes HOST and one NAME or more");
  FtpTarget target;
  if (!ReadFtpTarget(parsed, target, error)) return UsageError(error);
  FindFtpFolder(target, parsed.find("--totalize") != nullptr);
  std::vector<std::string> names(parsed.positional.begin() + 1, parsed.positional.end());
  std::vector<std::string> failed = DeleteFiles(target.endpoint, target.folder, names);
  for (const std::string &name : names)
    if (std::find(failed.begin(), failed.end(), name) == failed.end())
      std::printf("%s\n", name.c_str());
  if (!failed.empty()) throw FtpNamesError(kFtpNotDeleted, "@DITEM@", failed);
  return kExitDone;
}

const Registration kFtpDelete({
    "ftp-delete",
    "delete record or totalize files on a recorder over FTP",
    "Usage: recscope-cli ftp-delete HOST --user U --password P NAME... [--totalize]\n"
    "                               [--port N]\n"
    "\n"
    "Deletes each NAME in the recorder's record folder (found as ftp-list finds it;\n"
    "--totalize: its T000000), as the FTP browser's delete does once its question\n"
    "is answered OK: a record file (S....FDT) takes its alarm file with it when the\n"
    "server has one. Prints the names deleted, one a line.\n"
    "\n"
    "Exit 2 with 'error ID: TEXT': 30107 with the names that could not be deleted,\n"
    "or the session's message as for ftp-list (30001, 30000, 30002).\n",
    RunFtpDelete,
});

}  // namespace
}  // namespace recscope::cli
