#include "shell/child_layout.h"

#include <algorithm>

namespace recscope {

std::vector<ChildRect> TileSlotWindows(int count, int width, int height, TileDirection direction) {
  std::vector<ChildRect> places;
  if (count <= 0) return places;
  width = std::max(width, 0);
  height = std::max(height, 0);
  const bool across = direction == TileDirection::kSideBySide;
  const int extent = across ? width : height;
  const int share = extent / count;
  for (int i = 0; i < count; ++i) {
    const int start = i * share;
    const int size = (i == count - 1) ? extent - start : share;
    places.push_back(across ? ChildRect{start, 0, size, height} : ChildRect{0, start, width, size});
  }
  return places;
}

}  // namespace recscope
