#include "link/card_windows.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "link/link_commands.h"
#include "record/open_command.h"
#include "record/save_filename_dialog.h"
#include "shell/catalogue.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/init_set.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kCaptionList = 10610;      // "ファイル読み込み"
constexpr int kCaptionFetching = 10611;  // "ファイル読み込み中"
constexpr int kCommunicating = 10800;    // "通信中..."
constexpr int kCancel = 11000;
constexpr int kEarlierPage = 11005;
constexpr int kNextPage = 11006;
constexpr int kClose = 11025;
constexpr int kNameTitle = 30103;
constexpr int kSizeTitle = 30104;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

// The link's menu entries, disabled while a card read holds the port.
void SetLinkMenus(MainWindow &frame, bool enabled) {
  for (const char *name :
       {"mnuRealTime", "mnuComunicationFileRead", "mnuComunicationStart", "mnuComunicationSetting"})
    if (QAction *a = frame.command(QString::fromLatin1(name))) a->setEnabled(enabled);
}

void ShowResult(QWidget *parent, CardResult result) {
  if (const int id = CardResultMessage(result)) ShowMessage(parent, id);
}

}  // namespace

CardProcessingDialog::CardProcessingDialog(CardLinkSession &session, QWidget *parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("dlgComprocessing"));
  setWindowTitle(Text(kCommunicating));
  setModal(true);
  auto *label = new QLabel(Text(kCommunicating), this);
  label->setObjectName(QStringLiteral("Label1"));
  auto *cancel = new QPushButton(Text(kCancel), this);
  cancel->setObjectName(QStringLiteral("Command1"));
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addWidget(cancel, 0, Qt::AlignHCenter);
  connect(cancel, &QPushButton::clicked, this, [&session] { session.Running = false; });
}

CardProgressDialog::CardProgressDialog(CardLinkSession &session, QWidget *parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("dlgComUnderfilereading"));
  setWindowTitle(Text(kCaptionFetching));
  setModal(true);
  label_ = new QLabel(this);
  label_->setObjectName(QStringLiteral("Label1"));
  bar_ = new QProgressBar(this);
  bar_->setObjectName(QStringLiteral("ProgressBar1"));
  bar_->setMinimumWidth(320);
  auto *cancel = new QPushButton(Text(kCancel), this);
  cancel->setObjectName(QStringLiteral("Command1"));
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(label_);
  layout->addWidget(bar_);
  layout->addWidget(cancel, 0, Qt::AlignHCenter);
  connect(cancel, &QPushButton::clicked, this, [&session] { session.Running = false; });
}

void CardProgressDialog::SetPhase(int messageId) { label_->setText(Text(messageId)); }

void CardProgressDialog::SetProgress(int value, int maximum) {
  bar_->setMaximum(std::max(1, maximum));
  bar_->setValue(value);
}

CardFileWindow::CardFileWindow(MainWindow &frame, std::unique_ptr<CardLinkSession> session,
                               CardList list)
    : QDialog(&frame), frame_(frame), session_(std::move(session)), list_(std::move(list)) {
  setObjectName(QStringLiteral("frmComFileread"));
  setWindowTitle(Text(kCaptionList));
  setModal(false);
  setAttribute(Qt::WA_DeleteOnClose);

  auto *grid = new QGridLayout;
  grid->addWidget(new QLabel(Text(kNameTitle), this), 0, 1);
  grid->addWidget(new QLabel(Text(kSizeTitle), this), 0, 3);
  for (int row = 0; row < kCardPageRows; ++row) {
    check_[row] = new QCheckBox(this);
    check_[row]->setObjectName(QStringLiteral("Check1_%1").arg(row));
    name_[row] = new QLineEdit(this);
    name_[row]->setObjectName(QStringLiteral("Text2_%1").arg(row));
    time_[row] = new QLineEdit(this);
    time_[row]->setObjectName(QStringLiteral("Text3_%1").arg(row));
    size_[row] = new QLineEdit(this);
    size_[row]->setObjectName(QStringLiteral("Text4_%1").arg(row));
    for (QLineEdit *e : {name_[row], time_[row], size_[row]}) e->setReadOnly(true);
    name_[row]->setMinimumWidth(110);
    time_[row]->setMinimumWidth(170);
    size_[row]->setMinimumWidth(70);
    size_[row]->setAlignment(Qt::AlignRight);
    grid->addWidget(check_[row], row + 1, 0);
    grid->addWidget(name_[row], row + 1, 1);
    grid->addWidget(time_[row], row + 1, 2);
    grid->addWidget(size_[row], row + 1, 3);
    connect(check_[row], &QCheckBox::toggled, this,
            [this, row](bool checked) { RowChecked(row, checked); });
  }
  chosen_ = new QLineEdit(this);
  chosen_->setObjectName(QStringLiteral("Text1"));
  chosen_->setReadOnly(true);

  earlier_ = new QPushButton(Text(kEarlierPage), this);
  earlier_->setObjectName(QStringLiteral("Command2"));
  next_ = new QPushButton(Text(kNextPage), this);
  next_->setObjectName(QStringLiteral("Command3"));
  read_ = new QPushButton(Text(kCaptionList), this);
  read_->setObjectName(QStringLiteral("Command6"));
  auto *close = new QPushButton(Text(kClose), this);
  close->setObjectName(QStringLiteral("Command7"));
  connect(earlier_, &QPushButton::clicked, this, [this] { Command2_Click(); });
  connect(next_, &QPushButton::clicked, this, [this] { Command3_Click(); });
  connect(read_, &QPushButton::clicked, this, [this] { Command6_Click(); });
  connect(close, &QPushButton::clicked, this, [this] { this->close(); });

  auto *pages = new QHBoxLayout;
  pages->addWidget(earlier_);
  pages->addWidget(next_);
  pages->addStretch();
  auto *buttons = new QHBoxLayout;
  buttons->addWidget(chosen_, 1);
  buttons->addWidget(read_);
  buttons->addWidget(close);
  auto *layout = new QVBoxLayout(this);
  layout->addLayout(grid);
  layout->addLayout(pages);
  layout->addLayout(buttons);
  ShowPage();
}

