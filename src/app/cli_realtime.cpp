// recscope-cli realtime: the real-time acquisition without windows, on the same
// driver and timers as the desktop program, for a number of seconds. The ring
// files stay in the home folder, so a later run goes on with them.
#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "realtime/real_logging.h"
#include "realtime/realtime_acquisition.h"
#include "realtime/realtime_link.h"
#include "realtime/realtime_settings.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/home_folder.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

constexpr int kLinkError = 19751;
constexpr int kFileError = 11107;

bool WholeNumber(const std::string &text, int &value) {
  if (text.empty() || text.size() > 6) return false;
  for (char c : text)
    if (c < '0' || c > '9') return false;
  value = std::stoi(text);
  return true;
}

int RunRealtime(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--tcp", "--port", "--station", "--cycle", "--seconds"}, {"--analyze"},
                 parsed, error))
    return UsageError(error);
  if (!parsed.positional.empty()) return UsageError("realtime takes no FILE");
  const std::string *tcp = parsed.find("--tcp");
  const std::string *port = parsed.find("--port");
  if ((tcp != nullptr) == (port != nullptr))
    return UsageError("realtime needs either --tcp HOST[:PORT] or --port DEV");
  const std::string *secondsText = parsed.find("--seconds");
  int seconds = 0;
  if (!secondsText || !WholeNumber(*secondsText, seconds) || seconds < 1)
    return UsageError("realtime needs --seconds N, N above 0");

  SharedState &shared = Shared();
  RealtimeState &state = shared.Realtime;
  const std::string ini = ViewerComIniPath(shared.ProgramFolder);
  ReadRealSettings(state.Settings, ini);
  if (const std::string *station = parsed.find("--station")) {
    int n = 0;
    if (!WholeNumber(*station, n) || n > 255) return UsageError("--station takes 0 to 255");
    state.Settings.Station = n;
  }
  if (const std::string *cycle = parsed.find("--cycle")) {
    int s = 0;
    int index = -1;
    if (WholeNumber(*cycle, s))
      for (std::size_t i = 0; i < kRealCycleSeconds.size(); ++i)
        if (kRealCycleSeconds[i] == s) index = static_cast<int>(i);
    if (index < 0) return UsageError("--cycle takes 1, 2, 3, 5, 10, 20, 30 or 60");
    state.Settings.Cycle = index;
  }
  int tcpPort = kModbusTcpPort;
  if (tcp) {
    state.Settings.Communication = 0;
    std::string host = *tcp;
    if (const std::size_t colon = host.rfind(':'); colon != std::string::npos) {
      if (!WholeNumber(host.substr(colon + 1), tcpPort) || tcpPort < 1 || tcpPort > 65535)
        return UsageError("--tcp HOST[:PORT]: the port is a number from 1 to 65535");
      host.resize(colon);
    }
    if (host.empty()) return UsageError("--tcp HOST[:PORT] needs a host");
    state.Settings.Ip = host;
  } else {
    state.Settings.Communication = 1;
  }

  // As the trend window's load does: the setup of the last run, its cycle
  // from the CYCLE key, for the comparison before the first sample.
  RealSettings last;
  ReadRealSettings(last, ini);
  ReadRealSetFile(state, RealSetFilePath(shared.ProgramFolder), last.CycleSeconds());

  RealLinkTimers timers(state, shared.ProgramFolder);
  timers.driver().TcpPort = tcpPort;
  if (port) timers.setSerialDevice(AbsolutePath(*port));
  int samples = 0;
  timers.driver().OnGroupDecoded = [&samples](const RealGroupOutcome &outcome) {
    if (outcome.Sampled) ++samples;
  };
  timers.driver().Start();
  QElapsedTimer clock;
  clock.start();
  while (clock.elapsed() < 1000LL * seconds)
    QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  timers.driver().RealLinkStop();

  if (state.Step < 2) {
    std::printf("state %s\nfailures %d\n", GetMessageText(kLinkError).c_str(),
                timers.driver().FailCount);
    throw CatalogueError(kLinkError, GetMessageText(kLinkError));
  }
  std::printf("model %s\nserial %s\nversion %s\nchannels %d\ngroups %d\ncycle %d\n",
              state.ModelText.c_str(), state.SerialText.c_str(), state.VersionText.c_str(),
              state.ChannelCount, state.GroupCount, state.CycleSeconds);
  std::printf("state %s\nfailures %d\nsamples %d\n",
              state.StateMessageId == 0 ? "" : GetMessageText(state.StateMessageId).c_str(),
              timers.driver().FailCount, samples);
  const std::int32_t slot = state.Ring.LastWritten;
  if (slot > 0) {
    std::printf("last %s slot %d\nvalues", RecordTimeText(state.Ring.Time(slot)).c_str(), slot);
    for (int c = 0; c < state.ChannelCount; ++c) std::printf(" %d", state.Ring.Value(slot, c));
    std::printf("\n");
  }
  if (parsed.find("--analyze")) {
    // As cmdAnalyze does: the whole ring as SR00000.FDT in the home folder.
    const std::string record = RealRecordWrite(shared.ProgramFolder, state);
    if (record.empty()) throw CatalogueError(kFileError, GetMessageText(kFileError));
    std::printf("%s\n", record.c_str());
  }
  return samples > 0 ? kExitDone : kExitRefused;
}

const Registration kRealtime({
    "realtime",
    "run the real-time acquisition for some seconds",
    "Usage: recscope-cli realtime (--tcp HOST[:PORT] | --port DEV) [--station N]\n"
    "                             [--cycle S] --seconds N [--analyze]\n"
    "\n"
    "Runs the real-time acquisition without windows for N seconds, on the same\n"
    "driver as the desktop program's real-time trend: over Modbus TCP to HOST\n"
    "(port 502 unless PORT is given) or over Modbus RTU on the serial device DEV.\n"
    "Station, port settings and cycle come from section REALTIME of VIEWERCOM.INI in\n"
    "the home folder (its defaults when the keys are missing); --station (0 to 255)\n"
    "and --cycle (1, 2, 3, 5, 10, 20, 30 or 60 seconds) take their place for this\n"
    "run. The ring files RealSetFile and RealTimeFile stay in the home folder: a\n"
    "later run with the same recorder and cycle goes on with their samples, a\n"
    "changed one starts them anew. The CYCLE key is written when the recorder has\n"
    "been read.\n"
    "\n"
    "Prints, one a line: model, serial, version, channels, groups, cycle (seconds),\n"
    "state (the status text), failures (failed blocks), samples (written this run),\n"
    "and for the last written slot 'last yyyy/mm/dd hh:mm:ss slot N' and its values.\n"
    "With --analyze the whole ring is then written as SR00000.FDT in the home folder\n"
    "(oldest first, 86400 records a cycle apart, blanks as 0; FR00000.FDT deleted),\n"
    "as the real-time trend's Analyze does, and its path is printed on a line of\n"
    "its own; 'error 11107' when it cannot be written.\n"
    "A failed link never stops the run; it is counted. Exit 0 when samples were\n"
    "written; 2 when none were (with 'error 19751: 通信エラー' when the recorder's\n"
    "setup was never read); 1 on a usage error.\n",
    RunRealtime,
});

}  // namespace
}  // namespace recscope::cli
