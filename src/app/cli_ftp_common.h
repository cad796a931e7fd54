#pragma once
// What the FTP subcommands share: the connection options, the recorder's folder
// found by the layout test, and the names of a refusal on one line.
#include <string>
#include <vector>

#include "app/cli_common.h"
#include "ftp/ftp_browser.h"
#include "shell/catalogue.h"

namespace recscope::cli {

struct FtpTarget {
  FtpEndpoint endpoint;
  std::string folder;  // the folder of the option on the recorder
};

// HOST is the first positional argument; --user and --password are needed,
// --port is 21 unless given. Returns false with `error` set on a usage error.
inline bool ReadFtpTarget(const ParsedArgs &parsed, FtpTarget &target, std::string &error) {
  if (parsed.positional.empty()) {
    error = "HOST is missing";
    return false;
  }
  const std::string *user = parsed.find("--user");
  const std::string *password = parsed.find("--password");
  if (!user || !password) {
    error = "--user and --password are needed";
    return false;
  }
  target.endpoint.Host = parsed.positional[0];
  target.endpoint.User = *user;
  target.endpoint.Password = *password;
  if (const std::string *port = parsed.find("--port")) {
    char *end = nullptr;
    long value = std::strtol(port->c_str(), &end, 10);
    if (port->empty() || *end != '\0' || value < 1 || value > 65535) {
      error = "--port takes a number from 1 to 65535";
      return false;
    }
    target.endpoint.Port = static_cast<int>(value);
  }
  ApplyTimeoutFromEnvironment(target.endpoint);
  return true;
}

// The layout test as the browser's connect runs it; the folder of the option.
// Throws the session's catalogue message when the recorder does not answer.
inline void FindFtpFolder(FtpTarget &target, bool totalize) {
  FtpStatus status = FtpStatus::NoConnect;
  int count = DetectLayout(target.endpoint, &status);
  if (count < 0) {
    int id = MessageForStatus(status);
    throw CatalogueError(id, GetMessageText(id));
  }
  target.folder = OptionFolder(RecordFolderForLayout(count), totalize);
}

// A list message with its names on one line: each name followed by a blank.
inline CatalogueError FtpNamesError(int id, const char *word,
                                    const std::vector<std::string> &names) {
  std::string text;
  for (const std::string &name : names) text += name + " ";
  return CatalogueError(id, GetMessageText(id, word, text));
}

}  // namespace recscope::cli
