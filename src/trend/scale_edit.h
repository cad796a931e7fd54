#pragma once
// The checks and the effect of the scale edit dialog (dlglenge) of one channel.
#include <string>

#include "record/record_file_info.h"
#include "shell/catalogue.h"

namespace recscope {

struct ScaleEditCheck {
  int messageId = 0;  // 0: accepted
  std::string messageText;
  MessagePlaceholders placeholders;  // what fills the catalogue text of messageId
};

// The dialog's start texts: DI ScaleHigh/ScaleLow, analog DisplayHigh/DisplayLow,
// or the exponents of a logarithmic channel.
struct ScaleEditTexts {
  std::string maxText;
  std::string minText;
};
ScaleEditTexts ScaleEditStartTexts(const RecordFileInfo &info, int channelIndex);

// The OK checks in their order. `channelIndex` is 1-based with DI behind analog.
ScaleEditCheck CheckScaleEdit(const RecordFileInfo &info, int channelIndex,
                              const std::string &maxText, const std::string &minText);

// Writes an accepted edit into the channel's table. A maximum below the minimum
// is kept: that turns the channel upside down.
void ApplyScaleEdit(RecordFileInfo &info, int channelIndex, const std::string &maxText,
                    const std::string &minText);

// Text of a number as the dialog shows it: shortest form, no trailing zeros.
std::string PlainNumberText(double value);

// A text that reads fully as a number (blanks around it allowed).
bool ReadPlainNumber(const std::string &text, double &value);

}  // namespace recscope
