#include "link/realtime_frames.h"

#include "link/modbus_crc.h"

namespace recscope {

RealAddress RealRegisterAddress(std::int32_t registerNumber) {
  RealAddress a;
  a.function = registerNumber / 10000 == 3 ? 4 : 3;
  a.address = registerNumber % 10000 - 1;
  return a;
}

int RealRequestWords(int wordsLeft) {
  return wordsLeft < kRealMaxWordsPerRequest + 1 ? wordsLeft : kRealMaxWordsPerRequest;
}

std::vector<std::uint8_t> BuildRealRtuRequest(int station, std::int32_t registerNumber, int words) {
  const RealAddress a = RealRegisterAddress(registerNumber);
  std::vector<std::uint8_t> frame{
      static_cast<std::uint8_t>(station),
      static_cast<std::uint8_t>(a.function),
      static_cast<std::uint8_t>((a.address >> 8) & 0xFF),
      static_cast<std::uint8_t>(a.address & 0xFF),
      0,
      static_cast<std::uint8_t>(words),
  };
  AppendCrc(frame, RealCrc(frame));
  return frame;
}

std::vector<std::uint8_t> BuildRealTcpRequest(int transactionNumber, int station,
                                              std::int32_t registerNumber, int words) {
  const RealAddress a = RealRegisterAddress(registerNumber);
  return {
      static_cast<std::uint8_t>((transactionNumber >> 8) & 0xFF),
      static_cast<std::uint8_t>(transactionNumber & 0xFF),
      0,
      0,
      0,
      6,
      static_cast<std::uint8_t>(station),
      static_cast<std::uint8_t>(a.function),
      static_cast<std::uint8_t>((a.address >> 8) & 0xFF),
      static_cast<std::uint8_t>(a.address & 0xFF),
      0,
      static_cast<std::uint8_t>(words),
  };
}

int NextTransactionNumber(int n) { return n >= 32767 ? 0 : n + 1; }

int RealReplyLength(RealLink link, int words) {
  return 2 * words + (link == RealLink::Serial ? 5 : 9);
}

bool RealRtuReplyAccepted(std::span<const std::uint8_t> reply, int requestFunction) {
  if (reply.size() < 3) return false;
  const std::size_t n = reply.size();
  const std::uint16_t crc = RealCrc(reply.first(n - 2));
  const bool lowDiffers = reply[n - 2] != (crc & 0xFF);
  const bool highDiffers = reply[n - 1] != (crc >> 8);
  if (lowDiffers && highDiffers) return false;
  if (reply[1] == requestFunction + 128 && n == 5) return false;
  return true;
}

bool RealTcpReplyAccepted(std::span<const std::uint8_t> reply,
                          std::span<const std::uint8_t> request) {
  if (reply.size() < 8 || request.size() < 8) return false;
  if (reply[0] != request[0] || reply[1] != request[1]) return false;
  if (reply[7] == request[7] + 128) return false;
  return true;
}

void RealBlockRead::Load(std::int32_t start, int words) {
  nextStart_ = start;
  wordsLeft_ = words;
  writePosition_ = 0;
  requestWords_ = 0;
  expectedLength_ = 0;
  request_.clear();
}

const std::vector<std::uint8_t> &RealBlockRead::BuildRequest(RealLink link, int station) {
  requestWords_ = RealRequestWords(wordsLeft_);
  if (link == RealLink::Serial) {
    request_ = BuildRealRtuRequest(station, nextStart_, requestWords_);
  } else {
    request_ = BuildRealTcpRequest(transactionNumber_, station, nextStart_, requestWords_);
    transactionNumber_ = NextTransactionNumber(transactionNumber_);
  }
  expectedLength_ = RealReplyLength(link, requestWords_);
  return request_;
}

RealBlockRead::Outcome RealBlockRead::TakeReply(RealLink link,
                                                std::span<const std::uint8_t> reply) {
  if (request_.empty() || reply.size() != static_cast<std::size_t>(expectedLength_))
    return Outcome::Incomplete;
  std::size_t dataAt = 0;
  if (link == RealLink::Serial) {
    if (!RealRtuReplyAccepted(reply, request_[1])) return Outcome::Rejected;
    dataAt = 3;
  } else {
    if (!RealTcpReplyAccepted(reply, request_)) return Outcome::Rejected;
    dataAt = 9;
  }
  const std::size_t bytes = 2 * static_cast<std::size_t>(requestWords_);
  // A block never reaches past the data buffer; a reply that would is a failure.
  if (writePosition_ + bytes > data_.size()) return Outcome::Rejected;
  for (int k = 0; k < requestWords_; ++k) {
    const std::size_t from = dataAt + 2 * static_cast<std::size_t>(k);
    data_[writePosition_++] = reply[from + 1];
    data_[writePosition_++] = reply[from];
  }
  nextStart_ += requestWords_;
  wordsLeft_ -= requestWords_;
  return wordsLeft_ <= 0 ? Outcome::Done : Outcome::More;
}

}  // namespace recscope
