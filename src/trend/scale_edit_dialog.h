#pragma once
// dlglenge: the maximum and minimum of one channel's scale, opened from a scale
// panel of the trend window.
#include <QDialog>

#include "record/record_file_info.h"

class QLineEdit;

namespace recscope {

class ScaleEditDialog : public QDialog {
  Q_OBJECT
 public:
  // `channelIndex` is 1-based with DI behind analog; an accepted edit is written
  // into `info`.
  ScaleEditDialog(RecordFileInfo &info, int channelIndex, QWidget *parent = nullptr);
  int channelIndex() const { return channelIndex_; }
  // The OK button: the checks in order, the message of the first that fails with
  // its field selected, or the edit applied and the dialog accepted.
  void onOk();

 private:
  RecordFileInfo &info_;
  int channelIndex_;
  QLineEdit *txtMax_;
  QLineEdit *txtMin_;
};

// Which field a refusal points at: true for txtMax, false for txtMin. The
// comparisons of both values point at the maximum.
bool RefusalPointsAtMaximum(const RecordFileInfo &info, int channelIndex, int messageId,
                            const std::string &maxText);

}  // namespace recscope
