#include "trend/trend_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabBar>
#include <QWheelEvent>

#include "record/value_text.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/colour_table.h"
#include "trend/display_reduction.h"
#include "trend/display_settings.h"
#include "trend/render_request.h"
#include "trend/scale_edit_dialog.h"
#include "trend/shift_key.h"
#include "trend/trend_feed.h"
#include "trend/trend_tooltips.h"
#include "trend/zoom_setting_dialog.h"

namespace recscope {

namespace {

constexpr int kCloseQuestion = 19503;
constexpr int kBackLabel = 10720;
constexpr int kGridLabel = 10721;

int Px(std::int32_t twips) { return static_cast<int>(twips / kTwipsPerPixel); }
QRect PxRect(const Box &b, int dx = 0, int dy = 0) {
  return QRect(Px(b.Left) + dx, Px(b.Top) + dy, Px(b.Width), Px(b.Height));
}

std::int32_t Period(int slot) { return Shared().Slot(slot).Period(); }

// Picture2: shows the drawn picture, drawn hidden and then shown whole.
class PictureWidget : public QWidget {
 public:
  PictureWidget(TrendWindow *owner, QWidget *parent) : QWidget(parent), owner_(owner) {}

 protected:
  void paintEvent(QPaintEvent *) override {
    QPainter painter(this);
    painter.drawImage(QPoint(0, 0), owner_->picture());
  }
  // The plot is drawn into this picture: presses on it set cursors and carry
  // event texts.
  void mousePressEvent(QMouseEvent *event) override { owner_->plotPressed(event); }
  void mouseMoveEvent(QMouseEvent *event) override { owner_->plotMoved(event); }
  void mouseReleaseEvent(QMouseEvent *event) override { owner_->plotReleased(event); }
  // The scale panels are drawn into this picture: a double click on one of them
  // edits the scale of its member.
  void mouseDoubleClickEvent(QMouseEvent *event) override {
    int panel = owner_->scalePanelAt(event->position());
    if (panel < 0) return QWidget::mouseDoubleClickEvent(event);
    event->accept();
    owner_->openScaleEdit(panel);
  }

