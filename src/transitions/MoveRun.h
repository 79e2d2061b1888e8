#pragma once
// Pictures that move: the pushes (both pictures move as one strip), the slides (one picture moves over
// the other, which stands still) and the alpha slides (a slide that the frame's alpha confines).
// Every module is a row of data: which triple the operation writes, which offset it takes, the mode,
// the frames it makes and where it copies a whole picture instead of calling the operation. One step
// serves all rows; the runs are the common plain and stored shapes.

#include "transitions/PlainRun.h"
#include "transitions/StoredRun.h"

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace kirrel::transitions {

enum class MoveKind { Push, Slide, AlphaSlide };

// u = round((i - Start) / Span * size) rises from 0 to the full size; v = round((End - i) / Span * size)
// falls. The size is the width for modes 1 and 2, the height for 3 and 4.
enum class Offset { Rising, Falling };

// The frames a module makes: Start + 1..End, Start..End - 1 or Start..End.
enum class Frames { AfterStart, BeforeEnd, Whole };

// Where a module stands at an end of the effect without calling the operation.
enum class EndState {
    Call,        // the operation runs on every frame
    SourceAtEnd, // frame End is the source, copied
    WholeAtEnds, // frame Start is the source, copied; frame End the animation as fetched
};

struct MoveModule {
    bool sourceFirst; // the operation writes the source (a fresh copy of it each frame), else the frame
    Offset offset;
    int mode;
    Frames frames;
    EndState endState;
};

struct MoveMember {
    MoveModule to, from;
};

// One frame of a module: the result goes to M, which both run shapes then send.
void moveFrame(MoveKind kind, const MoveModule& m, RunFrame& f);
// The run shapes of a module that makes the given frames; the openings share them.
PlainShape movePlainShape(Frames frames);
StoredShape moveStoredShape();

// A member's step, one per row and direction of a family's table.
template <MoveKind Kind, const auto& Table, std::size_t I, bool To> void moveStep(RunFrame& f) {
    moveFrame(Kind, To ? Table[I].to : Table[I].from, f);
}
template <MoveKind Kind, const auto& Table, bool To, std::size_t... I>
constexpr std::array<FrameStep, sizeof...(I)> moveSteps(std::index_sequence<I...>) {
    return {&moveStep<Kind, Table, I, To>...};
}

template <const auto& Table>
inline constexpr std::size_t kTableSize = std::tuple_size_v<std::remove_cvref_t<decltype(Table)>>;

// A family's table made into its four runs, over the steps the family makes of its rows (its kTo
// and kFrom, one a row). The moving modules and the openings differ only in those steps.
template <class Family, const auto& Table> struct TableRuns {
    static std::size_t index(int member) {
        if (member < 0 || member >= static_cast<int>(kTableSize<Table>))
            throw std::out_of_range("Invalid transition");
        return static_cast<std::size_t>(member);
    }
    static void to(int member, int start, int end, const std::string& source) {
        const std::size_t i = index(member);
        runPlain(Direction::To, start, end, source, movePlainShape(Table[i].to.frames), Family::kTo[i]);
    }
    static void from(int member, int start, int end, const std::string& source) {
        const std::size_t i = index(member);
        runPlain(Direction::From, start, end, source, movePlainShape(Table[i].from.frames), Family::kFrom[i]);
    }
    static void toStored(int member, int start, int slot) {
        runToStored(start, slot, moveStoredShape(), Family::kTo[index(member)]);
    }
    static void fromStored(int member, int end, int slot) {
        runFromStored(end, slot, moveStoredShape(), Family::kFrom[index(member)]);
    }
};

// A moving family's table made into its four runs.
template <MoveKind Kind, const auto& Table> struct MoveFamily : TableRuns<MoveFamily<Kind, Table>, Table> {
    static constexpr auto kTo = moveSteps<Kind, Table, true>(std::make_index_sequence<kTableSize<Table>>{});
    static constexpr auto kFrom =
        moveSteps<Kind, Table, false>(std::make_index_sequence<kTableSize<Table>>{});
};

} // namespace kirrel::transitions
