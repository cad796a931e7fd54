#include "print/page_values.h"

#include <cstdio>

#include "print/page_layout.h"
#include "record/level_files.h"
#include "record/value_text.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "views/instant_values.h"

namespace recscope {

namespace {

constexpr int kFirstInfoLabel = 15001;
constexpr int kFirstFlagLabel = 15090;
constexpr int kFlagLabels = 6;

std::string TwoDigits(int n) {
  char text[16];
  std::snprintf(text, sizeof text, "%02d", n);
  return text;
}

}  // namespace

std::vector<InfoRow> HeaderInfoRows(const RecordFileInfo &info, const TrendView &view,
                                    std::int32_t period, int dateFormatNo) {
  const int group = view.CurrentGroup;
  std::string groupName;
  if (group >= 1 && group <= 8) groupName = info.Groups[group - 1].GroupName;
  const std::string values[] = {
      info.FileNameText,
      info.ModelText,
      info.SerialText,
      info.VersionText,
      std::to_string(info.Channels.size() + info.Dis.size()),
      PeriodText(period),
      std::to_string(info.RecordCount),
      group == kAllChannelsGroup ? std::string("ALL") : "G" + std::to_string(group),
      groupName,
      FormatTime(info.FirstTime, dateFormatNo),
      FormatTime(info.LastTime, dateFormatNo),
  };
  std::vector<InfoRow> rows;
  for (int i = 0; i < 11; ++i) rows.push_back({GetMessageText(kFirstInfoLabel + i), values[i]});
  return rows;
}

std::array<ListMark, 2> ListMarks(const TrendView &view, const std::vector<FlagEvent> &flags,
                                  int cursorMode, std::int32_t pageStart, std::int32_t pageEnd) {
  std::array<ListMark, 2> marks;
  if (cursorMode == 1) {
    marks[0] = {view.Cursor1Set, view.Cursor1Time, GetMessageText(15148)};
    marks[1] = {view.Cursor2Set, view.Cursor2Time, GetMessageText(15149)};
    return marks;
  }
  std::size_t found = 0;
  for (std::size_t i = 0; i < flags.size() && found < 2; ++i) {
    if (flags[i].Time < pageStart || flags[i].Time > pageEnd) continue;
    const int number = static_cast<int>(i) + 1;
    std::string label = number <= kFlagLabels ? GetMessageText(kFirstFlagLabel + number - 1)
                                              : "F" + std::to_string(number) + ":";
    marks[found++] = {true, flags[i].Time, label};
  }
  return marks;
}

std::vector<int> ListedChannels(const TrendView &view) {
  std::vector<int> out;
  const TrendGroup &group = view.Group();
  for (std::size_t p = 0; p < group.ChannelNo.size() && p < group.ChannelIndex.size(); ++p)
    if (group.ChannelNo[p] != 0 && group.ChannelIndex[p] > 0) out.push_back(group.ChannelIndex[p]);
  return out;
}

std::vector<ListRow> ListRows(const RecordFileInfo &info, const TrendView &view,
                              const std::array<ListMark, 2> &marks, std::int32_t period,
                              const std::string &programFolder, int slot,
                              const std::string &decimalChar) {
  const int analog = static_cast<int>(info.Channels.size());
  const int total = analog + static_cast<int>(info.Dis.size());
  const std::vector<int> channels = ListedChannels(view);
  if (period < 1) period = 1;

  // The raw values of every channel at each mark, from the finest level.
  std::array<std::vector<std::int16_t>, 2> values;
  LevelFiles files(programFolder, slot, 0, total, LevelFiles::kValuesOnly);
  for (std::size_t m = 0; m < 2; ++m) {
    if (!marks[m].Set || marks[m].Time < info.FirstTime || marks[m].Time > info.LastTime) continue;
    const std::int64_t t = SnapToSample(marks[m].Time, info.FirstTime, info.LastTime, period);
    const std::int64_t row = (t - info.FirstTime) / period;
    std::vector<std::int16_t> buffer(static_cast<std::size_t>(2 * total), 0);
    if (files.ok() && files.ReadValueRows(row, 1, buffer.data())) values[m] = std::move(buffer);
  }

  std::vector<ListRow> rows;
  for (int index : channels) {
    ListRow row;
    const bool isAnalog = index <= analog;
    if (isAnalog) {
      const ChannelInfo &ch = info.Channels[static_cast<std::size_t>(index - 1)];
      row.Number = "CH" + TwoDigits(ch.ChannelNo);
      row.Tag = ch.Tag;
    } else if (index <= total) {
      const DiInfo &di = info.Dis[static_cast<std::size_t>(index - analog - 1)];
      row.Number = "DI" + TwoDigits(di.DiNo - 128);
      row.Tag = di.Tag;
    }
    for (std::size_t m = 0; m < 2; ++m) {
      if (values[m].empty() || index > total) continue;
      const std::int16_t raw = values[m][static_cast<std::size_t>(2 * (index - 1))];
      row.Values[m] = isAnalog ? AnalogCell(info.Channels[static_cast<std::size_t>(index - 1)], raw,
                                            decimalChar)
                               : DiText(raw);
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace recscope
