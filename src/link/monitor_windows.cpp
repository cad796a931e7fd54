#include "link/monitor_windows.h"

#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QScrollBar>
#include <QTabBar>
#include <QTableWidget>
#include <algorithm>

#include "shell/shared_state.h"
#include "trend/colour_table.h"

namespace recscope {

namespace {

constexpr int kTabHeight = 26;
constexpr int kTimeHeight = 20;
constexpr int kCellWidth = 120;
constexpr int kCellHeight = 52;
constexpr int kScrollExtent = 16;

const RecordFileInfo &LinkRecord() { return Shared().Slot(kLinkSlot).Record; }

QString Text(const std::string &text) { return QString::fromStdString(text); }

std::string GroupCaption(const RecordFileInfo &record, int groupNo) {
  std::string name = record.Groups[static_cast<std::size_t>(groupNo - 1)].GroupName;
  while (!name.empty() && (name.back() == ' ' || name.back() == '\0')) name.pop_back();
  return name;
}

// The bars of frmComBargraph: a bar a channel, its label under it and its value
// over it, filled up to the value's place on the scale.
class BarPicture : public QWidget {
 public:
  BarPicture(const std::vector<MonitorCell> &cells, QWidget *parent)
      : QWidget(parent), cells_(cells) {
    setObjectName(QStringLiteral("Picture1"));
    setAutoFillBackground(true);
    QPalette p = palette();
    p.setColor(QPalette::Window, Qt::white);
    setPalette(p);
  }

 protected:
  void paintEvent(QPaintEvent *) override {
    QPainter painter(this);
    const int count = std::max<int>(1, static_cast<int>(cells_.size()));
    const int slot = width() / count;
    const int top = 24;
    const int bottom = height() - 24;
    const int barWidth = std::max(6, slot / 2);
    for (int i = 0; i < static_cast<int>(cells_.size()); ++i) {
      const MonitorCell &cell = cells_[static_cast<std::size_t>(i)];
      const int x = i * slot + (slot - barWidth) / 2;
      painter.setPen(Qt::black);
      painter.setBrush(Qt::NoBrush);
      painter.drawRect(x, top, barWidth, bottom - top);
      const int filled = static_cast<int>((bottom - top) * cell.Fraction);
      const ChannelInfo *channel =
          cell.Member >= 1 && cell.Member <= static_cast<int>(LinkRecord().Channels.size())
              ? &LinkRecord().Channels[static_cast<std::size_t>(cell.Member - 1)]
              : nullptr;
      QColor fill(Qt::darkGray);
      if (channel) {
        std::string colour = ColourText(Rgb{64, 64, 64});
        ColorFromCode(channel->ColorNo, colour);
        const Rgb rgb = RgbOfColourText(colour);
        fill = QColor(rgb.r, rgb.g, rgb.b);
      }
      painter.setBrush(fill);
      painter.drawRect(x, bottom - filled, barWidth, filled);
      painter.drawText(QRect(i * slot, bottom + 2, slot, 20), Qt::AlignCenter, Text(cell.Label));
      painter.drawText(QRect(i * slot, 2, slot, 20), Qt::AlignCenter, Text(cell.Value));
    }
  }

 private:
  const std::vector<MonitorCell> &cells_;
};

}  // namespace

MonitorGroupWindow::MonitorGroupWindow(const char *objectName, QWidget *parent) : QWidget(parent) {
  setObjectName(QString::fromLatin1(objectName));
  tabs_ = new QTabBar(this);
  tabs_->setObjectName(QStringLiteral("TabStrip1"));
  const RecordFileInfo &record = LinkRecord();
  for (int g : GroupsWithMembers(record)) {
    const int index = tabs_->addTab(Text(GroupCaption(record, g)));
    tabs_->setTabData(index, g);
  }
  if (tabs_->count() > 0) group_ = tabs_->tabData(0).toInt();
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    if (index >= 0) selectGroup(tabs_->tabData(index).toInt());
  });
  time_ = new QLabel(this);
  time_->setObjectName(QStringLiteral("lblTime"));
}

void MonitorGroupWindow::selectGroup(int groupNo) {
  group_ = groupNo;
  for (int i = 0; i < tabs_->count(); ++i)
    if (tabs_->tabData(i).toInt() == groupNo && tabs_->currentIndex() != i)
      tabs_->setCurrentIndex(i);
  if (ring_) redraw(*ring_, index_);
}

void MonitorGroupWindow::redraw(const MonitorRing &ring, int index) {
  ring_ = &ring;
  index_ = index;
  cells_.clear();
  const RecordFileInfo &record = LinkRecord();
  for (int member : GroupMembers(record, group_))
    cells_.push_back(MonitorCellOf(record, ring, index, member));
  time_->setText(Text(MonitorTimeText(ring, index)));
  Show();
}

QString MonitorGroupWindow::timeText() const { return time_->text(); }

ComInstantValueWindow::ComInstantValueWindow(QWidget *parent)
    : MonitorGroupWindow("frmComInstantvalue", parent) {
  setWindowTitle(QStringLiteral("Instant value"));
  grid_ = new QTableWidget(0, 4, this);
  grid_->setObjectName(QStringLiteral("grdValue"));
  grid_->verticalHeader()->hide();
  grid_->horizontalHeader()->hide();
  grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid_->setColumnWidth(0, 50);
  grid_->setColumnWidth(1, 120);
  grid_->setColumnWidth(2, 90);
  grid_->setColumnWidth(3, 70);
  resize(380, 330);
}

