#pragma once
// dlgPrnSet: line widths, print range and the source of the value column of a
// printed trend. OK takes the choice into the print settings in hand, stores the
// print range in the trend view and writes section PRINT of VIEWERCOM.INI;
// cancel changes nothing.
#include <QDialog>

#include "print/print_setting_form.h"

class QComboBox;
class QRadioButton;

namespace recscope {

class PrintSettingDialog : public QDialog {
  Q_OBJECT
 public:
  // The fields start from `config`; OK changes `config` and `view` and writes
  // `iniFile`.
  PrintSettingDialog(PrintConfig &config, TrendView &view, std::string iniFile,
                     QWidget *parent = nullptr);

  // The fields as they stand.
  PrintSettingForm form() const;

  void onOk();

 private:
  void showForm(const PrintSettingForm &form);
  void updateRows();

  PrintConfig &config_;
  TrendView &view_;
  std::string iniFile_;
  QComboBox *dataLine_;
  QComboBox *wakuLine_;
  QComboBox *masuLine_;
  QComboBox *scaleLine_;
  QRadioButton *optScreen_;
  QRadioButton *option1_;
  QRadioButton *option2_;
  QComboBox *comboDay_;
  QComboBox *comboHour_;
  QComboBox *comboMin_;
  QComboBox *comboPage_;
  QRadioButton *optCursor_;
  QRadioButton *optFlag_;
};

// Opens dlgPrnSet modally over `parent` for a trend view, on the program's print
// settings (Shared().Print) and settings file. True when it closed with OK.
bool ShowPrintSettingDialog(QWidget *parent, TrendView &view);

}  // namespace recscope
