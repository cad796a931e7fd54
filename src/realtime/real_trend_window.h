#pragma once
// frmRealTrend: the running trend of the real-time monitor. It draws the ring
// through the trend's own drawing (TrendDraw) on each tick of timerRealDisp when
// a new sample has been written, shows the state of the link in lblState and the
// lamp picRealStatus, and turns the ring into a record on cmdAnalyze. The link
// itself runs by itself: cmdStart and cmdStop go to the hooks that the driver
// sets (SetRealTrendLinkHooks).
#include <QImage>
#include <QPointer>
#include <QWidget>
#include <functional>

#include "record/record_file_info.h"
#include "trend/trend_draw.h"
#include "trend/trend_view.h"

class QLabel;
class QMdiArea;
class QPushButton;
class QSpinBox;
class QTabBar;
class QTimer;

namespace recscope {

class RealInstantWindow;

// What cmdStart, cmdStop and the window's unload do to the link: the driver
// sets these once; unset, the buttons only change the running flag.
struct RealTrendLinkHooks {
  std::function<void()> Start;
  std::function<void()> Stop;
};
void SetRealTrendLinkHooks(RealTrendLinkHooks hooks);

class RealTrendWindow : public QWidget {
  Q_OBJECT
 public:
  explicit RealTrendWindow(QMdiArea *mdi, QWidget *parent = nullptr);
  ~RealTrendWindow() override;

  // The one window, or nullptr.
  static RealTrendWindow *Instance();

  // The tick of timerRealDisp: draws when the last written slot differs from
  // the last drawn one (or a change of zoom, tab or size waits for its redraw),
  // then refreshes frmRealInstant when it is open.
  void displayTick();
  // Shows the link's state of the shared real-time state: lblState, the lamp
  // and its blinking, the enabling of the buttons, the tabs after a rebuild.
  void syncFromState();
  // cmdAnalyze: RealRecordWrite, then the ordinary open of the record.
  void analyze();
  // cmdInst: shows frmRealInstant.
  RealInstantWindow *showInstant();

  const TrendView &view() const { return view_; }
  const RecordFileInfo &info() const { return info_; }
  int zoomIndex() const { return zoom_; }
  // The chart as last drawn, and how many times it has been drawn.
  const QImage &chartImage() const { return chart_; }
  int drawCount() const { return drawCount_; }

 protected:
  void resizeEvent(QResizeEvent *event) override;
  void closeEvent(QCloseEvent *event) override;
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void Frm3ReSize();
  void RebuildTabs();
  void FitScaleSlotRange();
  void Draw();
  void PaintChannelList(QPainter &painter, const QSize &size);
  void ShowLamp();

  QMdiArea *mdi_;
  TrendView view_;
  RecordFileInfo info_;
  int zoom_;
  bool redrawPending_ = true;
  int drawCount_ = 0;
  QImage chart_;
  QTabBar *tabs_ = nullptr;
  QWidget *picture1_ = nullptr;
  QWidget *picture3_ = nullptr;
  QPushButton *start_ = nullptr;
  QPushButton *stop_ = nullptr;
  QPushButton *analyze_ = nullptr;
  QPushButton *inst_ = nullptr;
  QLabel *statusMess_ = nullptr;
  QLabel *state_ = nullptr;
  QLabel *lamp_ = nullptr;
  QSpinBox *upDown1_ = nullptr;
  QSpinBox *upDown3_ = nullptr;
  QTimer *lampTimer_ = nullptr;
  QTimer *dispTimer_ = nullptr;
  QPointer<RealInstantWindow> instant_;
  std::vector<std::string> tabNames_;
  bool rebuilding_ = false;
  // The plot's top and height that the zones were last fitted to.
  std::int32_t zoneOrigin_ = 0;
  std::int32_t zoneExtent_ = 0;
};

// Opens frmRealTrend in the MDI area (or brings the open one forward). Its load
// reads RealSetFile and RealTimeFile from the program's folder when the monitor
// holds no setup yet, so the last samples show before the link starts.
RealTrendWindow *ShowRealTrend(QMdiArea *mdi);

}  // namespace recscope
