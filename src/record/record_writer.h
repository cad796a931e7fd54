#pragma once
// Writing measurement files in both encodings: the header region (header,
// channel, DI and group tables and the gap before the data) from a
// RecordFileInfo, and data records from a time, the raw units of the analog
// channels and the states of the digital inputs.
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "record/record_file_info.h"

namespace recscope {

// One data record as the writers take it. `Units` holds the analog units in
// table order (two for a RecordType 0 channel: minimum, then maximum). `DiStates`
// holds two states a DI (first and second value of the period); a DI of another
// RecordType uses only the first.
struct DataRecord {
  std::int32_t Time = 0;
  std::vector<std::int16_t> Units;
  std::vector<std::uint8_t> DiStates;
};

// Group records that a file of this group count holds: 8 only for 8, else 4.
int GroupTableRecords(int groupCount);

// Units of one data record: analog units (two for RecordType 0), then the DI units
// of the text encoding (two for a DI of RecordType 0, else one).
int AnalogUnitCount(const RecordFileInfo &info);
int TextDiUnitCount(const RecordFileInfo &info);

// Bytes of one data record in the encoding (2 binary, 1 and 0 text).
std::int32_t GetRecordLength(const RecordFileInfo &info, int fileFormat);

class RecordWriter {
 public:
  // The fields of `info` are written as they stand (InputType, exponents and
  // scale ends as given); AnalogCount and DiCount follow the tables' sizes.
  RecordWriter(const RecordFileInfo &info, int fileFormat);

  // Header, tables and the gap before the first data record.
  std::string HeaderBytes() const;
  std::int32_t RecordLength() const { return recordLength_; }
  // Appends one data record. Missing units are written 0.
  void AppendRecord(std::string &out, const DataRecord &record) const;
  void AppendRecord(std::string &out, std::int32_t time, std::span<const std::int16_t> units,
                    std::span<const std::uint8_t> diStates) const;

 private:
  RecordFileInfo info_;
  int format_;
  std::int32_t recordLength_;
};

// A whole measurement file: header region and records. Returns false when the
// file could not be written (nothing is left behind then).
bool WriteRecordFile(const std::string &path, const RecordFileInfo &info, int fileFormat,
                     const std::vector<DataRecord> &records);

// Writes `bytes` as the whole file at `path`; false (and no file) on failure.
bool WriteWholeFile(const std::string &path, const std::string &bytes);

}  // namespace recscope
