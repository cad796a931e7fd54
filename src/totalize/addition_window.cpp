#include "totalize/addition_window.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QFrame>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabBar>
#include <QTableWidget>

#include <algorithm>
#include <filesystem>

#include "record/read_dialog.h"
#include "shell/catalogue.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "totalize/totalize_view.h"

namespace recscope {

namespace {

constexpr int kTwips = 15;             // twips a pixel
constexpr int kButtonCaption = 11003;  // 11003 to 11006 by index
constexpr int kFileGone = 18805;
constexpr int kReadFailed = 18806;
constexpr int kCtrlKey = 17;
constexpr int kCKey = 67;

// Places in twips that the resize rules leave to the window.
constexpr int kTabLeft = 75;
constexpr int kTabTop = 75;
constexpr int kGridLeft = 200;
constexpr int kStripHeight = 500;
constexpr int kButtonWidth = 1300;
constexpr int kButtonHeight = 375;
constexpr int kButtonGap = 100;

int Px(int twips) { return twips / kTwips; }
int Tw(int pixels) { return pixels * kTwips; }

bool FileExists(const std::string &path) {
  std::error_code error;
  return std::filesystem::exists(path, error) && !error;
}

// The grid: the copy shortcut by key state and the main window's copy popup on
// a release of the right button.
class AdditionGrid : public QTableWidget {
 public:
  explicit AdditionGrid(AdditionWindow *owner) : QTableWidget(owner), owner_(owner) {}

 protected:
  void keyPressEvent(QKeyEvent *event) override {
    if (!event->isAutoRepeat()) owner_->gridKeyDown(event->key());
    // The copy is made at the key's release; the view's own copy of one cell is kept out.
    if (event->matches(QKeySequence::Copy)) {
      event->accept();
      return;
    }
    QTableWidget::keyPressEvent(event);
  }
  void keyReleaseEvent(QKeyEvent *event) override {
    if (!event->isAutoRepeat()) owner_->gridKeyUp();
    QTableWidget::keyReleaseEvent(event);
  }
  void mouseReleaseEvent(QMouseEvent *event) override {
    if (event->button() == Qt::RightButton) {
      owner_->slot();
      if (auto *frame = qobject_cast<MainWindow *>(owner_->window()))
        if (QAction *popup = frame->command(QStringLiteral("mnuCopyTotal")))
          if (popup->menu()) popup->menu()->popup(event->globalPosition().toPoint());
      event->accept();
      return;
    }
    QTableWidget::mouseReleaseEvent(event);
  }
  void contextMenuEvent(QContextMenuEvent *event) override { event->accept(); }

 private:
  AdditionWindow *owner_;
};

}  // namespace

AdditionWindow::AdditionWindow(int slot, QWidget *parent) : QWidget(parent), slot_(slot) {
  setObjectName(QStringLiteral("frmAddition"));
  setProperty("slot", slot);
  const TotalizeWindow &file = Shared().Totalize(slot);

  pane_ = new QFrame(this);
  pane_->setFrameShape(QFrame::StyledPanel);
  tabs_ = new QTabBar(this);
  tabs_->setObjectName(QStringLiteral("TabStrip1"));
  tabs_->setExpanding(false);
  for (const TotalizeTab &tab : TotalizeTabs(file)) {
    const int index = tabs_->addTab(QString::fromStdString(tab.Caption));
    tabs_->setTabData(index, QString::fromStdString(tab.Key));
  }
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    if (index < 0) return;
    selectTab(TotalizeTabOfKey(tabs_->tabData(index).toString().toStdString()));
  });

  grid_ = new AdditionGrid(this);
  grid_->setObjectName(QStringLiteral("MSFlexGrid1"));
  grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid_->setSelectionMode(QAbstractItemView::ContiguousSelection);
  grid_->horizontalHeader()->hide();
  grid_->verticalHeader()->hide();
  grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 6);

  strip_ = new QWidget(this);
  strip_->setObjectName(QStringLiteral("Picture1"));
  for (int i = 0; i < 4; ++i) {
    auto *button =
        new QPushButton(QString::fromStdString(GetMessageText(kButtonCaption + i)), strip_);
    button->setObjectName(QStringLiteral("cmdFilloperate"));
    button->setProperty("index", i);
    button->setEnabled(false);
    connect(button, &QPushButton::clicked, this, [this, i] { pressButton(i); });
    buttons_[static_cast<std::size_t>(i)] = button;
  }

  // The load: the first tab, the buttons of the first page, the grid with row 4.
  currentTab_ = TotalizeTabOfKey(tabs_->tabData(0).toString().toStdString());
  ShowButtonStates(TotalizeButtonStates(file.CurrentPage, file.PageCount));
  ShowGrid();
  SelectRow(kTotalizeTitleRows);
  resize(Px(12000), Px(6000));
}

