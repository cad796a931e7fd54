#include "link/card_read.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "link/register_map.h"
#include "platform/text_encoding.h"
#include "record/record_reader.h"
#include "record/record_writer.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

constexpr int kRetries = 3;
constexpr int kWaitArgument = 10;
constexpr int kAnswerYes = 6;
constexpr int kListEntryWords = 8;
constexpr int kSummaryWords = 6;

std::uint32_t Unsigned(std::int32_t word) {
  return static_cast<std::uint32_t>(word < 0 ? word + 65536 : word) & 0xFFFFu;
}

std::uint32_t Pair(const RegisterTable &table, int at) {
  return Unsigned(table[static_cast<std::size_t>(at)]) |
         (Unsigned(table[static_cast<std::size_t>(at) + 1]) << 16);
}

bool Running(const CardHooks &hooks) { return !hooks.Running || hooks.Running(); }

CardResult FromStatus(int status) {
  if (status == kCardStatusNoFile) return CardResult::kNoFile;
  if (status == kCardStatusNoCard) return CardResult::kNoCard;
  return CardResult::kDone;
}

CardResult Failed(int code) {
  return code == kComSixByteWaitBounded ? CardResult::kSixByteWait : CardResult::kRequestFailed;
}

// Writes the command block: the index, the file number and the command word,
// every other word 0.
int WriteCommand(CommandDriver &driver, const CardRegisters &r, std::uint32_t index, int fileNumber,
                 int command) {
  for (int i = 0; i < r.CommandWords; ++i) driver.Writes[static_cast<std::size_t>(i)] = 0;
  const CardIndexWords words = SplitCardIndex(index);
  driver.Writes[static_cast<std::size_t>(r.IndexOffset)] = words.low;
  driver.Writes[static_cast<std::size_t>(r.IndexOffset) + 1] = words.high;
  driver.Writes[static_cast<std::size_t>(r.FileOffset)] = fileNumber;
  driver.Writes[static_cast<std::size_t>(r.ControlOffset)] = command;
  return ComTransact(driver, kComWriteSeveral, r.CommandAddress, r.CommandWords, kRetries,
                     kWaitArgument, 8);
}

// Reads the command block back until its status word leaves `command`. The
// result is the status, or a negative driver result when a read failed (and
// the caller shows no question), or -1000 when the run flag was cleared.
constexpr int kPollCancelled = -1000;
int Poll(CommandDriver &driver, const CardRegisters &r, int command, const CardHooks &hooks,
         bool askOnFailure, bool &aborted) {
  aborted = false;
  for (;;) {
    const int result = ComTransact(driver, kComReadHolding, r.CommandAddress, r.CommandWords,
                                   kRetries, kWaitArgument, 2 * r.CommandWords + 5);
    if (result != kComSuccess) {
      if (!askOnFailure || result == kComSixByteWaitBounded || !hooks.ComErrorDialog)
        return -result;
      if (hooks.ComErrorDialog(result) == kAnswerYes) {
        aborted = true;
        return -result;
      }
      continue;
    }
    if (!Running(hooks)) return kPollCancelled;
    const int status =
        static_cast<int>(Unsigned(driver.Registers[static_cast<std::size_t>(r.ControlOffset)]));
    if (status != command) return status;
    if (driver.Line) driver.Line->Pump();
  }
}

}  // namespace

CardResult CardCommand(CommandDriver &driver, const CardRegisters &r, std::uint32_t index,
                       int fileNumber, int command, const CardHooks &hooks, bool askOnFailure) {
  const int written = WriteCommand(driver, r, index, fileNumber, command);
  if (written != kComSuccess) return Failed(written);
  if (!Running(hooks)) return CardResult::kCancelled;
  bool aborted = false;
  const int status = Poll(driver, r, command, hooks, askOnFailure, aborted);
  if (aborted) return CardResult::kAborted;
  if (status == kPollCancelled) return CardResult::kCancelled;
  if (status < 0) return Failed(-status);
  return FromStatus(status);
}

