#pragma once
// CRC-16/MODBUS: initial 0xFFFF, reflected polynomial 0xA001, no final XOR.
// The command driver computes it with a 256-word table; the real-time driver
// bit by bit. Both give the same value on every input.
#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace recscope {

using CrcTable = std::array<std::uint16_t, 256>;

// The command driver's frame state: its CRC table and its station index. The
// station byte of a request is the index plus 1; nothing sets the index to
// anything but 0, so the command driver always addresses station 1.
struct CommandFrameState {
  CrcTable table{};
  int stationIndex = 0;
};

// The 256 words of the table: entry i is the CRC of the byte i alone.
CrcTable BuildCrcTable();

// Fills the table and sets the station index to 0. Called before each opening
// of the command driver's port.
void CrcTableInit(CommandFrameState &state);

// Longest input of the table routine: it works on a buffer of 256 bytes, and a
// longer input is taken only as far as its first 256 bytes.
inline constexpr std::size_t kTableCrcBufferBytes = 256;

// The command driver's CRC, with the table, in high and low halves.
std::uint16_t TableCrc(const CrcTable &table, std::span<const std::uint8_t> bytes);

// The real-time driver's CRC, bit by bit.
std::uint16_t RealCrc(std::span<const std::uint8_t> bytes);

// Appends a CRC as it goes on the wire: low byte first, then high byte.
void AppendCrc(std::vector<std::uint8_t> &frame, std::uint16_t crc);

}  // namespace recscope
