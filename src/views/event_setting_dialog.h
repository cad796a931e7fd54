#pragma once
// frmEventSet: one row of the alarms, messages or flags of a record at a time:
// whether its text is drawn and at which display position, and a flag's text.
// Back, next and close store the row; the trend is redrawn and left unsaved.
#include <QDialog>
#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace recscope {

class EventSettingDialog : public QDialog {
  Q_OBJECT
 public:
  // `kind` 0 alarm, 1 message, 2 flag; `row` 1-based (the list's grid row).
  EventSettingDialog(int slot, int kind, int row, QWidget *parent = nullptr);

  int slot() const { return slot_; }
  int kind() const { return kind_; }
  int row() const { return row_; }

  // gsub_EventSet: the kind from a tab caption of the list (19034 to 19036) and
  // the row, then the row is loaded.
  void setEvent(const QString &tabCaption, int row);

  void onBack();
  void onNext();
  void onExit();

 signals:
  // A row was stored: the list refills (FillCells2) and the trend was redrawn.
  void rowStored(int slot, int kind, int row);

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void loadRow();
  // Stores the shown row; false when the flag text is refused (the message was
  // shown and the focus is back in txtMessage).
  bool storeRow();
  bool flagTextFits();

  int slot_;
  int kind_;
  int row_;
  QLabel *titles_[5] = {};
  QLabel *values_[5] = {};
  QLabel *lblMessage_;
  QLabel *messageText_;
  QLineEdit *txtMessage_;
  QComboBox *cboDisplay_;
  QComboBox *cboDisplayH_;
  bool checking_ = false;
};

// The route of the list's cmdSetting: opens frmEventSet modally over `parent`
// for row `row` (1-based) of `kind` (0 alarm, 1 message, 2 flag) of the slot's
// record, when that kind has rows. `onStored` runs after each stored row (the
// list's refill). Returns false when the dialog did not open.
bool ShowEventSetting(QWidget *parent, int slot, int kind, int row,
                      const std::function<void()> &onStored = {});

}  // namespace recscope
