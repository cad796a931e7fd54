#include "record/registry_dialogs.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "record/open_command.h"
#include "record/record_output_commands.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kOpenError = 11107;
constexpr int kRecordFilter = 11173;
constexpr int kTooManyGroups = 41050;
constexpr int kTooManyFiles = 41053;
constexpr int kFileMissing = 41061;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

// Every message of these windows goes through the record outputs' one function.
bool Ask(QWidget *parent, int first, int second) {
  return ShowComposedMessage(parent, first, Text(first) + "\n" + Text(second),
                             QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}
void Say(QWidget *parent, int id) { ShowComposedMessage(parent, id, Text(id), QMessageBox::Ok); }

RegistryFileChooser &Chooser() {
  static RegistryFileChooser chooser = [](QWidget *parent) {
    return QFileDialog::getOpenFileName(parent, Text(41028), QString(), Text(kRecordFilter));
  };
  return chooser;
}

QPushButton *Button(QWidget *parent, const char *name, int captionId, QBoxLayout *row) {
  auto *button = new QPushButton(Text(captionId), parent);
  button->setObjectName(name);
  row->addWidget(button);
  return button;
}

QTableWidget *Grid(QWidget *parent, const QList<int> &titles) {
  auto *grid = new QTableWidget(parent);
  grid->setObjectName("MSFlexGrid1");
  grid->setColumnCount(static_cast<int>(titles.size()));
  QStringList labels;
  for (int id : titles) labels << Text(id);
  grid->setHorizontalHeaderLabels(labels);
  grid->verticalHeader()->hide();
  grid->setSelectionBehavior(QAbstractItemView::SelectRows);
  grid->setSelectionMode(QAbstractItemView::SingleSelection);
  grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid->horizontalHeader()->setStretchLastSection(true);
  return grid;
}

void SetRow(QTableWidget *grid, int row, const QStringList &cells) {
  for (int c = 0; c < cells.size(); ++c) grid->setItem(row, c, new QTableWidgetItem(cells[c]));
}

// Shows a modal frmFileAdd and calls `done` with it when OK passed its tests.
void ShowFileAdd(QWidget *parent, FileAddDialog::Use use, const QString &name,
                 const QString &address, std::function<void(FileAddDialog *)> done) {
  auto *dialog = new FileAddDialog(use, name, address, parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog, &QDialog::accepted, parent, [dialog, done] { done(dialog); });
  dialog->open();
}

}  // namespace

void SetRegistryFileChooser(RegistryFileChooser chooser) {
  if (chooser) Chooser() = std::move(chooser);
}

bool RegistryState::Save() { return WriteRegistry(Path, Data); }

// frmFileAdd ------------------------------------------------------------------

FileAddDialog::FileAddDialog(Use use, const QString &name, const QString &address, QWidget *parent)
    : QDialog(parent), use_(use) {
  setObjectName("frmFileAdd");
  struct Texts {
    int caption, text, ok;
  };
  const Texts texts = use == Use::NewGroup      ? Texts{41007, 41021, 41029}
                      : use == Use::ChangeGroup ? Texts{41008, 41022, 41031}
                      : use == Use::NewFile     ? Texts{41016, 41023, 41029}
                                                : Texts{41017, 41024, 41031};
  setWindowTitle(Text(texts.caption));
  auto *layout = new QVBoxLayout(this);
  auto *text = new QLabel(Text(texts.text), this);
  text->setObjectName("lblText");
  layout->addWidget(text);
  auto *nameLabel = new QLabel(Text(IsFileUse() ? 41026 : 41025), this);
  nameLabel->setObjectName("lblName");
  layout->addWidget(nameLabel);
  name_ = new QLineEdit(name, this);
  name_->setObjectName("txtName");
  layout->addWidget(name_);
  auto *buttons = new QHBoxLayout;
  if (IsFileUse()) {
    auto *addressLabel = new QLabel(Text(41027), this);
    addressLabel->setObjectName("lblAddress");
    layout->addWidget(addressLabel);
    address_ = new QLineEdit(address, this);
    address_->setObjectName("txtAddress");
    layout->addWidget(address_);
    connect(Button(this, "cmdFile", 41028, buttons), &QPushButton::clicked, this,
            &FileAddDialog::ChooseFile);
  }
  buttons->addStretch();
  connect(Button(this, "cmdOK", texts.ok, buttons), &QPushButton::clicked, this,
          &FileAddDialog::Confirm);
  connect(Button(this, "cmdCancel", 41030, buttons), &QPushButton::clicked, this, &QDialog::reject);
  layout->addLayout(buttons);
}

QString FileAddDialog::name() const { return name_->text(); }
QString FileAddDialog::address() const { return address_ ? address_->text() : QString(); }

void FileAddDialog::ChooseFile() {
  const QString path = Chooser()(this);
  if (!path.isEmpty()) address_->setText(path);
}

