#pragma once
// What the window tests share: one application object, a program folder and a
// per-user store of their own under a temporary folder.
#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

#include "shell/shared_state.h"

namespace recscope::testing {

inline QApplication &App() {
  static int argc = 1;
  static char name[] = "gui_tests";
  static char *argv[] = {name, nullptr};
  // Never destroyed: windows left for deferred deletion must not outlive it at exit.
  static QApplication *app = new QApplication(argc, argv);
  return *app;
}

// A program folder and user store that vanish after the test.
class GuiHome {
 public:
  GuiHome() {
    App();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, store_.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, store_.path());
    SharedState &state = Shared();
    state.ProgramFolder = home_.path().toStdString();
    ResetSharedState(state);
  }
  std::string folder() const { return home_.path().toStdString(); }
  QString path(const QString &name) const { return home_.filePath(name); }

 private:
  QTemporaryDir home_;
  QTemporaryDir store_;
};

}  // namespace recscope::testing
