#pragma once
// The trend window of one open record, horizontal (frmTrend) or vertical
// (frmTrend2): one class with an orientation. It shows and routes; the state,
// the commands and the drawing live in the core and render files.
#include <QImage>
#include <QWidget>

#include "trend/time_axis.h"
#include "trend/trend_draw.h"
#include "trend/trend_export.h"
#include "trend/trend_view.h"

class QTabBar;
class QScrollBar;
class QPushButton;
class QSpinBox;
class QCheckBox;
class QLabel;
class QMouseEvent;

namespace recscope {

class TrendWindow : public QWidget {
  Q_OBJECT
 public:
  TrendWindow(int slot, bool horizontal, QWidget *parent = nullptr);

  int slot() const { return slot_; }
  bool horizontal() const { return horizontal_; }
  TrendView &view() { return view_; }
  const ScrollBarState &scrollState() const { return bar_; }
  const QImage &picture() const { return picture_; }
  // The event texts as the last drawing placed them on this window, for its hit tests.
  const TrendPlacement &placement() const { return placed_; }
  // Closing without the save question (the orientation switch).
  void setAskOnClose(bool ask) { askOnClose_ = ask; }
  // The plot the zones are measured on: its top (left when vertical) and its
  // extent across the time axis, in twips.
  std::int32_t zonePlotOrigin() const { return plotOrigin_; }
  std::int32_t zonePlotExtent() const { return plotExtent_; }
  // Rebuilt by a switch of orientation: takes the cursors, the saved flag and
  // the group state of the old window, its zones scaled from the old plot to
  // this one, and redraws on the whole file.
  void keepFrom(const TrendView &old, std::int32_t oldPlotOrigin, std::int32_t oldPlotExtent);

  // Main window commands on the active trend.
  void onTimeAll();
  void onEnlarge();
  void onReduce();
  void onTimeSet();
  void onBetweenCursors();
  void setScaleCount(int count);
  // A new range: the level files are read again for it (or the slot's feed
  // fills it), then the picture is drawn.
  void RedrawWholeView();
  // The same data drawn again, for what changes only the drawing (colours, wave
  // mode, channels on and off, scale slots and ranges, marks, date format): no
  // level file is read.
  void Repaint();
  void selectGroup(int groupNo);
  // A list chose a record: cursor `cursorNo` is set and goes to `time` through
  // CursorJump; `follow` is false when the list that chose it is the instant
  // value list, which then does not move again.
  void setCursorFromList(int cursorNo, std::int32_t time, bool follow);
  // dlglenge for the member of scale panel Picture3(panel); an accepted edit
  // redraws the plot and the panels and leaves the display unsaved.
  void openScaleEdit(int panel);
  // The shown scale panel under a point of Picture2 (pixels), or -1.
  int scalePanelAt(const QPointF &point) const;
  // After a change of the display settings (detail dialog, event setting): the
  // tabs take the group names anew, the display is left unsaved and redrawn.
  void applyDisplayChange();
  // Writes the slot's flag file; on success the display counts as saved. Not in
  // a real-time window.
  bool saveDisplaySettings();

  // The view as a picture (trend_window_export.cpp): saved as PNG or SVG at the
  // window's size or another through dlgExportPicture, or put on the clipboard at
  // the window's size. Both draw with the window's own routine.
  void exportPicture();
  void copyPicture();
  // The view drawn at a size of `size` pixels.
  QImage pictureAt(QSize size) const;

  // Cursors and flags (trend_window_cursors.cpp). A cursor command is refused
  // in a real-time window; one that needs a cursor that is not set says so.
  // Moves cursor `cursorNo` to the sample of `t` (its set flag is the caller's);
  // the view moves to it when it lies outside the range in view.
  void CursorJump(std::int64_t t, int cursorNo, bool follow);
  // The event search of a cursor towards earlier (Left) or later (Right) times.
  void Casol_Left_Click(int cursorNo);
  void Casol_Right_Click(int cursorNo);
  void onSearchEarlier(int cursorNo);
  void onSearchLater(int cursorNo);
  void onJumpDialog(int cursorNo);            // frmJump
  void onShiftCursor1(std::int32_t seconds);  // the hour and day jumps
  void onRemoveCursors();
  void onCursorChange();
  void onAddFlag();
  void onRemoveFlags();
  // The mouse on Picture2, in its pixels: a left press on the plot sets a cursor
  // and picks up an event text; a move carries it; the release drops it, and a
  // right release on the plot opens the edit menu of the main window.
  void plotPressed(QMouseEvent *event);
  void plotMoved(QMouseEvent *event);
  void plotReleased(QMouseEvent *event);

 signals:
  // The window has agreed to close (the operator did not cancel).
  void closed(int slot);
  // A cursor was set, moved or removed. The instant value list goes to the
  // cursor's record when `follow` is true; the between-cursors window recomputes.
  void cursorsChanged(int slot, int cursorNo, bool follow);
  // The operator chose another group tab: the slot's list windows select it too.
  void groupChanged(int slot, int groupNo);
  // An event search found a row (kind 0 alarm, 1 message, 2 flag; row 0-based in
  // its list): the event list selects its tab and row.
  void eventFound(int slot, int kind, int row);
  // A flag was added, or all were removed: the event list refills its flag tab.
  void flagsChanged(int slot);
  // An event text was dragged to a new display position (kind 0 alarm, 1
  // message, 2 flag; row 0-based): the event list shows the new position.
  void eventLevelChanged(int slot, int kind, int row);

 protected:
  void resizeEvent(QResizeEvent *event) override;
  void closeEvent(QCloseEvent *event) override;
  void wheelEvent(QWheelEvent *event) override;

 private:
  TrendExport exportRequest(QSize size) const;
  // The slot's windows draw from a feed in memory (trend_feed.h).
  bool fed() const;
  void Report(int messageId);
  void ScrollTo(int value);
  void LayoutControls();
  TrendScene Scene();
  // A point of Picture2 (pixels) in twips from the top left of Picture1, and
  // whether it lies on Picture1.
  QPointF PlotPoint(const QPointF &picture2Pixels) const;
  bool OnPlot(const QPointF &plotTwips) const;

  int slot_;
  bool horizontal_;
  bool askOnClose_ = true;
  TrendView view_;
  TrendLayout layout_;
  ScrollBarState bar_;
  QImage picture_;
  TrendPlacement placed_;  // what the last drawing placed on this window's picture
  QTabBar *tabs_ = nullptr;
  QWidget *picture2_ = nullptr;
  QScrollBar *scroll_ = nullptr;
  QPushButton *command1_ = nullptr;
  QSpinBox *upDown1_ = nullptr;
  QSpinBox *upDown2_ = nullptr;
  QLabel *label1_ = nullptr;  // "ﾊﾞｯｸ" beside UpDown2
  QLabel *label2_ = nullptr;  // "ﾏｽ目" beside UpDown1
  QLabel *zoomCaption_ = nullptr;
  QCheckBox *chkAll_ = nullptr;
  QCheckBox *chkSingle_ = nullptr;
  QSpinBox *upDown3_[3] = {};
  std::int32_t plotExtent_ = kDesignPlotExtent;
  std::int32_t plotOrigin_ = kPlotOffset;
  bool updating_ = false;
  // The event text under the mouse (picIvent) while it is carried.
  QLabel *picIvent_ = nullptr;
  int eventKind_ = -1;  // 0 alarm, 1 message, 2 flag
  int eventRow_ = -1;
};

}  // namespace recscope
