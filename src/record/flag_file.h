#pragma once
// The flag file F<name>.FDT: the alarm file's events with the operator's display
// decisions (shown or not, position), plus the operator's flags. Text only,
// written and read by this program alone, rewritten whole on each save.
#include <string>
#include <string_view>
#include <vector>

#include "record/record_file_info.h"

namespace recscope {

// A flag file shorter than this is never looked at (its header alone has 168).
constexpr std::size_t kMinFlagFileLength = 171;

// Takes in a flag file's bytes: when it is long enough and not stale (its A and M
// line counts equal the alarm file's and every A and M time is among the events
// of its kind), the events get their Shown and Position from it, in order, and
// `flags` gets its F lines. Returns false, with nothing changed, otherwise.
bool ApplyFlagBytes(std::string_view bytes, AlarmFileInfo &alarms, std::vector<FlagEvent> &flags);
bool ApplyFlagFile(const std::string &path, AlarmFileInfo &alarms, std::vector<FlagEvent> &flags);

// The file as the display-settings save writes it: the header of the
// measurement file (its name text starting with "F"), then all alarm rows, all
// message rows and all flags.
std::string FlagFileBytes(const RecordFileInfo &record, const AlarmFileInfo &alarms,
                          const std::vector<FlagEvent> &flags);
// Writes the file whole to a temporary name in the same folder and renames it
// over an older file of the name. On failure the older file is untouched and no
// temporary file is left.
bool WriteFlagFile(const std::string &path, const RecordFileInfo &record,
                   const AlarmFileInfo &alarms, const std::vector<FlagEvent> &flags);

// The line pattern with "#" a digit, "?" any character and "*" any run.
bool MatchesLinePattern(std::string_view text, std::string_view pattern);

}  // namespace recscope
