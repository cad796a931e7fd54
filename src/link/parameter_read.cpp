#include "link/parameter_read.h"

#include <cmath>
#include <filesystem>

#include "link/register_map.h"
#include "link/register_text.h"
#include "platform/text_encoding.h"
#include "trend/unit_table.h"

namespace recscope {

namespace {

constexpr int kRetries = 3;
constexpr int kWaitArgument = 10;
constexpr int kAnswerYes = 6;
const std::string kWholeGroup = "    ";

bool Exists(const std::string &path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

// The first `count` characters of a UTF-8 text.
std::string LeftCharacters(const std::string &text, std::size_t count) {
  std::size_t at = 0;
  for (std::size_t n = 0; n < count && at < text.size(); ++n) {
    ++at;
    while (at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80) ++at;
  }
  return text.substr(0, at);
}

// A fixed text field of the record file: code page 932, cut or padded with
// blanks to `bytes`.
std::string Field(const std::string &utf8, std::size_t bytes) {
  std::string cp932 = LeftCp932Bytes(utf8, bytes);
  cp932.resize(bytes, ' ');
  return cp932;
}

void PutByte(std::string &out, std::int32_t value) {
  out.push_back(static_cast<char>(value & 0xFF));
}

void PutWord(std::string &out, std::int32_t value) {
  out.push_back(static_cast<char>(value & 0xFF));
  out.push_back(static_cast<char>((value >> 8) & 0xFF));
}

bool Put(std::FILE *file, const std::string &bytes) {
  return file && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

double Scaled(std::int32_t raw, int decimals) { return raw * std::pow(10.0, -decimals); }

// One run of the five reads into one file pair.
class ReadRun {
 public:
  ReadRun(CommandDriver &driver, const RegisterMap &map, const ParameterReadHooks &hooks,
          ParameterRecord &record, bool &abort)
      : driver_(driver), map_(map), hooks_(hooks), record_(record), abort_(abort) {}

  bool UserUnits();
  bool Header(const std::string &fileName);
  bool Channels();
  bool DigitalInputs();
  bool Groups();

 private:
  std::int32_t Lookup(const std::string &item, const std::string &group) {
    return RegisterLookup(map_, item, group, published_);
  }
  std::int32_t Word(std::int32_t offset) const {
    if (offset < 0 || offset >= static_cast<std::int32_t>(kRegisterTableSize)) return 0;
    return driver_.Registers[static_cast<std::size_t>(offset)];
  }
  // `words` registers from `offset` as text, two characters a register.
  std::string Text(std::int32_t offset, int words) const {
    std::string text;
    for (int i = 0; i < words; ++i) text += RegisterToText(Word(offset + i));
    return text;
  }
  // One request of kind 1 for `words` words at the register number `address`.
  // A failure asks the operator; Yes raises the abort flag.
  bool Read(std::int32_t address, int words, int replyLength) {
    const int result = ComTransact(driver_, kComReadHolding, address - 40001, words, kRetries,
                                   kWaitArgument, replyLength);
    if (result == kComSuccess) return true;
    if (hooks_.ComErrorDialog && hooks_.ComErrorDialog(result) == kAnswerYes) abort_ = true;
    return false;
  }

  CommandDriver &driver_;
  const RegisterMap &map_;
  const ParameterReadHooks &hooks_;
  ParameterRecord &record_;
  bool &abort_;
  PublishedGroup published_;
};

bool ReadRun::UserUnits() {
  std::int32_t address = Lookup(kWholeGroup, "U  ");
  const int words = published_.wordsPerRecord;
  const int count = published_.recordCount;
  const std::int32_t unit = Lookup("UNIT", "U  ");
  for (int k = 1; k <= count; ++k) {
    if (!Read(address, words, 2 * words + 5)) return false;
    if (155 + k < kLinkUnitCount)
      record_.UnitTable[static_cast<std::size_t>(155 + k)] = LeftCharacters(Text(unit, 4), 7);
    address += words;
  }
  // The trend's unit reader knows the recorder's user units from here on.
  SetUserUnits(record_.UnitTable);
  return true;
}

bool ReadRun::Header(const std::string &fileName) {
  const std::int32_t address = Lookup(kWholeGroup, "P  ");
  const int words = published_.wordsPerRecord;
  const std::int32_t model = Lookup("PILC", "P  ");
  const std::int32_t serial = Lookup("SNO.", "P  ");
  const std::int32_t version = Lookup("PVER", "P  ");
  if (!Read(address, words, 2 * words + 5)) return false;
  const std::string modelText = Text(model, 16);
  const std::string serialText = Text(serial, 8) + "    ";
  const std::string versionText = Text(version, 6);
  std::string head = Field(fileName + std::string(21, ' '), 32) + "\r\n";
  head += Field(modelText, 32) + "\r\n";
  head += Field(serialText, 20) + Field(versionText, 12) + "\r\n";
  RecordFileInfo &info = record_.Record;
  info.FileNameText = fileName + std::string(21, ' ');
  info.ModelText = modelText;
  info.SerialText = serialText;
  info.VersionText = versionText;
  const std::string counts{'\0', '\x1e', '\0', '\0', '\x05', '\0'};
  const std::string alarmCount{'\0', '\0'};
  return Put(record_.Measurement, head + counts) && Put(record_.Alarm, head + alarmCount);
}

bool ReadRun::Channels() {
  std::int32_t channelAddress = Lookup(kWholeGroup, "C  ");
  const int channelWords = published_.wordsPerRecord;
  const std::int32_t tag = Lookup("TAG ", "C  ");
  const std::int32_t colour = Lookup("COLR", "C  ");
  const std::int32_t point = Lookup("POIN", "C  ");
  const std::int32_t scaleMin = Lookup("RMIN", "C  ");
  const std::int32_t scaleMax = Lookup("RMAX", "C  ");
  const std::int32_t unit = Lookup("UNIT", "C  ");
  const std::int32_t type = Lookup("TYPE", "C  ");
  const std::int32_t display = Lookup("DSPM", "C  ");
  const std::int32_t scaleKind = Lookup("TAIS", "C  ");
  const std::int32_t rangeLow = Lookup("ZMB1", "C  ");
  const std::int32_t rangeHigh = Lookup("ZMB2", "C  ");
  const std::int32_t exponentLow = Lookup("ZMP1", "C  ");
  const std::int32_t exponentHigh = Lookup("ZMP2", "C  ");
  // The alarm lookups come last: the record count is that of "A  ".
  std::int32_t alarmAddress = Lookup(kWholeGroup, "A  ");
  const int alarmWords = published_.wordsPerRecord;
  const int count = published_.recordCount;
  std::array<std::int32_t, 4> alarmKind{}, alarmValue{}, alarmOutput{};
  for (int n = 1; n <= 4; ++n) {
    const std::string a = "A" + std::to_string(n);
    alarmKind[static_cast<std::size_t>(n - 1)] = Lookup(a + "TY", "A  ");
    alarmValue[static_cast<std::size_t>(n - 1)] = Lookup(a + "VL", "A  ");
    alarmOutput[static_cast<std::size_t>(n - 1)] = Lookup(a + "HC", "A  ");
  }
  (void)display;  // stored by the monitor's record only as the recorder gives it
  for (int k = 1; k <= count; ++k) {
    if (!Read(channelAddress, channelWords, 2 * channelWords + 5)) return false;
    ChannelInfo channel;
    channel.ChannelNo = static_cast<std::int16_t>(k);
    channel.Tag = Text(tag, 4);
    const std::int32_t unitCode = Word(unit);
    channel.Unit = unitCode >= 0 && unitCode < kLinkUnitCount
                       ? record_.UnitTable[static_cast<std::size_t>(unitCode)]
                       : std::string(7, ' ');
    channel.ColorNo = static_cast<std::int16_t>(Word(colour));
    channel.Decimals = static_cast<std::int16_t>(Word(point));
    channel.ScaleLow = static_cast<std::int16_t>(Word(scaleMin));
    channel.ScaleHigh = static_cast<std::int16_t>(Word(scaleMax));
    channel.DisplayLow = channel.RecordedLow = Scaled(Word(scaleMin), channel.Decimals);
    channel.DisplayHigh = channel.RecordedHigh = Scaled(Word(scaleMax), channel.Decimals);
    channel.InputType = static_cast<std::int16_t>(Word(type));
    channel.ScaleKind = static_cast<std::int16_t>(Word(scaleKind));
    channel.RecordType = 1;
    const std::int32_t rawRangeLow = Word(rangeLow);
    const std::int32_t rawRangeHigh = Word(rangeHigh);
    channel.RangeLow = rawRangeLow;
    channel.RangeHigh = rawRangeHigh;
    channel.ExponentLow = static_cast<std::int16_t>(Word(exponentLow));
    channel.ExponentHigh = static_cast<std::int16_t>(Word(exponentHigh));
    const std::array<std::int32_t, 8> channelWordsKept{
        Word(colour),    Word(type),  Word(scaleMin), Word(scaleMax),
        Word(scaleKind), rawRangeLow, rawRangeHigh,   Word(point)};

    if (!Read(alarmAddress, alarmWords, 2 * alarmWords + 5)) return false;
    std::array<std::int32_t, 4> rawAlarm{};
    for (std::size_t n = 0; n < 4; ++n) {
      channel.AlarmKind[n] = static_cast<std::int16_t>(Word(alarmKind[n]));
      channel.AlarmOutput[n] = static_cast<std::int16_t>(Word(alarmOutput[n]));
      rawAlarm[n] = Word(alarmValue[n]);
      channel.AlarmValue[n] = Scaled(rawAlarm[n], channel.Decimals);
    }

    std::string out;
    PutByte(out, k);
    out += Field(channel.Tag + std::string(8, ' '), 16);
    PutByte(out, channelWordsKept[0]);
    PutByte(out, channelWordsKept[1]);
    out += Field(channel.Unit, 7);
    PutWord(out, channelWordsKept[2]);
    PutWord(out, channelWordsKept[3]);
    PutByte(out, 1);
    PutByte(out, channelWordsKept[4]);
    PutWord(out, channelWordsKept[5]);
    PutWord(out, channelWordsKept[6]);
    PutByte(out, channel.ExponentLow);
    PutByte(out, channel.ExponentHigh);
    PutByte(out, channelWordsKept[7]);
    PutByte(out, 0);
    for (std::size_t n = 0; n < 4; ++n) {
      PutByte(out, channel.AlarmKind[n]);
      PutByte(out, channel.AlarmOutput[n]);
      // The fourth alarm goes out with the third alarm's value: the file has
      // always been written so, and the record in memory keeps the fourth.
      PutWord(out, rawAlarm[n == 3 ? 2 : n]);
    }
    if (!Put(record_.Measurement, out)) return false;
    record_.Record.Channels.push_back(channel);
    channelAddress += channelWords;
    alarmAddress += alarmWords;
  }
  return true;
}

bool ReadRun::DigitalInputs() {
  std::int32_t address = Lookup(kWholeGroup, "I  ");
  const int words = published_.wordsPerRecord;
  const int count = published_.recordCount;
  const std::int32_t tag = Lookup("DTAG", "I  ");
  const std::int32_t colour = Lookup("DCOL", "I  ");
  const std::int32_t low = Lookup("DRMN", "I  ");
  const std::int32_t high = Lookup("DRMX", "I  ");
  const std::int32_t kept = Lookup("DREM", "I  ");
  (void)kept;  // passed on by the monitor's record as the recorder gives it
  for (int k = 1; k <= count; ++k) {
    if (!Read(address, words, 2 * words + 5)) return false;
    DiInfo di;
    di.DiNo = static_cast<std::int16_t>(128 + k);
    di.Tag = Text(tag, 4);
    di.ColorNo = static_cast<std::int16_t>(Word(colour));
    di.ScaleLow = static_cast<std::int16_t>(Word(low));
    di.ScaleHigh = static_cast<std::int16_t>(Word(high));
    di.RecordType = 1;
    std::string out;
    PutByte(out, 128 + k);
    out += Field(di.Tag + std::string(8, ' '), 16);
    PutByte(out, Word(colour));
    PutWord(out, Word(low));
    PutWord(out, Word(high));
    PutByte(out, 1);
    PutByte(out, 0);
    if (!Put(record_.Measurement, out)) return false;
    record_.Record.Dis.push_back(di);
    address += words;
  }
  return true;
}

bool ReadRun::Groups() {
  std::int32_t address = Lookup(kWholeGroup, "G  ");
  const int words = published_.wordsPerRecord;
  const int count = published_.recordCount;
  const int total = published_.recordBytes;
  const std::int32_t name = Lookup("GNEM", "G  ");
  std::array<std::int32_t, 10> member{};
  for (std::size_t m = 0; m < 10; ++m) {
    const std::string item = m < 9 ? "GC0" + std::to_string(m + 1) : "GC10";
    member[m] = Lookup(item, "G  ");
  }
  for (int k = 1; k <= count; ++k) {
    if (!Read(address, total / 2, total + 5)) return false;
    std::string out = Field(Text(name, 8), 16);
    GroupInfo group;
    group.GroupName = Text(name, 8);
    for (std::size_t m = 0; m < 10; ++m) {
      PutByte(out, Word(member[m]));
      group.Members[m] = static_cast<std::int16_t>(Word(member[m]) & 0xFF);
    }
    if (!Put(record_.Measurement, out)) return false;
    if (k <= 8) record_.Record.Groups[static_cast<std::size_t>(k - 1)] = group;
    address += words;
  }
  return Put(record_.Measurement, std::string{'\xff', '\xff'});
}

void DeletePair(ParameterRecord &record) {
  record.Close();
  std::error_code error;
  std::filesystem::remove(record.MeasurementPath, error);
  std::filesystem::remove(record.AlarmPath, error);
}

}  // namespace

std::string ComNewFileName(const std::string &folder) {
  for (int n = 100000; n <= 199999; ++n) {
    const std::string number = std::to_string(n);
    if (!Exists(folder + "/S" + number + ".FDT") && !Exists(folder + "/A" + number + ".FDT"))
      return "S" + number + ".FDT";
  }
  return {};
}

void ParameterRecord::Close() {
  if (Measurement) std::fclose(Measurement);
  if (Alarm) std::fclose(Alarm);
  Measurement = Alarm = nullptr;
}

bool ComParameterRead(CommandDriver &driver, const RegisterMap &map, const std::string &folder,
                      const ParameterReadHooks &hooks, ParameterRecord &record) {
  bool abort = false;
  while (true) {
    record.Close();
    const std::string name = ComNewFileName(folder);
    if (name.empty()) {
      if (hooks.NoFileName) hooks.NoFileName();
      return false;
    }
    record.MeasurementPath = folder + "/" + name;
    record.AlarmPath = folder + "/A" + name.substr(1);
    record.Measurement = std::fopen(record.MeasurementPath.c_str(), "wb");
    record.Alarm = std::fopen(record.AlarmPath.c_str(), "wb");
    record.Record = RecordFileInfo{};
    record.Record.AnalogCount = 30;
    record.Record.DiCount = 5;
    record.Record.GroupCount = 4;
    record.Record.FileFormat = 2;
    record.Record.FilePath = record.MeasurementPath;
    record.UnitTable = UnitRead();
    record.UnitTable.resize(kLinkUnitCount, std::string(7, ' '));
    if (!record.Measurement || !record.Alarm) {
      DeletePair(record);
      return false;
    }
    ReadRun run(driver, map, hooks, record, abort);
    bool ok = run.UserUnits();
    if (!abort) ok = run.Header(name) && ok;
    if (!abort) ok = run.Channels() && ok;
    if (!abort) ok = run.DigitalInputs() && ok;
    if (!abort) ok = run.Groups() && ok;
    if (abort) {
      DeletePair(record);
      return false;
    }
    if (ok) {
      std::fflush(record.Measurement);
      std::fflush(record.Alarm);
      return true;
    }
    // No to the question: the pair goes, and everything is read again.
    DeletePair(record);
  }
}

}  // namespace recscope
