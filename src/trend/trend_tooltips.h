#pragma once
// Tool tips of the trend window's bottom controls, in the operator's language.
#include <QString>

class QWidget;

namespace recscope {

// The tip of a bottom control by its objectName (UpDown1, UpDown2, Command1,
// chkAll, chkSingle); an empty text for any other name.
QString TrendControlTip(const QString &objectName);

// Gives every bottom control found under `window` its tip.
void SetTrendControlTips(QWidget &window);

}  // namespace recscope
