#include "link/monitor_sample.h"

#include <cmath>

#include "link/register_map.h"

namespace recscope {

PresentValueMap FillPresentValueMap(const RegisterMap &map) {
  PublishedGroup published;
  PresentValueMap present;
  present.Address = RegisterLookup(map, "    ", "V  ", published) - 30001;
  present.Words = published.wordsPerRecord;
  present.ReplyLength = 2 * present.Words + 5;
  present.Time = RegisterLookup(map, "GTIM", "V  ", published);
  present.Inputs = RegisterLookup(map, "DIB ", "V  ", published);
  present.Alarms = RegisterLookup(map, "ALMB", "V  ", published);
  present.Values = RegisterLookup(map, "PV  ", "V  ", published);
  return present;
}

namespace {

std::int32_t At(const RegisterTable &table, std::int32_t offset) {
  if (offset < 0 || offset >= static_cast<std::int32_t>(table.size())) return 0;
  return table[static_cast<std::size_t>(offset)];
}

std::int32_t Unsigned(std::int32_t word) { return word < 0 ? word + 65536 : word; }

}  // namespace

MonitorSample TakeSample(const RegisterTable &table, const PresentValueMap &map) {
  MonitorSample sample;
  const std::int64_t seconds =
      static_cast<std::int64_t>(Unsigned(At(table, map.Time + 1))) * 65536 +
      Unsigned(At(table, map.Time));
  sample.Time = static_cast<std::int32_t>(seconds);
  const std::int32_t inputs = At(table, map.Inputs);
  for (int n = 0; n < kMonitorDis; ++n)
    sample.Inputs[static_cast<std::size_t>(n)] = static_cast<std::uint8_t>((inputs >> n) & 1);
  for (int c = 0; c < kMonitorChannels; ++c)
    sample.Raw[static_cast<std::size_t>(c)] = static_cast<std::int16_t>(At(table, map.Values + c));
  for (int w = 0; w < 8; ++w) {
    const std::int32_t word = At(table, map.Alarms + w);
    for (int n = 0; n < 4; ++n)
      for (int level = 0; level < 4; ++level)
        sample.Alarms[static_cast<std::size_t>(level)][static_cast<std::size_t>(4 * w + n)] =
            static_cast<std::uint8_t>((word >> (4 * n + level)) & 1);
  }
  return sample;
}

std::vector<MonitorSample> SamplesToWrite(const MonitorSample *previous,
                                          const MonitorSample &next) {
  std::vector<MonitorSample> out;
  if (previous && next.Time - previous->Time > 1) {
    for (std::int32_t t = previous->Time + 1; t < next.Time; ++t) {
      MonitorSample filler = *previous;
      filler.Time = t;
      out.push_back(filler);
    }
  }
  out.push_back(next);
  return out;
}

std::string SampleRecordBytes(const MonitorSample &sample) {
  std::string out;
  auto put = [&out](std::uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
  };
  put(static_cast<std::uint32_t>(sample.Time), 4);
  for (std::int16_t v : sample.Raw) put(static_cast<std::uint16_t>(v), 2);
  std::uint32_t word = 0;
  for (int n = 1; n <= kMonitorDis; ++n)
    if (sample.Inputs[static_cast<std::size_t>(n - 1)]) word |= 1u << (2 * n - 2);
  put(word, 2);
  return out;
}

MonitorRing::MonitorRing() : values_(37 * static_cast<std::size_t>(kMonitorRingSamples), 0.0) {}

void MonitorRing::Advance() {
  ++writeIndex_;
  if (writeIndex_ > kMonitorRingSamples - 1) {
    writeIndex_ = 1;
    full_ = true;
  }
}

void MonitorRing::StepBack() {
  --writeIndex_;
  if (writeIndex_ <= 0) writeIndex_ = kMonitorRingSamples - 1;
}

void MonitorRing::Store(const MonitorSample &sample, const std::vector<ChannelInfo> &channels) {
  auto cell = [this](int row) -> double & {
    return values_[static_cast<std::size_t>(row) * kMonitorRingSamples +
                   static_cast<std::size_t>(writeIndex_)];
  };
  cell(1) = sample.Time;
  for (int c = 0; c < kMonitorChannels; ++c) {
    const int decimals =
        c < static_cast<int>(channels.size()) ? channels[static_cast<std::size_t>(c)].Decimals : 0;
    cell(2 + c) = sample.Raw[static_cast<std::size_t>(c)] * std::pow(10.0, -decimals);
  }
  for (int n = 0; n < kMonitorDis; ++n) cell(32 + n) = sample.Inputs[static_cast<std::size_t>(n)];
}

}  // namespace recscope
