#include "shell/recent_files.h"

#include <gtest/gtest.h>

namespace recscope {
namespace {

using List = std::vector<std::string>;

TEST(RecentFiles, NewestFirstWithoutRepeats) {
  List list;
  list = WithRecentFile(list, "/a/S1.FDT");
  list = WithRecentFile(list, "/a/S2.FDT");
  list = WithRecentFile(list, "/a/S1.FDT");
  EXPECT_EQ(list, (List{"/a/S1.FDT", "/a/S2.FDT"}));
}

TEST(RecentFiles, KeepsTheLastTen) {
  List list;
  for (int i = 1; i <= 12; ++i) list = WithRecentFile(list, "/r/S" + std::to_string(i) + ".FDT");
  ASSERT_EQ(list.size(), 10u);
  EXPECT_EQ(list.front(), "/r/S12.FDT");
  EXPECT_EQ(list.back(), "/r/S3.FDT");
}

TEST(RecentFiles, AVanishedFileIsTakenOut) {
  List list{"/a/S1.FDT", "/a/S2.FDT", "/a/S3.FDT"};
  EXPECT_EQ(WithoutRecentFile(list, "/a/S2.FDT"), (List{"/a/S1.FDT", "/a/S3.FDT"}));
  EXPECT_EQ(WithoutRecentFile(list, "/a/S9.FDT"), list);
}

TEST(RecentFiles, EachEntryHasItsOwnKey) {
  EXPECT_EQ(RecentFileEntryText(0, "/a/S1.FDT"), "&1 /a/S1.FDT");
  EXPECT_EQ(RecentFileEntryText(8, "/a/S9.FDT"), "&9 /a/S9.FDT");
  EXPECT_EQ(RecentFileEntryText(9, "/a/S10.FDT"), "1&0 /a/S10.FDT");
}

}  // namespace
}  // namespace recscope
