#include "realtime/real_trend_window.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <filesystem>

#include "realtime/real_instant_window.h"
#include "realtime/real_logging.h"
#include "realtime/real_views.h"
#include "record/open_command.h"
#include "record/open_record.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/shared_state.h"
#include "trend/colour_table.h"
#include "trend/trend_layout.h"

namespace recscope {

namespace {

constexpr int kCaption = 19728;
constexpr int kStart = 19729;
constexpr int kStop = 19730;
constexpr int kAnalyze = 19731;
constexpr int kInst = 19732;
constexpr int kStatusMess = 19752;
constexpr int kFirstSamplingLabel = 15060;
constexpr int kListWidthPx = 230;

RealTrendWindow *g_window = nullptr;
RealTrendLinkHooks g_hooks;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

// A colour number of the system (blue, green, red) as a Qt colour.
QColor ColourOfBgr(std::uint32_t bgr) {
  return QColor(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF),
                static_cast<int>((bgr >> 16) & 0xFF));
}

std::int32_t NowSeconds() {
  const QDateTime now = QDateTime::currentDateTime();
  const QDate d = now.date();
  const QTime t = now.time();
  return static_cast<std::int32_t>(
      FromCivil(CivilTime{d.year(), d.month(), d.day(), t.hour(), t.minute(), t.second()}));
}

}  // namespace

void SetRealTrendLinkHooks(RealTrendLinkHooks hooks) { g_hooks = std::move(hooks); }

RealTrendWindow *RealTrendWindow::Instance() { return g_window; }

