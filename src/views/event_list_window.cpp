#include "views/event_list_window.h"

#include "trend/shift_key.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTableWidget>
#include <QVBoxLayout>

#include "shell/catalogue.h"
#include "shell/frame/main_window.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"
#include "views/event_list.h"

namespace recscope {

namespace {

constexpr int kSettingCaption = 11007;  // "設定"

EventListWindow::SettingOpener &Opener() {
  static EventListWindow::SettingOpener opener;
  return opener;
}

std::function<int()> &ShiftSource() {
  // The program's Shift toggle, read as a click on the plot reads it.
  static std::function<int()> source = [] { return ShiftKeyState::Instance().State(); };
  return source;
}

// The grid: Ctrl+C copies the selection, the right button opens the copy popup
// of the main window (mnuCopyEvent).
class EventGrid : public QTableWidget {
 public:
  explicit EventGrid(EventListWindow *owner) : QTableWidget(owner), owner_(owner) {}

 protected:
  void keyPressEvent(QKeyEvent *event) override {
    if (event->matches(QKeySequence::Copy)) {
      owner_->EventMSFlexGrid1_copy(false);
      event->accept();
      return;
    }
    QTableWidget::keyPressEvent(event);
  }
  void contextMenuEvent(QContextMenuEvent *event) override {
    if (auto *frame = qobject_cast<MainWindow *>(owner_->window()))
      if (QAction *popup = frame->command(QStringLiteral("mnuCopyEvent")))
        if (popup->menu()) popup->menu()->popup(event->globalPos());
  }

 private:
  EventListWindow *owner_;
};

}  // namespace

void EventListWindow::SetEventSettingOpener(SettingOpener opener) { Opener() = std::move(opener); }
void EventListWindow::SetShiftStateSource(std::function<int()> source) {
  ShiftSource() = source ? std::move(source)
                         : std::function<int()>([] { return ShiftKeyState::Instance().State(); });
}

EventListWindow::EventListWindow(int slot, QWidget *parent) : QWidget(parent), slot_(slot) {
  setObjectName(QStringLiteral("frmEventlist"));
  setProperty("slot", slot);
  tabs_ = new QTabBar(this);
  tabs_->setObjectName(QStringLiteral("TabStrip1"));
  for (int tab = kAlarmTab; tab <= kFlagTab; ++tab) {
    const int index = tabs_->addTab(QString::fromStdString(ListTabCaption(tab)));
    tabs_->setTabData(index, QString::fromStdString(ListTabKey(tab)));
  }
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    if (!updating_) selectTab(ListTabOfKey(tabs_->tabData(index).toString().toStdString()));
  });

  table_ = new EventGrid(this);
  table_->setObjectName(QStringLiteral("MSFlexGrid1"));
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setSelectionMode(QAbstractItemView::ContiguousSelection);
  table_->verticalHeader()->setVisible(false);
  table_->horizontalHeader()->setHighlightSections(false);
  connect(table_, &QTableWidget::cellClicked, this, [this](int row, int) { clickRow(row + 1); });

  cmdSetting_ = new QPushButton(QString::fromStdString(GetMessageText(kSettingCaption)), this);
  cmdSetting_->setObjectName(QStringLiteral("cmdSetting"));
  connect(cmdSetting_, &QPushButton::clicked, this, &EventListWindow::onSetting);

  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addWidget(tabs_);
  layout->addWidget(table_, 1);
  layout->addWidget(cmdSetting_, 0, Qt::AlignLeft);

  const int gridWidth = static_cast<int>(EventGridWidth() / kTwipsPerPixel);
  resize(gridWidth + 8 + table_->verticalScrollBar()->sizeHint().width(), 420);
  updating_ = true;
  tabs_->setCurrentIndex(0);
  updating_ = false;
  FillCells2(kAlarmTab);
}

void EventListWindow::attachTrend(TrendWindow *trend) {
  if (trend_) disconnect(trend_, nullptr, this, nullptr);
  trend_ = trend;
  if (!trend) return;
  connect(trend, &TrendWindow::eventFound, this, [this](int slot, int kind, int row) {
    if (slot == slot_) selectEvent(kind, row);
  });
  // Flags added or removed, and an event text dragged to a new level, show at once.
  connect(trend, &TrendWindow::flagsChanged, this, [this](int slot) {
    if (slot == slot_) Refill();
  });
  connect(trend, &TrendWindow::eventLevelChanged, this, [this](int slot, int, int) {
    if (slot == slot_) Refill();
  });
}

