#include "shell/frame/control_tips.h"

namespace recscope {

QString ControlTip(const QString &objectName) {
  if (objectName == QLatin1String("sbAutoFetch"))
    return QString::fromUtf8("自動ファイル取得の設定が不完全です");
  return {};
}

QString ControlCaption(const QString &objectName) {
  if (objectName == QLatin1String("mnuFileRecent"))
    return QString::fromUtf8("最近開いたファイル(&R)");
  if (objectName == QLatin1String("mnuViewFullScreen")) return QString::fromUtf8("全画面表示(&U)");
  return {};
}

}  // namespace recscope
