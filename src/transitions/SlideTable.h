#pragma once
// The slide modules as data, shared by the slides and the alpha slides.

#include "transitions/MoveRun.h"

namespace kirrel::transitions {

// Rows by variant: In From Left, Out To Left, In From Right, Out To Right, In From Top, Out To Top,
// In From Bottom, Out To Bottom. A slide in lays the source over the frame at the falling offset; a
// slide out moves the frame off the source at the rising one. The From runs stand on whole pictures
// at their ends; the horizontal ones stop at End - 1 while the vertical ones run to End. The To runs
// of the slides in from top and bottom start at Start, where the others start at Start + 1; only the
// slide out to the left copies the source onto frame End.
inline constexpr std::array<MoveMember, 8> kSlides = {{
    {{false, Offset::Falling, 1, Frames::AfterStart, EndState::Call},
     {true, Offset::Falling, 1, Frames::BeforeEnd, EndState::WholeAtEnds}},
    {{true, Offset::Rising, 1, Frames::AfterStart, EndState::SourceAtEnd},
     {false, Offset::Rising, 1, Frames::BeforeEnd, EndState::WholeAtEnds}},
    {{false, Offset::Falling, 2, Frames::AfterStart, EndState::Call},
     {true, Offset::Falling, 2, Frames::BeforeEnd, EndState::WholeAtEnds}},
    {{true, Offset::Rising, 2, Frames::AfterStart, EndState::Call},
     {false, Offset::Rising, 2, Frames::BeforeEnd, EndState::WholeAtEnds}},
    {{false, Offset::Falling, 3, Frames::Whole, EndState::Call},
     {true, Offset::Falling, 3, Frames::Whole, EndState::WholeAtEnds}},
    {{true, Offset::Rising, 3, Frames::AfterStart, EndState::Call},
     {false, Offset::Rising, 3, Frames::Whole, EndState::WholeAtEnds}},
    {{false, Offset::Falling, 4, Frames::Whole, EndState::Call},
     {true, Offset::Falling, 4, Frames::Whole, EndState::WholeAtEnds}},
    {{true, Offset::Rising, 4, Frames::AfterStart, EndState::Call},
     {false, Offset::Rising, 4, Frames::Whole, EndState::WholeAtEnds}},
}};

// The alpha slides call with the triples, offset and mode of the slide of the same name, but make
// every frame Start..End and copy no end state.
constexpr MoveModule alphaModule(MoveModule m) {
    m.frames = Frames::Whole;
    m.endState = EndState::Call;
    return m;
}
constexpr std::array<MoveMember, 8> alphaRows(const std::array<MoveMember, 8>& slides) {
    std::array<MoveMember, 8> out{};
    for (std::size_t i = 0; i < slides.size(); ++i)
        out[i] = {alphaModule(slides[i].to), alphaModule(slides[i].from)};
    return out;
}
inline constexpr std::array<MoveMember, 8> kAlphaSlides = alphaRows(kSlides);

} // namespace kirrel::transitions
