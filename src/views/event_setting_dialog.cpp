#include "views/event_setting_dialog.h"

#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"
#include "views/event_setting.h"

namespace recscope {

namespace {

constexpr int kAlarmTitles[5] = {19603, 19604, 19605, 19606, 19607};
constexpr int kMessageTime = 19610;
constexpr int kMessageTitle = 19608;
constexpr int kFlagTime = 19622;
constexpr int kFlagTitle = 19611;
constexpr int kDisplayTitle = 19620;
constexpr int kPositionTitle = 19621;
constexpr int kBackCaption = 19615;
constexpr int kNextCaption = 19616;
constexpr int kExitCaption = 19619;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

QLabel *Label(QWidget *parent, const QString &name) {
  auto *label = new QLabel(parent);
  label->setObjectName(name);
  return label;
}

// The trend window of a slot, wherever it stands.
TrendWindow *TrendOfSlot(int slot) {
  for (QWidget *top : QApplication::topLevelWidgets()) {
    if (auto *trend = qobject_cast<TrendWindow *>(top); trend && trend->slot() == slot)
      return trend;
    for (TrendWindow *trend : top->findChildren<TrendWindow *>())
      if (trend->slot() == slot) return trend;
  }
  return nullptr;
}

}  // namespace

EventSettingDialog::EventSettingDialog(int slot, int kind, int row, QWidget *parent)
    : QDialog(parent), slot_(slot), kind_(kind), row_(row) {
  setObjectName(QStringLiteral("frmEventSet"));
  setProperty("slot", slot);
  setModal(true);

  auto *fields = new QGridLayout;
  for (int i = 0; i < 5; ++i) {
    titles_[i] = Label(this, QStringLiteral("lblIventN%1").arg(i + 1));
    values_[i] = Label(this, QStringLiteral("lblIvent%1").arg(i + 1));
    values_[i]->setFrameShape(QFrame::Panel);
    values_[i]->setFrameShadow(QFrame::Sunken);
    fields->addWidget(titles_[i], i, 0);
    fields->addWidget(values_[i], i, 1);
  }
  lblMessage_ = Label(this, QStringLiteral("lblMessage"));
  messageText_ = Label(this, QStringLiteral("lblMessageText"));
  messageText_->setFrameShape(QFrame::Panel);
  messageText_->setFrameShadow(QFrame::Sunken);
  txtMessage_ = new QLineEdit(this);
  txtMessage_->setObjectName(QStringLiteral("txtMessage"));
  txtMessage_->installEventFilter(this);
  fields->addWidget(lblMessage_, 5, 0);
  fields->addWidget(messageText_, 5, 1);
  fields->addWidget(txtMessage_, 6, 1);

  auto *lblDisplay = Label(this, QStringLiteral("lblDisplay"));
  lblDisplay->setText(Text(kDisplayTitle));
  cboDisplay_ = new QComboBox(this);
  cboDisplay_->setObjectName(QStringLiteral("cboDisplay"));
  cboDisplay_->addItems({QStringLiteral("OFF"), QStringLiteral("ON")});
  auto *lblDisplayH = Label(this, QStringLiteral("lblDisplayH"));
  lblDisplayH->setText(Text(kPositionTitle));
  cboDisplayH_ = new QComboBox(this);
  cboDisplayH_->setObjectName(QStringLiteral("cboDisplayH"));
  for (int level = 1; level <= 10; ++level) cboDisplayH_->addItem(QString::number(level));
  fields->addWidget(lblDisplay, 7, 0);
  fields->addWidget(cboDisplay_, 7, 1);
  fields->addWidget(lblDisplayH, 8, 0);
  fields->addWidget(cboDisplayH_, 8, 1);

  auto *back = new QPushButton(Text(kBackCaption), this);
  back->setObjectName(QStringLiteral("cmdBack"));
  auto *next = new QPushButton(Text(kNextCaption), this);
  next->setObjectName(QStringLiteral("cmdNext"));
  auto *exit = new QPushButton(Text(kExitCaption), this);
  exit->setObjectName(QStringLiteral("cmdExit"));
  auto *buttons = new QHBoxLayout;
  buttons->addWidget(back);
  buttons->addWidget(next);
  buttons->addStretch();
  buttons->addWidget(exit);

  auto *layout = new QVBoxLayout(this);
  fields->setColumnMinimumWidth(1, 260);  // a flag text of 32 characters stays readable
  layout->addLayout(fields);
  layout->addLayout(buttons);

  connect(back, &QPushButton::clicked, this, &EventSettingDialog::onBack);
  connect(next, &QPushButton::clicked, this, &EventSettingDialog::onNext);
  connect(exit, &QPushButton::clicked, this, &EventSettingDialog::onExit);
  loadRow();
}

void EventSettingDialog::setEvent(const QString &tabCaption, int row) {
  const int kind = EventSetKindOfTab(tabCaption.toStdString());
  if (kind >= 0) kind_ = kind;
  row_ = row;
  loadRow();
}

void EventSettingDialog::loadRow() {
  setWindowTitle(QString::fromStdString(EventSetCaption(kind_)));
  const EventSetRow shown =
      LoadEventSetRow(Shared().Slot(slot_), kind_, row_, Shared().DateFormatNo);
  const bool alarm = kind_ == kEventSetAlarm;
  const bool message = kind_ == kEventSetMessage;
  const bool flag = kind_ == kEventSetFlag;
  for (int i = 0; i < 5; ++i) {
    const bool visible = alarm || i == 0;
    titles_[i]->setVisible(visible);
    values_[i]->setVisible(visible);
  }
  if (alarm) {
    for (int i = 0; i < 5; ++i) titles_[i]->setText(Text(kAlarmTitles[i]));
    const std::string values[5] = {shown.time, shown.channel, shown.alarmNo, shown.action,
                                   shown.state};
    for (int i = 0; i < 5; ++i) values_[i]->setText(QString::fromStdString(values[i]));
  } else {
    titles_[0]->setText(Text(message ? kMessageTime : kFlagTime));
    values_[0]->setText(QString::fromStdString(shown.time));
  }
  lblMessage_->setVisible(!alarm);
  lblMessage_->setText(alarm ? QString() : Text(message ? kMessageTitle : kFlagTitle));
  messageText_->setVisible(message);
  messageText_->setText(message ? QString::fromStdString(shown.text) : QString());
  txtMessage_->setVisible(flag);
  txtMessage_->setText(flag ? QString::fromStdString(shown.text) : QString());
  cboDisplay_->setCurrentIndex(shown.displayIndex);
  cboDisplayH_->setCurrentIndex(shown.positionIndex);
}

bool EventSettingDialog::flagTextFits() {
  if (kind_ != kEventSetFlag) return true;
  MessagePlaceholders placeholders;
  const int id = CheckFlagText(txtMessage_->text().toStdString(), &placeholders);
  if (id == 0) return true;
  checking_ = true;
  ShowMessage(this, id, QMessageBox::Ok, placeholders);
  txtMessage_->setFocus();
  checking_ = false;
  return false;
}

bool EventSettingDialog::storeRow() {
  if (!flagTextFits()) return false;
  StoreEventSetRow(Shared().Slot(slot_), kind_, row_, cboDisplay_->currentIndex(),
                   cboDisplayH_->currentIndex(), txtMessage_->text().toStdString());
  if (TrendWindow *trend = TrendOfSlot(slot_)) trend->applyDisplayChange();
  emit rowStored(slot_, kind_, row_);
  return true;
}

void EventSettingDialog::onBack() {
  if (!storeRow()) return;
  if (row_ > 1) {
    --row_;
    loadRow();
  }
}

void EventSettingDialog::onNext() {
  if (!storeRow()) return;
  if (row_ < EventSetRowCount(Shared().Slot(slot_), kind_)) {
    ++row_;
    loadRow();
  }
}

void EventSettingDialog::onExit() {
  if (!storeRow()) return;
  accept();
}

bool EventSettingDialog::eventFilter(QObject *watched, QEvent *event) {
  // A flag text too long for its 32 bytes takes the focus back when it loses it.
  if (watched == txtMessage_ && event->type() == QEvent::FocusOut && !checking_ &&
      txtMessage_->isVisible()) {
    QTimer::singleShot(0, this, [this] {
      if (!checking_ && isVisible() && !txtMessage_->hasFocus()) flagTextFits();
    });
  }
  return QDialog::eventFilter(watched, event);
}

bool ShowEventSetting(QWidget *parent, int slot, int kind, int row,
                      const std::function<void()> &onStored) {
  if (slot < 1 || slot > kSlotCount || !Shared().Slot(slot).InUse()) return false;
  if (row < 1 || row > EventSetRowCount(Shared().Slot(slot), kind)) return false;
  EventSettingDialog dialog(slot, kind, row, parent);
  if (onStored)
    QObject::connect(&dialog, &EventSettingDialog::rowStored, &dialog, [onStored] { onStored(); });
  dialog.exec();
  return true;
}

}  // namespace recscope
