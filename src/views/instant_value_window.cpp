#include "views/instant_value_window.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTableWidget>

#include <algorithm>

#include "shell/catalogue.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kTwips = 15;  // twips a pixel
constexpr int kFillTopCaption = 11003;
constexpr int kFillEndCaption = 11004;
constexpr int kFillBeforeCaption = 11005;
constexpr int kFillNextCaption = 11006;
constexpr int kTimeColumnWidth = 19313;
constexpr int kValueColumnWidth = 19314;
constexpr int kCopyCaption = 10558;
constexpr int kCopyTitlesCaption = 10556;

// The buttons at the bottom, in twips.
constexpr int kButtonWidth = 1300;
constexpr int kButtonHeight = 375;
constexpr int kButtonGap = 100;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }
int Px(int twips) { return twips / kTwips; }
int CatalogueTwips(int id, int fallback) {
  try {
    return std::stoi(GetMessageText(id));
  } catch (...) {
    return fallback;
  }
}

}  // namespace

InstantValueWindow::InstantValueWindow(int slot, QWidget *parent)
    : QWidget(parent),
      slot_(slot),
      values_(Shared().Slot(slot).Record, Shared().DecimalChar, Shared().DateFormatNo) {
  setObjectName(QStringLiteral("frmInstantvalue"));
  setProperty("slot", slot);

  tabs_ = new QTabBar(this);
  tabs_->setObjectName(QStringLiteral("TabStrip1"));
  for (const InstantTab &tab : InstantTabs(values_.info())) {
    const int index = tabs_->addTab(QString::fromStdString(tab.Caption));
    tabs_->setTabData(index, QStringLiteral("G%1").arg(tab.GroupNo));
  }
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    if (updating_ || index < 0) return;
    const int groupNo = tabs_->tabData(index).toString().mid(1).toInt();
    selectGroup(groupNo);
    emit groupChosen(slot_, groupNo);
  });

  grid_ = new QTableWidget(this);
  grid_->setObjectName(QStringLiteral("MSFlexGrid1"));
  grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid_->setSelectionMode(QAbstractItemView::ContiguousSelection);
  grid_->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  grid_->horizontalHeader()->setDefaultSectionSize(Px(CatalogueTwips(kValueColumnWidth, 1300)));
  grid_->verticalHeader()->setFixedWidth(Px(CatalogueTwips(kTimeColumnWidth, 2200)));
  grid_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 4);
  connect(grid_, &QTableWidget::cellClicked, this, [this](int row, int) {
    const auto &times = values_.grid().Times;
    if (row >= 0 && row < static_cast<int>(times.size()))
      emit rowChosen(slot_, times[static_cast<size_t>(row)]);
  });
  connect(grid_->verticalHeader(), &QHeaderView::sectionClicked, this, [this](int row) {
    const auto &times = values_.grid().Times;
    if (row >= 0 && row < static_cast<int>(times.size()))
      emit rowChosen(slot_, times[static_cast<size_t>(row)]);
  });

  auto button = [this](const char *name, int caption, void (InstantValueWindow::*action)()) {
    auto *b = new QPushButton(Text(caption), this);
    b->setObjectName(QLatin1String(name));
    connect(b, &QPushButton::clicked, this, action);
    return b;
  };
  top_ = button("cmdFillTop", kFillTopCaption, &InstantValueWindow::fillTop);
  end_ = button("cmdFillEnd", kFillEndCaption, &InstantValueWindow::fillEnd);
  before_ = button("cmdFillbefore", kFillBeforeCaption, &InstantValueWindow::fillBefore);
  next_ = button("cmdFillnext", kFillNextCaption, &InstantValueWindow::fillNext);

  values_.SetGroup(values_.group());
  updating_ = true;
  for (int i = 0; i < tabs_->count(); ++i)
    if (tabs_->tabData(i).toString() == QStringLiteral("G%1").arg(values_.group()))
      tabs_->setCurrentIndex(i);
  updating_ = false;
  ShowColumns();
  ShowPage();
  resize(Px(9600), Px(6000));
  Shared().Slot(slot_).InstantOpen = -1;
}

InstantValueWindow::~InstantValueWindow() { Shared().Slot(slot_).InstantOpen = 0; }

void InstantValueWindow::selectGroup(int groupNo) {
  int index = -1;
  for (int i = 0; i < tabs_->count(); ++i)
    if (tabs_->tabData(i).toString() == QStringLiteral("G%1").arg(groupNo)) index = i;
  if (index < 0) return;
  if (tabs_->currentIndex() != index) {
    updating_ = true;
    tabs_->setCurrentIndex(index);
    updating_ = false;
  }
  if (groupNo == values_.group()) return;
  values_.SetGroup(groupNo);
  ShowColumns();
  ShowPage();
}

void InstantValueWindow::followCursorTime(std::int32_t time) {
  const RecordSlot &slot = Shared().Slot(slot_);
  const std::int64_t index = CursorRecordIndex(time, slot.Record.FirstTime, slot.Period());
  const int reads = values_.readCount();
  if (!values_.FollowCursor(index)) return;
  if (values_.readCount() != reads)
    ShowPage();
  else
    ShowSelection();
}

