#include "link/register_map.h"

namespace recscope {

std::int32_t RegisterLookup(const RegisterMap &map, const std::string &item,
                            const std::string &group, PublishedGroup &published) {
  for (const RegisterGroup &g : map.Groups) {
    if (g.Name != group) continue;
    if (item == "    ") {
      published.baseAddress = g.BaseAddress;
      published.wordsPerRecord = g.WordsPerRecord;
      published.recordCount = g.RecordCount;
      published.recordBytes = g.Total;
      return g.BaseAddress;
    }
    for (const RegisterItem &i : g.Items)
      if (!i.IsBlock && i.Name == item) return i.Offset;
    for (const RegisterItem &i : g.Items)
      if (i.IsBlock && i.Name == item) return i.Offset;
    return 0;
  }
  return 0;
}

}  // namespace recscope
