#pragma once
// The main window's place in the per-user store: group Settings, keys MainLeft,
// MainTop, MainWidth and MainHeight, numbers as text in twips.
#include <QRect>

namespace recscope {

inline constexpr int kTwipsPerPixel = 15;

// The saved place in pixels; a missing or unreadable key gives its default
// (1000 twips for left and top, 6500 for width and height).
QRect ReadWindowPlace();

// Stores the place, given in pixels, as twips.
void SaveWindowPlace(const QRect &pixels);

}  // namespace recscope
