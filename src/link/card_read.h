#pragma once
// Reading files off the recorder's memory card over the command driver. The
// card is reached through two small register windows of the map: group "Q  "
// takes a command ("INDX", "FILE", "CNTL") and gives its status back in the
// "CNTL" word, group "W  " ("WBUF", input registers) holds what was asked for.
//
// The recorder's side of the protocol, as this program uses it:
//   CNTL 1, INDX i: the list from the card's i-th file (from 0); the window's
//     word 0 is the number of files from i to the end, the entries of 8 words
//     follow from word 1 (name 4 words, time 2 words and size 2 words, each pair
//     low word first).
//   CNTL 2, FILE n, INDX 0: open file n (its number in the list, from 1) and
//     put the summary into the window: head length, records (2 words), record
//     length, event bytes (2 words). INDX b from 1: block b of the head (1000
//     bytes a block).
//   CNTL 4, INDX r: the block of measurement records from record r (from 0).
//   CNTL 5, INDX e: the block of event data from byte e (from 0).
// While a command is busy the status word holds its code; then 0 when done,
// 254 no such file, 255 no card.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "link/command_driver.h"
#include "shell/init_set.h"

namespace recscope {

// Messages of the card read.
inline constexpr int kCardCommunicationError = 18900;  // "通信エラー"
inline constexpr int kCardNoCard = 18901;              // "CFカードがありません"
inline constexpr int kCardPhaseHead = 18902;           // "ヘッダ読み出し"
inline constexpr int kCardPhaseData = 18903;           // "測定データ読み出し"
inline constexpr int kCardPhaseEvents = 18904;         // "イベントデータ読み出し"
inline constexpr int kCardNoFile = 18905;              // "ファイルがありません"

// Command codes of "CNTL" and the statuses read back.
inline constexpr int kCardList = 1;
inline constexpr int kCardOpen = 2;
inline constexpr int kCardMeasurement = 4;
inline constexpr int kCardEvents = 5;
inline constexpr int kCardStatusDone = 0;
inline constexpr int kCardStatusNoFile = 254;
inline constexpr int kCardStatusNoCard = 255;

inline constexpr int kCardPageRows = 10;
inline constexpr int kCardBlockBytes = 1000;
inline constexpr int kCardReadWords = 50;
inline constexpr int kCardProgressLimit = 30000;

// The size as the list shows it: 1 to 3 digits the number and "B", 4 to 6
// digits all but the last 3 and "KB", more all but the last 6 and "MB".
std::string CardSizeText(std::uint32_t size);

// A 32-bit index as the two words that go out, low word first, each in its
// signed 16-bit form.
struct CardIndexWords {
  std::int32_t low = 0;
  std::int32_t high = 0;
};
CardIndexWords SplitCardIndex(std::uint32_t index);

struct CardEntry {
  int Number = 0;  // the "FILE" number: its place on the card, from 1
  std::string Name;
  std::uint32_t Time = 0;
  std::uint32_t Size = 0;
  std::string TimeText;
  std::string SizeText;
};

// The entries read so far, the page shown and the files still on the card.
struct CardList {
  std::vector<CardEntry> Entries;
  int Position = 0;   // list position of the first row shown
  int Remaining = 0;  // files on the card beyond the entries read
  bool HasNextPage() const {
    return Position + kCardPageRows < static_cast<int>(Entries.size()) || Remaining > 0;
  }
  bool HasEarlierPage() const { return Position > 0; }
};

// The registers of the card by the map.
struct CardRegisters {
  std::int32_t CommandAddress = 0;  // zero-based, holding registers
  int CommandWords = 0;
  int IndexOffset = 0;
  int FileOffset = 0;
  int ControlOffset = 0;
  std::int32_t WindowAddress = 0;  // zero-based, input registers
};
// False when the map lacks "Q  " or "W  ".
bool CardLookup(const RegisterMap &map, CardRegisters &registers);

enum class CardResult {
  kDone,
  kCancelled,      // the run flag was cleared
  kRequestFailed,  // "通信エラー"
  kNoCard,         // status 255
  kNoFile,         // status 254
  kAborted,        // Yes to the question after a failed poll of the head
  kSixByteWait,    // the batch command's bound on the six-byte wait ran out
};
// The message a result shows, or 0 for none.
int CardResultMessage(CardResult result);

struct CardHooks {
  // The run flag: false once the operator cancelled.
  std::function<bool()> Running;
  // A failed request in the head's poll: the error and "処理を中止しますか？";
  // 6 for Yes.
  std::function<int(int code)> ComErrorDialog;
  // The phase (18902, 18903, 18904) and the progress bar.
  std::function<void(int phaseMessage)> Phase;
  std::function<void(int value, int maximum)> Progress;
};

// Writes one command (the index as two words, the file number, the command
// word) and polls the status until it leaves the command: kDone for 0. A failed
// poll asks the question when `askOnFailure` is set, and polls again on No.
CardResult CardCommand(CommandDriver &driver, const CardRegisters &registers, std::uint32_t index,
                       int fileNumber, int command, const CardHooks &hooks, bool askOnFailure);

// Asks the recorder for the list from the card's `startIndex`-th file and
// appends at most 10 entries; `Remaining` gets the files beyond them. Times are
// shown in the date format `dateFormatNo`.
CardResult CardReadList(CommandDriver &driver, const CardRegisters &registers, int startIndex,
                        int dateFormatNo, const CardHooks &hooks, CardList &list);

// The next page: reads the entries it needs when they are not in memory, then
// moves the page by 10. Nothing happens without a next page.
CardResult CardNextPage(CommandDriver &driver, const CardRegisters &registers, int dateFormatNo,
                        const CardHooks &hooks, CardList &list);
void CardEarlierPage(CardList &list);

// Fetches card file `fileNumber` into the measurement file and the event data
// into the alarm file. A binary head is followed by the records as they come; a
// text head by the records turned into text rows. Anything but kDone deletes
// both files.
CardResult CardFetch(CommandDriver &driver, const CardRegisters &registers, int fileNumber,
                     const std::string &measurementPath, const std::string &alarmPath,
                     const CardHooks &hooks);

// The records in the form of a text head: each binary record of the card (time,
// analog units, the DI word) as the text row of that head's channels. Empty
// when the head cannot be read.
class CardRowFormatter {
 public:
  explicit CardRowFormatter(const std::string &textHead);
  bool Valid() const { return valid_; }
  // Appends the rows of the whole records in `binary` (`recordLength` bytes
  // each) to `out`.
  void Append(const std::string &binary, int recordLength, std::string &out) const;

 private:
  struct Impl;
  std::shared_ptr<const Impl> impl_;
  bool valid_ = false;
};

}  // namespace recscope
