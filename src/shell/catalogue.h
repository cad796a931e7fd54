#pragma once
// The message catalogue: every text the operator sees, and a few layout numbers
// held as text, keyed by a 16-bit id.
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace recscope {

struct CatalogueRow {
  std::uint16_t id;
  const char *text;  // UTF-8, stored as it stands: blanks and half-width kana kept
};

// All rows, ordered by id.
std::span<const CatalogueRow> CatalogueRows();

// The text of a row; an id that is not in the catalogue gives an empty text.
std::string GetMessageText(int id);

// Replaces every occurrence of `word` (written with its @ signs, "@FileName@")
// by `value`.
std::string ReplacePlaceholder(std::string text, std::string_view word, std::string_view value);

// GetMessageText with one placeholder filled in.
std::string GetMessageText(int id, std::string_view word, std::string_view value);

// Placeholder words with their @ signs ("@FileName@") and the values they take.
using MessagePlaceholders = std::vector<std::pair<std::string, std::string>>;

// GetMessageText with every placeholder filled in, in order.
std::string GetMessageText(int id, const MessagePlaceholders &placeholders);

// The row's text as a number (for the rows that hold layout values), or
// `fallback` when it is no number.
double MessageNumber(int id, double fallback = 0.0);

}  // namespace recscope
