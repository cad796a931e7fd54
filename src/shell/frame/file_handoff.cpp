#include "shell/frame/file_handoff.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

#include "shell/frame/main_window.h"

namespace recscope {

namespace {

constexpr int kWaitMs = 3000;

// One path a line, UTF-8; the list ends where the sender closes.
QByteArray Encode(const QStringList &paths) { return paths.join(QChar('\n')).toUtf8() + '\n'; }

QStringList Decode(const QByteArray &bytes) {
  QStringList paths;
  for (const QString &line : QString::fromUtf8(bytes).split(QChar('\n')))
    if (!line.isEmpty()) paths.append(line);
  return paths;
}

}  // namespace

QString HandoffName(const QString &homeFolder) {
  const QByteArray hash =
      QCryptographicHash::hash(QDir::cleanPath(homeFolder).toUtf8(), QCryptographicHash::Sha1)
          .toHex()
          .left(16);
  return QStringLiteral("recscope-files-") + QString::fromLatin1(hash);
}

bool HandFilesToRunningProgram(const QString &homeFolder, const QStringList &paths) {
  QLocalSocket socket;
  socket.connectToServer(HandoffName(homeFolder));
  if (!socket.waitForConnected(kWaitMs)) return false;
  socket.write(Encode(paths));
  if (!socket.waitForBytesWritten(kWaitMs)) return false;
  socket.disconnectFromServer();
  if (socket.state() != QLocalSocket::UnconnectedState) socket.waitForDisconnected(kWaitMs);
  return true;
}

QLocalServer *ListenForHandedFiles(const QString &homeFolder, MainWindow &window) {
  auto *server = new QLocalServer(&window);
  const QString name = HandoffName(homeFolder);
  // A name left by a run that crashed would refuse the listen: this run holds the
  // folder's lock, so the name is ours.
  QLocalServer::removeServer(name);
  server->listen(name);
  QObject::connect(server, &QLocalServer::newConnection, &window, [server, &window] {
    while (QLocalSocket *socket = server->nextPendingConnection()) {
      auto *received = new QByteArray;
      QObject::connect(socket, &QLocalSocket::readyRead, socket,
                       [socket, received] { received->append(socket->readAll()); });
      QObject::connect(socket, &QLocalSocket::disconnected, &window, [socket, received, &window] {
        received->append(socket->readAll());
        const QStringList paths = Decode(*received);
        delete received;
        socket->deleteLater();
        if (paths.isEmpty()) return;
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
        window.raise();
        window.activateWindow();
        window.openFiles(paths);
      });
    }
  });
  return server;
}

}  // namespace recscope
