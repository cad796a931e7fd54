#include "app/program_home.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <cstdlib>
#include <filesystem>

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

void InstallInitSet(const std::string &home) {
  namespace fs = std::filesystem;
  const fs::path target = fs::path(home) / "InitSet.txt";
  std::error_code error;
  if (fs::exists(target, error)) return;
  const std::string executableFolder = QCoreApplication::applicationDirPath().toStdString();
  for (const std::string &from : {DeliveredFilesFolder(executableFolder), executableFolder}) {
    const fs::path source = fs::path(from) / "InitSet.txt";
    if (source != target && fs::exists(source, error)) {
      fs::copy_file(source, target, error);
      return;
    }
  }
}

}  // namespace recscope