 private:
  TrendWindow *owner_;
};

}  // namespace

TrendWindow::TrendWindow(int slot, bool horizontal, QWidget *parent)
    : QWidget(parent), slot_(slot), horizontal_(horizontal) {
  setObjectName(horizontal ? QStringLiteral("frmTrend") : QStringLiteral("frmTrend2"));
  setProperty("slot", slot);
  const RecordFileInfo &info = Shared().Slot(slot).Record;
  InitTrendView(view_, info, Shared().ScaleCount);
  view_.ShiftBaseline = ShiftKeyState::Instance().State();
  // A window fed from memory is a real-time window: no cursors, flags or
  // marks, and its range is the feed's.
  if (FindTrendFeed(slot)) view_.RealTime = 1;

  tabs_ = new QTabBar(this);
  tabs_->setObjectName(QStringLiteral("TabStrip1"));
  for (int g = 1; g <= kGroupTabs; ++g) {
    if (!view_.Groups[g - 1].HasTab) continue;
    int index = tabs_->addTab(QString::fromStdString(view_.Groups[g - 1].TabCaption));
    tabs_->setTabData(index, QStringLiteral("G%1").arg(g));
  }
  tabs_->setCurrentIndex(TabIndexOfGroup(view_, view_.CurrentGroup));
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    if (!updating_) selectGroup(GroupOfTabIndex(view_, index));
  });

  picture2_ = new PictureWidget(this, this);
  picture2_->setObjectName(QStringLiteral("Picture2"));
  scroll_ = new QScrollBar(horizontal ? Qt::Horizontal : Qt::Vertical, picture2_);
  scroll_->setObjectName(horizontal ? QStringLiteral("HScroll1") : QStringLiteral("VScroll1"));
  connect(scroll_, &QScrollBar::valueChanged, this, [this](int value) {
    if (!updating_) ScrollTo(value);
  });
  for (int i = 0; i < 3; ++i) {
    upDown3_[i] = new QSpinBox(picture2_);
    upDown3_[i]->setObjectName(QStringLiteral("UpDown3_%1").arg(i));
    upDown3_[i]->setButtonSymbols(QAbstractSpinBox::UpDownArrows);
    connect(upDown3_[i], &QSpinBox::valueChanged, this, [this, i](int value) {
      if (updating_) return;
      view_.SlotValue[i] = value;
      view_.SelectedSlot = i;
      FillSlotTexts(view_);
      Repaint();
    });
  }

  command1_ = new QPushButton(QStringLiteral("M"), this);
  command1_->setObjectName(QStringLiteral("Command1"));
  connect(command1_, &QPushButton::clicked, this, [this] {
    view_.WaveMode = view_.WaveMode == 1 ? 2 : 1;
    command1_->setText(view_.WaveMode == 1 ? QStringLiteral("M") : QStringLiteral("A"));
    Repaint();
  });
  auto grey = [this](QSpinBox *&box, const char *name, int start, std::string TrendView::*field,
                     int TrendView::*step) {
    box = new QSpinBox(this);
    box->setObjectName(QString::fromLatin1(name));
    box->setRange(0, 10);
    box->setValue(start);
    connect(box, &QSpinBox::valueChanged, this, [this, field, step](int value) {
      if (updating_) return;
      view_.*step = value;
      view_.*field = ColourText(GreyOfStep(value));
      view_.DisplaySaved = false;
      Repaint();
    });
  };
  grey(upDown1_, "UpDown1", view_.GridGrey, &TrendView::GridColor, &TrendView::GridGrey);
  grey(upDown2_, "UpDown2", view_.BackGrey, &TrendView::BackColor, &TrendView::BackGrey);
  label1_ = new QLabel(QString::fromStdString(GetMessageText(kBackLabel)), this);
  label1_->setObjectName(QStringLiteral("Label1"));
  label2_ = new QLabel(QString::fromStdString(GetMessageText(kGridLabel)), this);
  label2_->setObjectName(QStringLiteral("Label2"));
  zoomCaption_ = new QLabel(QString::fromStdString(view_.ZoomCaption), this);
  zoomCaption_->setObjectName(QStringLiteral("ZoomCaption"));
  chkAll_ = new QCheckBox(this);
  chkAll_->setObjectName(QStringLiteral("chkAll"));
  chkSingle_ = new QCheckBox(this);
  chkSingle_->setObjectName(QStringLiteral("chkSingle"));
  connect(chkAll_, &QCheckBox::toggled, this, [this](bool on) {
    if (updating_) return;
    TrendGroup &group = view_.Group();
    for (std::size_t p = 0; p < group.ChannelOn.size(); ++p)
      if (group.ChannelNo[p] != 0) group.ChannelOn[p] = on ? -1 : 0;
    group.AllOn = on ? -1 : 0;
    Repaint();
  });
  connect(chkSingle_, &QCheckBox::toggled, this, [this](bool on) {
    if (updating_) return;
    TrendGroup &group = view_.Group();
    if (group.AllOn != 0) {
      Repaint();  // resets the box: it follows chkAll while that is set
      return;
    }
    int place = SlotToMember(group, view_.CurrentGroup, view_.SlotValue[0]);
    if (place > 0) group.ChannelOn[place - 1] = on ? -1 : 0;
    Repaint();
  });
  picIvent_ = new QLabel(picture2_);
  picIvent_->setObjectName(QStringLiteral("picIvent"));
  picIvent_->setAutoFillBackground(true);
  picIvent_->setFrameShape(QFrame::Box);
  picIvent_->hide();
  SetTrendControlTips(*this);

  std::int32_t w = kFirstWidth, h = kFirstHeight;
  resize(Px(w), Px(h));
  setMinimumSize(Px(kMinWidth), Px(kMinHeight));
}

TrendScene TrendWindow::Scene() { return SlotScene(Shared(), slot_, view_, layout_); }

void TrendWindow::LayoutControls() {
  std::int32_t w = static_cast<std::int32_t>(width() * kTwipsPerPixel);
  std::int32_t h = static_cast<std::int32_t>(height() * kTwipsPerPixel);
  if (h == kMinimisedHeight) return;
  layout_ = LayoutTrend(w, h, view_.Group().ShownScales, horizontal_);
  ResizeZones(view_, plotOrigin_, plotExtent_, layout_.PlotOrigin(), layout_.ValueExtent());
  plotOrigin_ = layout_.PlotOrigin();
  plotExtent_ = layout_.ValueExtent();
  tabs_->setGeometry(
      PxRect(layout_.TabStrip1).adjusted(0, 0, 0, -Px(layout_.TabStrip1.Height) + 24));
  picture2_->setGeometry(PxRect(layout_.Picture2));
  scroll_->setGeometry(PxRect(layout_.Scroll));
  for (int i = 0; i < 3; ++i) {
    upDown3_[i]->setGeometry(PxRect(layout_.UpDown3[i]));
    upDown3_[i]->setVisible(i < view_.Group().ShownScales);
  }
  // The bottom row, left to right, each control at its own width: the grey of
  // the background and of the grid with their labels, the wave mode, the two
  // on switches and the zoom factor in use.
  QRect row = PxRect(layout_.BottomRow);
  const int height = 22;
  int x = row.left();
  auto place = [&](QWidget *control, int width, int gap) {
    control->setGeometry(x, row.top(), width, height);
    x += width + gap;
  };
  place(label1_, label1_->sizeHint().width(), 4);
  place(upDown2_, 50, 12);
  place(label2_, label2_->sizeHint().width(), 4);
  place(upDown1_, 50, 12);
  place(command1_, 30, 10);
  place(chkAll_, 22, 8);
  place(chkSingle_, 22, 12);
  place(zoomCaption_, std::max(zoomCaption_->sizeHint().width(), 60), 0);
}

