#pragma once
// The drawing of a trend: one routine for the window, the image of the batch
// command and the tests. The painter works in twips, with its origin at the top
// left of Picture2, the frame that holds the plot, the scale panels and all text
// around them.
#include <QImage>
#include <QPainter>
#include <string>
#include <vector>

#include "record/record_file_info.h"
#include "trend/trend_layout.h"
#include "trend/trend_view.h"

namespace recscope {

constexpr double kTwipsPerPixel = 15.0;

struct TrendScene {
  const RecordFileInfo *info = nullptr;
  AlarmFileInfo *alarms = nullptr;  // text boxes of drawn marks are kept here
  std::vector<FlagEvent> *flags = nullptr;
  TrendView *view = nullptr;
  TrendLayout layout;
  bool showAlarms = true;
  bool showMessages = true;
  bool showFlags = true;
  int dateFormatNo = 1;
  std::string decimalChar = ".";
  int panelRequest = 1;  // 1 draws the scale panels, anything else leaves them
  int panelIndex = 3;    // 0..2 that panel, 3 all shown panels
};

// Fills Picture2, the plot and the panels with their backgrounds: every draw
// starts from cleared surfaces.
void ClearTrendSurfaces(QPainter &painter, const TrendScene &scene);

// Scale panels, time axis, value grid, channel lines, event marks, cursors and
// slot numbers, in that order, each layer over the one before.
void TrendDraw(QPainter &painter, TrendScene &scene);

// The plot's lines of one channel (Wave), for a member switched on by itself.
void DrawChannelWave(QPainter &painter, const TrendScene &scene, int place);

// Picture2 of the scene drawn into an image of its size in pixels, at a device
// pixel ratio for crisp high-density screens.
QImage DrawTrendImage(TrendScene &scene, double devicePixelRatio = 1.0);

// Helpers shared by the drawing files.
QColor ColourOfText(const std::string &colourText);
QFont TrendFont(double points);
// Prints text with its top left at (x, y), as the surfaces of the system print;
// returns its width and height.
QSizeF PrintText(QPainter &painter, double x, double y, const QString &text);
// Runs `draw` inside a box of Picture2: origin moved to the box, clipped to it.
template <typename Draw>
void InBox(QPainter &painter, const Box &box, Draw draw) {
  painter.save();
  painter.translate(box.Left, box.Top);
  painter.setClipRect(QRect(0, 0, box.Width, box.Height));
  draw();
  painter.restore();
}

}  // namespace recscope
