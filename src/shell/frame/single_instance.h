#pragma once
// The previous-instance test: one lock file per program folder in the user's
// runtime folder. A second start on the same folder finds the lock taken.
#include <QString>
#include <memory>

class QLockFile;

namespace recscope {

class InstanceLock {
 public:
  InstanceLock();
  ~InstanceLock();

  // Takes the lock of `homeFolder`; false when another running program holds it.
  bool acquire(const QString &homeFolder);

  // The lock file's path for a program folder.
  static QString lockPath(const QString &homeFolder);

 private:
  std::unique_ptr<QLockFile> lock_;
};

}  // namespace recscope