AdditionWindow::~AdditionWindow() {
  SharedState &state = Shared();
  state.Totalize(slot_).InUse = 0;
  if (state.OpenAdditionCount > 0) --state.OpenAdditionCount;
}

int AdditionWindow::slot() {
  const int fromCaption = TotalizeSlotOfCaption(windowTitle().toStdString());
  if (fromCaption >= 1 && fromCaption <= kTotalizeSlotCount) slot_ = fromCaption;
  Shared().CurrentAddition = static_cast<std::int16_t>(slot_);
  return slot_;
}

void AdditionWindow::selectTab(int tabNo) {
  slot();
  if (tabNo == 0 || tabNo == currentTab_) return;
  int index = -1;
  for (int i = 0; i < tabs_->count(); ++i)
    if (TotalizeTabOfKey(tabs_->tabData(i).toString().toStdString()) == tabNo) index = i;
  if (index < 0) return;
  currentTab_ = tabNo;
  if (tabs_->currentIndex() != index) {
    const QSignalBlocker quiet(tabs_);
    tabs_->setCurrentIndex(index);
  }
  // Refilled from the page in memory: no read of the file.
  grid_->hide();
  ShowGrid();
  SelectRow(kTotalizeTitleRows);
  grid_->show();
}

void AdditionWindow::pressButton(int index) {
  const int n = slot();
  TotalizeWindow &file = Shared().Totalize(n);
  const std::int32_t oldPage = file.CurrentPage;
  if (!FileExists(file.Path)) {
    ShowMessage(this, kFileGone, QMessageBox::Ok, {{"@AdditionfName@", file.Path}});
    return;
  }
  const std::int32_t page = TotalizePageOfButton(index, oldPage, file.PageCount);
  ShowButtonStates(TotalizeButtonStates(page, file.PageCount));
  if (page != oldPage) {
    auto *reading = new ReadDialog(this);
    reading->show();
    QCoreApplication::processEvents();
    const bool read =
        TurnTotalizePage(file, page, Shared().DecimalChar,
                         [reading](int done, int total) { reading->SetProgress(done, total); });
    delete reading;
    if (!read) {
      // The window stays as it was: its page, its buttons and its grid.
      ShowMessage(this, kReadFailed);
      ShowButtonStates(TotalizeButtonStates(oldPage, file.PageCount));
      return;
    }
    ShowGrid();
  }
  SelectRow(TotalizeRowAfterButton(index, file.PageRows));
}

void AdditionWindow::TotalMSFlexGrid1_copy() {
  slot();
  int selFirst = grid_->currentRow();
  int selLast = selFirst;
  for (const QTableWidgetSelectionRange &range : grid_->selectedRanges()) {
    if (range.topRow() > selFirst || range.bottomRow() < selFirst) continue;
    // The end away from the current row: a selection made upwards ends at its top.
    selLast = range.topRow() == selFirst ? range.bottomRow() : range.topRow();
  }
  if (selFirst < 0) selFirst = selLast = 0;
  QGuiApplication::clipboard()->setText(
      QString::fromStdString(TotalizeCopyText(cells_, selFirst, selLast)));
}

void AdditionWindow::refreshFormat() {
  slot();
  const int row = grid_->currentRow();
  ShowGrid();
  SelectRow(row < 0 ? kTotalizeTitleRows : row);
}

void AdditionWindow::gridKeyDown(int key) {
  slot();
  if (key == Qt::Key_Control) ctrlDown_ = kCtrlKey;
  if (key == Qt::Key_C) cDown_ = kCKey;
}