void InstantValueWindow::fillTop() {
  if (values_.FillTop()) ShowPage();
}
void InstantValueWindow::fillEnd() {
  if (values_.FillEnd()) ShowPage();
}
void InstantValueWindow::fillBefore() {
  if (values_.FillBefore()) ShowPage();
}
void InstantValueWindow::fillNext() {
  if (values_.FillNext()) ShowPage();
}

void InstantValueWindow::refreshFormat() {
  values_.SetFormat(Shared().DecimalChar, Shared().DateFormatNo);
  ShowPage();
}

void InstantValueWindow::copySelection(bool withTitles) {
  const QList<QTableWidgetSelectionRange> ranges = grid_->selectedRanges();
  if (ranges.isEmpty() || values_.grid().Cells.empty()) return;
  int top = ranges.front().topRow(), bottom = ranges.front().bottomRow();
  int left = ranges.front().leftColumn(), right = ranges.front().rightColumn();
  for (const QTableWidgetSelectionRange &r : ranges) {
    top = std::min(top, r.topRow());
    bottom = std::max(bottom, r.bottomRow());
    left = std::min(left, r.leftColumn());
    right = std::max(right, r.rightColumn());
  }
  // Grid columns count the time column first.
  const std::string text =
      InstantCopyText(values_.grid(), top, bottom, left + 1, right + 1, withTitles, "\r");
  QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

void InstantValueWindow::ShowColumns() {
  const InstantGrid &grid = values_.grid();
  const int columns = static_cast<int>(grid.Columns.size());
  grid_->setColumnCount(columns);
  for (int c = 0; c < columns; ++c) {
    const QString title = QString::fromStdString(grid.Title1[static_cast<size_t>(c + 1)]) + "\n" +
                          QString::fromStdString(grid.Title2[static_cast<size_t>(c + 1)]);
    auto *item = grid_->horizontalHeaderItem(c);
    if (!item) {
      item = new QTableWidgetItem;
      grid_->setHorizontalHeaderItem(c, item);
    }
    item->setText(title);
  }
}

void InstantValueWindow::ShowPage() {
  const InstantGrid &grid = values_.grid();
  const int rows = static_cast<int>(grid.Cells.size());
  const int columns = static_cast<int>(grid.Columns.size());
  // The grid is not redrawn while its cells are set.
  grid_->setUpdatesEnabled(false);
  grid_->clearSelection();
  grid_->setRowCount(rows);
  for (int r = 0; r < rows; ++r) {
    const std::vector<std::string> &cells = grid.Cells[static_cast<size_t>(r)];
    auto *head = grid_->verticalHeaderItem(r);
    if (!head) {
      head = new QTableWidgetItem;
      grid_->setVerticalHeaderItem(r, head);
    }
    head->setText(QString::fromStdString(cells[0]));
    for (int c = 0; c < columns; ++c) {
      auto *item = grid_->item(r, c);
      if (!item) {
        item = new QTableWidgetItem;
        grid_->setItem(r, c, item);
      }
      item->setText(QString::fromStdString(cells[static_cast<size_t>(c + 1)]));
    }
  }
  grid_->setUpdatesEnabled(true);
  ShowSelection();
}

void InstantValueWindow::ShowSelection() {
  const int rows = grid_->rowCount();
  const int columns = grid_->columnCount();
  if (rows == 0 || columns == 0) return;
  const int row = std::clamp(values_.row(), 0, rows - 1);
  grid_->clearSelection();
  grid_->setCurrentCell(row, 0, QItemSelectionModel::NoUpdate);
  grid_->setRangeSelected(QTableWidgetSelectionRange(row, 0, row, columns - 1), true);
  grid_->verticalScrollBar()->setValue(std::clamp(values_.topRow(), 0, rows - 1));
}

void InstantValueWindow::LayoutControls() {
  const int w = width();
  const int h = height();
  const int tabHeight = tabs_->sizeHint().height();
  tabs_->setGeometry(0, 0, w, tabHeight);
  const int buttonsTop = h - Px(kButtonHeight) - Px(kButtonGap);
  grid_->setGeometry(0, tabHeight, w, std::max(0, buttonsTop - tabHeight - Px(kButtonGap)));
  QPushButton *buttons[4] = {top_, before_, next_, end_};
  for (int i = 0; i < 4; ++i)
    buttons[i]->setGeometry(Px(kButtonGap) + i * (Px(kButtonWidth) + Px(kButtonGap)), buttonsTop,
                            Px(kButtonWidth), Px(kButtonHeight));
}

void InstantValueWindow::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  LayoutControls();
}

void InstantValueWindow::contextMenuEvent(QContextMenuEvent *event) {
  QMenu menu(this);
  QAction *copy = menu.addAction(Text(kCopyCaption));
  copy->setObjectName(QStringLiteral("mnuCopyPV"));
  QAction *copyTitles = menu.addAction(Text(kCopyTitlesCaption));
  copyTitles->setObjectName(QStringLiteral("mnuCopyPVti"));
  QAction *chosen = menu.exec(event->globalPos());
  if (chosen == copy) copySelection(false);
  if (chosen == copyTitles) copySelection(true);
}

}  // namespace recscope
