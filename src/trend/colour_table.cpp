#include "trend/colour_table.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace recscope {

namespace {

constexpr std::array<Rgb, 14> kChannelColours = {{{255, 0, 0},
                                                  {0, 0, 255},
                                                  {255, 0, 255},
                                                  {0, 255, 0},
                                                  {0, 255, 255},
                                                  {234, 234, 0},
                                                  {192, 192, 192},
                                                  {53, 85, 90},
                                                  {135, 62, 49},
                                                  {135, 70, 122},
                                                  {72, 139, 63},
                                                  {90, 161, 169},
                                                  {118, 104, 65},
                                                  {166, 150, 141}}};

}  // namespace

void ColorFromCode(int colorNo, std::string &workingColour) {
  if (colorNo < 1 || colorNo > 14) return;
  workingColour = ColourText(kChannelColours[colorNo - 1]);
}

int ColourNameMessageId(int colorNo) {
  if (colorNo < 1 || colorNo > 14) return 0;
  return 11200 + colorNo - 1;
}

std::string ColourText(Rgb rgb) {
  long value = rgb.r + 256L * rgb.g + 65536L * rgb.b;
  return std::to_string(value);
}

Rgb RgbOfColourText(const std::string &text) {
  char *end = nullptr;
  long value = std::strtol(text.c_str(), &end, 10);
  if (end == text.c_str() || value < 0) return {};
  return {static_cast<int>(value & 0xFF), static_cast<int>((value >> 8) & 0xFF),
          static_cast<int>((value >> 16) & 0xFF)};
}

Rgb GreyOfStep(int step) {
  step = std::clamp(step, 0, 10);
  if (step == 0) return {255, 255, 255};
  int level = 0xE0 - 0x10 * (step - 1);
  return {level, level, level};
}

}  // namespace recscope
