#include "shell/init_set.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/text_encoding.h"
#include "temp_folder.h"

using namespace recscope;
using recscope::testing::TempFolder;
using recscope::testing::WriteBytes;

TEST(InitSet, CommentsAndEmptyLinesArePassedOver) {
  RegisterMap map = ParseInitSet(";comment,1,2\r\n\r\n1,\"P  \",40001,40,1\r\n;0,X\r\n");
  ASSERT_EQ(map.Lines.size(), 1u);
  EXPECT_EQ(map.Lines[0][0], "1");
}

TEST(InitSet, FieldsAreTrimmedThenLoseTheirQuotes) {
  RegisterMap map = ParseInitSet("  1 , \"U  \" ,  40101 ,\"4\", 12 \r\n");
  ASSERT_EQ(map.Lines.size(), 1u);
  EXPECT_EQ(map.Lines[0][1], "U  ");
  EXPECT_EQ(map.Lines[0][2], "40101");
  EXPECT_EQ(map.Lines[0][3], "4");
  ASSERT_EQ(map.Groups.size(), 1u);
  EXPECT_EQ(map.Groups[0].Name, "U  ");
  EXPECT_EQ(map.Groups[0].BaseAddress, 40101);
  EXPECT_EQ(map.Groups[0].WordsPerRecord, 4);
  EXPECT_EQ(map.Groups[0].RecordCount, 12);
}

TEST(InitSet, AtMostNineFieldsAreKept) {
  RegisterMap map = ParseInitSet("0,a,b,c,d,e,f,g,h,i,j\n");
  ASSERT_EQ(map.Lines.size(), 1u);
  EXPECT_EQ(map.Lines[0][8], "h");
}

TEST(InitSet, LinesFoldIntoGroupsBySimpleAndBlockItems) {
  const std::string text =
      "1,\"P  \",40001,40,1\r\n"
      "0,\"PILC\",0,1,\"model\",32\r\n"
      "0,\"SNO.\",16,0,k1,k2,k3\r\n"
      "0,\"BAD \",20,2\r\n"
      "1,\"C  \",41001,60,30\r\n"
      "0,\"TAG \",0,1,tag text,8\r\n"
      "0,\"COLR\",4,0\r\n";
  RegisterMap map = ParseInitSet(text);
  EXPECT_EQ(map.Lines.size(), 7u);
  ASSERT_EQ(map.Groups.size(), 2u);
  const RegisterGroup &p = map.Groups[0];
  ASSERT_EQ(p.Items.size(), 2u);
  EXPECT_EQ(p.Items[0].Name, "PILC");
  EXPECT_TRUE(p.Items[0].IsBlock);
  EXPECT_EQ(p.Items[0].Block.Text, "model");
  EXPECT_EQ(p.Items[0].Block.Length, 32);
  EXPECT_EQ(p.Items[1].Name, "SNO.");
  EXPECT_FALSE(p.Items[1].IsBlock);
  EXPECT_EQ(p.Items[1].Offset, 16);
  EXPECT_EQ(p.Items[1].Kept[0], "k1");
  EXPECT_EQ(p.Total, 32 + 2);
  const RegisterGroup &c = map.Groups[1];
  EXPECT_EQ(c.Name, "C  ");
  EXPECT_EQ(c.RecordCount, 30);
  ASSERT_EQ(c.Items.size(), 2u);
  EXPECT_EQ(c.Items[1].Offset, 4);
  EXPECT_EQ(c.Total, 8 + 2);
}

TEST(InitSet, ItemBeforeAnyGroupAndUnknownKindsAreDropped) {
  RegisterMap map = ParseInitSet("0,\"UNIT\",0,0\r\n7,x\r\ngarbage\r\n1,\"U  \",40001,4,12\r\n");
  ASSERT_EQ(map.Groups.size(), 1u);
  EXPECT_TRUE(map.Groups[0].Items.empty());
  EXPECT_EQ(map.Lines.size(), 4u);
}

TEST(InitSet, TextIsCodePage932) {
  RegisterMap map =
      ParseInitSet(Utf8ToCp932("1,\"G  \",40001,4,1\r\n0,\"GNEM\",0,1,グループ名,16\r\n"));
  ASSERT_EQ(map.Groups.size(), 1u);
  ASSERT_EQ(map.Groups[0].Items.size(), 1u);
  EXPECT_EQ(map.Groups[0].Items[0].Block.Text, "グループ名");
}

TEST(InitSet, MissingFileGivesAnEmptyMapQuietly) {
  TempFolder folder;
  RegisterMap map = ParseInitSet("1,\"U  \",40001,4,12\r\n");
  EXPECT_FALSE(LoadInitSet(folder.str(), map));
  EXPECT_TRUE(map.Groups.empty());
  EXPECT_TRUE(map.Lines.empty());
}

TEST(InitSet, FileInTheProgramFolderIsLoaded) {
  TempFolder folder;
  WriteBytes(InitSetPath(folder.str()), "1,\"U  \",40001,4,12\r\n0,\"UNIT\",0,0\r\n");
  RegisterMap map;
  EXPECT_TRUE(LoadInitSet(folder.str(), map));
  ASSERT_EQ(map.Groups.size(), 1u);
  EXPECT_EQ(map.Groups[0].Items.size(), 1u);
}