void EventListWindow::FillCells2(int tab) {
  const RecordSlot &slot = Shared().Slot(slot_);
  listTab_ = tab;
  const bool horizontal = Shared().TrendOrientation != 0;
  grid_ = recscope::FillCells2(tab, slot.Alarms, slot.Flags, Shared().DateFormatNo, horizontal);
  const std::vector<GridColumn> columns = EventColumns(tab, horizontal);
  // The grid is not redrawn while its columns and rows change.
  table_->setUpdatesEnabled(false);
  table_->clearContents();
  table_->setColumnCount(static_cast<int>(columns.size()));
  table_->setRowCount(static_cast<int>(grid_.size()) - 1);
  QStringList titles;
  for (size_t c = 0; c < columns.size(); ++c) {
    titles << QString::fromStdString(columns[c].Title);
    table_->setColumnWidth(static_cast<int>(c),
                           static_cast<int>(columns[c].Width / kTwipsPerPixel));
  }
  table_->setHorizontalHeaderLabels(titles);
  for (size_t r = 1; r < grid_.size(); ++r)
    for (size_t c = 0; c < grid_[r].size(); ++c)
      table_->setItem(static_cast<int>(r) - 1, static_cast<int>(c),
                      new QTableWidgetItem(QString::fromStdString(grid_[r][c])));
  table_->setUpdatesEnabled(true);
}

void EventListWindow::Refill() { FillCells2(listTab_); }

void EventListWindow::selectTab(int tab) {
  if (tab < kAlarmTab || tab > kFlagTab || tab == listTab_) return;
  updating_ = true;
  tabs_->setCurrentIndex(tab - 1);
  updating_ = false;
  FillCells2(tab);
}

void EventListWindow::selectEvent(int kind, int row) {
  const int tab = ListTabOfEventKind(kind);
  if (tab == 0) return;
  selectTab(tab);
  if (row < 0 || row >= table_->rowCount()) return;
  table_->clearSelection();
  table_->setCurrentCell(row, 0);
  table_->selectRow(row);
  table_->scrollToItem(table_->item(row, 0), QAbstractItemView::PositionAtTop);
}

void EventListWindow::clickRow(int row) {
  if (!trend_) return;
  const TrendView &view = trend_->view();
  const int cursorNo =
      ListClickCursor(row, view.Cursor1Set, view.Cursor2Set, ShiftSource()(), view.ShiftBaseline);
  if (cursorNo == 0) return;
  const RecordSlot &slot = Shared().Slot(slot_);
  const std::optional<std::int32_t> time = EventRowTime(listTab_, slot.Alarms, slot.Flags, row);
  if (!time) return;
  trend_->setCursorFromList(cursorNo, *time, true);
  table_->selectRow(row - 1);
}

std::string EventListWindow::copyText(bool withTitle) const {
  const QList<QTableWidgetSelectionRange> ranges = table_->selectedRanges();
  if (ranges.isEmpty()) return withTitle ? GridCopyText(grid_, 1, 0, 0, -1, false) : std::string();
  const QTableWidgetSelectionRange &range = ranges.first();
  // The selection as it was made: from the anchor to the current cell. Grid row 0
  // holds the titles, so a table row is one less than its grid row.
  int anchorRow = range.topRow(), endRow = range.bottomRow();
  int anchorColumn = range.leftColumn(), endColumn = range.rightColumn();
  if (table_->currentRow() == range.topRow()) std::swap(anchorRow, endRow);
  if (table_->currentColumn() == range.leftColumn()) std::swap(anchorColumn, endColumn);
  return GridCopyText(grid_, anchorRow + 1, anchorColumn, endRow + 1, endColumn, withTitle);
}

void EventListWindow::EventMSFlexGrid1_copy(bool withTitle) {
  QGuiApplication::clipboard()->setText(QString::fromStdString(copyText(withTitle)));
}

void EventListWindow::onSetting() {
  // Only a tab with events opens the dialog.
  if (table_->rowCount() < 1 || !Opener()) return;
  const int topRow = std::max(table_->rowAt(0), 0) + 1;
  Opener()(*this, listTab_, topRow);
}

}  // namespace recscope
