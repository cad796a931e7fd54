#include "shell/frame/single_instance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLockFile>
#include <QStandardPaths>

namespace recscope {

InstanceLock::InstanceLock() = default;
InstanceLock::~InstanceLock() = default;

QString InstanceLock::lockPath(const QString &homeFolder) {
  QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (folder.isEmpty() || !QDir(folder).exists()) folder = QDir::tempPath();
  const QByteArray hash =
      QCryptographicHash::hash(QDir::cleanPath(homeFolder).toUtf8(), QCryptographicHash::Sha1)
          .toHex()
          .left(16);
  return folder + "/recscope-" + QString::fromLatin1(hash) + ".lock";
}

bool InstanceLock::acquire(const QString &homeFolder) {
  lock_ = std::make_unique<QLockFile>(lockPath(homeFolder));
  lock_->setStaleLockTime(0);  // a lock is stale only when its process is gone
  return lock_->tryLock(0);
}

}  // namespace recscope
