#pragma once
// The channel lines of a trend: envelope and mid line per plot column.
#include <QPainter>

#include "trend/trend_draw.h"

namespace recscope {

// Wave of the member at `place` (1-based) of the current group, in the plot's
// coordinates; the painter's origin is the top left of Picture1.
void WaveDrawHori(QPainter &painter, const TrendScene &scene, int place);
void WaveDrawVert(QPainter &painter, const TrendScene &scene, int place);

// All members that are on, in place order.
void Wave(QPainter &painter, const TrendScene &scene);

}  // namespace recscope
