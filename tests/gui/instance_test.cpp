#include <gtest/gtest.h>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <functional>

#include "gui_test_support.h"
#include "shell/frame/single_instance.h"

using namespace recscope;

TEST(InstanceLock, SecondLockOnTheSameFolderIsRefused) {
  recscope::testing::App();
  QTemporaryDir home;
  InstanceLock first;
  InstanceLock second;
  InstanceLock other;
  QTemporaryDir otherHome;
  ASSERT_TRUE(first.acquire(home.path()));
  EXPECT_FALSE(second.acquire(home.path()));
  EXPECT_TRUE(other.acquire(otherHome.path()));
  EXPECT_NE(InstanceLock::lockPath(home.path()), InstanceLock::lockPath(otherHome.path()));
}

TEST(InstanceLock, LockIsFreeAgainAfterTheFirstEnds) {
  recscope::testing::App();
  QTemporaryDir home;
  {
    InstanceLock first;
    ASSERT_TRUE(first.acquire(home.path()));
  }
  InstanceLock again;
  EXPECT_TRUE(again.acquire(home.path()));
}

// A second start of the program on the same folder returns at once with status
// 0 and opens no window, while the first goes on running.
TEST(InstanceLock, SecondStartOfTheProgramDoesNothing) {
  recscope::testing::App();
  QTemporaryDir home;
  QTemporaryDir store;
  const QString program = QStringLiteral(RECSCOPE_BINARY_DIR "/bin/recscope");
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert("QT_QPA_PLATFORM", "offscreen");
  env.insert("XDG_CONFIG_HOME", store.path());

  QProcess first;
  first.setProcessEnvironment(env);
  first.start(program, {"--home", home.path()});
  ASSERT_TRUE(first.waitForStarted());
  // The first start has stood up once its settings file is in place.
  for (int i = 0; i < 100 && !QFile::exists(home.filePath("VIEWERCOM.INI")); ++i)
    QThread::msleep(50);
  ASSERT_TRUE(QFile::exists(home.filePath("VIEWERCOM.INI")));

  QProcess second;
  second.setProcessEnvironment(env);
  second.start(program, {"--home", home.path()});
  ASSERT_TRUE(second.waitForFinished(10000));
  EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(second.exitCode(), 0);
  EXPECT_EQ(first.state(), QProcess::Running);
  // The second start wrote no stop line either: it never had a window.
  EXPECT_FALSE(QFile::exists(home.filePath("LogMsg.txt")));

  first.kill();
  first.waitForFinished();
}

namespace {

QProcessEnvironment ProgramEnvironment(const QTemporaryDir &store) {
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert("QT_QPA_PLATFORM", "offscreen");
  env.insert("XDG_CONFIG_HOME", store.path());
  return env;
}

bool WaitFor(const std::function<bool()> &ready) {
  for (int i = 0; i < 200 && !ready(); ++i) QThread::msleep(50);
  return ready();
}

void Touch(const QString &path) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("left");
}

}  // namespace

// Working files of a run that did not end normally are gone once a start holds
// the folder; other files of the folder stay.
TEST(ProgramStart, DeletesWorkingFilesThatARunLeftBehind) {
  recscope::testing::App();
  QTemporaryDir home;
  QTemporaryDir store;
  for (const char *name : {"Operation_1_1.OPL", "Operation_1_COM_1.OPL", "Operation_16_2.OPL"})
    Touch(home.filePath(name));
  Touch(home.filePath("Operation_notes.txt"));

  QProcess program;
  program.setProcessEnvironment(ProgramEnvironment(store));
  program.start(QStringLiteral(RECSCOPE_BINARY_DIR "/bin/recscope"), {"--home", home.path()});
  ASSERT_TRUE(program.waitForStarted());
  ASSERT_TRUE(WaitFor([&] { return QFile::exists(home.filePath("VIEWERCOM.INI")); }));
  EXPECT_FALSE(QFile::exists(home.filePath("Operation_1_1.OPL")));
  EXPECT_FALSE(QFile::exists(home.filePath("Operation_1_COM_1.OPL")));
  EXPECT_FALSE(QFile::exists(home.filePath("Operation_16_2.OPL")));
  EXPECT_TRUE(QFile::exists(home.filePath("Operation_notes.txt")));
  program.kill();
  program.waitForFinished();
}

// A second start finds the lock taken and leaves the working files of the run
// that holds it alone.
TEST(ProgramStart, SecondStartLeavesTheWorkingFilesOfTheRunningProgram) {
  recscope::testing::App();
  QTemporaryDir home;
  QTemporaryDir store;
  const QString program = QStringLiteral(RECSCOPE_BINARY_DIR "/bin/recscope");
  QProcess first;
  first.setProcessEnvironment(ProgramEnvironment(store));
  first.start(program,
              {"--home", home.path(), QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT")});
  ASSERT_TRUE(first.waitForStarted());
  const QString level = home.filePath("Operation_1_1.OPL");
  ASSERT_TRUE(WaitFor([&] { return QFile::exists(level); }));

  QProcess second;
  second.setProcessEnvironment(ProgramEnvironment(store));
  second.start(program, {"--home", home.path()});
  ASSERT_TRUE(second.waitForFinished(10000));
  EXPECT_EQ(second.exitCode(), 0);
  EXPECT_TRUE(QFile::exists(level));
  EXPECT_TRUE(QFile::exists(home.filePath("Operation_1_COM_1.OPL")));
  EXPECT_EQ(first.state(), QProcess::Running);
  first.kill();
  first.waitForFinished();
}

// A record named to a second start opens in the program that runs: its slot 1
// gets its working files, and the second start ends at once, showing nothing.
TEST(ProgramStart, SecondStartHandsItsFilesToTheRunningProgram) {
  recscope::testing::App();
  QTemporaryDir home;
  QTemporaryDir store;
  const QString program = QStringLiteral(RECSCOPE_BINARY_DIR "/bin/recscope");
  QProcess first;
  first.setProcessEnvironment(ProgramEnvironment(store));
  first.start(program, {"--home", home.path()});
  ASSERT_TRUE(first.waitForStarted());
  ASSERT_TRUE(WaitFor([&] { return QFile::exists(home.filePath("VIEWERCOM.INI")); }));
  const QString level = home.filePath("Operation_1_1.OPL");
  EXPECT_FALSE(QFile::exists(level));

  QProcess second;
  second.setProcessEnvironment(ProgramEnvironment(store));
  QString sample = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT");
  // The listener may come up a moment after the lock: try again until it takes them.
  bool opened = false;
  for (int attempt = 0; attempt < 20 && !opened; ++attempt) {
    second.start(program, {"--home", home.path(), sample});
    ASSERT_TRUE(second.waitForFinished(10000));
    EXPECT_EQ(second.exitCode(), 0);
    opened = WaitFor([&] { return QFile::exists(level); });
  }
  EXPECT_TRUE(opened);
  EXPECT_EQ(first.state(), QProcess::Running);
  first.kill();
  first.waitForFinished();
}
