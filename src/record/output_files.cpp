#include "record/output_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace recscope {

namespace {

constexpr std::size_t kBufferBytes = 8u << 20;

std::string TemporaryNameFor(const std::string &target, std::size_t index) {
  const std::filesystem::path path(target);
  const std::string name = "." + path.filename().string() + ".part" + std::to_string(::getpid()) +
                           "_" + std::to_string(index);
  return (path.parent_path() / name).string();
}

// Moves `from` to `to`; without `replace` an existing `to` makes it fail.
bool MoveInto(const std::string &from, const std::string &to, bool replace) {
  if (replace) return std::rename(from.c_str(), to.c_str()) == 0;
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // A file system without the no-replace rename: a hard link refuses an existing name.
  if (::link(from.c_str(), to.c_str()) != 0) return false;
  ::unlink(from.c_str());
  return true;
}

}  // namespace

bool PathExists(const std::string &path) {
  std::error_code error;
  return std::filesystem::symlink_status(path, error).type() !=
             std::filesystem::file_type::not_found &&
         !error;
}

OutputFile::~OutputFile() {
  if (file_) std::fclose(file_);
}

bool OutputFile::Open(const std::string &path) {
  file_ = std::fopen(path.c_str(), "wb");
  ok_ = file_ != nullptr;
  buffer_.resize(kBufferBytes);
  used_ = 0;
  return ok_;
}

bool OutputFile::Flush() {
  if (!file_) return false;
  if (used_ > 0 && std::fwrite(buffer_.data(), 1, used_, file_) != used_) ok_ = false;
  used_ = 0;
  return ok_;
}

char *OutputFile::Reserve(std::size_t bytes) {
  if (used_ + bytes > buffer_.size()) {
    Flush();
    if (bytes > buffer_.size()) buffer_.resize(bytes);
  }
  return buffer_.data() + used_;
}

void OutputFile::Write(const char *data, std::size_t size) {
  char *at = Reserve(size);
  std::memcpy(at, data, size);
  used_ += size;
}

bool OutputFile::Close() {
  if (!file_) return false;
  Flush();
  if (std::fclose(file_) != 0) ok_ = false;
  file_ = nullptr;
  return ok_;
}

OutputSet::~OutputSet() {
  if (!published_) Discard();
}

std::string OutputSet::Add(const std::string &target, bool replace) {
  targets_.push_back(target);
  replace_.push_back(replace);
  temporaries_.push_back(TemporaryNameFor(target, temporaries_.size()));
  return temporaries_.back();
}

void OutputSet::Discard() {
  for (const std::string &t : temporaries_) std::remove(t.c_str());
}

bool OutputSet::Publish() {
  std::size_t done = 0;
  for (; done < targets_.size(); ++done)
    if (!MoveInto(temporaries_[done], targets_[done], replace_[done])) break;
  if (done == targets_.size()) {
    published_ = true;
    return true;
  }
  for (std::size_t i = 0; i < done; ++i) std::remove(targets_[i].c_str());
  Discard();
  published_ = true;
  return false;
}

}  // namespace recscope
