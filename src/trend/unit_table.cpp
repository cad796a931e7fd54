#include "trend/unit_table.h"

#include "shell/catalogue.h"

namespace recscope {

namespace {

constexpr int kFirstUnitMessage = 25000;
constexpr std::size_t kUnitWidth = 7;

// Pads to seven characters, counting a UTF-8 sequence as one character.
std::string PadUnit(std::string text) {
  std::size_t chars = 0;
  for (unsigned char c : text)
    if ((c & 0xC0) != 0x80) ++chars;
  if (chars < kUnitWidth) text.append(kUnitWidth - chars, ' ');
  return text;
}

std::vector<std::string> &UserUnits() {
  static std::vector<std::string> units(kUserUnitCount, std::string(kUnitWidth, ' '));
  return units;
}

}  // namespace

void SetUserUnits(const std::vector<std::string> &table) {
  for (int i = 0; i < kUserUnitCount; ++i) {
    const std::size_t code = static_cast<std::size_t>(kUserUnitFirst + i);
    UserUnits()[static_cast<std::size_t>(i)] =
        code < table.size() ? PadUnit(table[code]) : std::string(kUnitWidth, ' ');
  }
}

std::vector<std::string> UnitRead() {
  std::vector<std::string> table;
  table.reserve(kUnitCodeCount);
  for (int code = 0; code < kUnitCodeCount; ++code)
    table.push_back(PadUnit(GetMessageText(kFirstUnitMessage + code)));
  return table;
}

std::string UnitText(int code) {
  if (code >= kUserUnitFirst && code < kUserUnitFirst + kUserUnitCount)
    return UserUnits()[static_cast<std::size_t>(code - kUserUnitFirst)];
  if (code < 0 || code >= kUnitCodeCount) return std::string(kUnitWidth, ' ');
  return PadUnit(GetMessageText(kFirstUnitMessage + code));
}

double ScaleByDecimalsCode(double value, int code) {
  switch (code) {
    case 1:
      return value * 0.1;
    case 2:
      return value * 0.01;
    case 3:
      return value * 0.001;
    case 4:
      return value * 0.0001;
    default:
      return value;
  }
}

}  // namespace recscope
