#include "stored/AttachRuns.h"

#include "panel/Vantry.h"
#include "stored/SlotFiles.h"

#include <algorithm>
#include <cstring>

namespace kirrel::stored {

namespace {

constexpr short kCreateMode = 2;

// The rectangle of `from` at (dx, dy) in `to`, clipped to both planes.
void place(krl::Plane& to, const krl::Plane& from, int dx, int dy) {
    const int cols = std::min(from.cols(), to.cols() - dx);
    const int rows = std::min(from.rows(), to.rows() - dy);
    if (cols <= 0 || rows <= 0) return;
    for (int y = 0; y < rows; ++y)
        std::memcpy(to.row(y + dy) + dx, from.row(y), static_cast<std::size_t>(cols));
}

} // namespace

AttachSize attachedSize(const AttachSide& side, int w, int h, int sw, int sh) {
    if (side.sideBySide) return {w + sw, h};
    return {w, h + sh};
}

void joinPictures(krl::Triple& out, const krl::Triple& first, const krl::Triple& second, bool sideBySide) {
    const int dx = sideBySide ? first.width() : 0;
    const int dy = sideBySide ? 0 : first.height();
    for (auto [to, a, b] : {std::tuple{&out.r, &first.r, &second.r}, std::tuple{&out.g, &first.g, &second.g},
                            std::tuple{&out.b, &first.b, &second.b}}) {
        place(*to, *a, 0, 0);
        place(*to, *b, dx, dy);
    }
}

void AttachStored(const AttachSide& side, const std::string& slotPath) {
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    FrameFileReader in(slotPath, FrameFileReader::Kind::Slot);
    const int frames = in.header().frames;
    const AttachSize size = attachedSize(side, W, H, in.width(), in.height());

    std::vector<krl::Triple> result;
    result.reserve(static_cast<std::size_t>(frames));
    krl::Triple stored;
    for (int i = 0; i < frames; ++i) {
        van.Van_GotoFrame(i);
        in.readPicture(stored);
        krl::Triple main;
        main.r = van.Van_GetRBuffer();
        main.g = van.Van_GetGBuffer();
        main.b = van.Van_GetBBuffer();
        krl::Triple joined(size.width, size.height);
        if (side.storedFirst)
            joinPictures(joined, stored, main, side.sideBySide);
        else
            joinPictures(joined, main, stored, side.sideBySide);
        result.push_back(std::move(joined));
    }

    van.Van_NewBuffer(size.width, size.height);
    van.Van_CreateAnimAdv(frames, kCreateMode);
    for (int i = 0; i < frames; ++i) {
        van.Van_GotoFrame(i);
        const krl::Triple& t = result[static_cast<std::size_t>(i)];
        van.Van_SetRbuffer(t.r);
        van.Van_SetGbuffer(t.g);
        van.Van_SetBbuffer(t.b);
    }
    van.Van_GotoFrame(0);
    van.Van_Refresh();
}

} // namespace kirrel::stored
