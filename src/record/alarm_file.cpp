#include "record/alarm_file.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "record/number_field.h"
#include "record/record_fields.h"
#include "record/record_writer.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

constexpr std::size_t kHeaderSize = 102;
constexpr std::size_t kBinaryEventsAt = 104;
constexpr std::size_t kBinaryEventSize = 38;
constexpr std::size_t kTextEventSize = 59;

void ReadHeader(std::string_view b, AlarmFileInfo &alarms) {
  alarms.FileNameText = TextAt(b, 0, 32);
  alarms.ModelText = TextAt(b, 34, 32);
  alarms.SerialText = TextAt(b, 68, 20);
  alarms.VersionText = TextAt(b, 88, 12);
}

void AddAlarm(AlarmFileInfo &alarms, const AlarmEvent &event) {
  if (alarms.Alarms.size() < static_cast<std::size_t>(kMaxEventsOfKind))
    alarms.Alarms.push_back(event);
}

void AddMessage(AlarmFileInfo &alarms, const MessageEvent &event) {
  if (alarms.Messages.size() < static_cast<std::size_t>(kMaxEventsOfKind))
    alarms.Messages.push_back(event);
}

bool ReadBinaryEvents(std::string_view b, AlarmFileInfo &alarms) {
  if (b.size() >= kBinaryEventsAt && I16At(b, kHeaderSize) > 0) return false;
  if (b.size() < kBinaryEventsAt) return true;
  const std::size_t count = (b.size() - kBinaryEventsAt) / kBinaryEventSize;
  for (std::size_t i = 0; i < count; ++i) {
    std::string_view e = b.substr(kBinaryEventsAt + i * kBinaryEventSize, kBinaryEventSize);
    const std::int32_t time = I32At(e, 0);
    if (U8At(e, 4) == 'A') {
      AlarmEvent a;
      a.Time = time;
      a.ChannelNo = U8At(e, 5);
      a.AlarmNo = U8At(e, 6);
      a.AlarmAction = U8At(e, 7);
      a.AlarmState = U8At(e, 8);
      AddAlarm(alarms, a);
    } else if (U8At(e, 4) == 'M') {
      MessageEvent m;
      m.Time = time;
      std::string_view text = e.substr(5, 32);
      m.Text = TextAt(text, 0, std::min(text.find('\0'), text.size()));
      m.MessageColor = U8At(e, 37);
      AddMessage(alarms, m);
    } else {
      return false;
    }
  }
  return true;
}

// The leading digits of a text, as a loose number read does: "5\r" is 5.
std::int16_t LeadingNumber(std::string_view text) {
  int value = 0;
  std::size_t i = 0;
  while (i < text.size() && text[i] == ' ') ++i;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
    value = value * 10 + text[i] - '0';
  return static_cast<std::int16_t>(value);
}

bool ReadTextEvents(std::string_view b, AlarmFileInfo &alarms) {
  const std::size_t count = (b.size() - kHeaderSize) / kTextEventSize;
  for (std::size_t i = 0; i < count; ++i) {
    std::string_view e = b.substr(kHeaderSize + i * kTextEventSize, kTextEventSize);
    std::optional<std::int64_t> time = ParseRecordTime(e.substr(0, 19));
    if (!time || *time < INT32_MIN || *time > INT32_MAX) return false;
    if (e[20] == 'A') {
      std::optional<std::int32_t> channel = ReadIntegerField(e.substr(22, 2));
      std::optional<std::int32_t> number = ReadIntegerField(e.substr(25, 1));
      std::optional<std::int32_t> action = ReadIntegerField(e.substr(27, 2));
      std::optional<std::int32_t> state = ReadIntegerField(e.substr(30, 1));
      if (!channel || !number || !action || !state) return false;
      AlarmEvent a;
      a.Time = static_cast<std::int32_t>(*time);
      a.ChannelNo = static_cast<std::int16_t>(*channel);
      a.AlarmNo = static_cast<std::int16_t>(*number);
      a.AlarmAction = static_cast<std::int16_t>(*action);
      a.AlarmState = static_cast<std::int16_t>(*state);
      AddAlarm(alarms, a);
    } else if (e[20] == 'M') {
      MessageEvent m;
      m.Time = static_cast<std::int32_t>(*time);
      m.Text = TextAt(e, 22, 32);
      // The colour is taken from the two characters at 56 and 57: the ones
      // digit and the CR. The tens digit is never seen.
      m.MessageColor = LeadingNumber(e.substr(56, 2));
      AddMessage(alarms, m);
    } else {
      return false;
    }
  }
  return true;
}

