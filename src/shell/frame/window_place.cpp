#include "shell/frame/window_place.h"

#include <QSettings>
#include <optional>

namespace recscope {

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr double kDefaultLeftTop = 1000;
constexpr double kFirstStartShare = 0.8;

std::optional<int> ReadTwips(QSettings &store, const char *key) {
  bool ok = false;
  const float twips = store.value(key).toString().toFloat(&ok);
  if (!ok) return std::nullopt;
  return qRound(twips / kTwipsPerPixel);
}

void WriteTwips(QSettings &store, const char *key, int pixels) {
  store.setValue(key, QString::number(static_cast<float>(pixels * kTwipsPerPixel)));
}

}  // namespace

QRect FirstStartPlace(const QRect &available) {
  const int width = qRound(available.width() * kFirstStartShare);
  const int height = qRound(available.height() * kFirstStartShare);
  return QRect(available.left() + (available.width() - width) / 2,
               available.top() + (available.height() - height) / 2, width, height);
}

QRect ReadWindowPlace(const QRect &available) {
  QSettings store("Recscope", "Recscope");
  store.beginGroup("Settings");
  const std::optional<int> width = ReadTwips(store, "MainWidth");
  const std::optional<int> height = ReadTwips(store, "MainHeight");
  if (!width || !height) return FirstStartPlace(available);
  const int fallback = qRound(kDefaultLeftTop / kTwipsPerPixel);
  return QRect(ReadTwips(store, "MainLeft").value_or(fallback),
               ReadTwips(store, "MainTop").value_or(fallback), *width, *height);
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
