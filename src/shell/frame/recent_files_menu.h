#pragma once
// The file menu's list of the records opened last, kept in the per-user store
// (`Settings`, `RecentFiles`), newest first.
#include <QStringList>

class QMenu;

namespace recscope {

class MainWindow;

// The list as the store holds it.
QStringList RecentFiles();

// Puts a record that has just opened at the head of the list.
void RememberRecentFile(const QString &path);

// The submenu mnuFileRecent of the file menu, filled each time it opens. An entry
// opens its record through the window's open route; a record that has gone shows
// message 18905 and leaves the list.
void InstallRecentFilesMenu(MainWindow &window, QMenu *fileMenu);

}  // namespace recscope
