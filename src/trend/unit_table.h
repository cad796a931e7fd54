#pragma once
// The recorder's unit codes 0..155 and their texts, for the link views. A record
// file carries its unit as text and does not use this table.
#include <string>
#include <vector>

namespace recscope {

constexpr int kUnitCodeCount = 156;

// UnitRead: the 156 texts of the catalogue, each padded to 7 characters; blank
// codes are seven spaces.
std::vector<std::string> UnitRead();

// The text of a unit code, seven spaces outside 0..155.
std::string UnitText(int code);

// A raw value scaled by a decimals code: 1 x 0.1, 2 x 0.01, 3 x 0.001, 4 x 0.0001,
// any other code leaves the value as it is.
double ScaleByDecimalsCode(double value, int code);

}  // namespace recscope
