#pragma once
// frmJump: the time a cursor jumps to, chosen by year, month, day, hour and
// minute within the years of the record.
#include <QDialog>
#include <cstdint>

class QComboBox;
class QLabel;

namespace recscope {

class JumpDialog : public QDialog {
  Q_OBJECT
 public:
  // For cursor `cursorNo` of a record from `fileStart` to `fileEnd`, first
  // showing `cursorTime`; times are shown in the date format `dateFormatNo`.
  JumpDialog(int cursorNo, std::int32_t fileStart, std::int32_t fileEnd, std::int32_t cursorTime,
             int dateFormatNo, QWidget *parent = nullptr);

  // The time of the choice, seconds always 00.
  std::int64_t chosenTime() const;

 private:
  void FillDays();

  QComboBox *year_ = nullptr;
  QComboBox *month_ = nullptr;
  QComboBox *day_ = nullptr;
  QComboBox *hour_ = nullptr;
  QComboBox *minute_ = nullptr;
};

}  // namespace recscope
