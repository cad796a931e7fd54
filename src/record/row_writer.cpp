#include "record/row_writer.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace recscope {

namespace {

bool WriteAll(int fd, const char *p, std::size_t bytes) {
  while (bytes > 0) {
    const ssize_t n = ::write(fd, p, bytes);
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    p += n;
    bytes -= static_cast<std::size_t>(n);
  }
  return true;
}

}  // namespace

RowWriter::~RowWriter() {
  {
    // Left without Finish: the build failed and its files go, so nothing more is written.
    std::lock_guard lock(mutex_);
    failed_ = true;
  }
  Stop();
  for (auto &f : files_)
    if (f.fd >= 0) ::close(f.fd);
}

int RowWriter::Open(const std::string &path, std::size_t bufferBytes) {
  // Files are all opened before the first row, so the thread never sees the list grow.
  if (thread_.joinable()) return -1;
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (fd < 0) return -1;
  File f;
  f.fd = fd;
  f.buffer[0].resize(bufferBytes);
  f.buffer[1].resize(bufferBytes);
  files_.push_back(std::move(f));
  return static_cast<int>(files_.size()) - 1;
}

char *RowWriter::Room(int file, std::size_t bytes, std::size_t &room) {
  File &f = files_[static_cast<size_t>(file)];
  const std::size_t size = f.buffer[0].size();
  if (f.used + bytes > size) {
    Hand(file);
    std::unique_lock lock(mutex_);
    done_.wait(lock, [&] { return !f.busy[f.current] || failed_; });
  }
  {
    std::lock_guard lock(mutex_);
    if (failed_) return nullptr;
  }
  room = size - f.used;
  return f.buffer[f.current].data() + f.used;
}

void RowWriter::Hand(int file) {
  File &f = files_[static_cast<size_t>(file)];
  if (f.used == 0) return;
  {
    std::lock_guard lock(mutex_);
    f.busy[f.current] = true;
    jobs_.push_back({file, f.current, f.used});
    if (!thread_.joinable()) thread_ = std::thread([this] { Run(); });
  }
  wake_.notify_one();
  f.current ^= 1;
  f.used = 0;
}

void RowWriter::Run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    wake_.wait(lock, [&] { return stop_ || !jobs_.empty(); });
    if (jobs_.empty()) return;  // stopped with nothing left to write
    const Job job = jobs_.front();
    jobs_.pop_front();
    File &f = files_[static_cast<size_t>(job.file)];
    const char *data = f.buffer[job.buffer].data();
    const bool skip = failed_;
    lock.unlock();
    const bool ok = skip || WriteAll(f.fd, data, job.bytes);
    lock.lock();
    if (!ok) failed_ = true;
    f.busy[job.buffer] = false;
    done_.notify_all();
  }
}

void RowWriter::Stop() {
  {
    std::lock_guard lock(mutex_);
    stop_ = true;
  }
  wake_.notify_all();
  if (thread_.joinable()) thread_.join();
}

bool RowWriter::Finish() {
  for (size_t i = 0; i < files_.size(); ++i) Hand(static_cast<int>(i));
  Stop();  // the thread drains the queue before it ends
  bool ok = !failed_;
  for (auto &f : files_) {
    if (f.fd >= 0 && ::close(f.fd) != 0) ok = false;
    f.fd = -1;
  }
  return ok;
}

}  // namespace recscope
