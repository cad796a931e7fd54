// recscope-cli card-list: the files on the recorder's memory card, read over
// the command driver as frmComFileread lists them, every page.
#include <cstdio>
#include <string>

#include "app/cli_card.h"
#include "app/cli_common.h"
#include "app/cli_link_common.h"
#include "link/card_read.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

int RunCardList(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, LinkOptionNames(), {}, parsed, error)) return UsageError(error);
  if (!parsed.positional.empty()) return UsageError("card-list takes no FILE");
  LinkOptions options;
  if (const int usage = ReadLinkOptions(parsed, "card-list", options)) return usage;

  LoadLinkMap();
  LinkLine link(options);
  CardList list;
  const CardResult result = ReadWholeCardList(link.driver(), list);
  if (result != CardResult::kDone) return CardFailureExit(result, options.timeout);
  for (const CardEntry &entry : list.Entries)
    std::printf("%d\t%s\t%s\t%s\n", entry.Number, TrimmedCardName(entry).c_str(),
                entry.TimeText.c_str(), entry.SizeText.c_str());
  return kExitDone;
}

const Registration kCardList({
    "card-list",
    "list the files on the recorder's memory card",
    "Usage: recscope-cli card-list --port DEV [--baud N] [--parity NONE|ODD|EVEN]\n"
    "                              [--station N] [--timeout SECONDS]\n"
    "\n"
    "Lists the files on the memory card of the recorder on the serial device DEV\n"
    "over Modbus RTU, as the desktop program's file read lists them, every page:\n"
    "one file a line, its number on the card (the N of card-read), its name, its\n"
    "time in the date format and its size text (B, KB, MB), separated by tabs.\n"
    "\n"
    "The options are those of param-read. A card without files exits 2 with\n"
    "'error 18905: ファイルがありません', no card with 18901, a failed request with\n"
    "18900 (通信エラー). A reply that stops at exactly six bytes ends after\n"
    "--timeout SECONDS (default 60) with exit 3.\n",
    RunCardList,
});

}  // namespace
}  // namespace recscope::cli
