#include "record/record_registry.h"

#include <cstdio>
#include <utility>

#include "platform/text_encoding.h"
#include "record/output_files.h"
#include "record/record_reader.h"

namespace recscope {

namespace {

constexpr int kOpenError = 11107;
constexpr int kTooManyGroups = 41050;
constexpr int kTooManyFiles = 41053;
constexpr int kNoGroupName = 41056;
constexpr int kNoFileName = 41057;
constexpr int kNoAddress = 41058;
constexpr int kNameTooLong = 41059;
constexpr int kAddressTooLong = 41060;
constexpr std::size_t kNameField = 64;
constexpr std::size_t kNameLimit = 128;
constexpr std::size_t kAddressLimit = 255;

std::string ThreeDigits(std::size_t n) {
  char text[16];
  std::snprintf(text, sizeof text, "%03zu", n);
  return text;
}

// Bytes of a text as the wide text of the system holds it: two a UTF-16 unit.
std::size_t WideBytes(const std::string &utf8) {
  std::size_t units = 0;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto c = static_cast<unsigned char>(utf8[i]);
    if ((c & 0xC0) == 0x80) continue;
    units += c >= 0xF0 ? 2 : 1;  // a character beyond the basic plane is a pair
  }
  return 2 * units;
}

std::string RightTrimmed(std::string text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

template <typename T>
std::size_t Move(std::vector<T> &list, std::size_t at, bool up) {
  if (at >= list.size()) return at;
  if (up && at > 0) {
    std::swap(list[at], list[at - 1]);
    return at - 1;
  }
  if (!up && at + 1 < list.size()) {
    std::swap(list[at], list[at + 1]);
    return at + 1;
  }
  return at;
}

}  // namespace

std::size_t Registry::FileCount() const {
  std::size_t n = 0;
  for (const RegistryGroup &g : Groups) n += g.Files.size();
  return n;
}

std::string RegistryPath(const std::string &programFolder) {
  if (programFolder.empty() || programFolder.back() == '/') return programFolder + "ViewerFile.txt";
  return programFolder + "/ViewerFile.txt";
}

Registry ParseRegistry(const std::string &bytes) {
  Registry registry;
  std::size_t at = 0;
  while (at < bytes.size()) {
    std::size_t end = bytes.find('\n', at);
    if (end == std::string::npos) end = bytes.size();
    std::string line = bytes.substr(at, end - at);
    at = end + 1;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty()) continue;
    const std::string rest = line.size() > 2 ? line.substr(2) : std::string();
    if (line[0] == 'G') {
      registry.Groups.push_back({Cp932ToUtf8(rest), {}});
    } else if (line[0] == 'F' && !registry.Groups.empty()) {
      // The name stands padded to 64 bytes before the comma of the path.
      std::size_t comma = rest.size() > kNameField ? rest.find(',', kNameField) : std::string::npos;
      if (comma == std::string::npos) comma = rest.find(',');
      RegistryFile file;
      file.Name = Cp932ToUtf8(RightTrimmed(rest.substr(0, comma)));
      if (comma != std::string::npos) file.Path = Cp932ToUtf8(rest.substr(comma + 1));
      registry.Groups.back().Files.push_back(std::move(file));
    }
  }
  return registry;
}

int ReadRegistry(const std::string &path, Registry &registry) {
  if (!PathExists(path)) {
    // A missing registry is made as an empty file.
    std::FILE *made = std::fopen(path.c_str(), "wb");
    if (!made || std::fclose(made) != 0) return kOpenError;
  }
  FileSource source(path);
  std::string bytes;
  if (!source.IsOpen() || !source.Read(0, static_cast<std::size_t>(source.Length()), bytes))
    return kOpenError;
  registry = ParseRegistry(bytes);
  return 0;
}

std::string RegistryBytes(const Registry &registry) {
  std::string out = "V,100\r\n";
  for (const RegistryGroup &g : registry.Groups) {
    out += "G," + Utf8ToCp932(g.Name) + "\r\n";
    for (const RegistryFile &f : g.Files) {
      std::string name = Utf8ToCp932(f.Name);
      if (name.size() < kNameField) name.resize(kNameField, ' ');
      out += "F," + name + "," + Utf8ToCp932(f.Path) + "\r\n";
    }
  }
  return out;
}

bool WriteRegistry(const std::string &path, const Registry &registry) {
  OutputSet outputs;
  OutputFile out;
  if (!out.Open(outputs.Add(path, true))) return false;
  out.Write(RegistryBytes(registry));
  return out.Close() && outputs.Publish();
}

std::string GroupKey(std::size_t group) { return ThreeDigits(group + 1); }
std::string FileKey(std::size_t group, std::size_t file) {
  return ThreeDigits(group + 1) + ThreeDigits(file + 1);
}

int CheckGroupInput(const std::string &name) {
  if (name.empty()) return kNoGroupName;
  if (Utf8ToCp932(name).size() > kNameLimit) return kNameTooLong;
  return 0;
}

int CheckFileInput(const std::string &name, const std::string &address) {
  if (name.empty()) return kNoFileName;
  if (Utf8ToCp932(name).size() > kNameLimit) return kNameTooLong;
  if (address.empty()) return kNoAddress;
  if (WideBytes(address) > kAddressLimit) return kAddressTooLong;
  return 0;
}

int AddRegistryGroup(Registry &registry, const std::string &name) {
  if (registry.Groups.size() >= kMaxRegistryGroups) return kTooManyGroups;
  registry.Groups.push_back({name, {}});
  return 0;
}

int AddRegistryFile(Registry &registry, std::size_t group, const std::string &name,
                    const std::string &path) {
  if (registry.FileCount() >= kMaxRegistryFiles) return kTooManyFiles;
  if (group >= registry.Groups.size()) return kOpenError;
  registry.Groups[group].Files.push_back({name, path});
  return 0;
}

void DeleteRegistryGroup(Registry &registry, std::size_t group) {
  if (group < registry.Groups.size())
    registry.Groups.erase(registry.Groups.begin() + static_cast<long>(group));
}

void DeleteRegistryFile(Registry &registry, std::size_t group, std::size_t file) {
  if (group >= registry.Groups.size()) return;
  auto &files = registry.Groups[group].Files;
  if (file < files.size()) files.erase(files.begin() + static_cast<long>(file));
}

std::size_t MoveRegistryGroup(Registry &registry, std::size_t group, bool up) {
  return Move(registry.Groups, group, up);
}

std::size_t MoveRegistryFile(Registry &registry, std::size_t group, std::size_t file, bool up) {
  if (group >= registry.Groups.size()) return file;
  return Move(registry.Groups[group].Files, file, up);
}

}  // namespace recscope
