#pragma once
// Writing totalize files in both encodings, byte for byte as a recorder lays them
// out: header, channel table, group table (with the end mark in binary) and data
// records.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace recscope {

struct TotalizeChannelContent {
  int ChannelNo = 1;
  std::string Tag;  // UTF-8, written as 8 bytes of code page 932
  int Setting1 = 0;
  int ActionType = 0;
  std::string Unit;        // 7 bytes
  std::int16_t Scale = 0;  // raw, with this channel's Decimals
  int Decimals = 0;
};

struct TotalizeGroupContent {
  std::string GroupName;          // 16 bytes
  std::array<int, 10> Members{};  // ChannelNo or 0
};

struct TotalizeRecordContent {
  std::int32_t StartTime = 0;  // seconds from 1970/1/1 00:00:00
  std::int32_t EndTime = 0;
  std::vector<std::int32_t> Values;  // raw, one per channel; missing ones are 0
};

struct TotalizeFileContent {
  std::string HeaderText1;  // 34 bytes
  std::string HeaderText2;  // 34 bytes
  std::string HeaderText3;  // 20 bytes
  std::string VersionText;  // 14 bytes
  std::vector<TotalizeChannelContent> Channels;
  // The group count as the header stores it. The table holds 8 entries when it
  // is 8 and 4 otherwise; entries beyond Groups are empty.
  int GroupCount = 4;
  // Text only: when not empty, the two characters at offset 114 instead of the
  // group count's digits.
  std::string TextGroupCount;
  std::vector<TotalizeGroupContent> Groups;
  std::uint16_t EndMark = 0xFFFF;  // binary only
};

// Bytes of one data record: 8 + 4n binary, 41 + 12n text.
std::int32_t TotalizeRecordLength(int channelCount, bool binary);

// The eleven characters of a text value: raw x 10^-decimals right-aligned with its
// point in place.
std::string TotalizeValueField(std::int32_t raw, int decimals);

// Header and tables up to the first data record.
std::string TotalizeHeaderBytes(const TotalizeFileContent &content, bool binary);
void AppendTotalizeRecord(std::string &out, const TotalizeFileContent &content, bool binary,
                          const TotalizeRecordContent &record);
std::string TotalizeFileBytes(const TotalizeFileContent &content, bool binary,
                              const std::vector<TotalizeRecordContent> &records);

// The whole file at `path`; false (and no file) when it could not be written.
bool WriteTotalizeFile(const std::string &path, const TotalizeFileContent &content, bool binary,
                       const std::vector<TotalizeRecordContent> &records);

}  // namespace recscope
