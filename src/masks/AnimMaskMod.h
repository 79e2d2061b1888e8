#pragma once
// Animated masks: the animation written out as a .msk file, a .msk read back as a grey animation,
// and the mix of two sources frame by frame through a mask.

#include "masks/MaskFile.h"

#include <string>
#include <vector>

namespace kirrel::masks {

inline constexpr const char* kSaveMaskTitle = "Save Animated Alpha Mask";
inline constexpr const char* kImportMaskTitle = "Import Animated Alpha Mask";
inline constexpr const char* kSelectMaskTitle = "Select Animated Alpha Mask";

// Writes every frame's brightness to a file the user names; ends on frame 0.
void AMaskExport();
// Replaces the animation, without a question and without undo, by the grey frames of a mask file
// the user names; ends on frame 0. A damaged file is refused with a message before anything changes.
void AMaskImport();

// The nearest-neighbour source index for each target index 0..target: round(i / target * source),
// so that the last target index reaches the last source index exactly.
std::vector<int> nearestIndices(int target, int source);

// Every frame of the mask at the host's bounds W, H: copied when the sizes agree, otherwise scaled
// by nearest neighbour. Throws DamagedFile for a damaged file and std::length_error (with the
// refusal's text) when the scaled mask would not fit the memory limit.
std::vector<krl::Plane> loadScaledMask(const std::string& path, int W, int H);

// The mask frame the run uses after mask frame m: the next one, and frame 0 after the last, so a
// 2-frame mask over 5 frames gives 0, 1, 0, 1, 0.
inline int nextMaskFrame(int m, int frames) {
    return m >= frames - 1 ? 0 : m + 1;
}

// Mixes the two sources through the mask over frames start..end; the range's first frame gets mask
// frame 0. Light parts of the mask keep the lighter source.
void AnimMask(const std::string& maskFile, const std::string& lighter, const std::string& darker, int start,
              int end);

} // namespace kirrel::masks
