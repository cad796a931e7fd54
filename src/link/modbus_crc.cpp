#include "link/modbus_crc.h"

#include <algorithm>

namespace recscope {

CrcTable BuildCrcTable() {
  CrcTable table{};
  for (unsigned i = 0; i < table.size(); ++i) {
    unsigned crc = i;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1u) ? (crc >> 1) ^ 0xA001u : crc >> 1;
    table[i] = static_cast<std::uint16_t>(crc);
  }
  return table;
}

void CrcTableInit(CommandFrameState &state) {
  state.table = BuildCrcTable();
  state.stationIndex = 0;
}

std::uint16_t TableCrc(const CrcTable &table, std::span<const std::uint8_t> bytes) {
  const std::size_t n = std::min(bytes.size(), kTableCrcBufferBytes);
  std::uint8_t low = 0xFF;
  std::uint8_t high = 0xFF;
  for (std::size_t i = 0; i < n; ++i) {
    const std::uint16_t entry = table[static_cast<std::uint8_t>(bytes[i] ^ low)];
    low = static_cast<std::uint8_t>((entry & 0xFFu) ^ high);
    high = static_cast<std::uint8_t>(entry >> 8);
  }
  return static_cast<std::uint16_t>((high << 8) | low);
}

std::uint16_t RealCrc(std::span<const std::uint8_t> bytes) {
  unsigned crc = 0xFFFF;
  for (std::uint8_t b : bytes) {
    crc ^= b;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1u) ? (crc >> 1) ^ 0xA001u : crc >> 1;
  }
  return static_cast<std::uint16_t>(crc);
}

void AppendCrc(std::vector<std::uint8_t> &frame, std::uint16_t crc) {
  frame.push_back(static_cast<std::uint8_t>(crc & 0xFFu));
  frame.push_back(static_cast<std::uint8_t>(crc >> 8));
}

}  // namespace recscope
