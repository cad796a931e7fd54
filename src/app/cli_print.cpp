// recscope-cli print-pdf: the print of a record's trend, page by page, into a PDF
// file, drawn by the same page routine as the printer and the preview.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "app/cli_common.h"
#include "print/page_draw.h"
#include "record/open_record.h"
#include "shell/catalogue.h"
#include "shell/shared_state.h"
#include "trend/render_request.h"

namespace recscope::cli {
namespace {

bool ParseWhole(const std::string &text, long long &out) {
  try {
    std::size_t used = 0;
    out = std::stoll(text, &used);
    return used == text.size();
  } catch (...) {
    return false;
  }
}

// The paper code of a name of the paper table, 0 for any other name.
int PaperCodeOfName(const std::string &name) {
  for (int code : {kPaperA3, kPaperA4, kPaperA5, kPaperB4, kPaperB5})
    if (name == PaperName(code)) return code;
  return 0;
}

int RunPrintPdf(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args,
                 {"--out", "--from", "--to", "--group", "--orientation", "--paper", "--mode",
                  "--step", "--pages", "--title", "--cursor1", "--cursor2"},
                 {}, parsed, error))
    return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("print-pdf needs one FILE");
  const std::string *out = parsed.find("--out");
  if (!out) return UsageError("print-pdf needs --out PDF");

  SharedState &state = Shared();
  PrintConfig config = state.Print;
  // Without --orientation the page follows the trend direction of the settings:
  // a horizontal trend prints in landscape.
  config.Orientation = state.TrendOrientation == 0 ? kPortrait : kLandscape;
  RenderRequest request;
  long long step = -1;
  try {
    auto time = [&](const char *name, std::optional<std::int32_t> &target) {
      if (const std::string *v = parsed.find(name))
        target = static_cast<std::int32_t>(ParseCliTime(*v));
    };
    time("--from", request.from);
    time("--to", request.to);
    time("--cursor1", request.cursor1);
    time("--cursor2", request.cursor2);
    auto whole = [&](const char *name, long long &target) {
      if (const std::string *v = parsed.find(name))
        if (!ParseWhole(*v, target)) throw std::invalid_argument(name);
    };
    long long group = 0, pages = config.PAG;
    whole("--group", group);
    whole("--pages", pages);
    whole("--step", step);
    if (pages < 1 || pages > 32767) throw std::invalid_argument("--pages");
    request.group = static_cast<int>(group);
    config.PAG = static_cast<int>(pages);
  } catch (const std::exception &e) {
    return UsageError(std::string("bad value: ") + e.what());
  }
  if (const std::string *o = parsed.find("--orientation")) {
    if (*o != "portrait" && *o != "landscape")
      return UsageError("--orientation is portrait or landscape");
    config.Orientation = *o == "portrait" ? kPortrait : kLandscape;
  }
  if (const std::string *p = parsed.find("--paper")) {
    config.PaperCode = PaperCodeOfName(*p);
    if (config.PaperCode == 0) return UsageError("--paper is A3, A4, A5, B4 or B5");
  }
  if (const std::string *m = parsed.find("--mode")) {
    if (*m == "single")
      config.PALL = 0;
    else if (*m == "continuous")
      config.PALL = 1;
    else if (*m == "step")
      config.PALL = 2;
    else
      return UsageError("--mode is single, continuous or step");
  }
  if (step >= 0) {
    if (step == 0 || step % 60 != 0) return UsageError("--step is a whole number of minutes");
    config.DAY = static_cast<int>(step / 86400);
    config.HOR = static_cast<int>(step % 86400 / 3600);
    config.MIN = static_cast<int>(step % 3600 / 60);
    if (!parsed.find("--mode")) config.PALL = 2;
  }
  config.PrintMode = PrintModeOf(config.PALL);
  // Cursors given on the command line are what the list block shows.
  if (request.cursor1 || request.cursor2) config.CURSOR = 1;

  std::string path = std::filesystem::absolute(parsed.positional[0]).string();
  OpenOutcome opened = OpenRecordFile(state, path);
  if (!opened.opened)
    return ReportCatalogueError(opened.messageId, GetMessageText(opened.messageId));
  request.state = &state;
  request.slot = opened.slot;
  request.horizontal = config.Orientation == kLandscape;

  TrendView view;
  TrendLayout layout;
  PrepareRenderView(request, view, layout);
  if (const std::string *title = parsed.find("--title")) view.PrintTitle = *title;
  PrintSource source =
      SlotPrintSource(state, request.slot, view, layout.PlotOrigin(), layout.ValueExtent());
  source.config = config;
  const PrintPlan plan = PlanPrint(source);
  const bool written = WritePrintPdf(*out, source, plan);
  CloseRecordSlot(state, request.slot);
  if (!written) {
    std::fprintf(stderr, "cannot write %s\n", out->c_str());
    return kExitOther;
  }
  std::printf("%s\n%zu\n", std::filesystem::absolute(*out).string().c_str(), plan.pages.size());
  return kExitDone;
}

const Registration kPrintPdf(
    {"print-pdf", "print the trend of a record to a PDF file",
     "print-pdf FILE --out PDF [--from T1 --to T2] [--group G]\n"
     "          [--orientation portrait|landscape] [--paper A3|A4|A5|B4|B5]\n"
     "          [--mode single|continuous|step] [--step SECONDS] [--pages N]\n"
     "          [--title TEXT] [--cursor1 T --cursor2 T]\n"
     "Prints the trend as the print command would, to a PDF file: the header,\n"
     "the list block, the scales, the grid with its times, the frame, the waves and\n"
     "the cursor lines, on the paper's sheet. Portrait pages carry the vertical\n"
     "chart, landscape pages the horizontal one; without --orientation the trend\n"
     "direction of the settings decides (horizontal: landscape).\n"
     "The range is --from..--to, else the whole file; group: the first with members.\n"
     "--mode single prints that range on one page; continuous repeats it page after\n"
     "page by its own width; step moves on by --step SECONDS (whole minutes; --step\n"
     "alone implies step). --pages N pages at most (the print stops at the end of\n"
     "the data). Line widths, mode, step and pages default to section PRINT of\n"
     "VIEWERCOM.INI. The list block shows the values at the cursors when --cursor1 or\n"
     "--cursor2 is given, else as the CURSOR key says (1 cursors, 0 flags).\n"
     "Prints the PDF's path and then the number of pages, one a line.\n",
     RunPrintPdf});

}  // namespace
}  // namespace recscope::cli
