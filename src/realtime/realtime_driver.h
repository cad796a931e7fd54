#pragma once
// The real-time driver: RealLinkState stepped by the ticks of timerRealConnect
// (50 ms) and timerRealSchedule (100 ms), with timerRealWait (5000 ms, once)
// as the reply time-out of each request. The link is opened and closed around
// each block. Plain C++: the port, the socket and the timers are reached
// through RealLinkPort, which the window layer gives.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "link/realtime_frames.h"
#include "realtime/realtime_acquisition.h"
#include "realtime/realtime_state.h"

namespace recscope {

// The socket states the driver tells apart.
enum class RealSocketState { Closed, Connecting, Connected, Other };

// The serial port, the socket and timerRealWait as the driver sees them.
class RealLinkPort {
 public:
  virtual ~RealLinkPort() = default;
  // Serial: sets port number and settings text, no handshaking, binary
  // input, and opens; false when the port or its settings are refused.
  virtual bool SerialOpen(int portNumber, const std::string &settingsText) = 0;
  virtual void SerialClose() = 0;
  virtual bool SerialIsOpen() const = 0;
  // Socket.
  virtual void TcpConnect(const std::string &host, int port) = 0;
  virtual void TcpClose() = 0;
  virtual RealSocketState TcpState() const = 0;
  // The bytes received on the link in use, and taking them.
  virtual int InputCount(RealLink link) = 0;
  virtual std::vector<std::uint8_t> ReadInput(RealLink link) = 0;
  virtual bool Send(RealLink link, const std::vector<std::uint8_t> &bytes) = 0;
  // timerRealWait: enabling starts its 5 seconds unless it runs already; its
  // tick disables it.
  virtual void EnableWait() = 0;
  virtual void DisableWait() = 0;
  virtual bool WaitEnabled() const = 0;
};

// The settings text of the real-time driver: "9600," or "19200," by BOUDRATE,
// "O," for PARITY 1, "E," for 2, "N," otherwise, then "8,1".
std::string RealSerialSettingsText(const RealSettings &settings);

class RealLinkDriver {
 public:
  RealLinkDriver(RealtimeState &state, RealLinkPort &port, std::string folder,
                 std::function<std::int32_t()> now);

  // cmdStart: step 0, the running flag, cmdStart and the menu disabled.
  void Start();
  // RealLinkStop (cmdStop): no blinking, state 0, not running, cmdStart and
  // the menu enabled, the lamp blue. The port stays as it is.
  void RealLinkStop();
  // RealLinkFail: state 0, step 0 unless it is 7, the lamp blue, "通信エラー"
  // (19751) in lblState. Nothing stops: the next tick tries again.
  void RealLinkFail();

  void ConnectTick();   // timerRealConnect
  void ScheduleTick();  // timerRealSchedule

  int RealLinkState() const { return linkState_; }
  const RealBlockTable &table() const { return table_; }
  RealBlockRead &block() { return block_; }
  RealLink link() const { return state_.Settings.Serial() ? RealLink::Serial : RealLink::Ethernet; }
  // The TCP port: 502 unless a test names another.
  int TcpPort = kModbusTcpPort;
  // How often a block ended in RealLinkFail, and how many blocks were decoded.
  int FailCount = 0;
  int BlockCount = 0;
  // Called after each decoded block with its outcome (the windows redraw tabs
  // and buttons from it).
  std::function<void(const RealGroupOutcome &)> OnGroupDecoded;

 private:
  void subSendData();
  void subReceiveData();

  RealtimeState &state_;
  RealLinkPort &port_;
  std::string folder_;
  std::function<std::int32_t()> now_;
  RealBlockTable table_;
  RealBlockRead block_;
  int linkState_ = 0;
  std::string serialSettings_;
  std::vector<std::uint8_t> request_;
};

}  // namespace recscope
