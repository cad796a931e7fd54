#include "shell/catalogue.h"

#include <gtest/gtest.h>

#include <set>

using namespace recscope;

TEST(Catalogue, Holds884UniqueIdsInOrder) {
  auto rows = CatalogueRows();
  EXPECT_EQ(rows.size(), 884u);
  std::set<int> ids;
  int previous = -1;
  for (const CatalogueRow &row : rows) {
    ids.insert(row.id);
    EXPECT_LT(previous, row.id);
    previous = row.id;
  }
  EXPECT_EQ(ids.size(), 884u);
}

TEST(Catalogue, TextsKeepLeadingAndTrailingBlanks) {
  EXPECT_EQ(GetMessageText(18104), " 日  ");
  EXPECT_EQ(GetMessageText(15060), " 1秒");
  EXPECT_EQ(GetMessageText(15018), " 単位: ");
  EXPECT_EQ(GetMessageText(25004), "       ");
  EXPECT_EQ(GetMessageText(25000), "ﾟC     ");
  EXPECT_EQ(GetMessageText(10804), "記録ﾌｧｲﾙ読み込み中... ");
  EXPECT_EQ(GetMessageText(30113), "  B");
}

TEST(Catalogue, TextsAreByteForByte) {
  EXPECT_EQ(GetMessageText(11190), "ファイルが間違っています");
  EXPECT_EQ(GetMessageText(19309), "ｲｼﾞｮｳ");
  EXPECT_EQ(GetMessageText(10546), "縦に並べて表示（&H)");
  EXPECT_EQ(GetMessageText(19000), "アラーム／メッセージ／フラグ一覧表@strNumber@");
  EXPECT_EQ(GetMessageText(10722), "レコスコープ");
}

TEST(Catalogue, UnknownIdGivesEmptyText) {
  EXPECT_EQ(GetMessageText(10513 + 100000), "");
  EXPECT_EQ(GetMessageText(11106), "");
}

TEST(Catalogue, PlaceholderIsReplacedWithItsSigns) {
  EXPECT_EQ(GetMessageText(19500, "@FileNumber@", "03"), "トレンド表示03");
  EXPECT_EQ(ReplacePlaceholder(GetMessageText(20115), "@FORMIN@", "9"),
            "9から@FORMAX@の値を入力してください");
  EXPECT_EQ(GetMessageText(40000, "@NUM@", "2"), "2カーソル 時間ジャンプ設定");
}

TEST(Catalogue, LayoutRowsReadAsNumbers) {
  EXPECT_EQ(MessageNumber(19501), 7);
  EXPECT_EQ(MessageNumber(19314), 1300);
  EXPECT_EQ(MessageNumber(15100), 0.5);
}
