#pragma once
// A cursor sent to a time from a list (the instant value list's row click): the
// time is put on a sample, the cursor stands there, and the view moves when the
// time lies outside it.
#include <cstdint>

#include "trend/trend_view.h"

namespace recscope {

// Sets cursor `cursorNo` (1 or 2) to `time` snapped to a sample. When that time
// lies outside the view, the view of the same span is centred on it, kept
// inside the file. Returns true when the view moved (the level files are read
// again), false when only the drawing changes.
bool ListCursorJump(TrendView &view, std::int64_t time, int cursorNo, std::int64_t fileStart,
                    std::int64_t fileEnd, std::int64_t period);

}  // namespace recscope
