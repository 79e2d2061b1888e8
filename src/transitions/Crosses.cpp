#include "transitions/Crosses.h"

#include "transitions/OpeningRun.h"

namespace kirrel::transitions {

namespace {

// Rows by variant: Cross Open, Cross Close. Every cross module calls through one guarded mix. The
// opening From run stops at End - 1, so its last frame stays as the host has it; the closing pair
// keep frame End whole, and the closing To run starts at Start + 1 like the opening one.
constexpr std::array<OpeningMember, 2> kCrosses = {{
    {Opening::Cross,
     {false, Reach::Opening, Frames::AfterStart, Guard::None, EndPicture::None, MixCode::Guarded},
     {true, Reach::Opening, Frames::BeforeEnd, Guard::AfterStart, EndPicture::None, MixCode::Guarded}},
    {Opening::Cross,
     {true, Reach::Closing, Frames::AfterStart, Guard::BeforeEnd, EndPicture::None, MixCode::Guarded},
     {false, Reach::Closing, Frames::Whole, Guard::BeforeEnd, EndPicture::None, MixCode::Guarded}},
}};

using Family = OpeningFamily<kCrosses>;

} // namespace

void runCrossTo(int member, int start, int end, const std::string& source) {
    Family::to(member, start, end, source);
}
void runCrossFrom(int member, int start, int end, const std::string& source) {
    Family::from(member, start, end, source);
}
void runCrossToStored(int member, int start, int slot) {
    Family::toStored(member, start, slot);
}
void runCrossFromStored(int member, int end, int slot) {
    Family::fromStored(member, end, slot);
}

} // namespace kirrel::transitions
