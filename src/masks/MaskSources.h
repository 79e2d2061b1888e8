#pragma once
// The pictures the mask tools mix, named by the text of a source list and compared by exact string.
// Each one is built anew from the host for the frame that is current, so a run that asks for two
// sources fetches the frame twice.
//
// Where the Alpha Mask and the Animated Alpha Mask dialogs differ is in the size the colour and
// filter calls receive: on one side the upper bounds W, H (which leave the last column and row as
// the frame had them), on the other W + 1, H + 1 (the whole plane). Which side gets which is data
// of each dialog (SourceSizes), not a second copy of the table.

#include "panel/Vantry.h"
#include "pixel/Triple.h"

#include <QStringList>

#include <string>

namespace kirrel::masks {

// "Main Buffer", "Swap", "Primary Color": the Alpha Mask filter's list.
QStringList alphaMaskSources();
// Those three and ten filtered copies of the frame: the Animated Alpha Mask's list.
QStringList animMaskSources();

enum class SourceSizes {
    Bounds,     // FillBufferColor, Negative, GreyScale and MixBufferChannels get W, H
    WholePlane, // they get W + 1, H + 1
};

// The picture for the source text, at the host's bounds W, H. An unknown text leaves `out` empty.
// White noise and the blur always get W, H.
void buildSource(Vantry::Vantry_Class& van, const std::string& source, SourceSizes sizes, krl::Triple& out,
                 int W, int H);

// The primary colour split from its packed form: red, green, blue.
struct Rgb {
    int red, green, blue;
};
Rgb splitColour(int packed);

} // namespace kirrel::masks
