#pragma once
// The recorder's register map, InitSet.txt in the program folder: groups of
// registers read one record at a time, and the items at word offsets in a record.
#include <array>
#include <string>
#include <vector>

namespace recscope {

// One line of the file: up to 9 fields, trimmed and without double quotes.
using InitSetLine = std::array<std::string, 9>;

// The text and length of a block item (field 3 "1").
struct RegisterBlockItem {
  std::string Text;  // up to 64 characters
  int Length = 0;    // counted in bytes
};

// An item of a group: a simple item (one word) or a block item.
struct RegisterItem {
  std::string Name;  // 4 characters, blanks kept
  int Offset = 0;    // word offset in the record
  bool IsBlock = false;
  RegisterBlockItem Block;          // only for a block item
  std::array<std::string, 3> Kept;  // fields 4 to 6 of a simple item, unused
};

struct RegisterGroup {
  std::string Name;     // 3 characters, blanks kept ("U  ")
  int BaseAddress = 0;  // in the 40001 (or, for "V  ", 30001) numbering
  int WordsPerRecord = 0;
  int RecordCount = 0;
  int Total = 0;                    // 2 for each simple item plus each block's length
  std::vector<RegisterItem> Items;  // in file order
};

struct RegisterMap {
  std::vector<InitSetLine> Lines;     // the table in file order
  std::vector<RegisterGroup> Groups;  // in file order
};

// The path of the map in a program folder.
std::string InitSetPath(const std::string &folder);

// Reads the lines of `text` (code page 932) into the table and folds them into
// groups: a "1" line opens a group, a "0" line adds a simple item when its fourth
// field is "0" and a block item when it is "1"; any other item line, an item
// before the first group and a line of another kind are dropped.
RegisterMap ParseInitSet(const std::string &cp932Text);

// Reads InitSet.txt of the folder into `map`. A file that cannot be read leaves
// an empty map and gives false, without a message.
bool LoadInitSet(const std::string &folder, RegisterMap &map);

// The map read at start-up, for the link code.
RegisterMap &Registers();

}  // namespace recscope
