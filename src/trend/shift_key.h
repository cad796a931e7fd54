#pragma once
// The key state of Shift that chooses a cursor: a bit that flips on each press
// of the key, read with a further mark while the key is held. One application
// event filter keeps it for the whole program.
#include <QObject>
#include <cstdint>

namespace recscope {

class ShiftKeyState : public QObject {
  Q_OBJECT
 public:
  // The one filter, installed on the application the first time it is asked for.
  static ShiftKeyState &Instance();

  // The state as a number: the toggle bit (0 or 1), with -128 added while the
  // key is held, so that holding it reads differently from either toggle value.
  std::int16_t State(bool held) const;
  // The state now, with the key's held state as the application sees it.
  std::int16_t State() const;
  bool toggle() const { return toggle_; }

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  ShiftKeyState() = default;
  bool toggle_ = false;
  bool held_ = false;  // a press seen and its release not yet
};

}  // namespace recscope
