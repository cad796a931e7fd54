#include "shell/frame/control_tips.h"

namespace recscope {

QString ControlTip(const QString &objectName) {
  if (objectName == QLatin1String("sbAutoFetch"))
    return QString::fromUtf8("自動ファイル取得の設定が不完全です");
  return {};
}

}  // namespace recscope
