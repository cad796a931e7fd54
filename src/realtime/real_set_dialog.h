#pragma once
// frmRealSet: how the real-time trend reaches the recorder and how often it
// reads it. The settings come from the section REALTIME of VIEWERCOM.INI into
// Shared().Realtime.Settings; cmdShow writes them back (bsubIniWrite, CYCLE
// only in memory), closes the dialog and shows the real-time trend.
#include <QDialog>

#include <array>
#include <functional>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace recscope {

class RealSetDialog : public QDialog {
 public:
  explicit RealSetDialog(QWidget *parent = nullptr);
  ~RealSetDialog() override;

  // Shows the dialog (modal, deleted on close) from the menu command.
  static RealSetDialog *Show(QWidget *parent);
  // What cmdShow opens after it has written the settings: the real-time trend
  // window, installed by the program (none in a bare test).
  static void SetTrendOpener(std::function<void(QWidget *parent)> opener);

  // Takes the values from the controls into the shared settings and writes
  // the keys.
  void bsubIniWrite();

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void cmbCommunication_Click();
  void cmdShow_Click();
  // The test of an address part or the station on losing the focus: a bad
  // value shows 20115 and the focus stays, a good one is written back without
  // leading zeros.
  bool CheckField(QLineEdit *field);

  QComboBox *cmbCommunication_ = nullptr;
  QComboBox *cmbCycle_ = nullptr;
  QComboBox *cmbCom_ = nullptr;
  QComboBox *cmbRate_ = nullptr;
  QComboBox *cmbParity_ = nullptr;
  QLineEdit *txtSno_ = nullptr;
  std::array<QLineEdit *, 4> IP_{};
  QPushButton *cmdShow_ = nullptr;
  std::array<std::int16_t, 8> cycles_{};  // seconds, from the catalogue
  bool checking_ = false;
};

}  // namespace recscope