std::string BinaryEvent(const AlarmEvent *a, const MessageEvent *m) {
  std::string e;
  PutI32(e, a ? a->Time : m->Time);
  if (a) {
    PutU8(e, 'A');
    PutU8(e, a->ChannelNo);
    PutU8(e, a->AlarmNo);
    PutU8(e, a->AlarmAction);
    PutU8(e, a->AlarmState);
    e.append(29, '\0');
  } else {
    PutU8(e, 'M');
    std::string text = Utf8ToCp932Cut(m->Text, 32);
    text.resize(32, '\0');
    e += text;
    PutU8(e, m->MessageColor);
  }
  return e;
}

std::string TextEvent(const AlarmEvent *a, const MessageEvent *m) {
  std::string e = RecordTimeText(a ? a->Time : m->Time);
  if (a) {
    e += ",A," + ZeroNumber(a->ChannelNo, 2) + "," + std::to_string(a->AlarmNo % 10) + "," +
         ZeroNumber(a->AlarmAction, 2) + "," + std::to_string(a->AlarmState % 10);
    e += std::string(26, ' ');
  } else {
    e += ",M," + FixedCp932(m->Text, 32) + "," + ZeroNumber(m->MessageColor % 100, 2);
  }
  return e + "\r\n";
}

}  // namespace

bool ReadAlarmBytes(std::string_view bytes, bool binary, AlarmFileInfo &alarms) {
  alarms.Alarms.clear();
  alarms.Messages.clear();
  alarms.AlarmCount = 0;
  alarms.MessageCount = 0;
  if (bytes.size() < kHeaderSize) return false;
  ReadHeader(bytes, alarms);
  const bool ok = binary ? ReadBinaryEvents(bytes, alarms) : ReadTextEvents(bytes, alarms);
  alarms.AlarmCount = static_cast<std::int32_t>(alarms.Alarms.size());
  alarms.MessageCount = static_cast<std::int32_t>(alarms.Messages.size());
  return ok;
}

bool ReadAlarmFile(const std::string &path, bool binary, AlarmFileInfo &alarms) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  return ReadAlarmBytes(bytes, binary, alarms);
}

std::string AlarmFileBytes(const AlarmFileInfo &alarms, bool binary) {
  std::string out;
  out += FixedCp932(alarms.FileNameText, 32) + "\r\n";
  out += FixedCp932(alarms.ModelText, 32) + "\r\n";
  out += FixedCp932(alarms.SerialText, 20);
  out += FixedCp932(alarms.VersionText, 12) + "\r\n";
  if (binary) PutI16(out, 0);
  std::size_t a = 0, m = 0;
  while (a < alarms.Alarms.size() || m < alarms.Messages.size()) {
    const bool takeAlarm =
        m >= alarms.Messages.size() ||
        (a < alarms.Alarms.size() && alarms.Alarms[a].Time <= alarms.Messages[m].Time);
    const AlarmEvent *ae = takeAlarm ? &alarms.Alarms[a++] : nullptr;
    const MessageEvent *me = takeAlarm ? nullptr : &alarms.Messages[m++];
    out += binary ? BinaryEvent(ae, me) : TextEvent(ae, me);
  }
  return out;
}

bool WriteAlarmFile(const std::string &path, const AlarmFileInfo &alarms, bool binary) {
  return WriteWholeFile(path, AlarmFileBytes(alarms, binary));
}

}  // namespace recscope
