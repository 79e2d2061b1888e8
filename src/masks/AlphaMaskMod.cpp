#include "masks/AlphaMaskMod.h"

#include "masks/MaskSources.h"
#include "panel/Numeric.h"
#include "pixel/Mixing.h"

#include <algorithm>

namespace kirrel::masks {

namespace {

// The host's alpha display is rebuilt after each change of the plane.
void showAlpha(Vantry::Vantry_Class& van) {
    van.Van_AlphaOff();
    van.Van_AlphaOn();
    van.Van_InitMarquee();
}

constexpr int kProgressEvery = 20;

void sendToAlpha(bool fromSwap) {
    Vantry::Vantry_Class van;
    const std::int16_t H = van.Van_BufferHeight();
    const std::int16_t W = van.Van_BufferWidth();
    van.Van_AlphaOn();
    const krl::Plane R = fromSwap ? van.Van_GetSwapRBuffer() : van.Van_GetRBuffer();
    const krl::Plane G = fromSwap ? van.Van_GetSwapGBuffer() : van.Van_GetGBuffer();
    const krl::Plane B = fromSwap ? van.Van_GetSwapBBuffer() : van.Van_GetBBuffer();
    krl::Plane alpha = van.Van_GetABuffer();
    van.Van_SaveUndo();

    // The loop stops one short of the bounds on purpose: the last row and column keep their values.
    // A swap picture of another size is read only as far as every plane reaches.
    const int lastY = std::min({static_cast<int>(H), alpha.height(), R.height(), G.height(), B.height()});
    const int lastX = std::min({static_cast<int>(W), alpha.width(), R.width(), G.width(), B.width()});
    std::uint8_t* a = alpha.data();
    for (int y = 0; y < lastY; ++y) {
        std::uint8_t* out = a + static_cast<std::size_t>(y) * alpha.cols();
        const std::uint8_t* r = R.row(y);
        const std::uint8_t* g = G.row(y);
        const std::uint8_t* b = B.row(y);
        for (int x = 0; x < lastX; ++x)
            out[x] = toByte((static_cast<double>(r[x]) + g[x] + b[x]) / 3.0);
        if (y % kProgressEvery == 1) van.Van_SetProgress(divide(100.0, H) * y);
    }

    van.Van_SetProgress(0);
    van.Van_SetAbuffer(alpha);
    showAlpha(van);
}

} // namespace

void AlphaMask(const std::string& lighter, const std::string& darker) {
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    const krl::Plane alpha = van.Van_GetABuffer();
    krl::Triple dark, light;
    buildSource(van, darker, SourceSizes::Bounds, dark, W, H);
    buildSource(van, lighter, SourceSizes::WholePlane, light, W, H);
    van.Van_SaveUndo();
    krl::AlphaMix(light.r, light.g, light.b, dark.r, dark.g, dark.b, alpha, W, H);
    van.Van_SetProgress(0);
    van.Van_SetRbuffer(light.r);
    van.Van_SetGbuffer(light.g);
    van.Van_SetBbuffer(light.b);
    showAlpha(van);
    van.Van_Refresh();
}

void SendMain2Alpha() {
    sendToAlpha(false);
}

void SendSwap2Alpha() {
    sendToAlpha(true);
}

} // namespace kirrel::masks
