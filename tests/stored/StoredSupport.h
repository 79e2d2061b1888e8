#pragma once
// Helpers for the stored-animation tests: expected file bytes, and a snapshot of everything a slot
// or undo operation could change in the host.

#include "host/HostState.h"
#include "pixel/Plane.h"
#include "stored/SlotFiles.h"
#include "support/Support.h"

#include <sstream>
#include <string>
#include <vector>

namespace kirrel::test {

inline std::string le16(int v) {
    return int16le({v});
}

inline std::string bytesOf(const krl::Plane& p) {
    return {reinterpret_cast<const char*>(p.data()), p.size()};
}

inline std::string bytesOf(const host::Picture& p) {
    return bytesOf(p.r) + bytesOf(p.g) + bytesOf(p.b);
}

// A file in the slot layout: Frames, Width, Height, then the pictures.
inline std::string slotBytes(int frames, const std::vector<host::Picture>& pictures) {
    const host::Picture& first = pictures.front();
    std::string out = le16(frames) + le16(first.width()) + le16(first.height());
    for (const auto& p : pictures)
        out += bytesOf(p);
    return out;
}

// Slot `slot` of the folder, written in the slot layout or read back.
inline QString slotPath(const std::string& folder, int slot) {
    return QString::fromStdString(stored::slotDataPath(folder, slot));
}
inline void putSlot(const std::string& folder, int slot, const std::vector<host::Picture>& frames) {
    writeFile(slotPath(folder, slot), slotBytes(static_cast<int>(frames.size()), frames));
}
inline std::string slotFile(const std::string& folder, int slot) {
    return readFile(slotPath(folder, slot));
}

inline std::vector<host::Picture> patternFrames(int count, int w, int h, int seed = 0) {
    std::vector<host::Picture> frames;
    for (int i = 0; i < count; ++i)
        frames.push_back(patternPicture(w, h, seed + 37 * i));
    return frames;
}

// A call sequence written as one text, calls separated by ';' (blanks around them ignored).
inline std::vector<std::string> seq(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string call; std::getline(in, call, ';');) {
        call.erase(0, call.find_first_not_of(' '));
        call.erase(call.find_last_not_of(' ') + 1);
        if (!call.empty()) out.push_back(call);
    }
    return out;
}

// What the host holds that a refused operation must leave alone.
struct HostSnapshot {
    int total, current, width, height;
    std::vector<host::Picture> pictures;
    krl::Plane alpha;
    host::Picture swap;

    static HostSnapshot of(const host::HostState& h) {
        HostSnapshot s{h.totalFrames(), h.currentFrame(), h.bufferWidth(), h.bufferHeight(), {},
                       h.alphaPlane(),  h.swapPicture()};
        if (h.totalFrames() == 0) s.pictures.push_back(h.mainPicture());
        for (int f = 0; f < h.totalFrames(); ++f)
            s.pictures.push_back(h.framePicture(f));
        return s;
    }
    bool operator==(const HostSnapshot& o) const {
        return total == o.total && current == o.current && width == o.width && height == o.height &&
               pictures == o.pictures && alpha == o.alpha && swap == o.swap;
    }
};

} // namespace kirrel::test
