#include "ftp/operation_log.h"

#include <gtest/gtest.h>

#include "platform/text_encoding.h"
#include "shell/civil_time.h"
#include "temp_folder.h"

using namespace recscope;
using recscope::testing::ReadBytes;
using recscope::testing::TempFolder;
using recscope::testing::WriteBytes;

namespace {
const std::int64_t kNoon = FromCivil({2024, 3, 5, 12, 0, 7});

std::string Lines(int from, int to) {
  std::string text;
  for (int i = from; i <= to; ++i) text += "line " + std::to_string(i) + "\r\n";
  return text;
}

std::size_t CountCrLf(const std::string &text) {
  std::size_t n = 0;
  for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at + 2))
    ++n;
  return n;
}
}  // namespace

TEST(OperationLog, LineIsTimeBlankMessageWithCrLfInCodePage932) {
  TempFolder folder;
  LogWriteAt(folder.str(), "レコスコープ停止", kNoon);
  EXPECT_EQ(ReadBytes(LogFilePath(folder.str())),
            Utf8ToCp932("2024/03/05 12:00:07 レコスコープ停止") + "\r\n");
  LogWriteAt(folder.str(), "second", kNoon + 1);
  EXPECT_EQ(CountCrLf(ReadBytes(LogFilePath(folder.str()))), 2u);
}

TEST(OperationLog, TimeFieldIsCutTo20Characters) {
  EXPECT_LE(LogTimeText(kNoon).size(), 20u);
  EXPECT_EQ(LogTimeText(kNoon), "2024/03/05 12:00:07");
}

TEST(OperationLog, TenThousandthLineIsStillAppended) {
  TempFolder folder;
  const std::string path = LogFilePath(folder.str());
  WriteBytes(path, Lines(1, 9999));
  LogWriteAt(folder.str(), "new", kNoon);
  const std::string text = ReadBytes(path);
  EXPECT_EQ(CountCrLf(text), 10000u);
  EXPECT_EQ(text.rfind("line 1\r\n", 0), 0u);
}

TEST(OperationLog, The10001stLineDropsTheFirstLine) {
  TempFolder folder;
  const std::string path = LogFilePath(folder.str());
  WriteBytes(path, Lines(1, 10000));
  LogWriteAt(folder.str(), "new", kNoon);
  const std::string text = ReadBytes(path);
  EXPECT_EQ(CountCrLf(text), 10000u);
  EXPECT_EQ(text.rfind("line 2\r\n", 0), 0u);
  EXPECT_NE(text.find("2024/03/05 12:00:07 new\r\n"), std::string::npos);
}

TEST(OperationLog, OverTheLimitIsShortenedOnlyAsFarAsNeeded) {
  TempFolder folder;
  const std::string path = LogFilePath(folder.str());
  WriteBytes(path, Lines(1, 10500));
  LogWriteAt(folder.str(), "new", kNoon);
  const std::string text = ReadBytes(path);
  EXPECT_EQ(CountCrLf(text), 10000u);
  EXPECT_EQ(text.rfind("line 502\r\n", 0), 0u);
}

TEST(OperationLog, OnlyCrLfCountsAsLineEndInTheScan) {
  TempFolder folder;
  const std::string path = LogFilePath(folder.str());
  // The first line holds lone LF and CR characters; it is still one line.
  std::string text = "first\nhalf\rline\r\n" + Lines(2, 10000);
  WriteBytes(path, text);
  LogWriteAt(folder.str(), "a\nb", kNoon);
  const std::string after = ReadBytes(path);
  EXPECT_EQ(after.rfind("line 2\r\n", 0), 0u);
  EXPECT_NE(after.find("new"), 0u);
  EXPECT_NE(after.find("12:00:07 a\nb\r\n"), std::string::npos);
}

TEST(OperationLog, ShowGivesEverythingWithoutTheFinalLineEnd) {
  TempFolder folder;
  EXPECT_EQ(LogShow(folder.str()), "");
  WriteBytes(LogFilePath(folder.str()), Utf8ToCp932("一\r\n二\r\n"));
  EXPECT_EQ(LogShow(folder.str()), "一\r\n二");
}

TEST(OperationLog, ShowKeepsTheNewestLinesOfALongFile) {
  TempFolder folder;
  WriteBytes(LogFilePath(folder.str()), Lines(1, 1500));
  const std::string shown = LogShow(folder.str());
  // Behind the 499th line end: lines 500 to 1500.
  EXPECT_EQ(shown.rfind("line 500\r\n", 0), 0u);
  EXPECT_EQ(shown.substr(shown.size() - 9), "line 1500");
}
