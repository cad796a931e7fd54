// recscope-cli monitor: the communication monitor without its windows. The
// setup is read into a new record pair, the present values are polled every
// 100 ms for the seconds asked and written into the pair, and the last values
// are printed as the monitor's instant value window lists them.
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include "app/cli_common.h"
#include "app/cli_link_common.h"
#include "app/program_home.h"
#include "link/monitor_run.h"
#include "link/monitor_views.h"
#include "shell/init_set.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

constexpr auto kTimer2Interval = std::chrono::milliseconds(100);

std::string CutTrailingBlanks(std::string text) {
  while (!text.empty() && (text.back() == ' ' || text.back() == '\0')) text.pop_back();
  return text;
}

int RunMonitor(const GlobalOptions &, const std::vector<std::string> &args) {
  std::vector<std::string> valued = LinkOptionNames();
  valued.push_back("--seconds");
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, valued, {}, parsed, error)) return UsageError(error);
  if (!parsed.positional.empty()) return UsageError("monitor takes no FILE");
  const std::string *secondsText = parsed.find("--seconds");
  if (!secondsText) return UsageError("monitor needs --seconds N");
  int seconds = 0;
  try {
    std::size_t used = 0;
    seconds = std::stoi(*secondsText, &used);
    if (used != secondsText->size() || seconds < 1) throw std::invalid_argument("seconds");
  } catch (const std::exception &) {
    return UsageError("--seconds takes a number of seconds above 0");
  }
  LinkOptions options;
  if (const int usage = ReadLinkOptions(parsed, "monitor", options)) return usage;

  LoadLinkMap();
  SharedState &state = Shared();
  // The run opens the port itself, as Communication start does.
  LinkLine link(options, LinkLine::kLeaveClosed);

  // Where the desktop program would ask whether to stop, the batch command
  // stops.
  int failure = 0;
  bool noName = false;
  MonitorHooks hooks;
  hooks.ComErrorDialog = [&failure](int code) {
    failure = code;
    return kLinkAnswerYes;
  };
  hooks.NoFileName = [&noName] { noName = true; };
  MonitorRun run;
  if (!run.Start(link.driver(), options.settings, Registers(), state.ProgramFolder, hooks, state)) {
    run.Stop();
    return ReportLinkFailure(failure, noName, options.timeout);
  }
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  auto next = std::chrono::steady_clock::now();
  while (std::chrono::steady_clock::now() < end) {
    if (run.Tick() == MonitorTickResult::kEnd) {
      run.Stop();
      return ReportLinkFailure(failure, noName, options.timeout);
    }
    next += kTimer2Interval;
    std::this_thread::sleep_until(next);
  }
  run.Stop();

  std::printf("%s\n", run.files().MeasurementPath.c_str());
  if (!run.last()) return kExitDone;
  const MonitorRing &ring = run.ring();
  const RecordFileInfo &record = state.Slot(kLinkSlot).Record;
  std::printf("%s\n", MonitorTimeText(ring, ring.writeIndex()).c_str());
  for (int g : GroupsWithMembers(record)) {
    std::printf(
        "%s\n",
        CutTrailingBlanks(record.Groups[static_cast<std::size_t>(g - 1)].GroupName).c_str());
    for (int member : GroupMembers(record, g))
      std::printf("%s\n",
                  InstantValueLine(MonitorCellOf(record, ring, ring.writeIndex(), member)).c_str());
  }
  return kExitDone;
}

const Registration kMonitor({
    "monitor",
    "poll the recorder's present values into a new record pair",
    "Usage: recscope-cli monitor --port DEV [--baud N] [--parity NONE|ODD|EVEN]\n"
    "                            [--station N] [--timeout SECONDS] --seconds N\n"
    "\n"
    "Runs the communication monitor on the recorder on the serial device DEV for N\n"
    "seconds, as the desktop program's Communication start does with 'Real time\n"
    "monitor' checked: the setup is read into a new record pair S<n>.FDT and\n"
    "A<n>.FDT in the home folder (as param-read does), then the present values are\n"
    "polled every 100 ms; each sample goes into the measurement file, seconds the\n"
    "recorder's clock skipped stepped in with the sample before them, and each\n"
    "change of an alarm into the alarm file.\n"
    "\n"
    "Prints the measurement file's path, the time of the last sample, and then for\n"
    "each group with members its name and one line a member as the instant value\n"
    "window lists it: label (CH01, DI01), tag, value, unit, separated by tabs.\n"
    "\n"
    "The options of the port are those of param-read. Where the desktop program\n"
    "asks '処理を中止しますか？' after a failed request, the batch command answers Yes\n"
    "and exits 2 with the failure's message (11101, 11102 or 11105); a reply that\n"
    "stops at exactly six bytes ends after --timeout SECONDS (default 60) with\n"
    "exit 3.\n",
    RunMonitor,
});

}  // namespace
}  // namespace recscope::cli
