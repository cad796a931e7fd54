#pragma once
// The settings of the automatic fetch in VIEWERCOM.INI: the cycle and the auto
// state in section FTP, and one section FTP_<n> for each of the ten recorders;
// the due time of the next run; and the local folders the files land in.
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace recscope {

inline constexpr int kFetchRecorders = 10;

// The cycle used when FTP / CYCLE is missing: no days, one hour.
inline constexpr const char *kDefaultFetchCycle = "00:01";

// One recorder's section FTP_<n>. Missing keys read as empty texts.
struct FetchRecorder {
  std::string IP;
  std::string USER;
  std::string PASS;
  bool ON = false;
};

// Recorders 1 to 10 at index 0 to 9.
using FetchRecorders = std::array<FetchRecorder, kFetchRecorders>;

FetchRecorder ReadFetchRecorder(const std::string &iniFile, int recorderNo);
FetchRecorders ReadFetchRecorders(const std::string &iniFile);

// Days and hours of the cycle.
struct FetchCycle {
  int Days = 0;
  int Hours = 0;
};

// "dd:hh": each number padded to two digits with a "0".
std::string CycleText(const FetchCycle &cycle);

// The cycle of a CYCLE value: the text before the colon is the days, the text
// behind it the hours. "ERROR" (the key is missing) gives the default cycle; a
// part that is no number counts as 0.
FetchCycle ParseCycle(const std::string &text);

// The time one cycle after `now`: the days added, then the hours.
std::int64_t AddCycle(std::int64_t now, const FetchCycle &cycle);

// The check of cmdStart over the rows whose check is set: 10858 for a checked row
// without a user name, 10859 for a cycle of 0 days and 0 hours; 0 when the start
// may go on.
int CheckFetchStart(const FetchRecorders &recorders, const FetchCycle &cycle);

// Step 3 of the start: IP, USER, PASS and ON of all ten recorders, CYCLE and AUTO.
void WriteFetchSettings(const std::string &iniFile, const FetchRecorders &recorders,
                        const FetchCycle &cycle, bool autoOn);

// The four parts of a dotted address, each 0 to 255 and written with one to
// three digits; nothing for any other text.
std::optional<std::array<int, 4>> ParseRecorderAddress(const std::string &ip);

// "IP" and the four parts padded to three digits: 192.168.0.5 gives
// "IP192168000005". Empty for a text that is no dotted address.
std::string RecorderFolderName(const std::string &ip);

// The due time of the automatic fetch, stepped by the main window's timer. The
// clock is given so that the schedule can be run on any time.
class FetchTimer {
 public:
  explicit FetchTimer(std::function<std::int64_t()> clock);

  // cmdStart: the next time is shown one cycle from now until the next tick
  // asks whether to fetch at once.
  void Start(const std::string &cycleText);

  // One tick of the timer with the present CYCLE value. On the first tick after
  // a start `askNow` is called: true fetches now, false one cycle from now.
  // Gives true when a run is due; while `running` a tick does nothing.
  bool Tick(const std::string &cycleText, const std::function<bool()> &askNow, bool running);

  // The end of a run: the next time is one cycle from now.
  void RunEnded(const std::string &cycleText);

  bool FirstTick() const { return firstTick_; }
  std::int64_t NextFetchTime() const { return next_; }
  std::int64_t Now() const { return clock_(); }

 private:
  std::function<std::int64_t()> clock_;
  bool firstTick_ = false;
  std::int64_t next_ = 0;
};

}  // namespace recscope
