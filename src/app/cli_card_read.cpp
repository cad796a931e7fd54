// recscope-cli card-read: fetches one file off the recorder's memory card, with
// its event data as the alarm file, as frmComFileread's read does.
#include <cstdio>
#include <filesystem>
#include <string>

#include "app/cli_card.h"
#include "app/cli_common.h"
#include "app/cli_link_common.h"
#include "link/card_read.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/init_set.h"
#include "shell/shared_state.h"

namespace recscope::cli {

CardResult ReadWholeCardList(CommandDriver &driver, CardList &list) {
  CardRegisters registers;
  if (!CardLookup(Registers(), registers)) return CardResult::kRequestFailed;
  CardResult result = CardReadList(driver, registers, 0, Shared().DateFormatNo, CardHooks{}, list);
  while (result == CardResult::kDone && list.Remaining > 0)
    result = CardReadList(driver, registers, static_cast<int>(list.Entries.size()),
                          Shared().DateFormatNo, CardHooks{}, list);
  return result;
}

std::string TrimmedCardName(const CardEntry &entry) {
  std::string name = entry.Name;
  while (!name.empty() && name.back() == ' ') name.pop_back();
  return name;
}

int CardFailureExit(CardResult result, int timeout, int code) {
  if (result == CardResult::kSixByteWait) return SixByteWaitExit(timeout);
  if (result == CardResult::kAborted) ThrowLinkFailure(code);
  const int id = CardResultMessage(result);
  throw CatalogueError(id, GetMessageText(id));
}

namespace {

int RunCardRead(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  std::vector<std::string> valued = LinkOptionNames();
  valued.push_back("--file");
  valued.push_back("--out");
  if (!ParseArgs(args, valued, {}, parsed, error)) return UsageError(error);
  if (!parsed.positional.empty()) return UsageError("card-read takes no FILE");
  LinkOptions options;
  if (const int usage = ReadLinkOptions(parsed, "card-read", options)) return usage;
  const std::string *file = parsed.find("--file");
  if (!file) return UsageError("card-read needs --file N");
  int number = 0;
  try {
    std::size_t used = 0;
    number = std::stoi(*file, &used);
    if (used != file->size() || number < 1) return UsageError("--file takes a number from 1");
  } catch (const std::exception &) {
    return UsageError("--file takes a number from 1");
  }
  std::string folder = Shared().ProgramFolder;
  if (const std::string *out = parsed.find("--out")) folder = AbsolutePath(*out);
  if (!std::filesystem::is_directory(folder)) return UsageError("--out: no such folder");

  LoadLinkMap();
  LinkLine link(options);
  CardList list;
  CardResult result = ReadWholeCardList(link.driver(), list);
  if (result != CardResult::kDone) return CardFailureExit(result, options.timeout);
  if (number > static_cast<int>(list.Entries.size()))
    return CardFailureExit(CardResult::kNoFile, options.timeout);
  const CardEntry &entry = list.Entries[static_cast<std::size_t>(number - 1)];

  // The card's own name; the alarm file's has "A" for its first letter.
  const std::string name = TrimmedCardName(entry);
  if (name.empty() || name.find_first_of("/\\:") != std::string::npos || name == "." ||
      name == "..") {
    std::fprintf(stderr, "recscope-cli: the card's name '%s' cannot be a file name\n",
                 name.c_str());
    return kExitRefused;
  }
  const std::string measurement = folder + "/" + name + ".FDT";
  const std::string alarm = folder + "/A" + name.substr(1) + ".FDT";
  for (const std::string &path : {measurement, alarm})
    if (std::filesystem::exists(path)) {
      std::fprintf(stderr, "recscope-cli: %s already exists\n", path.c_str());
      return kExitRefused;
    }

  CardRegisters registers;
  CardLookup(Registers(), registers);
  int failure = 0;
  CardHooks hooks;
  // Where the desktop program would ask whether to stop, the batch command
  // stops.
  hooks.ComErrorDialog = [&failure](int code) {
    failure = code;
    return kLinkAnswerYes;
  };
  result = CardFetch(link.driver(), registers, entry.Number, measurement, alarm, hooks);
  if (result != CardResult::kDone) return CardFailureExit(result, options.timeout, failure);
  std::printf("%s\n%s\n", measurement.c_str(), alarm.c_str());
  return kExitDone;
}

const Registration kCardRead({
    "card-read",
    "fetch one file off the recorder's memory card",
    "Usage: recscope-cli card-read --port DEV [--baud N] [--parity NONE|ODD|EVEN]\n"
    "                              [--station N] [--timeout SECONDS] --file N\n"
    "                              [--out DIR]\n"
    "\n"
    "Fetches file N of the card list (card-list's first column) off the memory card\n"
    "of the recorder on the serial device DEV, as the desktop program's file read\n"
    "does: the head, the measurement records (copied as they come after a binary\n"
    "head, turned into text rows after a text head) and the event data as the\n"
    "alarm file. The files take the card's name with .FDT, the alarm file's first\n"
    "letter made A, in DIR (default the home folder); a name that stands there\n"
    "already is not overwritten (exit 2). Prints the two paths.\n"
    "\n"
    "The options are those of param-read. A file that is not on the card exits 2\n"
    "with 'error 18905: ファイルがありません', no card or a card taken out during\n"
    "the read with 18901, a failed request with 18900 (通信エラー); a failed poll of\n"
    "the head is answered Yes, with its message (11101 to 11105). Nothing is left\n"
    "of a fetch that did not end. A reply that stops at exactly six bytes ends\n"
    "after --timeout SECONDS (default 60) with exit 3.\n",
    RunCardRead,
});

}  // namespace
}  // namespace recscope::cli
