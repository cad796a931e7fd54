#pragma once
// What every subcommand of recscope-cli shares: options, exit statuses and the
// one-line report of a catalogue message.
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace recscope::cli {

enum ExitStatus { kExitDone = 0, kExitUsage = 1, kExitRefused = 2, kExitOther = 3 };

struct GlobalOptions {
  std::string home;
  std::string decimalChar;  // empty: from the locale
  int dateFormat = 0;       // 0: from VIEWERCOM.INI, else 1
};

struct Subcommand {
  const char *name;
  const char *summary;
  const char *help;
  std::function<int(const GlobalOptions &, const std::vector<std::string> &)> run;
};

// Subcommands register themselves with a static Registration in their own file.
std::vector<Subcommand> &Subcommands();
struct Registration {
  explicit Registration(Subcommand sub) { Subcommands().push_back(std::move(sub)); }
};

// A refusal of the system with its catalogue message.
struct CatalogueError : std::runtime_error {
  CatalogueError(int messageId, const std::string &messageText)
      : std::runtime_error(messageText), id(messageId), text(messageText) {}
  int id;
  std::string text;
};

int UsageError(const std::string &what);
int ReportCatalogueError(int id, const std::string &text);

// Sets the program folder, the separators and the date format for the command.
void PrepareShell(const GlobalOptions &global);

// Reads a time given on the command line: whole seconds or "yyyy/mm/dd hh:mm:ss".
// Throws std::invalid_argument when it is neither.
long long ParseCliTime(const std::string &text);

// Splits "--name value" pairs out of `args`; everything else is positional.
struct ParsedArgs {
  std::vector<std::string> positional;
  std::vector<std::pair<std::string, std::string>> options;
  const std::string *find(const std::string &name) const;
};
// `valued` lists the options that take a value, `flags` those that do not.
// Returns false (with `error` set) on an unknown option or a missing value.
bool ParseArgs(const std::vector<std::string> &args, const std::vector<std::string> &valued,
               const std::vector<std::string> &flags, ParsedArgs &out, std::string &error);

}  // namespace recscope::cli
