#include "ftp/ftp_window.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileSystemModel>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QStorageInfo>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "ftp/background_work.h"
#include "ftp/ftp_setting_dialog.h"
#include "ftp/operation_log.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kCaption = 10690;
constexpr int kLocalFrame = 10691;
constexpr int kRemoteFrame = 10692;
constexpr int kRecordOption = 10693;
constexpr int kTotalizeOption = 10694;
constexpr int kConnectCaption = 11012;
constexpr int kEndCaption = 11013;
constexpr int kDownloadCaption = 11014;
constexpr int kDeleteCaption = 11015;

constexpr int kSortRole = Qt::UserRole + 1;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

// A row of lvRemote sorts its time and size columns by their values, the name by
// its text.
class RemoteItem : public QTreeWidgetItem {
 public:
  using QTreeWidgetItem::QTreeWidgetItem;
  bool operator<(const QTreeWidgetItem &other) const override {
    int column = treeWidget() ? treeWidget()->sortColumn() : 0;
    if (column == 0) return text(0) < other.text(0);
    return data(column, kSortRole).toDouble() < other.data(column, kSortRole).toDouble();
  }
};

QPointer<FtpWindow> g_window;

}  // namespace

FtpWindow *FtpWindow::Show(QWidget *parent) {
  if (!g_window) {
    g_window = new FtpWindow(parent);
    g_window->setAttribute(Qt::WA_DeleteOnClose);
  }
  g_window->show();
  g_window->raise();
  g_window->activateWindow();
  return g_window;
}

FtpWindow::FtpWindow(QWidget *parent)
    : QDialog(parent), cancelFlag_(std::make_shared<std::atomic<bool>>(false)) {
  setObjectName(QStringLiteral("frmFTP"));
  setWindowTitle(Text(kCaption));
  setModal(false);
  resize(900, 560);

  // The local side: drive, folder and file lists.
  auto *local = new QGroupBox(Text(kLocalFrame), this);
  local->setObjectName(QStringLiteral("Frame1"));
  drive_ = new QComboBox(local);
  drive_->setObjectName(QStringLiteral("drLocalDrive"));
  QStringList roots;
  for (const QStorageInfo &volume : QStorageInfo::mountedVolumes())
    if (volume.isValid() && volume.isReady()) roots << volume.rootPath();
  roots.removeDuplicates();
  roots.sort();
  drive_->addItems(roots);
  folderModel_ = new QFileSystemModel(this);
  folderModel_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
  folderModel_->setRootPath(QStringLiteral("/"));
  folders_ = new QTreeView(local);
  folders_->setObjectName(QStringLiteral("drLocalFoldar"));
  folders_->setModel(folderModel_);
  for (int column = 1; column < folderModel_->columnCount(); ++column) folders_->hideColumn(column);
  folders_->setHeaderHidden(true);
  files_ = new QListWidget(local);
  files_->setObjectName(QStringLiteral("flLocalFile"));
  auto *localLayout = new QVBoxLayout(local);
  localLayout->addWidget(drive_);
  localLayout->addWidget(folders_, 3);
  localLayout->addWidget(files_, 2);

  // The recorder's side.
  auto *remote = new QGroupBox(Text(kRemoteFrame), this);
  remote->setObjectName(QStringLiteral("Frame2"));
  optS_ = new QRadioButton(Text(kRecordOption), remote);
  optS_->setObjectName(QStringLiteral("optSfile"));
  optS_->setChecked(true);
  optT_ = new QRadioButton(Text(kTotalizeOption), remote);
  optT_->setObjectName(QStringLiteral("optTfile"));
  reading_ = new QLabel(remote);
  reading_->setObjectName(QStringLiteral("lblReading"));
  remote_ = new QTreeWidget(remote);
  remote_->setObjectName(QStringLiteral("lvRemote"));
  remote_->setColumnCount(3);
  remote_->setHeaderLabels({Text(kFtpColumnName), Text(kFtpColumnTime), Text(kFtpColumnSize)});
  remote_->setRootIsDecorated(false);
  remote_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  remote_->setSelectionBehavior(QAbstractItemView::SelectRows);
  remote_->setSortingEnabled(true);
  remote_->sortByColumn(0, Qt::AscendingOrder);
  remote_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  auto *options = new QHBoxLayout;
  options->addWidget(optS_);
  options->addWidget(optT_);
  options->addStretch();
  options->addWidget(reading_);
  auto *remoteLayout = new QVBoxLayout(remote);
  remoteLayout->addLayout(options);
  remoteLayout->addWidget(remote_);

  connect_ = new QPushButton(Text(kConnectCaption), this);
  connect_->setObjectName(QStringLiteral("cmdConnect"));
  download_ = new QPushButton(Text(kDownloadCaption), this);
  download_->setObjectName(QStringLiteral("cmdDownload"));
  delete_ = new QPushButton(Text(kDeleteCaption), this);
  delete_->setObjectName(QStringLiteral("cmdDelete"));
  cancelButton_ = new QPushButton(Text(kEndCaption), this);
  cancelButton_->setObjectName(QStringLiteral("cmdCancel"));
  auto *buttons = new QHBoxLayout;
  buttons->addWidget(connect_);
  buttons->addWidget(download_);
  buttons->addWidget(delete_);
  buttons->addStretch();
  buttons->addWidget(cancelButton_);

  auto *panes = new QHBoxLayout;
  panes->addWidget(local, 2);
  panes->addWidget(remote, 3);
  auto *layout = new QVBoxLayout(this);
  layout->addLayout(panes);
  layout->addLayout(buttons);

  connect(connect_, &QPushButton::clicked, this, &FtpWindow::onConnect);
  connect(download_, &QPushButton::clicked, this, &FtpWindow::onDownload);
  connect(delete_, &QPushButton::clicked, this, &FtpWindow::onDelete);
  connect(cancelButton_, &QPushButton::clicked, this, &FtpWindow::reject);
  connect(optS_, &QRadioButton::toggled, this, [this](bool on) {
    if (on) onOptionChanged();
  });
  connect(optT_, &QRadioButton::toggled, this, [this](bool on) {
    if (on) onOptionChanged();
  });
  connect(remote_, &QTreeWidget::itemDoubleClicked, this, [this] { onDownload(); });
  connect(drive_, &QComboBox::currentIndexChanged, this, &FtpWindow::onDriveChanged);
  // The folder model reads folders as it goes, and folders read later push the
  // chosen one down: the tree opens down to it and keeps it in sight until the
  // operator moves in the tree.
  followTimer_ = new QTimer(this);
  followTimer_->setSingleShot(true);
  followTimer_->setInterval(100);
  connect(followTimer_, &QTimer::timeout, this, [this] {
    if (followFolder_)
      folders_->scrollTo(folders_->currentIndex(), QAbstractItemView::PositionAtCenter);
  });
  connect(folderModel_, &QFileSystemModel::directoryLoaded, this, [this](const QString &path) {
    if (followFolder_ && localFolder_.startsWith(path)) showLocalFolder();
  });
  connect(folderModel_, &QFileSystemModel::rowsInserted, this, [this] {
    if (followFolder_) followTimer_->start();
  });
  connect(folders_, &QTreeView::clicked, this, [this](const QModelIndex &index) {
    setLocalFolder(folderModel_->filePath(index));
    followFolder_ = false;
  });

  QString start = QString::fromStdString(Shared().ProgramFolder);
  if (start.isEmpty()) start = QDir::homePath();
  setLocalFolder(start);
}

