#pragma once
// Helpers for the transition tests: an animation of distinct frames, slot files, and pixel counts.

#include "host/HostState.h"
#include "stored/SlotFiles.h"
#include "support/Support.h"

#include <string>
#include <vector>

namespace kirrel::test {

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
        std::string bytes = int16le({n, w, h});
        for (int k = 0; k < n; ++k) {
            const int v = 10 + 20 * k;
            frames.push_back(host::Picture::filled(w, h, host::packColor(v, v + 1, v + 2)));
            const auto& p = frames.back();
            for (const krl::Plane* plane : {&p.r, &p.g, &p.b})
                bytes.append(reinterpret_cast<const char*>(plane->data()), plane->size());
        }
        writeFile(QString::fromStdString(stored::slotDataPath(tempDir(), slot)), bytes);
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
    std::vector<host::Picture> original;
};

} // namespace kirrel::test
