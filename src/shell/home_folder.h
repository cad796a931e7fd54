#pragma once
#include <string>

namespace recscope {

// The program folder: the --home option when given, else $RECSCOPE_HOME when set,
// else the folder of the executable. The result is absolute, without a trailing
// "/" unless it is the root.
std::string ResolveHomeFolder(const std::string &option, const char *environment,
                              const std::string &executableFolder);

// A path made absolute against the working folder, as a file dialog delivers it.
std::string AbsolutePath(const std::string &path);

}  // namespace recscope
