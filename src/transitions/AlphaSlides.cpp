#include "transitions/AlphaSlides.h"

#include "transitions/SlideTable.h"

namespace kirrel::transitions {

namespace {
using Family = MoveFamily<MoveKind::AlphaSlide, kAlphaSlides>;
} // namespace

void runAlphaSlideTo(int member, int start, int end, const std::string& source) {
    Family::to(member, start, end, source);
}
void runAlphaSlideFrom(int member, int start, int end, const std::string& source) {
    Family::from(member, start, end, source);
}
void runAlphaSlideToStored(int member, int start, int slot) {
    Family::toStored(member, start, slot);
}
void runAlphaSlideFromStored(int member, int end, int slot) {
    Family::fromStored(member, end, slot);
}

} // namespace kirrel::transitions
