#pragma once
// The serial port of the command driver on a Linux serial device, through
// QSerialPort. Every port setting is applied in one settings call on each open,
// and the settings the device had before are put back on close. Line errors come
// in marked by the terminal driver (a byte 0xFF, 0x00 before the faulty byte,
// and 0xFF doubled) and go out as line events.
#include <termios.h>
#include <QSerialPort>

#include <cstdint>
#include <string>
#include <vector>

#include "link/command_driver.h"

namespace recscope {

// The device of a port number: $RECSCOPE_COM<n> when set, else /dev/ttyS<n - 1>.
std::string ComPortDevice(int portNumber);

class SerialComLine : public ComLine {
 public:
  SerialComLine() = default;
  ~SerialComLine() override;
  // A device given by path takes the place of the port numbers (the batch
  // command's --port).
  void setDevice(const std::string &path) { device_ = path; }

  bool Open(int portNumber, const std::string &settingsText) override;
  void Close() override;
  bool IsOpen() const override;
  int InputCount() override;
  std::vector<std::uint8_t> ReadInput() override;
  bool Write(std::span<const std::uint8_t> bytes) override;
  void Pump() override;

  // Takes raw bytes of the terminal driver: unmarks them into the input and
  // raises a line event for each marked byte. Exposed for the tests.
  void TakeRaw(const std::vector<std::uint8_t> &raw);

 private:
  void Drain();

  QSerialPort port_;
  std::string device_;
  termios saved_{};
  bool savedValid_ = false;
  bool parityOn_ = false;
  std::vector<std::uint8_t> input_;
  std::vector<std::uint8_t> partial_;  // the start of a mark cut off by a read
};

}  // namespace recscope
