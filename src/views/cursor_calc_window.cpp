#include "views/cursor_calc_window.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QTabBar>
#include <QTableWidget>
#include <QVBoxLayout>

#include "record/range_statistics.h"
#include "shell/catalogue.h"
#include "shell/frame/main_window.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"
#include "views/cursor_calc.h"

namespace recscope {

namespace {

constexpr int kTitleColumnWidth = 1300;

QLabel *Label(QWidget *parent, const char *name, const QString &text) {
  auto *label = new QLabel(text, parent);
  label->setObjectName(QString::fromLatin1(name));
  return label;
}

// The grid: Ctrl+C copies the selection, the right button opens the copy popup
// of the main window (mnuCopyMath).
class MathGrid : public QTableWidget {
 public:
  explicit MathGrid(CursorCalcWindow *owner) : QTableWidget(owner), owner_(owner) {}

 protected:
  void keyPressEvent(QKeyEvent *event) override {
    if (event->matches(QKeySequence::Copy)) {
      owner_->MathMSFlexGrid1_copy(false);
      event->accept();
      return;
    }
    QTableWidget::keyPressEvent(event);
  }
  void contextMenuEvent(QContextMenuEvent *event) override {
    if (auto *frame = qobject_cast<MainWindow *>(owner_->window()))
      if (QAction *popup = frame->command(QStringLiteral("mnuCopyMath")))
        if (popup->menu()) popup->menu()->popup(event->globalPos());
  }

 private:
  CursorCalcWindow *owner_;
};

}  // namespace

CursorCalcWindow::CursorCalcWindow(int slot, QWidget *parent) : QWidget(parent), slot_(slot) {
  setObjectName(QStringLiteral("CurData"));
  setProperty("slot", slot);
  BuildGroupLists(groups_, Shared().Slot(slot).Record);

  auto text = [](int id) { return QString::fromStdString(GetMessageText(id)); };
  auto *labels = new QGridLayout;
  labels->addWidget(Label(this, "Label1", text(10600)), 0, 0);
  lblStTime_ = Label(this, "lbl_StTime", {});
  labels->addWidget(lblStTime_, 0, 1);
  labels->addWidget(Label(this, "Label3", text(10603)), 0, 2);
  lblEndTime_ = Label(this, "lbl_EndTime", {});
  labels->addWidget(lblEndTime_, 0, 3);
  labels->addWidget(Label(this, "Label2", text(10601)), 1, 0);
  lblTimeWid_ = Label(this, "lbl_TimeWid", {});
  labels->addWidget(lblTimeWid_, 1, 1);
  labels->addWidget(Label(this, "Label4", text(10602)), 1, 2);
  lblDataNum_ = Label(this, "lbl_DataNum", {});
  labels->addWidget(lblDataNum_, 1, 3);
  labels->setColumnStretch(4, 1);

  tabs_ = new QTabBar(this);
  tabs_->setObjectName(QStringLiteral("TabStrip1"));
  for (int g = 1; g <= kGroupTabs; ++g) {
    if (!groups_.Groups[g - 1].HasTab) continue;
    const int index = tabs_->addTab(QString::fromStdString(groups_.Groups[g - 1].TabCaption));
    tabs_->setTabData(index, QStringLiteral("G%1").arg(g));
  }
  tabs_->setCurrentIndex(TabIndexOfGroup(groups_, groups_.CurrentGroup));
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    if (updating_) return;
    const int group = GroupOfTabIndex(groups_, index);
    CGroupChange(group);
    // TGroupChange: the trend window takes the group too.
    if (trend_ && trend_->view().CurrentGroup != group) trend_->selectGroup(group);
  });

  table_ = new MathGrid(this);
  table_->setObjectName(QStringLiteral("MSCurData"));
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setSelectionMode(QAbstractItemView::ContiguousSelection);
  table_->horizontalHeader()->setVisible(false);
  table_->verticalHeader()->setVisible(false);

  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  auto *title = Label(this, "lblTitle", text(10599));
  layout->addWidget(title);
  layout->addLayout(labels);
  layout->addWidget(tabs_);
  layout->addWidget(table_, 1);
  resize(760, 360);
  CGroupChange(groups_.CurrentGroup);
}

