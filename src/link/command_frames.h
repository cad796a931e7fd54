#pragma once
// Frames of the command driver: the blocking driver over RS-232C that reads and
// writes the registers named by the register map. It addresses with zero-based
// Modbus addresses: the caller subtracts 40001 (holding registers) or 30001
// (input registers) from the recorder's register number.
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "link/modbus_crc.h"

namespace recscope {

// Request kinds of the command driver.
inline constexpr int kComReadHolding = 1;   // function 3
inline constexpr int kComReadInput = 2;     // function 4
inline constexpr int kComWriteOne = 3;      // function 6, value from WriteTable element 0
inline constexpr int kComWriteSeveral = 4;  // function 16, values from WriteTable 0..N-1

// Words of the last reply (RegisterTable) or of a write (WriteTable), each word
// sign-extended from 16 bits. Code that wants the unsigned word adds 65536 to a
// negative element.
inline constexpr std::size_t kRegisterTableSize = 1025;
using RegisterTable = std::array<std::int32_t, kRegisterTableSize>;

// The request buffers are 256 bytes: a request must fit them up to its CRC.
inline constexpr std::size_t kComRequestBufferBytes = 256;
// The reply buffer holds at most this many bytes.
inline constexpr std::size_t kComReplyBufferBytes = 513;

// The request of `kind` from `start` (zero-based address) for `count` words, its
// CRC appended low byte first. Kind 3 writes WriteTable element 0 at `start`
// (the count is not sent); kind 4 writes elements 0 to count - 1. Empty when the
// kind is not 1 to 4 or the request does not fit the 256-byte buffer: the
// transaction then ends in its run-time failure.
std::vector<std::uint8_t> ComBuildRequest(const CommandFrameState &state, int kind,
                                          std::int32_t start, int count,
                                          const RegisterTable &writeTable);

// The exact length a reply must have: 2 x count + 5 for kinds 1 and 2, 8 for
// kinds 3 and 4.
int ComReplyLength(int kind, int count);

// The outcome of one round of the reply wait.
enum class ComWaitRound {
  Received,   // the input holds the receive length and no line error came
  LineError,  // the input holds the receive length, but a line error came
  TimedOut,   // the wait ran out
  WaitOn,     // go round again
};

// One round of the reply wait, given the bytes in the input, the receive length,
// the wait ticks left and the last line error (0 for none). With exactly six
// bytes in the input the time-out is suspended and the wait goes on until more
// bytes come: the system's own behaviour, kept on purpose.
ComWaitRound ComWaitStep(int inputCount, int receiveLength, int ticksLeft, int comErrorFlag);

// The command driver's reply check. It always passes: the driver checks only
// the length (in the wait), never the CRC, the station or the function. So a
// reply of the right length with a wrong CRC is taken: the system's own
// behaviour, kept on purpose.
bool ComCheckReply(std::span<const std::uint8_t> reply);

// Stores the data words of a reply of `replyLength` bytes into `table`: word k
// (from 0) is bytes 3 + 2k (high) and 4 + 2k (low), sign-extended, for
// (replyLength - 3) / 2 - 1 words, which for a read are exactly its N data
// words. False, with the table untouched, when the reply is longer than the
// reply buffer or shorter than `replyLength`.
bool ComStoreReply(std::span<const std::uint8_t> reply, int replyLength, RegisterTable &table);

}  // namespace recscope
