// The mask tools as a user meets them, through one session of the kirrel executable: the Alpha Mask
// filter (refusal after the undo, then a range), the copy into alpha, the export, the animated mask
// dialog with its refusals, and the import.

#include "host/AnimationFiles.h"
#include "masks/MaskSupport.h"
#include "pixel/Mixing.h"
#include "support/Fixtures.h"

#include <QFile>
#include <QImage>
#include <QJsonObject>

namespace kirrel::test {
namespace {

using MaskScript = ScriptTest;

constexpr int kW = 8, kH = 6;

TEST_F(MaskScript, EveryMaskToolRunsFromTheCatalogue) {
    host::Animation anim;
    anim.frames = patternFrames(3, kW, kH, 5);
    host::writeAnimationDat(at("anim.dat"), anim);
    const host::Picture swap = patternPicture(kW, kH, 77);
    host::writePictureDat(at("swap.dat"), swap);
    krl::Plane alpha(kW, kH);
    for (int y = 0; y <= kH; ++y)
        for (int x = 0; x <= kW; ++x)
            alpha.at(x, y) = x < 4 ? 0 : 255;
    host::writePlaneDat(at("alpha.dat"), alpha);

    const RunResult r = runScript(dir.path(), R"JS({"host": {"temp_dir": "tmp", "animation": "anim.dat",
        "swap": "swap.dat", "alpha": "alpha.dat"},
      "steps": [
        {"open": "Alpha Mask Filter"},
        {"set": {"control": "chkUndoSave", "value": true}},
        {"set": {"control": "cboLighter", "text": "Main Buffer"}},
        {"click": "cmd_Run"},
        {"dump": "refused"},
        {"set": {"control": "cboLighter", "text": "Swap"}},
        {"set": {"control": "optDirection(1)", "value": true}},
        {"click": "cmd_Run"},
        {"dump": "mixed"},
        {"close": "frmAlphaMask"},
        {"answer": [{"question": 1}]}, {"open": "Copy Current Frame To Alpha"},
        {"dump": "copied"},
        {"answer": [{"file": "grey.msk"}]}, {"open": "Export Anim as Animated Mask"},
        {"open": "Animated Alpha Mask Filter"},
        {"click": "cmd_Run"},
        {"answer": [{"file": "grey.msk"}]}, {"click": "cmdLoadMask"},
        {"set": {"control": "cboFrameEnd", "index": 0}},
        {"click": "cmd_Run"},
        {"set": {"control": "cboFrameEnd", "index": 2}},
        {"click": "cmd_Run"},
        {"dump": "masked"},
        {"screenshot": "animmask.png"},
        {"close": "frmAnimMask"},
        {"answer": [{"question": 1}, {"file": "grey.msk"}]}, {"open": "Import Animated Mask"},
        {"dump": "imported"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;

    // Equal sources are refused after the undo has been saved.
    EXPECT_EQ(dialogTexts(state("refused")), std::vector<std::string>{"Please Select Two Different Sources"});
    EXPECT_TRUE(QFile::exists(at("tmp/AnimUndo.dat")));
    EXPECT_EQ(dumped("refused"), anim.frames);

    // Alpha 0 keeps the swap picture (lighter), 255 the frame (darker), on every frame of the range.
    const auto mixed = dumped("mixed");
    ASSERT_EQ(mixed.size(), 3u);
    for (int f = 0; f < 3; ++f)
        for (int y = 0; y <= kH; ++y)
            for (int x = 0; x <= kW; ++x)
                ASSERT_EQ(mixed[f].g.at(x, y), (x < 4 ? swap : anim.frames[f]).g.at(x, y)) << f << x << y;
    EXPECT_EQ(state("mixed")["current_frame"].toInt(), 0);

    // The copy: the frame's brightness, but for the last row and column.
    const krl::Plane copied = host::readPlaneDat(at("copied/alpha.dat"));
    const auto& f0 = mixed[0];
    EXPECT_EQ(copied.at(1, 2), (f0.r.at(1, 2) + f0.g.at(1, 2) + f0.b.at(1, 2) + 1) / 3);
    EXPECT_EQ(copied.at(kW, 0), 255);
    EXPECT_EQ(copied.at(0, kH), 0);

    // The export, byte for byte from the mixed frames.
    std::string expected = mskHeader(kW, kH, 3);
    for (const auto& f : mixed)
        for (int y = 0; y <= kH; ++y)
            for (int x = 0; x <= kW; ++x)
                expected += static_cast<char>((f.r.at(x, y) + f.g.at(x, y) + f.b.at(x, y) + 1) / 3);
    EXPECT_EQ(readFile(at("grey.msk")), expected);

    // The animated mask dialog: its refusals in order, the loaded mask described, then the mix.
    const QJsonObject masked = state("masked");
    const std::vector<std::string> all = dialogTexts(masked);
    ASSERT_GE(all.size(), 3u);
    EXPECT_EQ(std::vector<std::string>(all.end() - 3, all.end()),
              (std::vector<std::string>{"File not found!\nPlease Load an Animated Mask to Proceed",
                                        "Select Animated Alpha Mask", "Please select more than one frame."}));
    EXPECT_EQ(controlText(masked, "frmAnimMask", "Label5"), "8 X 6 at 3 Frames");
    const auto result = dumped("masked");
    for (int f = 0; f < 3; ++f) {
        host::Picture light = mixed[f];
        krl::Plane inverted(kW, kH);
        for (int y = 0; y <= kH; ++y)
            for (int x = 0; x <= kW; ++x)
                inverted.at(x, y) = static_cast<std::uint8_t>(
                    255 -
                    static_cast<unsigned char>(expected[12 + f * (kW + 1) * (kH + 1) + y * (kW + 1) + x]));
        krl::AlphaMix(light.r, light.g, light.b, swap.r, swap.g, swap.b, inverted, kW, kH);
        EXPECT_TRUE(result[f] == light) << "frame " << f;
    }
    EXPECT_FALSE(QImage(at("animmask.png")).isNull());

    // The import: the mask as a grey animation.
    const auto imported = dumped("imported");
    ASSERT_EQ(imported.size(), 3u);
    for (int f = 0; f < 3; ++f) {
        EXPECT_EQ(bytesOf(imported[f].r), expected.substr(12 + f * (kW + 1) * (kH + 1), (kW + 1) * (kH + 1)));
        EXPECT_EQ(imported[f].b, imported[f].r);
    }
}

} // namespace
} // namespace kirrel::test
