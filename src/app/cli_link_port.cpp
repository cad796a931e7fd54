#include "app/cli_link_port.h"

#include <chrono>
#include <cstdio>

#include "link/link_commands.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"

namespace recscope::cli {

namespace {

constexpr int kAbortQuestion = 11100;

bool WholeNumber(const std::string &text, int &value) {
  if (text.empty() || text.size() > 6) return false;
  for (char c : text)
    if (c < '0' || c > '9') return false;
  value = std::stoi(text);
  return true;
}

}  // namespace

const std::vector<std::string> &LinkPortOptions() {
  static const std::vector<std::string> options{"--port", "--baud", "--parity", "--station",
                                                "--timeout"};
  return options;
}

std::string OpenLinkPort(const ParsedArgs &parsed, const std::string &command, LinkPort &port) {
  const std::string *device = parsed.find("--port");
  if (!device) return command + " needs --port DEV";
  ComPortSettings &settings = port.Settings;
  settings.SelectedPort = 1;
  if (const std::string *baud = parsed.find("--baud")) {
    if (!WholeNumber(*baud, settings.BaudRate[1])) return "--baud takes a number";
  }
  if (const std::string *parity = parsed.find("--parity")) {
    if (*parity != "NONE" && *parity != "ODD" && *parity != "EVEN")
      return "--parity takes NONE, ODD or EVEN";
    settings.Parity[1] = *parity;
  }
  if (const std::string *station = parsed.find("--station")) {
    int n = 0;
    if (!WholeNumber(*station, n) || n != 1)
      return "--station: the command driver addresses station 1 only";
  }
  if (const std::string *seconds = parsed.find("--timeout")) {
    if (!WholeNumber(*seconds, port.Timeout) || port.Timeout < 1)
      return "--timeout takes a number of seconds above 0";
  }
  port.Line.setDevice(AbsolutePath(*device));
  port.Driver.Line = &port.Line;
  // The one wait the desktop program keeps endless is bounded here.
  port.Driver.SixByteWaitBound = std::chrono::seconds(port.Timeout);
  return {};
}

int ReportLinkFailure(const LinkFailure &failure, const LinkPort &port) {
  if (failure.NoFileName) {
    std::fprintf(stderr, "recscope-cli: %s\n", kNoFileNameText);
    return kExitOther;
  }
  if (failure.Code == kComSixByteWaitBounded) {
    std::fprintf(stderr,
                 "recscope-cli: the reply stopped at six bytes for %d seconds (--timeout)\n",
                 port.Timeout);
    return kExitOther;
  }
  const int id = kAbortQuestion + failure.Code;
  throw CatalogueError(id, GetMessageText(id));
}

}  // namespace recscope::cli
