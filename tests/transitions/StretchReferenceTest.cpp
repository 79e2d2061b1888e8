// The eighteen stretch and squeeze options against pictures computed here: which band or seam each
// frame's value puts where, which picture lands in it (each sampled at its cells' centres), the door
// leaves of the centre squeezes, and the source's saved copy that the vertical squeezes overwrite in
// their From runs. Every option runs both ways on an even and an odd size, plain and spliced.

#include "transitions/Stretches.h"
#include "transitions/TransitionSupport.h"

#include <cmath>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

// Copies line s of b (a column, or a row if vertical) to line t of out.
void copyLine(Picture& out, const Picture& b, bool vertical, int t, int s) {
    for (int j = 0; j <= (vertical ? out.width() : out.height()); ++j) {
        const int x = vertical ? j : t, y = vertical ? t : j, sx = vertical ? j : s, sy = vertical ? s : j;
        copyPixel(out, x, y, b, sx, sy);
    }
}
// Lines [t0, t1) of out take all n lines of b, each line sampled at its centre.
void scaleInto(Picture& out, const Picture& b, bool vertical, int t0, int t1) {
    const int n = (vertical ? b.height() : b.width()) + 1;
    for (int t = t0; t < t1; ++t)
        copyLine(out, b, vertical, t, std::min(n - 1, int(std::floor((t - t0 + 0.5) * n / (t1 - t0)))));
}

// The picture b over a band of a; the band's edge k (both edges for a centre band, modes 5 and 6).
Picture band(const Picture& a, const Picture& b, int mode, int k) {
    const bool vertical = mode == 3 || mode == 4 || mode == 6;
    const int last = vertical ? a.height() : a.width();
    Picture out = a;
    if (mode <= 4 && mode % 2 == 1) scaleInto(out, b, vertical, 0, cells(k, last));
    if (mode <= 4 && mode % 2 == 0) scaleInto(out, b, vertical, cells(k, last), last + 1);
    if (mode >= 5 && cells(last - k, last) > cells(k, last))
        scaleInto(out, b, vertical, cells(k, last), cells(last - k, last));
    return out;
}
// The frame squeezed before the seam, the source after it.
Picture squeeze(const Picture& frame, const Picture& source, bool vertical, int seam) {
    const int last = vertical ? frame.height() : frame.width(), k = cells(seam, last);
    Picture out = frame;
    scaleInto(out, frame, vertical, 0, k);
    scaleInto(out, source, vertical, k, last + 1);
    return out;
}
// b's two halves slide in from the edges as door leaves `leaf` wide (full at half the size).
Picture door(const Picture& a, const Picture& b, bool vertical, int leaf) {
    const int n = (vertical ? a.height() : a.width()) + 1, half = (n - 1) / 2, nl = (n + 1) / 2, nr = n / 2;
    const int cl = leaf <= 0 ? 0 : (leaf >= half ? nl : leaf * nl / half);
    const int cr = leaf <= 0 ? 0 : (leaf >= half ? nr : leaf * nr / half);
    Picture out = a;
    for (int t = 0; t < cl; ++t)
        copyLine(out, b, vertical, t, nl - cl + t);
    for (int t = n - cr; t < n; ++t)
        copyLine(out, b, vertical, t, nl + t - (n - cr));
    return out;
}

enum class Call { Stretch, Squeeze, DoorSqueeze };
enum End { F, S, X }; // the frame, the source, neither
struct Row {
    Call call;
    bool vertical;
    char value;                 // u, v rising and falling; c, o their halves
    int mode;                   // of the stretch; the squeezes' seam modes follow from `vertical`
    End toEnds[2], fromEnds[2]; // frame Start and frame End of the two directions
};

// In the order of the dialog's list.
const Row kRows[18] = {
    {Call::Stretch, false, 'u', 1, {F, S}, {S, F}},     {Call::Stretch, false, 'v', 2, {F, S}, {S, F}},
    {Call::Stretch, true, 'u', 3, {F, S}, {S, F}},      {Call::Stretch, true, 'v', 4, {F, S}, {S, F}},
    {Call::Stretch, false, 'o', 5, {F, S}, {S, F}},     {Call::Stretch, true, 'o', 6, {F, S}, {S, F}},
    {Call::Stretch, false, 'v', 1, {S, F}, {F, S}},     {Call::Stretch, false, 'u', 2, {S, F}, {F, S}},
    {Call::Stretch, true, 'v', 3, {S, F}, {F, S}},      {Call::Stretch, true, 'u', 4, {S, F}, {F, S}},
    {Call::Stretch, false, 'c', 5, {S, F}, {F, S}},     {Call::Stretch, true, 'c', 6, {S, F}, {F, S}},
    {Call::Squeeze, false, 'v', 0, {F, S}, {F, S}},     {Call::Squeeze, false, 'u', 0, {S, F}, {S, F}},
    {Call::Squeeze, true, 'v', 0, {F, S}, {F, S}},      {Call::Squeeze, true, 'u', 0, {S, F}, {S, F}},
    {Call::DoorSqueeze, false, 'c', 5, {F, S}, {S, F}}, {Call::DoorSqueeze, true, 'c', 6, {F, S}, {S, F}},
};

