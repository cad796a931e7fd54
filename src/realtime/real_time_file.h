#pragma once
// RealTimeFile on disk: the ring's slots as fixed-length records (the record of
// slot s at byte (s - 1) x RealRecordLength), written one at a time.
#include <cstdint>
#include <string>
#include <vector>

#include "realtime/realtime_state.h"

namespace recscope {

// The file opened for writing record by record. Each record goes to the
// operating system in one positioned write before the call returns, so a
// program that is killed afterwards has lost none of it. The file is not cut
// on opening: slots not written keep what they held, and the file grows only
// as far as the highest slot written.
class RealTimeFileWriter {
 public:
  RealTimeFileWriter() = default;
  ~RealTimeFileWriter();
  RealTimeFileWriter(const RealTimeFileWriter &) = delete;
  RealTimeFileWriter &operator=(const RealTimeFileWriter &) = delete;

  bool Open(const std::string &path, int channels);
  bool IsOpen() const { return fd_ >= 0; }
  const std::string &path() const { return path_; }
  void Close();

  // The slot (1..86400) of the ring as it stands in memory. False on a failed
  // or short write.
  bool WriteRingSlot(const RealSampleRing &ring, std::int32_t slot);
  // A blank: a record of zeros.
  bool WriteBlank(std::int32_t slot);

 private:
  bool WriteRecord(std::int32_t slot, const std::vector<std::uint8_t> &bytes);
  int fd_ = -1;
  int channels_ = 0;
  std::string path_;
};

}  // namespace recscope
