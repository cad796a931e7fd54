#pragma once
// The record of one open totalize file, as the totalize windows, the totalize CSV
// and the reports read it. There are 16 of them, numbered 1 to 16, in the shared
// state beside the record slots.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace recscope {

constexpr int kTotalizeSlotCount = 16;
// The one page size of the totalize viewer: at most this many records are held.
constexpr std::int32_t kTotalizePageRows = 1202;

struct TotalizeChannel {
  std::int16_t ChannelNo = 0;  // the key by which a group points at the channel
  std::string Tag;
  std::int16_t Setting1 = 0;    // carried to the CSV output only
  std::int16_t ActionType = 0;  // 0 totalize, 1 counter, 2 working time
  std::string Unit;
  std::string ScaleText;
  std::int16_t Decimals = 0;
};

struct TotalizeGroup {
  std::string GroupName;
  std::int16_t MemberCount = 0;            // the non-zero members
  std::array<std::int16_t, 10> Members{};  // ChannelNo or 0, in file order
};

struct TotalizeRow {
  std::string StartText;  // "yyyy/mm/dd hh:mm:ss"
  std::string EndText;
  std::vector<std::string> Values;  // one display text per channel, table order
};

// One totalize slot. The viewer window itself belongs to the window layer and is
// not held here.
struct TotalizeWindow {
  std::string HeaderText1;
  std::string HeaderText2;
  std::string HeaderText3;
  std::string VersionText;
  std::int16_t ChannelCount = 0;
  // As stored; 0 in a binary file and a non-number in a text file have become 4.
  std::int16_t GroupCount = 0;
  std::vector<TotalizeChannel> Channels;  // channel i (from 1) at [i - 1]
  std::array<TotalizeGroup, 8> Groups{};  // group i (from 1) at [i - 1]
  std::vector<TotalizeRow> Rows;          // the current page only
  std::string Path;
  std::int16_t IsBinary = 0;    // 1 for a binary file
  std::int16_t Kind = 0;        // 1 to 7, from the first letter of the name
  std::int16_t InUse = 0;       // 1 while the slot is taken
  std::int32_t FileLength = 0;  // taken at opening
  std::int32_t RecordLength = 0;
  std::int32_t DataStart = 0;
  std::int32_t RecordCount = 0;
  std::int32_t CurrentPage = 0;  // from 1
  std::int32_t PageCount = 0;
  std::int16_t PageRows = 0;
};

}  // namespace recscope
