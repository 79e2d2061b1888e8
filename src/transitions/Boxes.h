#pragma once
// Boxes: a rectangle about the frame's centre, opening out of it or closing into it.
// Two members (by the index of the dialog's variant list), each with its To and From runs and
// their stored twins.

#include <string>

namespace kirrel::transitions {

// The dialog's variant list, in order.
inline constexpr const char* kBoxesVariants[] = {"Box Open", "Box Close"};

// The runs by variant index; the stored ones splice with slot 0..3.
void runBoxTo(int member, int start, int end, const std::string& source);
void runBoxFrom(int member, int start, int end, const std::string& source);
void runBoxToStored(int member, int start, int slot);
void runBoxFromStored(int member, int end, int slot);

// The modules by their own names.
inline void BoxOpenTo(int s, int e, const std::string& src) {
    runBoxTo(0, s, e, src);
}
inline void BoxOpenFrom(int s, int e, const std::string& src) {
    runBoxFrom(0, s, e, src);
}
inline void BoxOpen2Stored(int s, int slot) {
    runBoxToStored(0, s, slot);
}
inline void BoxOpenFromStored(int e, int slot) {
    runBoxFromStored(0, e, slot);
}
inline void BoxCloseTo(int s, int e, const std::string& src) {
    runBoxTo(1, s, e, src);
}
inline void BoxCloseFrom(int s, int e, const std::string& src) {
    runBoxFrom(1, s, e, src);
}
inline void BoxClose2Stored(int s, int slot) {
    runBoxToStored(1, s, slot);
}
inline void BoxCloseFromStored(int e, int slot) {
    runBoxFromStored(1, e, slot);
}

} // namespace kirrel::transitions
