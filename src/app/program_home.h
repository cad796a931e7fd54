#pragma once
// The home folder of both programs, from the --home option, $RECSCOPE_HOME, the
// executable's folder, or for an installed copy the user's data folder, which is
// made and filled with the delivered files on first use.
#include <string>

namespace recscope {

std::string ProgramHome(const std::string &option);

}  // namespace recscope