bool TrendWindow::fed() const { return FindTrendFeed(slot_) != nullptr; }

void TrendWindow::RedrawWholeView() {
  view_.Busy = -1;
  if (const TrendFeed *feed = FindTrendFeed(slot_)) {
    feed->Fill(view_, layout_.TimeExtent());
    bar_ = ScrollBarState{};
  } else if (view_.RealTime == 0) {
    ReduceDisplayData(view_, Shared().Slot(slot_).Record, Period(slot_), layout_.TimeExtent(),
                      Shared().ProgramFolder, slot_);
    bar_ = SetScrollRange(view_, Shared().Slot(slot_).Record, Period(slot_));
  }
  Repaint();
  view_.Busy = 0;
}

void TrendWindow::Repaint() {
  updating_ = true;
  scroll_->setRange(bar_.Min, bar_.Max);
  scroll_->setSingleStep(bar_.SmallChange);
  scroll_->setPageStep(bar_.LargeChange);
  scroll_->setValue(bar_.Value);
  for (int i = 0; i < 3; ++i) {
    upDown3_[i]->setRange(1, std::max<int>(view_.Group().MemberCount, 1));
    upDown3_[i]->setValue(view_.SlotValue[i]);
  }
  chkAll_->setChecked(ChkAllValue(view_) == 1);
  chkSingle_->setChecked(ChkSingleValue(view_) == 1);
  upDown1_->setValue(view_.GridGrey);
  upDown2_->setValue(view_.BackGrey);
  command1_->setText(view_.WaveMode == 1 ? QStringLiteral("M") : QStringLiteral("A"));
  updating_ = false;
  if (zoomCaption_->text() != QString::fromStdString(view_.ZoomCaption)) {
    zoomCaption_->setText(QString::fromStdString(view_.ZoomCaption));
    LayoutControls();
  }
  picture_ = DrawTrendImage(Scene(), devicePixelRatioF(), &placed_);
  picture2_->update();
}

void TrendWindow::ScrollTo(int value) {
  if (fed()) return;
  if (!OnScroll(view_, Shared().Slot(slot_).Record, Period(slot_), bar_, value)) return;
  view_.Busy = -1;
  RedrawWholeView();
  view_.ScrollValue = static_cast<std::int16_t>(scroll_->value());
}

void TrendWindow::Report(int messageId) {
  if (messageId == 0) {
    RedrawWholeView();
    return;
  }
  ShowMessage(this, messageId);
}

// A fed window always shows all its feed holds: the time commands leave it
// as it is, without a message.
void TrendWindow::onTimeAll() {
  if (!fed()) Report(ShowWholeFile(view_, Shared().Slot(slot_).Record));
}
void TrendWindow::onEnlarge() {
  if (!fed()) Report(EnlargeSpan(view_, Period(slot_)));
}
void TrendWindow::onReduce() {
  if (!fed()) Report(ReduceSpan(view_, Shared().Slot(slot_).Record, Period(slot_)));
}
void TrendWindow::onBetweenCursors() {
  if (!fed()) Report(ShowBetweenCursors(view_));
}

void TrendWindow::onTimeSet() {
  if (fed()) return;
  ZoomSettingDialog dialog(HighestReduction(Shared().Slot(slot_).Record), this);
  if (dialog.exec() != QDialog::Accepted) return;
  ApplyZoomSetting(view_, dialog.setting());
  RedrawWholeView();
}

int TrendWindow::scalePanelAt(const QPointF &point) const {
  const double x = point.x() * kTwipsPerPixel;
  const double y = point.y() * kTwipsPerPixel;
  for (int i = 0; i < view_.Group().ShownScales && i < 3; ++i) {
    const Box &b = layout_.Picture3[i];
    if (x >= b.Left && x < b.Left + b.Width && y >= b.Top && y < b.Top + b.Height) return i;
  }
  return -1;
}

