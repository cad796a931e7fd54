// recscope-cli ftp-list: the recorder's file list as the FTP browser shows it.
#include <cstdio>
#include <string>

#include "app/cli_ftp_common.h"
#include "ftp/operation_log.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

int RunFtpList(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--user", "--password", "--port"}, {"--totalize"}, parsed, error))
    return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("ftp-list takes one HOST");
  FtpTarget target;
  if (!ReadFtpTarget(parsed, target, error)) return UsageError(error);
  const bool totalize = parsed.find("--totalize") != nullptr;
  FindFtpFolder(target, totalize);
  FtpListing listing = ListFolder(target.endpoint, target.folder, LocalNowSeconds());
  if (listing.Status != FtpStatus::Ok) {
    int id = MessageForStatus(listing.Status);
    throw CatalogueError(id, GetMessageText(id));
  }
  std::vector<RemoteRow> rows = RemoteRows(listing.Entries, totalize, Shared().DateFormatNo);
  if (rows.empty()) throw CatalogueError(kFtpNoFiles, GetMessageText(kFtpNoFiles));
  for (const RemoteRow &row : rows)
    std::printf("%s\t%s\t%s\n", row.Name.c_str(), row.TimeText.c_str(), row.SizeText.c_str());
  return kExitDone;
}

const Registration kFtpList({
    "ftp-list",
    "list a recorder's record or totalize files over FTP",
    "Usage: recscope-cli ftp-list HOST --user U --password P [--totalize] [--port N]\n"
    "\n"
    "Connects to the recorder's FTP server at HOST (port 21 unless --port is given)\n"
    "as the FTP browser does: the root is looked at for the folders S000000 and\n"
    "MEMORY, and with both the record files are in /S000000, else in the root. The\n"
    "totalize files (--totalize) are in the folder T000000 below that. When the\n"
    "server refuses a plain listing, the '*.FDT' listing is used.\n"
    "\n"
    "Prints the rows of the browser's remote list, one a line: name, time (in the\n"
    "date display of --date-format; a file of today shows one year ahead, as the\n"
    "browser shows it) and size text, separated by tabs, in the server's order.\n"
    "Without --totalize only names starting with 'S' and ending in .FDT show; with\n"
    "it every name ending in .FDT. Names that could never be a local file (with '/',\n"
    "'\\', '..', ':' or control characters) never show.\n"
    "\n"
    "Exit 2 with 'error ID: TEXT': 30001 no connection or the login refused, 30000\n"
    "the folder is missing, 30002 the network could not be used, 30105 no files.\n",
    RunFtpList,
});

}  // namespace
}  // namespace recscope::cli
