// recscope: the desktop program.
#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QTimer>

#include <cstdlib>

#include "app/desktop_commands.h"
#include "app/program_home.h"
#include "record/working_files.h"
#include "shell/frame/file_handoff.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/frame/single_instance.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"

int main(int argc, char *argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName("Recscope");
  QApplication::setOrganizationName("Recscope");
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/recscope.svg")));

  QCommandLineParser parser;
  parser.addHelpOption();
  QCommandLineOption homeOption("home", "Program folder (settings, working files).", "DIR");
  parser.addOption(homeOption);
  parser.addPositionalArgument("FILE", "Record files to open.", "[FILE...]");
  parser.process(app);

  const std::string home = recscope::ProgramHome(parser.value(homeOption).toStdString());
  recscope::InstallInitSet(home);

  QStringList files;
  for (const QString &file : parser.positionalArguments())
    files.append(QString::fromStdString(recscope::AbsolutePath(file.toStdString())));

  // A program already running on this folder keeps it: a second start shows
  // nothing and hands the files it was given to the first.
  recscope::InstanceLock instance;
  if (!instance.acquire(QString::fromStdString(home))) {
    if (!files.isEmpty()) recscope::HandFilesToRunningProgram(QString::fromStdString(home), files);
    return 0;
  }
  // The lock proves that no other run uses this folder: working files found now
  // are what a run that did not end normally left behind.
  recscope::DeleteStaleWorkingFiles(home);
  recscope::SetMessageService(recscope::ShowMessageBox);

  recscope::SharedState &state = recscope::Shared();
  state.ProgramFolder = home;
  recscope::ResetSharedState(state);  // also fixes ComWorkPath and EndMarkerPath

  recscope::MainWindow window;
  recscope::ConnectDesktopCommands(window);
  window.load();
  window.show();

  recscope::ListenForHandedFiles(QString::fromStdString(home), window);
  if (!files.isEmpty())
    QTimer::singleShot(0, &window, [&window, files] { window.openFiles(files); });
  return app.exec();
}