RealTrendWindow::RealTrendWindow(QMdiArea *mdi, QWidget *parent)
    : QWidget(parent), mdi_(mdi), zoom_(kRealZoomFirst) {
  g_window = this;
  setObjectName(QStringLiteral("frmRealTrend"));
  setWindowTitle(Text(kCaption));
  setAttribute(Qt::WA_DeleteOnClose);

  tabs_ = new QTabBar(this);
  tabs_->setObjectName(QStringLiteral("TabStrip1"));
  tabs_->setExpanding(false);
  picture1_ = new QWidget(this);
  picture1_->setObjectName(QStringLiteral("Picture1"));
  picture1_->setMinimumSize(300, 200);
  picture1_->installEventFilter(this);
  picture3_ = new QWidget(this);
  picture3_->setObjectName(QStringLiteral("Picture3"));
  picture3_->setFixedWidth(kListWidthPx);
  picture3_->installEventFilter(this);

  start_ = new QPushButton(Text(kStart), this);
  start_->setObjectName(QStringLiteral("cmdStart"));
  stop_ = new QPushButton(Text(kStop), this);
  stop_->setObjectName(QStringLiteral("cmdStop"));
  analyze_ = new QPushButton(Text(kAnalyze), this);
  analyze_->setObjectName(QStringLiteral("cmdAnalyze"));
  inst_ = new QPushButton(Text(kInst), this);
  inst_->setObjectName(QStringLiteral("cmdInst"));
  statusMess_ = new QLabel(Text(kStatusMess), this);
  statusMess_->setObjectName(QStringLiteral("lblStatusMess"));
  state_ = new QLabel(this);
  state_->setObjectName(QStringLiteral("lblState"));
  state_->setMinimumWidth(90);
  lamp_ = new QLabel(this);
  lamp_->setObjectName(QStringLiteral("picRealStatus"));
  lamp_->setFixedSize(18, 18);
  lamp_->setAutoFillBackground(true);
  upDown1_ = new QSpinBox(this);
  upDown1_->setObjectName(QStringLiteral("UpDown1"));
  upDown1_->setRange(1, static_cast<int>(kRealZoomTable.size()));
  upDown1_->setValue(zoom_);
  upDown3_ = new QSpinBox(this);
  upDown3_->setObjectName(QStringLiteral("UpDown3"));
  upDown3_->setRange(1, 10);
  upDown3_->setValue(1);

  auto *chartRow = new QHBoxLayout;
  chartRow->setContentsMargins(0, 0, 0, 0);
  chartRow->addWidget(picture1_, 1);
  chartRow->addWidget(picture3_);
  auto *buttons = new QHBoxLayout;
  for (QWidget *w : std::initializer_list<QWidget *>{start_, stop_, analyze_, inst_, statusMess_,
                                                     state_, lamp_, upDown1_, upDown3_})
    buttons->addWidget(w);
  buttons->addStretch(1);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addWidget(tabs_);
  layout->addLayout(chartRow, 1);
  layout->addLayout(buttons);

  lampTimer_ = new QTimer(this);
  lampTimer_->setObjectName(QStringLiteral("timerRealLamp"));
  lampTimer_->setInterval(100);
  connect(lampTimer_, &QTimer::timeout, this, [this] {
    RealtimeState &rt = Shared().Realtime;
    rt.LampColour = RealLampBlink(rt.LampColour);
    ShowLamp();
  });
  dispTimer_ = new QTimer(this);
  dispTimer_->setObjectName(QStringLiteral("timerRealDisp"));
  dispTimer_->setInterval(1000);
  connect(dispTimer_, &QTimer::timeout, this, &RealTrendWindow::displayTick);

  connect(start_, &QPushButton::clicked, this, [this] {
    if (g_hooks.Start)
      g_hooks.Start();
    else
      Shared().Realtime.Running = true;
    syncFromState();
  });
  connect(stop_, &QPushButton::clicked, this, [this] {
    if (g_hooks.Stop)
      g_hooks.Stop();
    else
      Shared().Realtime.Running = false;
    syncFromState();
  });
  connect(analyze_, &QPushButton::clicked, this, &RealTrendWindow::analyze);
  connect(inst_, &QPushButton::clicked, this, [this] { showInstant(); });
  connect(upDown1_, &QSpinBox::valueChanged, this, [this](int value) {
    zoom_ = value;
    Shared().Realtime.Ring.LastDrawn = 0;
    redrawPending_ = true;
  });
  connect(upDown3_, &QSpinBox::valueChanged, this, [this](int value) {
    view_.SlotValue[0] = value;
    FillSlotTexts(view_);
    Shared().Realtime.Ring.LastDrawn = 0;
    redrawPending_ = true;
  });
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    if (rebuilding_ || index < 0 || index >= static_cast<int>(tabNames_.size())) return;
    const int group = RealTabGroup(tabNames_[static_cast<std::size_t>(index)]);
    if (group == 0) return;
    view_.CurrentGroup = static_cast<std::int16_t>(group);
    ReselectScaleSlots(view_, 1);
    FitScaleSlotRange();
    FillSlotTexts(view_);
    Shared().Realtime.Ring.LastDrawn = 0;
    redrawPending_ = true;
    if (instant_) instant_->selectGroup(group);
  });

  Shared().Realtime.TrendOpen = true;
  RebuildTabs();
  syncFromState();
  dispTimer_->start();
  resize(1000, 560);
}

RealTrendWindow::~RealTrendWindow() {
  if (g_window == this) g_window = nullptr;
  Shared().Realtime.TrendOpen = false;
}

void RealTrendWindow::RebuildTabs() {
  const RealtimeState &rt = Shared().Realtime;
  info_ = RealRecordInfo(rt);
  RealTrendInitView(view_, info_, rt);
  zoneOrigin_ = kPlotOffset;
  zoneExtent_ = kDesignPlotExtent;
  rebuilding_ = true;
  while (tabs_->count() > 0) tabs_->removeTab(0);
  tabNames_.clear();
  for (const std::string &name : rt.TabNames) {
    if (RealTabGroup(name) == 0) continue;
    tabNames_.push_back(name);
    tabs_->addTab(QString::fromStdString(name));
  }
  tabs_->setCurrentIndex(tabNames_.empty() ? -1 : 0);
  rebuilding_ = false;
  FitScaleSlotRange();
  redrawPending_ = true;
}

void RealTrendWindow::FitScaleSlotRange() {
  // UpDown3 picks the member of the tab whose scale the panel shows.
  const TrendGroup &group = view_.Group();
  int members = 0;
  for (std::int16_t n : group.ChannelNo)
    if (n != 0) ++members;
  const QSignalBlocker block(upDown3_);
  upDown3_->setRange(1, std::max(members, 1));
  upDown3_->setValue(std::clamp(view_.SlotValue[0], 1, std::max(members, 1)));
}

