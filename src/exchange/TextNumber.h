#pragma once
// A text box read as a number the strict way the export dialogs read theirs: surrounding blanks
// are allowed, anything else that is not a number is the platform's "Type mismatch" (an error at
// the event boundary), and a value that does not fit is an overflow.

#include <cstdint>
#include <optional>
#include <string>

namespace kirrel::exchange {

// The number in the text, or nothing when the text is empty or not numeric.
std::optional<double> numericValue(const std::string& text);
std::int16_t textToInt16(const std::string& text);
// The same read for a field whose file format holds 0..65535 or the like: the rounded value, or
// nothing when it lies outside lo..hi (a type mismatch still throws).
std::optional<int> textInRange(const std::string& text, int lo, int hi);
// The refusal for such a field: "The delay must be a whole number from 0 to 65535."
std::string rangeRefusal(const std::string& what, int lo, int hi);

} // namespace kirrel::exchange