void FileAddDialog::Confirm() {
  const int refused = IsFileUse() ? CheckFileInput(name().toStdString(), address().toStdString())
                                  : CheckGroupInput(name().toStdString());
  if (refused != 0) {
    Say(this, refused);
    return;
  }
  accept();
}

// frmGroupManager ---------------------------------------------------------------

GroupManagerDialog::GroupManagerDialog(std::shared_ptr<RegistryState> state, QWidget *parent)
    : QDialog(parent), state_(std::move(state)) {
  setObjectName("frmGroupManager");
  setWindowTitle(Text(41005));
  auto *layout = new QVBoxLayout(this);
  auto *text = new QLabel(Text(41006), this);
  text->setObjectName("lblText");
  layout->addWidget(text);
  grid_ = Grid(this, {41012, 41013});
  layout->addWidget(grid_);
  auto *buttons = new QHBoxLayout;
  connect(Button(this, "cmdAdd", 41007, buttons), &QPushButton::clicked, this,
          &GroupManagerDialog::Add);
  connect(Button(this, "cmdChange", 41008, buttons), &QPushButton::clicked, this,
          &GroupManagerDialog::Change);
  connect(Button(this, "cmdDelete", 41009, buttons), &QPushButton::clicked, this,
          &GroupManagerDialog::Delete);
  connect(Button(this, "cmdUp", 41010, buttons), &QPushButton::clicked, this,
          [this] { MoveRow(true); });
  connect(Button(this, "cmdDown", 41011, buttons), &QPushButton::clicked, this,
          [this] { MoveRow(false); });
  layout->addLayout(buttons);
  connect(grid_, &QTableWidget::cellDoubleClicked, this, [this](int row, int) { OpenGroup(row); });
  resize(520, 420);
  Fill();
}

