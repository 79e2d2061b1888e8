#pragma once
// Slides: one picture moves in over the other, or out of the frame off it, while the other stands
// still. Eight members (by the index of the dialog's variant list), each with its To and From runs.

#include <string>

namespace kirrel::transitions {

// The dialog's variant list, in order.
inline constexpr const char* kSlideVariants[] = {
    "Slide In From Left", "Slide Out To Left", "Slide In From Right",  "Slide Out To Right",
    "Slide In From Top",  "Slide Out To Top",  "Slide In From Bottom", "Slide Out To Bottom"};

// The runs by variant index; the stored ones splice with slot 0..3.
void runSlideTo(int member, int start, int end, const std::string& source);
void runSlideFrom(int member, int start, int end, const std::string& source);
void runSlideToStored(int member, int start, int slot);
void runSlideFromStored(int member, int end, int slot);

// The modules by their own names.
inline void SlideInFromLeftTo(int s, int e, const std::string& src) {
    runSlideTo(0, s, e, src);
}
inline void SlideInFromLeftFrom(int s, int e, const std::string& src) {
    runSlideFrom(0, s, e, src);
}
inline void SlideOut2LeftTo(int s, int e, const std::string& src) {
    runSlideTo(1, s, e, src);
}
inline void SlideOut2LeftFrom(int s, int e, const std::string& src) {
    runSlideFrom(1, s, e, src);
}
inline void SlideInFromRightTo(int s, int e, const std::string& src) {
    runSlideTo(2, s, e, src);
}
inline void SlideInFromRightFrom(int s, int e, const std::string& src) {
    runSlideFrom(2, s, e, src);
}
inline void SlideOut2RightTo(int s, int e, const std::string& src) {
    runSlideTo(3, s, e, src);
}
inline void SlideOut2RightFrom(int s, int e, const std::string& src) {
    runSlideFrom(3, s, e, src);
}
inline void SlideInFromTopTo(int s, int e, const std::string& src) {
    runSlideTo(4, s, e, src);
}
inline void SlideInFromTopFrom(int s, int e, const std::string& src) {
    runSlideFrom(4, s, e, src);
}
inline void SlideOut2TopTo(int s, int e, const std::string& src) {
    runSlideTo(5, s, e, src);
}
inline void SlideOut2TopFrom(int s, int e, const std::string& src) {
    runSlideFrom(5, s, e, src);
}
inline void SlideInFromBottomTo(int s, int e, const std::string& src) {
    runSlideTo(6, s, e, src);
}
inline void SlideInFromBottomFrom(int s, int e, const std::string& src) {
    runSlideFrom(6, s, e, src);
}
inline void SlideOut2BottomTo(int s, int e, const std::string& src) {
    runSlideTo(7, s, e, src);
}
inline void SlideOut2BottomFrom(int s, int e, const std::string& src) {
    runSlideFrom(7, s, e, src);
}
inline void SlideInFromLeftToStored(int s, int slot) {
    runSlideToStored(0, s, slot);
}
inline void SlideInFromLeftFromStored(int e, int slot) {
    runSlideFromStored(0, e, slot);
}
inline void SlideOut2LeftToStored(int s, int slot) {
    runSlideToStored(1, s, slot);
}
inline void SlideOut2LeftFromStored(int e, int slot) {
    runSlideFromStored(1, e, slot);
}
inline void SlideInFromRightToStored(int s, int slot) {
    runSlideToStored(2, s, slot);
}
inline void SlideInFromRightFromStored(int e, int slot) {
    runSlideFromStored(2, e, slot);
}
inline void SlideOut2RightToStored(int s, int slot) {
    runSlideToStored(3, s, slot);
}
inline void SlideOut2RightFromStored(int e, int slot) {
    runSlideFromStored(3, e, slot);
}
inline void SlideInFromTopToStored(int s, int slot) {
    runSlideToStored(4, s, slot);
}
inline void SlideInFromTopFromStored(int e, int slot) {
    runSlideFromStored(4, e, slot);
}
inline void SlideOut2TopToStored(int s, int slot) {
    runSlideToStored(5, s, slot);
}
inline void SlideOut2TopFromStored(int e, int slot) {
    runSlideFromStored(5, e, slot);
}
inline void SlideInFromBottomToStored(int s, int slot) {
    runSlideToStored(6, s, slot);
}
inline void SlideInFromBottomFromStored(int e, int slot) {
    runSlideFromStored(6, e, slot);
}
inline void SlideOut2BottomToStored(int s, int slot) {
    runSlideToStored(7, s, slot);
}
inline void SlideOut2BottomFromStored(int e, int slot) {
    runSlideFromStored(7, e, slot);
}

} // namespace kirrel::transitions
