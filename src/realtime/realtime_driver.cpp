#include "realtime/realtime_driver.h"

#include <utility>

namespace recscope {

std::string RealSerialSettingsText(const RealSettings &settings) {
  std::string text = settings.BoudRate == 1 ? "19200," : "9600,";
  text += settings.Parity == 1 ? "O," : settings.Parity == 2 ? "E," : "N,";
  return text + "8,1";
}

RealLinkDriver::RealLinkDriver(RealtimeState &state, RealLinkPort &port, std::string folder,
                               std::function<std::int32_t()> now)
    : state_(state), port_(port), folder_(std::move(folder)), now_(std::move(now)) {
  SetRealHeaderSteps(table_);
}

void RealLinkDriver::Start() {
  SetRealHeaderSteps(table_);
  state_.Step = 0;
  state_.Running = true;
  state_.StartEnabled = false;
}

void RealLinkDriver::RealLinkStop() {
  state_.LampBlinking = false;
  linkState_ = 0;
  state_.Running = false;
  state_.StartEnabled = true;
  state_.LampColour = kRealLampBlue;
}

void RealLinkDriver::RealLinkFail() {
  linkState_ = 0;
  if (state_.Step != 7) state_.Step = 0;
  state_.LampColour = kRealLampBlue;
  state_.StateMessageId = 19751;
  ++FailCount;
}

void RealLinkDriver::subSendData() {
  request_ = block_.BuildRequest(link(), state_.Settings.Station);
  port_.ReadInput(link());  // the received count starts at 0
  if (!port_.Send(link(), request_)) RealLinkFail();
}

void RealLinkDriver::subReceiveData() {
  if (port_.InputCount(link()) != block_.expectedLength()) {
    if (!port_.WaitEnabled()) RealLinkFail();
    return;
  }
  const std::vector<std::uint8_t> reply = port_.ReadInput(link());
  const RealBlockRead::Outcome outcome = block_.TakeReply(link(), reply);
  if (outcome == RealBlockRead::Outcome::Rejected ||
      outcome == RealBlockRead::Outcome::Incomplete) {
    RealLinkFail();
    return;
  }
  if (outcome == RealBlockRead::Outcome::Done) {
    if (link() == RealLink::Serial)
      port_.SerialClose();
    else
      port_.TcpClose();
    linkState_ = 4;
  } else {
    linkState_ = 2;
  }
  port_.DisableWait();
}

void RealLinkDriver::ConnectTick() {
  switch (linkState_) {
    case 1:
      state_.LampColour = kRealLampRed;
      if (link() == RealLink::Serial) {
        serialSettings_ = RealSerialSettingsText(state_.Settings);
        if (port_.SerialIsOpen()) port_.SerialClose();
      } else {
        if (port_.TcpState() != RealSocketState::Closed) port_.TcpClose();
        port_.TcpConnect(state_.Settings.Ip, TcpPort);
      }
      linkState_ = 2;
      break;
    case 2:
      if (link() == RealLink::Serial) {
        const bool open =
            port_.SerialIsOpen() || port_.SerialOpen(state_.Settings.Com, serialSettings_);
        if (open) {
          linkState_ = 3;
          subSendData();
        } else {
          RealLinkFail();
        }
      } else {
        const RealSocketState socket = port_.TcpState();
        if (socket == RealSocketState::Connected) {
          linkState_ = 3;
          subSendData();
        } else if (socket != RealSocketState::Connecting) {
          RealLinkFail();
        }
      }
      port_.EnableWait();
      break;
    case 3:
      subReceiveData();
      break;
    default:
      break;
  }
}

void RealLinkDriver::ScheduleTick() {
  if (!state_.Running) return;
  if (linkState_ == 0) {
    if (state_.Step == 7) {
      const std::int32_t now = now_();
      if (now < state_.NextSampleTime) return;
      state_.SampleTime = RealAlignedTime(now, state_.CycleSeconds);
      state_.NextSampleTime = state_.SampleTime + state_.CycleSeconds;
    }
    block_.Load(table_.Start[static_cast<std::size_t>(state_.Step)],
                table_.BlockWords(state_.Step));
    linkState_ = 1;
  } else if (linkState_ == 4) {
    const RealGroupOutcome outcome =
        subGroupDataGet(state_, table_, block_.data(), now_(), folder_);
    ++BlockCount;
    linkState_ = 0;
    if (outcome.Fail) {
      RealLinkFail();
    } else if (state_.Step != 0 && state_.Step != 1) {
      state_.StateMessageId = 19750;
    }
    if (OnGroupDecoded) OnGroupDecoded(outcome);
  }
}

}  // namespace recscope
