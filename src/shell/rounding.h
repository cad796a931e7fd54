#pragma once
// The rounding words of the system: Round goes to the nearest whole number with a
// tie to the even one, Int goes down, Fix cuts towards zero.
#include <cmath>
#include <cstdint>

namespace recscope {

inline double RoundHalfEven(double x) {
  double r = std::round(x);
  if (std::fabs(x - std::trunc(x)) == 0.5) r = 2.0 * std::round(x / 2.0);
  return r;
}
inline std::int64_t RoundToInt(double x) { return static_cast<std::int64_t>(RoundHalfEven(x)); }
inline std::int64_t IntDown(double x) { return static_cast<std::int64_t>(std::floor(x)); }
inline std::int64_t FixTowardsZero(double x) { return static_cast<std::int64_t>(std::trunc(x)); }

// a mod b with the sign of a, and a \ b cutting towards zero: C++ integer rules.
inline std::int64_t ModSignOfA(std::int64_t a, std::int64_t b) { return a % b; }

}  // namespace recscope
