#pragma once
// Files named to a second start of the program go to the one already running on
// the same program folder: the second start hands them over and ends, showing
// nothing, and the first opens them as if they had been dropped on it.
#include <QString>
#include <QStringList>

class QLocalServer;

namespace recscope {

class MainWindow;

// The name both sides use for a program folder.
QString HandoffName(const QString &homeFolder);

// Sends the absolute paths to the running program; true when it took them.
bool HandFilesToRunningProgram(const QString &homeFolder, const QStringList &paths);

// Listens for handed files and opens them in `window`, which then comes to the
// front. The server lives as long as the window.
QLocalServer *ListenForHandedFiles(const QString &homeFolder, MainWindow &window);

}  // namespace recscope
