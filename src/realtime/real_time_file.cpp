#include "realtime/real_time_file.h"

#include <fcntl.h>
#include <unistd.h>

namespace recscope {

RealTimeFileWriter::~RealTimeFileWriter() { Close(); }

bool RealTimeFileWriter::Open(const std::string &path, int channels) {
  Close();
  fd_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  channels_ = channels;
  path_ = fd_ >= 0 ? path : std::string();
  return fd_ >= 0;
}

void RealTimeFileWriter::Close() {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
  path_.clear();
}

bool RealTimeFileWriter::WriteRecord(std::int32_t slot, const std::vector<std::uint8_t> &bytes) {
  if (fd_ < 0 || slot < 1 || slot > kRealSlotCount) return false;
  const off_t at = static_cast<off_t>(slot - 1) * RealRecordLength(channels_);
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n =
        ::pwrite(fd_, bytes.data() + done, bytes.size() - done, at + static_cast<off_t>(done));
    if (n <= 0) return false;
    done += static_cast<std::size_t>(n);
  }
  return true;
}

bool RealTimeFileWriter::WriteRingSlot(const RealSampleRing &ring, std::int32_t slot) {
  if (ring.channels() != channels_ || !ring.allocated()) return false;
  return WriteRecord(slot, ring.RecordBytes(slot));
}

bool RealTimeFileWriter::WriteBlank(std::int32_t slot) {
  return WriteRecord(
      slot, std::vector<std::uint8_t>(static_cast<std::size_t>(RealRecordLength(channels_)), 0));
}

}  // namespace recscope
