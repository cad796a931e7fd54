#pragma once
// Channel colours and the greys of the plot. Colours are held as decimal text of
// R + 256 x G + 65536 x B, the form the display settings keep.
#include <cstdint>
#include <string>

namespace recscope {

struct Rgb {
  int r = 0;
  int g = 0;
  int b = 0;
};

// Colour number 1..14 of a channel into `workingColour`. Any other number leaves
// the text as it was, so the channel takes the colour of the channel before it.
void ColorFromCode(int colorNo, std::string &workingColour);

// Catalogue id of a colour number's name, 0 outside 1..14.
int ColourNameMessageId(int colorNo);

std::string ColourText(Rgb rgb);
// A colour text back into its parts; a text that is no number is black.
Rgb RgbOfColourText(const std::string &text);

// The grey that UpDown1 (grid) and UpDown2 (background) pick: 0 is white, each
// step 0x101010 darker from 0xE0E0E0, 10 is 0x505050. Values outside are clamped.
Rgb GreyOfStep(int step);

constexpr int kBackGreyStart = 0;
constexpr int kGridGreyStart = 10;

// The fixed colours of the plot.
constexpr Rgb kCursorColour{0, 255, 255};
constexpr Rgb kAlarmColour{255, 0, 0};
constexpr Rgb kMessageColour{0, 0, 255};
constexpr Rgb kFlagColour{255, 0, 255};

}  // namespace recscope
