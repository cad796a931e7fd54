#include "realtime/digital_window.h"

#include <QHeaderView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "realtime/real_views.h"
#include "shell/catalogue.h"
#include "shell/frame/control_tips.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kValueHeading = 19901;  // then 19902..19905 the four alarms
DigitalWindow *g_digital = nullptr;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

}  // namespace

DigitalWindow *DigitalWindow::Instance() { return g_digital; }

DigitalWindow::DigitalWindow(QWidget *parent) : QWidget(parent) {
  g_digital = this;
  setObjectName(QStringLiteral("frmDigital"));
  setWindowTitle(ControlCaption(objectName()));
  setAttribute(Qt::WA_DeleteOnClose);
  tabs_ = new QTabBar(this);
  tabs_->setObjectName(QStringLiteral("tabDigital"));
  grid_ = new QTableWidget(this);
  grid_->setObjectName(QStringLiteral("msfDigital"));
  grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(tabs_);
  layout->addWidget(grid_, 1);
  connect(tabs_, &QTabBar::currentChanged, this, [this](int) { refresh(); });
  connect(this, &QObject::destroyed, [] { g_digital = nullptr; });
  // The grid follows the monitor once a second, as its trend does.
  auto *timer = new QTimer(this);
  timer->setInterval(1000);
  connect(timer, &QTimer::timeout, this, &DigitalWindow::refresh);
  timer->start();
  setDigitalForm();
}

void DigitalWindow::setDigitalForm() {
  const RealtimeState &rt = Shared().Realtime;
  pages_ = RealDigitalPages(rt);
  const QSignalBlocker block(tabs_);
  while (tabs_->count() > 0) tabs_->removeTab(0);
  for (int p = 0; p < pages_; ++p)
    tabs_->addTab(QString::fromStdString(RealDigitalPageCaption(rt, p)));
  tabs_->setCurrentIndex(0);
  grid_->setColumnCount(5);
  QStringList headings;
  for (int i = 0; i < 5; ++i) headings << Text(kValueHeading + i);
  grid_->setHorizontalHeaderLabels(headings);
  // The 30-channel family needs one page of 30 rows, the 72-channel one three.
  const bool ktx = rt.ModelText.rfind("KTX", 0) == 0;
  resize(ktx ? 520 : 560, 30 * 22 + 90);
  refresh();
}

void DigitalWindow::refresh() {
  const RealtimeState &rt = Shared().Realtime;
  const int page = std::max(tabs_->currentIndex(), 0);
  const auto rows = RealDigitalRows(rt, page);
  grid_->setRowCount(static_cast<int>(rows.size()));
  QStringList labels;
  for (int r = 0; r < static_cast<int>(rows.size()); ++r) {
    const auto &row = rows[static_cast<std::size_t>(r)];
    labels << QString::fromStdString(row[0]);
    for (int c = 0; c < 5; ++c) {
      QTableWidgetItem *item = grid_->item(r, c);
      if (!item) {
        item = new QTableWidgetItem;
        grid_->setItem(r, c, item);
      }
      item->setText(QString::fromStdString(row[static_cast<std::size_t>(c + 1)]));
    }
  }
  grid_->setVerticalHeaderLabels(labels);
}

DigitalWindow *ShowDigital(QMdiArea *mdi) {
  if (DigitalWindow *open = DigitalWindow::Instance()) {
    open->setDigitalForm();
    if (auto *sub = qobject_cast<QMdiSubWindow *>(open->parentWidget()))
      if (mdi) mdi->setActiveSubWindow(sub);
    return open;
  }
  auto *window = new DigitalWindow;
  if (mdi) {
    QMdiSubWindow *sub = mdi->addSubWindow(window);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->show();
  } else {
    window->show();
  }
  return window;
}

}  // namespace recscope
