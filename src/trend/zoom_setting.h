#pragma once
// The checks of the zoom dialog (frmZoomsetting) and the pitch it leads to.
#include <cstdint>
#include <string>

#include "record/record_file_info.h"
#include "shell/catalogue.h"
#include "trend/trend_view.h"

namespace recscope {

struct ZoomSetting {
  int messageId = 0;  // 0: accepted
  std::string messageText;
  MessagePlaceholders placeholders;  // what fills the catalogue text of messageId
  double factor = 1;
  std::int16_t kind = 0;  // 0 enlarge, 1 reduce
  std::string caption;
  int level = 0;  // reduce: the level and multiplier that give the factor
  int multiplier = 1;
  int changeCode = 0;  // 0 none, 1 or 3 a new pitch, 2 a new level as well
};

// The file's highest reduction: the records a row of the whole-file view stands for.
std::int32_t HighestReduction(const RecordFileInfo &info);

// A reduction rounded up to k x 10^L, the first such value not below it.
void RoundReduction(std::int64_t entry, int &level, int &multiplier, std::int64_t &value);

ZoomSetting CheckZoomSetting(const std::string &text, bool enlarge, std::int32_t highestReduction);

// Takes an accepted setting into the view: zoom fields and ColumnPitch.
void ApplyZoomSetting(TrendView &view, const ZoomSetting &setting);

}  // namespace recscope
