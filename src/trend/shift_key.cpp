#include "trend/shift_key.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>

namespace recscope {

ShiftKeyState &ShiftKeyState::Instance() {
  static ShiftKeyState *state = [] {
    auto *s = new ShiftKeyState();
    if (QCoreApplication *app = QCoreApplication::instance()) {
      s->setParent(app);
      app->installEventFilter(s);
    }
    return s;
  }();
  return *state;
}

std::int16_t ShiftKeyState::State(bool held) const {
  return static_cast<std::int16_t>((toggle_ ? 1 : 0) + (held ? -128 : 0));
}

std::int16_t ShiftKeyState::State() const {
  return State(held_ || (QGuiApplication::queryKeyboardModifiers() & Qt::ShiftModifier));
}

bool ShiftKeyState::eventFilter(QObject *watched, QEvent *event) {
  switch (event->type()) {
    case QEvent::KeyPress: {
      // A key event travels up the widgets until one takes it, and the filter
      // sees each step: only the first sight of a press flips the bit, and a
      // key held down repeats without flipping it.
      auto *key = static_cast<QKeyEvent *>(event);
      if (key->key() == Qt::Key_Shift && !key->isAutoRepeat() && !held_) {
        toggle_ = !toggle_;
        held_ = true;
      }
      break;
    }
    case QEvent::KeyRelease: {
      auto *key = static_cast<QKeyEvent *>(event);
      if (key->key() == Qt::Key_Shift && !key->isAutoRepeat()) held_ = false;
      break;
    }
    case QEvent::ApplicationDeactivate:
      // The release may go to another program.
      held_ = false;
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace recscope
