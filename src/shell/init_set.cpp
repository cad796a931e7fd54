#include "shell/init_set.h"

#include <cstdlib>
#include <optional>
#include <string_view>

#include "platform/text_encoding.h"
#include "shell/file_bytes.h"

namespace recscope {

namespace {

std::string Trimmed(std::string_view text) {
  const char *blanks = " \t\r\n\f\v";
  std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  std::size_t last = text.find_last_not_of(blanks);
  return std::string(text.substr(first, last - first + 1));
}

// A field is trimmed first and then loses its quotes, so blanks inside quotes
// stay part of the name: "U  " keeps its two blanks.
std::string CleanField(std::string_view field) {
  std::string text = Trimmed(field);
  std::string out;
  for (char c : text)
    if (c != '"') out += c;
  return out;
}

InitSetLine SplitFields(std::string_view line) {
  InitSetLine fields;
  std::size_t index = 0;
  std::size_t start = 0;
  while (index < fields.size()) {
    std::size_t comma = line.find(',', start);
    fields[index++] = CleanField(line.substr(
        start, comma == std::string_view::npos ? std::string_view::npos : comma - start));
    if (comma == std::string_view::npos) break;
    start = comma + 1;
  }
  return fields;
}

// Numbers of the map are read like a number field of a form: the leading digits
// count, anything else is 0.
int FieldNumber(const std::string &field) { return std::atoi(field.c_str()); }

void Fold(RegisterMap &map, const InitSetLine &line) {
  if (line[0] == "1") {
    RegisterGroup group;
    group.Name = line[1];
    group.BaseAddress = FieldNumber(line[2]);
    group.WordsPerRecord = FieldNumber(line[3]);
    group.RecordCount = FieldNumber(line[4]);
    map.Groups.push_back(std::move(group));
    return;
  }
  if (line[0] != "0" || map.Groups.empty()) return;
  RegisterItem item;
  item.Name = line[1];
  item.Offset = FieldNumber(line[2]);
  RegisterGroup &group = map.Groups.back();
  if (line[3] == "0") {
    item.Kept = {line[4], line[5], line[6]};
    group.Total += 2;
  } else if (line[3] == "1") {
    item.IsBlock = true;
    item.Block.Text = line[4];
    item.Block.Length = FieldNumber(line[5]);
    group.Total += item.Block.Length;
  } else {
    return;
  }
  group.Items.push_back(std::move(item));
}

}  // namespace

std::string InitSetPath(const std::string &folder) { return folder + "/InitSet.txt"; }

RegisterMap ParseInitSet(const std::string &cp932Text) {
  RegisterMap map;
  std::size_t start = 0;
  while (start < cp932Text.size()) {
    std::size_t end = cp932Text.find('\n', start);
    std::string raw = cp932Text.substr(start, end == std::string::npos ? end : end - start);
    start = end == std::string::npos ? cp932Text.size() : end + 1;
    if (!raw.empty() && raw.back() == '\r') raw.pop_back();
    if (raw.empty() || raw.front() == ';') continue;
    map.Lines.push_back(SplitFields(Cp932ToUtf8(raw)));
  }
  for (const InitSetLine &line : map.Lines) Fold(map, line);
  return map;
}

bool LoadInitSet(const std::string &folder, RegisterMap &map) {
  map = RegisterMap{};
  std::optional<std::string> text = ReadFileBytes(InitSetPath(folder));
  if (!text) return false;
  map = ParseInitSet(*text);
  return true;
}

RegisterMap &Registers() {
  static RegisterMap map;
  return map;
}

}  // namespace recscope
