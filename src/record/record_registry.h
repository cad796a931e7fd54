#pragma once
// The record registry ViewerFile.txt in the program folder: management groups in
// list order, each with the record files registered under it (a name and a
// path). The file is code page 932 with CR, LF line ends, read whole and
// rewritten whole after each change.
#include <cstddef>
#include <string>
#include <vector>

namespace recscope {

constexpr std::size_t kMaxRegistryGroups = 30;
constexpr std::size_t kMaxRegistryFiles = 400;  // over all groups

struct RegistryFile {
  std::string Name;  // UTF-8, without the padding of the file
  std::string Path;
};

struct RegistryGroup {
  std::string Name;
  std::vector<RegistryFile> Files;
};

struct Registry {
  std::vector<RegistryGroup> Groups;
  std::size_t FileCount() const;
};

// The registry's path in a program folder.
std::string RegistryPath(const std::string &programFolder);

// Reads the registry; a missing file is created empty (no bytes) first. A line's first
// letter decides: "V" is passed over, "G" opens a group, "F" adds a file to the
// last group; other lines are passed over. Returns 0, or 11107 when the file
// cannot be made or opened.
int ReadRegistry(const std::string &path, Registry &registry);
Registry ParseRegistry(const std::string &bytes);

// The file's bytes: "V,100", then per group "G," and its name and per file "F,",
// the name padded to 64 bytes, "," and the path.
std::string RegistryBytes(const Registry &registry);
// Rewrites the whole file through a temporary name beside it.
bool WriteRegistry(const std::string &path, const Registry &registry);

// Keys of the lists: the group's number in "000" form, and the group's and the
// file's numbers together ("000000"), both counted from 1.
std::string GroupKey(std::size_t group);
std::string FileKey(std::size_t group, std::size_t file);

// Input tests of frmFileAdd: 0 when the entry may be kept, else the message id.
// Group: 41056 empty, 41059 a name of 129 bytes or more in code page 932.
int CheckGroupInput(const std::string &name);
// File: 41057 empty name, 41059 a name of 129 bytes or more in code page 932,
// 41058 empty address, 41060 an address of 256 bytes or more as wide text (two
// bytes a UTF-16 unit).
int CheckFileInput(const std::string &name, const std::string &address);

// Changes; each returns 0 or the message id of the refusal.
int AddRegistryGroup(Registry &registry, const std::string &name);  // 41050 at 30 groups
int AddRegistryFile(Registry &registry, std::size_t group, const std::string &name,
                    const std::string &path);  // 41053 at 400 files
// Deleting removes the entry (a group with its files) from the list only.
void DeleteRegistryGroup(Registry &registry, std::size_t group);
void DeleteRegistryFile(Registry &registry, std::size_t group, std::size_t file);
// Swaps the entry with its neighbour above (up) or below; returns the entry's new
// index (the same at the top or the bottom, where nothing happens).
std::size_t MoveRegistryGroup(Registry &registry, std::size_t group, bool up);
std::size_t MoveRegistryFile(Registry &registry, std::size_t group, std::size_t file, bool up);

}  // namespace recscope
