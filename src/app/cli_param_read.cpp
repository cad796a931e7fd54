// recscope-cli param-read: reads the recorder's setup over the command driver
// into a new record pair in the home folder, as the desktop program's
// Communication start does before it polls.
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "app/cli_link_common.h"
#include "app/program_home.h"
#include "link/command_driver.h"
#include "link/link_commands.h"
#include "link/parameter_read.h"
#include "shell/init_set.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

int RunParamRead(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, LinkOptionNames(), {}, parsed, error)) return UsageError(error);
  if (!parsed.positional.empty()) return UsageError("param-read takes no FILE");
  LinkOptions options;
  if (const int usage = ReadLinkOptions(parsed, "param-read", options)) return usage;

  LoadLinkMap();
  LinkLine link(options);
  CommandDriver &driver = link.driver();

  // Where the desktop program would ask whether to stop, the batch command
  // stops.
  int failure = 0;
  bool noName = false;
  ParameterReadHooks hooks;
  hooks.ComErrorDialog = [&failure](int code) {
    failure = code;
    return kLinkAnswerYes;
  };
  hooks.NoFileName = [&noName] { noName = true; };
  ParameterRecord record;
  const bool read = ComParameterRead(driver, Registers(), Shared().ProgramFolder, hooks, record);
  record.Close();
  ComPortClose(driver);
  if (read) {
    std::printf("%s\n", record.MeasurementPath.c_str());
    return kExitDone;
  }
  return ReportLinkFailure(failure, noName, options.timeout);
}

const Registration kParamRead({
    "param-read",
    "read the recorder's setup into a new record pair",
    "Usage: recscope-cli param-read --port DEV [--baud N] [--parity NONE|ODD|EVEN]\n"
    "                               [--station N] [--timeout SECONDS]\n"
    "\n"
    "Reads the setup of the recorder on the serial device DEV over Modbus RTU, as\n"
    "the desktop program's Communication start does: user units, header, channels\n"
    "with their alarms, digital inputs and groups, by the register map InitSet.txt\n"
    "of the home folder (put there from the delivered map when it is missing).\n"
    "The setup goes into a new record pair S<n>.FDT and A<n>.FDT in the home\n"
    "folder, n the first free number from 100000; the measurement file's path is\n"
    "printed.\n"
    "\n"
    "Options: --baud 9600 or 19200 (default 19200); --parity ODD (default), EVEN or\n"
    "NONE, which the command driver does not know, so that the port stays closed\n"
    "(exit 2 with 11105), as the desktop program's dialog does; --station: the\n"
    "command driver addresses station 1 only; data bits 8, stop bits 1.\n"
    "\n"
    "Where the desktop program asks '処理を中止しますか？' after a failed request, the\n"
    "batch command answers Yes: both files are deleted and it exits 2 with the\n"
    "failure's message, 'error 11101: ハードウェアエラー' (line error), 11102\n"
    "(time-out) or 11105 (port). A reply that stops at exactly six bytes, which the\n"
    "desktop program waits on without end, ends after --timeout SECONDS (default\n"
    "60) with exit 3.\n",
    RunParamRead,
});

}  // namespace
}  // namespace recscope::cli