GroupManagerDialog *GroupManagerDialog::ShowForProgramFolder(QMdiArea *mdi, QWidget *parent,
                                                             std::function<void()> afterOpen) {
  auto state = std::make_shared<RegistryState>();
  state->Path = RegistryPath(Shared().ProgramFolder);
  state->Mdi = mdi;
  state->AfterOpen = std::move(afterOpen);
  if (ReadRegistry(state->Path, state->Data) != 0) {
    Say(parent, kOpenError);
    return nullptr;
  }
  auto *dialog = new GroupManagerDialog(state, parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setModal(true);
  dialog->show();
  return dialog;
}

void GroupManagerDialog::Fill(int selected) {
  const auto &groups = state_->Data.Groups;
  grid_->setRowCount(static_cast<int>(groups.size()));
  for (std::size_t g = 0; g < groups.size(); ++g)
    SetRow(grid_, static_cast<int>(g),
           {QString::fromStdString(GroupKey(g)), QString::fromStdString(groups[g].Name)});
  if (!groups.empty())
    grid_->selectRow(std::clamp(selected, 0, static_cast<int>(groups.size()) - 1));
}

void GroupManagerDialog::Add() {
  if (state_->Data.Groups.size() >= kMaxRegistryGroups) {
    Say(this, kTooManyGroups);
    return;
  }
  ShowFileAdd(this, FileAddDialog::Use::NewGroup, {}, {}, [this](FileAddDialog *d) {
    if (const int refused = AddRegistryGroup(state_->Data, d->name().toStdString())) {
      Say(this, refused);
      return;
    }
    state_->Save();
    Fill(static_cast<int>(state_->Data.Groups.size()) - 1);
  });
}

void GroupManagerDialog::Change() {
  const int row = grid_->currentRow();
  if (row < 0 || row >= static_cast<int>(state_->Data.Groups.size())) return;
  auto &group = state_->Data.Groups[static_cast<std::size_t>(row)];
  ShowFileAdd(this, FileAddDialog::Use::ChangeGroup, QString::fromStdString(group.Name), {},
              [this, row](FileAddDialog *d) {
                state_->Data.Groups[static_cast<std::size_t>(row)].Name = d->name().toStdString();
                state_->Save();
                Fill(row);
              });
}

void GroupManagerDialog::Delete() {
  const int row = grid_->currentRow();
  if (row < 0 || row >= static_cast<int>(state_->Data.Groups.size())) return;
  if (!Ask(this, 41051, 41052)) return;
  DeleteRegistryGroup(state_->Data, static_cast<std::size_t>(row));
  state_->Save();
  Fill(row);
}

void GroupManagerDialog::MoveRow(bool up) {
  const int row = grid_->currentRow();
  if (row < 0) return;
  const std::size_t now = MoveRegistryGroup(state_->Data, static_cast<std::size_t>(row), up);
  if (now != static_cast<std::size_t>(row)) state_->Save();
  Fill(static_cast<int>(now));
}

void GroupManagerDialog::OpenGroup(int row) {
  if (row < 0 || row >= static_cast<int>(state_->Data.Groups.size())) return;
  auto *files = new FileManagerDialog(state_, static_cast<std::size_t>(row), this, this);
  files->setAttribute(Qt::WA_DeleteOnClose);
  files->setModal(true);
  files->show();
}

// frmFileManager ----------------------------------------------------------------

FileManagerDialog::FileManagerDialog(std::shared_ptr<RegistryState> state, std::size_t group,
                                     GroupManagerDialog *groups, QWidget *parent)
    : QDialog(parent), state_(std::move(state)), group_(group), groups_(groups) {
  setObjectName("frmFileManager");
  setWindowTitle(Text(41014));
  auto *layout = new QVBoxLayout(this);
  auto *text = new QLabel(Text(41015), this);
  text->setObjectName("lblText");
  layout->addWidget(text);
  grid_ = Grid(this, {41012, 41020, 41013});
  layout->addWidget(grid_);
  auto *buttons = new QHBoxLayout;
  connect(Button(this, "cmdAdd", 41016, buttons), &QPushButton::clicked, this,
          &FileManagerDialog::Add);
  connect(Button(this, "cmdChange", 41017, buttons), &QPushButton::clicked, this,
          &FileManagerDialog::Change);
  connect(Button(this, "cmdDelete", 41018, buttons), &QPushButton::clicked, this,
          &FileManagerDialog::Delete);
  connect(Button(this, "cmdUp", 41010, buttons), &QPushButton::clicked, this,
          [this] { MoveRow(true); });
  connect(Button(this, "cmdDown", 41011, buttons), &QPushButton::clicked, this,
          [this] { MoveRow(false); });
  connect(Button(this, "cmdBack", 41019, buttons), &QPushButton::clicked, this, &QDialog::close);
  layout->addLayout(buttons);
  connect(grid_, &QTableWidget::cellDoubleClicked, this, [this](int row, int) { OpenFile(row); });
  resize(640, 420);
  Fill();
}

void FileManagerDialog::Fill(int selected) {
  const auto &files = state_->Data.Groups[group_].Files;
  grid_->setRowCount(static_cast<int>(files.size()));
  for (std::size_t f = 0; f < files.size(); ++f)
    SetRow(grid_, static_cast<int>(f),
           {QString::fromStdString(FileKey(group_, f)), QString::fromStdString(files[f].Name),
            QString::fromStdString(files[f].Path)});
  if (!files.empty()) grid_->selectRow(std::clamp(selected, 0, static_cast<int>(files.size()) - 1));
}

void FileManagerDialog::Add() {
  if (state_->Data.FileCount() >= kMaxRegistryFiles) {
    Say(this, kTooManyFiles);
    return;
  }
  ShowFileAdd(this, FileAddDialog::Use::NewFile, {}, {}, [this](FileAddDialog *d) {
    if (const int refused = AddRegistryFile(state_->Data, group_, d->name().toStdString(),
                                            d->address().toStdString())) {
      Say(this, refused);
      return;
    }
    state_->Save();
    Fill(static_cast<int>(state_->Data.Groups[group_].Files.size()) - 1);
  });
}

void FileManagerDialog::Change() {
  const int row = grid_->currentRow();
  auto &files = state_->Data.Groups[group_].Files;
  if (row < 0 || row >= static_cast<int>(files.size())) return;
  const RegistryFile &file = files[static_cast<std::size_t>(row)];
  ShowFileAdd(this, FileAddDialog::Use::ChangeFile, QString::fromStdString(file.Name),
              QString::fromStdString(file.Path), [this, row](FileAddDialog *d) {
                RegistryFile &f = state_->Data.Groups[group_].Files[static_cast<std::size_t>(row)];
                f.Name = d->name().toStdString();
                f.Path = d->address().toStdString();
                state_->Save();
                Fill(row);
              });
}

void FileManagerDialog::Delete() {
  const int row = grid_->currentRow();
  if (row < 0 || row >= static_cast<int>(state_->Data.Groups[group_].Files.size())) return;
  if (!Ask(this, 41054, 41055)) return;
  DeleteRegistryFile(state_->Data, group_, static_cast<std::size_t>(row));
  state_->Save();
  Fill(row);
}

void FileManagerDialog::MoveRow(bool up) {
  const int row = grid_->currentRow();
  if (row < 0) return;
  const std::size_t now = MoveRegistryFile(state_->Data, group_, static_cast<std::size_t>(row), up);
  if (now != static_cast<std::size_t>(row)) state_->Save();
  Fill(static_cast<int>(now));
}

void FileManagerDialog::OpenFile(int row) {
  const auto &files = state_->Data.Groups[group_].Files;
  if (row < 0 || row >= static_cast<int>(files.size())) return;
  const QString path = QString::fromStdString(files[static_cast<std::size_t>(row)].Path);
  if (!QFileInfo::exists(path)) {
    Say(this, kFileMissing);
    return;
  }
  QWidget *frame = groups_ && groups_->parentWidget() ? groups_->parentWidget() : parentWidget();
  const std::shared_ptr<RegistryState> state = state_;
  close();
  if (groups_) groups_->close();
  OpenRecordPath(frame, state->Mdi, path);
  if (state->AfterOpen) state->AfterOpen();
}

}  // namespace recscope
