#pragma once
// Helpers for the transition tests: an animation of distinct frames, slot files, and pixel counts.

#include "host/HostState.h"
#include "stored/SlotFiles.h"
#include "stored/StoredSupport.h"
#include "support/Fixtures.h"

#include <cmath>
#include <string>
#include <vector>

namespace kirrel::test {

// The cells of a 0..last axis an offset covers: none at 0 or less, all of them at last or more.
inline int cells(int offset, int last) {
    return offset <= 0 ? 0 : (offset >= last ? last + 1 : offset);
}
// Rounded half to even, as the runs round their shares.
inline int rne(double v) {
    return static_cast<int>(std::nearbyint(v));
}

// Pictures of bounds w, h, as the parameterised tests name them.
struct Size {
    int w, h;
};
inline std::string sizeName(Size s) {
    return std::to_string(s.w) + "x" + std::to_string(s.h);
}
// The trace of a run that makes frames first..last and no other.
inline std::vector<std::string> gotoCalls(int first, int last) {
    std::vector<std::string> out;
    for (int i = first; i <= last; ++i)
        out.push_back("Van_GotoFrame(" + std::to_string(i) + ")");
    return out;
}

class TransitionTest : public HostTest {
  protected:
    // n frames of bounds w, h, each its own pattern; the swap a flat grey 0x50.
    void load(int n, int w, int h) {
        original.clear();
        for (int f = 0; f < n; ++f)
            original.push_back(patternPicture(w, h, 17 * f));
        host().loadAnimation(original);
        host().loadSwap(host::Picture::filled(w, h, 0x505050));
        trace.clear();
    }
    // A slot file of n frames of bounds w, h: flat colours 10 + 20k, so each stored frame is known
    // by its red value.
    std::vector<host::Picture> writeSlot(int slot, int n, int w, int h) {
        std::vector<host::Picture> frames;
        for (int v = 10; v < 10 + 20 * n; v += 20)
            frames.push_back(host::Picture::filled(w, h, host::packColor(v, v + 1, v + 2)));
        writeFile(QString::fromStdString(stored::slotDataPath(tempDir(), slot)), slotBytes(n, frames));
        return frames;
    }
    static krl::Plane flatPlane(int w, int h, int v) {
        krl::Plane p(w, h);
        p.fill(static_cast<std::uint8_t>(v));
        return p;
    }
    const host::Picture& frame(int f) const { return host().framePicture(f); }
    // Pixels of plane p that equal v.
    static int count(const krl::Plane& p, int v) {
        int n = 0;
        for (std::size_t i = 0; i < p.size(); ++i)
            n += p.data()[i] == v;
        return n;
    }
    // A stored twin's result. To from `at` keeps the frames before it, meets frames at.. with the
    // slot's first frames and appends the rest of the slot; From up to `at` puts the slot's first frames
    // in front and meets frames 0..at with its last ones. mix(frame, stored, i, first, last) is frame i
    // of the overlap first..last of the result.
    template <class Mix> void expectSplice(bool to, int at, const std::vector<host::Picture>& slot, Mix mix) {
        const int n = static_cast<int>(original.size()), s = static_cast<int>(slot.size());
        const int extra = to ? 0 : s - (at + 1), first = to ? at : extra, last = to ? n - 1 : extra + at;
        ASSERT_EQ(host().totalFrames(), to ? at + s : n + extra);
        for (int i = 0; i < host().totalFrames(); ++i) {
            const host::Picture& f = original[static_cast<std::size_t>(to ? i : i - extra)];
            const host::Picture& st = slot[static_cast<std::size_t>(to ? i - at : i)];
            const bool outside = i < first || i > last;
            EXPECT_EQ(frame(i), outside ? ((i < first) != to ? st : f) : mix(f, st, i, first, last))
                << (to ? "To" : "From") << "Stored frame " << i << (outside ? " (outside)" : "");
        }
        EXPECT_FALSE(host().locked());
    }
    std::vector<host::Picture> original;
};

// The reference tests' animation: frames 1..5 of seven run against a patterned swap, so that a
// moved source shows where it came from as well as a moved frame.
class ReferenceTest : public TransitionTest {
  protected:
    static constexpr int S = 1, E = 5, kFrames = 7;
    void prepare(int w, int h) {
        load(kFrames, w, h);
        source = patternPicture(w, h, 101);
        host().loadSwap(source);
        trace.clear();
    }
    // A run that makes frames first..last: made(i) there, the others untouched, the source the run's
    // own copy, and every frame it makes visited once, in order.
    template <class Made> void expectRun(int first, int last, Made made) {
        for (int i = 0; i < kFrames; ++i) {
            const bool m = i >= first && i <= last;
            EXPECT_EQ(frame(i), m ? made(i) : original[static_cast<std::size_t>(i)])
                << "frame " << i << (m ? " (made)" : " (untouched)");
        }
        EXPECT_EQ(calls("Van_GotoFrame"), gotoCalls(first, last)) << "the frames the run makes";
        EXPECT_EQ(host().swapPicture(), source) << "the source is the run's own copy";
        EXPECT_FALSE(host().locked());
    }
    // A To run arrives on the source; a From run leaves from it and arrives on the frame.
    void expectEnds(bool to, const host::Picture& from) {
        EXPECT_EQ(frame(to ? E : S), from) << "the run's end on the source";
        if (!to) {
            EXPECT_EQ(frame(E), original[E]) << "a From run arrives on the frame";
        }
    }
    host::Picture source;
};

} // namespace kirrel::test
