#include "link/command_driver.h"

#include <cstdlib>

namespace recscope {

ComPortSettings &ComSettings() {
  static ComPortSettings settings;
  return settings;
}

std::string ComSettingsText(const ComPortSettings &settings) {
  const int port = settings.SelectedPort == 2 ? 2 : 1;
  const std::string &parity = settings.Parity[static_cast<std::size_t>(port)];
  std::string letter;
  if (parity == "ODD") letter = "O";
  if (parity == "EVEN") letter = "E";
  if (parity == "なし") letter = "N";
  return std::to_string(settings.BaudRate[static_cast<std::size_t>(port)]) + "," + letter + "," +
         std::to_string(settings.DataBits[static_cast<std::size_t>(port)]) + "," +
         std::to_string(settings.StopBits[static_cast<std::size_t>(port)]);
}

namespace {

bool WholeNumber(const std::string &text, int &value) {
  if (text.empty() || text.size() > 9) return false;
  for (char c : text)
    if (c < '0' || c > '9') return false;
  value = std::atoi(text.c_str());
  return true;
}

}  // namespace

ComLineSettings ParseComSettingsText(const std::string &text) {
  std::vector<std::string> fields;
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = text.find(',', start);
    fields.push_back(text.substr(start, comma == std::string::npos ? comma : comma - start));
    if (comma == std::string::npos) break;
    start = comma + 1;
  }
  ComLineSettings parsed;
  if (fields.size() != 4) return parsed;
  if (!WholeNumber(fields[0], parsed.baudRate) || parsed.baudRate <= 0) return parsed;
  if (fields[1] != "O" && fields[1] != "E" && fields[1] != "N") return parsed;
  parsed.parity = fields[1][0];
  if (!WholeNumber(fields[2], parsed.dataBits) || parsed.dataBits < 5 || parsed.dataBits > 8)
    return parsed;
  if (!WholeNumber(fields[3], parsed.stopBits) || (parsed.stopBits != 1 && parsed.stopBits != 2))
    return parsed;
  parsed.valid = true;
  return parsed;
}

void CrcTableInit(CommandDriver &driver) { CrcTableInit(driver.Frames); }

bool ComPortOpen(CommandDriver &driver, const ComPortSettings &settings) {
  if (!driver.Line) return true;
  if (driver.Line->IsOpen()) driver.Line->Close();
  driver.Line->EventHandler = [&driver](int event) { ComLineEvent(driver, event); };
  if (driver.Line->Open(settings.SelectedPort == 2 ? 2 : 1, ComSettingsText(settings))) {
    driver.WaitTimerInterval = std::chrono::milliseconds(100);
    driver.WaitTimerEnabled = true;
  }
  return true;
}

void ComPortClose(CommandDriver &driver) {
  driver.Timer2Enabled = false;
  if (driver.Line && driver.Line->IsOpen()) driver.Line->Close();
}

void ComLineEvent(CommandDriver &driver, int event) {
  if (event == kComEventFraming || event == kComEventOverrun || event == kComEventParity)
    driver.ComErrorFlag = event;
}

bool ComSend(CommandDriver &driver, std::span<const std::uint8_t> request) {
  ComLine &line = *driver.Line;
  if (!line.IsOpen()) return false;
  line.ReadInput();
  ++driver.RequestsSent;
  return line.Write(request);
}

int ComWaitReply(CommandDriver &driver) {
  using Clock = std::chrono::steady_clock;
  ComLine &line = *driver.Line;
  driver.ReplyWaitTicks = 10;
  const Clock::time_point begin = Clock::now();
  Clock::time_point lastTick = begin;
  while (true) {
    line.Pump();
    // The wait timer: one tick each interval while it is enabled.
    const Clock::time_point now = Clock::now();
    while (driver.WaitTimerEnabled && now - lastTick >= driver.WaitTimerInterval) {
      lastTick += driver.WaitTimerInterval;
      if (driver.ReplyWaitTicks > 0) --driver.ReplyWaitTicks;
    }
    const int count = line.IsOpen() ? line.InputCount() : 0;
    switch (ComWaitStep(count, driver.ReceiveLength, driver.ReplyWaitTicks, driver.ComErrorFlag)) {
      case ComWaitRound::Received:
        driver.ReplyWaitTicks = 0;
        return kComSuccess;
      case ComWaitRound::LineError:
        driver.ReplyWaitTicks = 0;
        return kComLineError;
      case ComWaitRound::TimedOut:
        return kComTimeOut;
      case ComWaitRound::WaitOn:
        if (driver.SixByteWaitBound.count() > 0 && count == 6 &&
            now - begin >= driver.SixByteWaitBound)
          return kComSixByteWaitBounded;
        break;
    }
  }
}

int ComTransact(CommandDriver &driver, int kind, std::int32_t start, int count, int retries,
                int /*waitArgument*/, int replyLength) {
  driver.RequestsSent = 0;
  if (!driver.Line || !driver.Line->IsOpen()) return kComPortFailure;
  ComLine &line = *driver.Line;
  line.ReadInput();
  driver.ReceiveLength = replyLength;
  driver.ComErrorFlag = 0;
  if (replyLength < 0 || static_cast<std::size_t>(replyLength) > kComReplyBufferBytes)
    return kComPortFailure;
  const std::vector<std::uint8_t> request =
      ComBuildRequest(driver.Frames, kind, start, count, driver.Writes);
  if (request.empty()) return kComPortFailure;
  int result = kComTimeOut;
  for (int attempt = 0; attempt <= retries; ++attempt) {
    if (!ComSend(driver, request)) return kComPortFailure;
    result = ComWaitReply(driver);
    std::vector<std::uint8_t> reply;
    if (result == kComSuccess) {
      reply = line.ReadInput();
      result = ComCheckReply(reply) ? kComSuccess : 3;
    }
    if (result == kComSixByteWaitBounded) return result;
    if (result != kComSuccess) {
      line.ReadInput();
      driver.ReceiveLength = replyLength;
      driver.ComErrorFlag = 0;
      continue;
    }
    if (!ComStoreReply(reply, replyLength, driver.Registers)) return kComPortFailure;
    break;
  }
  return result;
}

}  // namespace recscope
