#pragma once
// Fades and alpha fades: the whole picture blends into the source by a percentage. No variants: the
// direction and the source choose the run. The alpha family fades only where the frame's alpha is set.

#include <string>

namespace kirrel::transitions {

enum class FadeFamily { Plain, Alpha };

void runFadeTo(FadeFamily family, int start, int end, const std::string& source);
void runFadeFrom(FadeFamily family, int start, int end, const std::string& source);
// The splices with stored animation `slot` (0..3).
void runFadeToStored(FadeFamily family, int start, int slot);
void runFadeFromStored(FadeFamily family, int end, int slot);

inline void FadeTo(int s, int e, const std::string& src) {
    runFadeTo(FadeFamily::Plain, s, e, src);
}
inline void FadeFrom(int s, int e, const std::string& src) {
    runFadeFrom(FadeFamily::Plain, s, e, src);
}
inline void Fade2Stored(int s, int slot) {
    runFadeToStored(FadeFamily::Plain, s, slot);
}
inline void FadeFromStored(int e, int slot) {
    runFadeFromStored(FadeFamily::Plain, e, slot);
}
inline void AFadeTo(int s, int e, const std::string& src) {
    runFadeTo(FadeFamily::Alpha, s, e, src);
}
inline void AFadeFrom(int s, int e, const std::string& src) {
    runFadeFrom(FadeFamily::Alpha, s, e, src);
}
inline void AFade2Stored(int s, int slot) {
    runFadeToStored(FadeFamily::Alpha, s, slot);
}
inline void AFadeFromStored(int e, int slot) {
    runFadeFromStored(FadeFamily::Alpha, e, slot);
}

} // namespace kirrel::transitions
