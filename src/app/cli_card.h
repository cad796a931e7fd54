#pragma once
// What card-list and card-read share: the whole list of the card and the exit
// of a failed card read.
#include <string>

#include "link/card_read.h"

namespace recscope::cli {

// Reads the card's list page after page until no file is left.
CardResult ReadWholeCardList(CommandDriver &driver, CardList &list);

// The name of a list entry without its trailing blanks.
std::string TrimmedCardName(const CardEntry &entry);

// A card read that did not end well: its message with exit 2, or exit 3 after
// the bounded six-byte wait. `code` is the failure a question was asked for.
int CardFailureExit(CardResult result, int timeout, int code = 0);

}  // namespace recscope::cli
