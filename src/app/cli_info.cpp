// recscope-cli info: opens a measurement file as the desktop program does and
// prints what the open put in memory, as one JSON object.
#include <charconv>
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "record/open_record.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

// A small writer of JSON with keys in the order they are added.
class Json {
 public:
  std::string text;

  void Open(char bracket) {
    Separate();
    text += bracket;
    fresh_ = true;
    ++depth_;
  }
  void Close(char bracket) {
    --depth_;
    if (!fresh_) NewLine();
    text += bracket;
    fresh_ = false;
  }
  void Key(const char *name) {
    Separate();
    Quote(name);
    text += ": ";
    keyed_ = true;
  }
  void Int(long long value) {
    Separate();
    text += std::to_string(value);
  }
  void Double(double value) {
    Separate();
    char buffer[32];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    text.append(buffer, result.ptr);
  }
  void Bool(bool value) {
    Separate();
    text += value ? "true" : "false";
  }
  void String(const std::string &value) {
    Separate();
    Quote(value);
  }
  template <typename T>
  void IntArray(const T &values) {
    Open('[');
    for (auto v : values) Int(v);
    Close(']');
  }

 private:
  void NewLine() {
    text += '\n';
    text.append(static_cast<std::size_t>(2 * depth_), ' ');
  }
  // Puts the comma and line break in front of a value, except right after a key.
  void Separate() {
    if (keyed_) {
      keyed_ = false;
      return;
    }
    if (depth_ == 0) return;
    if (!fresh_) text += ',';
    NewLine();
    fresh_ = false;
  }
  void Quote(const std::string &value) {
    text += '"';
    for (unsigned char c : value) {
      if (c == '"' || c == '\\') {
        text += '\\';
        text += static_cast<char>(c);
      } else if (c < 0x20) {
        char buffer[8];
        std::snprintf(buffer, sizeof buffer, "\\u%04x", c);
        text += buffer;
      } else {
        text += static_cast<char>(c);
      }
    }
    text += '"';
  }
  int depth_ = 0;
  bool fresh_ = false;
  bool keyed_ = false;
};

void FileFields(Json &j, const RecordFileInfo &info, std::int32_t period) {
  j.Key("FilePath"), j.String(info.FilePath);
  j.Key("FileFormat"), j.Int(info.FileFormat);
  j.Key("FileLength"), j.Int(info.FileLength);
  j.Key("FileNameText"), j.String(info.FileNameText);
  j.Key("ModelText"), j.String(info.ModelText);
  j.Key("SerialText"), j.String(info.SerialText);
  j.Key("VersionText"), j.String(info.VersionText);
  j.Key("AnalogCount"), j.Int(info.AnalogCount);
  j.Key("DiCount"), j.Int(info.DiCount);
  j.Key("SamplingCode"), j.Int(info.SamplingCode);
  j.Key("SamplePeriod"), j.Int(period);
  j.Key("GroupCount"), j.Int(info.GroupCount);
  j.Key("ChannelTotal"), j.Int(info.ChannelTotal);
  j.Key("DataStart"), j.Int(info.DataStart);
  j.Key("RecordLength"), j.Int(info.RecordLength);
  j.Key("ColumnCount"), j.Int(info.ColumnCount);
  j.Key("RecordCount"), j.Int(info.RecordCount);
  j.Key("FirstTime"), j.Int(info.FirstTime);
  j.Key("LastTime"), j.Int(info.LastTime);
  j.Key("TopLevel"), j.Int(info.TopLevel);
  j.Key("LevelStep"), j.Int(info.LevelStep);
  j.Key("OverviewStep"), j.Int(info.OverviewStep);
  j.Key("CursorStep"), j.Int(info.CursorStep);
  j.Key("Thinned"), j.Int(info.Thinned);
  j.Key("LevelRows"), j.IntArray(info.LevelRows);
}

void Channels(Json &j, const RecordFileInfo &info) {
  j.Key("Channels"), j.Open('[');
  for (const ChannelInfo &c : info.Channels) {
    j.Open('{');
    j.Key("ChannelNo"), j.Int(c.ChannelNo);
    j.Key("Tag"), j.String(c.Tag);
    j.Key("ColorNo"), j.Int(c.ColorNo);
    j.Key("InputType"), j.Int(c.InputType);
    j.Key("Unit"), j.String(c.Unit);
    j.Key("ScaleLow"), j.Int(c.ScaleLow);
    j.Key("ScaleHigh"), j.Int(c.ScaleHigh);
    j.Key("DisplayLow"), j.Double(c.DisplayLow);
    j.Key("DisplayHigh"), j.Double(c.DisplayHigh);
    j.Key("RecordType"), j.Int(c.RecordType);
    j.Key("ScaleKind"), j.Int(c.ScaleKind);
    j.Key("RangeLow"), j.Double(c.RangeLow);
    j.Key("RangeHigh"), j.Double(c.RangeHigh);
    j.Key("ExponentLow"), j.Int(c.ExponentLow);
    j.Key("ExponentHigh"), j.Int(c.ExponentHigh);
    j.Key("Decimals"), j.Int(c.Decimals);
    j.Key("AlarmKind"), j.IntArray(c.AlarmKind);
    j.Key("AlarmOutput"), j.IntArray(c.AlarmOutput);
    j.Key("AlarmValue"), j.Open('[');
    for (double v : c.AlarmValue) j.Double(v);
    j.Close(']');
    j.Close('}');
  }
  j.Close(']');
}

