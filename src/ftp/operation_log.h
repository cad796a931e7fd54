#pragma once
// LogMsg.txt in the program folder: one line per event of the automatic fetch and
// of the program's stop, "time message" with CR LF, code page 932 on disk. The
// file keeps only the newest 10000 lines.
#include <cstdint>
#include <string>

namespace recscope {

inline constexpr int kLogLineLimit = 10000;
inline constexpr int kLogShowLimit = 1000;

std::string LogFilePath(const std::string &folder);

// The time field of a line: the date and time in the default date text, cut to
// 20 characters.
std::string LogTimeText(std::int64_t localSeconds);

// The computer's local clock as a civil second count.
std::int64_t LocalNowSeconds();

// Adds one line with the present local time. A failure to write is not reported.
void LogWrite(const std::string &folder, const std::string &message);

// The same with a given time, so that a caller (or a test) fixes the clock.
void LogWriteAt(const std::string &folder, const std::string &message, std::int64_t localSeconds);

// The text for the log box: the newest lines of the file (only what follows the
// (count - 1001)th line end when there are more than 1000 lines), without the
// final line end. A missing file gives an empty text.
std::string LogShow(const std::string &folder);

}  // namespace recscope
