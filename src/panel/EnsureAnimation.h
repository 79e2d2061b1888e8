#pragma once
// The offer every dialog makes when there is no animation: ask, take a frame count, make it.

#include <functional>

namespace kirrel::panel {

class FormBase;

// Asks "No Animation in memory!"; on no runs onDeclined. Otherwise takes a frame count (default
// " 30"); a count above 1 makes the animation, shows the scrubber and runs onCreated.
// The question as the panel and the transition dialogs ask it; the filter dialogs word it their own way.
inline constexpr const char* kNoAnimationQuestion =
    "\nNo Animation in memory!\n\nWould you like to create an animation now?";

void Ensure_Animation(FormBase& form, const std::function<void()>& onDeclined,
                      const std::function<void()>& onCreated, const char* question = kNoAnimationQuestion);

} // namespace kirrel::panel