void DisAndGroups(Json &j, const RecordFileInfo &info) {
  j.Key("Dis"), j.Open('[');
  for (const DiInfo &d : info.Dis) {
    j.Open('{');
    j.Key("DiNo"), j.Int(d.DiNo);
    j.Key("Tag"), j.String(d.Tag);
    j.Key("ColorNo"), j.Int(d.ColorNo);
    j.Key("ScaleLow"), j.Int(d.ScaleLow);
    j.Key("ScaleHigh"), j.Int(d.ScaleHigh);
    j.Key("RecordType"), j.Int(d.RecordType);
    j.Close('}');
  }
  j.Close(']');
  j.Key("Groups"), j.Open('[');
  for (int g = 0; g < info.GroupCount && g < 8; ++g) {
    j.Open('{');
    j.Key("GroupName"), j.String(info.Groups[g].GroupName);
    j.Key("Members"), j.IntArray(info.Groups[g].Members);
    j.Close('}');
  }
  j.Close(']');
}

void Events(Json &j, const AlarmFileInfo &alarms, const std::string &flagPath,
            const std::vector<FlagEvent> &flags) {
  j.Key("AlarmPath"), j.String(alarms.AlarmPath);
  j.Key("Alarms"), j.Open('[');
  for (const AlarmEvent &a : alarms.Alarms) {
    j.Open('{');
    j.Key("Time"), j.Int(a.Time);
    j.Key("ChannelNo"), j.Int(a.ChannelNo);
    j.Key("AlarmNo"), j.Int(a.AlarmNo);
    j.Key("AlarmAction"), j.Int(a.AlarmAction);
    j.Key("AlarmState"), j.Int(a.AlarmState);
    j.Key("Shown"), j.Bool(a.Shown != 0);
    j.Key("Position"), j.Int(a.Position);
    j.Close('}');
  }
  j.Close(']');
  j.Key("Messages"), j.Open('[');
  for (const MessageEvent &m : alarms.Messages) {
    j.Open('{');
    j.Key("Time"), j.Int(m.Time);
    j.Key("Text"), j.String(m.Text);
    j.Key("MessageColor"), j.Int(m.MessageColor);
    j.Key("Shown"), j.Bool(m.Shown != 0);
    j.Key("Position"), j.Int(m.Position);
    j.Close('}');
  }
  j.Close(']');
  j.Key("FlagPath"), j.String(flagPath);
  j.Key("Flags"), j.Open('[');
  for (const FlagEvent &f : flags) {
    j.Open('{');
    j.Key("Time"), j.Int(f.Time);
    j.Key("Text"), j.String(f.Text);
    j.Key("Shown"), j.Bool(f.Shown != 0);
    j.Key("Position"), j.Int(f.Position);
    j.Close('}');
  }
  j.Close(']');
}

int RunInfo(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {}, {}, parsed, error)) return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("info takes one FILE");
  SharedState &state = Shared();
  const OpenOutcome outcome = OpenRecordFile(state, AbsolutePath(parsed.positional[0]));
  if (!outcome.opened) throw CatalogueError(outcome.messageId, GetMessageText(outcome.messageId));
  const int slot = outcome.slot;
  Json j;
  j.Open('{');
  FileFields(j, state.Slot(slot).Record, state.Slot(slot).SamplePeriod);
  Channels(j, state.Slot(slot).Record);
  DisAndGroups(j, state.Slot(slot).Record);
  Events(j, state.Slot(slot).Alarms, state.Slot(slot).FlagPath, state.Slot(slot).Flags);
  j.Close('}');
  // Like closing the trend window: the working files go.
  CloseRecordSlot(state, slot);
  std::fwrite(j.text.data(), 1, j.text.size(), stdout);
  std::fputc('\n', stdout);
  return kExitDone;
}

const Registration kInfo({
    "info",
    "open a measurement file and print what is read from it",
    "Usage: recscope-cli info FILE\n"
    "\n"
    "Opens the measurement file the way the desktop program does (name test, alarm\n"
    "and flag companions, header, tables, data limits and levels, working files\n"
    "for slot 1 in the home folder) and prints one JSON object: the file's fields,\n"
    "Channels, Dis, Groups, AlarmPath, Alarms, Messages, FlagPath and Flags. Texts\n"
    "are as held in memory (fixed fields keep their padding), times are seconds.\n"
    "The working files are deleted at the end. A refused file exits 2 with\n"
    "'error ID: TEXT'.\n",
    RunInfo,
});

}  // namespace
}  // namespace recscope::cli
