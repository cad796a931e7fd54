#pragma once
// The command driver: the blocking driver of the recorder link over RS-232C.
// One request at a time goes out and its reply is waited for while the
// program's events run, so that timers and cancel buttons keep working. The
// serial port itself is the platform layer's (ComLine); everything here is
// plain C++.
#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "link/command_frames.h"

namespace recscope {

// The port settings of the command driver, held in memory for the run only:
// they are not saved. The arrays are indexed by port number; elements 1 and 2
// are used.
struct ComPortSettings {
  int SelectedPort = 1;
  std::array<int, 3> BaudRate{19200, 19200, 19200};
  std::array<int, 3> DataBits{8, 8, 8};
  std::array<std::string, 3> Parity{"ODD", "ODD", "ODD"};  // "ODD", "EVEN", "NONE"
  std::array<int, 3> StopBits{1, 1, 1};
};

// The settings of this run.
ComPortSettings &ComSettings();

// The settings text of the selected port: baud, parity letter, data bits and
// stop bits joined by ",", as "19200,O,8,1". The letter is "O" for "ODD", "E"
// for "EVEN" and "N" for "なし". The dialog offers "NONE", which is none of
// these: its parity field stays empty, and the port refuses such a text. That
// is how the program has always behaved, and it is kept.
std::string ComSettingsText(const ComPortSettings &settings);

// A settings text taken apart. `valid` is false when the port would refuse it:
// a field missing or not a number, a parity field that is not one letter of
// "O", "E", "N", data bits other than 5 to 8, stop bits other than 1 or 2.
struct ComLineSettings {
  bool valid = false;
  int baudRate = 0;
  char parity = 'N';
  int dataBits = 8;
  int stopBits = 1;
};
ComLineSettings ParseComSettingsText(const std::string &text);

// The serial port as the command driver sees it: port number, settings text,
// open, close, input count, read, write and line-error events. The platform
// layer gives the real one.
class ComLine {
 public:
  virtual ~ComLine() = default;
  // Sets the port number and the settings text, no handshaking, binary input,
  // and opens the port. False when the port or its settings are refused: the
  // port then stays closed.
  virtual bool Open(int portNumber, const std::string &settingsText) = 0;
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;
  // Bytes waiting in the input.
  virtual int InputCount() = 0;
  // Takes every waiting byte out of the input.
  virtual std::vector<std::uint8_t> ReadInput() = 0;
  // Sends the bytes; false when the port cannot take them.
  virtual bool Write(std::span<const std::uint8_t> bytes) = 0;
  // Lets the program's events run for a moment (at most a few milliseconds),
  // returning early when bytes arrive.
  virtual void Pump() = 0;

  // The event handler of the port: gets the number of each line event
  // (1004 framing, 1006 overrun, 1009 parity, others as they come).
  std::function<void(int)> EventHandler;
};

// Results of ComTransact and ComWaitReply.
inline constexpr int kComSuccess = 0;
inline constexpr int kComLineError = 1;
inline constexpr int kComTimeOut = 2;
inline constexpr int kComPortFailure = 5;
// Only with a bound on the six-byte wait (the batch command's): the reply
// stayed at exactly six bytes longer than the bound.
inline constexpr int kComSixByteWaitBounded = 6;

// Line events that the driver keeps.
inline constexpr int kComEventFraming = 1004;
inline constexpr int kComEventOverrun = 1006;
inline constexpr int kComEventParity = 1009;

struct CommandDriver {
  ComLine *Line = nullptr;
  CommandFrameState Frames;
  RegisterTable Registers{};  // the words of the last reply
  RegisterTable Writes{};     // the words a write request sends
  int ComErrorFlag = 0;       // 0 or the number of the last line error
  int ReplyWaitTicks = 0;     // counted down by the wait timer
  int ReceiveLength = 0;
  bool WaitTimerEnabled = false;
  std::chrono::milliseconds WaitTimerInterval{100};
  bool Timer2Enabled = false;
  // The wait on a reply that stays at six bytes has no end in the desktop
  // program. The batch command bounds it: zero means no bound.
  std::chrono::milliseconds SixByteWaitBound{0};
  // Requests sent by the last ComTransact.
  int RequestsSent = 0;
};

// Fills the CRC table and sets the station index to 0.
void CrcTableInit(CommandDriver &driver);

// Closes the port if it is open, opens it with the settings text of the
// selected port and starts the wait timer at 100 ms. Always true: settings the
// port refuses leave it closed, and the next transaction fails.
bool ComPortOpen(CommandDriver &driver, const ComPortSettings &settings);

// Stops the monitor's poll timer and closes the port if it is open.
void ComPortClose(CommandDriver &driver);

// The serial port's event handler: keeps the framing, overrun and parity events
// in ComErrorFlag and no other.
void ComLineEvent(CommandDriver &driver, int event);

// Sends the request once and waits for its reply, up to `retries` + 1 attempts.
// `waitArgument` is passed by every caller and not used. Results: 0 success
// (the reply's words in Registers), 1 line error, 2 time-out, 5 port or run-time
// failure, 6 the bounded six-byte wait ran out (no further attempt).
int ComTransact(CommandDriver &driver, int kind, std::int32_t start, int count, int retries,
                int waitArgument, int replyLength);

// Clears the input and sends the request.
bool ComSend(CommandDriver &driver, std::span<const std::uint8_t> request);

// Waits one second for the reply: 0 when the input holds the receive length,
// 1 when it does and a line error came, 2 when the second ran out. With exactly
// six bytes in the input the time-out does not count and the wait goes on until
// more bytes come, or, with a bound set, until the bound gives 6.
int ComWaitReply(CommandDriver &driver);

}  // namespace recscope
