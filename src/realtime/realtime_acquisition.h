#pragma once
// What the real-time driver does with a block once it has been read: the block
// table by step, the decoding of each step into the real-time state, and the
// two files of the monitor in the program's folder, RealSetFile (the recorder's
// setup as last read) and RealTimeFile (the ring, a record per slot, written as
// each sample comes so that a crash loses nothing written). Plain C++.
#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "realtime/realtime_state.h"

namespace recscope {

// The three arrays of the block table, by step 0 to 7: a block is records ×
// words registers from start.
struct RealBlockTable {
  std::array<std::int32_t, 8> Start{};
  std::array<std::int32_t, 8> Words{};
  std::array<std::int32_t, 8> Records{};

  std::int32_t BlockWords(int step) const;
};

// Steps 0 and 1: the headers of the two families, as cmdStart sets them.
void SetRealHeaderSteps(RealBlockTable &table);
// Steps 2 to 7 of the 30-channel ("KTX") or the 72-channel ("ZNQ") family.
void FillRealBlockTable(RealBlockTable &table, bool ktx);

// The version number: the characters at positions 2 and 3 of the version text
// (counted from 1), as a whole number; 0 when they are no number.
int RealVersionNumber(const std::string &versionText);

// A zero span widened: with ScaleKind nonzero the limit is -8, else -32767; a
// low value below the limit moves the high value up by 1, else the low value
// goes down by 1. Spans that are not zero stay.
void RealWidenScale(std::int16_t &scaleLow, std::int16_t &scaleHigh, std::int32_t scaleKind);

// The numbers of a display channel from its setup record: colour, input type,
// unit, decimals (the common point when the channel takes it), the scale
// widened, range and exponents. The tags are the caller's.
void RealDisplayNumbers(const RealChannelRecord &record, std::int32_t commonPoint,
                        RealDisplayChannel &display);

// The alarm flags from the current value block: 4 bits a channel, 4 channels a
// word from word 6, nibble 0 the lowest (bit 8 alarm 4 ... bit 1 alarm 1). The
// 30-channel family takes words 0 to 4 and of word 4 the low byte (channels 1
// to 18); the 72-channel family words 0 to 17 and of word 17 the low byte
// (channels 1 to 70). The flags of the channels beyond stay 0.
void RealTakeAlarmBits(RealtimeState &state, std::span<const std::uint8_t> data);

// The file names in the program's folder.
std::string RealSetFilePath(const std::string &folder);
std::string RealTimeFilePath(const std::string &folder);

// RealSetFile: model, serial and version texts, the channel records, the group
// records, the common decimal point and the twelve user units, in code page
// 932, blank padded. The old file is replaced.
bool WriteRealSetFile(const RealtimeState &state, const std::string &path);
// Reads RealSetFile as the setup of the last run: the counts by the model
// text's first three characters (the arrays made anew when they change), the
// model, serial and version texts, LastChannels, the groups, LastCommonPoint
// and the user units; LastCycle is `lastCycleSeconds` (the CYCLE key of the
// last run). False when the file is missing or short.
bool ReadRealSetFile(RealtimeState &state, const std::string &path, std::int32_t lastCycleSeconds);

// Writes one slot of the ring at byte (slot - 1) × record length. The file is
// made when missing.
bool WriteRealTimeRecord(const RealSampleRing &ring, const std::string &path, std::int32_t slot);
// Loads the ring from RealTimeFile: the records in order (a short file reads
// blanks for the records it lacks), then every slot whose time is not later
// than now - cycle × 86400 or whose valid byte is not 1 is blanked, in memory
// and in the file.
void LoadRealTimeFile(RealSampleRing &ring, const std::string &path, std::int32_t now,
                      std::int32_t cycle);

// What a decoded block asks of the driver.
struct RealGroupOutcome {
  bool Fail = false;         // neither family: RealLinkFail
  bool TabsRebuilt = false;  // step 5 made the tabs anew
  bool Sampled = false;      // step 7 wrote a slot
  std::int32_t Slot = 0;     // the slot written
};

// The decoding of the block of the present step (state.Step), which leaves
// the next step in state.Step. `data` is the block as little-endian words;
// `now` the computer's present time in seconds; `folder` the program's folder
// with VIEWERCOM.INI and the two files.
RealGroupOutcome subGroupDataGet(RealtimeState &state, RealBlockTable &table,
                                 std::span<const std::uint8_t> data, std::int32_t now,
                                 const std::string &folder);

}  // namespace recscope
