// A small program that logs samples through the monitor's own file routines, for the test that
// kills it: RealSetFile first, then one sample a cycle into the ring and straight
// into RealTimeFile. After each record is written it prints "slot time" on a line
// of its own, so the test knows what had been written when it killed it.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "real_state_fixture.h"
#include "realtime/real_logging.h"
#include "realtime/realtime_acquisition.h"

using namespace recscope;

int main(int argc, char **argv) {
  if (argc < 3) return 2;
  const std::string folder = argv[1];
  const std::int32_t first = static_cast<std::int32_t>(std::atol(argv[2]));
  RealtimeState state;
  testing_support::FillRealSetup(state, true, 1);
  if (!WriteRealSetFile(state, RealSetFilePath(folder))) return 3;
  const std::string path = RealTimeFilePath(folder);
  for (std::int32_t t = first;; ++t) {
    const std::int32_t slot = testing_support::PutSample(state, t);
    if (!WriteRealTimeRecord(state.Ring, path, slot)) return 5;
    std::printf("%d %d\n", slot, t);
    std::fflush(stdout);
    ::usleep(500);
  }
}