FtpWindow::~FtpWindow() {
  cancelFlag_->store(true);
  if (busy_) QApplication::restoreOverrideCursor();
}

void FtpWindow::setLocalFolder(const QString &folder) {
  localFolder_ = QDir(folder).absolutePath();
  followFolder_ = true;
  // The drive that holds the folder: the longest mount root in front of it.
  int best = -1;
  for (int i = 0; i < drive_->count(); ++i) {
    QString root = drive_->itemText(i);
    if (localFolder_.startsWith(root) && (best < 0 || root.size() > drive_->itemText(best).size()))
      best = i;
  }
  if (best >= 0 && best != drive_->currentIndex()) {
    QSignalBlocker block(drive_);
    drive_->setCurrentIndex(best);
  }
  showLocalFolder();
  refreshLocalFiles();
}

// Opens the folder tree down to the chosen folder and marks it.
void FtpWindow::showLocalFolder() {
  QModelIndex index = folderModel_->index(localFolder_);
  if (!index.isValid()) return;
  for (QModelIndex parent = index.parent(); parent.isValid(); parent = parent.parent())
    folders_->expand(parent);
  folders_->setCurrentIndex(index);
  // Scrolled once the tree has laid out the rows just opened.
  followTimer_->start();
}

void FtpWindow::onDriveChanged(int index) {
  if (index >= 0) setLocalFolder(drive_->itemText(index));
}

void FtpWindow::refreshLocalFiles() {
  files_->clear();
  files_->addItems(QDir(localFolder_).entryList(QDir::Files, QDir::Name));
}

QStringList FtpWindow::localFiles() const {
  QStringList names;
  for (int i = 0; i < files_->count(); ++i) names << files_->item(i)->text();
  return names;
}

bool FtpWindow::totalize() const { return optT_->isChecked(); }

std::string FtpWindow::optionFolder() const { return OptionFolder(ftpDir_, totalize()); }

void FtpWindow::setBusy(bool busy, const QString &text) {
  if (busy == busy_) return;
  busy_ = busy;
  for (QWidget *control :
       std::initializer_list<QWidget *>{connect_, download_, delete_, optS_, optT_})
    control->setEnabled(!busy);
  reading_->setText(busy ? text : QString());
  if (busy)
    QApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QApplication::restoreOverrideCursor();
  emit busyChanged(busy);
}

void FtpWindow::onConnect() {
  if (busy_) return;
  auto *dialog = new FtpSettingDialog(
      this, [this](const FtpEndpoint &endpoint, int count) { connectTo(endpoint, count); });
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->show();
}

