#pragma once
// Saving the shown range of a record under a new name: the measurement file's
// header region and the records of the range, byte for byte, and the alarm
// events of the range with the alarm file's header, in the same encoding.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "record/record_file_info.h"
#include "record/working_files.h"

namespace recscope {

// Bytes of a block of the range copy.
constexpr std::int64_t kSaveBlockBytes = 1000000;

// The name test of the save: the file name's first letter "S" and its last
// three letters "FDT" in any case, with 1 to 7 characters between the first
// letter and the last four.
bool IsSaveAsName(const std::string &path);

// The alarm file that goes with a saved record: the same path with "A" as the
// file name's first letter.
std::string SaveAlarmPath(const std::string &target);

// The records of a range: t0 and t1 are the first and the last time shown;
// t1 is held to LastTime (and t0 to FirstTime).
struct SaveRange {
  std::int32_t Start = 0;
  std::int32_t End = 0;
  std::int64_t FirstRecord = 0;  // 0-based
  std::int64_t Count = 0;
};
SaveRange SaveRangeOf(const RecordFileInfo &info, std::int32_t period, std::int64_t t0,
                      std::int64_t t1);

// Writes the header region and the records of the range into `target`, in
// blocks of at most 1,000,000 bytes; `progress` moves once a block.
bool CopyMeasurementRange(const RecordFileInfo &info, const SaveRange &range,
                          const std::string &target, const ProgressFn &progress = {});

// Writes the alarm file's header (104 bytes binary, 102 text) and every event
// whose time lies from range.Start to range.End, in file order.
bool CopyAlarmRange(const RecordFileInfo &info, const AlarmFileInfo &alarms, const SaveRange &range,
                    const std::string &target);

// The steps of the save after the name was given: the name test (11180), an
// existing measurement file (11181), an existing alarm file (11185, asked with
// `confirmOverwrite`: false ends the save with no message, MessageId 0), the two
// copies (11182, 11183) and 11184 when done. The files are written under
// temporary names and take their names only when both copies succeeded.
struct SaveAsOutcome {
  int MessageId = 0;
  std::vector<std::string> Files;
};
SaveAsOutcome SaveRecordRange(
    const RecordFileInfo &info, const AlarmFileInfo &alarms, std::int32_t period, std::int64_t t0,
    std::int64_t t1, const std::string &target,
    const std::function<bool(const std::string &alarmTarget)> &confirmOverwrite,
    const ProgressFn &progress = {});

// The test of dlgSavefilename's text, for the folder chosen before: 0 when it
// passes, else 18502 (not 1 to 6 characters), 18503 (not digits and letters
// only) or 18501 (S<text>.FDT or A<text>.FDT exists in the folder). `text` is
// UTF-8; its length counts characters.
int CheckSaveFileName(const std::string &folder, const std::string &text);

}  // namespace recscope
