#pragma once
// The shape of the large benchmark record: 72 analog channels of one unit each,
// one decimal, a 1-second period, eight groups of nine channels.
#include <string>

#include "record/record_file_info.h"

namespace recscope {

inline RecordFileInfo LargeRecordInfo() {
  RecordFileInfo info;
  info.FileNameText = "SBIG.FDT";
  info.ModelText = "BENCH";
  info.SerialText = "SNo.00000001";
  info.VersionText = "Ver.1.00";
  info.AnalogCount = 72;
  info.DiCount = 0;
  info.SamplingCode = 0;
  info.GroupCount = 8;
  for (int c = 1; c <= 72; ++c) {
    ChannelInfo ch;
    ch.ChannelNo = static_cast<std::int16_t>(c);
    ch.Tag = "TAG" + std::to_string(c);
    ch.ColorNo = static_cast<std::int16_t>(c % 16);
    ch.InputType = 1;
    ch.Unit = "degC";
    ch.ScaleLow = 0;
    ch.ScaleHigh = 10000;
    ch.RecordType = 1;
    ch.RangeLow = 0;
    ch.RangeHigh = 1000;
    ch.Decimals = 1;
    info.Channels.push_back(ch);
  }
  for (int g = 0; g < 8; ++g) {
    info.Groups[static_cast<size_t>(g)].GroupName = "GROUP" + std::to_string(g + 1);
    for (int m = 0; m < 9; ++m)
      info.Groups[static_cast<size_t>(g)].Members[static_cast<size_t>(m)] =
          static_cast<std::int16_t>(g * 9 + m + 1);
  }
  info.ChannelTotal = 72;
  return info;
}

}  // namespace recscope