void RealTrendWindow::syncFromState() {
  const RealtimeState &rt = Shared().Realtime;
  // The driver rebuilds the tabs at the end of the setup read.
  std::vector<std::string> names;
  for (const std::string &name : rt.TabNames)
    if (RealTabGroup(name) != 0) names.push_back(name);
  if (names != tabNames_ || info_.Channels.size() != rt.Display.size()) RebuildTabs();
  state_->setText(rt.StateMessageId != 0 ? Text(rt.StateMessageId) : QString());
  if (rt.LampBlinking && !lampTimer_->isActive()) lampTimer_->start();
  if (!rt.LampBlinking && lampTimer_->isActive()) lampTimer_->stop();
  ShowLamp();
  analyze_->setEnabled(rt.AnalyzeEnabled && rt.ButtonsEnabled);
  inst_->setEnabled(rt.ButtonsEnabled);
  start_->setEnabled(!rt.Running && rt.ButtonsEnabled);
  stop_->setEnabled(rt.ButtonsEnabled);
}

void RealTrendWindow::ShowLamp() {
  QPalette palette = lamp_->palette();
  palette.setColor(QPalette::Window, ColourOfBgr(Shared().Realtime.LampColour));
  lamp_->setPalette(palette);
}

void RealTrendWindow::Frm3ReSize() {
  Shared().Realtime.Ring.LastDrawn = 0;
  redrawPending_ = true;
}

void RealTrendWindow::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  Frm3ReSize();
}

void RealTrendWindow::displayTick() {
  RealSampleRing &ring = Shared().Realtime.Ring;
  syncFromState();
  if (!RealDisplayDue(ring) && !redrawPending_) return;
  Draw();
  ring.LastDrawn = ring.LastWritten;
  redrawPending_ = false;
  if (instant_) instant_->refresh();
}

void RealTrendWindow::Draw() {
  const RealtimeState &rt = Shared().Realtime;
  const QSize size = picture1_->size();
  const std::int32_t width = std::max(size.width(), 1) * static_cast<std::int32_t>(kTwipsPerPixel);
  const std::int32_t height =
      std::max(size.height(), 1) * static_cast<std::int32_t>(kTwipsPerPixel);
  // Picture2 fills the chart pane: the window's own tab strip and buttons stand
  // around it already.
  TrendLayout layout = LayoutTrend(width + 300, height + 820, 1, true);
  layout.Picture2.Left = 0;
  layout.Picture2.Top = 0;
  // The zones follow the plot from the size they were last fitted to.
  ResizeZones(view_, zoneOrigin_, zoneExtent_, layout.PlotOrigin(), layout.ValueExtent());
  zoneOrigin_ = layout.PlotOrigin();
  zoneExtent_ = layout.ValueExtent();
  RealTrendFill(view_, rt, layout.TimeExtent(), zoom_);
  static const AlarmFileInfo kNoAlarms;
  static const std::vector<FlagEvent> kNoFlags;
  TrendScene scene;
  scene.info = &info_;
  scene.alarms = &kNoAlarms;
  scene.flags = &kNoFlags;
  scene.view = &view_;
  scene.layout = layout;
  scene.dateFormatNo = Shared().DateFormatNo;
  scene.decimalChar = Shared().DecimalChar;
  chart_ = QImage(std::max(size.width(), 1), std::max(size.height(), 1), QImage::Format_RGB32);
  chart_.fill(QColor(212, 208, 200));
  {
    QPainter painter(&chart_);
    painter.scale(1.0 / kTwipsPerPixel, 1.0 / kTwipsPerPixel);
    ClearTrendSurfaces(painter, scene);
    TrendDraw(painter, scene);
  }
  ++drawCount_;
  picture1_->update();
  picture3_->update();
}

