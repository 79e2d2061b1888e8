#include "stored/CompositeRuns.h"

#include "masks/AnimMaskMod.h"
#include "masks/MaskFile.h"
#include "panel/Vantry.h"
#include "pixel/Mixing.h"
#include "stored/DataFile.h"
#include "stored/SlotFiles.h"
#include "stored/StoredFrame.h"

#include <QFile>

#include <algorithm>
#include <vector>

namespace kirrel::stored {

const std::array<CompositeMode, 6> kCompositeModes = {{
    {1, "Standard Mixing", nullptr},
    {2, "Additive", krl::AddBuffers},
    {3, "Difference", krl::DiffBuffers},
    {4, "Multiply", krl::MultiplyBuffers},
    {5, "Lighten", krl::LightenBuffers},
    {6, "Darken", krl::DarkenBuffers},
}};

int compositeModeNumber(const std::string& text) {
    const auto found = std::find_if(kCompositeModes.begin(), kCompositeModes.end(),
                                    [&text](const CompositeMode& m) { return text == m.text; });
    return found == kCompositeModes.end() ? 0 : found->number;
}

QStringList compositeModeTexts() {
    QStringList out;
    for (const CompositeMode& m : kCompositeModes)
        out << m.text;
    return out;
}

AlphaOption alphaOptionOf(const std::string& text) {
    if (text == kAlphaOptionTexts[1]) return AlphaOption::AlphaChannel;
    if (text == kAlphaOptionTexts[2]) return AlphaOption::AnimatedMask;
    return AlphaOption::None;
}

std::string strengthCaption(int stored) {
    return "Mix Strength\n(" + std::to_string(100 - stored) + "% Main, " + std::to_string(stored) +
           "% Stored)";
}

std::string tempMaskPath(const std::string& tempDir, int frame) {
    return tempDir + "/TempMask" + numberWithBlank(frame) + ".dat";
}

namespace {

// The temporary mask files go however the run ends.
class TempMasks {
  public:
    explicit TempMasks(std::string tempDir) : tempDir_(std::move(tempDir)) {}
    ~TempMasks() {
        for (int i = 0; i < count_; ++i)
            QFile::remove(QString::fromStdString(tempMaskPath(tempDir_, i)));
    }
    TempMasks(const TempMasks&) = delete;
    TempMasks& operator=(const TempMasks&) = delete;

    // The mask's frames, brought once to the host's bounds, each into a file of its own. Only the
    // frames the run can reach are written: a long mask (a few bytes a frame on disk when it is
    // small) would otherwise fill the disk with host-sized copies nobody reads.
    void prepare(const std::string& maskFile, int W, int H, int framesOfRun) {
        masks::MaskFileReader in(maskFile);
        const masks::MaskHeader h = in.header();
        krl::Plane plane, scaledG, scaledB;
        for (int i = 0; i < std::min(h.frames, framesOfRun); ++i) {
            in.readPlane(plane);
            krl::Plane scaled;
            if (plane.width() == W && plane.height() == H) {
                scaled = plane;
            } else {
                scaled = krl::Plane(W, H);
                scaledG = krl::Plane(W, H);
                scaledB = krl::Plane(W, H);
                krl::ResizeBuffer(scaled, scaledG, scaledB, plane, plane, plane, W, H, h.width, h.height);
            }
            ++count_; // counted before writing, so a half-written file is deleted too
            PlaneFileWriter out(tempMaskPath(tempDir_, i));
            out.writePlane(scaled);
            out.close();
        }
    }
    int count() const { return count_; }
    void read(int frame, krl::Plane& into, int W, int H) const {
        PlaneFileReader in(tempMaskPath(tempDir_, frame));
        in.readPlane(into, W, H);
    }

  private:
    std::string tempDir_;
    int count_ = 0;
};

} // namespace

void CompositeRun(const CompositeSettings& settings, const std::string& slotPath) {
    Vantry::Vantry_Class van;
    const int total = van.Van_GetTotalFrames();
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    const auto found =
        std::find_if(kCompositeModes.begin(), kCompositeModes.end(),
                     [&settings](const CompositeMode& m) { return m.number == settings.mode; });
    const CompositeMode* mode = found == kCompositeModes.end() ? nullptr : &*found;

    // The slot is opened (and checked whole) first, as the mask files depend on the run's length.
    StoredFrameSource stored(slotPath, W, H);
    const int frames = std::min(total, static_cast<int>(stored.header().frames));
    TempMasks masks(van.Van_GetTempDir());
    if (settings.alpha == AlphaOption::AnimatedMask) masks.prepare(settings.maskFile, W, H, frames);

    krl::Plane alpha;
    if (settings.alpha == AlphaOption::AlphaChannel) alpha = van.Van_GetABuffer();

    krl::Triple T, M;
    krl::Plane mask;
    int m = 0;
    for (int i = 0; i < frames; ++i) {
        van.Van_GotoFrame(i);
        M.r = van.Van_GetRBuffer();
        M.g = van.Van_GetGBuffer();
        M.b = van.Van_GetBBuffer();
        stored.next(T);
        if (mode && mode->operation) mode->operation(T.r, T.g, T.b, M.r, M.g, M.b, W, H);
        krl::MixBuffers(T.r, T.g, T.b, M.r, M.g, M.b, settings.stored, W, H);
        if (settings.alpha == AlphaOption::AlphaChannel) {
            krl::AlphaMix(M.r, M.g, M.b, T.r, T.g, T.b, alpha, W, H);
            T = M;
        } else if (settings.alpha == AlphaOption::AnimatedMask) {
            // A mask shorter than the run repeats from its first frame, as the animated mask
            // dialog's masks do.
            masks.read(m, mask, W, H);
            m = masks::nextMaskFrame(m, masks.count());
            krl::AlphaMix(M.r, M.g, M.b, T.r, T.g, T.b, mask, W, H);
            T = M;
        }
        van.Van_SetRbuffer(T.r);
        van.Van_SetGbuffer(T.g);
        van.Van_SetBbuffer(T.b);
    }
    van.Van_GotoFrame(0);
    van.Van_Refresh();
}

} // namespace kirrel::stored
