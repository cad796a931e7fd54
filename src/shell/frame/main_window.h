#pragma once
#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <QStringList>
#include <functional>

class QAction;
class QActionGroup;
class QLabel;
class QMdiArea;
class QMenu;
class QToolBar;

namespace recscope {

class WaitDialog;

// frmMain: the frame that holds every child window, with the menus, the tool bar
// and the status bar of the program. It shows and routes; what a command does
// lies with the subsystem that registers a handler for it.
class MainWindow : public QMainWindow {
  Q_OBJECT
 public:
  explicit MainWindow(QWidget *parent = nullptr);

  QMdiArea *mdiArea() const { return mdi_; }

  // The rest of the load once the program folder is known: separators, print,
  // date and direction settings, slots, menu set, window place, register map and
  // the fetch settings check.
  void load();

  // The action of a command by its control name (a submenu gives its menu
  // action), or nullptr.
  QAction *command(const QString &controlName) const;

  // Runs a command as its menu entry does.
  void runCommand(const QString &controlName);

  // Runs what a tool button with `key` stands for; an unknown key does nothing.
  void dispatchToolKey(const QString &key);

  // A subsystem takes over a command. For commands the frame handles itself
  // (date format, direction, view toggles, scale count) the handler runs after
  // the frame's own part, to redraw or rebuild the views.
  void setCommandHandler(const QString &controlName, std::function<void()> handler);

  // Files named on the command line or dropped on the window.
  void setOpenFilesHandler(std::function<void(const QStringList &)> handler);
  void openFiles(const QStringList &paths);

  // Applies the menu set of the present open counts.
  void UpdateMainMenus();

  // Sets the text of the automatic fetch status panel.
  void setAutoFetchStatus(const QString &text);

 protected:
  void closeEvent(QCloseEvent *event) override;
  void dragEnterEvent(QDragEnterEvent *event) override;
  void dropEvent(QDropEvent *event) override;

 private:
  void buildMenus();
  void buildToolBar();
  void buildStatusBar();
  QAction *addCommand(QMenu *menu, const char *name, int captionId);
  QAction *addEnglishCommand(QMenu *menu, const char *name, const char *caption);
  QMenu *addMenu(QMenu *parent, const char *name, int captionId);
  QMenu *addEnglishMenu(QMenu *parent, const char *name, const char *caption);
  void addHiddenCommand(QMenu *menu, const char *name, int captionId);
  void setCommandOn(const QString &controlName, bool on);

  void chooseDateFormat(int dateFormatNo);
  void chooseDirection(bool vertical);
  void chooseScaleCount(int count);
  void toggleView(const QString &controlName);
  void tileWindows(bool sideBySide);
  void showVersion();
  void closeActiveChild();
  void callHandler(const QString &controlName);

  QMdiArea *mdi_ = nullptr;
  QToolBar *toolBar_ = nullptr;
  QLabel *autoFetchPanel_ = nullptr;
  QHash<QString, QAction *> commands_;
  QHash<QString, QMenu *> menus_;
  QHash<QString, std::function<void()>> handlers_;
  std::function<void(const QStringList &)> openFilesHandler_;
  QPointer<WaitDialog> waitDialog_;
  bool fetchWaitOver_ = false;
};

}  // namespace recscope
