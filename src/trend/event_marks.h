#pragma once
// Alarm, message and flag marks on the plot, with their texts. The box of each
// drawn text is kept in its row for the hit test of a mouse press.
#include <QPainter>

#include "trend/trend_draw.h"

namespace recscope {

enum class MarkKind { kAlarm, kMessage, kFlag };

// The mark picture of a kind, drawn into its box on Picture2.
void DrawMarkPicture(QPainter &painter, MarkKind kind, const QRect &box);

// The text of an alarm row: "CH1-2 H 警報発生".
std::string AlarmMarkText(const AlarmEvent &alarm);

// Lines, marks and texts of all rows in range whose kind is switched on; the
// painter's origin is the top left of Picture2.
void DrawEventMarks(QPainter &painter, TrendScene &scene);

}  // namespace recscope
