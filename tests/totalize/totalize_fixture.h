#pragma once
// Totalize files made by test code with the writer, in a temporary folder.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "totalize/totalize_writer.h"

namespace recscope::testing_support {

// 2026/01/02 00:00:00 as seconds from 1970/1/1.
constexpr std::int32_t kTotalizeBase = 1767312000;

// Three channels with numbers 1, 5 and 9 and 1, 0 and 3 decimals; group 1 holds
// 1 and 5, group 2 holds 9 and 1 with empty places between.
inline TotalizeFileContent MakeTotalizeContent(int groupCount = 4) {
  TotalizeFileContent content;
  content.HeaderText1 = "TTEST01.FDT";
  content.HeaderText2 = "ZNQ-TEST";
  content.HeaderText3 = "SNo.12345678";
  content.VersionText = "Ver.01.02";
  content.GroupCount = groupCount;
  TotalizeChannelContent a;
  a.ChannelNo = 1;
  a.Tag = "FLOW1";
  a.Setting1 = 3;
  a.ActionType = 0;
  a.Unit = "m3";
  a.Scale = 1000;
  a.Decimals = 1;
  TotalizeChannelContent b;
  b.ChannelNo = 5;
  b.Tag = "PUMP";
  b.Setting1 = 0;
  b.ActionType = 1;
  b.Unit = "count";
  b.Scale = 1;
  b.Decimals = 0;
  TotalizeChannelContent c;
  c.ChannelNo = 9;
  c.Tag = "RUN";
  c.Setting1 = 12;
  c.ActionType = 2;
  c.Unit = "h";
  c.Scale = -1234;
  c.Decimals = 3;
  content.Channels = {a, b, c};
  TotalizeGroupContent g1;
  g1.GroupName = "LINE A";
  g1.Members = {1, 5, 0, 0, 0, 0, 0, 0, 0, 0};
  TotalizeGroupContent g2;
  g2.GroupName = "LINE B";
  g2.Members = {0, 9, 0, 1, 0, 0, 0, 0, 0, 0};
  content.Groups = {g1, g2};
  return content;
}

// Record i (from 1): one hour from base + (i - 1) hours, values 10i + 1, -i and
// 123456 + i.
inline TotalizeRecordContent MakeTotalizeRecord(int i) {
  TotalizeRecordContent r;
  r.StartTime = kTotalizeBase + (i - 1) * 3600;
  r.EndTime = r.StartTime + 3600;
  r.Values = {10 * i + 1, -i, 123456 + i};
  return r;
}

inline std::vector<TotalizeRecordContent> MakeTotalizeRecords(int count) {
  std::vector<TotalizeRecordContent> out;
  for (int i = 1; i <= count; ++i) out.push_back(MakeTotalizeRecord(i));
  return out;
}

// A fresh folder under the test temp folder, removed at the end of the test.
class TotalizeFolder {
 public:
  TotalizeFolder() {
    const auto *test = ::testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::filesystem::temp_directory_path() /
            ("recscope_t_" + std::string(test->test_suite_name()) + "_" + test->name());
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~TotalizeFolder() { std::filesystem::remove_all(path_); }
  std::string Path(const std::string &name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace recscope::testing_support
