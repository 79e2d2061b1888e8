#pragma once
// Animated GIF import. The GIF is never parsed here: the converter writes the coalesced frames into
// numbered files, the files are counted to learn the frame count, and each is read and removed in
// turn. The direct way reads the numbered GIFs; the older way goes through PNG to bitmaps. Both
// replace the host's animation without a question.

#include "panel/Vantry.h"

namespace kirrel::exchange {

inline constexpr const char* kImportFailed = "Import Failed, Must be Animated Gif.";

void ImportGifDirect(Vantry::Vantry_Class& van);
void ImportGifViaPNG(Vantry::Vantry_Class& van);

} // namespace kirrel::exchange
