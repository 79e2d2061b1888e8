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

} // namespace kirrel::exchange
