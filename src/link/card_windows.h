#pragma once
// The windows of the card file read: dlgComprocessing while the list is asked
// for, frmComFileread with the card's files in pages of 10 and a single choice,
// and dlgComUnderfilereading with the phase and the progress of a fetch. The
// reading itself is link/card_read.*.
#include <QDialog>
#include <memory>

#include "link/card_read.h"
#include "link/command_driver.h"
#include "platform/serial_line.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace recscope {

class MainWindow;

// The link of one card read: the command driver on its serial line and the
// run flag that the cancel buttons clear.
struct CardLinkSession {
  SerialComLine Line;
  CommandDriver Driver;
  CardRegisters Registers;
  bool Running = false;
  CardHooks Hooks() {
    CardHooks hooks;
    hooks.Running = [this] { return Running; };
    return hooks;
  }
};

// dlgComprocessing: "通信中..." and Command1, which clears the run flag.
class CardProcessingDialog : public QDialog {
 public:
  CardProcessingDialog(CardLinkSession &session, QWidget *parent);
};

// dlgComUnderfilereading: Label1 follows the phase, ProgressBar1 the blocks;
// Command1 clears the run flag, so the transfer stops after the request in hand.
class CardProgressDialog : public QDialog {
 public:
  CardProgressDialog(CardLinkSession &session, QWidget *parent);
  void SetPhase(int messageId);
  void SetProgress(int value, int maximum);

 private:
  QLabel *label_ = nullptr;
  QProgressBar *bar_ = nullptr;
};

// frmComFileread.
class CardFileWindow : public QDialog {
 public:
  CardFileWindow(MainWindow &frame, std::unique_ptr<CardLinkSession> session, CardList list);
  ~CardFileWindow() override;

  const CardList &list() const { return list_; }
  // The row checked on the page, or -1.
  int CheckedRow() const;
  // Fetches that have ended, in whatever way.
  int FetchesDone() const { return fetchesDone_; }

 protected:
  void closeEvent(QCloseEvent *event) override;

 private:
  void ShowPage();
  void RowChecked(int row, bool checked);
  void Command2_Click();
  void Command3_Click();
  void Command6_Click();
  void Fetch(const CardEntry &entry, const QString &measurement, const QString &alarm);
  void ComStop();

  MainWindow &frame_;
  std::unique_ptr<CardLinkSession> session_;
  CardList list_;
  QCheckBox *check_[kCardPageRows] = {};
  QLineEdit *name_[kCardPageRows] = {};
  QLineEdit *time_[kCardPageRows] = {};
  QLineEdit *size_[kCardPageRows] = {};
  QLineEdit *chosen_ = nullptr;
  QPushButton *earlier_ = nullptr;
  QPushButton *next_ = nullptr;
  QPushButton *read_ = nullptr;
  bool stopped_ = false;
  int fetchesDone_ = 0;
};

// ComFileListOpen: opens the port, asks the card for its list under
// dlgComprocessing and opens frmComFileread with it; a card without files, no
// card or a failed request shows its message and ends the link (ComStop). The
// link's menu entries stay disabled while the list is open.
void ComFileListOpen(MainWindow &frame);

}  // namespace recscope
