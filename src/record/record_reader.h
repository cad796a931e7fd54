#pragma once
// Reading a measurement file in any of its three encodings into a
// RecordFileInfo: header, channel, DI and group tables, and the data limits with
// the levels. Every size and offset is checked before it is read.
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "record/record_file_info.h"

namespace recscope {

// Where a reader takes bytes from: a file on disk or bytes in memory.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  virtual std::int64_t Length() const = 0;
  // Exactly `size` bytes at `offset` into `out`; false when the file has fewer.
  virtual bool Read(std::int64_t offset, std::size_t size, std::string &out) const = 0;
};

class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}
  std::int64_t Length() const override { return static_cast<std::int64_t>(bytes_.size()); }
  bool Read(std::int64_t offset, std::size_t size, std::string &out) const override;

 private:
  std::string_view bytes_;
};

class FileSource : public ByteSource {
 public:
  explicit FileSource(const std::string &path);
  ~FileSource() override;
  FileSource(const FileSource &) = delete;
  FileSource &operator=(const FileSource &) = delete;
  bool IsOpen() const { return file_ != nullptr; }
  std::int64_t Length() const override { return length_; }
  bool Read(std::int64_t offset, std::size_t size, std::string &out) const override;

 private:
  std::FILE *file_ = nullptr;
  std::int64_t length_ = 0;
};

// The encoding from the bytes at offsets 102 and 110: 2 binary, 1 text with
// digital inputs, 0 older text. A byte beyond the end counts as 0.
int DetectFileFormat(const ByteSource &source);

// The level plan of the shared state, handed to the data limits step.
struct LevelPlan {
  int levelBase = 10;
  std::int32_t levelRowLimit = 6000;
};

// Runs the read steps of the encoding in `info.FileFormat` in order (header,
// channel table, DI table, group table, data limits with the levels), each only
// when the one before left the file valid. `info.FilePath` and `FileLength`
// are the caller's. `period` keeps its value for a sampling code outside the
// table. Returns -1 when valid, otherwise the result number of the failure.
int ReadRecordTables(const ByteSource &source, RecordFileInfo &info, std::int32_t &period,
                     const LevelPlan &plan = {});

// The same for a whole file in memory: detects the encoding and sets FileFormat
// and FileLength first.
int ReadRecordBytes(std::string_view bytes, RecordFileInfo &info, std::int32_t &period,
                    const LevelPlan &plan = {});

}  // namespace recscope