CardFileWindow::~CardFileWindow() {
  // The main window may be going too: only the port is closed here.
  if (!stopped_) ComPortClose(session_->Driver);
}

void CardFileWindow::closeEvent(QCloseEvent *event) {
  ComStop();
  QDialog::closeEvent(event);
}

void CardFileWindow::ComStop() {
  if (stopped_) return;
  stopped_ = true;
  session_->Running = false;
  ComPortClose(session_->Driver);
  SetLinkMenus(frame_, true);
}

int CardFileWindow::CheckedRow() const {
  for (int row = 0; row < kCardPageRows; ++row)
    if (check_[row]->isChecked()) return row;
  return -1;
}

void CardFileWindow::ShowPage() {
  for (int row = 0; row < kCardPageRows; ++row) {
    const int at = list_.Position + row;
    const bool filled = at < static_cast<int>(list_.Entries.size());
    const QSignalBlocker quiet(check_[row]);
    check_[row]->setChecked(false);
    check_[row]->setEnabled(filled);
    const CardEntry *entry = filled ? &list_.Entries[static_cast<std::size_t>(at)] : nullptr;
    name_[row]->setText(entry ? QString::fromStdString(entry->Name) : QString());
    time_[row]->setText(entry ? QString::fromStdString(entry->TimeText) : QString());
    size_[row]->setText(entry ? QString::fromStdString(entry->SizeText) : QString());
  }
  chosen_->clear();
  earlier_->setEnabled(list_.HasEarlierPage());
  next_->setEnabled(list_.HasNextPage());
}

void CardFileWindow::RowChecked(int row, bool checked) {
  if (!checked) {
    if (CheckedRow() < 0) chosen_->clear();
    return;
  }
  // A single choice: checking a row clears the others.
  for (int other = 0; other < kCardPageRows; ++other) {
    if (other == row) continue;
    const QSignalBlocker quiet(check_[other]);
    check_[other]->setChecked(false);
  }
  chosen_->setText(name_[row]->text());
}

void CardFileWindow::Command2_Click() {
  CardEarlierPage(list_);
  ShowPage();
}

void CardFileWindow::Command3_Click() {
  session_->Running = true;
  const CardResult result = CardNextPage(session_->Driver, session_->Registers,
                                         Shared().DateFormatNo, session_->Hooks(), list_);
  session_->Running = false;
  ShowResult(this, result);
  ShowPage();
}

void CardFileWindow::Command6_Click() {
  const int row = CheckedRow();
  if (row < 0) return;
  const CardEntry entry = list_.Entries[static_cast<std::size_t>(list_.Position + row)];
  auto *ask = new SaveFileNameDialog(QString::fromStdString(Shared().ProgramFolder), this);
  // The fetch runs once the dialog has finished: its own events run during the
  // transfer.
  connect(ask, &QDialog::finished, this, [this, ask, entry](int answer) {
    const QString measurement = ask->RecordPath();
    const QString alarm = ask->AlarmPath();
    ask->deleteLater();
    if (answer != QDialog::Accepted) return;
    QTimer::singleShot(0, this,
                       [this, entry, measurement, alarm] { Fetch(entry, measurement, alarm); });
  });
  ask->open();
}

void CardFileWindow::Fetch(const CardEntry &entry, const QString &measurement,
                           const QString &alarm) {
  auto *progress = new CardProgressDialog(*session_, this);
  progress->show();
  CardHooks hooks = session_->Hooks();
  hooks.Phase = [progress](int id) { progress->SetPhase(id); };
  hooks.Progress = [progress](int value, int maximum) { progress->SetProgress(value, maximum); };
  hooks.ComErrorDialog = [this](int code) { return ComErrorDialog(this, code); };
  session_->Running = true;
  const CardResult result = CardFetch(session_->Driver, session_->Registers, entry.Number,
                                      measurement.toStdString(), alarm.toStdString(), hooks);
  session_->Running = false;
  progress->close();
  progress->deleteLater();
  ShowResult(this, result);
  // The fetched record opens like any other.
  if (result == CardResult::kDone) OpenRecordPath(&frame_, frame_.mdiArea(), measurement);
  ++fetchesDone_;
}

void ComFileListOpen(MainWindow &frame) {
  auto session = std::make_unique<CardLinkSession>();
  session->Running = true;
  session->Driver.Line = &session->Line;
  SetLinkMenus(frame, false);
  CrcTableInit(session->Driver);
  ComPortOpen(session->Driver, ComSettings());
  CardProcessingDialog processing(*session, &frame);
  processing.show();
  CardList list;
  CardResult result = CardResult::kRequestFailed;
  if (CardLookup(Registers(), session->Registers))
    result = CardReadList(session->Driver, session->Registers, 0, Shared().DateFormatNo,
                          session->Hooks(), list);
  session->Running = false;
  processing.close();
  if (result != CardResult::kDone) {
    ShowResult(&frame, result);
    // ComStop.
    ComPortClose(session->Driver);
    SetLinkMenus(frame, true);
    return;
  }
  auto *window = new CardFileWindow(frame, std::move(session), std::move(list));
  window->show();
}

}  // namespace recscope
