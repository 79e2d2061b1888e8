#include "exchange/Layer2PNG.h"

#include "exchange/BatchText.h"
#include "exchange/ConverterFiles.h"
#include "exchange/ConverterRun.h"
#include "panel/Numeric.h"

#include <cstdio>
#include <fstream>

namespace kirrel::exchange {

namespace {
void put32(std::vector<std::uint8_t>& out, std::size_t at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        out[at + i] = static_cast<std::uint8_t>((v >> (8 * i)) & 255);
}
} // namespace

int layerRowBytes(int width) {
    const int bytes = width * 3;
    return bytes + (4 - bytes % 4) % 4;
}

std::vector<std::uint8_t> layerBitmapBytes(const krl::Plane& r, const krl::Plane& g, const krl::Plane& b,
                                           int width, int height, const std::function<void(int y)>& onRow) {
    if (width < 0 || height < 0) throw std::invalid_argument("Invalid picture size");
    const auto tooSmall = [width, height](const krl::Plane& p) {
        return p.cols() < width || p.rows() < height;
    };
    if (width > 0 && height > 0 && (tooSmall(r) || tooSmall(g) || tooSmall(b)))
        throw std::out_of_range("Subscript out of range");
    const int rowBytes = layerRowBytes(width);
    std::vector<std::uint8_t> out(54 + static_cast<std::size_t>(rowBytes) * height, 0);
    out[0] = 'B';
    out[1] = 'M';
    put32(out, 2, static_cast<std::uint32_t>(out.size()));
    put32(out, 10, 54);
    put32(out, 14, 40);
    put32(out, 18, static_cast<std::uint32_t>(width));
    put32(out, 22, static_cast<std::uint32_t>(height));
    out[26] = 1;
    out[28] = 24;
    std::size_t at = 54;
    for (int y = height - 1; y >= 0; --y) {
        for (int x = 0; x < width; ++x) {
            const std::size_t px = at + 3 * static_cast<std::size_t>(x);
            out[px] = b.at(x, y);
            out[px + 1] = g.at(x, y);
            out[px + 2] = r.at(x, y);
        }
        at += rowBytes;
        if (onRow) onRow(y);
    }
    return out;
}

void makeMask(krl::Plane& r, krl::Plane& g, krl::Plane& b, MaskSource source, std::uint32_t primary,
              const krl::Plane& alpha, std::uint8_t opacity) {
    const auto pr = static_cast<std::uint8_t>(primary & 255);
    const auto pg = static_cast<std::uint8_t>((primary >> 8) & 255);
    const auto pb = static_cast<std::uint8_t>((primary >> 16) & 255);
    std::uint8_t* rp = r.data();
    std::uint8_t* gp = g.data();
    std::uint8_t* bp = b.data();
    for (int y = 0; y < r.rows(); ++y) {
        for (int x = 0; x < r.cols(); ++x) {
            const std::size_t i = static_cast<std::size_t>(y) * r.cols() + x;
            std::uint8_t v = opacity;
            if (source == MaskSource::PrimaryColour)
                v = (rp[i] == pr && gp[i] == pg && bp[i] == pb) ? 0 : 255;
            else if (source == MaskSource::AlphaChannel)
                v = (x < alpha.cols() && y < alpha.rows()) ? alpha.at(x, y) : 0;
            rp[i] = gp[i] = bp[i] = v;
        }
    }
}

void WriteLayerBitmap(Vantry::Vantry_Class& van, short isMain, int layer, MaskSource source) {
    const std::uint32_t primary = static_cast<std::uint32_t>(van.Van_getPrimaryColor());
    const std::string target = van.Van_GetTempDir() + (isMain != 0 ? "/png_main.bmp" : "/png_mask.bmp");
    const int w = van.Van_BufferWidth();
    const int h = van.Van_BufferHeight();
    krl::Plane r = van.Van_GetLayerR(layer);
    krl::Plane g = van.Van_GetLayerG(layer);
    krl::Plane b = van.Van_GetLayerB(layer);
    const krl::Plane alpha = van.Van_GetABuffer();
    const std::uint8_t opacity = van.Van_GetLayerOpacity();
    if (isMain == 0) makeMask(r, g, b, source, primary, alpha, opacity);
    const double base = isMain == 0 ? 0 : 45;
    const std::vector<std::uint8_t> bytes =
        layerBitmapBytes(r, g, b, w, h, [&](int y) { van.Van_SetProgress(divide(y, h) * 45 + base); });
    // Errors while writing are passed over: the converter then finds no file and makes no PNG.
    std::ofstream out(target, std::ios::binary | std::ios::trunc);
    if (out)
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void ExportLayerPNG(Vantry::Vantry_Class& van, MaskSource source) {
    van.Van_GetLayerCount();
    const int layer = van.Van_GetCurrentLayer();
    van.Van_GetLayerOpacity();
    van.Van_GetLayerR(layer);
    van.Van_GetLayerG(layer);
    van.Van_GetLayerB(layer);
    const int height = van.Van_BufferHeight();
    const int width = van.Van_BufferWidth();
    const std::string out = van.Van_RequestFile_save("Export Layer as PNG", "", "png(*.png)|*.png");
    if (out.empty()) return;
    const std::string temp = van.Van_GetTempDir();
    const std::string app = van.Van_GetAppDir();
    const WorkingFiles working(temp);
    OutputStage output(out, OutputCheck::Kind::Png);
    WriteLayerBitmap(van, 0, layer, source);
    WriteLayerBitmap(van, 1, layer, source);
    // The batch's bare names are resolved in the temporary folder: the runner is started there.
    writeBatchFile(temp + "/" + kPngConvertBat, batchBytes(pngConvertBatch(app, output.inBatch())));
    ConverterRun run(temp, app);
    run.redirect(output.inBatch(), output.staged());
    run.start(kPngConvertBat);
    run.waitGone("png_main.bmp");
    van.Van_SetProgress(70);
    run.waitGone("png_mask.bmp");
    van.Van_SetProgress(80);
    run.waitGone(kPngConvertBat);
    van.Van_SetProgress(0);
    if (const auto failure = run.finish()) {
        van.Van_MessageBox(failureText(*failure));
    } else if (const auto why = output.commit({OutputCheck::Kind::Png, width, height})) {
        van.Van_MessageBox("The converter's result does not check out: " + *why +
                           ".\nThe PNG was not written.");
    }
}

} // namespace kirrel::exchange
