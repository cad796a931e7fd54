// The home folder of both programs, and the user's data folder of an installed copy.
#include "shell/home_folder.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "temp_folder.h"

namespace recscope {
namespace {

namespace fs = std::filesystem;
using recscope::testing::TempFolder;

std::string Read(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

void Write(const std::string &path, const std::string &text) {
  std::ofstream(path, std::ios::binary) << text;
}

// Makes a folder that no one may write, not even the superuser: read-only
// permissions for an ordinary user, and the immutable flag as well.
class ReadOnlyFolder {
 public:
  explicit ReadOnlyFolder(const std::string &path) : path_(path) {
    fs::permissions(path_, fs::perms::owner_read | fs::perms::owner_exec);
    int fd = ::open(path_.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd >= 0) {
      int flags = 0;
      if (::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0) {
        flags |= FS_IMMUTABLE_FL;
        immutable_ = ::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
      }
      ::close(fd);
    }
  }
  ~ReadOnlyFolder() {
    int fd = ::open(path_.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd >= 0) {
      int flags = 0;
      if (immutable_ && ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0) {
        flags &= ~FS_IMMUTABLE_FL;
        ::ioctl(fd, FS_IOC_SETFLAGS, &flags);
      }
      ::close(fd);
    }
    fs::permissions(path_, fs::perms::owner_all);
  }
  bool reallyReadOnly() const { return ::access(path_.c_str(), W_OK) != 0; }

 private:
  std::string path_;
  bool immutable_ = false;
};

TEST(HomeFolder, OptionThenEnvironmentThenExecutableFolder) {
  TempFolder t;
  EXPECT_EQ(ResolveHomeFolder("/opt/x/", "/env", t.str(), "/data"), "/opt/x");
  EXPECT_EQ(ResolveHomeFolder("", "/env/", t.str(), "/data"), "/env");
  EXPECT_EQ(ResolveHomeFolder("", "", t.str(), "/data"), t.str());
  EXPECT_EQ(ResolveHomeFolder("", nullptr, t.str()), t.str());
}

// A program run from the build tree keeps its own folder as the home.
TEST(HomeFolder, BuildTreeKeepsTheExecutableFolder) {
  TempFolder t;
  fs::create_directories(t.file("build/bin"));
  EXPECT_FALSE(IsInstalledProgramFolder(t.file("build/bin")));
  EXPECT_EQ(ResolveHomeFolder("", nullptr, t.file("build/bin"), t.file("data")),
            t.file("build/bin"));
}

TEST(HomeFolder, InstalledPrefixHomesInTheUsersDataFolder) {
  TempFolder t;
  fs::create_directories(t.file("usr/bin"));
  fs::create_directories(t.file("usr/share/recscope"));
  EXPECT_EQ(DeliveredFilesFolder(t.file("usr/bin")), t.file("usr/share/recscope"));
  EXPECT_TRUE(IsInstalledProgramFolder(t.file("usr/bin")));
  EXPECT_EQ(ResolveHomeFolder("", nullptr, t.file("usr/bin"), t.file("data")), t.file("data"));
  // The option and the variable still win over the rule.
  EXPECT_EQ(ResolveHomeFolder("", t.file("env").c_str(), t.file("usr/bin"), t.file("data")),
            t.file("env"));
}

TEST(HomeFolder, ReadOnlyExecutableFolderHomesInTheUsersDataFolder) {
  TempFolder t;
  fs::create_directories(t.file("bin"));
  ReadOnlyFolder readOnly(t.file("bin"));
  if (!readOnly.reallyReadOnly())
    GTEST_SKIP() << "this file system lets the superuser write any folder";
  EXPECT_TRUE(IsInstalledProgramFolder(t.file("bin")));
  EXPECT_EQ(ResolveHomeFolder("", nullptr, t.file("bin"), t.file("data")), t.file("data"));
}

TEST(HomeFolder, FirstUseMakesTheFolderAndCopiesTheDeliveredFiles) {
  TempFolder t;
  fs::create_directories(t.file("share/samples"));
  Write(t.file("share/VIEWERCOM.INI"), "[PRINT]\r\nDLINE=1\r\n");
  Write(t.file("share/InitSet.txt"), "; map\r\n");
  Write(t.file("share/samples/SHEAT01.FDT"), "x");
  ASSERT_TRUE(FillHomeFolder(t.file("home/Recscope"), t.file("share")));
  EXPECT_EQ(Read(t.file("home/Recscope/VIEWERCOM.INI")), "[PRINT]\r\nDLINE=1\r\n");
  EXPECT_EQ(Read(t.file("home/Recscope/InitSet.txt")), "; map\r\n");
  EXPECT_FALSE(fs::exists(t.file("home/Recscope/samples")));
  EXPECT_FALSE(fs::exists(t.file("home/Recscope/VIEWERCOM.INI.part")));
}

TEST(HomeFolder, AFileTheOperatorHasIsNeverReplaced) {
  TempFolder t;
  fs::create_directories(t.file("share"));
  fs::create_directories(t.file("home"));
  Write(t.file("share/VIEWERCOM.INI"), "delivered");
  Write(t.file("share/InitSet.txt"), "delivered map");
  Write(t.file("home/VIEWERCOM.INI"), "the operator's");
  ASSERT_TRUE(FillHomeFolder(t.file("home"), t.file("share")));
  EXPECT_EQ(Read(t.file("home/VIEWERCOM.INI")), "the operator's");
  EXPECT_EQ(Read(t.file("home/InitSet.txt")), "delivered map");
}

TEST(HomeFolder, AHomeThatCannotBeMadeIsAFailure) {
  TempFolder t;
  Write(t.file("file"), "a file, not a folder");
  EXPECT_FALSE(FillHomeFolder(t.file("file/home"), t.str()));
}

}  // namespace
}  // namespace recscope
