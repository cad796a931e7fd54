#pragma once
// The communication monitor without its windows: the start (the setup read
// into a new record pair, the present value map, slot 17's records), one tick
// of Timer2 (the poll, the ring, the samples and alarm changes written into the
// record pair) and the stop. The desktop program drives it from Timer2, the
// batch command from a loop of its own.
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "link/command_driver.h"
#include "link/monitor_sample.h"
#include "link/parameter_read.h"
#include "shell/init_set.h"
#include "shell/shared_state.h"

namespace recscope {

// One alarm change as the alarm file takes it: 38 bytes, time, "A", channel,
// alarm number, action and state (1 raised, 0 cleared).
std::string AlarmEventBytes(std::int32_t time, int channelNo, int alarmNo, int action, int state);

// The alarm changes from `previous` (none: every alarm cleared) to `next`, in
// channel order and within a channel by alarm number, as alarm file events.
// The action of alarm n of a channel is its AlarmKind n.
std::vector<AlarmEvent> AlarmChanges(const MonitorSample *previous, const MonitorSample &next,
                                     const std::vector<ChannelInfo> &channels);

struct MonitorHooks {
  // A failed request: the error of `code` and the question "処理を中止しますか？";
  // 6 for Yes (end the communication), anything else for No.
  std::function<int(int code)> ComErrorDialog;
  // No free record number.
  std::function<void()> NoFileName;
};

enum class MonitorTickResult {
  kSampled,  // a sample came and was written
  kMissed,   // the poll failed and the operator went on: the write index went back
  kEnd,      // the poll failed and the operator ended the communication
};

class MonitorRun {
 public:
  // The start after the open records are closed: slot 17 is made current, the
  // ring cleared, the CRC table filled, the port opened, the present value map
  // filled and the setup read into a new record pair. On success slot 17 holds
  // the channel, DI and group records read (FillSlot). False when the read gave up
  // (the caller then stops).
  bool Start(CommandDriver &driver, const ComPortSettings &settings, const RegisterMap &map,
             const std::string &folder, const MonitorHooks &hooks, SharedState &state);
  // One tick of Timer2: the write index goes on, the present values are read,
  // and a sample is stored in the ring and written, with the seconds the
  // recorder's clock skipped stepped in and every alarm change as an event.
  MonitorTickResult Tick();
  // The port and the record pair are closed.
  void Stop();
  // Slot 17 as the setup read gave it: the channel, DI and group records, the
  // record's path, in use. The trend draws the ring with these.
  void FillSlot(SharedState &state) const;
  // Slot 17 for a list window (the event list): the record being written is
  // read again up to its last sample, with its working files and its alarm
  // file; the alarm values stay those the setup read gave (the file holds alarm
  // 3's value in place of the fourth). Returns 0, or the catalogue id of the
  // refusal.
  int RefreshSlot(SharedState &state) const;

  bool running() const { return driver_ != nullptr; }
  const MonitorRing &ring() const { return ring_; }
  // The last sample stored, when there is one.
  const MonitorSample *last() const { return previous_ ? &*previous_ : nullptr; }
  const ParameterRecord &files() const { return record_; }
  const PresentValueMap &presentValues() const { return present_; }
  int samplesWritten() const { return samplesWritten_; }
  int alarmEventsWritten() const { return alarmEventsWritten_; }

 private:
  CommandDriver *driver_ = nullptr;
  MonitorHooks hooks_;
  ParameterRecord record_;
  PresentValueMap present_;
  MonitorRing ring_;
  std::optional<MonitorSample> previous_;
  int samplesWritten_ = 0;
  int alarmEventsWritten_ = 0;
};

}  // namespace recscope