void RealTrendWindow::PaintChannelList(QPainter &painter, const QSize &size) {
  const RealtimeState &rt = Shared().Realtime;
  painter.fillRect(QRect(QPoint(0, 0), size), Qt::white);
  painter.setPen(Qt::black);
  QFont font = painter.font();
  font.setPointSizeF(9);
  painter.setFont(font);
  const int line = painter.fontMetrics().height() + 2;
  int y = line;
  // The title line and the cycle line.
  painter.drawText(6, y, QString::fromStdString(rt.ModelText + "  SNo." + rt.SerialText));
  y += line;
  painter.drawText(6, y,
                   Text(kFirstSamplingLabel + RealSamplingCode(rt.CycleSeconds)) + "  " +
                       QString::fromStdString(RealInstantTimeText(rt)));
  y += line + 4;
  const std::vector<RealInstantRow> rows = RealInstantRows(rt, view_.CurrentGroup);
  const TrendGroup &group = view_.Group();
  for (std::size_t i = 0; i < rows.size() && y < size.height(); ++i) {
    std::string colour;
    if (i < group.ChannelColor.size()) colour = group.ChannelColor[i];
    const Rgb rgb = RgbOfColourText(colour);
    painter.fillRect(QRect(6, y - line + 5, 10, line - 4), QColor(rgb.r, rgb.g, rgb.b));
    painter.drawText(22, y,
                     QString::fromStdString(rows[i].Ch + " " + rows[i].Tag1 + " " + rows[i].Value +
                                            " " + rows[i].Unit));
    y += line;
  }
}

bool RealTrendWindow::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() == QEvent::Paint) {
    if (watched == picture1_) {
      QPainter painter(picture1_);
      painter.fillRect(picture1_->rect(), QColor(212, 208, 200));
      if (!chart_.isNull()) painter.drawImage(0, 0, chart_);
      return true;
    }
    if (watched == picture3_) {
      QPainter painter(picture3_);
      PaintChannelList(painter, picture3_->size());
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void RealTrendWindow::analyze() {
  SharedState &shared = Shared();
  const std::string path =
      (std::filesystem::path(shared.ProgramFolder) / kRealRecordFileName).string();
  // A record still open in a viewer cannot be replaced under it: nothing is
  // written then, and no message is shown.
  if (IsFileOpen(shared, path)) return;
  const std::string written = RealRecordWrite(shared.ProgramFolder, shared.Realtime);
  if (written.empty()) return;
  OpenRecordPath(this, mdi_, QString::fromStdString(written));
}

RealInstantWindow *RealTrendWindow::showInstant() {
  if (!instant_) {
    instant_ = new RealInstantWindow(view_.CurrentGroup);
    if (mdi_) {
      QMdiSubWindow *sub = mdi_->addSubWindow(instant_);
      sub->setAttribute(Qt::WA_DeleteOnClose);
      sub->show();
    } else {
      instant_->show();
    }
  }
  instant_->refresh();
  if (QWidget *frame = instant_->parentWidget()) frame->raise();
  instant_->raise();
  return instant_;
}

void RealTrendWindow::closeEvent(QCloseEvent *event) {
  RealtimeState &rt = Shared().Realtime;
  if (g_hooks.Stop)
    g_hooks.Stop();
  else
    rt.Running = false;
  // Drawing catches up with what was written before the window goes.
  if (RealDisplayDue(rt.Ring)) displayTick();
  if (instant_) {
    if (auto *sub = qobject_cast<QMdiSubWindow *>(instant_->parentWidget()))
      sub->close();
    else
      instant_->close();
  }
  rt.TrendOpen = false;
  QWidget::closeEvent(event);
}

RealTrendWindow *ShowRealTrend(QMdiArea *mdi) {
  if (RealTrendWindow *open = RealTrendWindow::Instance()) {
    if (auto *sub = qobject_cast<QMdiSubWindow *>(open->parentWidget())) {
      if (mdi) mdi->setActiveSubWindow(sub);
    }
    open->raise();
    return open;
  }
  SharedState &shared = Shared();
  if (shared.Realtime.ChannelCount == 0 || !shared.Realtime.Ring.allocated())
    LoadLastRealRun(shared.ProgramFolder, shared.Realtime, NowSeconds());
  auto *window = new RealTrendWindow(mdi);
  if (mdi) {
    QMdiSubWindow *sub = mdi->addSubWindow(window);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->resize(1000, 600);
    sub->show();
  } else {
    window->show();
  }
  window->displayTick();
  return window;
}

}  // namespace recscope
