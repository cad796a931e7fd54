#include "shell/frame/message_service.h"

#include <QApplication>

#include "shell/catalogue.h"

namespace recscope {

namespace {

MessageService &Service() {
  static MessageService service = ShowMessageBox;
  return service;
}

}  // namespace

QString MessageRequest::text() const {
  if (!composedText.isEmpty()) return composedText;
  return QString::fromStdString(GetMessageText(messageId, placeholders));
}

int ShowMessage(QWidget *parent, int messageId, QMessageBox::StandardButtons buttons,
                const MessagePlaceholders &placeholders) {
  MessageRequest request;
  request.messageId = messageId;
  request.buttons = buttons;
  request.placeholders = placeholders;
  return Service()(parent, request);
}

int ShowComposedMessage(QWidget *parent, int messageId, const QString &text,
                        QMessageBox::StandardButtons buttons) {
  MessageRequest request;
  request.messageId = messageId;
  request.buttons = buttons;
  request.composedText = text;
  return Service()(parent, request);
}

int ShowWordedMessage(QWidget *parent, const QString &title, const QString &text) {
  MessageRequest request;
  request.composedText = text;
  request.title = title;
  return Service()(parent, request);
}

void SetMessageService(MessageService service) {
  Service() = service ? std::move(service) : MessageService(ShowMessageBox);
}

int ShowMessageBox(QWidget *parent, const MessageRequest &request) {
  const bool question = request.buttons.testAnyFlags(QMessageBox::Yes | QMessageBox::No);
  QMessageBox box(question ? QMessageBox::Question : QMessageBox::Information,
                  request.title.isEmpty() ? QApplication::applicationDisplayName() : request.title,
                  request.text(), request.buttons, parent);
  box.setObjectName(QStringLiteral("msgCatalogue"));
  box.setProperty("messageId", request.messageId);
  return box.exec();
}

MessageRecorder::MessageRecorder(int answer) : answer_(answer) {
  SetMessageService([this](QWidget *, const MessageRequest &request) {
    messages_.push_back(request);
    if (request.buttons == QMessageBox::Ok) return static_cast<int>(QMessageBox::Ok);
    return answer_;
  });
}

MessageRecorder::~MessageRecorder() { SetMessageService({}); }

std::vector<int> MessageRecorder::ids() const {
  std::vector<int> found;
  for (const MessageRequest &request : messages_) found.push_back(request.messageId);
  return found;
}

}  // namespace recscope