void AdditionWindow::gridKeyUp() {
  if (ctrlDown_ == kCtrlKey && cDown_ == kCKey) TotalMSFlexGrid1_copy();
  ctrlDown_ = 0;
  cDown_ = 0;
}

void AdditionWindow::ShowGrid() {
  cells_ = TotalizeGrid(Shared().Totalize(slot_), currentTab_, Shared().DateFormatNo);
  const int rows = static_cast<int>(cells_.size());
  const int columns = rows > 0 ? static_cast<int>(cells_.front().size()) : 2;
  grid_->setUpdatesEnabled(false);
  grid_->clearSelection();
  grid_->clearContents();
  grid_->setRowCount(rows);
  grid_->setColumnCount(columns);
  const QBrush titleBrush = palette().brush(QPalette::Button);
  for (int c = 0; c < columns; ++c)
    grid_->setColumnWidth(c, Px(c < 2 ? kTotalizeTimeColumnTwips : kTotalizeValueColumnTwips));
  for (int r = 0; r < rows; ++r) {
    const std::vector<std::string> &row = cells_[static_cast<std::size_t>(r)];
    for (int c = 0; c < columns; ++c) {
      auto *item = new QTableWidgetItem(QString::fromStdString(row[static_cast<std::size_t>(c)]));
      item->setTextAlignment(Qt::AlignCenter);
      if (r < kTotalizeTitleRows) item->setBackground(titleBrush);
      grid_->setItem(r, c, item);
    }
  }
  grid_->setUpdatesEnabled(true);
}

void AdditionWindow::SelectRow(int row) {
  const int rows = grid_->rowCount();
  const int columns = grid_->columnCount();
  if (rows == 0 || columns == 0) return;
  row = std::clamp(row, 0, rows - 1);
  grid_->clearSelection();
  // The view would bring the current cell into sight at its first show on its own;
  // the scroll below decides instead.
  const bool autoScroll = grid_->hasAutoScroll();
  grid_->setAutoScroll(false);
  grid_->setCurrentCell(row, columns - 1, QItemSelectionModel::NoUpdate);
  grid_->setAutoScroll(autoScroll);
  grid_->setRangeSelected(QTableWidgetSelectionRange(row, 0, row, columns - 1), true);
  // The title rows stay in sight while the first data row is the one selected.
  if (row <= kTotalizeTitleRows)
    grid_->scrollToTop();
  else
    grid_->scrollToItem(grid_->item(row, 0));
}

void AdditionWindow::ShowButtonStates(const std::array<bool, 4> &states) {
  for (std::size_t i = 0; i < buttons_.size(); ++i) buttons_[i]->setEnabled(states[i]);
}

void AdditionWindow::LayoutControls() {
  const int gridTop = kTabTop + Tw(tabs_->sizeHint().height()) + 75;
  const TotalizeLayout layout = TotalizeLayoutOf(Tw(width()), Tw(height()), gridTop);
  tabs_->setGeometry(Px(kTabLeft), Px(kTabTop), std::max(0, Px(layout.TabWidth)),
                     tabs_->sizeHint().height());
  const int paneTop = Px(kTabTop) + tabs_->sizeHint().height();
  pane_->setGeometry(Px(kTabLeft), paneTop, std::max(0, Px(layout.TabWidth)),
                     std::max(0, Px(kTabTop + layout.TabHeight) - paneTop));
  grid_->setGeometry(Px(kGridLeft), Px(gridTop), std::max(0, Px(layout.GridWidth)),
                     Px(layout.GridHeight));
  strip_->setGeometry(0, Px(layout.StripTop), width(), Px(kStripHeight));
  // Left to right: file top, page before, page after, file end.
  constexpr int kPlace[4] = {0, 3, 1, 2};
  for (std::size_t i = 0; i < buttons_.size(); ++i)
    buttons_[i]->setGeometry(Px(kButtonGap + kPlace[i] * (kButtonWidth + kButtonGap)), 0,
                             Px(kButtonWidth), Px(kButtonHeight));
  strip_->raise();
}

void AdditionWindow::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  LayoutControls();
}

void AdditionWindow::changeEvent(QEvent *event) {
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) slot();
  QWidget::changeEvent(event);
}

}  // namespace recscope
