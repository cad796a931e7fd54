#pragma once
// The value scale panels beside the plot (above it in the vertical view).
#include <QPainter>

#include "trend/trend_draw.h"

namespace recscope {

// Draws Picture3(slot) for the member of that UpDown3 slot; the painter's origin
// is the panel's top left.
void DrawScalePanel(QPainter &painter, const TrendScene &scene, int slot);

// One scale label anchored at x: right-aligned on a horizontal view, centred on a
// vertical one, by its width in the font given; never left of 0. A log label
// prints "10" and its exponent raised in a smaller font. ScaleLabelBox is the
// box the label takes, ScaleLabel prints it and returns that box.
QRectF ScaleLabelBox(const QFont &font, double x, double y, const QString &value, bool exponentFlag,
                     bool horizontal);
QRectF ScaleLabel(QPainter &painter, double x, double y, const QString &value, bool exponentFlag,
                  bool horizontal);

// Position of a raw scale value between the panel's ends: `nearEnd` is the end
// of the low value, `k` twips per raw unit. Mirrored when hi < lo.
double ScalePosition(double nearEnd, double k, double v, double lo, double hi);

// First value a grid or tick walk takes: the next multiple of step past lo
// towards hi; a rest of 0 counts as a whole step.
double FirstStepValue(double lo, double hi, double step);

}  // namespace recscope
