#pragma once
// Blending a stored animation into the host's frame by frame: one of six mixing modes, a strength,
// and optionally a mask (the alpha plane of the frame current at Apply, or an animated mask file).

#include "pixel/Plane.h"

#include <QStringList>

#include <array>
#include <string>

namespace kirrel::stored {

using ModeOperation = void (*)(krl::Plane&, krl::Plane&, krl::Plane&, const krl::Plane&, const krl::Plane&,
                               const krl::Plane&, int, int);

struct CompositeMode {
    int number;
    const char* text;
    ModeOperation operation; // run before the mix; none for plain mixing
};

extern const std::array<CompositeMode, 6> kCompositeModes;
// The mode number for a list text, 0 for none.
int compositeModeNumber(const std::string& text);
QStringList compositeModeTexts();

enum class AlphaOption { None, AlphaChannel, AnimatedMask };
inline constexpr std::array<const char*, 3> kAlphaOptionTexts = {"No Alpha Masking", "Use Alpha Channel",
                                                                 "Load Animated Alpha"};
AlphaOption alphaOptionOf(const std::string& text);

// "Mix Strength", a line feed, "(50% Main, 50% Stored)": the stored share is the slider's value.
std::string strengthCaption(int stored);

// tempDir + "/TempMask 3.dat": where the scaled frame 3 of an animated mask waits for the run.
std::string tempMaskPath(const std::string& tempDir, int frame);

struct CompositeSettings {
    int mode = 1;    // 1 to 6, as in kCompositeModes
    int stored = 50; // share of the stored frame, 1 to 100
    AlphaOption alpha = AlphaOption::None;
    std::string maskFile; // for AlphaOption::AnimatedMask
};

// The run over frames 0 to the shorter of the two animations; ends on frame 0. Temporary mask files
// are written once before the frames and deleted afterwards, however the run ends.
void CompositeRun(const CompositeSettings& settings, const std::string& slotPath);

} // namespace kirrel::stored
