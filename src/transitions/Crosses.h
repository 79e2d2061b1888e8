#pragma once
// Crosses: a band of columns and a band of rows together, opening out of the centre or closing into it.
// Two members (by the index of the dialog's variant list), each with its To and From runs and
// their stored twins.

#include <string>

namespace kirrel::transitions {

// The dialog's variant list, in order.
inline constexpr const char* kCrossesVariants[] = {"Cross Open", "Cross Close"};

// The runs by variant index; the stored ones splice with slot 0..3.
void runCrossTo(int member, int start, int end, const std::string& source);
void runCrossFrom(int member, int start, int end, const std::string& source);
void runCrossToStored(int member, int start, int slot);
void runCrossFromStored(int member, int end, int slot);

// The modules by their own names.
inline void CrossOpenTo(int s, int e, const std::string& src) {
    runCrossTo(0, s, e, src);
}
inline void CrossOpenFrom(int s, int e, const std::string& src) {
    runCrossFrom(0, s, e, src);
}
inline void CrossOpen2Stored(int s, int slot) {
    runCrossToStored(0, s, slot);
}
inline void CrossOpenFromStored(int e, int slot) {
    runCrossFromStored(0, e, slot);
}
inline void CrossCloseTo(int s, int e, const std::string& src) {
    runCrossTo(1, s, e, src);
}
inline void CrossCloseFrom(int s, int e, const std::string& src) {
    runCrossFrom(1, s, e, src);
}
inline void CrossClose2Stored(int s, int slot) {
    runCrossToStored(1, s, slot);
}
inline void CrossCloseFromStored(int e, int slot) {
    runCrossFromStored(1, e, slot);
}

} // namespace kirrel::transitions
