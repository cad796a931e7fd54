// recscope-cli ftp-get: downloads of the FTP browser, with the alarm twin.
#include <cstdio>
#include <filesystem>
#include <string>

#include "app/cli_ftp_common.h"
#include "shell/home_folder.h"

namespace recscope::cli {
namespace {

int RunFtpGet(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--user", "--password", "--port", "--to"}, {"--totalize"}, parsed, error))
    return UsageError(error);
  if (parsed.positional.size() < 2) return UsageError("ftp-get takes HOST and one NAME or more");
  const std::string *to = parsed.find("--to");
  if (!to) return UsageError("ftp-get needs --to DIR");
  std::error_code ec;
  if (!std::filesystem::is_directory(*to, ec)) return UsageError("--to must be a folder");
  FtpTarget target;
  if (!ReadFtpTarget(parsed, target, error)) return UsageError(error);
  FindFtpFolder(target, parsed.find("--totalize") != nullptr);
  std::vector<std::string> names(parsed.positional.begin() + 1, parsed.positional.end());
  DownloadOutcome outcome = DownloadFiles(target.endpoint, target.folder, names, AbsolutePath(*to));
  for (const std::string &path : outcome.Written) std::printf("%s\n", path.c_str());
  if (!outcome.Failed.empty()) throw FtpNamesError(kFtpNotFetched, "@FITEM@", outcome.Failed);
  if (!outcome.Standing.empty()) throw FtpNamesError(kFtpAlreadyLocal, "@DITEM@", outcome.Standing);
  return kExitDone;
}

const Registration kFtpGet({
    "ftp-get",
    "download record or totalize files from a recorder over FTP",
    "Usage: recscope-cli ftp-get HOST --user U --password P NAME... --to DIR\n"
    "                            [--totalize] [--port N]\n"
    "\n"
    "Downloads each NAME in binary from the recorder's record folder (found as\n"
    "ftp-list finds it; --totalize: its T000000) into the folder DIR, as the FTP\n"
    "browser's download does: a NAME already in DIR is not fetched; a record file\n"
    "(S....FDT) brings its alarm file (the first 'S' of the name made 'A') when the\n"
    "server has one. A file is written under its name only when it came whole: the\n"
    "bytes go to a temporary name in DIR first, and a transfer that ends short\n"
    "leaves nothing. A NAME with '/', '\\', '..', ':' or control characters is\n"
    "never written anywhere and fails.\n"
    "\n"
    "Prints the paths written, one a line, twins included.\n"
    "\n"
    "Exit 2 with 'error ID: TEXT': 30109 with the names that could not be fetched;\n"
    "else 30108 with the names already in DIR; or the session's message as for\n"
    "ftp-list (30001, 30000, 30002).\n",
    RunFtpGet,
});

}  // namespace
}  // namespace recscope::cli
