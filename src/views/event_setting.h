#pragma once
// The event setting dialog (frmEventSet) in core: which rows it walks, the texts
// it shows for a row and what it stores back. One row of one kind at a time:
// kind 0 alarms, 1 messages, 2 flags; rows are 1-based as the list's grid rows.
#include <string>

#include "shell/catalogue.h"
#include "shell/shared_state.h"

namespace recscope {

constexpr int kEventSetAlarm = 0;
constexpr int kEventSetMessage = 1;
constexpr int kEventSetFlag = 2;
// A flag's text holds at most this many bytes in code page 932.
constexpr std::size_t kFlagTextBytes = 32;

// The kind of a list tab by its caption (messages 19034, 19035, 19036); -1 for
// any other caption.
int EventSetKindOfTab(const std::string &tabCaption);

// The dialog's caption by kind: messages 19600, 19601, 19602.
std::string EventSetCaption(int kind);

// Rows of a kind in the slot: alarms, messages or flags.
int EventSetRowCount(const RecordSlot &slot, int kind);

// The action text of an alarm (messages 19017 to 19023 for codes 0 to 6, empty
// otherwise) and its state text (19024 cleared, 19025 raised).
std::string EventSetActionText(int action);
std::string EventSetStateText(int state);

// What the dialog shows for one row.
struct EventSetRow {
  std::string time;       // through the operator's date format
  std::string channel;    // alarm: channel number
  std::string alarmNo;    // alarm: alarm number
  std::string action;     // alarm: action text
  std::string state;      // alarm: state text
  std::string text;       // message or flag text
  int displayIndex = 0;   // cboDisplay: 1 "ON" when the switch is -1, else 0 "OFF"
  int positionIndex = 0;  // cboDisplayH: the display position 1..10 less one
};
EventSetRow LoadEventSetRow(const RecordSlot &slot, int kind, int row, int dateFormatNo);

// Stores the dialog's choices into a row: switch -1 for display index 1, else 0;
// display position = position index + 1; a flag takes the text too.
void StoreEventSetRow(RecordSlot &slot, int kind, int row, int displayIndex, int positionIndex,
                      const std::string &flagText);

// The test of a flag text: 0 when it fits in 32 bytes of code page 932, else
// message 20117 with @LEN@ the limit (filled into `placeholders`).
int CheckFlagText(const std::string &text, MessagePlaceholders *placeholders = nullptr);

}  // namespace recscope
