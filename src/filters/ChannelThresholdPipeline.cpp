#include "filters/ChannelThresholdPipeline.h"

#include "panel/Numeric.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"

#include <algorithm>
#include <cstdlib>

namespace kirrel::filters {

namespace {

template <void (*Op)(krl::Plane&, krl::Plane&, krl::Plane&, const krl::Plane&, const krl::Plane&,
                     const krl::Plane&, int, int)>
void library(krl::Triple& p, const krl::Triple& c, int w, int h) {
    Op(p.r, p.g, p.b, c.r, c.g, c.b, w, h);
}

std::uint8_t half(int a, int b) {
    return static_cast<std::uint8_t>(roundHalfEven((a + b) / 2.0));
}
std::uint8_t sum(int a, int b) {
    return static_cast<std::uint8_t>(std::min(a + b, 255));
}
std::uint8_t difference(int a, int b) {
    return static_cast<std::uint8_t>(std::abs(b - a));
}
std::uint8_t darker(int a, int b) {
    return static_cast<std::uint8_t>(std::min(a, b));
}
std::uint8_t lighter(int a, int b) {
    return static_cast<std::uint8_t>(std::max(a, b));
}
std::uint8_t product(int a, int b) {
    return static_cast<std::uint8_t>(roundHalfEven(a * b / 255.0));
}

void mixPlane(krl::Plane& q, const krl::Plane& c, int n, std::uint8_t (*rule)(int, int)) {
    for (int y = 0; y <= n; ++y) {
        std::uint8_t* a = q.row(y);
        const std::uint8_t* b = c.row(y);
        for (int x = 0; x <= n; ++x)
            a[x] = rule(a[x], b[x]);
    }
}

} // namespace

const std::vector<ChannelMix>& channelMixes() {
    static const std::vector<ChannelMix> mixes{
        {"Default", library<krl::FiftyMixBuffers>, half},
        {"Additive", library<krl::AddBuffers>, sum},
        {"Difference", library<krl::DiffBuffers>, difference},
        {"Darken", library<krl::DarkenBuffers>, darker},
        {"Lighten", library<krl::LightenBuffers>, lighter},
        {"Multiply", library<krl::MultiplyBuffers>, product},
    };
    return mixes;
}

const ChannelMix* findChannelMix(const std::string& text) {
    const auto& mixes = channelMixes();
    const auto found =
        std::find_if(mixes.begin(), mixes.end(), [&text](const ChannelMix& m) { return text == m.text; });
    return found == mixes.end() ? nullptr : &*found;
}

void cutChannels(krl::Triple& P, const krl::Triple& C, const ChannelThresholdSettings& s, int W, int H) {
    krl::Threshold(P.r, s.red ? s.redLevel : kNoByteReaches, W, H);
    krl::Threshold(P.g, s.green ? s.greenLevel : kNoByteReaches, W, H);
    krl::Threshold(P.b, s.blue ? s.blueLevel : kNoByteReaches, W, H);
    if (s.grey) krl::GreyThreshold(P.r, P.g, P.b, C.r, C.g, C.b, s.greyLevel, W, H);
}

void channelThresholdPreview(krl::Triple& Q, const krl::Triple& C, const ChannelThresholdSettings& s, int n) {
    if (!s.anyChecked()) return;
    krl::Threshold(Q.r, s.red ? s.redLevel : kNoByteReaches, n, n);
    krl::Threshold(Q.g, s.green ? s.greenLevel : kNoByteReaches, n, n);
    krl::Threshold(Q.b, s.blue ? s.blueLevel : kNoByteReaches, n, n);
    if (s.grey) {
        for (int y = 0; y <= n; ++y)
            for (int x = 0; x <= n; ++x) {
                const std::uint8_t GreyLevel = toByte((C.r.at(x, y) + C.g.at(x, y) + C.b.at(x, y)) / 3.0);
                // At or above the slider the pixel goes halfway to white, below it halfway to black.
                const bool light = s.greyLevel <= GreyLevel;
                for (krl::Plane* q : {&Q.r, &Q.g, &Q.b}) {
                    const int v = q->at(x, y);
                    q->at(x, y) = toByte(light ? (v + 255) / 2.0 : v / 2.0);
                }
            }
    }
    if (const ChannelMix* mix = findChannelMix(s.mixing)) {
        mixPlane(Q.r, C.r, n, mix->preview);
        mixPlane(Q.g, C.g, n, mix->preview);
        mixPlane(Q.b, C.b, n, mix->preview);
    }
}

} // namespace kirrel::filters
