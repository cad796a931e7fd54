#pragma once
// Making the rows of the level files in bulk: level-1 rows straight from a
// block of data records, and the fold of one row into the row above it.
// The per-record work is laid out once per record (`LevelOnePlan`) so that
// the loops over a block carry no decisions about channel kinds.
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "record/record_file_info.h"

namespace recscope {

// A record the build cannot take: a number field that holds no number, a value
// outside 16 bits, or a sum that leaves 32 bits.
struct LevelRowFailure : std::runtime_error {
  LevelRowFailure() : std::runtime_error("level rows") {}
};

struct LevelOnePlan {
  bool binary = true;
  int channels = 0;  // analog first, then DI
  int analogs = 0;
  int units = 0;         // 16-bit units (binary: analog only) or text fields of a record
  int recordLength = 0;  // bytes
  // Per value column (2 a channel): the unit it is taken from. Binary DI
  // columns are not in here; they come from the DI word.
  std::vector<std::int32_t> columnUnit;
  // Per analog channel: 1 when its second unit belongs to the sum too.
  std::vector<std::int16_t> secondUnitCounts;
  // Binary DI: the bit of the DI word per DI column.
  std::vector<std::int32_t> diBit;
  // Text: the decimals of each field.
  std::vector<std::int16_t> fieldDecimals;
  bool allSingleUnits = false;  // every analog channel has one unit, in order
  bool allTwoUnits = false;     // every analog channel has two units, in order
};

// The plan of a record, or false when its layout does not match its length.
bool MakeLevelOnePlan(const RecordFileInfo &info, LevelOnePlan &plan);

// Level-1 rows of `count` records lying one after the other from `records`:
// 2 x channels values and 2 x channels sums a row. Throws LevelRowFailure.
void MakeLevelOneRows(const LevelOnePlan &plan, const char *records, std::int64_t count,
                      std::int16_t *values, std::int32_t *sums);

// One text number field of 7 characters at `field` (8 bytes readable), as the
// general field reader reads it. Throws LevelRowFailure when it holds no number.
std::int32_t ReadTextUnit(const char *field, int decimals);

// Folds a later row into a running row of `columns` columns with the rules of
// the higher levels. Throws LevelRowFailure when a sum leaves 32 bits.
void FoldLevelRow(int columns, std::int16_t *runningValues, std::int32_t *runningSums,
                  const std::int16_t *values, const std::int32_t *sums);

}  // namespace recscope
