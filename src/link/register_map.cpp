#include "link/register_map.h"

namespace recscope {

std::int32_t RegisterLookup(const RegisterMap &map, const std::string &item,
                            const std::string &group, PublishedGroup &published) {
  for (const RegisterGroup &g : map) {
    if (g.name != group) continue;
    if (item == "    ") {
      published.baseAddress = g.baseAddress;
      published.wordsPerRecord = g.wordsPerRecord;
      published.recordCount = g.recordCount;
      published.recordBytes = g.recordBytes;
      return g.baseAddress;
    }
    for (const RegisterItem &i : g.items)
      if (i.name == item) return i.offset;
    for (const RegisterBlockItem &b : g.blocks)
      if (b.name == item) return b.offset;
    return 0;
  }
  return 0;
}

}  // namespace recscope
