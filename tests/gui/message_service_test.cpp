// The one message service: a catalogue id with its placeholders and buttons
// becomes a message box, or reaches the routine a test puts in its place.
#include "shell/frame/message_service.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include "gui_test_support.h"
#include "shell/catalogue.h"

using namespace recscope;
using recscope::testing::App;

namespace {

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

// Presses `button` in the message box that stands once the loop runs.
void PressWhenShown(QMessageBox::StandardButton button, QString *shownText, int *shownId) {
  QTimer::singleShot(0, [=] {
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box) return;
    *shownText = box->text();
    *shownId = box->property("messageId").toInt();
    box->button(button)->click();
  });
}

}  // namespace

TEST(MessageService, RequestTextFillsEveryPlaceholder) {
  MessageRequest request;
  request.messageId = 19503;
  request.placeholders = {{"@FileName@", "/data/SHEAT01.FDT"}};
  EXPECT_EQ(request.text(), Text(19503).replace("@FileName@", "/data/SHEAT01.FDT"));
  EXPECT_FALSE(request.text().contains("@FileName@"));
  request.messageId = 11112;
  request.placeholders.clear();
  EXPECT_EQ(request.text(), QString::fromUtf8("指定されたファイルを開いてください。"));
}

TEST(MessageService, MessageBoxShowsTheCatalogueTextAndGivesThePressedButton) {
  App();
  SetMessageService({});
  QString shown;
  int id = 0;
  PressWhenShown(QMessageBox::Ok, &shown, &id);
  EXPECT_EQ(ShowMessage(nullptr, 11113), QMessageBox::Ok);
  EXPECT_EQ(shown, Text(11113));
  EXPECT_EQ(id, 11113);

  PressWhenShown(QMessageBox::Cancel, &shown, &id);
  EXPECT_EQ(ShowMessage(nullptr, 19503, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                        {{"@FileName@", "SHEAT01.FDT"}}),
            QMessageBox::Cancel);
  EXPECT_EQ(shown, Text(19503).replace("@FileName@", "SHEAT01.FDT"));

  PressWhenShown(QMessageBox::No, &shown, &id);
  EXPECT_EQ(ShowMessage(nullptr, 19503, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                        {{"@FileName@", "SHEAT01.FDT"}}),
            QMessageBox::No);
}

TEST(MessageService, RecorderTakesThePlaceOfTheBoxAndGivesItBack) {
  App();
  {
    MessageRecorder recorder(QMessageBox::Cancel);
    EXPECT_EQ(ShowMessage(nullptr, 11190), QMessageBox::Ok);  // one button: that one
    EXPECT_EQ(ShowMessage(nullptr, 19503, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                          {{"@FileName@", "x"}}),
              QMessageBox::Cancel);
    recorder.setAnswer(QMessageBox::Yes);
    EXPECT_EQ(ShowMessage(nullptr, 19503, QMessageBox::Yes | QMessageBox::No), QMessageBox::Yes);
    EXPECT_EQ(recorder.ids(), (std::vector<int>{11190, 19503, 19503}));
    EXPECT_EQ(recorder.messages()[1].text(), Text(19503).replace("@FileName@", "x"));
    EXPECT_EQ(recorder.messages()[2].buttons, QMessageBox::Yes | QMessageBox::No);
  }
  // Back to the message box once the recorder is gone.
  QString shown;
  int id = 0;
  PressWhenShown(QMessageBox::Ok, &shown, &id);
  ShowMessage(nullptr, 11190);
  EXPECT_EQ(id, 11190);
}

TEST(MessageService, InstalledRoutineGetsEveryCaller) {
  App();
  std::vector<int> seen;
  SetMessageService([&seen](QWidget *, const MessageRequest &request) {
    seen.push_back(request.messageId);
    return static_cast<int>(QMessageBox::Yes);
  });
  EXPECT_EQ(ShowMessage(nullptr, 11195, QMessageBox::Yes | QMessageBox::No), QMessageBox::Yes);
  EXPECT_EQ(seen, std::vector<int>{11195});
  SetMessageService({});
}
