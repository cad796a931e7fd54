#include "trend/trend_tooltips.h"

#include <QWidget>

namespace recscope {

namespace {

struct ControlTip {
  const char *objectName;
  const char *tip;  // UTF-8
};

constexpr ControlTip kTips[] = {
    {"UpDown1", "マス目（グリッド線）の濃さを変えます"},
    {"UpDown2", "バック（背景）の濃さを変えます"},
    {"Command1", "波形の表示を切り替えます（M: 最大・最小の幅、A: 中央線のみ）"},
    {"chkAll", "グループの全チャネルを表示／非表示にします"},
    {"chkSingle", "選択中のチャネルを表示／非表示にします"},
};

}  // namespace

QString TrendControlTip(const QString &objectName) {
  for (const ControlTip &row : kTips)
    if (objectName == QLatin1String(row.objectName)) return QString::fromUtf8(row.tip);
  return {};
}

void SetTrendControlTips(QWidget &window) {
  for (const ControlTip &row : kTips)
    if (auto *control = window.findChild<QWidget *>(QString::fromLatin1(row.objectName)))
      control->setToolTip(QString::fromUtf8(row.tip));
}

}  // namespace recscope
