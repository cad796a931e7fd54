// recscope-cli: the batch front end. It runs the same core and drawing code as
// the desktop program, without a window system.
#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "app/cli_common.h"

namespace {

// Qt's own notes (a missing runtime folder and the like) are not the system's
// messages: stderr belongs to the command's one-line report.
void QuietQtMessages(QtMsgType type, const QMessageLogContext &, const QString &text) {
  if (type == QtCriticalMsg || type == QtFatalMsg)
    std::fprintf(stderr, "recscope-cli: %s\n", text.toLocal8Bit().constData());
}

void PrintUsage(FILE *out) {
  std::fputs(
      "Usage: recscope-cli [GLOBAL OPTIONS] SUBCOMMAND [ARGS]\n"
      "\n"
      "Global options:\n"
      "  --home DIR          program folder (VIEWERCOM.INI, working files, logs);\n"
      "                      default $RECSCOPE_HOME, else the executable's folder\n"
      "  --decimal-char C    decimal character '.' or ','; default from the locale\n"
      "  --date-format N     date display 1 to 5; default from VIEWERCOM.INI, else 1\n"
      "  --help              this text; SUBCOMMAND --help describes a subcommand\n"
      "\n"
      "Subcommands:\n",
      out);
  for (const recscope::cli::Subcommand &sub : recscope::cli::Subcommands())
    std::fprintf(out, "  %-10s %s\n", sub.name, sub.summary);
  std::fputs(
      "\nExit status: 0 done, 1 usage error, 2 refused with a catalogue message\n"
      "(stderr: 'error ID: TEXT'), 3 any other failure.\n",
      out);
}

}  // namespace

int main(int argc, char *argv[]) {
  using namespace recscope::cli;
  std::vector<std::string> args(argv + 1, argv + argc);
  GlobalOptions global;
  size_t i = 0;
  for (; i < args.size(); ++i) {
    const std::string &a = args[i];
    if (a == "--help" || a == "-h") {
      PrintUsage(stdout);
      return kExitDone;
    }
    if (a == "--home" || a == "--decimal-char" || a == "--date-format") {
      if (i + 1 >= args.size()) return UsageError(a + " needs a value");
      const std::string &v = args[++i];
      if (a == "--home") global.home = v;
      if (a == "--decimal-char") {
        if (v != "." && v != ",") return UsageError("--decimal-char takes '.' or ','");
        global.decimalChar = v;
      }
      if (a == "--date-format") {
        if (v.size() != 1 || v[0] < '1' || v[0] > '5')
          return UsageError("--date-format takes 1 to 5");
        global.dateFormat = v[0] - '0';
      }
      continue;
    }
    break;
  }
  if (i >= args.size()) {
    PrintUsage(stderr);
    return kExitUsage;
  }
  const std::string name = args[i];
  std::vector<std::string> rest(args.begin() + static_cast<long>(i) + 1, args.end());
  for (const Subcommand &sub : Subcommands()) {
    if (name != sub.name) continue;
    for (const std::string &a : rest)
      if (a == "--help" || a == "-h") {
        std::fputs(sub.help, stdout);
        return kExitDone;
      }
    // Drawing needs a QGuiApplication; the offscreen platform keeps the batch
    // command free of any display.
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    qInstallMessageHandler(QuietQtMessages);
    int qtArgc = 1;
    QGuiApplication app(qtArgc, argv);
    QCoreApplication::setApplicationName("Recscope");
    QCoreApplication::setOrganizationName("Recscope");
    try {
      PrepareShell(global);
      return sub.run(global, rest);
    } catch (const CatalogueError &e) {
      return ReportCatalogueError(e.id, e.text);
    } catch (const std::exception &e) {
      std::fprintf(stderr, "recscope-cli: %s\n", e.what());
      return kExitOther;
    }
  }
  return UsageError("unknown subcommand '" + name + "'");
}
