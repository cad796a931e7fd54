// recscope-cli render: the trend window of a record drawn into a PNG, and the
// timing of further redraws stepping across the record.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "app/cli_common.h"
#include "record/open_record.h"
#include "shell/catalogue.h"
#include "shell/shared_state.h"
#include "trend/render_request.h"
#include "trend/time_axis.h"

namespace recscope::cli {
namespace {

int ParseInt(const std::string &text, int &out) {
  try {
    std::size_t used = 0;
    out = std::stoi(text, &used);
    return used == text.size();
  } catch (...) {
    return 0;
  }
}

int RunRender(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args,
                 {"--out", "--width", "--height", "--group", "--from", "--to", "--orientation",
                  "--scales", "--cursor1", "--cursor2", "--mode", "--frames"},
                 {}, parsed, error))
    return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("render needs one FILE");
  const std::string *out = parsed.find("--out");
  if (!out) return UsageError("render needs --out PNG");

  RenderRequest request;
  int frames = 0;
  try {
    auto number = [&](const char *name, int &target) {
      if (const std::string *v = parsed.find(name))
        if (!ParseInt(*v, target)) throw std::invalid_argument(name);
    };
    number("--width", request.widthPx);
    number("--height", request.heightPx);
    number("--group", request.group);
    number("--scales", request.scales);
    number("--frames", frames);
    auto time = [&](const char *name, std::optional<std::int32_t> &target) {
      if (const std::string *v = parsed.find(name))
        target = static_cast<std::int32_t>(ParseCliTime(*v));
    };
    time("--from", request.from);
    time("--to", request.to);
    time("--cursor1", request.cursor1);
    time("--cursor2", request.cursor2);
  } catch (const std::exception &e) {
    return UsageError(std::string("bad value: ") + e.what());
  }
  // Without --orientation the trend stands as the desktop would open it.
  request.horizontal = Shared().TrendOrientation != 0;
  if (const std::string *o = parsed.find("--orientation")) {
    if (*o != "hori" && *o != "ver") return UsageError("--orientation is hori or ver");
    request.horizontal = *o == "hori";
  }
  if (const std::string *m = parsed.find("--mode")) {
    if (*m != "M" && *m != "A") return UsageError("--mode is M or A");
    request.waveMode = *m == "A" ? 2 : 1;
  }
  if (request.widthPx < 1 || request.heightPx < 1 || request.scales < 1 || request.scales > 3 ||
      frames < 0)
    return UsageError("size, scales or frames out of range");

  SharedState &state = Shared();
  std::string path = std::filesystem::absolute(parsed.positional[0]).string();
  OpenOutcome opened = OpenRecordFile(state, path);
  if (!opened.opened)
    return ReportCatalogueError(opened.messageId, GetMessageText(opened.messageId));
  request.state = &state;
  request.slot = opened.slot;

  TrendView view;
  TrendLayout layout;
  PrepareRenderView(request, view, layout);
  ReduceForLayout(request, view, layout);
  // The same picture as an image, or as a drawing of lines and texts when the
  // name asks for SVG.
  const QString outName = QString::fromStdString(*out);
  bool saved = outName.endsWith(QStringLiteral(".svg"), Qt::CaseInsensitive)
                   ? WriteTrendWindowSvg(*out, request, view, layout)
                   : DrawTrendWindowImage(request, view, layout).save(outName, "PNG");

  if (saved && frames > 0) {
    // Each frame steps the view on by a quarter page, as the scroll bar's arrow
    // does, and wraps to the start at the file's end.
    const RecordFileInfo &info = state.Slot(request.slot).Record;
    const std::int32_t period = state.Slot(request.slot).Period();
    std::vector<double> ms;
    for (int f = 0; f < frames; ++f) {
      std::int64_t span = static_cast<std::int64_t>(view.DisplayEnd) - view.DisplayStart;
      std::int64_t quarter = ((span + 4LL * period - 1) / (4LL * period)) * period;
      std::int64_t start = view.DisplayStart + std::max<std::int64_t>(quarter, period);
      if (start + span > info.LastTime) start = info.FirstTime;
      view.DisplayStart = static_cast<std::int32_t>(start);
      view.DisplayEnd = static_cast<std::int32_t>(start + span);
      auto t0 = std::chrono::steady_clock::now();
      ReduceForLayout(request, view, layout);
      QImage frame = DrawTrendWindowImage(request, view, layout);
      auto t1 = std::chrono::steady_clock::now();
      ms.push_back(std::chrono::duration<double, std::milli>(t1 - t0).count());
    }
    std::vector<double> sorted = ms;
    std::sort(sorted.begin(), sorted.end());
    std::fprintf(stderr, "frames: %d median_ms: %.3f max_ms: %.3f\n", frames,
                 sorted[sorted.size() / 2], sorted.back());
  }
  CloseRecordSlot(state, request.slot);
  if (!saved) {
    std::fprintf(stderr, "cannot write %s\n", out->c_str());
    return kExitOther;
  }
  return kExitDone;
}

const Registration kRender(
    {"render", "draw the trend of a record into a PNG or SVG",
     "render FILE --out PNG|SVG [--width W] [--height H] [--group G]\n"
     "       [--from T1] [--to T2] [--orientation hori|ver]\n"
     "       [--scales 1|2|3] [--cursor1 T] [--cursor2 T] [--mode M|A]\n"
     "       [--frames N]\n"
     "Draws the trend window of the record at that size and state, into a\n"
     "PNG image, or into an SVG drawing when the name ends in .svg.\n"
     "Default 1000 x 550 pixels, the first group with members and the\n"
     "whole file, in the trend direction of the settings unless\n"
     "--orientation is given. --frames N draws N more frames, each a quarter page on,\n"
     "and prints 'frames: N median_ms: X max_ms: Y' on stderr.\n",
     RunRender});

}  // namespace
}  // namespace recscope::cli
