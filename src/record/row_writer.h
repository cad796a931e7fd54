#pragma once
// Output files of the level build, written by a second thread. Each file has
// two buffers: rows are made in one while the other is being written, so the
// making of rows and the writing overlap and memory stays at two buffers a file.
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace recscope {

class RowWriter {
 public:
  RowWriter() = default;
  ~RowWriter();  // stops the thread and closes the files; written bytes stay
  RowWriter(const RowWriter &) = delete;
  RowWriter &operator=(const RowWriter &) = delete;

  // Creates (or empties) the file; its buffers hold `bufferBytes` each. Returns
  // the file's number, or -1 when it cannot be opened.
  int Open(const std::string &path, std::size_t bufferBytes);

  // Room for at least `bytes` in the file's current buffer (at most its size):
  // a full buffer is passed to the writing thread first. `room` gets the bytes
  // free there. Null once a write has failed.
  char *Room(int file, std::size_t bytes, std::size_t &room);
  // The first `bytes` of the room are rows now.
  void Commit(int file, std::size_t bytes) { files_[static_cast<size_t>(file)].used += bytes; }

  // Writes what is left, waits for the thread and closes every file. False when
  // any write or close failed.
  bool Finish();

 private:
  struct File {
    int fd = -1;
    std::vector<char> buffer[2];
    bool busy[2] = {false, false};
    int current = 0;
    std::size_t used = 0;
  };
  struct Job {
    int file;
    int buffer;
    std::size_t bytes;
  };

  void Hand(int file);
  void Run();
  void Stop();

  std::vector<File> files_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::condition_variable done_;
  std::deque<Job> jobs_;
  bool stop_ = false;
  bool failed_ = false;
  std::thread thread_;
};

}  // namespace recscope
