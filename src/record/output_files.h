#pragma once
// Files that a command writes as its result: each is made under a temporary name
// in its own folder and takes its final name only when the whole command has
// succeeded, so a failed or interrupted command leaves no half-written result.
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace recscope {

// True when something exists at `path` (file, folder or link).
bool PathExists(const std::string &path);

// A buffered binary writer into one file; every failure is remembered.
class OutputFile {
 public:
  OutputFile() = default;
  ~OutputFile();
  OutputFile(const OutputFile &) = delete;
  OutputFile &operator=(const OutputFile &) = delete;

  bool Open(const std::string &path);
  // Room for `bytes` more bytes at the end of the buffer; flushes first when needed.
  char *Reserve(std::size_t bytes);
  void Commit(char *end) { used_ = static_cast<std::size_t>(end - buffer_.data()); }
  void Write(const char *data, std::size_t size);
  void Write(const std::string &text) { Write(text.data(), text.size()); }
  // Flushes and closes; false when any write or the close failed.
  bool Close();
  bool Ok() const { return ok_; }

 private:
  bool Flush();
  std::FILE *file_ = nullptr;
  std::vector<char> buffer_;
  std::size_t used_ = 0;
  bool ok_ = true;
};

// The results of one command. Each target gets a temporary name beside it; the
// set deletes its temporaries when it ends without Publish, and Publish gives
// every temporary its final name, undoing all of them when one fails.
class OutputSet {
 public:
  ~OutputSet();
  // The temporary name for `target` (the target is remembered in order). With
  // `replace` an existing target is overwritten on publishing; without it an
  // existing target makes the publish fail.
  std::string Add(const std::string &target, bool replace = false);
  // Renames all temporaries to their targets. False when any rename failed: then
  // the targets this set had already made are removed and the temporaries are gone.
  bool Publish();
  // Deletes every temporary (and nothing else).
  void Discard();
  const std::vector<std::string> &Targets() const { return targets_; }

 private:
  std::vector<std::string> targets_;
  std::vector<std::string> temporaries_;
  std::vector<bool> replace_;
  bool published_ = false;
};

}  // namespace recscope
