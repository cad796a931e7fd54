// Result files made under temporary names: published together or not at all.
#include "record/output_files.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "record/record_writer.h"
#include "record_fixture.h"

namespace recscope {
namespace {

using testing_support::ReadAll;
using testing_support::TempFolder;

bool WriteTo(const std::string &path, const std::string &text) {
  OutputFile out;
  if (!out.Open(path)) return false;
  out.Write(text);
  return out.Close();
}

TEST(OutputFiles, PublishedFilesTakeTheirNamesAndNoTemporaryStays) {
  TempFolder folder;
  {
    OutputSet set;
    ASSERT_TRUE(WriteTo(set.Add(folder.Path("A.CSV")), "a"));
    ASSERT_TRUE(WriteTo(set.Add(folder.Path("B.CSV")), "b"));
    ASSERT_TRUE(set.Publish());
  }
  auto names = folder.Files();
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"A.CSV", "B.CSV"}));
  EXPECT_EQ(ReadAll(folder.Path("B.CSV")), "b");
}

TEST(OutputFiles, AnExistingTargetStopsThePublishAndUndoesTheOthers) {
  TempFolder folder;
  ASSERT_TRUE(WriteWholeFile(folder.Path("B.CSV"), "mine"));
  {
    OutputSet set;
    ASSERT_TRUE(WriteTo(set.Add(folder.Path("A.CSV")), "a"));
    ASSERT_TRUE(WriteTo(set.Add(folder.Path("B.CSV")), "b"));
    EXPECT_FALSE(set.Publish());
  }
  EXPECT_EQ(folder.Files(), std::vector<std::string>{"B.CSV"});
  EXPECT_EQ(ReadAll(folder.Path("B.CSV")), "mine");
}

TEST(OutputFiles, AReplacingTargetOverwritesAnExistingFile) {
  TempFolder folder;
  ASSERT_TRUE(WriteWholeFile(folder.Path("A.FDT"), "old"));
  OutputSet set;
  ASSERT_TRUE(WriteTo(set.Add(folder.Path("A.FDT"), true), "new"));
  ASSERT_TRUE(set.Publish());
  EXPECT_EQ(ReadAll(folder.Path("A.FDT")), "new");
}

TEST(OutputFiles, ASetEndedWithoutPublishLeavesNothing) {
  TempFolder folder;
  {
    OutputSet set;
    ASSERT_TRUE(WriteTo(set.Add(folder.Path("A.CSV")), "a"));
  }
  EXPECT_TRUE(folder.Files().empty());
}

TEST(OutputFiles, AProcessKilledBeforePublishLeavesNoTarget) {
  TempFolder folder;
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    OutputSet set;
    WriteTo(set.Add(folder.Path("A.CSV")), std::string(1 << 20, 'x'));
    ::kill(::getpid(), SIGKILL);
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_FALSE(PathExists(folder.Path("A.CSV")));
  // Only the hidden temporary of the killed process is there.
  ASSERT_EQ(folder.Files().size(), 1u);
  EXPECT_EQ(folder.Files()[0].rfind(".A.CSV.part", 0), 0u);
}

TEST(OutputFiles, AFolderThatIsNotThereFailsToOpen) {
  TempFolder folder;
  OutputSet set;
  OutputFile out;
  EXPECT_FALSE(out.Open(set.Add(folder.Path("none/A.CSV"))));
  EXPECT_FALSE(set.Publish());
}

}  // namespace
}  // namespace recscope
