#pragma once
// The recorder's setup read over the command driver into the head of a new
// measurement record: a pair of files S<n>.FDT and A<n>.FDT in the program
// folder. User units, header, channels with their alarms, digital inputs and
// groups are read group by group by the names of the register map.
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "link/command_driver.h"
#include "record/record_file_info.h"
#include "shell/init_set.h"

namespace recscope {

// The unit texts of the link: codes 0 to 155 of the catalogue and the twelve
// user units at 156 to 167, each of 7 characters.
inline constexpr int kLinkUnitCount = 168;

// The first n from 100000 to 199999 for which neither S<n>.FDT nor A<n>.FDT
// stands in `folder` gives "S<n>.FDT"; no free number gives "".
std::string ComNewFileName(const std::string &folder);

// The new record pair as the read leaves it. The files stay open on success,
// for the monitor to go on writing; Close() ends them.
struct ParameterRecord {
  std::string MeasurementPath;
  std::string AlarmPath;
  std::FILE *Measurement = nullptr;  // file 1
  std::FILE *Alarm = nullptr;        // file 2
  // The channel, DI and group records as read, as the monitor keeps them: the
  // fourth alarm's value here is the recorder's own.
  RecordFileInfo Record;
  std::vector<std::string> UnitTable;  // kLinkUnitCount texts
  void Close();
};

// What the read asks of its caller.
struct ParameterReadHooks {
  // A failed request: shows the error of `code` and the question
  // "処理を中止しますか？"; returns 6 for Yes (abort), anything else for No.
  std::function<int(int code)> ComErrorDialog;
  // No free file number: says "File name does not exist.".
  std::function<void()> NoFileName;
};

// The whole read. True with the pair written and open; false when the operator
// gave up (both files deleted) or no name was free. A failed read answered No
// deletes the pair and reads everything again into a fresh pair.
bool ComParameterRead(CommandDriver &driver, const RegisterMap &map, const std::string &folder,
                      const ParameterReadHooks &hooks, ParameterRecord &record);

}  // namespace recscope
