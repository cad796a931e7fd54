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

// The text of a unit code: 0..155 from the catalogue, 156..167 the user units
// last handed over by the recorder link, seven spaces otherwise.
std::string UnitText(int code);
// The link's unit table (codes 0 to 167) as its setup read left it: its user
// units, codes 156 to 167, are taken for UnitText.
constexpr int kUserUnitFirst = 156;
constexpr int kUserUnitCount = 12;
void SetUserUnits(const std::vector<std::string> &table);

// A raw value scaled by a decimals code: 1 x 0.1, 2 x 0.01, 3 x 0.001, 4 x 0.0001,
// any other code leaves the value as it is.
double ScaleByDecimalsCode(double value, int code);

}  // namespace recscope
