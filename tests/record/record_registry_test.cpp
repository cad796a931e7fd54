// The record registry ViewerFile.txt: reading, rewriting byte for byte, the
// limits, the input tests in code page 932 bytes, delete and move.
#include "record/record_registry.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "record/record_writer.h"
#include "record_fixture.h"

namespace recscope {
namespace {

using testing_support::ReadAll;
using testing_support::TempFolder;

std::string Padded64(const std::string &cp932) {
  std::string out = cp932;
  out.resize(std::max<std::size_t>(out.size(), 64), ' ');
  return out;
}

TEST(RecordRegistry, AMissingRegistryIsCreatedEmpty) {
  TempFolder folder;
  Registry registry;
  registry.Groups.push_back({"stale", {}});
  ASSERT_EQ(ReadRegistry(RegistryPath(folder.Folder()), registry), 0);
  EXPECT_TRUE(registry.Groups.empty());
  EXPECT_TRUE(std::filesystem::exists(folder.Path("ViewerFile.txt")));
  EXPECT_EQ(std::filesystem::file_size(folder.Path("ViewerFile.txt")), 0u);
}

TEST(RecordRegistry, TheFileIsWrittenWholeInCodePage932) {
  TempFolder folder;
  Registry registry;
  ASSERT_EQ(AddRegistryGroup(registry, "炉A"), 0);
  ASSERT_EQ(AddRegistryFile(registry, 0, "熱処理1", "/data/SHEAT01.FDT"), 0);
  ASSERT_EQ(AddRegistryFile(registry, 0, "two", "/data/STWO.FDT"), 0);
  ASSERT_EQ(AddRegistryGroup(registry, "empty"), 0);
  ASSERT_TRUE(WriteRegistry(RegistryPath(folder.Folder()), registry));
  // 炉 is 0x98 0x46 and 熱処理 0x94 0x4D 0x8F 0x88 0x97 0x9D in code page 932.
  const std::string expected =
      "V,100\r\nG,\x98\x46"
      "A\r\nF," +
      Padded64(
          "\x94\x4D\x8F\x88\x97\x9D"
          "1") +
      ",/data/SHEAT01.FDT\r\nF," + Padded64("two") + ",/data/STWO.FDT\r\nG,empty\r\n";
  EXPECT_EQ(ReadAll(folder.Path("ViewerFile.txt")), expected);
  EXPECT_EQ(folder.Files(), std::vector<std::string>{"ViewerFile.txt"});  // no temporary left

  Registry back;
  ASSERT_EQ(ReadRegistry(RegistryPath(folder.Folder()), back), 0);
  ASSERT_EQ(back.Groups.size(), 2u);
  EXPECT_EQ(back.Groups[0].Name, "炉A");
  ASSERT_EQ(back.Groups[0].Files.size(), 2u);
  EXPECT_EQ(back.Groups[0].Files[0].Name, "熱処理1");
  EXPECT_EQ(back.Groups[0].Files[0].Path, "/data/SHEAT01.FDT");
  EXPECT_EQ(RegistryBytes(back), expected);
}

TEST(RecordRegistry, AVLineInTheMiddleOfTheFileIsIgnored) {
  const Registry registry =
      ParseRegistry("V,100\r\nG,one\r\nF," + Padded64("a") + ",/a\r\nV,100\r\nF," + Padded64("b") +
                    ",/b\r\nX,other\r\nG,two\r\n");
  ASSERT_EQ(registry.Groups.size(), 2u);
  ASSERT_EQ(registry.Groups[0].Files.size(), 2u);
  EXPECT_EQ(registry.Groups[0].Files[1].Name, "b");
  EXPECT_EQ(registry.Groups[0].Files[1].Path, "/b");
  EXPECT_TRUE(registry.Groups[1].Files.empty());
}

TEST(RecordRegistry, AFileNameWithCommasAndALongNameReadBack) {
  Registry registry;
  AddRegistryGroup(registry, "g");
  AddRegistryFile(registry, 0, "a,b", "/x,y/SA.FDT");
  AddRegistryFile(registry, 0, std::string(100, 'n'), "/SN.FDT");
  const Registry back = ParseRegistry(RegistryBytes(registry));
  EXPECT_EQ(back.Groups[0].Files[0].Name, "a,b");
  EXPECT_EQ(back.Groups[0].Files[0].Path, "/x,y/SA.FDT");
  EXPECT_EQ(back.Groups[0].Files[1].Name, std::string(100, 'n'));
  EXPECT_EQ(back.Groups[0].Files[1].Path, "/SN.FDT");
}

TEST(RecordRegistry, The31stGroupIsRefused) {
  Registry registry;
  for (int g = 1; g <= 30; ++g) ASSERT_EQ(AddRegistryGroup(registry, "G" + std::to_string(g)), 0);
  EXPECT_EQ(AddRegistryGroup(registry, "G31"), 41050);
  EXPECT_EQ(registry.Groups.size(), 30u);
}

TEST(RecordRegistry, The401stFileIsRefused) {
  Registry registry;
  AddRegistryGroup(registry, "a");
  AddRegistryGroup(registry, "b");
  for (int f = 0; f < 400; ++f)
    ASSERT_EQ(AddRegistryFile(registry, f % 2, "F" + std::to_string(f), "/p"), 0);
  EXPECT_EQ(AddRegistryFile(registry, 0, "F400", "/p"), 41053);
  EXPECT_EQ(AddRegistryFile(registry, 1, "F400", "/p"), 41053);
  EXPECT_EQ(registry.FileCount(), 400u);
}

TEST(RecordRegistry, ANameOf128BytesIsAccepted) {
  const std::string kanji64 = [] {
    std::string s;
    for (int i = 0; i < 64; ++i) s += "炉";  // two bytes each in code page 932
    return s;
  }();
  EXPECT_EQ(CheckGroupInput(kanji64), 0);
  EXPECT_EQ(CheckFileInput(kanji64, "/p"), 0);
  EXPECT_EQ(CheckGroupInput(kanji64 + "a"), 41059);
  EXPECT_EQ(CheckFileInput(kanji64 + "a", "/p"), 41059);
  // Half-width kana are one byte each.
  std::string kana;
  for (int i = 0; i < 128; ++i) kana += "ｱ";
  EXPECT_EQ(CheckGroupInput(kana), 0);
  EXPECT_EQ(CheckGroupInput(kana + "ｱ"), 41059);
}

TEST(RecordRegistry, EmptyInputsAndLongAddressesAreRefused) {
  EXPECT_EQ(CheckGroupInput(""), 41056);
  EXPECT_EQ(CheckFileInput("", "/p"), 41057);
  EXPECT_EQ(CheckFileInput("n", ""), 41058);
  // The address counts two bytes a character: 127 pass, 128 make 256 bytes.
  EXPECT_EQ(CheckFileInput("n", "/" + std::string(126, 'a')), 0);
  EXPECT_EQ(CheckFileInput("n", "/" + std::string(127, 'a')), 41060);
}

TEST(RecordRegistry, DeletingAGroupKeepsTheRecordFilesOnTheDisk) {
  TempFolder folder;
  ASSERT_TRUE(WriteWholeFile(folder.Path("SKEEP.FDT"), "record"));
  Registry registry;
  AddRegistryGroup(registry, "one");
  AddRegistryGroup(registry, "two");
  AddRegistryFile(registry, 0, "keep", folder.Path("SKEEP.FDT"));
  AddRegistryFile(registry, 1, "other", "/o");
  DeleteRegistryGroup(registry, 0);
  ASSERT_TRUE(WriteRegistry(RegistryPath(folder.Folder()), registry));
  EXPECT_EQ(ReadAll(folder.Path("SKEEP.FDT")), "record");
  ASSERT_EQ(registry.Groups.size(), 1u);
  EXPECT_EQ(registry.Groups[0].Name, "two");
  EXPECT_EQ(FileKey(0, 0), "001001");  // keys close up
  EXPECT_EQ(RegistryBytes(registry), "V,100\r\nG,two\r\nF," + Padded64("other") + ",/o\r\n");
  DeleteRegistryFile(registry, 0, 0);
  EXPECT_EQ(registry.FileCount(), 0u);
}

TEST(RecordRegistry, MovesSwapWithTheNeighbourAndStopAtTheEnds) {
  Registry registry;
  for (const char *n : {"a", "b", "c"}) AddRegistryGroup(registry, n);
  EXPECT_EQ(MoveRegistryGroup(registry, 0, true), 0u);
  EXPECT_EQ(MoveRegistryGroup(registry, 0, false), 1u);
  EXPECT_EQ(registry.Groups[0].Name, "b");
  EXPECT_EQ(registry.Groups[1].Name, "a");
  EXPECT_EQ(MoveRegistryGroup(registry, 2, false), 2u);
  EXPECT_EQ(MoveRegistryGroup(registry, 2, true), 1u);
  EXPECT_EQ(registry.Groups[1].Name, "c");
  AddRegistryFile(registry, 0, "x", "/x");
  AddRegistryFile(registry, 0, "y", "/y");
  EXPECT_EQ(MoveRegistryFile(registry, 0, 1, true), 0u);
  EXPECT_EQ(registry.Groups[0].Files[0].Name, "y");
  EXPECT_EQ(GroupKey(29), "030");
}

}  // namespace
}  // namespace recscope
