// Playing a CFX file: the key colours of the file decide where the animation's frame and where the
// swap picture show, the file scales to the animation's size but not in time, and the swap picture
// is read once.

#include "customfx/CfxFile.h"
#include "customfx/CfxSupport.h"
#include "customfx/CustomFX.h"

namespace kirrel::test {
namespace {

constexpr std::uint32_t kKeyA = 0x10F020; // the file's primary key
constexpr std::uint32_t kKeyB = 0x804000; // the file's secondary key
constexpr std::uint32_t kOther = 0x0000FF;

class CfxPlay : public HostTest {
  protected:
    std::string path() const { return scratch.filePath("fx.cfx").toStdString(); }
    void writeCfx(int frames, int w, int h) {
        std::vector<host::Picture> recipes;
        for (int i = 0; i < frames; ++i)
            recipes.push_back(recipe(w, h, (w + 1) / 2, kKeyA, kKeyB, kOther));
        writeFile(QString::fromStdString(path()), cfxBytes("Half and half" + std::string(17, ' '), recipes,
                                                           {kKeyA & 255, (kKeyA >> 8) & 255, kKeyA >> 16,
                                                            kKeyB & 255, (kKeyB >> 8) & 255, kKeyB >> 16}));
    }
    void loadScene(int frames, int w, int h) {
        pictures = patternFrames(frames, w, h, 5);
        host().loadAnimation(pictures, 2);
        swap = patternPicture(w, h, 200);
        host().loadSwap(swap);
        // The host's own colours are other than the file's: the file's win.
        host().setPrimaryPacked(kKeyB);
        host().setSecondaryPacked(kKeyA);
    }
    const host::Picture& frame(int f) const { return host().framePicture(f); }
    std::vector<host::Picture> pictures;
    host::Picture swap;
};

TEST_F(CfxPlay, KeysOfTheFileChooseFrameOrSwapAndOtherColoursShowAsTheyAre) {
    writeCfx(3, 7, 4);
    loadScene(3, 7, 4);
    customfx::PlayCFX(path());
    for (int f = 0; f < 3; ++f) {
        const host::Picture& p = frame(f);
        const host::Picture& own = pictures[static_cast<std::size_t>(f)];
        for (int y = 0; y <= 4; ++y) {
            for (int x = 0; x < 4; ++x)
                ASSERT_EQ(pixel(p, x, y), pixel(own, x, y)) << f << ": " << x << "," << y;
            ASSERT_EQ(pixel(p, 4, y), kOther);
            for (int x = 5; x <= 7; ++x)
                ASSERT_EQ(pixel(p, x, y), pixel(swap, x, y)) << f << ": " << x << "," << y;
        }
    }
    EXPECT_EQ(calls("Van_GetSwapRBuffer").size(), 1u);
    EXPECT_EQ(host().currentFrame(), 0);
    EXPECT_EQ(host().primaryColor(), kKeyB); // playing doesn't change the host's colours
    EXPECT_TRUE(calls("Van_Lock").empty());
}

TEST_F(CfxPlay, TheFileIsNotStretchedInTime) {
    // A longer file stops with the animation; a shorter one leaves the later frames as they are.
    writeCfx(40, 5, 3);
    loadScene(25, 5, 3);
    customfx::PlayCFX(path());
    EXPECT_EQ(calls("Van_GotoFrame").size(), 26u); // frames 0 to 24, then back to 0
    EXPECT_EQ(calls("Van_GotoFrame")[24], "Van_GotoFrame(24)");
    for (int f : {0, 24})
        EXPECT_EQ(pixel(frame(f), 5, 0), pixel(swap, 5, 0)) << f;

    writeCfx(25, 5, 3);
    loadScene(40, 5, 3);
    customfx::PlayCFX(path());
    EXPECT_EQ(pixel(frame(24), 5, 0), pixel(swap, 5, 0));
    for (int f = 25; f < 40; ++f)
        EXPECT_EQ(frame(f), pictures[static_cast<std::size_t>(f)]) << f;
}

class CfxScaling : public CfxPlay, public testing::WithParamInterface<std::pair<int, int>> {};

TEST_P(CfxScaling, TheFileIsScaledToTheAnimationsSize) {
    // A recipe of one size on an animation of another, larger or smaller: the left part still shows
    // the animation's frame and the right part the swap picture.
    const auto [fileW, animW] = GetParam();
    writeCfx(2, fileW, fileW * 3 / 4);
    loadScene(2, animW, animW * 3 / 4);
    customfx::PlayCFX(path());
    const int h = animW * 3 / 4;
    for (int f = 0; f < 2; ++f)
        for (int y : {0, h / 2, h}) {
            EXPECT_EQ(pixel(frame(f), 1, y), pixel(pictures[static_cast<std::size_t>(f)], 1, y))
                << f << "," << y;
            EXPECT_EQ(pixel(frame(f), animW - 1, y), pixel(swap, animW - 1, y)) << f << "," << y;
        }
    EXPECT_EQ(frame(0).width(), animW);
}

INSTANTIATE_TEST_SUITE_P(Sizes, CfxScaling,
                         testing::Values(std::pair{31, 63}, std::pair{63, 31}, std::pair{319, 639},
                                         std::pair{40, 43}));

} // namespace
} // namespace kirrel::test
