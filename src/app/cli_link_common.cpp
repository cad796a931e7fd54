#include "app/cli_link_common.h"

#include <cstdio>

#include "app/program_home.h"
#include "link/link_commands.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/init_set.h"
#include "shell/shared_state.h"

namespace recscope::cli {

namespace {

bool WholeNumber(const std::string &text, int &value) {
  if (text.empty() || text.size() > 6) return false;
  for (char c : text)
    if (c < '0' || c > '9') return false;
  value = std::stoi(text);
  return true;
}

}  // namespace

std::vector<std::string> LinkOptionNames() {
  return {"--port", "--baud", "--parity", "--station", "--timeout"};
}

int ReadLinkOptions(const ParsedArgs &parsed, const std::string &subcommand, LinkOptions &out) {
  const std::string *port = parsed.find("--port");
  if (!port) return UsageError(subcommand + " needs --port DEV");
  out.port = *port;
  out.settings = ComPortSettings{};
  out.settings.SelectedPort = 1;
  if (const std::string *baud = parsed.find("--baud")) {
    if (!WholeNumber(*baud, out.settings.BaudRate[1])) return UsageError("--baud takes a number");
  }
  if (const std::string *parity = parsed.find("--parity")) {
    if (*parity != "NONE" && *parity != "ODD" && *parity != "EVEN")
      return UsageError("--parity takes NONE, ODD or EVEN");
    out.settings.Parity[1] = *parity;
  }
  if (const std::string *station = parsed.find("--station")) {
    int n = 0;
    if (!WholeNumber(*station, n) || n != 1)
      return UsageError("--station: the command driver addresses station 1 only");
  }
  if (const std::string *seconds = parsed.find("--timeout")) {
    if (!WholeNumber(*seconds, out.timeout) || out.timeout < 1)
      return UsageError("--timeout takes a number of seconds above 0");
  }
  return 0;
}

void LoadLinkMap() {
  SharedState &state = Shared();
  InstallInitSet(state.ProgramFolder);
  LoadInitSet(state.ProgramFolder, Registers());
}

LinkLine::LinkLine(const LinkOptions &options, Opening opening) {
  line_.setDevice(AbsolutePath(options.port));
  driver_.Line = &line_;
  // The one wait the desktop program keeps endless is bounded here.
  driver_.SixByteWaitBound = std::chrono::seconds(options.timeout);
  if (opening == kLeaveClosed) return;
  CrcTableInit(driver_);
  ComPortOpen(driver_, options.settings);
}

LinkLine::~LinkLine() { ComPortClose(driver_); }

int SixByteWaitExit(int timeout) {
  std::fprintf(stderr, "recscope-cli: the reply stopped at six bytes for %d seconds (--timeout)\n",
               timeout);
  return kExitOther;
}

void ThrowLinkFailure(int code) {
  const int id = kLinkAbortQuestion + code;
  throw CatalogueError(id, GetMessageText(id));
}

int ReportLinkFailure(int code, bool noFileName, int timeout) {
  if (noFileName) {
    std::fprintf(stderr, "recscope-cli: %s\n", kNoFileNameText);
    return kExitOther;
  }
  if (code == kComSixByteWaitBounded) return SixByteWaitExit(timeout);
  ThrowLinkFailure(code);
}

}  // namespace recscope::cli
