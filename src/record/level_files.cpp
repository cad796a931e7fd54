#include "record/level_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "record/working_files.h"

namespace recscope {

namespace {

bool ReadAt(int fd, std::int64_t offset, void *out, std::size_t bytes) {
  if (fd < 0 || offset < 0) return false;
  auto *p = static_cast<char *>(out);
  std::size_t done = 0;
  while (done < bytes) {
    ssize_t n = ::pread(fd, p + done, bytes - done, static_cast<off_t>(offset + done));
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    if (n == 0) break;
    done += static_cast<std::size_t>(n);
  }
  // Past the end of a file there is nothing: the rest reads as zeros.
  if (done < bytes) std::memset(p + done, 0, bytes - done);
  return true;
}

}  // namespace

std::int64_t RecordsPerLevelRow(int level) {
  std::int64_t records = 1;
  for (int i = 0; i < level; ++i) records *= 10;
  return records;
}

LevelFiles::LevelFiles(const std::string &programFolder, int slot, int level, int channelTotal,
                       Parts parts)
    : channelTotal_(channelTotal), parts_(parts) {
  valueFd_ = ::open(WorkingFilePath(programFolder, slot, level + 1, false).c_str(), O_RDONLY);
  if (parts == kValuesAndSums)
    sumFd_ = ::open(WorkingFilePath(programFolder, slot, level + 1, true).c_str(), O_RDONLY);
}

LevelFiles::~LevelFiles() {
  if (valueFd_ >= 0) ::close(valueFd_);
  if (sumFd_ >= 0) ::close(sumFd_);
}

bool LevelFiles::ReadValueRows(std::int64_t firstRow, std::int64_t count, std::int16_t *out) const {
  if (count <= 0) return count == 0;
  return ReadAt(valueFd_, ValueRowBytes(channelTotal_) * firstRow, out,
                static_cast<std::size_t>(ValueRowBytes(channelTotal_) * count));
}

bool LevelFiles::ReadSumRows(std::int64_t firstRow, std::int64_t count, std::int32_t *out) const {
  if (count <= 0) return count == 0;
  return ReadAt(sumFd_, SumRowBytes(channelTotal_) * firstRow, out,
                static_cast<std::size_t>(SumRowBytes(channelTotal_) * count));
}

bool LevelFiles::ReadSumRowsAtValueOffset(std::int64_t firstRow, std::int64_t count,
                                          std::int32_t *out) const {
  if (count <= 0) return count == 0;
  return ReadAt(sumFd_, ValueRowBytes(channelTotal_) * firstRow, out,
                static_cast<std::size_t>(SumRowBytes(channelTotal_) * count));
}

}  // namespace recscope
