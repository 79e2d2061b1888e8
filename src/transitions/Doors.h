#pragma once
// Doors: a pair of leaves that open from the middle to the edges or close from the edges to the middle.
// Four members (by the index of the dialog's variant list), each with its To and From runs and
// their stored twins.

#include <string>

namespace kirrel::transitions {

// The dialog's variant list, in order.
inline constexpr const char* kDoorsVariants[] = {"Horizontal Door Open", "Horizontal Door Close",
                                                 "Vertical Door Open", "Vertical Door Close"};

// The runs by variant index; the stored ones splice with slot 0..3.
void runDoorTo(int member, int start, int end, const std::string& source);
void runDoorFrom(int member, int start, int end, const std::string& source);
void runDoorToStored(int member, int start, int slot);
void runDoorFromStored(int member, int end, int slot);

// The modules by their own names.
inline void HDoorOpenTo(int s, int e, const std::string& src) {
    runDoorTo(0, s, e, src);
}
inline void HDoorOpenFrom(int s, int e, const std::string& src) {
    runDoorFrom(0, s, e, src);
}
inline void HDoorOpen2Stored(int s, int slot) {
    runDoorToStored(0, s, slot);
}
inline void HDoorOpenFromStored(int e, int slot) {
    runDoorFromStored(0, e, slot);
}
inline void HDoorCloseTo(int s, int e, const std::string& src) {
    runDoorTo(1, s, e, src);
}
inline void HDoorCloseFrom(int s, int e, const std::string& src) {
    runDoorFrom(1, s, e, src);
}
inline void HDoorClose2Stored(int s, int slot) {
    runDoorToStored(1, s, slot);
}
inline void HDoorCloseFromStored(int e, int slot) {
    runDoorFromStored(1, e, slot);
}
inline void VDoorOpenTo(int s, int e, const std::string& src) {
    runDoorTo(2, s, e, src);
}
inline void VDoorOpenFrom(int s, int e, const std::string& src) {
    runDoorFrom(2, s, e, src);
}
inline void VDoorOpen2Stored(int s, int slot) {
    runDoorToStored(2, s, slot);
}
inline void VDoorOpenFromStored(int e, int slot) {
    runDoorFromStored(2, e, slot);
}
inline void VDoorCloseTo(int s, int e, const std::string& src) {
    runDoorTo(3, s, e, src);
}
inline void VDoorCloseFrom(int s, int e, const std::string& src) {
    runDoorFrom(3, s, e, src);
}
inline void VDoorClose2Stored(int s, int slot) {
    runDoorToStored(3, s, slot);
}
inline void VDoorCloseFromStored(int e, int slot) {
    runDoorFromStored(3, e, slot);
}

} // namespace kirrel::transitions
