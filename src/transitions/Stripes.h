#pragma once
// Stripes, push stripes and slide stripes: the picture is cut into bands that alternate in pairs, and
// the two pictures meet band by band. The plain stripes fill each band from its end, the push stripes
// move both pictures along each band, the slide stripes move one picture's bands off the other. Every
// module is a row of data (the operation, which triple it writes, the stripe direction, the frames it
// makes); one step serves all rows on the common plain and stored run shapes.
//
// The stripe sizes are stored doubled, as the period of a stripe pair: a stored 2 is one pixel per
// stripe. Horizontal stripes are rows that fill along the width; vertical stripes are columns that
// fill along the height.

#include "transitions/MoveRun.h"

#include <array>
#include <string>

namespace kirrel::transitions {

enum class StripeOp { Stripe, Push, Slide, Weave };

struct StripeModule {
    const char* name;
    StripeOp op;
    bool sourceFirst; // the operation writes the source (a fresh copy each frame), and the run sends it
    int mode;         // 1 horizontal stripes (reveal on W), 2 vertical (reveal on H); the weave does both
    Frames frames;
    bool sourceAtEnd; // at the last frame the saved source is the picture, without a call
};

struct StripeMember {
    StripeModule to, from;
};

// The dialogs' stripe families; a member is the index of the dialog's option button.
enum class StripeFamily { Stripes, PushStripes, SlideStripes };

// The stripe sizes as the dialog stores them (twice the size shown), read at the run's start.
struct StripeSizes {
    int horizontal = 2;
    int vertical = 2;
};

inline constexpr std::array<StripeMember, 3> kStripeMembers = {{
    {{"WeaveTo", StripeOp::Weave, false, 0, Frames::Whole, false},
     {"WeaveFrom", StripeOp::Weave, true, 0, Frames::Whole, false}},
    {{"HStripesTo", StripeOp::Stripe, false, 1, Frames::AfterStart, false},
     {"HStripesFrom", StripeOp::Stripe, true, 1, Frames::BeforeEnd, false}},
    {{"VStripesTo", StripeOp::Stripe, false, 2, Frames::AfterStart, false},
     {"VStripesFrom", StripeOp::Stripe, true, 2, Frames::BeforeEnd, false}},
}};

// The moving families take the source as the written triple in their To modules and the frame in
// their From modules: the other way round from the plain stripes, as the moving operations count
// their reveal from the arriving picture.
inline constexpr std::array<StripeMember, 2> kPushStripeMembers = {{
    {{"PushHStripesTo", StripeOp::Push, true, 1, Frames::AfterStart, true},
     {"PushHStripesFrom", StripeOp::Push, false, 1, Frames::Whole, false}},
    {{"PushVStripesTo", StripeOp::Push, true, 2, Frames::AfterStart, true},
     {"PushVStripesFrom", StripeOp::Push, false, 2, Frames::BeforeEnd, false}},
}};

inline constexpr std::array<StripeMember, 2> kSlideStripeMembers = {{
    {{"SlideHStripesTo", StripeOp::Slide, true, 1, Frames::Whole, false},
     {"SlideHStripesFrom", StripeOp::Slide, false, 1, Frames::Whole, false}},
    {{"SlideVStripesTo", StripeOp::Slide, true, 2, Frames::Whole, false},
     {"SlideVStripesFrom", StripeOp::Slide, false, 2, Frames::Whole, false}},
}};

// The module of a family's member; throws std::out_of_range for a member the family lacks.
const StripeMember& stripeMember(StripeFamily family, int member);

// One frame of a module: the result goes to M, which both run shapes send.
void stripeFrame(const StripeModule& m, const StripeSizes& sizes, RunFrame& f);

// The runs of a family's member; the stored ones splice with slot 0..3.
void runStripesTo(StripeFamily family, int member, const StripeSizes& sizes, int start, int end,
                  const std::string& source);
void runStripesFrom(StripeFamily family, int member, const StripeSizes& sizes, int start, int end,
                    const std::string& source);
void runStripesToStored(StripeFamily family, int member, const StripeSizes& sizes, int start, int slot);
void runStripesFromStored(StripeFamily family, int member, const StripeSizes& sizes, int end, int slot);

} // namespace kirrel::transitions