namespace {

// Reads `bytes` bytes from the window in requests of 50 words, each word low
// byte first.
CardResult ReadWindow(CommandDriver &driver, const CardRegisters &r, int bytes,
                      const CardHooks &hooks, std::string &out) {
  out.clear();
  for (int n = 0; static_cast<int>(out.size()) < bytes; ++n) {
    const int result = ComTransact(driver, kComReadInput, r.WindowAddress + kCardReadWords * n,
                                   kCardReadWords, kRetries, kWaitArgument, 2 * kCardReadWords + 5);
    if (result != kComSuccess) return Failed(result);
    for (int k = 0; k < kCardReadWords && static_cast<int>(out.size()) < bytes; ++k) {
      const std::uint32_t word = Unsigned(driver.Registers[static_cast<std::size_t>(k)]);
      out += static_cast<char>(word & 0xFF);
      if (static_cast<int>(out.size()) < bytes) out += static_cast<char>(word >> 8);
    }
    if (!Running(hooks)) return CardResult::kCancelled;
  }
  return CardResult::kDone;
}

std::string EntryName(const RegisterTable &table) {
  std::string bytes;
  for (int k = 0; k < 4; ++k) {
    const std::uint32_t word = Unsigned(table[static_cast<std::size_t>(k)]);
    for (std::uint32_t b : {word & 0xFF, word >> 8}) bytes += b == 0 ? ' ' : static_cast<char>(b);
  }
  return Cp932ToUtf8(bytes);
}

bool WriteBytes(std::FILE *file, const std::string &bytes) {
  return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

// The progress bar over `blocks` blocks: at most 30000 steps, one every
// blocks / 30000 + 1 blocks when there are more.
struct Progress {
  explicit Progress(std::int64_t blocks, const CardHooks &hooks) : hooks_(hooks) {
    every_ = blocks > kCardProgressLimit ? blocks / kCardProgressLimit + 1 : 1;
    maximum_ = static_cast<int>(std::min<std::int64_t>(blocks, kCardProgressLimit));
    if (hooks_.Progress) hooks_.Progress(0, maximum_);
  }
  void Block() {
    ++done_;
    if (done_ % every_ == 0 && hooks_.Progress)
      hooks_.Progress(static_cast<int>(std::min<std::int64_t>(done_ / every_, maximum_)), maximum_);
  }
  const CardHooks &hooks_;
  std::int64_t every_ = 1;
  std::int64_t done_ = 0;
  int maximum_ = 0;
};

}  // namespace

std::string CardSizeText(std::uint32_t size) {
  const std::string digits = std::to_string(size);
  if (digits.size() <= 3) return digits + "B";
  if (digits.size() <= 6) return digits.substr(0, digits.size() - 3) + "KB";
  return digits.substr(0, digits.size() - 6) + "MB";
}

CardIndexWords SplitCardIndex(std::uint32_t index) {
  auto signedWord = [](std::uint32_t w) {
    return static_cast<std::int32_t>(static_cast<std::int16_t>(static_cast<std::uint16_t>(w)));
  };
  return {signedWord(index & 0xFFFFu), signedWord(index >> 16)};
}

bool CardLookup(const RegisterMap &map, CardRegisters &registers) {
  PublishedGroup q;
  const std::int32_t qBase = RegisterLookup(map, "    ", "Q  ", q);
  if (qBase == 0) return false;
  registers.CommandAddress = qBase - 40001;
  registers.CommandWords = q.wordsPerRecord;
  registers.IndexOffset = RegisterLookup(map, "INDX", "Q  ", q);
  registers.FileOffset = RegisterLookup(map, "FILE", "Q  ", q);
  registers.ControlOffset = RegisterLookup(map, "CNTL", "Q  ", q);
  PublishedGroup w;
  const std::int32_t wBase = RegisterLookup(map, "    ", "W  ", w);
  if (wBase == 0) return false;
  registers.WindowAddress = wBase - 30001 + RegisterLookup(map, "WBUF", "W  ", w);
  return registers.CommandWords >
         std::max({registers.IndexOffset + 1, registers.FileOffset, registers.ControlOffset});
}

int CardResultMessage(CardResult result) {
  switch (result) {
    case CardResult::kRequestFailed:
      return kCardCommunicationError;
    case CardResult::kNoCard:
      return kCardNoCard;
    case CardResult::kNoFile:
      return kCardNoFile;
    default:
      return 0;
  }
}

CardResult CardReadList(CommandDriver &driver, const CardRegisters &r, int startIndex,
                        int dateFormatNo, const CardHooks &hooks, CardList &list) {
  const CardResult command =
      CardCommand(driver, r, static_cast<std::uint32_t>(startIndex), 0, kCardList, hooks, false);
  if (command != CardResult::kDone) return command;
  int result = ComTransact(driver, kComReadInput, r.WindowAddress, 1, kRetries, kWaitArgument, 7);
  if (result != kComSuccess) return Failed(result);
  int count = static_cast<int>(Unsigned(driver.Registers[0]));
  list.Remaining = 0;
  if (count > kCardPageRows) {
    list.Remaining = count - kCardPageRows;
    count = kCardPageRows;
  }
  for (int k = 1; k <= count; ++k) {
    result = ComTransact(driver, kComReadInput, r.WindowAddress + 1 + kListEntryWords * (k - 1),
                         kListEntryWords, kRetries, kWaitArgument, 2 * kListEntryWords + 5);
    if (result != kComSuccess) return Failed(result);
    CardEntry entry;
    entry.Number = startIndex + k;
    entry.Name = EntryName(driver.Registers);
    entry.Time = Pair(driver.Registers, 4);
    entry.Size = Pair(driver.Registers, 6);
    entry.TimeText = FormatTime(static_cast<std::int64_t>(entry.Time), dateFormatNo);
    entry.SizeText = CardSizeText(entry.Size);
    list.Entries.push_back(std::move(entry));
    if (!Running(hooks)) return CardResult::kCancelled;
  }
  return CardResult::kDone;
}

CardResult CardNextPage(CommandDriver &driver, const CardRegisters &r, int dateFormatNo,
                        const CardHooks &hooks, CardList &list) {
  if (!list.HasNextPage()) return CardResult::kDone;
  const int wanted = list.Position + 2 * kCardPageRows;
  if (static_cast<int>(list.Entries.size()) < wanted && list.Remaining > 0) {
    const CardResult read =
        CardReadList(driver, r, static_cast<int>(list.Entries.size()), dateFormatNo, hooks, list);
    if (read != CardResult::kDone) return read;
  }
  list.Position += kCardPageRows;
  return CardResult::kDone;
}

void CardEarlierPage(CardList &list) { list.Position = std::max(0, list.Position - kCardPageRows); }

struct CardRowFormatter::Impl {
  RecordFileInfo info;
};

CardRowFormatter::CardRowFormatter(const std::string &textHead) {
  auto impl = std::make_shared<Impl>();
  std::int32_t period = 1;
  // The head alone holds no data: the read stops at its data step with the
  // tables filled.
  ReadRecordBytes(textHead, impl->info, period);
  valid_ = impl->info.FileFormat != 2 && !impl->info.Channels.empty();
  impl_ = impl;
}

void CardRowFormatter::Append(const std::string &binary, int recordLength, std::string &out) const {
  if (!valid_ || recordLength <= 0) return;
  const RecordFileInfo &info = impl_->info;
  const RecordWriter writer(info, info.FileFormat);
  const int analogUnits = AnalogUnitCount(info);
  std::vector<std::int16_t> units(static_cast<std::size_t>(analogUnits));
  std::vector<std::uint8_t> states(2 * info.Dis.size());
  auto u16 = [&](std::size_t at) {
    return static_cast<std::uint16_t>(static_cast<std::uint8_t>(binary[at]) |
                                      (static_cast<std::uint8_t>(binary[at + 1]) << 8));
  };
  const std::size_t length = static_cast<std::size_t>(recordLength);
  for (std::size_t at = 0; at + length <= binary.size(); at += length) {
    const std::int32_t time =
        static_cast<std::int32_t>(u16(at) | (std::uint32_t{u16(at + 2)} << 16));
    std::size_t p = at + 4;
    for (int i = 0; i < analogUnits; ++i, p += 2)
      units[static_cast<std::size_t>(i)] =
          p + 2 <= at + length ? static_cast<std::int16_t>(u16(p)) : std::int16_t{0};
    if (!info.Dis.empty()) {
      const std::uint16_t word = p + 2 <= at + length ? u16(p) : 0;
      for (std::size_t n = 0; n < info.Dis.size(); ++n) {
        const bool two = info.Dis[n].RecordType == 0;
        states[2 * n] = (word >> (2 * n)) & 1;
        states[2 * n + 1] = two ? (word >> (2 * n + 1)) & 1 : states[2 * n];
      }
    }
    writer.AppendRecord(out, time, units, states);
  }
}

CardResult CardFetch(CommandDriver &driver, const CardRegisters &r, int fileNumber,
                     const std::string &measurementPath, const std::string &alarmPath,
                     const CardHooks &hooks) {
  std::FILE *measurement = nullptr;
  std::FILE *alarm = nullptr;
  auto finish = [&](CardResult result) {
    bool closed = true;
    if (measurement) closed = std::fclose(measurement) == 0 && closed;
    if (alarm) closed = std::fclose(alarm) == 0 && closed;
    if (result == CardResult::kDone && !closed) result = CardResult::kRequestFailed;
    if (result != CardResult::kDone) {
      std::error_code ignored;
      std::filesystem::remove(measurementPath, ignored);
      std::filesystem::remove(alarmPath, ignored);
    }
    return result;
  };

  // The head.
  if (hooks.Phase) hooks.Phase(kCardPhaseHead);
  CardResult step = CardCommand(driver, r, 0, fileNumber, kCardOpen, hooks, true);
  if (step != CardResult::kDone) return finish(step);
  int result = ComTransact(driver, kComReadInput, r.WindowAddress, kSummaryWords, kRetries,
                           kWaitArgument, 2 * kSummaryWords + 5);
  if (result != kComSuccess) return finish(Failed(result));
  const int headLength = static_cast<int>(Unsigned(driver.Registers[0]));
  const std::uint32_t records = Pair(driver.Registers, 1);
  const int recordLength = static_cast<int>(Unsigned(driver.Registers[3]));
  const std::uint32_t eventBytes = Pair(driver.Registers, 4);
  std::string head;
  for (int b = 0; b * kCardBlockBytes < headLength; ++b) {
    step = CardCommand(driver, r, static_cast<std::uint32_t>(b + 1), fileNumber, kCardOpen, hooks,
                       true);
    if (step != CardResult::kDone) return finish(step);
    std::string block;
    step = ReadWindow(driver, r, std::min(kCardBlockBytes, headLength - b * kCardBlockBytes), hooks,
                      block);
    if (step != CardResult::kDone) return finish(step);
    head += block;
  }

  measurement = std::fopen(measurementPath.c_str(), "wb");
  if (!measurement) return finish(CardResult::kRequestFailed);
  // A 0 at byte 102 marks the binary encoding: records are copied as they
  // come. Otherwise they become the text rows of the head's channels.
  const bool binary = head.size() > 102 && head[102] == 0;
  const CardRowFormatter rows(binary ? std::string() : head);
  if (!WriteBytes(measurement, head)) return finish(CardResult::kRequestFailed);

  // The measurement records, a block at a time.
  if (hooks.Phase) hooks.Phase(kCardPhaseData);
  const std::uint32_t perBlock =
      recordLength > 0 ? static_cast<std::uint32_t>(std::max(1, kCardBlockBytes / recordLength))
                       : 1;
  const std::int64_t blocks = recordLength > 0 ? (records + perBlock - 1) / perBlock : 0;
  Progress dataProgress(blocks, hooks);
  for (std::uint32_t first = 0; recordLength > 0 && first < records; first += perBlock) {
    const std::uint32_t count = std::min(perBlock, records - first);
    step = CardCommand(driver, r, first, fileNumber, kCardMeasurement, hooks, false);
    if (step == CardResult::kNoFile) step = CardResult::kNoCard;
    if (step != CardResult::kDone) return finish(step);
    std::string block;
    step = ReadWindow(driver, r, static_cast<int>(count) * recordLength, hooks, block);
    if (step != CardResult::kDone) return finish(step);
    if (binary) {
      if (!WriteBytes(measurement, block)) return finish(CardResult::kRequestFailed);
    } else {
      std::string text;
      rows.Append(block, recordLength, text);
      if (!WriteBytes(measurement, text)) return finish(CardResult::kRequestFailed);
    }
    dataProgress.Block();
  }

  // The event data, into a fresh alarm file.
  if (hooks.Phase) hooks.Phase(kCardPhaseEvents);
  alarm = std::fopen(alarmPath.c_str(), "wb");
  if (!alarm) return finish(CardResult::kRequestFailed);
  const std::int64_t eventBlocks = (eventBytes + kCardBlockBytes - 1) / kCardBlockBytes;
  Progress eventProgress(eventBlocks, hooks);
  for (std::uint32_t first = 0; first < eventBytes; first += kCardBlockBytes) {
    const int count =
        static_cast<int>(std::min<std::uint32_t>(kCardBlockBytes, eventBytes - first));
    step = CardCommand(driver, r, first, fileNumber, kCardEvents, hooks, false);
    if (step == CardResult::kNoFile) step = CardResult::kNoCard;
    if (step != CardResult::kDone) return finish(step);
    std::string block;
    step = ReadWindow(driver, r, count, hooks, block);
    if (step != CardResult::kDone) return finish(step);
    if (!WriteBytes(alarm, block)) return finish(CardResult::kRequestFailed);
    eventProgress.Block();
  }
  return finish(CardResult::kDone);
}

}  // namespace recscope
