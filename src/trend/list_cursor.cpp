#include "trend/list_cursor.h"

#include "record/value_text.h"

namespace recscope {

bool ListCursorJump(TrendView &view, std::int64_t time, int cursorNo, std::int64_t fileStart,
                    std::int64_t fileEnd, std::int64_t period) {
  const std::int64_t t = SnapToSample(time, fileStart, fileEnd, period);
  if (cursorNo == 2) {
    view.Cursor2Time = static_cast<std::int32_t>(t);
    view.Cursor2Set = true;
  } else {
    view.Cursor1Time = static_cast<std::int32_t>(t);
    view.Cursor1Set = true;
  }
  if (t >= view.DisplayStart && t <= view.DisplayEnd) return false;
  const std::int64_t span = static_cast<std::int64_t>(view.DisplayEnd) - view.DisplayStart;
  const std::int64_t half = span / 2 - (period > 0 ? (span / 2) % period : 0);
  std::int64_t start = t - half;
  std::int64_t end = start + span;
  if (start < fileStart) {
    start = fileStart;
    end = fileStart + span;
  } else if (t + half > fileEnd) {
    end = fileEnd;
    start = fileEnd - span;
  }
  view.DisplayStart = static_cast<std::int32_t>(start);
  view.DisplayEnd = static_cast<std::int32_t>(end);
  return true;
}

}  // namespace recscope
