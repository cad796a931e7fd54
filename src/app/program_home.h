#pragma once
// The home folder of both programs, from the --home option, $RECSCOPE_HOME, the
// executable's folder, or for an installed copy the user's data folder, which is
// made and filled with the delivered files on first use.
#include <string>

namespace recscope {

std::string ProgramHome(const std::string &option);

// Puts the register map InitSet.txt into `home` when it is missing there: from
// the delivered files of an installed copy, else from the executable's folder.
// A map the operator has in the home is never replaced.
void InstallInitSet(const std::string &home);

}  // namespace recscope
