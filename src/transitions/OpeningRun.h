#pragma once
// Shapes that open out of the frame's centre or close into it: rows, columns, boxes and crosses are
// fixed rectangles (BoxMix) that grow or shrink about the centre; doors are two leaves (DoorMix).
// Every module is a row of data: the shape, which triple the operation writes (and the run sends),
// whether the size comes from the frames still to go or from those done, the frames it makes, the
// guard under which it calls, the whole pictures it puts on an end frame, and its code shape. One
// step serves all rows; the runs are the common plain and stored shapes. A stored twin makes the
// frames its plain module makes: where the plain To run starts at Start (the columns, the closing
// box, the closing doors) the twin treats the overlap's first frame too; where it starts at
// Start + 1 the twin writes that frame back as the animation has it.

#include "transitions/MoveRun.h"

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace kirrel::transitions {

// Rows: a band across the whole width, rows y..H - y. Columns: a band down the whole height,
// columns x..W - x. Box: the rectangle x..W - x by y..H - y. Cross: the column band, then the row
// band. Doors: DoorMix with the leaf from the width (mode 1) or the height (mode 2).
enum class Opening { Rows, Columns, Box, Cross, HDoor, VDoor };

// Opening sizes shrink towards the end: a = round((End - f) / N * W / 2.0), b the same with H.
// Closing sizes grow: c = round((f - Start) / N * W / 2.0), d the same with H.
enum class Reach { Opening, Closing };

// The frames on which the operation is called at all; on the others the run sends its first triple
// as it stands, which is a whole picture.
enum class Guard { None, AfterStart, BeforeEnd };

// Whole pictures the doors put on an end frame instead of the leaf arithmetic.
enum class EndPicture {
    None,
    SourceAtStart, // frame Start is the source, unchanged
    SourceAtEnd,   // frame End is the source
    FrameAtEnd,    // frame End is the animation's own frame
};

// How the module is built. PerSource: each source branch makes its own call, so a source text that
// matches no branch makes none. Guarded: the branches only prepare the source and one call follows
// under the guard. For every text the dialogs offer the two give the same frames.
enum class MixCode { PerSource, Guarded };

struct OpeningModule {
    bool sourceFirst; // the operation writes the source (a fresh copy of it each frame), else the frame
    Reach reach;
    Frames frames;
    Guard guard;
    EndPicture ends;
    MixCode code;
};

struct OpeningMember {
    Opening shape;
    OpeningModule to, from;
};

// One frame of a module: the result goes to M, which both run shapes then send.
void openingFrame(Opening shape, const OpeningModule& m, RunFrame& f);

template <const auto& Table, std::size_t I, bool To> void openingStep(RunFrame& f) {
    openingFrame(Table[I].shape, To ? Table[I].to : Table[I].from, f);
}
template <const auto& Table, bool To, std::size_t... I>
constexpr std::array<FrameStep, sizeof...(I)> openingSteps(std::index_sequence<I...>) {
    return {&openingStep<Table, I, To>...};
}

// A family's table made into its four runs, by the index of the dialog's variant list.
template <const auto& Table> struct OpeningFamily : TableRuns<OpeningFamily<Table>, Table> {
    static constexpr auto kTo = openingSteps<Table, true>(std::make_index_sequence<kTableSize<Table>>{});
    static constexpr auto kFrom = openingSteps<Table, false>(std::make_index_sequence<kTableSize<Table>>{});
};

} // namespace kirrel::transitions
