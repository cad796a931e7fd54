#pragma once
// The by-hand arrangement of one slot's windows: its trend window first, then the
// instant value, alarm list and between-cursors windows that are open, side by
// side or one above the other, together filling the frame.
#include <vector>

namespace recscope {

struct ChildRect {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

enum class TileDirection { kSideBySide, kOneAboveTheOther };

// `count` places in a frame of `width` x `height`; the last place takes what the
// division leaves over so that the frame is filled exactly.
std::vector<ChildRect> TileSlotWindows(int count, int width, int height, TileDirection direction);

}  // namespace recscope
