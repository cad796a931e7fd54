#include "record/level_rows.h"

#include <bit>
#include <cstring>
#include <string_view>

#include "record/level_fold.h"
#include "record/number_field.h"

namespace recscope {

namespace {

// -32768, 32767 and -32767 are marks, not measurements: they stay out of sums.
inline bool IsMarkRaw(std::int16_t raw) { return raw <= -32767 || raw == 32767; }

inline std::int16_t LoadUnit(const char *units, std::int64_t index) {
  std::int16_t raw;
  std::memcpy(&raw, units + 2 * index, 2);
  return raw;
}

std::int16_t CheckedRaw(std::int32_t value) {
  if (value < -32768 || value > 32767) throw LevelRowFailure();
  return static_cast<std::int16_t>(value);
}

// Sum and count of each analog channel from its two value columns.
inline void AnalogSums(const LevelOnePlan &plan, const std::int16_t *values, std::int32_t *sums) {
  const std::int16_t *second = plan.secondUnitCounts.data();
  for (int c = 0; c < plan.analogs; ++c) {
    const std::int16_t lo = values[2 * c];
    const std::int16_t hi = values[2 * c + 1];
    const std::int32_t takeLo = IsMarkRaw(lo) ? 0 : 1;
    const std::int32_t takeHi = IsMarkRaw(hi) ? 0 : second[c];
    sums[2 * c] = takeLo * lo + takeHi * hi;
    sums[2 * c + 1] = takeLo + takeHi;
  }
}

void BinaryRow(const LevelOnePlan &plan, const char *record, std::int16_t *values,
               std::int32_t *sums) {
  const char *units = record + 4;
  const int a = plan.analogs;
  if (plan.allSingleUnits) {
    for (int c = 0; c < a; ++c) {
      const std::int16_t raw = LoadUnit(units, c);
      values[2 * c] = raw;
      values[2 * c + 1] = raw;
    }
  } else if (plan.allTwoUnits) {
    std::memcpy(values, units, 4 * static_cast<size_t>(a));
  } else {
    const std::int32_t *from = plan.columnUnit.data();
    for (int j = 0; j < 2 * a; ++j) values[j] = LoadUnit(units, from[j]);
  }
  const int diColumns = 2 * (plan.channels - a);
  if (diColumns > 0) {
    const auto word = static_cast<std::uint16_t>(LoadUnit(units, plan.units));
    const std::int32_t *bit = plan.diBit.data();
    for (int j = 0; j < diColumns; ++j)
      values[2 * a + j] = static_cast<std::int16_t>((word >> bit[j]) & 1);
    std::memset(sums + 2 * a, 0, sizeof(std::int32_t) * static_cast<size_t>(diColumns));
  }
  AnalogSums(plan, values, sums);
}

void TextRow(const LevelOnePlan &plan, const char *record, std::int16_t *fields,
             std::int16_t *values, std::int32_t *sums) {
  const std::int16_t *decimals = plan.fieldDecimals.data();
  for (int k = 0; k < plan.units; ++k)
    fields[k] = CheckedRaw(ReadTextUnit(record + 20 + 8 * k, decimals[k]));
  const std::int32_t *from = plan.columnUnit.data();
  for (int j = 0; j < 2 * plan.channels; ++j) values[j] = fields[from[j]];
  const int diColumns = 2 * (plan.channels - plan.analogs);
  std::memset(sums + 2 * plan.analogs, 0, sizeof(std::int32_t) * static_cast<size_t>(diColumns));
  AnalogSums(plan, values, sums);
}

// Eight digit bytes (0 to 9, the first the most significant) as one number.
inline std::uint32_t EightDigits(std::uint64_t digits) {
  digits = digits * 10 + (digits >> 8);
  digits = ((digits & 0x000000FF000000FFull) * 0x000F424000000064ull +
            ((digits >> 16) & 0x000000FF000000FFull) * 0x0000271000000001ull) >>
           32;
  return static_cast<std::uint32_t>(digits);
}

}  // namespace

bool MakeLevelOnePlan(const RecordFileInfo &info, LevelOnePlan &plan) {
  plan = LevelOnePlan();
  plan.binary = info.FileFormat == 2;
  plan.analogs = info.AnalogCount;
  plan.channels = info.AnalogCount + info.DiCount;
  int units = 0;
  bool single = true;
  bool two = true;
  for (const auto &ch : info.Channels) {
    const bool twoUnits = ch.RecordType == 0;
    single = single && !twoUnits;
    two = two && twoUnits;
    plan.columnUnit.push_back(units);
    plan.columnUnit.push_back(twoUnits ? units + 1 : units);
    plan.secondUnitCounts.push_back(twoUnits ? 1 : 0);
    for (int i = 0; i < (twoUnits ? 2 : 1); ++i) plan.fieldDecimals.push_back(ch.Decimals);
    units += twoUnits ? 2 : 1;
  }
  const int analogUnits = units;
  for (size_t i = 0; i < info.Dis.size(); ++i) {
    const auto &di = info.Dis[i];
    const bool twoUnits = di.RecordType == 0;
    if (plan.binary) {
      int n = di.DiNo - 128;
      if (n < 1 || n > 8) n = static_cast<int>(i) + 1;
      plan.diBit.push_back(2 * n - 2);
      plan.diBit.push_back(twoUnits ? 2 * n - 1 : 2 * n - 2);
    } else {
      plan.columnUnit.push_back(units);
      plan.columnUnit.push_back(twoUnits ? units + 1 : units);
      for (int k = 0; k < (twoUnits ? 2 : 1); ++k) plan.fieldDecimals.push_back(0);
      units += twoUnits ? 2 : 1;
    }
  }
  plan.units = plan.binary ? analogUnits : units;
  plan.allSingleUnits = single;
  plan.allTwoUnits = two;
  const std::int64_t length =
      plan.binary ? 4 + 2 * analogUnits + (info.DiCount > 0 ? 2 : 0) : 21 + 8 * units;
  plan.recordLength = static_cast<int>(length);
  return length == info.RecordLength;
}

void MakeLevelOneRows(const LevelOnePlan &plan, const char *records, std::int64_t count,
                      std::int16_t *values, std::int32_t *sums) {
  const size_t columns = 2 * static_cast<size_t>(plan.channels);
  if (plan.binary) {
    for (std::int64_t r = 0; r < count; ++r)
      BinaryRow(plan, records + r * plan.recordLength, values + r * columns, sums + r * columns);
    return;
  }
  std::vector<std::int16_t> fields(static_cast<size_t>(plan.units) + 1);
  for (std::int64_t r = 0; r < count; ++r)
    TextRow(plan, records + r * plan.recordLength, fields.data(), values + r * columns,
            sums + r * columns);
}

// The common shape is taken eight bytes at a time: blanks, an optional minus
// sign, then digits, with the point in its place. Anything else goes to the
// general reader, so both ways give the same number.
std::int32_t ReadTextUnit(const char *field, int decimals) {
  constexpr std::uint64_t kHigh = 0x8080808080808080ull;
  if (decimals >= 0 && decimals <= 6) {
    std::uint64_t word;
    std::memcpy(&word, field, 8);
    int length = 7;
    bool plain = true;
    if (decimals > 0) {
      const int point = 6 - decimals;
      plain = ((word >> (8 * point)) & 0xFF) == '.';
      const std::uint64_t below = (1ull << (8 * point)) - 1;
      word = (word & below) | ((word >> 8) & ~below);
      length = 6;
    }
    const std::uint64_t kept = (1ull << (8 * length)) - 1;
    word &= kept;
    const std::uint64_t digits = (word ^ 0x3030303030303030ull) & kept;
    const std::uint64_t notDigit =
        (((digits & 0x7F7F7F7F7F7F7F7Full) + 0x7676767676767676ull) | digits) & kHigh & kept;
    const std::uint64_t isDigit = ~notDigit & kHigh & kept;
    if (plain && isDigit != 0) {
      const int lead = std::countr_zero(isDigit) / 8;  // bytes before the first digit
      const std::uint64_t leadMask = lead == 0 ? 0 : (1ull << (8 * lead)) - 1;
      const std::uint64_t blanks = 0x2020202020202020ull & leadMask;
      const std::uint64_t prefix = word & leadMask;
      bool negative = false;
      bool shaped = (notDigit & ~leadMask) == 0;
      if (shaped && prefix != blanks) {
        const int sign = 8 * (lead - 1);
        negative = lead > 0 && prefix == ((blanks & ~(0xFFull << sign)) | (0x2Dull << sign));
        shaped = negative;
      }
      if (shaped) {
        const auto value =
            static_cast<std::int32_t>(EightDigits((digits & ~leadMask) << (8 * (8 - length))));
        return negative ? -value : value;
      }
    }
  }
  auto value = ReadNumberField(std::string_view(field, 7), decimals);
  if (!value) throw LevelRowFailure();
  return *value;
}

void FoldLevelRow(int columns, std::int16_t *runningValues, std::int32_t *runningSums,
                  const std::int16_t *values, const std::int32_t *sums) {
  // Even columns are minimums, odd ones maximums; both rules are worked out
  // for every column and the column's own kept, which vectorises.
  for (int c = 0; c < columns; ++c) {
    const std::int16_t running = runningValues[c];
    const std::int16_t later = values[c];
    const std::int16_t low = FoldLevelMin(running, later);
    const std::int16_t high = FoldLevelMax(running, later);
    runningValues[c] = (c & 1) ? high : low;
  }
  std::uint32_t overflow = 0;
  for (int c = 0; c < columns; ++c) {
    const auto a = static_cast<std::uint32_t>(runningSums[c]);
    const auto b = static_cast<std::uint32_t>(sums[c]);
    const std::uint32_t total = a + b;
    // Both addends of one sign and a total of the other: 32 bits were left.
    overflow |= (a ^ total) & (b ^ total);
    runningSums[c] = static_cast<std::int32_t>(total);
  }
  if (overflow & 0x80000000u) throw LevelRowFailure();
}

}  // namespace recscope
