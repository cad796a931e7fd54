#pragma once
// The 42 places of the main tool bar and the dispatcher of a button's key.
#include <span>
#include <string>
#include <string_view>

namespace recscope {

constexpr int kToolButtonCount = 42;

struct ToolButtonSpec {
  int index;        // 1 to 42
  const char *key;  // nullptr for a separator
  int tipId;        // catalogue id of the tool tip, 0 for a separator
};

// All 42 places in order; the places that carry no button are separators.
std::span<const ToolButtonSpec> ToolButtonTable();

// The command a key stands for, compared exactly, or an empty text when the key
// names none. The trend button's key is spelt "Torenndo" while the dispatcher
// knows only "Torando", so that button reaches no command.
std::string DispatchToolKey(std::string_view key);

}  // namespace recscope
