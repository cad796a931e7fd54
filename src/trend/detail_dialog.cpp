#include "trend/detail_dialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTabBar>
#include <QTableWidget>
#include <QVBoxLayout>

#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

namespace recscope {

namespace {

constexpr int kTitle = 10650;
constexpr int kGroupNameLabel = 10651;
constexpr int kRangeHeading = 18600;
constexpr int kCancelCaption = 11000;
constexpr int kCopyCaption = 11001;
constexpr int kPasteCaption = 11002;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

}  // namespace

DetailDialog::DetailDialog(TrendWindow *trend, QWidget *parent)
    : QDialog(parent), trend_(trend), slot_(trend->slot()) {
  setObjectName(QStringLiteral("dlgSyousai"));
  setProperty("slot", slot_);
  setModal(true);
  const RecordFileInfo &info = Shared().Slot(slot_).Record;
  setWindowTitle(QString::fromStdString(DetailCaption(slot_, info)));
  edits_ = DetailStartEdits(info);

  tabs_ = new QTabBar(this);
  tabs_->setObjectName(QStringLiteral("TabStrip1"));
  for (int g : DetailTabGroups(info)) {
    const int index = tabs_->addTab(QString::fromStdString(DetailTabCaption(g)));
    tabs_->setTabData(index, g);
  }
  if (tabs_->count() > 0) group_ = tabs_->tabData(0).toInt();

  auto *heading = new QLabel(Text(kRangeHeading), this);
  heading->setObjectName(QStringLiteral("lblRange"));
  grid_ = new QTableWidget(kDetailRows, kDetailColumns, this);
  grid_->setObjectName(QStringLiteral("MSFlexGrid1"));
  grid_->horizontalHeader()->hide();
  grid_->verticalHeader()->hide();
  grid_->setColumnWidth(0, 60);
  grid_->setColumnWidth(1, 70);
  grid_->setColumnWidth(2, 100);
  grid_->setColumnWidth(3, 100);
  grid_->verticalHeader()->setDefaultSectionSize(24);
  grid_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  grid_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  grid_->setFixedSize(60 + 70 + 100 + 100 + 2 * grid_->frameWidth(),
                      kDetailRows * 24 + 2 * grid_->frameWidth());

  auto *label1 = new QLabel(Text(kGroupNameLabel), this);
  label1->setObjectName(QStringLiteral("Label1"));
  text1_ = new QLineEdit(this);
  text1_->setObjectName(QStringLiteral("Text1"));

  auto *copy = new QPushButton(Text(kCopyCaption), this);
  copy->setObjectName(QStringLiteral("Command1"));
  auto *paste = new QPushButton(Text(kPasteCaption), this);
  paste->setObjectName(QStringLiteral("Command2"));
  auto *ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("Command3"));
  ok->setDefault(true);
  auto *cancel = new QPushButton(Text(kCancelCaption), this);
  cancel->setObjectName(QStringLiteral("Command4"));

  auto *name = new QHBoxLayout;
  name->addWidget(label1);
  name->addWidget(text1_);
  auto *left = new QVBoxLayout;
  left->addWidget(tabs_);
  left->addLayout(name);
  left->addWidget(heading);
  left->addWidget(grid_);
  auto *buttons = new QVBoxLayout;
  buttons->addWidget(copy);
  buttons->addWidget(paste);
  buttons->addStretch();
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  auto *layout = new QHBoxLayout(this);
  layout->addLayout(left);
  layout->addLayout(buttons);

  fillGrid();
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    if (index >= 0) selectGroup(tabs_->tabData(index).toInt());
  });
  connect(copy, &QPushButton::clicked, this, &DetailDialog::onCopy);
  connect(paste, &QPushButton::clicked, this, &DetailDialog::onPaste);
  connect(ok, &QPushButton::clicked, this, &DetailDialog::onOk);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

// The grid's and the name's texts go back to the edits of the group shown.
void DetailDialog::keepGrid() {
  DetailCells &cells = edits_.cells[static_cast<std::size_t>(group_ - 1)];
  for (int row = 1; row < kDetailRows; ++row)
    for (int column : {kDetailMinColumn, kDetailMaxColumn})
      if (QTableWidgetItem *item = grid_->item(row, column))
        cells[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] =
            item->text().toStdString();
  edits_.names[static_cast<std::size_t>(group_ - 1)] = text1_->text().toStdString();
}

void DetailDialog::fillGrid() {
  const DetailCells &cells = edits_.cells[static_cast<std::size_t>(group_ - 1)];
  const RecordFileInfo &info = Shared().Slot(slot_).Record;
  for (int row = 0; row < kDetailRows; ++row) {
    const bool member = row > 0 && DetailMemberIndex(info, group_, row) > 0;
    for (int column = 0; column < kDetailColumns; ++column) {
      auto *item = new QTableWidgetItem(QString::fromStdString(
          cells[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]));
      Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
      if (member && column >= kDetailMinColumn) flags |= Qt::ItemIsEditable;
      item->setFlags(flags);
      if (row == 0) item->setBackground(palette().button());  // the title row
      grid_->setItem(row, column, item);
    }
  }
  text1_->setText(QString::fromStdString(edits_.names[static_cast<std::size_t>(group_ - 1)]));
}

void DetailDialog::selectGroup(int group) {
  if (group == group_) return;
  keepGrid();
  group_ = group;
  fillGrid();
}

void DetailDialog::onCopy() {
  keepGrid();
  copied_ = edits_.cells[static_cast<std::size_t>(group_ - 1)];
  haveCopy_ = true;
}

void DetailDialog::onPaste() {
  if (!haveCopy_) return;
  keepGrid();
  PasteDetailCells(edits_.cells[static_cast<std::size_t>(group_ - 1)], copied_);
  fillGrid();
}

void DetailDialog::onOk() {
  keepGrid();
  RecordSlot &slot = Shared().Slot(slot_);
  const DetailRefusal refusal = CheckDetailEdits(slot.Record, edits_);
  if (refusal.check.messageId != 0) {
    // The group and the cell of the first refusal are shown, the dialog stays.
    for (int i = 0; i < tabs_->count(); ++i)
      if (tabs_->tabData(i).toInt() == refusal.group) tabs_->setCurrentIndex(i);
    ShowMessage(this, refusal.check.messageId, QMessageBox::Ok, refusal.check.placeholders);
    grid_->setCurrentCell(refusal.place, refusal.atMaximum ? kDetailMaxColumn : kDetailMinColumn);
    grid_->setFocus();
    return;
  }
  ApplyDetailEdits(slot.Record, edits_);
  if (trend_) trend_->applyDisplayChange();
  accept();
}

DetailDialog *ShowDetailDialog(TrendWindow *trend, QWidget *parent) {
  if (!trend) return nullptr;
  auto *dialog = new DetailDialog(trend, parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  QPointer<DetailDialog> guard(dialog);
  // The dialog goes with the trend window that owns its slot.
  QObject::connect(trend, &TrendWindow::closed, dialog, [guard] {
    if (guard) guard->close();
  });
  QObject::connect(trend, &QObject::destroyed, dialog, [guard] {
    if (guard) guard->close();
  });
  dialog->show();
  return dialog;
}

}  // namespace recscope
