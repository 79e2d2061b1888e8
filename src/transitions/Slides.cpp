#include "transitions/Slides.h"

#include "transitions/SlideTable.h"

namespace kirrel::transitions {

namespace {
using Family = MoveFamily<MoveKind::Slide, kSlides>;
} // namespace

void runSlideTo(int member, int start, int end, const std::string& source) {
    Family::to(member, start, end, source);
}
void runSlideFrom(int member, int start, int end, const std::string& source) {
    Family::from(member, start, end, source);
}
void runSlideToStored(int member, int start, int slot) {
    Family::toStored(member, start, slot);
}
void runSlideFromStored(int member, int end, int slot) {
    Family::fromStored(member, end, slot);
}

} // namespace kirrel::transitions
