#pragma once
// frmZoomsetting: the factor of enlargement or reduction of the time axis.
#include <QDialog>

#include "trend/zoom_setting.h"

class QLineEdit;
class QRadioButton;

namespace recscope {

class ZoomSettingDialog : public QDialog {
  Q_OBJECT
 public:
  ZoomSettingDialog(std::int32_t highestReduction, QWidget *parent = nullptr);
  const ZoomSetting &setting() const { return setting_; }
  // The OK button: the checks, their message, and acceptance.
  void onOk();

 private:
  std::int32_t highest_;
  ZoomSetting setting_;
  QLineEdit *text1_;
  QRadioButton *enlarge_;
  QRadioButton *reduce_;
};

}  // namespace recscope
