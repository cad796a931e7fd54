#include "record/level_fold.h"

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

LevelFiles::LevelFiles(const std::string &programFolder, int slot, int level) {
  valueFd_ = ::open(WorkingFilePath(programFolder, slot, level, false).c_str(), O_RDONLY);
  sumFd_ = ::open(WorkingFilePath(programFolder, slot, level, true).c_str(), O_RDONLY);
}

LevelFiles::~LevelFiles() {
  if (valueFd_ >= 0) ::close(valueFd_);
  if (sumFd_ >= 0) ::close(sumFd_);
}

bool LevelFiles::ReadValueBytes(std::int64_t offset, void *out, std::size_t bytes) const {
  return ReadAt(valueFd_, offset, out, bytes);
}

bool LevelFiles::ReadSumBytes(std::int64_t offset, void *out, std::size_t bytes) const {
  return ReadAt(sumFd_, offset, out, bytes);
}

}  // namespace recscope
