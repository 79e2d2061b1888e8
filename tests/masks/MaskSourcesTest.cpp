// The mask dialogs' sources: the size their colour and filter calls get differs by side (the
// upper bounds leave the last column and row as the frame had them, the whole plane doesn't), and
// the blur ignores the side.

#include "masks/MaskSources.h"
#include "masks/MaskSupport.h"

#include <tuple>

namespace kirrel::test {
namespace {

std::tuple<int, int, int> pixel(const krl::Triple& t, int x, int y) {
    return {t.r.at(x, y), t.g.at(x, y), t.b.at(x, y)};
}

class MaskSource : public HostTest, public testing::WithParamInterface<const char*> {};

TEST_P(MaskSource, TheBoundsSideLeavesTheLastColumnAndRowTheWholePlaneSideDoesNot) {
    const host::Picture frame = patternPicture(6, 4, 17);
    host().loadAnimation({frame});
    host().setPrimaryPacked(0x0A141E);
    Vantry::Vantry_Class van;
    krl::Triple bounds, whole;
    masks::buildSource(van, GetParam(), masks::SourceSizes::Bounds, bounds, 6, 4);
    masks::buildSource(van, GetParam(), masks::SourceSizes::WholePlane, whole, 6, 4);

    // Inside, both sides agree and the source has changed the frame.
    EXPECT_EQ(pixel(bounds, 2, 1), pixel(whole, 2, 1));
    EXPECT_NE(pixel(bounds, 2, 1), pixel(frame, 2, 1));
    for (const auto& [x, y] : {std::pair{6, 0}, std::pair{0, 4}, std::pair{6, 4}}) {
        EXPECT_EQ(pixel(bounds, x, y), pixel(frame, x, y)) << x << "," << y;
        EXPECT_NE(pixel(whole, x, y), pixel(frame, x, y)) << x << "," << y;
    }
}

INSTANTIATE_TEST_SUITE_P(SizedCalls, MaskSource,
                         testing::Values("Primary Color", "Negative", "GreyScale", "Red Channel",
                                         "Green & Blue Channels"),
                         [](const auto& i) {
                             std::string name = i.param;
                             std::erase_if(
                                 name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); });
                             return name;
                         });

TEST_F(MaskSource, TheBlurAndTheBuffersIgnoreTheSideAndTheListsHoldTheirEntries) {
    host().loadAnimation({patternPicture(6, 4, 17)});
    host().loadSwap(patternPicture(6, 4, 99));
    Vantry::Vantry_Class van;
    for (const char* source : {"Blur", "Main Buffer", "Swap"}) {
        krl::Triple bounds, whole;
        masks::buildSource(van, source, masks::SourceSizes::Bounds, bounds, 6, 4);
        masks::buildSource(van, source, masks::SourceSizes::WholePlane, whole, 6, 4);
        EXPECT_TRUE(bounds == whole) << source;
    }
    EXPECT_TRUE(host().swapPicture() == [&] {
        krl::Triple t;
        masks::buildSource(van, "Swap", masks::SourceSizes::Bounds, t, 6, 4);
        return t;
    }());
    EXPECT_EQ(masks::alphaMaskSources(), (QStringList{"Main Buffer", "Swap", "Primary Color"}));
    EXPECT_EQ(masks::animMaskSources().size(), 13);
    EXPECT_EQ(masks::animMaskSources().last(), "Blur");
    EXPECT_EQ(masks::splitColour(0x0A141E).red, 0x1E);
    EXPECT_EQ(masks::splitColour(0x0A141E).blue, 0x0A);
}

} // namespace
} // namespace kirrel::test
