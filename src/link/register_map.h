#pragma once
// The recorder's register map: groups of registers with the word offsets of
// their items, as the command driver looks them up by name.
#include <cstdint>
#include <string>
#include <vector>

namespace recscope {

struct RegisterItem {
  std::string name;  // 4 characters, as "SNO."
  int offset = 0;    // word offset in the record
  int kept1 = 0;     // three further values of the map, stored and not used
  int kept2 = 0;
  int kept3 = 0;
};

struct RegisterBlockItem {
  std::string name;  // 4 characters
  int offset = 0;    // word offset in the record
  std::string text;  // up to 64 characters
  int length = 0;    // in bytes
};

struct RegisterGroup {
  std::string name;              // 3 characters, blank padded, as "P  "
  std::int32_t baseAddress = 0;  // in the 30001 or 40001 numbering
  int wordsPerRecord = 0;
  int recordCount = 0;
  int recordBytes = 0;  // 2 for each simple item plus the block items' lengths
  int simpleCount = 0;
  int blockCount = 0;
  std::vector<RegisterItem> items;
  std::vector<RegisterBlockItem> blocks;
};

using RegisterMap = std::vector<RegisterGroup>;

// What a group lookup publishes for the reads that follow it.
struct PublishedGroup {
  std::int32_t baseAddress = 0;
  int wordsPerRecord = 0;
  int recordCount = 0;
  int recordBytes = 0;
};

// With `item` four blanks: the base address of `group`, and that group's base
// address, words per record, record count and record bytes go to `published`.
// Otherwise the word offset of `item` in `group`, the simple items searched
// before the block items. An item or group that is not in the map gives 0 (so
// does an item at offset 0), and a missing group publishes nothing.
std::int32_t RegisterLookup(const RegisterMap &map, const std::string &item,
                            const std::string &group, PublishedGroup &published);

}  // namespace recscope
