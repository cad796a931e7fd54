#pragma once
// Alarm, message and flag marks on the plot, with their texts. The box of each
// drawn text is returned for the hit test of a mouse press on that surface.
#include <QPainter>

#include "trend/trend_draw.h"

namespace recscope {

// The mark picture of a kind, drawn into its box on Picture2.
void DrawMarkPicture(QPainter &painter, MarkKind kind, const QRect &box);

// The text of an alarm row: "CH1-2 H 警報発生".
std::string AlarmMarkText(const AlarmEvent &alarm);

// Lines, marks and texts of all rows in range whose kind is switched on; the
// painter's origin is the top left of Picture2.
std::vector<PlacedText> DrawEventMarks(QPainter &painter, const TrendScene &scene);

}  // namespace recscope
