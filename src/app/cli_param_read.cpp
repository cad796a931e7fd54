// recscope-cli param-read: reads the recorder's setup over the command driver
// into a new record pair in the home folder, as the desktop program's
// Communication start does before it polls.
#include <chrono>
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "app/program_home.h"
#include "link/command_driver.h"
#include "link/link_commands.h"
#include "link/parameter_read.h"
#include "platform/serial_line.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/init_set.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

constexpr int kAbortQuestion = 11100;
constexpr int kAnswerYes = 6;

bool WholeNumber(const std::string &text, int &value) {
  if (text.empty() || text.size() > 6) return false;
  for (char c : text)
    if (c < '0' || c > '9') return false;
  value = std::stoi(text);
  return true;
}

int RunParamRead(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--port", "--baud", "--parity", "--station", "--timeout"}, {}, parsed,
                 error))
    return UsageError(error);
  if (!parsed.positional.empty()) return UsageError("param-read takes no FILE");
  const std::string *port = parsed.find("--port");
  if (!port) return UsageError("param-read needs --port DEV");

  ComPortSettings settings;
  settings.SelectedPort = 1;
  if (const std::string *baud = parsed.find("--baud")) {
    if (!WholeNumber(*baud, settings.BaudRate[1])) return UsageError("--baud takes a number");
  }
  if (const std::string *parity = parsed.find("--parity")) {
    if (*parity != "NONE" && *parity != "ODD" && *parity != "EVEN")
      return UsageError("--parity takes NONE, ODD or EVEN");
    settings.Parity[1] = *parity;
  }
  if (const std::string *station = parsed.find("--station")) {
    int n = 0;
    if (!WholeNumber(*station, n) || n != 1)
      return UsageError("--station: the command driver addresses station 1 only");
  }
  int timeout = 60;
  if (const std::string *seconds = parsed.find("--timeout")) {
    if (!WholeNumber(*seconds, timeout) || timeout < 1)
      return UsageError("--timeout takes a number of seconds above 0");
  }

  SharedState &state = Shared();
  InstallInitSet(state.ProgramFolder);
  LoadInitSet(state.ProgramFolder, Registers());

  SerialComLine line;
  line.setDevice(AbsolutePath(*port));
  CommandDriver driver;
  driver.Line = &line;
  // The one wait the desktop program keeps endless is bounded here.
  driver.SixByteWaitBound = std::chrono::seconds(timeout);
  CrcTableInit(driver);
  ComPortOpen(driver, settings);

  // Where the desktop program would ask whether to stop, the batch command
  // stops.
  int failure = 0;
  bool noName = false;
  ParameterReadHooks hooks;
  hooks.ComErrorDialog = [&failure](int code) {
    failure = code;
    return kAnswerYes;
  };
  hooks.NoFileName = [&noName] { noName = true; };
  ParameterRecord record;
  const bool read = ComParameterRead(driver, Registers(), state.ProgramFolder, hooks, record);
  record.Close();
  ComPortClose(driver);
  if (read) {
    std::printf("%s\n", record.MeasurementPath.c_str());
    return kExitDone;
  }
  if (noName) {
    std::fprintf(stderr, "recscope-cli: %s\n", kNoFileNameText);
    return kExitOther;
  }
  if (failure == kComSixByteWaitBounded) {
    std::fprintf(stderr,
                 "recscope-cli: the reply stopped at six bytes for %d seconds (--timeout)\n",
                 timeout);
    return kExitOther;
  }
  const int id = kAbortQuestion + failure;
  throw CatalogueError(id, GetMessageText(id));
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
