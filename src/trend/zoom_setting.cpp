#include "trend/zoom_setting.h"

#include <algorithm>
#include <cmath>

#include "shell/catalogue.h"
#include "shell/rounding.h"
#include "trend/scale_edit.h"

namespace recscope {

namespace {

constexpr int kEnlargeRange = 19100;
constexpr int kReduceRange = 19101;

}  // namespace

std::int32_t HighestReduction(const RecordFileInfo &info) {
  return std::max<std::int32_t>(info.OverviewStep, 1);
}

void RoundReduction(std::int64_t entry, int &level, int &multiplier, std::int64_t &value) {
  level = 0;
  std::int64_t power = 1;
  while (entry > 9 * power) {
    power *= kDecimationBase;
    ++level;
  }
  multiplier = static_cast<int>((entry + power - 1) / power);
  value = multiplier * power;
}

ZoomSetting CheckZoomSetting(const std::string &text, bool enlarge, std::int32_t highestReduction) {
  ZoomSetting result;
  double factor = 0;
  bool numeric = ReadPlainNumber(text, factor);
  if (enlarge) {
    if (text.size() > 4 || !numeric || factor < 1 || factor > 100) {
      result.messageId = kEnlargeRange;
      result.messageText = GetMessageText(kEnlargeRange);
      return result;
    }
    result.factor = factor;
    result.kind = 0;
    result.caption = "x" + PlainNumberText(factor);
    result.changeCode = 1;
    return result;
  }
  if (!numeric || factor < 2 || factor > highestReduction) {
    result.messageId = kReduceRange;
    result.placeholders = {{"@MaxPress@", std::to_string(highestReduction)}};
    result.messageText = GetMessageText(kReduceRange, result.placeholders);
    return result;
  }
  std::int64_t value = 0;
  RoundReduction(static_cast<std::int64_t>(std::ceil(factor)), result.level, result.multiplier,
                 value);
  result.factor = static_cast<double>(value);
  result.kind = 1;
  result.caption = "x1/" + std::to_string(value) + "  ";
  result.changeCode = 2;
  return result;
}

void ApplyZoomSetting(TrendView &view, const ZoomSetting &setting) {
  if (setting.messageId != 0 || setting.changeCode == 0) return;
  view.ZoomFactor = setting.factor;
  view.ZoomKind = setting.kind;
  view.ZoomCaption = setting.caption;
  view.ColumnPitch =
      setting.kind == 0 ? static_cast<std::int32_t>(RoundToInt(setting.factor * 15)) : 15;
}

}  // namespace recscope