void ComInstantValueWindow::Show() {
  grid_->setRowCount(static_cast<int>(cells_.size()));
  for (int r = 0; r < static_cast<int>(cells_.size()); ++r) {
    const MonitorCell &cell = cells_[static_cast<std::size_t>(r)];
    const std::string texts[4] = {cell.Label, cell.Tag, cell.Value, cell.Unit};
    for (int c = 0; c < 4; ++c) {
      auto *item = new QTableWidgetItem(Text(texts[c]));
      if (c == 2) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      grid_->setItem(r, c, item);
    }
  }
}

QStringList ComInstantValueWindow::rowTexts() const {
  QStringList rows;
  for (int r = 0; r < grid_->rowCount(); ++r) {
    QStringList columns;
    for (int c = 0; c < grid_->columnCount(); ++c)
      columns << (grid_->item(r, c) ? grid_->item(r, c)->text() : QString());
    rows << columns.join(QLatin1Char('\t'));
  }
  return rows;
}

void ComInstantValueWindow::resizeEvent(QResizeEvent *) {
  tabs_->setGeometry(0, 0, width(), kTabHeight);
  time_->setGeometry(4, kTabHeight, width() - 8, kTimeHeight);
  grid_->setGeometry(0, kTabHeight + kTimeHeight, width(), height() - kTabHeight - kTimeHeight);
}

ComBargraphWindow::ComBargraphWindow(QWidget *parent)
    : MonitorGroupWindow("frmComBargraph", parent) {
  setWindowTitle(QStringLiteral("Bar graph"));
  picture_ = new BarPicture(cells_, this);
  resize(480, 330);
}

void ComBargraphWindow::Show() { picture_->update(); }

void ComBargraphWindow::resizeEvent(QResizeEvent *) {
  tabs_->setGeometry(0, 0, width(), kTabHeight);
  time_->setGeometry(4, kTabHeight, width() - 8, kTimeHeight);
  picture_->setGeometry(0, kTabHeight + kTimeHeight, width(), height() - kTabHeight - kTimeHeight);
}

ComWholeDisplayWindow::ComWholeDisplayWindow(QWidget *parent) : QWidget(parent) {
  setObjectName(QStringLiteral("frmComWholedisplay"));
  setWindowTitle(QStringLiteral("Whole display"));
  viewport_ = new QWidget(this);
  viewport_->setObjectName(QStringLiteral("Picture1"));
  content_ = new QWidget(viewport_);
  content_->setObjectName(QStringLiteral("Picture2"));
  vscroll_ = new QScrollBar(Qt::Vertical, this);
  vscroll_->setObjectName(QStringLiteral("VScroll1"));
  hscroll_ = new QScrollBar(Qt::Horizontal, this);
  hscroll_->setObjectName(QStringLiteral("HScroll1"));
  connect(vscroll_, &QScrollBar::valueChanged, this,
          [this](int value) { content_->move(content_->x(), -value); });
  connect(hscroll_, &QScrollBar::valueChanged, this,
          [this](int value) { content_->move(-value, content_->y()); });
  const RecordFileInfo &record = LinkRecord();
  const std::vector<int> members = AllMembers(record);
  rows_ = WholeDisplayRows(static_cast<int>(members.size()));
  for (std::size_t i = 0; i < members.size(); ++i) {
    auto *label = new QLabel(content_);
    label->setObjectName(QStringLiteral("lblCell%1").arg(i + 1));
    label->setFrameShape(QFrame::Box);
    label->setAlignment(Qt::AlignCenter);
    const int row = static_cast<int>(i) / kWholeDisplayColumns;
    const int column = static_cast<int>(i) % kWholeDisplayColumns;
    label->setGeometry(column * kCellWidth, row * kCellHeight, kCellWidth - 2, kCellHeight - 2);
    labels_.push_back(label);
  }
  content_->resize(kWholeDisplayColumns * kCellWidth, rows_ * kCellHeight);
  resize(500, 240);
}

void ComWholeDisplayWindow::redraw(const MonitorRing &ring, int index) {
  const RecordFileInfo &record = LinkRecord();
  const std::vector<int> members = AllMembers(record);
  cells_.clear();
  for (std::size_t i = 0; i < members.size(); ++i) {
    cells_.push_back(MonitorCellOf(record, ring, index, members[i]));
    if (i < labels_.size()) {
      const MonitorCell &cell = cells_.back();
      labels_[i]->setText(Text(cell.Label + " " + cell.Tag + "\n" + cell.Value +
                               (cell.Unit.empty() ? "" : " " + cell.Unit)));
    }
  }
}

QStringList ComWholeDisplayWindow::cellTexts() const {
  QStringList texts;
  for (const QLabel *label : labels_) texts << label->text();
  return texts;
}

void ComWholeDisplayWindow::resizeEvent(QResizeEvent *) { Layout(); }

void ComWholeDisplayWindow::Layout() {
  const int w = std::max(0, width() - kScrollExtent);
  const int h = std::max(0, height() - kScrollExtent);
  viewport_->setGeometry(0, 0, w, h);
  vscroll_->setGeometry(w, 0, kScrollExtent, h);
  hscroll_->setGeometry(0, h, w, kScrollExtent);
  vscroll_->setRange(0, std::max(0, content_->height() - h));
  vscroll_->setPageStep(std::max(1, h));
  vscroll_->setSingleStep(kCellHeight);
  hscroll_->setRange(0, std::max(0, content_->width() - w));
  hscroll_->setPageStep(std::max(1, w));
  hscroll_->setSingleStep(kCellWidth);
  content_->move(-hscroll_->value(), -vscroll_->value());
}

}  // namespace recscope
