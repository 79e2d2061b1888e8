#include "transitions/Boxes.h"

#include "transitions/OpeningRun.h"

namespace kirrel::transitions {

namespace {

// Rows by variant: Box Open, Box Close. Only the opening From run is guarded (frame Start stays all
// source) and calls through one mix; the other three make one mix per source. The closing runs have
// no guard, so their last frame holds the box the last size gives: at most a column of a pixel or
// two at the centre.
constexpr std::array<OpeningMember, 2> kBoxes = {{
    {Opening::Box,
     {false, Reach::Opening, Frames::AfterStart, Guard::None, EndPicture::None, MixCode::PerSource},
     {true, Reach::Opening, Frames::Whole, Guard::AfterStart, EndPicture::None, MixCode::Guarded}},
    {Opening::Box,
     {true, Reach::Closing, Frames::Whole, Guard::None, EndPicture::None, MixCode::PerSource},
     {false, Reach::Closing, Frames::Whole, Guard::None, EndPicture::None, MixCode::PerSource}},
}};

using Family = OpeningFamily<kBoxes>;

} // namespace

void runBoxTo(int member, int start, int end, const std::string& source) {
    Family::to(member, start, end, source);
}
void runBoxFrom(int member, int start, int end, const std::string& source) {
    Family::from(member, start, end, source);
}
void runBoxToStored(int member, int start, int slot) {
    Family::toStored(member, start, slot);
}
void runBoxFromStored(int member, int end, int slot) {
    Family::fromStored(member, end, slot);
}

} // namespace kirrel::transitions
