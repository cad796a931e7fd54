#pragma once
// The channel lines of a trend written straight into the pixels of an image.
//
// A whole-file view of a noisy record paints a full-height envelope in every
// column of every channel, and later channels are drawn over earlier ones: most
// of those pixels are painted many times over. When the painter draws on a
// plain 32-bit image with a scale-only transform, the lines are written here
// straight into the pixels: lines that run along a pixel column (or row) as
// spans, each pixel at most once, and a line whose every pixel a later channel's
// span is sure to paint is left out. The pixels come out as the painter makes
// them: every line is lit by the painter's own rule for aliased one-pixel lines
// with square caps, channel after channel.
#include <QColor>
#include <QLine>
#include <QPainter>
#include <vector>

namespace recscope {

struct WaveLines {
  QColor colour;
  std::vector<QLine> lines;  // in the painter's coordinates
};

// What the image path did on its last call, for tests and measurement.
struct WaveImageCounts {
  long long spans = 0;          // lines written as spans
  long long culled = 0;         // other lines left out, every pixel painted later
  long long lit = 0;            // other lines lit pixel by pixel
  long long pixelsWritten = 0;  // pixels written by the spans
};

// Draws `channels` in order, each over the ones before, with a one-pixel
// cosmetic pen of its colour, as painter.drawLines would. Returns false, having
// drawn nothing, when the painter's device or state is not one this path knows
// to draw exactly (then the caller draws with the painter). The painter itself
// is used only to find where its clip lies.
bool DrawWavesOnImage(QPainter &painter, const std::vector<WaveLines> &channels,
                      WaveImageCounts *counts = nullptr);

}  // namespace recscope
