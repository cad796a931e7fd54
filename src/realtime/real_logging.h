#pragma once
// The last run of the real-time monitor read back for its windows, and the
// analyzed record SR00000.FDT that RealRecordWrite makes of the ring. The two
// files of the monitor themselves, RealSetFile and RealTimeFile, are written and
// read by the driver's routines (realtime/realtime_acquisition.h).
#include <cstdint>
#include <string>

#include "realtime/realtime_state.h"
#include "record/record_file_info.h"

namespace recscope {

inline constexpr const char *kRealRecordFileName = "SR00000.FDT";
inline constexpr const char *kRealFlagFileName = "FR00000.FDT";

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
// RealSetFile in `folder` (the last run's setup, taken also as the present one,
// with the display channels and tabs made of it) and the ring from RealTimeFile,
// stale and blank slots blanked, at the cycle of the CYCLE key of the last run
// in VIEWERCOM.INI. False when there is no RealSetFile to read.
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
