#pragma once
// The alarm and message file A<name>.FDT, binary or text. Its encoding is the
// measurement file's: the file has no mark of its own.
#include <string>
#include <string_view>

#include "record/record_file_info.h"

namespace recscope {

// Events of one kind beyond this number are passed over on reading.
constexpr int kMaxEventsOfKind = 32767;

// Reads the header and events from the whole file's bytes into `alarms` (its
// AlarmPath and AlarmLength are left alone). `binary` is true for a measurement
// file of FileFormat 2. Returns false when the file is invalid (message 11190):
// shorter than its header, a positive word at offset 102 in binary, a time that
// does not read, or an event of a kind other than "A" and "M".
bool ReadAlarmBytes(std::string_view bytes, bool binary, AlarmFileInfo &alarms);

// The same from a file on disk.
bool ReadAlarmFile(const std::string &path, bool binary, AlarmFileInfo &alarms);

// The bytes of an alarm file: header from `alarms`' header texts, then the alarm
// events and the message events merged in time order (alarms first at equal times).
std::string AlarmFileBytes(const AlarmFileInfo &alarms, bool binary);
bool WriteAlarmFile(const std::string &path, const AlarmFileInfo &alarms, bool binary);

}  // namespace recscope
