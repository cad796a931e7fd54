#pragma once
// Looking up the recorder's register map (InitSet.txt, read at start-up into
// Registers()) by name, as the command driver does before each read.
#include <cstdint>
#include <string>

#include "shell/init_set.h"

namespace recscope {

// What a group lookup publishes for the reads that follow it.
struct PublishedGroup {
  std::int32_t baseAddress = 0;
  int wordsPerRecord = 0;
  int recordCount = 0;
  int recordBytes = 0;  // 2 for each simple item plus the block items' lengths
};

// With `item` four blanks: the base address of `group`, and that group's base
// address, words per record, record count and record bytes go to `published`.
// Otherwise the word offset of `item` in `group`, the simple items searched
// before the block items. An item or group that is not in the map gives 0 (so
// does an item at offset 0), and a missing group publishes nothing.
std::int32_t RegisterLookup(const RegisterMap &map, const std::string &item,
                            const std::string &group, PublishedGroup &published);

}  // namespace recscope
