// recscope-cli stats: what the between-cursors window computes for two cursor
// times, as one JSON object.
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "record/open_record.h"
#include "record/range_statistics.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"
#include "views/cursor_statistics.h"

namespace recscope::cli {
namespace {

std::string JsonText(const std::string &text) {
  std::string out = "\"";
  for (unsigned char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
    } else if (c < 0x20) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
      out += escaped;
    } else {
      out += static_cast<char>(c);
    }
  }
  return out + "\"";
}

std::string JsonNumber(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

int RunStats(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--from", "--to"}, {}, parsed, error)) return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("stats takes one FILE");
  long long from = 0;
  long long to = 0;
  const std::string *fromText = parsed.find("--from");
  const std::string *toText = parsed.find("--to");
  try {
    if (fromText) from = ParseCliTime(*fromText);
    if (toText) to = ParseCliTime(*toText);
  } catch (const std::invalid_argument &e) {
    return UsageError(e.what());
  }

  SharedState &state = Shared();
  const OpenOutcome outcome = OpenRecordFile(state, AbsolutePath(parsed.positional[0]));
  if (!outcome.opened) throw CatalogueError(outcome.messageId, GetMessageText(outcome.messageId));
  const int slot = outcome.slot;
  const RecordFileInfo &info = state.Slot(slot).Record;
  const std::int32_t period = state.Slot(slot).Period();

  const ComputeSpan span =
      get_ComputeTime(fromText != nullptr, from, toText != nullptr, to, info.FirstTime,
                      info.LastTime, period, state.DateFormatNo);
  std::vector<ChannelStatistics> stats;
  const bool read =
      GetRangeStatistics(info, state.ProgramFolder, slot, period, span.Start, span.End, stats);
  std::string json;
  if (read) {
    json = "{\"Start\":" + std::to_string(span.Start) + ",\"End\":" + std::to_string(span.End) +
           ",\"DataNum\":" + std::to_string(span.DataNum) + ",\"Channels\":[";
    for (size_t c = 0; c < stats.size(); ++c) {
      const CursorCells cells =
          CurComputeCells(info, static_cast<int>(c), stats[c], state.DecimalChar);
      if (c > 0) json += ",";
      json +=
          "{\"Min\":" + std::to_string(stats[c].Min) + ",\"Max\":" + std::to_string(stats[c].Max) +
          ",\"Sum\":" + JsonNumber(stats[c].Sum) + ",\"Count\":" + std::to_string(stats[c].Count) +
          ",\"MaxText\":" + JsonText(cells.MaxText) + ",\"MinText\":" + JsonText(cells.MinText) +
          ",\"AvgText\":" + JsonText(cells.AvgText) + "}";
    }
    json += "]}\n";
  }
  // As closing the trend window does: the slot is freed and its working files go.
  CloseRecordSlot(state, slot);
  if (!read) {
    std::fprintf(stderr, "recscope-cli: the working files could not be read\n");
    return kExitOther;
  }
  std::fputs(json.c_str(), stdout);
  return kExitDone;
}

const Registration kStats({
    "stats",
    "statistics between two cursor times, as JSON",
    "Usage: recscope-cli stats FILE [--from T1] [--to T2]\n"
    "\n"
    "What the between-cursors window shows with cursor 1 at T1 and cursor 2 at T2.\n"
    "A cursor not given falls back to the file's start (T1) or end (T2); both are\n"
    "snapped to samples and the earlier is the start. Times are whole seconds from\n"
    "1970/1/1 00:00:00 or 'yyyy/mm/dd hh:mm:ss'.\n"
    "\n"
    "Prints one JSON object: Start, End, DataNum and Channels (analog, then DI),\n"
    "each with Min, Max, Sum, Count and the cells MaxText, MinText, AvgText.\n"
    "The working files are built for slot 1 in the home folder and deleted at the end.\n",
    RunStats,
});

}  // namespace
}  // namespace recscope::cli
