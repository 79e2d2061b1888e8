#pragma once
// The pattern transitions: blinds, diamonds, iris, lines, X and circles. Apart from the blinds, whose
// slats the library draws, each member computes a grey mask once per run (PatternMasks.h) and every
// frame lets one mixing call cut it at a level that rises or falls with the frame:
//   L_up   = round((i - Start) / Span * 255)
//   L_down = round((End - i) / Span * 255)
//   L_inv  = round(255 - (i - Start) / Span * 255)
// These runs take no lock and show no progress; they refresh the host's display when done.

#include <string>

namespace kirrel::transitions {

enum class PatternFamily { Blinds, Diamonds, Iris, Lines, X, Circles };

// The dialogs' variant lists, in order.
inline constexpr const char* kBlindsVariants[] = {"Horizontal Blinds", "Vertical Blinds"};
inline constexpr const char* kDiamondsVariants[] = {"Diamond Open", "Diamond Close"};
inline constexpr const char* kIrisVariants[] = {"Iris Open", "Iris Close"};
inline constexpr const char* kLinesVariants[] = {"Lines to Left", "Lines to Right", "Lines Up", "Lines Down"};
inline constexpr const char* kXVariants[] = {"X Open", "X Close"};
inline constexpr const char* kCirclesVariants[] = {"Circle Open", "Circle Close"};

// A member by its family and list index: the To and From runs over Start..End with a plain source,
// and the splices with stored animation `slot` (0..3).
void runPatternTo(PatternFamily family, int variant, int start, int end, const std::string& source);
void runPatternFrom(PatternFamily family, int variant, int start, int end, const std::string& source);
void runPatternToStored(PatternFamily family, int variant, int start, int slot);
void runPatternFromStored(PatternFamily family, int variant, int end, int slot);

} // namespace kirrel::transitions
