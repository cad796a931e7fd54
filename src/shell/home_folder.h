#pragma once
// Where the program keeps its folder: settings, working files, the registry, the
// report templates and the operation log.
#include <string>

namespace recscope {

// The program folder: the --home option when given, else $RECSCOPE_HOME when set,
// else the folder of the executable. An installed copy cannot write its own
// folder: when `userDataFolder` is given and the executable's folder is an
// installed one (IsInstalledProgramFolder), the user's data folder is the home
// instead. The result is absolute, without a trailing "/" unless it is the root.
std::string ResolveHomeFolder(const std::string &option, const char *environment,
                              const std::string &executableFolder,
                              const std::string &userDataFolder = {});

// An installed copy's folder: one this process cannot write, or one that has the
// delivered files beside it (DeliveredFilesFolder), as a bin folder of an
// installation prefix has. A build tree has neither.
bool IsInstalledProgramFolder(const std::string &executableFolder);

// The files delivered with an installed copy: "<prefix>/share/recscope" for an
// executable in "<prefix>/bin".
std::string DeliveredFilesFolder(const std::string &executableFolder);

// Makes `home` when it is missing and copies into it every delivered file (the
// plain files of `delivered`, not its sub-folders) that it does not hold yet; a
// file the operator has there already is never replaced. False when the folder
// cannot be made or a file cannot be copied.
bool FillHomeFolder(const std::string &home, const std::string &delivered);

// A path made absolute against the working folder, as a file dialog delivers it.
std::string AbsolutePath(const std::string &path);

}  // namespace recscope
