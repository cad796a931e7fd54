#include "realtime/real_instant_window.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QTabBar>
#include <QVBoxLayout>

#include "realtime/real_views.h"
#include "shell/catalogue.h"
#include "shell/shared_state.h"
#include "trend/trend_view.h"

namespace recscope {

namespace {

constexpr int kCaption = 19733;
constexpr int kTimeCaption = 19734;
constexpr int kAllChannels = 10604;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

QLabel *Cell(QWidget *parent, const char *name) {
  auto *label = new QLabel(parent);
  label->setObjectName(QString::fromLatin1(name));
  label->setMinimumWidth(40);
  return label;
}

}  // namespace

RealInstantWindow::RealInstantWindow(int group, QWidget *parent) : QWidget(parent), group_(group) {
  setObjectName(QStringLiteral("frmRealInstant"));
  setWindowTitle(Text(kCaption));
  setAttribute(Qt::WA_DeleteOnClose);
  tabs_ = new QTabBar(this);
  tabs_->setObjectName(QStringLiteral("TabStrip1"));
  tabs_->setExpanding(false);
  timeCaption_ = new QLabel(Text(kTimeCaption), this);
  timeCaption_->setObjectName(QStringLiteral("lblRealTime"));
  time_ = new QLabel(this);
  time_->setObjectName(QStringLiteral("lblTime"));
  auto *scroll = new QScrollArea(this);
  scroll->setWidgetResizable(true);
  rows_ = new QWidget;
  grid_ = new QGridLayout(rows_);
  grid_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  scroll->setWidget(rows_);
  auto *timeRow = new QHBoxLayout;
  timeRow->addWidget(timeCaption_);
  timeRow->addWidget(time_);
  timeRow->addStretch(1);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(tabs_);
  layout->addLayout(timeRow);
  layout->addWidget(scroll, 1);
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    if (rebuilding_ || index < 0 || index >= static_cast<int>(tabNames_.size())) return;
    const int group = RealTabGroup(tabNames_[static_cast<std::size_t>(index)]);
    if (group != 0 && group != group_) {
      group_ = group;
      subSetChInst();
      subRealInstantSet();
    }
  });
  refresh();
  resize(560, 480);
}

void RealInstantWindow::selectGroup(int group) {
  for (std::size_t i = 0; i < tabNames_.size(); ++i)
    if (RealTabGroup(tabNames_[i]) == group) {
      tabs_->setCurrentIndex(static_cast<int>(i));
      group_ = group;
      subSetChInst();
      subRealInstantSet();
      return;
    }
}

void RealInstantWindow::subSetChInst() {
  while (QLayoutItem *item = grid_->takeAt(0)) {
    delete item->widget();
    delete item;
  }
  const std::vector<RealInstantRow> rows = RealInstantRows(Shared().Realtime, group_);
  for (int r = 0; r < static_cast<int>(rows.size()); ++r) {
    if (group_ == kAllChannelsGroup) {
      // Two label pairs a line: the whole recorder at a glance.
      const int line = r / 2;
      const int column = (r % 2) * 2;
      grid_->addWidget(Cell(rows_, "lblCh_All"), line, column);
      grid_->addWidget(Cell(rows_, "lblVal_All"), line, column + 1);
      continue;
    }
    int c = 0;
    for (const char *name : {"lblCh", "lblTag1", "lblTag2", "lblVal", "lblUnit", "lblAlm1",
                             "lblAlm2", "lblAlm3", "lblAlm4"})
      grid_->addWidget(Cell(rows_, name), r, c++);
  }
}

void RealInstantWindow::subRealInstantSet() {
  const RealtimeState &rt = Shared().Realtime;
  time_->setText(QString::fromStdString(RealInstantTimeText(rt)));
  const std::vector<RealInstantRow> rows = RealInstantRows(rt, group_);
  if (group_ == kAllChannelsGroup) {
    const QList<QLabel *> ch = rows_->findChildren<QLabel *>(QStringLiteral("lblCh_All"));
    const QList<QLabel *> val = rows_->findChildren<QLabel *>(QStringLiteral("lblVal_All"));
    for (int r = 0; r < static_cast<int>(rows.size()) && r < ch.size() && r < val.size(); ++r) {
      ch[r]->setText(QString::fromStdString(rows[static_cast<std::size_t>(r)].Ch));
      val[r]->setText(QString::fromStdString(rows[static_cast<std::size_t>(r)].Value));
    }
    return;
  }
  auto fill = [&](const char *name, auto text) {
    const QList<QLabel *> labels = rows_->findChildren<QLabel *>(QString::fromLatin1(name));
    for (int r = 0; r < static_cast<int>(rows.size()) && r < labels.size(); ++r)
      labels[r]->setText(QString::fromStdString(text(rows[static_cast<std::size_t>(r)])));
  };
  fill("lblCh", [](const RealInstantRow &row) { return row.Ch; });
  fill("lblTag1", [](const RealInstantRow &row) { return row.Tag1; });
  fill("lblTag2", [](const RealInstantRow &row) { return row.Tag2; });
  fill("lblVal", [](const RealInstantRow &row) { return row.Value; });
  fill("lblUnit", [](const RealInstantRow &row) { return row.Unit; });
  for (int a = 0; a < 4; ++a) {
    const QString name = QStringLiteral("lblAlm%1").arg(a + 1);
    const QList<QLabel *> labels = rows_->findChildren<QLabel *>(name);
    for (int r = 0; r < static_cast<int>(rows.size()) && r < labels.size(); ++r) {
      const bool lit = rows[static_cast<std::size_t>(r)].Alarms[static_cast<std::size_t>(a)];
      labels[r]->setText(QString::number(a + 1));
      labels[r]->setProperty("lit", lit);
      labels[r]->setStyleSheet(lit ? QStringLiteral("background: red; color: white")
                                   : QStringLiteral("color: grey"));
    }
  }
}

void RealInstantWindow::refresh() {
  const RealtimeState &rt = Shared().Realtime;
  std::vector<std::string> names;
  for (const std::string &name : rt.TabNames)
    if (RealTabGroup(name) != 0) names.push_back(name);
  if (names != tabNames_) {
    rebuilding_ = true;
    while (tabs_->count() > 0) tabs_->removeTab(0);
    tabNames_ = names;
    int current = 0;
    for (std::size_t i = 0; i < tabNames_.size(); ++i) {
      const int group = RealTabGroup(tabNames_[i]);
      tabs_->addTab(group == kAllChannelsGroup ? Text(kAllChannels)
                                               : QString::fromStdString(tabNames_[i]));
      if (group == group_) current = static_cast<int>(i);
    }
    if (!tabNames_.empty()) {
      tabs_->setCurrentIndex(current);
      group_ = RealTabGroup(tabNames_[static_cast<std::size_t>(current)]);
    }
    rebuilding_ = false;
    subSetChInst();
  } else if (grid_->count() == 0) {
    subSetChInst();
  }
  subRealInstantSet();
}

}  // namespace recscope
