#include "record/value_text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "shell/catalogue.h"
#include "shell/rounding.h"

namespace recscope {

std::string SpecialValueText(std::int32_t raw, int inputType) {
  if (raw == -32768) return GetMessageText(inputType >= 30 && inputType <= 34 ? 19309 : 19310);
  if (raw == 32767) return GetMessageText(19311);
  if (raw == -32767) return GetMessageText(19312);
  return {};
}

std::string ValueText(std::int32_t raw, int decimals, int inputType,
                      const std::string &decimalChar) {
  std::string special = SpecialValueText(raw, inputType);
  if (!special.empty()) return special;
  if (decimals < 1 || decimals > 4) return std::to_string(raw);
  // raw x 10^-d has exactly d decimals: integer arithmetic gives it without any
  // floating-point rounding.
  std::int64_t scale = 1;
  for (int i = 0; i < decimals; ++i) scale *= 10;
  std::int64_t magnitude = std::llabs(static_cast<long long>(raw));
  std::string fraction = std::to_string(magnitude % scale);
  fraction.insert(0, static_cast<size_t>(decimals) - fraction.size(), '0');
  std::string text = raw < 0 ? "-" : "";
  text += std::to_string(magnitude / scale) + decimalChar + fraction;
  return text;
}

std::int32_t LogScaleRaw(double rangeLow, double rangeHigh, int exponentLow, int exponentHigh,
                         int decimals, double exponent) {
  double scale = std::pow(10.0, decimals);
  double lo = RoundHalfEven(rangeLow * scale);
  double hi = RoundHalfEven(rangeHigh * scale);
  int d = exponentHigh - exponentLow;
  double result;
  if (d == 0) {
    result = lo;
  } else {
    result = std::floor(((exponent - exponentLow) * (hi - lo) + d / 2.0) / d) + lo;
    result = RoundHalfEven(result);
  }
  result = std::clamp(result, -32767.0, 32767.0);
  return static_cast<std::int32_t>(result);
}

std::string LogValueText(double rangeLow, double rangeHigh, int exponentLow, int exponentHigh,
                         int decimals, std::int32_t raw, const std::string &decimalChar) {
  double scale = std::pow(10.0, decimals);
  double lo = RoundHalfEven(rangeLow * scale);
  double hi = RoundHalfEven(rangeHigh * scale);
  double e =
      hi == lo ? exponentLow : (raw - lo) * (exponentHigh - exponentLow) / (hi - lo) + exponentLow;
  e = std::clamp(e, -9.0, 9.0);
  std::int64_t k;
  std::int64_t m;
  char sign;
  if (e < 0) {
    k = -static_cast<std::int64_t>(std::floor(e));
    m = static_cast<std::int64_t>(std::floor(std::pow(10.0, e + k) * 100 + 0.5));
    if (m == 1000) {
      k -= 1;
      m = 100;
    }
    sign = '-';
  } else {
    k = static_cast<std::int64_t>(std::floor(e));
    m = static_cast<std::int64_t>(std::floor(std::pow(10.0, e - k) * 100 + 0.5));
    if (m == 1000) {
      k += 1;
      m = 100;
    }
    sign = '+';
  }
  std::string digits = std::to_string(m);
  return digits.substr(0, 1) + decimalChar + digits.substr(digits.size() - 2) + "E" + sign +
         std::to_string(k);
}

std::int64_t SnapToSample(std::int64_t t, std::int64_t fileStart, std::int64_t fileEnd,
                          std::int64_t period) {
  if (t <= fileStart) return fileStart;
  if (t >= fileEnd) return fileEnd;
  if (period <= 0) return t;
  std::int64_t m = (t - fileStart) % period;
  t -= m;
  if (m > period / 2) t += period;
  return t;
}

}  // namespace recscope
