#include "transitions/Doors.h"

#include "transitions/OpeningRun.h"

namespace kirrel::transitions {

namespace {

// Rows by variant: Horizontal Door Open, Horizontal Door Close, Vertical Door Open, Vertical Door
// Close. The opening To run swings the frame's leaves open onto the source, the opening From run
// shows the source at Start and swings its leaves open onto the frame. The closing runs bring the
// arriving picture's leaves in from the edges and put that picture whole on frame End, whatever the
// leaf arithmetic gave there.
constexpr OpeningModule kOpenTo = {true,        Reach::Opening,   Frames::AfterStart,
                                   Guard::None, EndPicture::None, MixCode::Guarded};
constexpr OpeningModule kOpenFrom = {
    false, Reach::Opening, Frames::Whole, Guard::AfterStart, EndPicture::SourceAtStart, MixCode::Guarded};
constexpr OpeningModule kCloseTo = {
    false, Reach::Closing, Frames::Whole, Guard::AfterStart, EndPicture::SourceAtEnd, MixCode::Guarded};
constexpr OpeningModule kCloseFrom = {
    true, Reach::Closing, Frames::Whole, Guard::AfterStart, EndPicture::FrameAtEnd, MixCode::Guarded};

constexpr std::array<OpeningMember, 4> kDoors = {{
    {Opening::HDoor, kOpenTo, kOpenFrom},
    {Opening::HDoor, kCloseTo, kCloseFrom},
    {Opening::VDoor, kOpenTo, kOpenFrom},
    {Opening::VDoor, kCloseTo, kCloseFrom},
}};

using Family = OpeningFamily<kDoors>;

} // namespace

void runDoorTo(int member, int start, int end, const std::string& source) {
    Family::to(member, start, end, source);
}
void runDoorFrom(int member, int start, int end, const std::string& source) {
    Family::from(member, start, end, source);
}
void runDoorToStored(int member, int start, int slot) {
    Family::toStored(member, start, slot);
}
void runDoorFromStored(int member, int end, int slot) {
    Family::fromStored(member, end, slot);
}

} // namespace kirrel::transitions
