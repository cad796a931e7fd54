#include "totalize/addition.h"

#include <cstddef>
#include <limits>
#include <optional>
#include <string>

#include "platform/text_encoding.h"
#include "record/number_field.h"
#include "record/record_fields.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "views/cursor_statistics.h"

namespace recscope {

namespace {

constexpr std::int64_t kBinaryHeaderSize = 108;
constexpr std::int64_t kTextHeaderSize = 136;
constexpr std::int64_t kBinaryChannelSize = 22;
constexpr std::int64_t kTextChannelSize = 40;
constexpr std::int64_t kBinaryGroupSize = 26;
constexpr std::int64_t kTextGroupSize = 51;
constexpr std::size_t kTextValueWidth = 11;

// Kinds by letter and the catalogue id of each kind's caption.
struct KindRow {
  char letter;
  int messageId;
};
constexpr KindRow kKinds[] = {
    {'T', 19201}, {'D', 19203}, {'W', 19202}, {'M', 19204},
    {'Y', 19204}, {'R', 19205}, {'E', 19206},
};

char UpperAscii(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

std::optional<std::int32_t> IntegerAt(std::string_view bytes, std::size_t at, std::size_t width) {
  return ReadIntegerField(bytes.substr(at, width));
}

bool IsBinary(const TotalizeWindow &slot) { return slot.IsBinary != 0; }

std::int64_t ChannelTableStart(const TotalizeWindow &slot) {
  return IsBinary(slot) ? kBinaryHeaderSize : kTextHeaderSize;
}
std::int64_t GroupTableStart(const TotalizeWindow &slot) {
  return ChannelTableStart(slot) +
         (IsBinary(slot) ? kBinaryChannelSize : kTextChannelSize) * slot.ChannelCount;
}

const TotalizeChannel *FindChannelByNo(const TotalizeWindow &slot, int channelNo) {
  for (const TotalizeChannel &c : slot.Channels)
    if (c.ChannelNo == channelNo) return &c;
  return nullptr;
}

// The page's rows and the offset of its first record; false when the slot has no
// such page.
bool PagePlace(const TotalizeWindow &slot, std::int32_t &rows, std::int64_t &offset) {
  const std::int32_t page = slot.CurrentPage;
  if (slot.RecordCount <= 0 || slot.RecordLength <= 0 || page < 1 || page > slot.PageCount)
    return false;
  const std::int64_t before = static_cast<std::int64_t>(page - 1) * kTotalizePageRows;
  rows = page == slot.PageCount ? static_cast<std::int32_t>(slot.RecordCount - before)
                                : kTotalizePageRows;
  if (rows <= 0 || rows > kTotalizePageRows) return false;
  offset = slot.DataStart + before * slot.RecordLength;
  return true;
}

// The eleven characters of a text value with the point of `decimals` replaced by
// the machine's decimal separator.
std::string TextValue(std::string_view field, int decimals, const std::string &decimalChar) {
  if (decimals <= 0 || decimals >= static_cast<int>(kTextValueWidth)) return Cp932ToUtf8(field);
  const auto left = kTextValueWidth - 1 - static_cast<std::size_t>(decimals);
  return Cp932ToUtf8(field.substr(0, left)) + decimalChar +
         Cp932ToUtf8(field.substr(left + 1, static_cast<std::size_t>(decimals)));
}

int RunOpenSequence(SharedState &state, bool isBinary, const TotalizeProgress &progress) {
  TotalizeWindow &slot = state.Totalize(state.CurrentAddition);
  slot.IsBinary = isBinary ? 1 : 0;
  int code = kTotalizeValid;
  {
    FileSource source(slot.Path);
    if (!source.IsOpen()) return kTotalizeBadFile;
    code = ReadTotalizeHeader(source, isBinary, slot);
    if (code == kTotalizeValid) code = ReadTotalizeChannels(source, slot, state.DecimalChar);
    if (code == kTotalizeValid) code = ReadTotalizeGroups(source, slot);
    if (code == kTotalizeValid) code = CheckTotalizeSize(source, slot);
    if (code == kTotalizeValid) {
      const bool read = isBinary ? ReadTotalizePageBinary(source, slot, state.DecimalChar, progress)
                                 : ReadTotalizePageText(source, slot, state.DecimalChar, progress);
      if (!read) code = kTotalizeBadFile;
    }
  }  // the file is closed here
  if (code != kTotalizeValid) {
    slot.InUse = 0;
    return code;
  }
  ++state.OpenAdditionCount;
  slot.InUse = 1;
  return kTotalizeValid;
}

}  // namespace

int TotalizeErrorMessageId(int errorCode) {
  if (errorCode < kTotalizeBadFile || errorCode > kTotalizeNoData) errorCode = kTotalizeBadFile;
  return 11120 + errorCode;
}

int TotalizeKindOfLetter(char letter) {
  const char upper = UpperAscii(letter);
  for (std::size_t i = 0; i < std::size(kKinds); ++i)
    if (kKinds[i].letter == upper) return static_cast<int>(i) + 1;
  return 0;
}

int TotalizeKindOfPath(std::string_view path) {
  const std::size_t cut = path.find_last_of("\\/");
  const std::string_view name = cut == std::string_view::npos ? path : path.substr(cut + 1);
  if (name.empty()) return 0;
  const std::size_t dot = name.find_last_of('.');
  if (dot == std::string_view::npos) return 0;
  const std::string_view extension = name.substr(dot + 1);
  if (extension.size() != 3) return 0;
  std::string upper;
  for (char c : extension) upper += UpperAscii(c);
  if (upper != "FDT") return 0;
  return TotalizeKindOfLetter(name.front());
}

int TotalizeKindMessageId(int kind) {
  if (kind < 1 || kind > static_cast<int>(std::size(kKinds))) return 0;
  return kKinds[kind - 1].messageId;
}

std::string TotalizeKindName(int kind) {
  const int id = TotalizeKindMessageId(kind);
  return id == 0 ? std::string() : GetMessageText(id);
}

int TotalizeGroupTableSize(int groupCount) { return groupCount == 8 ? 8 : 4; }

std::string FormatTotalizeValue(std::int32_t raw, int decimals, const std::string &decimalChar) {
  double scale = 1.0;
  for (int i = 0; i < decimals; ++i) scale *= 10.0;
  const double value = decimals > 0 ? static_cast<double>(raw) / scale : static_cast<double>(raw);
  const int digits = (decimals >= 1 && decimals <= 4) ? decimals : 0;
  return FormatDecimals(value, digits, decimalChar);
}

int FindFreeTotalizeSlot(SharedState &state) {
  for (int n = 1; n <= kTotalizeSlotCount; ++n) {
    if (state.Totalize(n).InUse == 0) {
      state.CurrentAddition = static_cast<std::int16_t>(n);
      return n;
    }
  }
  return 0;
}

int ReadTotalizeHeader(const ByteSource &source, bool isBinary, TotalizeWindow &slot) {
  std::string b;
  if (!source.Read(0, static_cast<std::size_t>(isBinary ? kBinaryHeaderSize : kTextHeaderSize), b))
    return kTotalizeBadFile;
  slot.HeaderText1 = TextAt(b, 0, 34);
  slot.HeaderText2 = TextAt(b, 34, 34);
  slot.HeaderText3 = TextAt(b, 68, 20);
  slot.VersionText = TextAt(b, 88, 14);
  int channels = 0;
  int groups = 0;
  if (isBinary) {
    channels = U8At(b, 103);
    groups = U8At(b, 107);
    if (groups == 0) groups = 4;
  } else {
    if (U8At(b, 135) != 10) return kTotalizeBadFile;
    const auto n = IntegerAt(b, 102, 2);
    if (!n) return kTotalizeBadFile;
    channels = *n;
    const auto g = IntegerAt(b, 114, 2);
    groups = g ? *g : 4;
  }
  slot.ChannelCount = static_cast<std::int16_t>(channels);
  slot.GroupCount = static_cast<std::int16_t>(groups);
  return kTotalizeValid;
}

int ReadTotalizeChannels(const ByteSource &source, TotalizeWindow &slot,
                         const std::string &decimalChar) {
  if (slot.ChannelCount == 0) return kTotalizeNoChannels;
  if (slot.ChannelCount < 0) return kTotalizeBadFile;
  const bool binary = IsBinary(slot);
  const std::int64_t entry = binary ? kBinaryChannelSize : kTextChannelSize;
  std::string b;
  if (!source.Read(ChannelTableStart(slot), static_cast<std::size_t>(entry * slot.ChannelCount), b))
    return kTotalizeBadFile;
  slot.Channels.assign(static_cast<std::size_t>(slot.ChannelCount), TotalizeChannel{});
  for (std::size_t i = 0; i < slot.Channels.size(); ++i) {
    TotalizeChannel &c = slot.Channels[i];
    const std::size_t at = i * static_cast<std::size_t>(entry);
    if (binary) {
      c.ChannelNo = U8At(b, at);
      c.Tag = TextAt(b, at + 1, 8);
      c.Setting1 = U8At(b, at + 9);
      c.ActionType = U8At(b, at + 10);
      c.Unit = TextAt(b, at + 11, 7);
      c.Decimals = U8At(b, at + 20);
      c.ScaleText = FormatTotalizeValue(I16At(b, at + 18), c.Decimals, decimalChar);
    } else {
      const auto no = IntegerAt(b, at + 2, 2);
      const auto setting = IntegerAt(b, at + 14, 2);
      const auto action = IntegerAt(b, at + 17, 2);
      const auto decimals = IntegerAt(b, at + 36, 1);
      if (!no || !setting || !action || !decimals) return kTotalizeBadFile;
      c.ChannelNo = static_cast<std::int16_t>(*no);
      c.Tag = TextAt(b, at + 5, 8);
      c.Setting1 = static_cast<std::int16_t>(*setting);
      c.ActionType = static_cast<std::int16_t>(*action);
      c.Unit = TextAt(b, at + 20, 7);
      const std::string scale = TextAt(b, at + 28, 7);
      const std::size_t first = scale.find_first_not_of(' ');
      c.ScaleText = first == std::string::npos
                        ? std::string()
                        : scale.substr(first, scale.find_last_not_of(' ') - first + 1);
      c.Decimals = static_cast<std::int16_t>(*decimals);
    }
  }
  return kTotalizeValid;
}

int ReadTotalizeGroups(const ByteSource &source, TotalizeWindow &slot) {
  const int count = slot.GroupCount;
  // The table in memory has eight places: a count above that cannot be held.
  if (count > static_cast<int>(slot.Groups.size())) return kTotalizeBadFile;
  slot.Groups = {};
  if (count <= 0) return kTotalizeValid;
  const bool binary = IsBinary(slot);
  const std::int64_t entry = binary ? kBinaryGroupSize : kTextGroupSize;
  std::string b;
  if (!source.Read(GroupTableStart(slot), static_cast<std::size_t>(entry * count), b))
    return kTotalizeBadFile;
  for (int g = 0; g < count; ++g) {
    TotalizeGroup &group = slot.Groups[static_cast<std::size_t>(g)];
    const std::size_t at = static_cast<std::size_t>(g) * static_cast<std::size_t>(entry);
    group.GroupName = TextAt(b, at + (binary ? 0 : 3), 16);
    for (std::size_t k = 0; k < group.Members.size(); ++k) {
      int member = 0;
      if (binary) {
        member = U8At(b, at + 16 + k);
      } else {
        const auto value = IntegerAt(b, at + 20 + 3 * k, 2);
        if (!value) return kTotalizeBadFile;
        member = *value;
      }
      group.Members[k] = static_cast<std::int16_t>(member);
      if (member == 0) continue;
      if (!FindChannelByNo(slot, member)) return kTotalizeBadMember;
      ++group.MemberCount;
    }
  }
  return kTotalizeValid;
}

int CheckTotalizeSize(const ByteSource &source, TotalizeWindow &slot) {
  const bool binary = IsBinary(slot);
  const std::int64_t n = slot.ChannelCount;
  const std::int64_t tables = TotalizeGroupTableSize(slot.GroupCount);
  slot.RecordLength = static_cast<std::int32_t>(binary ? 8 + 4 * n : 41 + 12 * n);
  slot.DataStart =
      static_cast<std::int32_t>(binary ? 110 + kBinaryChannelSize * n + kBinaryGroupSize * tables
                                       : 136 + kTextChannelSize * n + kTextGroupSize * tables);
  if (binary) {
    std::string mark;
    if (!source.Read(slot.DataStart - 2, 2, mark) || U16At(mark, 0) != 0xFFFF)
      return kTotalizeBadFile;
  }
  if (slot.FileLength == slot.DataStart) return kTotalizeNoData;
  const std::int32_t data = slot.FileLength - slot.DataStart;
  if (data % slot.RecordLength != 0) return kTotalizeBadLength;
  slot.RecordCount = data / slot.RecordLength;
  slot.CurrentPage = 1;
  slot.PageCount =
      slot.RecordCount / kTotalizePageRows + (slot.RecordCount % kTotalizePageRows != 0 ? 1 : 0);
  return kTotalizeValid;
}

namespace {

// The bytes of the current page read in one go, and its rows made empty for
// them; false when the page does not lie in the file or the channel table is short.
bool StartPage(const ByteSource &source, TotalizeWindow &slot, const TotalizeProgress &progress,
               std::int32_t &rows, std::string &bytes) {
  std::int64_t offset = 0;
  if (!PagePlace(slot, rows, offset)) return false;
  if (slot.Channels.size() != static_cast<std::size_t>(slot.ChannelCount)) return false;
  const auto length = static_cast<std::size_t>(slot.RecordLength);
  if (!source.Read(offset, length * static_cast<std::size_t>(rows), bytes)) return false;
  slot.Rows.assign(static_cast<std::size_t>(rows), TotalizeRow{});
  slot.PageRows = 0;
  if (progress) progress(0, rows);
  return true;
}

}  // namespace

bool ReadTotalizePageBinary(const ByteSource &source, TotalizeWindow &slot,
                            const std::string &decimalChar, const TotalizeProgress &progress) {
  std::int32_t rows = 0;
  std::string b;
  if (!StartPage(source, slot, progress, rows, b)) return false;
  const auto length = static_cast<std::size_t>(slot.RecordLength);
  for (std::size_t r = 0; r < slot.Rows.size(); ++r) {
    TotalizeRow &row = slot.Rows[r];
    const std::size_t at = r * length;
    row.StartText = RecordTimeText(I32At(b, at));
    row.EndText = RecordTimeText(I32At(b, at + 4));
    row.Values.resize(slot.Channels.size());
    for (std::size_t i = 0; i < slot.Channels.size(); ++i)
      row.Values[i] =
          FormatTotalizeValue(I32At(b, at + 8 + 4 * i), slot.Channels[i].Decimals, decimalChar);
    if (progress) progress(static_cast<int>(r) + 1, rows);
  }
  slot.PageRows = static_cast<std::int16_t>(rows);
  return true;
}

bool ReadTotalizePageText(const ByteSource &source, TotalizeWindow &slot,
                          const std::string &decimalChar, const TotalizeProgress &progress) {
  std::int32_t rows = 0;
  std::string b;
  if (!StartPage(source, slot, progress, rows, b)) return false;
  const auto length = static_cast<std::size_t>(slot.RecordLength);
  for (std::size_t r = 0; r < slot.Rows.size(); ++r) {
    TotalizeRow &row = slot.Rows[r];
    const std::string_view line = std::string_view(b).substr(r * length, length);
    const auto start = ParseRecordTime(line.substr(0, 19));
    const auto end = ParseRecordTime(line.substr(20, 19));
    if (!start || !end) return false;
    row.StartText = RecordTimeText(*start);
    row.EndText = RecordTimeText(*end);
    row.Values.resize(slot.Channels.size());
    for (std::size_t i = 0; i < slot.Channels.size(); ++i)
      row.Values[i] = TextValue(line.substr(40 + 12 * i, kTextValueWidth),
                                slot.Channels[i].Decimals, decimalChar);
    if (progress) progress(static_cast<int>(r) + 1, rows);
  }
  slot.PageRows = static_cast<std::int16_t>(rows);
  return true;
}

bool ReadTotalizePage(TotalizeWindow &slot, const std::string &decimalChar,
                      const TotalizeProgress &progress) {
  FileSource source(slot.Path);
  if (!source.IsOpen()) return false;
  return IsBinary(slot) ? ReadTotalizePageBinary(source, slot, decimalChar, progress)
                        : ReadTotalizePageText(source, slot, decimalChar, progress);
}

int OpenTotalizeBinary(SharedState &state, const TotalizeProgress &progress) {
  return RunOpenSequence(state, true, progress);
}

int OpenTotalizeText(SharedState &state, const TotalizeProgress &progress) {
  return RunOpenSequence(state, false, progress);
}

TotalizeOpenResult OpenTotalizeFile(SharedState &state, const std::string &path,
                                    const TotalizeProgress &progress) {
  TotalizeOpenResult result;
  const int kind = TotalizeKindOfPath(path);
  if (kind == 0) {
    result.MessageId = kTotalizeWrongNameMessage;
    return result;
  }
  const int n = FindFreeTotalizeSlot(state);
  if (n == 0) {
    result.MessageId = kTotalizeNoSlotMessage;
    return result;
  }
  TotalizeWindow &slot = state.Totalize(n);
  slot = TotalizeWindow{};
  slot.Path = path;
  slot.Kind = static_cast<std::int16_t>(kind);
  std::string mark;
  {
    FileSource source(path);
    const std::int64_t length = source.Length();
    if (!source.IsOpen() || length > std::numeric_limits<std::int32_t>::max() ||
        !source.Read(102, 1, mark)) {
      result.ErrorCode = kTotalizeBadFile;
      result.MessageId = TotalizeErrorMessageId(kTotalizeBadFile);
      return result;
    }
    slot.FileLength = static_cast<std::int32_t>(length);
  }
  result.ErrorCode =
      mark[0] == 0 ? OpenTotalizeBinary(state, progress) : OpenTotalizeText(state, progress);
  if (result.ErrorCode != kTotalizeValid) {
    result.MessageId = TotalizeErrorMessageId(result.ErrorCode);
    return result;
  }
  result.Slot = n;
  return result;
}

}  // namespace recscope
