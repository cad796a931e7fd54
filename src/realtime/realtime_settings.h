#pragma once
// The section REALTIME of VIEWERCOM.INI as frmRealSet reads and writes it, and
// the test of its address and station fields. Plain C++.
#include <string>

#include "realtime/realtime_state.h"

namespace recscope {

// Reads the seven keys. False when the file can't be read (the dialog then
// shows 11107). When IP is missing all seven take their defaults: Ethernet,
// cycle index 0, station 1, COM1, 9600 bps, no parity, "1.1.1.1". A key that
// is not a number reads 0.
bool ReadRealSettings(RealSettings &settings, const std::string &iniFile);

// bsubIniWrite: COMMUNICATION, STATION, COM, BOUDRATE, PARITY and IP, in this
// order. CYCLE stays in memory; the driver writes it when it starts reading.
void WriteRealSettings(const RealSettings &settings, const std::string &iniFile);

// The test of an address part or the station: only digits, 0 to 255. Gives 0
// and the value when good, else 20115 (to be shown with 0 and 255).
int CheckRealByteField(const std::string &text, int &value);

}  // namespace recscope
