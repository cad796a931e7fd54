#pragma once
// What the recorder link's subcommands share: the serial device and its
// settings (--port, --baud, --parity, --station, --timeout), the command driver
// on it, and the answer of a failed link: where the desktop program asks
// "処理を中止しますか？", the batch command answers Yes.
#include <string>
#include <vector>

#include "app/cli_common.h"
#include "link/command_driver.h"
#include "platform/serial_line.h"

namespace recscope::cli {

// The options that name and set the serial device.
const std::vector<std::string> &LinkPortOptions();

// The serial device with the command driver on it; the six-byte wait bounded
// by --timeout (default 60 seconds).
struct LinkPort {
  ComPortSettings Settings;
  int Timeout = 60;
  SerialComLine Line;
  CommandDriver Driver;
};

// Reads the options of `parsed` into `port` and opens the device. Empty when
// they are good, else the text of the usage error.
std::string OpenLinkPort(const ParsedArgs &parsed, const std::string &command, LinkPort &port);

// How a link run ended when it did not succeed: the result code the question
// was asked for, or no free record number.
struct LinkFailure {
  int Code = 0;
  bool NoFileName = false;
  // The answer the batch command gives to the question: Yes, with the code kept.
  int Answer(int code) {
    Code = code;
    return 6;
  }
};

// The exit of a failed link run: no free name and the six-byte bound exit 3
// with one line on stderr; a failed request throws its catalogue error (exit 2).
int ReportLinkFailure(const LinkFailure &failure, const LinkPort &port);

}  // namespace recscope::cli
