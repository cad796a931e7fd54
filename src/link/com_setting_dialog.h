#pragma once
// dlgComsetting: the port settings of the command driver for this run. Five
// lists, Combo1_0 baud, Combo1_1 data bits, Combo1_2 parity, Combo1_3 stop bits
// and Combo1_4 port, filled from the selected port; Command1 stores the choice
// under the chosen port, Command2 closes without storing.
#include <QDialog>

#include "link/command_driver.h"

class QComboBox;

namespace recscope {

class ComSettingDialog : public QDialog {
 public:
  ComSettingDialog(ComPortSettings &settings, QWidget *parent = nullptr);

 private:
  void Command1_Click();

  ComPortSettings &settings_;
  QComboBox *combo_[5] = {};
};

}  // namespace recscope
