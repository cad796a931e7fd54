#pragma once
// What the real-time monitor keeps on disk in the program's folder: RealSetFile,
// the recorder's setup as last read; RealTimeFile, the ring of samples; and the
// analyzed record SR00000.FDT that RealRecordWrite makes of the ring.
#include <cstdint>
#include <string>

#include "realtime/realtime_state.h"
#include "record/record_file_info.h"

namespace recscope {

inline constexpr const char *kRealSetFileName = "RealSetFile";
inline constexpr const char *kRealTimeFileName = "RealTimeFile";
inline constexpr const char *kRealRecordFileName = "SR00000.FDT";
inline constexpr const char *kRealFlagFileName = "FR00000.FDT";

// RealSetFile, binary and without a header: model text (16), serial number (8),
// version text (8); per channel tag 1 and tag 2 (8 each) and thirteen 32-bit
// values; per group its name (16) and ten channel numbers (a byte each); the
// common decimal point (32-bit); the twelve user unit texts (7 each). Texts are
// code page 932, padded with blanks.
std::string RealSetFileBytes(const RealtimeState &state);

// Deletes an old RealSetFile at `path` and writes the new one. False when it
// could not be written.
bool WriteRealSetFile(const std::string &path, const RealtimeState &state);

// Reads RealSetFile: the counts come from the model text (30 channels and 4
// groups when its first three characters are "KTX", else 72 and 8), the arrays
// are made anew, and the setup goes both into the present records and into the
// last run's (LastChannels, LastSerialText, LastCommonPoint). False, and the
// state untouched, when the file is missing or too short for its counts.
bool ReadRealSetFile(const std::string &path, RealtimeState &state);

// Loads the ring from RealTimeFile: one record a slot, in slot order; a file
// shorter than the ring reads blanks for the slots it lacks. Then a slot whose
// time is not later than now - cycle x 86400, or whose valid byte is not 1, is
// blanked in memory and, where the file held anything else there, in the file.
// False when the file cannot be read (the ring is left as it was).
bool LoadRealTimeFile(const std::string &path, RealtimeState &state, std::int32_t now);

// The slot of the newest sample: the last written one while the driver writes,
// else (after a load) the valid slot with the latest time; 0 when there is none.
std::int32_t RealNewestSlot(const RealtimeState &state);

// The time of the newest sample: that of RealNewestSlot, else the driver's
// present sample time.
std::int32_t RealNewestTime(const RealtimeState &state);

// The display channels, group sizes and tabs of a setup taken from RealSetFile,
// as the driver makes them once it has read the setup: the common point's
// decimals for a channel on the common point, zero spans widened, "G9" and a tab
// for each group with channels.
void RealDisplayFromSetup(RealtimeState &state);

// What frmRealTrend's load reads when the monitor holds no setup yet:
// RealSetFile in `folder` (with the display channels and tabs made of it) and the
// ring from RealTimeFile, stale and blank slots blanked, with the cycle of the
// state's settings. False when there is no RealSetFile to read.
bool LoadLastRealRun(const std::string &folder, RealtimeState &state, std::int32_t now);

// SamplingCode of a cycle in seconds: its index in 1, 2, 3, 5, 10, 20, 30, 60,
// any other cycle 0.
std::int16_t RealSamplingCode(int cycleSeconds);

// The record description of the monitor's setup, as the analyzed record's header
// and the real-time trend both take it: the model's texts, one RecordType 1
// channel a display channel (tags joined, the unit text or seven blanks for a
// channel on the common point, the scale and range, the exponents when the
// scale is logarithmic, no alarm settings), the groups and the sampling code of
// the cycle.
RecordFileInfo RealRecordInfo(const RealtimeState &state);

// RealRecordWrite: deletes SR00000.FDT and FR00000.FDT in `folder` and writes
// the whole ring as SR00000.FDT (binary encoding, DiCount 0): 86400 records,
// oldest first, from the slot after the last written one round to it, the time of
// record i being the newest time - cycle x (86399 - i), each value cut to 16 bits.
// Returns the path written, or an empty text when it could not be written.
std::string RealRecordWrite(const std::string &folder, const RealtimeState &state);

}  // namespace recscope
