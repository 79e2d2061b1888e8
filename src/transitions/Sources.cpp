#include "transitions/Sources.h"

#include "pixel/Filters.h"
#include "pixel/Mixing.h"

#include <array>
#include <utility>

namespace kirrel::transitions {

namespace {
constexpr std::array<std::pair<const char*, int>, 6> kChannelSources = {{
    {"Red Channel", 1},
    {"Green Channel", 2},
    {"Blue Channel", 3},
    {"Red & Green Channels", 4},
    {"Red & Blue Channels", 5},
    {"Green & Blue Channels", 6},
}};
constexpr std::array<const char*, 4> kStoredSources = {"Stored Animation #1", "Stored Animation #2",
                                                       "Stored Animation #3", "Stored Animation #4"};

void fetchFrame(Vantry::Vantry_Class& van, krl::Triple& A) {
    A.r = van.Van_GetRBuffer();
    A.g = van.Van_GetGBuffer();
    A.b = van.Van_GetBBuffer();
}
} // namespace

int slotOfSource(const std::string& source) {
    for (std::size_t i = 0; i < kStoredSources.size(); ++i)
        if (source == kStoredSources[i]) return static_cast<int>(i);
    return -1;
}

bool isStoredSource(const std::string& source) {
    return slotOfSource(source) >= 0;
}

int channelsOfSource(const std::string& source) {
    for (const auto& [text, channels] : kChannelSources)
        if (source == text) return channels;
    return 0;
}

bool isPerFrameSource(const std::string& source) {
    return source == "GreyScale" || source == "Negative" || channelsOfSource(source) != 0;
}

void fillSourceOnce(Vantry::Vantry_Class& van, const std::string& source, krl::Triple& A, int W, int H,
                    bool colourOnSwapPlanes) {
    if (source == "Swap" || (source == "Primary Color" && colourOnSwapPlanes)) {
        A.r = van.Van_GetSwapRBuffer();
        A.g = van.Van_GetSwapGBuffer();
        A.b = van.Van_GetSwapBBuffer();
    }
    if (source == "Primary Color") {
        const int c = van.Van_getPrimaryColor();
        const int red = c & 255;
        const int green = (c & 65280) / 256;
        const int blue = (c & 16711680) / 65536;
        if (!colourOnSwapPlanes) A = krl::Triple(W, H);
        krl::FillBufferColor(A.r, A.g, A.b, red, green, blue, W + 1, H + 1);
    }
}

void fillSourcePerFrame(Vantry::Vantry_Class& van, const std::string& source, krl::Triple& A, int W, int H) {
    if (source == "Negative") {
        fetchFrame(van, A);
        krl::Negative(A.r, A.g, A.b, W + 1, H + 1);
    } else if (source == "GreyScale") {
        fetchFrame(van, A);
        krl::GreyScale(A.r, A.g, A.b, W + 1, H + 1);
    } else if (const int channels = channelsOfSource(source)) {
        fetchFrame(van, A);
        krl::MixBufferChannels(A.r, A.g, A.b, 0, channels, W + 1, H + 1);
    }
}

} // namespace kirrel::transitions
