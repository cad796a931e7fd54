// recscope-cli autofetch --once: one run of the automatic fetch over the recorders
// of VIEWERCOM.INI, into their folders below the home folder, with the operation log.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/cli_common.h"
#include "ftp/auto_fetch.h"
#include "shell/catalogue.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

int RunAutofetch(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--port"}, {"--once"}, parsed, error)) return UsageError(error);
  if (!parsed.positional.empty()) return UsageError("autofetch takes no FILE");
  if (!parsed.find("--once")) return UsageError("autofetch runs only with --once");

  FetchRunOptions options;
  options.ProgramFolder = Shared().ProgramFolder;
  options.Port = FtpPortFromEnvironment();
  if (const std::string *port = parsed.find("--port")) {
    char *end = nullptr;
    const long value = std::strtol(port->c_str(), &end, 10);
    if (port->empty() || *end != '\0' || value < 1 || value > 65535)
      return UsageError("--port takes 1 to 65535");
    options.Port = static_cast<int>(value);
  }
  FetchRunHooks hooks;
  hooks.Logged = [](const std::string &message) {
    std::fputs((message + "\n").c_str(), stdout);
    std::fflush(stdout);
  };
  const FetchRunResult result = RunFetchCycle(options, hooks);
  for (int n = 1; n <= kFetchRecorders; ++n) {
    const std::string &status = result.RecorderStatus[static_cast<std::size_t>(n - 1)];
    if (status != " ") std::printf("recorder %d: %s\n", n, status.c_str());
  }
  std::printf("fetched: %d\n", result.Fetched);
  if (result.AnyFailed) return ReportCatalogueError(10801, GetMessageText(10801));
  return kExitDone;
}

const Registration kAutofetch{{
    "autofetch",
    "one run of the automatic fetch over the recorders of VIEWERCOM.INI",
    "Usage: recscope-cli [GLOBAL OPTIONS] autofetch --once [--port N]\n"
    "\n"
    "One run of the automatic fetch, as the desktop program's timer starts it: every\n"
    "recorder of the sections FTP_1 to FTP_10 of VIEWERCOM.INI in the home folder with\n"
    "ON=1 is asked for its record files (with their alarm twins) and totalize files.\n"
    "Files that stand in the recorder's folder with the same length are not fetched\n"
    "again. They land in <home>/IP<aaa><bbb><ccc><ddd>/ (or its S000000 folder when\n"
    "the recorder has one), totalize files in T000000 below it. Each event is\n"
    "added to LogMsg.txt in the home folder and printed as it happens; then one line\n"
    "'recorder N: OK|NG' for each recorder tried and 'fetched: N'.\n"
    "\n"
    "  --once     required: one run, then the command ends\n"
    "  --port N   the recorders' FTP port (default $RECSCOPE_FTP_PORT, else 21);\n"
    "             for tests\n"
    "\n"
    "Exit status 0 when every recorder answered and every file came; 2 with\n"
    "'error 10801: 通信エラー' when a recorder or a file failed.\n",
    RunAutofetch,
}};

}  // namespace
}  // namespace recscope::cli
