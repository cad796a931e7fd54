#pragma once
// Frames of the real-time driver: the timer-stepped driver that reads fixed
// register blocks over RS-232C (Modbus RTU) or Ethernet (Modbus TCP). It shares
// nothing with the command driver, not even the CRC routine.
#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace recscope {

enum class RealLink { Serial, Ethernet };

inline constexpr int kModbusTcpPort = 502;
inline constexpr int kRealMaxWordsPerRequest = 64;
inline constexpr std::size_t kRealDataBufferBytes = 10001;
using RealDataBuffer = std::array<std::uint8_t, kRealDataBufferBytes>;

// Function and zero-based address of a register number in the recorder's
// numbering: function 4 when the number's ten-thousands digit is 3 (input
// registers), else 3; address = (number mod 10000) - 1.
struct RealAddress {
  int function = 3;
  int address = 0;
};
RealAddress RealRegisterAddress(std::int32_t registerNumber);

// Words of the next request: 64, or the words left when they are 64 or fewer.
int RealRequestWords(int wordsLeft);

// RTU request, 8 bytes: station, function, address high and low, count 0 and
// N, CRC low and high.
std::vector<std::uint8_t> BuildRealRtuRequest(int station, std::int32_t registerNumber, int words);

// TCP request, 12 bytes: transaction high and low, protocol 0, length 6,
// station, function, address high and low, 0, N. No CRC.
std::vector<std::uint8_t> BuildRealTcpRequest(int transactionNumber, int station,
                                              std::int32_t registerNumber, int words);

// The transaction number after `n`: up by 1, and 0 after 32767.
int NextTransactionNumber(int n);

// The reply length expected for a request of `words` words: 2N + 5 on RS-232C,
// 2N + 9 on TCP.
int RealReplyLength(RealLink link, int words);

// RTU reply check, for a reply of the expected length. The CRC counts as wrong
// only when both of its bytes differ from the computed ones: a reply with one
// good CRC byte passes. This leniency is the system's own behaviour and is
// kept. A reply of exactly 5 bytes whose function is the request's + 128 is an
// exception reply and fails.
bool RealRtuReplyAccepted(std::span<const std::uint8_t> reply, int requestFunction);

// TCP reply check: the transaction bytes must be those of the request, and the
// function byte must not be the request's + 128.
bool RealTcpReplyAccepted(std::span<const std::uint8_t> reply,
                          std::span<const std::uint8_t> request);

// The reading of one block of registers, request by request, into the data
// buffer as little-endian words. Only frames: sending, receiving and timing are
// the caller's.
class RealBlockRead {
 public:
  enum class Outcome {
    Incomplete,  // the reply has not the expected length (yet)
    Rejected,    // the reply failed its checks: a link failure
    More,        // taken; the next request follows
    Done,        // taken; the block is complete
  };

  // Starts a block of `words` registers from register number `start`: words
  // left, next start address and the write position 0.
  void Load(std::int32_t start, int words);

  // The next request for the link in use, with the expected reply length set.
  // On TCP it carries the transaction number, which then goes up.
  const std::vector<std::uint8_t> &BuildRequest(RealLink link, int station);

  // Takes a reply to the last request.
  Outcome TakeReply(RealLink link, std::span<const std::uint8_t> reply);

  int wordsLeft() const { return wordsLeft_; }
  std::int32_t nextStart() const { return nextStart_; }
  int requestWords() const { return requestWords_; }
  int expectedLength() const { return expectedLength_; }
  std::size_t writePosition() const { return writePosition_; }
  int transactionNumber() const { return transactionNumber_; }
  void setTransactionNumber(int n) { transactionNumber_ = n; }
  const RealDataBuffer &data() const { return data_; }

 private:
  std::int32_t nextStart_ = 0;
  int wordsLeft_ = 0;
  int requestWords_ = 0;
  int expectedLength_ = 0;
  std::size_t writePosition_ = 0;
  int transactionNumber_ = 0;
  std::vector<std::uint8_t> request_;
  RealDataBuffer data_{};
};

}  // namespace recscope
