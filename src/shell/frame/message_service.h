#pragma once
// The one way a catalogue message reaches the operator: a message box with the
// text of a catalogue id, its placeholders filled in, and a set of buttons. The
// program installs the routine once at start; tests replace it once with a
// MessageRecorder that notes every message and answers with a chosen button.
#include <QMessageBox>
#include <QString>
#include <functional>
#include <vector>

#include "shell/catalogue.h"

class QWidget;

namespace recscope {

// One message as the service receives it.
struct MessageRequest {
  int messageId = 0;
  QMessageBox::StandardButtons buttons = QMessageBox::Ok;
  MessagePlaceholders placeholders;
  // A text the caller made of catalogue texts (two messages in one box, or a list
  // of findings); empty for a plain catalogue message.
  QString composedText;
  // The title of a box the system words itself, outside the catalogue (shown
  // with messageId 0); empty for the program's name.
  QString title;

  // The catalogue text of the id with every placeholder filled in, or the
  // composed text when there is one.
  QString text() const;
};

// Shows one message; returns the button pressed (a QMessageBox::StandardButton).
using MessageService = std::function<int(QWidget *parent, const MessageRequest &request)>;

// Every caller shows its catalogue messages through this.
int ShowMessage(QWidget *parent, int messageId,
                QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                const MessagePlaceholders &placeholders = {});

// The same for a message whose text the caller composed of catalogue texts;
// `messageId` names the message that leads it.
int ShowComposedMessage(QWidget *parent, int messageId, const QString &text,
                        QMessageBox::StandardButtons buttons = QMessageBox::Ok);

// A box whose title and text are not catalogue texts but fixed words of the
// system (see shell/frame/control_tips); it has an OK button only.
int ShowWordedMessage(QWidget *parent, const QString &title, const QString &text);

// Installs the routine that shows messages; an empty one puts the message box
// back.
void SetMessageService(MessageService service);

// The program's routine: a modal message box with the program's name as its
// title. Its answer is the button pressed.
int ShowMessageBox(QWidget *parent, const MessageRequest &request);

// Takes the place of the message box while it lives: notes every message and
// answers with `answer` (or with the only button of a one-button message).
class MessageRecorder {
 public:
  explicit MessageRecorder(int answer = QMessageBox::Ok);
  ~MessageRecorder();
  MessageRecorder(const MessageRecorder &) = delete;
  MessageRecorder &operator=(const MessageRecorder &) = delete;

  void setAnswer(int answer) { answer_ = answer; }
  const std::vector<MessageRequest> &messages() const { return messages_; }
  // The ids in the order they were shown.
  std::vector<int> ids() const;
  void clear() { messages_.clear(); }

 private:
  int answer_;
  std::vector<MessageRequest> messages_;
};

}  // namespace recscope
