#pragma once
// Wipes and alpha wipes: the source spreads across the picture behind a straight edge. Four members
// (by the index of the dialog's variant list), each with its To and From runs; the alpha family
// keeps the source to the opaque part of the frame.

#include <string>

namespace kirrel::transitions {

enum class WipeFamily { Plain, Alpha };

// The dialog's variant list, in order.
inline constexpr const char* kWipeVariants[] = {" Wipe To Right", " Wipe To Left", " Wipe To Bottom",
                                                " Wipe To Top"};

void runWipeTo(WipeFamily family, int member, int start, int end, const std::string& source);
void runWipeFrom(WipeFamily family, int member, int start, int end, const std::string& source);
// The splices with stored animation `slot` (0..3): ToStored from frame Start, FromStored up to End.
void runWipeToStored(WipeFamily family, int member, int start, int slot);
void runWipeFromStored(WipeFamily family, int member, int end, int slot);

// The members by their own names.
inline void Wipe2RightTo(int s, int e, const std::string& src) {
    runWipeTo(WipeFamily::Plain, 0, s, e, src);
}
inline void Wipe2LeftTo(int s, int e, const std::string& src) {
    runWipeTo(WipeFamily::Plain, 1, s, e, src);
}
inline void Wipe2BottomTo(int s, int e, const std::string& src) {
    runWipeTo(WipeFamily::Plain, 2, s, e, src);
}
inline void Wipe2TopTo(int s, int e, const std::string& src) {
    runWipeTo(WipeFamily::Plain, 3, s, e, src);
}
inline void Wipe2RightFrom(int s, int e, const std::string& src) {
    runWipeFrom(WipeFamily::Plain, 0, s, e, src);
}
inline void Wipe2LeftFrom(int s, int e, const std::string& src) {
    runWipeFrom(WipeFamily::Plain, 1, s, e, src);
}
inline void Wipe2BottomFrom(int s, int e, const std::string& src) {
    runWipeFrom(WipeFamily::Plain, 2, s, e, src);
}
inline void Wipe2TopFrom(int s, int e, const std::string& src) {
    runWipeFrom(WipeFamily::Plain, 3, s, e, src);
}
inline void AWipe2RightTo(int s, int e, const std::string& src) {
    runWipeTo(WipeFamily::Alpha, 0, s, e, src);
}
inline void AWipe2LeftTo(int s, int e, const std::string& src) {
    runWipeTo(WipeFamily::Alpha, 1, s, e, src);
}
inline void AWipe2BottomTo(int s, int e, const std::string& src) {
    runWipeTo(WipeFamily::Alpha, 2, s, e, src);
}
inline void AWipe2TopTo(int s, int e, const std::string& src) {
    runWipeTo(WipeFamily::Alpha, 3, s, e, src);
}
inline void AWipe2RightFrom(int s, int e, const std::string& src) {
    runWipeFrom(WipeFamily::Alpha, 0, s, e, src);
}
inline void AWipe2LeftFrom(int s, int e, const std::string& src) {
    runWipeFrom(WipeFamily::Alpha, 1, s, e, src);
}
inline void AWipe2BottomFrom(int s, int e, const std::string& src) {
    runWipeFrom(WipeFamily::Alpha, 2, s, e, src);
}
inline void AWipe2TopFrom(int s, int e, const std::string& src) {
    runWipeFrom(WipeFamily::Alpha, 3, s, e, src);
}

inline void Wipe2RightToStored(int s, int slot) {
    runWipeToStored(WipeFamily::Plain, 0, s, slot);
}
inline void Wipe2RightFromStored(int e, int slot) {
    runWipeFromStored(WipeFamily::Plain, 0, e, slot);
}
inline void Wipe2LeftToStored(int s, int slot) {
    runWipeToStored(WipeFamily::Plain, 1, s, slot);
}
inline void Wipe2LeftFromStored(int e, int slot) {
    runWipeFromStored(WipeFamily::Plain, 1, e, slot);
}
inline void Wipe2BottomToStored(int s, int slot) {
    runWipeToStored(WipeFamily::Plain, 2, s, slot);
}
inline void Wipe2BottomFromStored(int e, int slot) {
    runWipeFromStored(WipeFamily::Plain, 2, e, slot);
}
inline void Wipe2TopToStored(int s, int slot) {
    runWipeToStored(WipeFamily::Plain, 3, s, slot);
}
inline void Wipe2TopFromStored(int e, int slot) {
    runWipeFromStored(WipeFamily::Plain, 3, e, slot);
}
inline void AWipe2RightToStored(int s, int slot) {
    runWipeToStored(WipeFamily::Alpha, 0, s, slot);
}
inline void AWipe2RightFromStored(int e, int slot) {
    runWipeFromStored(WipeFamily::Alpha, 0, e, slot);
}
inline void AWipe2LeftToStored(int s, int slot) {
    runWipeToStored(WipeFamily::Alpha, 1, s, slot);
}
inline void AWipe2LeftFromStored(int e, int slot) {
    runWipeFromStored(WipeFamily::Alpha, 1, e, slot);
}
inline void AWipe2BottomToStored(int s, int slot) {
    runWipeToStored(WipeFamily::Alpha, 2, s, slot);
}
inline void AWipe2BottomFromStored(int e, int slot) {
    runWipeFromStored(WipeFamily::Alpha, 2, e, slot);
}
inline void AWipe2TopToStored(int s, int slot) {
    runWipeToStored(WipeFamily::Alpha, 3, s, slot);
}
inline void AWipe2TopFromStored(int e, int slot) {
    runWipeFromStored(WipeFamily::Alpha, 3, e, slot);
}

} // namespace kirrel::transitions
