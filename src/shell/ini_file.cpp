#include "shell/ini_file.h"

#include <optional>
#include <string_view>
#include <vector>

#include "platform/text_encoding.h"
#include "shell/file_bytes.h"

namespace recscope {

namespace {

constexpr std::size_t kBufferBytes = 255;

// Raw lines without their line end; CR and LF never occur inside a double-byte
// character of code page 932, so the split is safe on the raw bytes.
std::vector<std::string> SplitLines(const std::string &bytes) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < bytes.size()) {
    std::size_t end = bytes.find('\n', start);
    std::string line = bytes.substr(start, end == std::string::npos ? end : end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
    if (end == std::string::npos) break;
    start = end + 1;
  }
  return lines;
}

std::string_view Trim(std::string_view text) {
  const char *blanks = " \t\r\f\v";
  std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  std::size_t last = text.find_last_not_of(blanks);
  return text.substr(first, last - first + 1);
}

char FoldCase(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (FoldCase(a[i]) != FoldCase(b[i])) return false;
  return true;
}

// One line of the file, decoded and classified. Parsing works on the decoded
// text because "[", "]" and "=" may be the second byte of a double-byte character.
struct ParsedLine {
  enum Kind { kOther, kSection, kEntry } kind = kOther;
  std::string name;   // section name or key
  std::string value;  // entry value, trimmed
};

ParsedLine Parse(const std::string &raw) {
  std::string text = Cp932ToUtf8(raw);
  std::string_view line = Trim(text);
  ParsedLine parsed;
  if (line.empty() || line.front() == ';') return parsed;
  if (line.front() == '[') {
    std::size_t close = line.find(']');
    if (close == std::string_view::npos) return parsed;
    parsed.kind = ParsedLine::kSection;
    parsed.name = std::string(Trim(line.substr(1, close - 1)));
    return parsed;
  }
  std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return parsed;
  parsed.kind = ParsedLine::kEntry;
  parsed.name = std::string(Trim(line.substr(0, equals)));
  parsed.value = std::string(Trim(line.substr(equals + 1)));
  return parsed;
}

std::string Unquoted(std::string value) {
  if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
      value.back() == value.front())
    return value.substr(1, value.size() - 2);
  return value;
}

// The buffer rule of the read: a value that fills the buffer exactly still comes
// back whole, a longer one loses its last places to the terminating zero.
std::string FitBuffer(const std::string &value) {
  if (Utf8ToCp932(value).size() <= kBufferBytes) return value;
  return LeftCp932Bytes(value, kBufferBytes - 1);
}

}  // namespace

std::string ReadIni(const std::string &key, const std::string &section, const std::string &file) {
  std::optional<std::string> bytes = ReadFileBytes(file);
  if (!bytes) return kIniMissing;
  bool inSection = false;
  for (const std::string &raw : SplitLines(*bytes)) {
    ParsedLine line = Parse(raw);
    if (line.kind == ParsedLine::kSection) {
      if (inSection) break;  // the first section of the name is the one used
      inSection = SameName(line.name, section);
    } else if (inSection && line.kind == ParsedLine::kEntry && SameName(line.name, key)) {
      std::string value = FitBuffer(Unquoted(line.value));
      std::size_t zero = value.find('\0');
      if (zero != std::string::npos) value.resize(zero);
      return value;
    }
  }
  return kIniMissing;
}

void WriteIni(const std::string &value, const std::string &key, const std::string &section,
              const std::string &file) {
  std::vector<std::string> lines = SplitLines(ReadFileBytes(file).value_or(""));
  const std::string entry = Utf8ToCp932(key + "=" + value);

  std::optional<std::size_t> sectionAt;
  std::optional<std::size_t> keyAt;
  std::size_t lastInSection = 0;  // last non-empty line of the section
  for (std::size_t i = 0; i < lines.size(); ++i) {
    ParsedLine line = Parse(lines[i]);
    if (line.kind == ParsedLine::kSection) {
      if (sectionAt) break;
      if (SameName(line.name, section)) sectionAt = lastInSection = i;
      continue;
    }
    if (!sectionAt) continue;
    if (!Trim(lines[i]).empty()) lastInSection = i;
    if (line.kind == ParsedLine::kEntry && SameName(line.name, key)) {
      keyAt = i;
      break;
    }
  }

  if (keyAt) {
    // The key keeps the spelling it has in the file.
    lines[*keyAt] = Utf8ToCp932(Parse(lines[*keyAt]).name + "=" + value);
  } else if (sectionAt) {
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(lastInSection + 1), entry);
  } else {
    lines.push_back(Utf8ToCp932("[" + section + "]"));
    lines.push_back(entry);
  }

  std::string text;
  for (const std::string &line : lines) text += line + "\r\n";

  ReplaceFileBytes(file, text);
}

}  // namespace recscope
