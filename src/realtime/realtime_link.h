#pragma once
// The real-time driver on the program's timers: timerRealConnect (50 ms) and
// timerRealSchedule (100 ms) step RealLinkDriver, timerRealWait (5000 ms, once)
// is its reply time-out. The serial port goes through the platform's
// SerialComLine, the socket is a QTcpSocket. The main window owns one of these;
// the batch command makes its own.
#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include <memory>

#include "platform/serial_line.h"
#include "realtime/realtime_driver.h"

namespace recscope {

class RealLinkTimers : public QObject, public RealLinkPort {
  Q_OBJECT
 public:
  // `now` is the computer's clock in seconds from 1970/1/1 as civil time; a
  // test may give its own.
  RealLinkTimers(RealtimeState &state, const std::string &folder,
                 std::function<std::int32_t()> now = {}, QObject *parent = nullptr);
  ~RealLinkTimers() override;

  RealLinkDriver &driver() { return driver_; }
  // A serial device by path in place of the port number (the batch command's --port).
  void setSerialDevice(const std::string &path) { serial_.setDevice(path); }

  // RealLinkPort
  bool SerialOpen(int portNumber, const std::string &settingsText) override;
  void SerialClose() override;
  bool SerialIsOpen() const override;
  void TcpConnect(const std::string &host, int port) override;
  void TcpClose() override;
  RealSocketState TcpState() const override;
  int InputCount(RealLink link) override;
  std::vector<std::uint8_t> ReadInput(RealLink link) override;
  bool Send(RealLink link, const std::vector<std::uint8_t> &bytes) override;
  void EnableWait() override;
  void DisableWait() override;
  bool WaitEnabled() const override;

 signals:
  // After each decoded block: the windows take tabs, buttons and the lamp from
  // the shared state.
  void groupDecoded();

 private:
  SerialComLine serial_;
  QTcpSocket socket_;
  QTimer timerRealConnect_;
  QTimer timerRealSchedule_;
  QTimer timerRealWait_;
  RealLinkDriver driver_;
};

}  // namespace recscope
