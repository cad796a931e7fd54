#pragma once
// The options and the line that the batch command's link subcommands share:
// the serial device, baud, parity, station and the bound on the six-byte wait.
#include <chrono>
#include <string>
#include <vector>

#include "app/cli_common.h"
#include "link/command_driver.h"
#include "platform/serial_line.h"

namespace recscope::cli {

// The answer Yes of the question "処理を中止しますか？" and its message.
inline constexpr int kLinkAbortQuestion = 11100;
inline constexpr int kLinkAnswerYes = 6;

struct LinkOptions {
  std::string port;
  ComPortSettings settings;
  int timeout = 60;  // seconds of the six-byte wait
};

// The valued options of every link subcommand; a subcommand adds its own.
std::vector<std::string> LinkOptionNames();

// Reads --port, --baud, --parity, --station and --timeout. Returns 0, or the
// exit status of the usage error it reported.
int ReadLinkOptions(const ParsedArgs &parsed, const std::string &subcommand, LinkOptions &out);

// Puts the register map into the home folder when it is missing and reads it.
void LoadLinkMap();

// The command driver on the serial device, the port open with the options'
// settings and the six-byte wait bounded by --timeout; closed when it goes.
class LinkLine {
 public:
  // kLeaveClosed: for a run that opens the port itself.
  enum Opening { kOpenNow, kLeaveClosed };
  explicit LinkLine(const LinkOptions &options, Opening opening = kOpenNow);
  ~LinkLine();
  LinkLine(const LinkLine &) = delete;
  LinkLine &operator=(const LinkLine &) = delete;
  CommandDriver &driver() { return driver_; }

 private:
  SerialComLine line_;
  CommandDriver driver_;
};

// The end of a run whose six-byte wait ran past --timeout: one line on stderr
// and exit 3.
int SixByteWaitExit(int timeout);

// A failed request answered Yes: throws the failure's message (11101 to 11105).
[[noreturn]] void ThrowLinkFailure(int code);

// The end of a failed link run: no free record name or the six-byte bound exit 3
// with one line on stderr; a failed request throws its message.
int ReportLinkFailure(int code, bool noFileName, int timeout);

}  // namespace recscope::cli