int valueOf(char value, int f, int first, int last, int size) {
    const double share = (value == 'u' || value == 'c') ? double(f - first) / double(last - first)
                                                        : double(last - f) / double(last - first);
    return rne(value == 'u' || value == 'v' ? share * size : share * size / 2.0);
}

// One frame made from the frame and the source's saved copy.
Picture expected(const Row& r, bool to, const Picture& frame, const Picture& saved, int f, int first,
                 int last) {
    const int k = valueOf(r.value, f, first, last, r.vertical ? frame.height() : frame.width());
    switch (r.call) {
    case Call::Stretch:
        return to ? band(frame, saved, r.mode, k) : band(saved, frame, r.mode, k);
    case Call::Squeeze: {
        return squeeze(frame, saved, r.vertical, k);
    }
    case Call::DoorSqueeze:
        if (to) return f == last ? saved : door(band(saved, frame, r.mode, k), saved, r.vertical, k);
        const Picture squeezed = band(frame, saved, r.mode, k);
        return door(squeezed, squeezed, r.vertical, k);
    }
    return {};
}

class StretchReference : public ReferenceTest,
                         public testing::WithParamInterface<std::tuple<int, bool, Size>> {};

TEST_P(StretchReference, EveryFrameIsTheNamedGeometryAndTheEndsAreWholePictures) {
    const auto& [option, to, size] = GetParam();
    const Row& r = kRows[option];
    prepare(size.w, size.h);
    (to ? runStretchTo : runStretchFrom)(option, S, E, "Swap");
    expectRun(S, E,
              [&](int i) { return expected(r, to, original[static_cast<std::size_t>(i)], source, i, S, E); });
    const End* ends = to ? r.toEnds : r.fromEnds;
    for (const auto& [i, end] : {std::pair{S, ends[0]}, {E, ends[1]}})
        if (end != X) {
            EXPECT_EQ(frame(i), end == F ? original[static_cast<std::size_t>(i)] : source) << i;
        }
    EXPECT_EQ(calls("Van_GetSwapRBuffer").size(), 1u) << "the source is read once";
}

// ToStored from frame 3 meets frames 3..6 with stored 0..3 and appends 4, 5; FromStored up to frame 3
// puts stored 0, 1 in front. The slot's flat frames of another size are resampled, still flat.
TEST_P(StretchReference, StoredTwinsBringTheSlotToTheRunsSize) {
    const auto& [option, to, size] = GetParam();
    prepare(size.w, size.h);
    writeSlot(2, 6, 9, 5);
    std::vector<Picture> slot;
    for (int v = 10; v < 130; v += 20)
        slot.push_back(Picture::filled(size.w, size.h, host::packColor(v, v + 1, v + 2)));
    (to ? runStretchToStored : runStretchFromStored)(option, 3, 2);
    expectSplice(to, 3, slot, [&](const Picture& f, const Picture& st, int i, int a, int b) {
        return expected(kRows[option], to, f, st, i, a, b);
    });
}

INSTANTIATE_TEST_SUITE_P(Options, StretchReference,
                         testing::Combine(testing::Range(0, 18), testing::Bool(),
                                          testing::Values(Size{16, 12}, Size{15, 11})),
                         [](const testing::TestParamInfo<std::tuple<int, bool, Size>>& i) {
                             const int o = std::get<0>(i.param);
                             const bool to = std::get<1>(i.param);
                             const Size s = std::get<2>(i.param);
                             std::string name = kStretchOptions[static_cast<std::size_t>(o)].text;
                             std::erase(name, ' ');
                             return name + (to ? "_To_" : "_From_") + sizeName(s);
                         });

class StretchRuns : public StretchReference {};

TEST_F(StretchRuns, EverySqueezeFrameStartsFromTheSourceReadBeforeTheLoop) {
    // Source a flat colour. The vertical squeezes hand the source and its saved copy over the other
    // way round in their From runs; the result that lands in the copy's place must not become the
    // next frame's source, or the colour would never show.
    auto redPixels = [&](int option, bool to) {
        prepare(12, 9);
        host().setPrimaryColor(200, 30, 60);
        (to ? runStretchTo : runStretchFrom)(option, S, E, "Primary Color");
        int n = 0;
        for (int i = S; i <= E; ++i)
            n += count(frame(i).r, 200);
        return n;
    };
    for (int option : {12, 13, 14, 15})
        for (bool to : {true, false})
            EXPECT_GT(redPixels(option, to), 13 * 10) << option << (to ? " To" : " From");
}

} // namespace
} // namespace kirrel::test
