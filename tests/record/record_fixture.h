#pragma once
// Record families made by test code with the writers, in a temporary folder.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "record/record_fields.h"
#include "record/record_file_info.h"
#include "record/record_writer.h"

namespace recscope::testing_support {

// An ASCII text padded with spaces to `width`, as fixed fields hold it.
inline std::string FixedWidth(const std::string &text, std::size_t width) {
  std::string out = text;
  out.resize(width, ' ');
  return out;
}

// A record description of `analog` channels (channel numbers 1..analog, all
// RecordType 1 except the first, which is RecordType 0) and `di` inputs, with
// group 1 holding the first channel.
inline RecordFileInfo MakeInfo(int analog, int di, int groupCount = 4) {
  RecordFileInfo info;
  info.FileNameText = "STEST01.FDT";
  info.ModelText = "ZNQ-TEST";
  info.SerialText = "SNo.12345678";
  info.VersionText = "Ver.01.02   ";
  info.SamplingCode = 4;  // 10 s
  info.GroupCount = static_cast<std::int16_t>(groupCount);
  for (int i = 0; i < analog; ++i) {
    ChannelInfo c;
    c.ChannelNo = static_cast<std::int16_t>(i + 1);
    c.Tag = "TAG" + std::to_string(i + 1);
    c.ColorNo = static_cast<std::int16_t>(i % 16);
    c.InputType = 1;
    c.Unit = "degC";
    c.ScaleLow = 0;
    c.ScaleHigh = 10000;
    c.RecordType = i == 0 ? 0 : 1;
    c.Decimals = 1;
    c.RangeLow = 0;
    c.RangeHigh = 1000;
    c.AlarmKind = {1, 2, 0, 0};
    c.AlarmOutput = {1, 2, 0, 0};
    c.AlarmValue = {800.0, 100.5, 0, 0};
    info.Channels.push_back(c);
  }
  for (int n = 1; n <= di; ++n) {
    DiInfo d;
    d.DiNo = static_cast<std::int16_t>(128 + n);
    d.Tag = "DI" + std::to_string(n);
    d.ColorNo = 3;
    d.ScaleLow = 0;
    d.ScaleHigh = 1;
    d.RecordType = n == 1 ? 0 : 1;
    info.Dis.push_back(d);
  }
  info.Groups[0].GroupName = "GROUP1";
  if (analog > 0)
    info.Groups[0].Members[0] = 1;
  else if (di > 0)
    info.Groups[0].Members[0] = 129;
  return info;
}

// `count` records a period of 10 s apart from `first`, with varying units.
inline std::vector<DataRecord> MakeRecords(const RecordFileInfo &info, int count,
                                           std::int32_t first = 1700000000) {
  std::vector<DataRecord> records;
  const int units = AnalogUnitCount(info);
  for (int r = 0; r < count; ++r) {
    DataRecord d;
    d.Time = first + 10 * r;
    for (int u = 0; u < units; ++u)
      d.Units.push_back(static_cast<std::int16_t>((r * 7 + u * 13) % 2000 - 500));
    for (std::size_t n = 0; n < info.Dis.size(); ++n) {
      d.DiStates.push_back(static_cast<std::uint8_t>((r + n) % 2));
      d.DiStates.push_back(static_cast<std::uint8_t>((r + n + 1) % 2));
    }
    records.push_back(d);
  }
  return records;
}

inline std::string RecordBytes(const RecordFileInfo &info, int format,
                               const std::vector<DataRecord> &records) {
  RecordWriter writer(info, format);
  std::string bytes = writer.HeaderBytes();
  for (const DataRecord &r : records) writer.AppendRecord(bytes, r);
  return bytes;
}

inline std::string ReadAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// A fresh folder under the test temp folder, removed at the end of the test.
class TempFolder {
 public:
  TempFolder() {
    const auto *test = ::testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::filesystem::temp_directory_path() /
            ("recscope_r_" + std::string(test->test_suite_name()) + "_" + test->name());
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  std::string Path(const std::string &name) const { return (path_ / name).string(); }
  std::string Folder() const { return path_.string(); }
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto &e : std::filesystem::directory_iterator(path_))
      names.push_back(e.path().filename().string());
    return names;
  }

 private:
  std::filesystem::path path_;
};

// The header region of a test alarm file, and one binary alarm row: channel
// `channel`, alarm 1, raised.
inline std::string AlarmHeader() {
  const std::string crLf = "\r\n";
  return FixedWidth("ATEST01.FDT", 32) + crLf + FixedWidth("ZNQ-TEST", 32) + crLf +
         FixedWidth("SNo.12345678", 20) + FixedWidth("Ver.01.02", 12) + crLf;
}

inline std::string BinaryAlarm(std::int32_t time, int channel) {
  std::string e;
  PutI32(e, time);
  e += 'A';
  PutU8(e, channel);
  PutU8(e, 1);
  PutU8(e, 1);
  PutU8(e, 1);
  e.resize(38, '\0');
  return e;
}

}  // namespace recscope::testing_support
