#include "transitions/Pushes.h"

#include "transitions/MoveRun.h"

namespace kirrel::transitions {

namespace {

// Rows by variant: Left, Right, Up, Down. The horizontal pushes copy the source onto frame End of
// their To runs and stand on whole pictures at the ends of their From runs, which stop at End - 1;
// the upward pair runs Start..End on the falling offset. The downward pair is the odd one: its To run
// takes mode 4 and its From run mode 3, and the From run goes Start..End while the To run starts at
// Start + 1.
constexpr std::array<MoveMember, 4> kPushes = {{
    {{false, Offset::Rising, 2, Frames::AfterStart, EndState::SourceAtEnd},
     {true, Offset::Rising, 2, Frames::BeforeEnd, EndState::WholeAtEnds}},
    {{true, Offset::Rising, 1, Frames::AfterStart, EndState::SourceAtEnd},
     {false, Offset::Rising, 1, Frames::BeforeEnd, EndState::WholeAtEnds}},
    {{false, Offset::Falling, 3, Frames::Whole, EndState::Call},
     {true, Offset::Falling, 3, Frames::Whole, EndState::Call}},
    {{true, Offset::Rising, 4, Frames::AfterStart, EndState::Call},
     {false, Offset::Rising, 3, Frames::Whole, EndState::Call}},
}};

using Pushes = MoveFamily<MoveKind::Push, kPushes>;

} // namespace

void runPushTo(int member, int start, int end, const std::string& source) {
    Pushes::to(member, start, end, source);
}
void runPushFrom(int member, int start, int end, const std::string& source) {
    Pushes::from(member, start, end, source);
}
void runPushToStored(int member, int start, int slot) {
    Pushes::toStored(member, start, slot);
}
void runPushFromStored(int member, int end, int slot) {
    Pushes::fromStored(member, end, slot);
}

} // namespace kirrel::transitions
