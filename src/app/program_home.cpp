#include "app/program_home.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <cstdlib>

#include "shell/home_folder.h"

namespace recscope {

std::string ProgramHome(const std::string &option) {
  const std::string executableFolder = QCoreApplication::applicationDirPath().toStdString();
  const std::string userData =
      QStandardPaths::writableLocation(QStandardPaths::AppDataLocation).toStdString();
  const std::string home =
      ResolveHomeFolder(option, std::getenv("RECSCOPE_HOME"), executableFolder, userData);
  if (!userData.empty() && home == ResolveHomeFolder(userData, nullptr, {}))
    FillHomeFolder(home, DeliveredFilesFolder(executableFolder));
  return home;
}

}  // namespace recscope