void TrendWindow::openScaleEdit(int panel) {
  if (panel < 0 || panel > 2) return;
  int channelIndex = SlotChannelIndex(view_, panel);
  if (channelIndex < 1) return;
  ScaleEditDialog dialog(Shared().Slot(slot_).Record, channelIndex, this);
  if (dialog.exec() != QDialog::Accepted) return;
  view_.DisplaySaved = false;
  Repaint();
}

void TrendWindow::applyDisplayChange() {
  const RecordFileInfo &info = Shared().Slot(slot_).Record;
  for (int index = 0; index < tabs_->count(); ++index) {
    const QString key = tabs_->tabData(index).toString();
    const int g = key.startsWith('G') ? key.mid(1).toInt() : 0;
    if (g < 1 || g > 8 || !view_.Groups[g - 1].HasTab) continue;
    view_.Groups[g - 1].TabCaption = std::to_string(g) + ":" + info.Groups[g - 1].GroupName;
    tabs_->setTabText(index, QString::fromStdString(view_.Groups[g - 1].TabCaption));
  }
  view_.DisplaySaved = false;
  Repaint();
}

bool TrendWindow::saveDisplaySettings() {
  if (view_.RealTime != 0 || slot_ == kLinkSlot) return false;
  if (!SaveDisplaySettings(Shared().Slot(slot_))) return false;
  view_.DisplaySaved = true;
  return true;
}

void TrendWindow::setScaleCount(int count) {
  Shared().ScaleCount = static_cast<std::int16_t>(count);
  SetShownScales(view_, count);
  AssignScaleSlots(view_, count);
  FillSlotTexts(view_);
  LayoutControls();
  RedrawWholeView();
}

void TrendWindow::selectGroup(int groupNo) {
  if (groupNo < 1 || groupNo > kGroupTabs || !view_.Groups[groupNo - 1].HasTab) return;
  view_.CurrentGroup = static_cast<std::int16_t>(groupNo);
  SetShownScales(view_, Shared().ScaleCount);
  ReselectScaleSlots(view_, Shared().ScaleCount);
  FillSlotTexts(view_);
  updating_ = true;
  tabs_->setCurrentIndex(TabIndexOfGroup(view_, groupNo));
  updating_ = false;
  LayoutControls();
  RedrawWholeView();
  emit groupChanged(slot_, groupNo);
}

void TrendWindow::setCursorFromList(int cursorNo, std::int32_t time, bool follow) {
  (cursorNo == 1 ? view_.Cursor1Set : view_.Cursor2Set) = true;
  CursorJump(time, cursorNo, follow);
}

void TrendWindow::keepFrom(const TrendView &old, std::int32_t oldPlotOrigin,
                           std::int32_t oldPlotExtent) {
  KeepAcrossOrientationSwitch(view_, old);
  // The kept zones were measured on the old window's plot; this window's zones
  // are measured on its own.
  ResizeZones(view_, oldPlotOrigin, oldPlotExtent, plotOrigin_, plotExtent_);
  // The tab of the kept group, its slots and scale panels, and a redraw.
  selectGroup(view_.CurrentGroup);
}

void TrendWindow::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  LayoutControls();
  RedrawWholeView();
}

void TrendWindow::wheelEvent(QWheelEvent *event) {
  int steps = event->angleDelta().y() / 120;
  if (steps == 0) return;
  if (event->modifiers() & Qt::ControlModifier) {
    if (steps > 0)
      onEnlarge();
    else
      onReduce();
  } else {
    ScrollTo(std::clamp(view_.ScrollValue - steps, bar_.Min, bar_.Max));
  }
  event->accept();
}

void TrendWindow::closeEvent(QCloseEvent *event) {
  if (askOnClose_ && !view_.DisplaySaved) {
    std::string name = Shared().Slot(slot_).Record.FilePath;
    std::size_t cut = name.find_last_not_of(' ');
    name = cut == std::string::npos ? std::string() : name.substr(0, cut + 1);
    int answer =
        ShowMessage(this, kCloseQuestion, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                    {{"@FileName@", name}});
    if (answer == QMessageBox::Cancel) {
      event->ignore();
      return;
    }
    // Yes saves; a save that fails ends the close, and the window stays.
    if (answer == QMessageBox::Yes && !saveDisplaySettings()) {
      event->ignore();
      return;
    }
  }
  event->accept();
  emit closed(slot_);
}

}  // namespace recscope
