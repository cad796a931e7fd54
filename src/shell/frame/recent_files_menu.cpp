#include "shell/frame/recent_files_menu.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>
#include <QSettings>

#include "shell/frame/control_tips.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/recent_files.h"

namespace recscope {

namespace {

constexpr int kFileGone = 18905;
const char *const kKey = "Settings/RecentFiles";

std::vector<std::string> ToList(const QStringList &paths) {
  std::vector<std::string> list;
  for (const QString &path : paths) list.push_back(path.toStdString());
  return list;
}

void Store(const std::vector<std::string> &list) {
  QStringList paths;
  for (const std::string &path : list) paths.append(QString::fromStdString(path));
  QSettings("Recscope", "Recscope").setValue(kKey, paths);
}

void Forget(const QString &path) {
  Store(WithoutRecentFile(ToList(RecentFiles()), path.toStdString()));
}

void Fill(MainWindow &window, QMenu *menu) {
  menu->clear();
  const QStringList paths = RecentFiles();
  for (int i = 0; i < paths.size(); ++i) {
    const QString path = paths[i];
    QAction *entry = menu->addAction(QString::fromStdString(
        RecentFileEntryText(static_cast<std::size_t>(i), path.toStdString())));
    entry->setObjectName(QStringLiteral("mnuFileRecent_%1").arg(i + 1));
    QObject::connect(entry, &QAction::triggered, &window, [&window, path] {
      if (!QFileInfo(path).isFile()) {
        ShowMessage(&window, kFileGone);
        Forget(path);
        return;
      }
      window.openFiles({path});
    });
  }
  menu->setEnabled(!paths.isEmpty());
}

}  // namespace

QStringList RecentFiles() { return QSettings("Recscope", "Recscope").value(kKey).toStringList(); }

void RememberRecentFile(const QString &path) {
  Store(WithRecentFile(ToList(RecentFiles()), path.toStdString()));
}

void InstallRecentFilesMenu(MainWindow &window, QMenu *fileMenu) {
  auto *menu = new QMenu(ControlCaption(QStringLiteral("mnuFileRecent")), fileMenu);
  menu->setObjectName(QStringLiteral("mnuFileRecent"));
  QObject::connect(menu, &QMenu::aboutToShow, menu, [&window, menu] { Fill(window, menu); });
  Fill(window, menu);
  fileMenu->addMenu(menu);
}

}  // namespace recscope
