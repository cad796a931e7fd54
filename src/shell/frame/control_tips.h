#pragma once
// Tool tips of the main window's controls that have no catalogue text of their
// own, in the operator's language.
#include <QString>

namespace recscope {

// The tip of a control by its objectName; an empty text for any other name.
// sbAutoFetch: the automatic fetch status panel while it says "設定エラー".
QString ControlTip(const QString &objectName);

}  // namespace recscope
