#include "record/file_coupling_dialog.h"

#include <QComboBox>
#include <QDir>
#include <QFileSystemModel>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "record/file_coupling.h"
#include "record/record_output_commands.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kOverwrite = 19807;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }
void Say(QWidget *parent, int id, const QString &text) {
  ShowComposedMessage(parent, id, text, QMessageBox::Ok);
}

QPushButton *Button(QWidget *parent, const char *name, int captionId, QBoxLayout *row) {
  auto *button = new QPushButton(Text(captionId), parent);
  button->setObjectName(name);
  row->addWidget(button);
  return button;
}

}  // namespace

FileCouplingDialog::FileCouplingDialog(QWidget *parent) : QDialog(parent) {
  setObjectName("frmFileCoupling");
  setWindowTitle(Text(10680));
  drives_ = new QComboBox(this);
  drives_->setObjectName("drivLocal");
  drives_->addItem(QDir::rootPath());
  model_ = new QFileSystemModel(this);
  model_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
  model_->setRootPath(QDir::rootPath());
  folders_ = new QTreeView(this);
  folders_->setObjectName("dirLocal");
  folders_->setModel(model_);
  for (int c = 1; c < model_->columnCount(); ++c) folders_->hideColumn(c);
  files_ = new QListWidget(this);
  files_->setObjectName("filLocal");
  chosen_ = new QListWidget(this);
  chosen_->setObjectName("lstSelect");

  auto *left = new QVBoxLayout;
  left->addWidget(drives_);
  left->addWidget(folders_);
  left->addWidget(files_);
  auto *middle = new QVBoxLayout;
  connect(Button(this, "cmdSelect", 11008, middle), &QPushButton::clicked, this,
          &FileCouplingDialog::Select);
  connect(Button(this, "cmdClear", 11009, middle), &QPushButton::clicked, this,
          &FileCouplingDialog::Clear);
  connect(Button(this, "cmdAllClear", 11010, middle), &QPushButton::clicked, this,
          &FileCouplingDialog::AllClear);
  middle->addStretch();
  connect(Button(this, "cmdCoupling", 11011, middle), &QPushButton::clicked, this,
          &FileCouplingDialog::Couple);
  auto *layout = new QHBoxLayout(this);
  layout->addLayout(left, 2);
  layout->addLayout(middle);
  layout->addWidget(chosen_, 2);
  connect(folders_, &QTreeView::clicked, this,
          [this](const QModelIndex &index) { setFolder(model_->filePath(index)); });
  resize(760, 480);
  setFolder(QDir::currentPath());
}

void FileCouplingDialog::setFolder(const QString &folder) {
  folder_ = folder;
  folders_->setCurrentIndex(model_->index(folder));
  files_->clear();
  const QStringList names =
      QDir(folder).entryList({QStringLiteral("S*.FDT")}, QDir::Files, QDir::Name);
  files_->addItems(names);
}

void FileCouplingDialog::FillSelection() {
  chosen_->clear();
  for (const std::string &path : selection_) chosen_->addItem(QString::fromStdString(path));
}

void FileCouplingDialog::Select() {
  QListWidgetItem *item = files_->currentItem();
  if (!item) return;
  const std::string path = QDir(folder_).filePath(item->text()).toStdString();
  if (const int refused = AddCouplingSelection(selection_, path)) {
    Say(this, refused, Text(refused));
    return;
  }
  FillSelection();
}

void FileCouplingDialog::Clear() {
  if (const int refused = RemoveCouplingSelection(selection_, chosen_->currentRow())) {
    Say(this, refused, Text(refused));
    return;
  }
  FillSelection();
}

void FileCouplingDialog::AllClear() {
  selection_.clear();
  FillSelection();
}

void FileCouplingDialog::Couple() {
  const CouplingOutcome outcome =
      CoupleFiles(Shared(), selection_, [this](const std::string &target) {
        const QString question =
            QString::fromStdString(GetMessageText(kOverwrite, "@FileName@", target));
        return ShowComposedMessage(this, kOverwrite, question,
                                   QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
      });
  if (!outcome.Findings.empty()) {
    QString text;
    for (int id : outcome.Findings) text += Text(id) + "\n";
    Say(this, outcome.Findings.front(), text);
    return;
  }
  if (outcome.MessageId != 0) Say(this, outcome.MessageId, Text(outcome.MessageId));
}

}  // namespace recscope
