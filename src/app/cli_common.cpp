#include "app/cli_common.h"

#include "app/program_home.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "shell/civil_time.h"
#include "shell/home_folder.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

namespace recscope::cli {

std::vector<Subcommand> &Subcommands() {
  static std::vector<Subcommand> list;
  return list;
}

int UsageError(const std::string &what) {
  std::fprintf(stderr, "recscope-cli: %s (see recscope-cli --help)\n", what.c_str());
  return kExitUsage;
}

int ReportCatalogueError(int id, const std::string &text) {
  std::fprintf(stderr, "error %d: %s\n", id, text.c_str());
  return kExitRefused;
}

void PrepareShell(const GlobalOptions &global) {
  SharedState &state = Shared();
  state.ProgramFolder = ProgramHome(global.home);
  StartSharedState(state, global.decimalChar);
  // Without --date-format the command uses the operator's choice in the settings.
  if (global.dateFormat > 0) state.DateFormatNo = static_cast<std::uint8_t>(global.dateFormat);
}

long long ParseCliTime(const std::string &text) {
  if (!text.empty() &&
      std::all_of(text.begin() + (text[0] == '-' ? 1 : 0), text.end(),
                  [](char c) { return c >= '0' && c <= '9'; }) &&
      text != "-") {
    return std::stoll(text);
  }
  auto t = ParseRecordTime(text);
  if (!t) throw std::invalid_argument("not a time: " + text);
  return *t;
}

const std::string *ParsedArgs::find(const std::string &name) const {
  const std::string *found = nullptr;
  for (const auto &[key, value] : options)
    if (key == name) found = &value;
  return found;
}

bool ParseArgs(const std::vector<std::string> &args, const std::vector<std::string> &valued,
               const std::vector<std::string> &flags, ParsedArgs &out, std::string &error) {
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string &a = args[i];
    if (a.rfind("--", 0) != 0 || a == "--") {
      out.positional.push_back(a);
      continue;
    }
    if (std::find(flags.begin(), flags.end(), a) != flags.end()) {
      out.options.emplace_back(a, "");
      continue;
    }
    if (std::find(valued.begin(), valued.end(), a) == valued.end()) {
      error = "unknown option " + a;
      return false;
    }
    if (i + 1 >= args.size()) {
      error = a + " needs a value";
      return false;
    }
    out.options.emplace_back(a, args[++i]);
  }
  return true;
}

}  // namespace recscope::cli
