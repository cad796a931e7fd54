#include "link/command_frames.h"

namespace recscope {
namespace {

void PutWord(std::vector<std::uint8_t> &frame, std::int32_t value) {
  frame.push_back(static_cast<std::uint8_t>((value >> 8) & 0xFF));
  frame.push_back(static_cast<std::uint8_t>(value & 0xFF));
}

}  // namespace

std::vector<std::uint8_t> ComBuildRequest(const CommandFrameState &state, int kind,
                                          std::int32_t start, int count,
                                          const RegisterTable &writeTable) {
  std::vector<std::uint8_t> frame;
  frame.push_back(static_cast<std::uint8_t>(state.stationIndex + 1));
  switch (kind) {
    case kComReadHolding:
    case kComReadInput:
      frame.push_back(kind == kComReadHolding ? 3 : 4);
      PutWord(frame, start);
      PutWord(frame, count);
      break;
    case kComWriteOne:
      frame.push_back(6);
      PutWord(frame, start);
      PutWord(frame, writeTable[0]);
      break;
    case kComWriteSeveral: {
      if (count < 0 || static_cast<std::size_t>(count) > writeTable.size()) return {};
      frame.push_back(16);
      PutWord(frame, start);
      PutWord(frame, count);
      frame.push_back(static_cast<std::uint8_t>((2 * count) & 0xFF));
      for (int i = 0; i < count; ++i) PutWord(frame, writeTable[static_cast<std::size_t>(i)]);
      break;
    }
    default:
      return {};
  }
  if (frame.size() > kComRequestBufferBytes) return {};
  // The frame is handled as a string that is padded to an even length before it
  // goes through the fixed buffers; the pad byte is neither sent nor part of the
  // CRC, which covers the true length only.
  const std::size_t trueLength = frame.size();
  std::vector<std::uint8_t> padded = frame;
  if (padded.size() % 2 != 0) padded.push_back(0);
  const std::uint16_t crc =
      TableCrc(state.table, std::span<const std::uint8_t>(padded.data(), trueLength));
  AppendCrc(frame, crc);
  return frame;
}

int ComReplyLength(int kind, int count) {
  return (kind == kComReadHolding || kind == kComReadInput) ? 2 * count + 5 : 8;
}

ComWaitRound ComWaitStep(int inputCount, int receiveLength, int ticksLeft, int comErrorFlag) {
  if (inputCount == receiveLength)
    return comErrorFlag != 0 ? ComWaitRound::LineError : ComWaitRound::Received;
  if (inputCount != 6 && ticksLeft == 0) return ComWaitRound::TimedOut;
  return ComWaitRound::WaitOn;
}

bool ComCheckReply(std::span<const std::uint8_t> /*reply*/) { return true; }

bool ComStoreReply(std::span<const std::uint8_t> reply, int replyLength, RegisterTable &table) {
  if (replyLength < 0 || static_cast<std::size_t>(replyLength) > kComReplyBufferBytes ||
      reply.size() < static_cast<std::size_t>(replyLength))
    return false;
  const int words = (replyLength - 3) / 2;
  for (int k = 0; k + 2 <= words; ++k) {
    const std::size_t at = 3 + 2 * static_cast<std::size_t>(k);
    const auto word = static_cast<std::int16_t>((reply[at] << 8) | reply[at + 1]);
    table[static_cast<std::size_t>(k)] = word;
  }
  return true;
}

}  // namespace recscope
