#pragma once
// Totalize files: the names that open, the two encodings (binary and fixed-width
// text), the reading of header, tables and pages into a totalize slot, and the
// open sequence with its error codes. Every size is checked before it is read.
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "record/record_reader.h"
#include "shell/shared_state.h"
#include "totalize/totalize_window.h"

namespace recscope {

// Error codes of the open sequence; the catalogue message is 11120 + code.
enum TotalizeError : int {
  kTotalizeBadFile = 0,     // header bad, end mark missing, a read that failed
  kTotalizeNoChannels = 1,  // channel count 0
  kTotalizeBadMember = 2,   // a group member that is no channel of the table
  kTotalizeBadLength = 3,   // data not a whole number of records
  kTotalizeNoData = 4,      // no data records
};
constexpr int kTotalizeValid = -1;

// Messages of the open command itself.
constexpr int kTotalizeWrongNameMessage = 11112;
constexpr int kTotalizeNoSlotMessage = 11113;
int TotalizeErrorMessageId(int errorCode);

// The kind 1 to 7 of a first letter T, D, W, M, Y, R, E (either case), else 0.
int TotalizeKindOfLetter(char letter);
// The kind of a file name: the name part behind the last "\" or "/" must start
// with one of the letters and have the extension FDT (either case); 0 otherwise.
int TotalizeKindOfPath(std::string_view path);
// The caption text of a kind and its catalogue id. The order is not the
// catalogue's: T, D and M stand for the daily, monthly and annual sheets, and
// 19200 is never used. 0 and an empty text for anything outside 1 to 7.
int TotalizeKindMessageId(int kind);
std::string TotalizeKindName(int kind);

// Group entries that a table of this group count holds: 8 for 8, else 4.
int TotalizeGroupTableSize(int groupCount);

// raw x 10^-decimals in the format of the count of decimals: 1 "########0.0",
// 2 "#######0.00", 3 "######0.000", 4 "#####0.0000", and "##########0" for 0 and
// for every count above 4 (so 5 decimals round to a whole number).
std::string FormatTotalizeValue(std::int32_t raw, int decimals,
                                const std::string &decimalChar = ".");

// Slots 1 to 16: takes the first free one, makes it current and gives its number;
// 0 when all are taken.
int FindFreeTotalizeSlot(SharedState &state);

// Reports the progress of a page read: records done out of the page's rows.
using TotalizeProgress = std::function<void(int done, int total)>;

// The read steps on one slot. Each returns kTotalizeValid or an error code.
// The header fills the texts, ChannelCount and GroupCount.
int ReadTotalizeHeader(const ByteSource &source, bool isBinary, TotalizeWindow &slot);
// ScaleText of a binary file is formatted with the machine's decimal character.
int ReadTotalizeChannels(const ByteSource &source, TotalizeWindow &slot,
                         const std::string &decimalChar = ".");
int ReadTotalizeGroups(const ByteSource &source, TotalizeWindow &slot);
// RecordLength, DataStart, the end mark (binary), RecordCount, PageCount and
// CurrentPage 1, against slot.FileLength.
int CheckTotalizeSize(const ByteSource &source, TotalizeWindow &slot);

// Reads page CurrentPage of the slot into Rows and PageRows. The two variants by
// encoding, and ReadTotalizePage, which picks one by IsBinary and opens the file
// at Path for the read alone. False when the page could not be read.
bool ReadTotalizePageBinary(const ByteSource &source, TotalizeWindow &slot,
                            const std::string &decimalChar, const TotalizeProgress &progress = {});
bool ReadTotalizePageText(const ByteSource &source, TotalizeWindow &slot,
                          const std::string &decimalChar, const TotalizeProgress &progress = {});
bool ReadTotalizePage(TotalizeWindow &slot, const std::string &decimalChar,
                      const TotalizeProgress &progress = {});

// The open sequence on the current slot of `state`: opens the file at its Path,
// reads header, channel table, group table, the size check and the first page,
// each only after the one before succeeded, and closes the file. On success the
// slot is in use and OpenAdditionCount has grown by one; on failure the slot
// stays free. Returns kTotalizeValid or the error code.
int OpenTotalizeBinary(SharedState &state, const TotalizeProgress &progress = {});
int OpenTotalizeText(SharedState &state, const TotalizeProgress &progress = {});

struct TotalizeOpenResult {
  int ErrorCode = kTotalizeValid;  // the sequence's code, or kTotalizeValid
  int MessageId = 0;               // the message to show; 0 when the file is open
  int Slot = 0;                    // the slot taken, 0 when none
  bool Ok() const { return MessageId == 0; }
};

// The open command without its dialogs: the name test (11112), a free slot
// (11113), the slot filled with Path, FileLength and Kind, the encoding from the
// byte at offset 102, then the sequence of that encoding (11120 to 11124).
// The same file may be opened again into a further slot.
TotalizeOpenResult OpenTotalizeFile(SharedState &state, const std::string &path,
                                    const TotalizeProgress &progress = {});

}  // namespace recscope
