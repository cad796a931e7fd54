// A logging program killed with SIGKILL in the middle of its run loses no sample
// that it had written: the next start loads every one of them.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <utility>
#include <vector>

#include "realtime/real_logging.h"
#include "realtime/realtime_acquisition.h"
#include "record_fixture.h"

namespace recscope {
namespace {

TEST(RealTimeFileKill, KilledLoggerLosesNoWrittenSampleAndTheRestartFindsThemAll) {
  testing_support::TempFolder folder;
  const std::int32_t first = 1700000000 - 1700000000 % 86400 + 86390;  // wraps past slot 86400
  int pipeFds[2];
  ASSERT_EQ(::pipe(pipeFds), 0);
  const pid_t pid = ::fork();
  ASSERT_GE(pid, 0);
  if (pid == 0) {
    ::dup2(pipeFds[1], STDOUT_FILENO);
    ::close(pipeFds[0]);
    ::close(pipeFds[1]);
    const std::string start = std::to_string(first);
    ::execl(REAL_LOG_CHILD, REAL_LOG_CHILD, folder.Folder().c_str(), start.c_str(),
            static_cast<char *>(nullptr));
    ::_exit(127);
  }
  ::close(pipeFds[1]);
  FILE *in = ::fdopen(pipeFds[0], "r");
  ASSERT_NE(in, nullptr);
  std::vector<std::pair<int, int>> written;  // slot, time
  int slot = 0;
  int time = 0;
  while (written.size() < 300 && std::fscanf(in, "%d %d", &slot, &time) == 2)
    written.emplace_back(slot, time);
  ASSERT_EQ(::kill(pid, SIGKILL), 0);
  int status = 0;
  ASSERT_EQ(::waitpid(pid, &status, 0), pid);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGKILL);
  // whatever it wrote after the last line read counts too; read it off the pipe
  while (std::fscanf(in, "%d %d", &slot, &time) == 2) written.emplace_back(slot, time);
  std::fclose(in);
  ASSERT_GE(written.size(), 300u);
  EXPECT_EQ(written.front().first, 86391);

  RealtimeState next;
  ASSERT_TRUE(ReadRealSetFile(next, RealSetFilePath(folder.Folder()), 1));
  next.CycleSeconds = 1;
  LoadRealTimeFile(next.Ring, RealTimeFilePath(folder.Folder()), written.back().second + 1, 1);
  for (const auto &[s, t] : written) {
    ASSERT_EQ(next.Ring.Valid(s), 1) << "slot " << s;
    EXPECT_EQ(next.Ring.Time(s), t);
    for (int c = 0; c < 30; ++c) ASSERT_EQ(next.Ring.Value(s, c), 10 * c + t % 100);
  }
  EXPECT_EQ(RealNewestTime(next), written.back().second);
}

}  // namespace
}  // namespace recscope
