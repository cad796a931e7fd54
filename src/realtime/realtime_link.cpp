#include "realtime/realtime_link.h"

#include "ftp/operation_log.h"

namespace recscope {

RealLinkTimers::RealLinkTimers(RealtimeState &state, const std::string &folder,
                               std::function<std::int32_t()> now, QObject *parent)
    : QObject(parent),
      driver_(state, *this, folder, now ? std::move(now) : std::function<std::int32_t()>([] {
                return static_cast<std::int32_t>(LocalNowSeconds());
              })) {
  timerRealConnect_.setObjectName("timerRealConnect");
  timerRealSchedule_.setObjectName("timerRealSchedule");
  timerRealWait_.setObjectName("timerRealWait");
  timerRealConnect_.setInterval(50);
  timerRealSchedule_.setInterval(100);
  timerRealWait_.setInterval(5000);
  timerRealWait_.setSingleShot(true);
  connect(&timerRealConnect_, &QTimer::timeout, this, [this] { driver_.ConnectTick(); });
  connect(&timerRealSchedule_, &QTimer::timeout, this, [this] { driver_.ScheduleTick(); });
  driver_.OnGroupDecoded = [this](const RealGroupOutcome &) { emit groupDecoded(); };
  timerRealConnect_.start();
  timerRealSchedule_.start();
}

RealLinkTimers::~RealLinkTimers() {
  timerRealConnect_.stop();
  timerRealSchedule_.stop();
  socket_.abort();
  serial_.Close();
}

bool RealLinkTimers::SerialOpen(int portNumber, const std::string &settingsText) {
  return serial_.Open(portNumber, settingsText);
}
void RealLinkTimers::SerialClose() { serial_.Close(); }
bool RealLinkTimers::SerialIsOpen() const { return serial_.IsOpen(); }

void RealLinkTimers::TcpConnect(const std::string &host, int port) {
  socket_.connectToHost(QString::fromStdString(host), static_cast<quint16>(port));
}

void RealLinkTimers::TcpClose() {
  // A close that waits for nothing: the next block connects anew.
  socket_.abort();
}

RealSocketState RealLinkTimers::TcpState() const {
  switch (socket_.state()) {
    case QAbstractSocket::UnconnectedState:
      return RealSocketState::Closed;
    case QAbstractSocket::HostLookupState:
    case QAbstractSocket::ConnectingState:
      return RealSocketState::Connecting;
    case QAbstractSocket::ConnectedState:
      return RealSocketState::Connected;
    default:
      return RealSocketState::Other;
  }
}

int RealLinkTimers::InputCount(RealLink link) {
  if (link == RealLink::Serial) return serial_.InputCount();
  return static_cast<int>(socket_.bytesAvailable());
}

std::vector<std::uint8_t> RealLinkTimers::ReadInput(RealLink link) {
  if (link == RealLink::Serial) return serial_.ReadInput();
  const QByteArray bytes = socket_.readAll();
  return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
}

bool RealLinkTimers::Send(RealLink link, const std::vector<std::uint8_t> &bytes) {
  if (link == RealLink::Serial) return serial_.Write(bytes);
  const qint64 written = socket_.write(reinterpret_cast<const char *>(bytes.data()),
                                       static_cast<qint64>(bytes.size()));
  socket_.flush();
  return written == static_cast<qint64>(bytes.size());
}

void RealLinkTimers::EnableWait() {
  if (!timerRealWait_.isActive()) timerRealWait_.start();
}
void RealLinkTimers::DisableWait() { timerRealWait_.stop(); }
bool RealLinkTimers::WaitEnabled() const { return timerRealWait_.isActive(); }

}  // namespace recscope
