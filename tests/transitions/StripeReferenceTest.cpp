// The stripe modules against pictures computed here from what each names: which picture is laid over
// which, the stripe period (the doubled size), the reveal rounded half to even, and which frames it
// makes. Every module runs on an even and an odd size, with the finest and a coarser stripe, over a
// patterned swap so that a moved stripe shows where it came from.

#include "transitions/Stripes.h"
#include "transitions/TransitionSupport.h"

#include <cmath>
#include <string>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

struct Place {
    bool fromB;
    int t;
};

// Where the cell at position t of a stripe comes from, with k of its n cells revealed. Leading stripes
// (the first half of each period, the larger half when it is odd) work from the start of the axis,
// the others from its end.
Place place(StripeOp op, bool leading, int n, int k, int t) {
    switch (op) {
    case StripeOp::Slide: // B's stripes slide off A, leading ones toward the end
        if (leading) return t >= k ? Place{true, t - k} : Place{false, t};
        return t < n - k ? Place{true, t + k} : Place{false, t};
    case StripeOp::Push: // A comes in behind B, pushing it out
        if (leading) return t < k ? Place{false, n - k + t} : Place{true, t - k};
        return t < n - k ? Place{true, t + k} : Place{false, t - (n - k)};
    default: // B fills in from the stripe's own end
        if (leading) return t < k ? Place{true, t} : Place{false, t};
        return t >= n - k ? Place{true, t} : Place{false, t};
    }
}

// One operation on a and b, mode 1 (rows, revealed along x) or mode 2 (columns, along y).
Picture stripeOp(StripeOp op, const Picture& a, const Picture& b, int stored, double share, int mode) {
    const int W = a.width(), H = a.height();
    const int period = std::max(2, stored);
    const int lead = period - period / 2;
    const int size = mode == 1 ? W : H;
    const int k = cells(rne(share * size), size);
    Picture out(W, H);
    for (int y = 0; y <= H; ++y)
        for (int x = 0; x <= W; ++x) {
            const int stripe = mode == 1 ? y : x;
            const int t = mode == 1 ? x : y;
            const Place p = place(op, stripe % period < lead, size + 1, k, t);
            const Picture& from = p.fromB ? b : a;
            const int sx = mode == 1 ? p.t : x, sy = mode == 1 ? y : p.t;
            copyPixel(out, x, y, from, sx, sy);
        }
    return out;
}

Picture expected(const StripeModule& m, const StripeSizes& sizes, const Picture& main, const Picture& src,
                 int i, int S, int E) {
    if (m.sourceAtEnd && i == E) return src;
    const double share = double(i - S) / double(E - S);
    const Picture& a = m.sourceFirst ? src : main;
    const Picture& b = m.sourceFirst ? main : src;
    if (m.op == StripeOp::Weave)
        return stripeOp(StripeOp::Stripe, stripeOp(StripeOp::Stripe, a, b, sizes.vertical, share, 2), b,
                        sizes.horizontal, share, 1);
    return stripeOp(m.op, a, b, m.mode == 1 ? sizes.horizontal : sizes.vertical, share, m.mode);
}

struct Case {
    StripeFamily family;
    int member;
    bool to;
    int w, h;
    StripeSizes sizes;
};

std::string caseName(const testing::TestParamInfo<Case>& info) {
    const Case& c = info.param;
    const StripeMember& m = stripeMember(c.family, c.member);
    return std::string(c.to ? m.to.name : m.from.name) + "_" + std::to_string(c.w) + "x" +
           std::to_string(c.h) + "_" + std::to_string(c.sizes.horizontal) + "_" +
           std::to_string(c.sizes.vertical);
}

std::vector<Case> allCases() {
    std::vector<Case> out;
    const std::pair<StripeFamily, int> members[] = {
        {StripeFamily::Stripes, 0},     {StripeFamily::Stripes, 1},     {StripeFamily::Stripes, 2},
        {StripeFamily::PushStripes, 0}, {StripeFamily::PushStripes, 1}, {StripeFamily::SlideStripes, 0},
        {StripeFamily::SlideStripes, 1}};
    for (const auto& [family, member] : members)
        for (bool to : {true, false}) {
            out.push_back({family, member, to, 16, 12, {2, 2}});
            out.push_back({family, member, to, 15, 11, {6, 3}});
        }
    return out;
}

class StripeReference : public ReferenceTest, public testing::WithParamInterface<Case> {};

TEST_P(StripeReference, EveryFrameIsThePictureTheModuleNames) {
    const Case& c = GetParam();
    prepare(c.w, c.h);
    const StripeModule& m =
        c.to ? stripeMember(c.family, c.member).to : stripeMember(c.family, c.member).from;
    (c.to ? runStripesTo : runStripesFrom)(c.family, c.member, c.sizes, S, E, "Swap");
    expectRun(m.frames == Frames::AfterStart ? S + 1 : S, m.frames == Frames::BeforeEnd ? E - 1 : E,
              [&](int i) { return expected(m, c.sizes, original[i], source, i, S, E); });
    expectEnds(c.to, source);
}

INSTANTIATE_TEST_SUITE_P(Modules, StripeReference, testing::ValuesIn(allCases()), caseName);

// A stored twin meets stored frame k with the overlap's k-th frame, on the same geometry.
TEST_F(TransitionTest, StripeSpliceMixesEachStoredFrameOnTheSameGeometry) {
    load(5, 16, 12);
    const StripeSizes sizes{4, 2};
    const auto slot = writeSlot(0, 4, 16, 12);
    runStripesToStored(StripeFamily::Stripes, 1, sizes, 2, 0);
    expectSplice(true, 2, slot, [&](const Picture& f, const Picture& st, int i, int a, int b) {
        return expected(stripeMember(StripeFamily::Stripes, 1).to, sizes, f, st, i, a, b);
    });
}

} // namespace
} // namespace kirrel::test
