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
  if (objectName == QLatin1String("frmDigital")) return QStringLiteral("Real time digital");
  if (objectName == QLatin1String("mnuFileExportImage"))
    return QString::fromUtf8("トレンド画像の保存(&G)...");
  if (objectName == QLatin1String("mnuEditCopyImage"))
    return QString::fromUtf8("トレンド画像のコピー(&P)");
  if (objectName == QLatin1String("dlgExportPicture"))
    return QString::fromUtf8("トレンド画像の保存");
  if (objectName == QLatin1String("txtWidth")) return QString::fromUtf8("幅");
  if (objectName == QLatin1String("txtHeight")) return QString::fromUtf8("高さ");
  if (objectName == QLatin1String("txtPath")) return QString::fromUtf8("ファイル (PNG / SVG)");
  // The box of the print dialog when a paper cannot be set: the system's own
  // English words, kept as they are written.
  if (objectName == QLatin1String("msgPrinterSetting")) return QStringLiteral("Printer setting");
  if (objectName == QLatin1String("msgPrinterSettingText"))
    return QStringLiteral("The stecified size of the form can not be used.");
  return {};
}

}  // namespace recscope