void CursorCalcWindow::attachTrend(TrendWindow *trend) {
  if (trend_) disconnect(trend_, nullptr, this, nullptr);
  trend_ = trend;
  if (!trend) return;
  connect(trend, &TrendWindow::cursorsChanged, this, [this](int slot, int, bool) {
    if (slot == slot_) CurCompute();
  });
  connect(trend, &TrendWindow::groupChanged, this, [this](int slot, int group) {
    if (slot == slot_) selectGroup(group);
  });
  if (trend->view().CurrentGroup != groups_.CurrentGroup)
    selectGroup(trend->view().CurrentGroup);
  else
    CurCompute();
}

void CursorCalcWindow::get_ComputeTime() {
  const RecordSlot &slot = Shared().Slot(slot_);
  const bool set1 = trend_ && trend_->view().Cursor1Set;
  const bool set2 = trend_ && trend_->view().Cursor2Set;
  span_ = recscope::get_ComputeTime(set1, set1 ? trend_->view().Cursor1Time : 0, set2,
                                    set2 ? trend_->view().Cursor2Time : 0, slot.Record.FirstTime,
                                    slot.Record.LastTime, slot.Period(), Shared().DateFormatNo);
  lblStTime_->setText(QString::fromStdString(span_.StTimeText));
  lblEndTime_->setText(QString::fromStdString(span_.EndTimeText));
  lblTimeWid_->setText(QString::fromStdString(span_.TimeWidthText));
  lblDataNum_->setText(QString::fromStdString(span_.DataNumText));
}

void CursorCalcWindow::CurCompute() {
  get_ComputeTime();
  const RecordSlot &slot = Shared().Slot(slot_);
  std::vector<ChannelStatistics> stats;
  if (!GetRangeStatistics(slot.Record, Shared().ProgramFolder, slot_, slot.Period(), span_.Start,
                          span_.End, stats))
    stats.clear();
  grid_ = CurDataGrid(slot.Record, columns_, stats, Shared().DecimalChar);
  ShowGrid();
}

void CursorCalcWindow::CGroupChange(int groupNo) {
  if (groupNo < 1 || groupNo > kGroupTabs || !groups_.Groups[groupNo - 1].HasTab) return;
  groups_.CurrentGroup = static_cast<std::int16_t>(groupNo);
  columns_ = CurDataColumns(Shared().Slot(slot_).Record, groups_.Group().ChannelNo);
  CurCompute();
}

void CursorCalcWindow::selectGroup(int groupNo) {
  if (groupNo == groups_.CurrentGroup) return;
  if (groupNo < 1 || groupNo > kGroupTabs || !groups_.Groups[groupNo - 1].HasTab) return;
  updating_ = true;
  tabs_->setCurrentIndex(TabIndexOfGroup(groups_, groupNo));
  updating_ = false;
  CGroupChange(groupNo);
}

void CursorCalcWindow::ShowGrid() {
  table_->setUpdatesEnabled(false);
  table_->clearContents();
  table_->setRowCount(static_cast<int>(grid_.size()));
  table_->setColumnCount(static_cast<int>(columns_.size()) + 1);
  table_->setColumnWidth(0, static_cast<int>(kTitleColumnWidth / kTwipsPerPixel));
  for (int c = 1; c < table_->columnCount(); ++c)
    table_->setColumnWidth(c, static_cast<int>(CurDataColumnWidth() / kTwipsPerPixel));
  for (size_t r = 0; r < grid_.size(); ++r)
    for (size_t c = 0; c < grid_[r].size(); ++c)
      table_->setItem(static_cast<int>(r), static_cast<int>(c),
                      new QTableWidgetItem(QString::fromStdString(grid_[r][c])));
  table_->setUpdatesEnabled(true);
}

std::string CursorCalcWindow::copyText(bool withTitle) const {
  if (withTitle) return MathCopyText(span_, grid_);
  const QList<QTableWidgetSelectionRange> ranges = table_->selectedRanges();
  if (ranges.isEmpty()) return {};
  const QTableWidgetSelectionRange &range = ranges.first();
  return GridCopyText(grid_, range.topRow(), range.leftColumn(), range.bottomRow(),
                      range.rightColumn(), false);
}

void CursorCalcWindow::MathMSFlexGrid1_copy(bool withTitle) {
  QGuiApplication::clipboard()->setText(QString::fromStdString(copyText(withTitle)));
}

}  // namespace recscope
