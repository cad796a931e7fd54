// recscope: the desktop program.
#include <QApplication>
#include <QCommandLineParser>

#include <cstdlib>

#include "shell/home_folder.h"
#include "shell/main_window.h"
#include "shell/shared_state.h"

int main(int argc, char *argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName("Recscope");
  QApplication::setOrganizationName("Recscope");

  QCommandLineParser parser;
  parser.addHelpOption();
  QCommandLineOption homeOption("home", "Program folder (settings, working files).", "DIR");
  parser.addOption(homeOption);
  parser.addPositionalArgument("FILE", "Record files to open.", "[FILE...]");
  parser.process(app);

  recscope::SharedState &state = recscope::Shared();
  state.ProgramFolder = recscope::ResolveHomeFolder(
      parser.value(homeOption).toStdString(), std::getenv("RECSCOPE_HOME"),
      QCoreApplication::applicationDirPath().toStdString());
  recscope::ResetSharedState(state);

  recscope::MainWindow window;
  window.show();
  return app.exec();
}
