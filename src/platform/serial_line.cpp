#include "platform/serial_line.h"

#include <fcntl.h>
#include <unistd.h>
#include <QCoreApplication>

#include <cerrno>
#include <cstdlib>

namespace recscope {

namespace {

speed_t Speed(int baud) {
  switch (baud) {
    case 1200:
      return B1200;
    case 2400:
      return B2400;
    case 4800:
      return B4800;
    case 9600:
      return B9600;
    case 19200:
      return B19200;
    case 38400:
      return B38400;
    case 57600:
      return B57600;
    case 115200:
      return B115200;
    default:
      return B0;
  }
}

tcflag_t Size(int bits) {
  switch (bits) {
    case 5:
      return CS5;
    case 6:
      return CS6;
    case 7:
      return CS7;
    default:
      return CS8;
  }
}

// The parts of the settings the port takes from us.
bool SameSettings(const termios &a, const termios &b, bool ignoreParityEnable) {
  tcflag_t mask = CSIZE | CSTOPB | PARENB | PARODD | CRTSCTS | CLOCAL | CREAD;
  if (ignoreParityEnable) mask &= ~static_cast<tcflag_t>(PARENB);
  return (a.c_cflag & mask) == (b.c_cflag & mask) && cfgetispeed(&a) == cfgetispeed(&b) &&
         cfgetospeed(&a) == cfgetospeed(&b);
}

}  // namespace

std::string ComPortDevice(int portNumber) {
  const std::string variable = "RECSCOPE_COM" + std::to_string(portNumber);
  if (const char *path = std::getenv(variable.c_str()); path && *path) return path;
  return "/dev/ttyS" + std::to_string(portNumber - 1);
}

SerialComLine::~SerialComLine() { Close(); }

bool SerialComLine::Open(int portNumber, const std::string &settingsText) {
  Close();
  const ComLineSettings settings = ParseComSettingsText(settingsText);
  if (!settings.valid || Speed(settings.baudRate) == B0) return false;
  const std::string device = device_.empty() ? ComPortDevice(portNumber) : device_;

  // The device's own settings, to be put back on close.
  savedValid_ = false;
  const int probe = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  if (probe < 0) return false;
  savedValid_ = ::tcgetattr(probe, &saved_) == 0;
  ::close(probe);

  port_.setPortName(QString::fromStdString(device));
  port_.setBaudRate(settings.baudRate);
  port_.setDataBits(static_cast<QSerialPort::DataBits>(settings.dataBits));
  port_.setStopBits(settings.stopBits == 2 ? QSerialPort::TwoStop : QSerialPort::OneStop);
  port_.setParity(QSerialPort::NoParity);
  port_.setFlowControl(QSerialPort::NoFlowControl);
  if (!port_.open(QIODevice::ReadWrite)) return false;

  // All settings in one call. A pseudo-terminal cannot hold the parity-enable
  // flag and refuses a call that would change nothing else, so each open sets
  // everything, and a refusal that leaves all but that flag in place counts as
  // done.
  termios wanted{};
  if (::tcgetattr(port_.handle(), &wanted) != 0) {
    port_.close();
    return false;
  }
  ::cfmakeraw(&wanted);
  wanted.c_cflag &= ~static_cast<tcflag_t>(CSIZE | CSTOPB | PARENB | PARODD | CRTSCTS);
  wanted.c_cflag |= CLOCAL | CREAD | Size(settings.dataBits);
  if (settings.stopBits == 2) wanted.c_cflag |= CSTOPB;
  parityOn_ = settings.parity != 'N';
  if (parityOn_) wanted.c_cflag |= PARENB;
  if (settings.parity == 'O') wanted.c_cflag |= PARODD;
  wanted.c_iflag = PARMRK | (parityOn_ ? INPCK : 0);
  wanted.c_cc[VMIN] = 0;
  wanted.c_cc[VTIME] = 0;
  ::cfsetispeed(&wanted, Speed(settings.baudRate));
  ::cfsetospeed(&wanted, Speed(settings.baudRate));
  if (::tcsetattr(port_.handle(), TCSANOW, &wanted) != 0) {
    termios now{};
    if (errno != EINVAL || ::tcgetattr(port_.handle(), &now) != 0 ||
        !SameSettings(now, wanted, true)) {
      Close();
      return false;
    }
  }
  input_.clear();
  partial_.clear();
  port_.clear(QSerialPort::AllDirections);
  return true;
}

void SerialComLine::Close() {
  if (!port_.isOpen()) return;
  if (savedValid_) ::tcsetattr(port_.handle(), TCSANOW, &saved_);
  savedValid_ = false;
  port_.close();
  input_.clear();
  partial_.clear();
}

bool SerialComLine::IsOpen() const { return port_.isOpen(); }

void SerialComLine::TakeRaw(const std::vector<std::uint8_t> &raw) {
  std::vector<std::uint8_t> bytes = std::move(partial_);
  partial_.clear();
  bytes.insert(bytes.end(), raw.begin(), raw.end());
  std::size_t i = 0;
  while (i < bytes.size()) {
    if (bytes[i] != 0xFF) {
      input_.push_back(bytes[i++]);
      continue;
    }
    if (i + 1 >= bytes.size()) break;  // the rest comes with the next read
    if (bytes[i + 1] == 0xFF) {
      input_.push_back(0xFF);
      i += 2;
      continue;
    }
    if (i + 2 >= bytes.size()) break;
    // 0xFF 0x00 and the faulty byte: the byte is kept, the line event raised.
    input_.push_back(bytes[i + 2]);
    i += 3;
    if (EventHandler) EventHandler(parityOn_ ? kComEventParity : kComEventFraming);
  }
  partial_.assign(bytes.begin() + static_cast<long>(i), bytes.end());
}

void SerialComLine::Drain() {
  if (!port_.isOpen() || port_.bytesAvailable() <= 0) return;
  const QByteArray raw = port_.readAll();
  TakeRaw(std::vector<std::uint8_t>(raw.begin(), raw.end()));
}

int SerialComLine::InputCount() {
  Drain();
  return static_cast<int>(input_.size());
}

std::vector<std::uint8_t> SerialComLine::ReadInput() {
  Drain();
  std::vector<std::uint8_t> taken = std::move(input_);
  input_.clear();
  return taken;
}

bool SerialComLine::Write(std::span<const std::uint8_t> bytes) {
  if (!port_.isOpen()) return false;
  const qint64 written =
      port_.write(reinterpret_cast<const char *>(bytes.data()), static_cast<qint64>(bytes.size()));
  if (written != static_cast<qint64>(bytes.size())) return false;
  port_.flush();
  return true;
}

void SerialComLine::Pump() {
  if (port_.isOpen())
    port_.waitForReadyRead(5);
  else
    ::usleep(5000);
  QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  if (!port_.isOpen()) return;
  Drain();
}

}  // namespace recscope
