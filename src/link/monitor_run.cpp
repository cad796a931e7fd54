#include "link/monitor_run.h"

#include <cstdio>

#include "record/open_record.h"

namespace recscope {

namespace {

constexpr int kAnswerYes = 6;
constexpr int kAlarmEventBytes = 38;
constexpr int kAlarmLevels = 4;

void Write(std::FILE *file, const std::string &bytes) {
  if (file) std::fwrite(bytes.data(), 1, bytes.size(), file);
}

}  // namespace

std::string AlarmEventBytes(std::int32_t time, int channelNo, int alarmNo, int action, int state) {
  std::string out(kAlarmEventBytes, '\0');
  const auto t = static_cast<std::uint32_t>(time);
  for (int i = 0; i < 4; ++i)
    out[static_cast<std::size_t>(i)] = static_cast<char>((t >> (8 * i)) & 0xFF);
  out[4] = 'A';
  out[5] = static_cast<char>(channelNo & 0xFF);
  out[6] = static_cast<char>(alarmNo & 0xFF);
  out[7] = static_cast<char>(action & 0xFF);
  out[8] = static_cast<char>(state & 0xFF);
  return out;
}

std::vector<AlarmEvent> AlarmChanges(const MonitorSample *previous, const MonitorSample &next,
                                     const std::vector<ChannelInfo> &channels) {
  std::vector<AlarmEvent> events;
  for (int c = 0; c < kMonitorChannels; ++c) {
    for (int level = 0; level < kAlarmLevels; ++level) {
      const auto l = static_cast<std::size_t>(level);
      const auto ch = static_cast<std::size_t>(c);
      const int was = previous ? previous->Alarms[l][ch] : 0;
      const int now = next.Alarms[l][ch];
      if (was == now) continue;
      AlarmEvent event;
      event.Time = next.Time;
      event.ChannelNo = static_cast<std::int16_t>(c + 1);
      event.AlarmNo = static_cast<std::int16_t>(level + 1);
      event.AlarmAction = ch < channels.size() ? channels[ch].AlarmKind[l] : 0;
      event.AlarmState = static_cast<std::int16_t>(now);
      events.push_back(event);
    }
  }
  return events;
}

bool MonitorRun::Start(CommandDriver &driver, const ComPortSettings &settings,
                       const RegisterMap &map, const std::string &folder, const MonitorHooks &hooks,
                       SharedState &state) {
  Stop();
  state.CurrentFile = static_cast<std::int16_t>(kLinkSlot);
  ring_ = MonitorRing();
  previous_.reset();
  samplesWritten_ = 0;
  alarmEventsWritten_ = 0;
  hooks_ = hooks;
  CrcTableInit(driver);
  ComPortOpen(driver, settings);
  present_ = FillPresentValueMap(map);
  ParameterReadHooks readHooks;
  readHooks.ComErrorDialog = hooks.ComErrorDialog;
  readHooks.NoFileName = hooks.NoFileName;
  if (!ComParameterRead(driver, map, folder, readHooks, record_)) {
    ComPortClose(driver);
    return false;
  }
  FillSlot(state);
  driver_ = &driver;
  return true;
}

void MonitorRun::FillSlot(SharedState &state) const {
  // The monitor's own record: 30 analog and 5 digital channels, the groups read.
  RecordSlot &slot = state.Slot(kLinkSlot);
  slot.Record.Channels = record_.Record.Channels;
  slot.Record.Dis = record_.Record.Dis;
  slot.Record.Groups = record_.Record.Groups;
  slot.Record.AnalogCount = static_cast<std::int16_t>(kMonitorChannels);
  slot.Record.DiCount = static_cast<std::int16_t>(kMonitorDis);
  slot.Record.GroupCount = record_.Record.GroupCount;
  slot.Record.FilePath = record_.MeasurementPath;
  slot.Record.InUse = -1;
}

MonitorTickResult MonitorRun::Tick() {
  if (!driver_) return MonitorTickResult::kEnd;
  ring_.Advance();
  const int result = ComTransact(*driver_, kComReadInput, present_.Address, present_.Words, 3, 10,
                                 present_.ReplyLength);
  if (result != kComSuccess) {
    if (driver_->Line && driver_->Line->IsOpen() && hooks_.ComErrorDialog &&
        hooks_.ComErrorDialog(result) == kAnswerYes)
      return MonitorTickResult::kEnd;
    ring_.StepBack();
    return MonitorTickResult::kMissed;
  }
  const MonitorSample sample = TakeSample(driver_->Registers, present_);
  for (const MonitorSample &s : SamplesToWrite(last(), sample)) {
    Write(record_.Measurement, SampleRecordBytes(s));
    ++samplesWritten_;
  }
  for (const AlarmEvent &e : AlarmChanges(last(), sample, record_.Record.Channels)) {
    Write(record_.Alarm,
          AlarmEventBytes(e.Time, e.ChannelNo, e.AlarmNo, e.AlarmAction, e.AlarmState));
    ++alarmEventsWritten_;
  }
  if (record_.Measurement) std::fflush(record_.Measurement);
  if (record_.Alarm) std::fflush(record_.Alarm);
  ring_.Store(sample, record_.Record.Channels);
  previous_ = sample;
  return MonitorTickResult::kSampled;
}

void MonitorRun::Stop() {
  if (driver_) ComPortClose(*driver_);
  driver_ = nullptr;
  record_.Close();
}

int MonitorRun::RefreshSlot(SharedState &state) const {
  const int id = ReadRecordIntoSlot(state, record_.MeasurementPath, kLinkSlot);
  if (id != 0) return id;
  std::vector<ChannelInfo> &channels = state.Slot(kLinkSlot).Record.Channels;
  for (std::size_t c = 0; c < channels.size() && c < record_.Record.Channels.size(); ++c)
    channels[c].AlarmValue = record_.Record.Channels[c].AlarmValue;
  return 0;
}

}  // namespace recscope
