#pragma once
// Pushes: both pictures move as one strip, the arriving one pushing the other out of the frame.
// Four members (by the index of the dialog's variant list), each with its To and From runs.

#include <string>

namespace kirrel::transitions {

// The dialog's variant list, in order.
inline constexpr const char* kPushVariants[] = {"Push To Left", "Push To Right", "Push Up", "Push Down"};

// The runs by variant index; the stored ones splice with slot 0..3.
void runPushTo(int member, int start, int end, const std::string& source);
void runPushFrom(int member, int start, int end, const std::string& source);
void runPushToStored(int member, int start, int slot);
void runPushFromStored(int member, int end, int slot);

// The modules by their own names.
inline void Push2LeftTo(int s, int e, const std::string& src) {
    runPushTo(0, s, e, src);
}
inline void Push2LeftFrom(int s, int e, const std::string& src) {
    runPushFrom(0, s, e, src);
}
inline void Push2RightTo(int s, int e, const std::string& src) {
    runPushTo(1, s, e, src);
}
inline void Push2RightFrom(int s, int e, const std::string& src) {
    runPushFrom(1, s, e, src);
}
inline void PushUpwardTo(int s, int e, const std::string& src) {
    runPushTo(2, s, e, src);
}
inline void PushUpwardFrom(int s, int e, const std::string& src) {
    runPushFrom(2, s, e, src);
}
inline void PushDownwardTo(int s, int e, const std::string& src) {
    runPushTo(3, s, e, src);
}
inline void PushDownwardFrom(int s, int e, const std::string& src) {
    runPushFrom(3, s, e, src);
}
inline void Push2LeftToStored(int s, int slot) {
    runPushToStored(0, s, slot);
}
inline void Push2LeftFromStored(int e, int slot) {
    runPushFromStored(0, e, slot);
}
inline void Push2RightToStored(int s, int slot) {
    runPushToStored(1, s, slot);
}
inline void Push2RightFromStored(int e, int slot) {
    runPushFromStored(1, e, slot);
}
inline void PushUpwardToStored(int s, int slot) {
    runPushToStored(2, s, slot);
}
inline void PushUpwardFromStored(int e, int slot) {
    runPushFromStored(2, e, slot);
}
inline void PushDownwardToStored(int s, int slot) {
    runPushToStored(3, s, slot);
}
inline void PushDownwardFromStored(int e, int slot) {
    runPushFromStored(3, e, slot);
}

} // namespace kirrel::transitions
