#pragma once
// Joining measurement records of one run that a recorder wrote as several files:
// the files are read, compared with the first, and joined in the order of their
// first times into SC<name>.FDT with the alarm events in AC<name>.FDT. Gaps
// between files are filled with zero records a period apart; overlaps are passed
// over.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "record/record_file_info.h"

namespace recscope {

struct SharedState;

// One chosen file, in selection order.
struct CouplingFile {
  std::string Path;
  std::string Folder;
  bool Binary = false;
  std::int16_t SamplingCode = 0;
  std::int16_t AnalogCount = 0;
  std::int16_t DiCount = 0;
  std::int16_t GroupCount = 0;
  std::vector<std::int16_t> ChannelNos;
  std::vector<std::int16_t> RecordTypes;
  std::vector<std::int16_t> Decimals;
  std::vector<std::int16_t> DiRecordTypes;
  std::int32_t RecordLength = 0;
  std::int32_t DataStart = 0;  // text: before the title line
  std::int32_t FirstTime = 0;
  std::int32_t LastTime = 0;
  std::string AlarmPath;
  int AlarmEncoding = 3;  // 2 binary, 0 text, 3 no alarm file
  std::int32_t AlarmCount = 0;
  std::int32_t Period = 1;
};

// The list of frmFileCoupling: adding a file twice gives 19812, removing with
// none marked 19808. Return 0 when done.
int AddCouplingSelection(std::vector<std::string> &list, const std::string &path);
int RemoveCouplingSelection(std::vector<std::string> &list, int marked);

// Reads the header parts of every file. Returns 0, or 19811 when a file does not
// read as a record.
int ReadCouplingFiles(const SharedState &state, const std::vector<std::string> &paths,
                      std::vector<CouplingFile> &files);

// The targets: the first file's folder, "SC" (or "AC") and the first file's
// name from its third character on (at most nine characters).
struct CouplingTargets {
  std::string Measurement;
  std::string Alarm;
};
CouplingTargets CouplingTargetNames(const std::string &firstPath);

// The findings of the comparison of each later file with the first, and of the
// alarm files' encodings: the message ids in order (each test once a file).
std::vector<int> CouplingFindings(const std::vector<CouplingFile> &files);

// The order of joining: an exchange sort of the indexes by first time.
std::vector<std::size_t> CouplingOrder(const std::vector<CouplingFile> &files);

// Writes the joined measurement file (and the alarm file when any file has one)
// under temporary names; they take the targets' names only when all succeeded.
bool JoinFiles(const std::vector<CouplingFile> &files, const CouplingTargets &targets);

// The whole cmdCoupling after the selection: fewer than 2 files 19809; a failed
// read 19811; an existing target asked with `confirmOverwrite` (19807), No giving
// 19806; findings (MessageId 0, `Findings` not empty); the join: 19810 or 19811.
struct CouplingOutcome {
  int MessageId = 0;
  std::vector<int> Findings;
  std::vector<std::string> Files;
};
CouplingOutcome CoupleFiles(const SharedState &state, const std::vector<std::string> &paths,
                            const std::function<bool(const std::string &target)> &confirmOverwrite);

}  // namespace recscope
