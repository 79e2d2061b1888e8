#pragma once
// The pictures of the Channel Threshold filter, apart from its dialog.
//
// The real run cuts the frame's channels with the library and mixes by the library's operations; the
// preview has loops of its own for the grey cut and the mixes, which is why its arithmetic is spelled
// out here (Additive holds at 255, Default and Multiply round half to even). The two also differ in
// what an unchecked channel means: the run cuts it at 256, which no byte reaches, so the channel goes
// to one value; the preview shows the frame untouched while no box is checked at all.

#include "pixel/Triple.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kirrel::filters {

// One entry of "Mixing" after "None": the library's operation for the run (P first, C second) and
// the preview's own rule for one byte, a of the cut picture and b of the unfiltered one.
struct ChannelMix {
    const char* text;
    void (*run)(krl::Triple& p, const krl::Triple& c, int w, int h);
    std::uint8_t (*preview)(int a, int b);
};

const std::vector<ChannelMix>& channelMixes();
// The mix whose text is exactly `text`; nullptr for "None" and anything else.
const ChannelMix* findChannelMix(const std::string& text);

// The level a channel is cut at: its slider when its box is checked, else 256.
constexpr int kNoByteReaches = 256;

struct ChannelThresholdSettings {
    bool red = false, green = false, blue = false, grey = false;
    int redLevel = 128, greenLevel = 128, blueLevel = 128, greyLevel = 128;
    std::string mixing = "None";

    bool anyChecked() const { return red || green || blue || grey; }
};

// The run's steps two to four on P (bounds W, H), C holding the unfiltered picture. fetchAgain gives
// the unfiltered frame anew for the mix.
template <class Fetch>
void channelThresholdRun(krl::Triple& P, const krl::Triple& C, const ChannelThresholdSettings& s, int W,
                         int H, Fetch fetchAgain);
void cutChannels(krl::Triple& P, const krl::Triple& C, const ChannelThresholdSettings& s, int W, int H);

// The preview on Q (bounds n, n); C is Q's unfiltered copy. Leaves Q as it is when no box is checked.
void channelThresholdPreview(krl::Triple& Q, const krl::Triple& C, const ChannelThresholdSettings& s, int n);

template <class Fetch>
void channelThresholdRun(krl::Triple& P, const krl::Triple& C, const ChannelThresholdSettings& s, int W,
                         int H, Fetch fetchAgain) {
    cutChannels(P, C, s, W, H);
    if (const ChannelMix* mix = findChannelMix(s.mixing)) {
        // The mix takes the frame afresh from the host rather than the copy made before the cut.
        const krl::Triple fresh = fetchAgain();
        mix->run(P, fresh, W, H);
    }
}

} // namespace kirrel::filters
