#pragma once
// The main window's place in the per-user store: group Settings, keys MainLeft,
// MainTop, MainWidth and MainHeight, numbers as text in twips.
#include <QRect>

namespace recscope {

// The place of a first start: 80 % of the available screen area in each
// direction, centred in it, so that a trend window at its first size fits inside.
QRect FirstStartPlace(const QRect &available);

// The saved place in pixels. With no saved size (MainWidth or MainHeight missing
// or unreadable) it is FirstStartPlace(available); with a saved size a missing
// MainLeft or MainTop is 1000 twips.
QRect ReadWindowPlace(const QRect &available);

// Stores the place, given in pixels, as twips.
void SaveWindowPlace(const QRect &pixels);

}  // namespace recscope
