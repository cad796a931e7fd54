#pragma once
// The channel lines of a trend: envelope and mid line per plot column.
#include <QLine>
#include <QPainter>
#include <vector>

#include "trend/trend_draw.h"
#include "trend/wave_image.h"

namespace recscope {

// The lines of the member at `place` (1-based) of the current group, in the
// plot's coordinates (the origin at the top left of Picture1): a vertical
// envelope and a mid line from the column before, per column. Nothing when the
// place has no channel or the view no columns.
void WaveLinesHori(const TrendScene &scene, int place, std::vector<QLine> &lines);
void WaveLinesVert(const TrendScene &scene, int place, std::vector<QLine> &lines);

// Wave of the member at `place` drawn by the painter; the painter's origin is the
// top left of Picture1.
void WaveDrawHori(QPainter &painter, const TrendScene &scene, int place);
void WaveDrawVert(QPainter &painter, const TrendScene &scene, int place);

// All members that are on, in place order, each over the ones before. On a plain
// image the lines are written into its pixels (DrawWavesOnImage); on any other
// device, or when that path cannot draw the painter's state exactly, the painter
// draws them. Both give the same pixels on an image.
void Wave(QPainter &painter, const TrendScene &scene);

// Which way Wave draws: `Fastest` as above, `Painter` always through the painter.
// For comparing the two and for measuring; the default is Fastest.
enum class WaveDrawPath { Fastest, Painter };
void SetWaveDrawPath(WaveDrawPath path);
WaveDrawPath CurrentWaveDrawPath();

// What the last Wave on an image did: whether the image path drew, and its counts.
bool LastWaveUsedImagePath();
WaveImageCounts LastWaveImageCounts();

}  // namespace recscope
