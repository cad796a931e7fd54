#include "shell/window_place.h"

#include <QSettings>

namespace recscope {

namespace {

int ReadTwips(QSettings &store, const char *key, double fallback) {
  bool ok = false;
  const float twips = store.value(key).toString().toFloat(&ok);
  return qRound((ok ? twips : fallback) / kTwipsPerPixel);
}

void WriteTwips(QSettings &store, const char *key, int pixels) {
  store.setValue(key, QString::number(static_cast<float>(pixels * kTwipsPerPixel)));
}

}  // namespace

QRect ReadWindowPlace() {
  QSettings store("Recscope", "Recscope");
  store.beginGroup("Settings");
  return QRect(ReadTwips(store, "MainLeft", 1000), ReadTwips(store, "MainTop", 1000),
               ReadTwips(store, "MainWidth", 6500), ReadTwips(store, "MainHeight", 6500));
}

void SaveWindowPlace(const QRect &pixels) {
  QSettings store("Recscope", "Recscope");
  store.beginGroup("Settings");
  WriteTwips(store, "MainLeft", pixels.left());
  WriteTwips(store, "MainTop", pixels.top());
  WriteTwips(store, "MainWidth", pixels.width());
  WriteTwips(store, "MainHeight", pixels.height());
}

}  // namespace recscope