void FtpWindow::connectTo(const FtpEndpoint &endpoint, int layoutCount) {
  endpoint_ = endpoint;
  ftpDir_ = RecordFolderForLayout(layoutCount);
  connected_ = false;
  listRemote();
}

void FtpWindow::listRemote() {
  remote_->clear();
  setBusy(true, Text(kFtpReading));
  FtpEndpoint endpoint = endpoint_;
  std::string folder = optionFolder();
  std::shared_ptr<std::atomic<bool>> cancel = cancelFlag_;
  RunInBackground<FtpListing>(
      this,
      [endpoint, folder, cancel] {
        return ListFolder(endpoint, folder, LocalNowSeconds(), cancel.get());
      },
      [this](const FtpListing &listing) {
        setBusy(false);
        fillRemote(listing);
      });
}

void FtpWindow::fillRemote(const FtpListing &listing) {
  remote_->clear();
  if (listing.Status == FtpStatus::Cancelled) return;
  if (listing.Status != FtpStatus::Ok) {
    // A session that did not stand leaves the window unconnected.
    if (listing.Status != FtpStatus::NoList) connected_ = false;
    ShowMessage(this, MessageForStatus(listing.Status));
    return;
  }
  connected_ = true;
  std::vector<RemoteRow> rows = RemoteRows(listing.Entries, totalize(), Shared().DateFormatNo);
  remote_->setSortingEnabled(false);
  for (const RemoteRow &row : rows) {
    auto *item = new RemoteItem(remote_);
    item->setText(0, QString::fromStdString(row.Name));
    item->setText(1, QString::fromStdString(row.TimeText));
    item->setText(2, QString::fromStdString(row.SizeText));
    item->setData(1, kSortRole, static_cast<double>(row.Time));
    item->setData(2, kSortRole, row.Size);
    item->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
  }
  remote_->setSortingEnabled(true);
  if (rows.empty()) ShowMessage(this, kFtpNoFiles);
}

std::vector<std::vector<QString>> FtpWindow::remoteTexts() const {
  std::vector<std::vector<QString>> rows;
  for (int i = 0; i < remote_->topLevelItemCount(); ++i) {
    QTreeWidgetItem *item = remote_->topLevelItem(i);
    rows.push_back({item->text(0), item->text(1), item->text(2)});
  }
  return rows;
}

std::vector<std::string> FtpWindow::selectedNames() const {
  std::vector<std::string> names;
  for (int i = 0; i < remote_->topLevelItemCount(); ++i) {
    QTreeWidgetItem *item = remote_->topLevelItem(i);
    if (item->isSelected()) names.push_back(item->text(0).toStdString());
  }
  return names;
}

void FtpWindow::onDownload() {
  if (busy_ || !connected_) return;
  std::vector<std::string> names = selectedNames();
  if (names.empty()) return;
  setBusy(true, Text(kDownloadCaption) + QStringLiteral("..."));
  FtpEndpoint endpoint = endpoint_;
  std::string folder = optionFolder();
  std::string target = localFolder_.toStdString();
  std::shared_ptr<std::atomic<bool>> cancel = cancelFlag_;
  RunInBackground<DownloadOutcome>(
      this,
      [endpoint, folder, names, target, cancel] {
        return DownloadFiles(endpoint, folder, names, target, cancel.get());
      },
      [this](const DownloadOutcome &outcome) {
        setBusy(false);
        if (!outcome.Standing.empty())
          ShowMessage(this, kFtpAlreadyLocal, QMessageBox::Ok,
                      {{"@DITEM@", NameLines(outcome.Standing)}});
        if (!outcome.Failed.empty())
          ShowMessage(this, kFtpNotFetched, QMessageBox::Ok,
                      {{"@FITEM@", NameLines(outcome.Failed)}});
        refreshLocalFiles();
      });
}

void FtpWindow::onDelete() {
  if (busy_ || !connected_) return;
  std::vector<std::string> names = selectedNames();
  if (names.empty()) return;
  int answer = ShowMessage(this, kFtpAskDelete, QMessageBox::Ok | QMessageBox::Cancel,
                           {{"@DITEM@", NameLines(names)}});
  if (answer != QMessageBox::Ok) return;
  setBusy(true, Text(kDeleteCaption) + QStringLiteral("..."));
  FtpEndpoint endpoint = endpoint_;
  std::string folder = optionFolder();
  RunInBackground<std::vector<std::string>>(
      this, [endpoint, folder, names] { return DeleteFiles(endpoint, folder, names); },
      [this](const std::vector<std::string> &failed) {
        setBusy(false);
        listRemote();
        if (!failed.empty())
          ShowMessage(this, kFtpNotDeleted, QMessageBox::Ok, {{"@DITEM@", NameLines(failed)}});
      });
}

void FtpWindow::onOptionChanged() {
  remote_->clear();
  if (!connected_ || busy_) return;
  listRemote();
}

void FtpWindow::reject() {
  if (ShowMessage(this, kFtpAskEnd, QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes) return;
  // Work under way ends at its next step; its result finds no window.
  cancelFlag_->store(true);
  QDialog::reject();
  deleteLater();
}

}  // namespace recscope
