#include "masks/MaskSources.h"

#include "pixel/Filters.h"
#include "pixel/Mixing.h"

#include <algorithm>
#include <array>

namespace kirrel::masks {

namespace {

enum class Kind { Main, Swap, Primary, Negative, GreyScale, Channels, Noise, Blur };

struct SourceRow {
    const char* text;
    Kind kind;
    int channels; // for Kind::Channels: 1 R, 2 G, 3 B, 4 RG, 5 RB, 6 GB
};

constexpr int kAlphaMaskRows = 3;
constexpr int kBlurRounds = 10;
constexpr int kNoisePercent = 100;

constexpr std::array<SourceRow, 13> kSources = {{
    {"Main Buffer", Kind::Main, 0},
    {"Swap", Kind::Swap, 0},
    {"Primary Color", Kind::Primary, 0},
    {"Negative", Kind::Negative, 0},
    {"GreyScale", Kind::GreyScale, 0},
    {"Red Channel", Kind::Channels, 1},
    {"Green Channel", Kind::Channels, 2},
    {"Blue Channel", Kind::Channels, 3},
    {"Red & Green Channels", Kind::Channels, 4},
    {"Red & Blue Channels", Kind::Channels, 5},
    {"Green & Blue Channels", Kind::Channels, 6},
    {"White Noise (TV Snow)", Kind::Noise, 0},
    {"Blur", Kind::Blur, 0},
}};

QStringList textsOf(std::size_t count) {
    QStringList out;
    for (std::size_t i = 0; i < count; ++i)
        out << kSources[i].text;
    return out;
}

void fetchFrame(Vantry::Vantry_Class& van, krl::Triple& t) {
    t.r = van.Van_GetRBuffer();
    t.g = van.Van_GetGBuffer();
    t.b = van.Van_GetBBuffer();
}

} // namespace

QStringList alphaMaskSources() {
    return textsOf(kAlphaMaskRows);
}

QStringList animMaskSources() {
    return textsOf(kSources.size());
}

Rgb splitColour(int packed) {
    return {packed & 255, (packed & 65280) / 256, (packed & 16711680) / 65536};
}

void buildSource(Vantry::Vantry_Class& van, const std::string& source, SourceSizes sizes, krl::Triple& out,
                 int W, int H) {
    const auto found = std::find_if(kSources.begin(), kSources.end(),
                                    [&source](const SourceRow& r) { return source == r.text; });
    if (found == kSources.end()) {
        out = krl::Triple();
        return;
    }
    const int w = sizes == SourceSizes::Bounds ? W : W + 1;
    const int h = sizes == SourceSizes::Bounds ? H : H + 1;
    const SourceRow& row = *found;
    switch (row.kind) {
    case Kind::Main:
        fetchFrame(van, out);
        break;
    case Kind::Swap:
        out.r = van.Van_GetSwapRBuffer();
        out.g = van.Van_GetSwapGBuffer();
        out.b = van.Van_GetSwapBBuffer();
        break;
    case Kind::Primary: {
        // The frame serves as the size template; with W, H its last column and row stay the frame's.
        fetchFrame(van, out);
        const Rgb c = splitColour(van.Van_getPrimaryColor());
        krl::FillBufferColor(out.r, out.g, out.b, c.red, c.green, c.blue, w, h);
        break;
    }
    case Kind::Negative:
        fetchFrame(van, out);
        krl::Negative(out.r, out.g, out.b, w, h);
        break;
    case Kind::GreyScale:
        fetchFrame(van, out);
        krl::GreyScale(out.r, out.g, out.b, w, h);
        break;
    case Kind::Channels:
        fetchFrame(van, out);
        krl::MixBufferChannels(out.r, out.g, out.b, 0, row.channels, w, h);
        break;
    case Kind::Noise:
        fetchFrame(van, out);
        krl::WhiteNoise(out.r, out.g, out.b, kNoisePercent, W, H);
        break;
    case Kind::Blur:
        fetchFrame(van, out);
        for (int i = 0; i < kBlurRounds; ++i)
            krl::BoxBlur(out.r, out.g, out.b, out.r, out.g, out.b, W, H);
        break;
    }
}

} // namespace kirrel::masks
