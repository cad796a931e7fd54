#pragma once
// One run of the automatic fetch: every recorder of FTP_1 to FTP_10 whose ON is 1
// is asked for its new record files (with their alarm twins) and totalize files,
// which land in the recorder's own folder below the program folder. Each event
// goes to the operation log. Plain C++: the window runs it on a worker thread and
// the batch command runs it as it stands.
#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

#include "ftp/auto_fetch_settings.h"
#include "ftp/ftp_client.h"

namespace recscope {

// What a run tells its caller as it goes. Each is called on the thread of the run.
struct FetchRunHooks {
  // A line has been added to the operation log (the message, without the time).
  std::function<void(const std::string &message)> Logged;
  // Recorder n (1 to 10) has a new status text ("OK", "NG" or one blank).
  std::function<void(int recorderNo, const std::string &status)> Status;
  // The progress text of the folder under way.
  std::function<void(const std::string &text)> Progress;
};

struct FetchRunOptions {
  std::string ProgramFolder;  // VIEWERCOM.INI is read here, LogMsg.txt and the folders written
  int Port = 21;
  long ConnectTimeout = 10;
  long ReplyTimeout = 15;
  long StallTimeout = 20;
  // The stop of the run (AutoStop): looked at before each file and between steps;
  // a transfer under way is cut when it is set.
  const std::atomic<bool> *Stop = nullptr;
  // The clock of the list times; the computer's local time when empty.
  std::function<std::int64_t()> Clock;
};

struct FetchRunResult {
  bool AnyFailed = false;  // some recorder or file failed: the status "通信エラー"
  bool Stopped = false;    // the run ended on a stop
  int Fetched = 0;         // files written, alarm twins included
  std::array<std::string, kFetchRecorders> RecorderStatus;
};

// The local folder of a recorder: the program folder and "IP" with the four
// parts of the address; empty when the address is no dotted address.
std::string RecorderFolder(const std::string &programFolder, const std::string &ip);

// Whether `name` stands in `folder` as a plain file of exactly `size` bytes.
bool LocalFilePresent(const std::string &folder, const std::string &name, double size);

// The progress text: the text of 10804 or 10805, "No." and the recorder's number,
// a blank, and the position "/" the count.
std::string FetchProgressText(bool totalize, int recorderNo, int position, int count);

// The FTP port of the recorders: 21, or for tests the number in the environment
// variable RECSCOPE_FTP_PORT.
int FtpPortFromEnvironment();

// One run over the ten recorders, logged from 10850 to 10851.
FetchRunResult RunFetchCycle(const FetchRunOptions &options, const FetchRunHooks &hooks = {});

}  // namespace recscope
