#pragma once
// What every screenshot tool starts from: a program folder and a per-user store
// of its own, so that a picture never reads or changes the developer's settings.
#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>

#include "shell/shared_state.h"

namespace recscope::tools {

struct ScreenshotHome {
  ScreenshotHome() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, store.path());
    Shared().ProgramFolder = home.path().toStdString();
    ResetSharedState(Shared());
  }
  QTemporaryDir home;
  QTemporaryDir store;
};

// Lets the shown windows lay themselves out and paint before a picture is taken.
inline void SettleWindows() {
  for (int i = 0; i < 20; ++i) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

}  // namespace recscope::tools
