#pragma once
// Stretch and Squeeze: one picture scaled over or against the other. Four procedures (Stretch Over,
// Stretch Away, Stretch Center, Squeeze) each serve several of the dialog's eighteen options through a
// selector, and each has a To and a From stored twin. The base procedures run both directions and test
// the direction themselves; they take only the two sources read once before the loop ("Swap",
// "Primary Color").
//
// Every frame holds three pictures: P1 the frame, P2 the source, P3 the source as it was read, from
// which P2 is restored before each frame's call.

#include "transitions/PlainRun.h"

#include <array>
#include <string>

namespace kirrel::transitions {

enum class StretchKind { Over, Away, Center, Squeeze };

struct StretchOption {
    const char* text;
    StretchKind kind;
    int selector;
};

// The dialog's option list, in order, with the procedure and selector each option runs.
inline constexpr std::array<StretchOption, 18> kStretchOptions = {{
    {"Stretch Over From Left", StretchKind::Over, 1},
    {"Stretch Over From Right", StretchKind::Over, 2},
    {"Stretch Over From Top", StretchKind::Over, 3},
    {"Stretch Over From Bottom", StretchKind::Over, 4},
    {"Stretch Horizontally From Center", StretchKind::Center, 1},
    {"Stretch Vertically From Center", StretchKind::Center, 2},
    {"Stretch Away To Left", StretchKind::Away, 1},
    {"Stretch Away To Right", StretchKind::Away, 2},
    {"Stretch Away To Top", StretchKind::Away, 3},
    {"Stretch Away To Bottom", StretchKind::Away, 4},
    {"Stretch Horizontally To Center", StretchKind::Center, 3},
    {"Stretch Vertically To Center", StretchKind::Center, 4},
    {"Squeeze To Left", StretchKind::Squeeze, 1},
    {"Squeeze To Right", StretchKind::Squeeze, 2},
    {"Squeeze To Top", StretchKind::Squeeze, 3},
    {"Squeeze To Bottom", StretchKind::Squeeze, 4},
    {"Squeeze Horizontally To Center", StretchKind::Squeeze, 5},
    {"Squeeze Vertically To Center", StretchKind::Squeeze, 6},
}};

// The base procedures: frames Start..End, every one of them made. Selectors 1..4 (Squeeze 1..6); any
// other selector is refused with an error before anything is read.
void StretchOver(int start, int end, const std::string& source, int selector, Direction direction);
void StretchAway(int start, int end, const std::string& source, int selector, Direction direction);
void StretchCenter(int start, int end, const std::string& source, int selector, Direction direction);
void Squeeze(int start, int end, const std::string& source, int selector, Direction direction);

// The stored twins: the splice with slot 0..3, the slot's frames brought to the run's size.
void StretchOverToStored(int start, int slot, int selector);
void StretchOverFromStored(int end, int slot, int selector);
void StretchAwayToStored(int start, int slot, int selector);
void StretchAwayFromStored(int end, int slot, int selector);
void StretchCenterToStored(int start, int slot, int selector);
void StretchCenterFromStored(int end, int slot, int selector);
void SqueezeToStored(int start, int slot, int selector);
void SqueezeFromStored(int end, int slot, int selector);

// The dialog's four shapes by option index: the base procedure for both plain directions, the twin by
// direction for a stored source.
void runStretchTo(int option, int start, int end, const std::string& source);
void runStretchFrom(int option, int start, int end, const std::string& source);
void runStretchToStored(int option, int start, int slot);
void runStretchFromStored(int option, int end, int slot);

} // namespace kirrel::transitions
