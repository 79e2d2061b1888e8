#pragma once
// Alpha slides: the slides confined by the frame's alpha, which travels with the moving picture.
// The same eight members as the slides; the variant list is theirs.

#include <string>

namespace kirrel::transitions {

// The runs by variant index; the stored ones splice with slot 0..3.
void runAlphaSlideTo(int member, int start, int end, const std::string& source);
void runAlphaSlideFrom(int member, int start, int end, const std::string& source);
void runAlphaSlideToStored(int member, int start, int slot);
void runAlphaSlideFromStored(int member, int end, int slot);

// The modules by their own names.
inline void ASlideInFromLeftTo(int s, int e, const std::string& src) {
    runAlphaSlideTo(0, s, e, src);
}
inline void ASlideInFromLeftFrom(int s, int e, const std::string& src) {
    runAlphaSlideFrom(0, s, e, src);
}
inline void ASlideOut2LeftTo(int s, int e, const std::string& src) {
    runAlphaSlideTo(1, s, e, src);
}
inline void ASlideOut2LeftFrom(int s, int e, const std::string& src) {
    runAlphaSlideFrom(1, s, e, src);
}
inline void ASlideInFromRightTo(int s, int e, const std::string& src) {
    runAlphaSlideTo(2, s, e, src);
}
inline void ASlideInFromRightFrom(int s, int e, const std::string& src) {
    runAlphaSlideFrom(2, s, e, src);
}
inline void ASlideOut2RightTo(int s, int e, const std::string& src) {
    runAlphaSlideTo(3, s, e, src);
}
inline void ASlideOut2RightFrom(int s, int e, const std::string& src) {
    runAlphaSlideFrom(3, s, e, src);
}
inline void ASlideInFromTopTo(int s, int e, const std::string& src) {
    runAlphaSlideTo(4, s, e, src);
}
inline void ASlideInFromTopFrom(int s, int e, const std::string& src) {
    runAlphaSlideFrom(4, s, e, src);
}
inline void ASlideOut2TopTo(int s, int e, const std::string& src) {
    runAlphaSlideTo(5, s, e, src);
}
inline void ASlideOut2TopFrom(int s, int e, const std::string& src) {
    runAlphaSlideFrom(5, s, e, src);
}
inline void ASlideInFromBottomTo(int s, int e, const std::string& src) {
    runAlphaSlideTo(6, s, e, src);
}
inline void ASlideInFromBottomFrom(int s, int e, const std::string& src) {
    runAlphaSlideFrom(6, s, e, src);
}
inline void ASlideOut2BottomTo(int s, int e, const std::string& src) {
    runAlphaSlideTo(7, s, e, src);
}
inline void ASlideOut2BottomFrom(int s, int e, const std::string& src) {
    runAlphaSlideFrom(7, s, e, src);
}
inline void ASlideInFromLeft2Stored(int s, int slot) {
    runAlphaSlideToStored(0, s, slot);
}
inline void ASlideInFromLeftFromStored(int e, int slot) {
    runAlphaSlideFromStored(0, e, slot);
}
inline void ASlideOut2Left2Stored(int s, int slot) {
    runAlphaSlideToStored(1, s, slot);
}
inline void ASlideOut2LeftFromStored(int e, int slot) {
    runAlphaSlideFromStored(1, e, slot);
}
inline void ASlideInFromRight2Stored(int s, int slot) {
    runAlphaSlideToStored(2, s, slot);
}
inline void ASlideInFromRightFromStored(int e, int slot) {
    runAlphaSlideFromStored(2, e, slot);
}
inline void ASlideOut2Right2Stored(int s, int slot) {
    runAlphaSlideToStored(3, s, slot);
}
inline void ASlideOut2RightFromStored(int e, int slot) {
    runAlphaSlideFromStored(3, e, slot);
}
inline void ASlideInFromTop2Stored(int s, int slot) {
    runAlphaSlideToStored(4, s, slot);
}
inline void ASlideInFromTopFromStored(int e, int slot) {
    runAlphaSlideFromStored(4, e, slot);
}
inline void ASlideOut2Top2Stored(int s, int slot) {
    runAlphaSlideToStored(5, s, slot);
}
inline void ASlideOut2TopFromStored(int e, int slot) {
    runAlphaSlideFromStored(5, e, slot);
}
inline void ASlideInFromBottom2Stored(int s, int slot) {
    runAlphaSlideToStored(6, s, slot);
}
inline void ASlideInFromBottomFromStored(int e, int slot) {
    runAlphaSlideFromStored(6, e, slot);
}
inline void ASlideOut2Bottom2Stored(int s, int slot) {
    runAlphaSlideToStored(7, s, slot);
}
inline void ASlideOut2BottomFromStored(int e, int slot) {
    runAlphaSlideFromStored(7, e, slot);
}

} // namespace kirrel::transitions
