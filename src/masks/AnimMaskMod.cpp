#include "masks/AnimMaskMod.h"

#include "masks/MaskSources.h"
#include "panel/Numeric.h"
#include "pixel/Mixing.h"
#include "stored/DataFile.h"
#include "stored/SlotFiles.h"
#include "stored/WholeAnimationLimit.h"

#include <optional>
#include <stdexcept>

namespace kirrel::masks {

namespace {

constexpr short kCreateMode = 2;
// The host counts frames in 16 bits (the reader refuses larger pictures itself).
constexpr int kHostLimit = 32767;

void refuseDamaged(Vantry::Vantry_Class& van, const stored::DamagedFile& e) {
    van.Van_MessageBox(std::string("The mask can't be imported.\n\n") + e.what() +
                       "\nThe animation in memory is unchanged.");
}

} // namespace

void AMaskExport() {
    Vantry::Vantry_Class van;
    const std::int32_t frames = van.Van_GetTotalFrames();
    const std::int32_t height = van.Van_BufferHeight();
    const std::int32_t width = van.Van_BufferWidth();
    // Only the size of the alpha plane is of use: every pixel of it is overwritten.
    krl::Plane work = van.Van_GetABuffer();
    const std::string path = van.Van_RequestFile_save(kSaveMaskTitle, "", kMaskFilter);
    if (path.empty()) return;

    MaskFileWriter out(path, MaskHeader{width, height, frames});
    for (int frame = 0; frame < frames; ++frame) {
        van.Van_GotoFrame(frame);
        const krl::Plane r = van.Van_GetRBuffer();
        const krl::Plane g = van.Van_GetGBuffer();
        const krl::Plane b = van.Van_GetBBuffer();
        if (work.width() != width || work.height() != height) work = krl::Plane(width, height);
        meanPlane(work, r, g, b);
        out.writePlane(work);
    }
    out.close();
    van.Van_GotoFrame(0);
    van.Van_Refresh();
}

void AMaskImport() {
    Vantry::Vantry_Class van;
    (void)van.Van_GetTotalFrames();
    const std::string path = van.Van_RequestFile_open(kImportMaskTitle, "", kMaskFilter);
    if (path.empty() || !stored::fileExists(path)) return;

    std::optional<MaskFileReader> in;
    try {
        in.emplace(path);
        const MaskHeader& h = in->header();
        if (h.frames > kHostLimit)
            throw stored::DamagedFile(path, "its header gives a size larger than an animation can have");
    } catch (const stored::DamagedFile& e) {
        refuseDamaged(van, e);
        return;
    }
    const MaskHeader h = in->header();
    van.Van_NewBuffer(h.width, h.height);
    van.Van_CreateAnimAdv(h.frames, kCreateMode);
    krl::Plane plane;
    for (int frame = 0; frame < h.frames; ++frame) {
        van.Van_GotoFrame(frame);
        in->readPlane(plane);
        van.Van_SetRbuffer(plane);
        van.Van_SetGbuffer(plane);
        van.Van_SetBbuffer(plane);
    }
    van.Van_GotoFrame(0);
    van.Van_Refresh();
}

std::vector<int> nearestIndices(int target, int source) {
    std::vector<int> out(static_cast<std::size_t>(target) + 1);
    for (int i = 0; i <= target; ++i)
        out[static_cast<std::size_t>(i)] = toInt32(divide(i, target) * source);
    return out;
}

std::vector<krl::Plane> loadScaledMask(const std::string& path, int W, int H) {
    MaskFileReader in(path);
    const MaskHeader h = in.header();
    const long long bytes = stored::wholeAnimationBytes(h.frames, 1, W, H);
    if (!stored::fitsInMemory(bytes)) throw std::length_error(stored::tooLargeMessage(bytes));

    std::vector<krl::Plane> mask;
    mask.reserve(static_cast<std::size_t>(h.frames));
    const bool sameSize = h.width == W && h.height == H;
    std::vector<int> sx, sy;
    if (!sameSize) {
        sx = nearestIndices(W, h.width);
        sy = nearestIndices(H, h.height);
    }
    krl::Plane plane;
    for (int f = 0; f < h.frames; ++f) {
        in.readPlane(plane);
        if (sameSize) {
            mask.push_back(plane);
            plane = krl::Plane(); // the next frame gets a buffer of its own
            continue;
        }
        krl::Plane scaled(W, H);
        for (int y = 0; y <= H; ++y) {
            std::uint8_t* out = scaled.row(y);
            const std::uint8_t* src = plane.row(sy[static_cast<std::size_t>(y)]);
            for (int x = 0; x <= W; ++x)
                out[x] = src[sx[static_cast<std::size_t>(x)]];
        }
        mask.push_back(std::move(scaled));
    }
    return mask;
}

void AnimMask(const std::string& maskFile, const std::string& lighter, const std::string& darker, int start,
              int end) {
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    const std::vector<krl::Plane> mask = loadScaledMask(maskFile, W, H);
    const int frames = static_cast<int>(mask.size());

    krl::Triple light, dark;
    krl::Plane inverted(W, H);
    int m = 0;
    for (int frame = start; frame <= end; ++frame) {
        van.Van_GotoFrame(frame);
        buildSource(van, lighter, SourceSizes::Bounds, light, W, H);
        buildSource(van, darker, SourceSizes::WholePlane, dark, W, H);
        // The mask holds brightness; the mix wants 255 for the darker source, hence the inversion.
        const krl::Plane& source = mask[static_cast<std::size_t>(m)];
        std::uint8_t* out = inverted.data();
        const std::uint8_t* in = source.data();
        for (std::size_t i = 0; i < inverted.size(); ++i)
            out[i] = static_cast<std::uint8_t>(255 - in[i]);
        krl::AlphaMix(light.r, light.g, light.b, dark.r, dark.g, dark.b, inverted, W, H);
        m = nextMaskFrame(m, frames);
        van.Van_SetRbuffer(light.r);
        van.Van_SetGbuffer(light.g);
        van.Van_SetBbuffer(light.b);
    }
}

} // namespace kirrel::masks
