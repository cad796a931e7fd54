#pragma once
// The drawing of a trend: one routine for the window, the image of the batch
// command and the tests. The painter works in twips, with its origin at the top
// left of Picture2, the frame that holds the plot, the scale panels and all text
// around them.
#include <QImage>
#include <QPainter>
#include <cstddef>
#include <string>
#include <vector>

#include "record/record_file_info.h"
#include "trend/trend_layout.h"
#include "trend/trend_view.h"

namespace recscope {

constexpr double kTwipsPerPixel = 15.0;

// Everything one drawing reads. Drawing never writes into the record or the view:
// what it placed comes back as a TrendPlacement.
struct TrendScene {
  const RecordFileInfo *info = nullptr;
  const AlarmFileInfo *alarms = nullptr;
  const std::vector<FlagEvent> *flags = nullptr;
  const TrendView *view = nullptr;
  TrendLayout layout;
  bool showAlarms = true;
  bool showMessages = true;
  bool showFlags = true;
  int dateFormatNo = 1;
  std::string decimalChar = ".";
  int panelRequest = 1;  // 1 draws the scale panels, anything else leaves them
  int panelIndex = 3;    // 0..2 that panel, 3 all shown panels
  // Pen widths in twips of the scale panels' lines and of the value grid; 0 draws
  // the hairlines of the screen, a printed page sets its own widths.
  double scaleLineWidth = 0;
  double gridLineWidth = 0;
};

enum class MarkKind { kAlarm, kMessage, kFlag };

// The text of one event row as a drawing placed it, in the plot's coordinates
// (twips from the top left of Picture1): `row` is the row's index in its list.
struct PlacedText {
  MarkKind kind = MarkKind::kAlarm;
  std::size_t row = 0;
  TextBox box;
};

// What one drawing placed on its surface, kept by that surface for its hit
// tests, so that screen, paper and preview never overwrite each other's.
struct TrendPlacement {
  std::vector<PlacedText> eventTexts;
};

// Fills Picture2, the plot and the panels with their backgrounds: every draw
// starts from cleared surfaces.
void ClearTrendSurfaces(QPainter &painter, const TrendScene &scene);

// Scale panels, time axis, value grid, channel lines, event marks, cursors and
// slot numbers, in that order, each layer over the one before.
TrendPlacement TrendDraw(QPainter &painter, const TrendScene &scene);

// The value grid of the selected slot's scale across the plot (Picture1).
void DrawValueGrid(QPainter &painter, const TrendScene &scene);

// The plot's lines of one channel (Wave), for a member switched on by itself.
void DrawChannelWave(QPainter &painter, const TrendScene &scene, int place);

// Picture2 of the scene drawn into an image of its size in pixels, at a device
// pixel ratio for crisp high-density screens; `placed` (when given) gets what
// the drawing placed.
QImage DrawTrendImage(const TrendScene &scene, double devicePixelRatio = 1.0,
                      TrendPlacement *placed = nullptr);

// A line across the plot at `along` twips from its start edge of the time axis
// (a column of the horizontal plot, a row of the vertical one): cursors and marks.
void DrawTimeLine(QPainter &painter, const TrendLayout &layout, double along, const QColor &colour);

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
