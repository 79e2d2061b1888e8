// The bitmaps: the files written for the dialogs' frames and the PNG export's layers and masks, and
// the reader of the converter's frame bitmaps, on good files of every header size and on damaged ones.

#include "exchange/BitmapReader.h"
#include "exchange/Layer2PNG.h"
#include "filters/DibLayout.h"
#include "support/Support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace kirrel::test {
namespace {

using exchange::BitmapFile;

void put(std::vector<std::uint8_t>& b, std::size_t at, std::uint32_t v, int bytes = 4) {
    if (b.size() < at + bytes) b.resize(at + bytes, 0);
    for (int i = 0; i < bytes; ++i)
        b[at + i] = static_cast<std::uint8_t>((v >> (8 * i)) & 255);
}

// A bitmap with the given information header size; pixels and table as given.
std::vector<std::uint8_t> bitmap(int headerSize, int w, int h, int bits,
                                 const std::vector<std::uint32_t>& table,
                                 const std::vector<std::uint8_t>& rows, int compression = 0, int gap = 0) {
    std::vector<std::uint8_t> b(14 + headerSize, 0);
    b[0] = 'B';
    b[1] = 'M';
    const std::uint32_t offset = 14 + headerSize + 4 * static_cast<std::uint32_t>(table.size()) + gap;
    put(b, 10, offset);
    put(b, 14, headerSize);
    put(b, 18, static_cast<std::uint32_t>(w));
    put(b, 22, static_cast<std::uint32_t>(h));
    put(b, 26, 1, 2);
    put(b, 28, bits, 2);
    put(b, 30, compression);
    put(b, 46, static_cast<std::uint32_t>(table.size()));
    for (std::uint32_t e : table)
        put(b, b.size(), e);
    b.resize(offset, 0);
    b.insert(b.end(), rows.begin(), rows.end());
    put(b, 2, static_cast<std::uint32_t>(b.size()));
    return b;
}

// The two writers of 24-bit bitmaps, the dialogs' frame bitmaps and the PNG export's colour and mask
// layers, lay out the same file.
TEST(BitmapWriters, HeaderPaddedBottomUpRowsAndTheRidingColumnLeftOut) {
    using File =
        std::vector<std::uint8_t> (*)(const krl::Plane&, const krl::Plane&, const krl::Plane&, int, int);
    const std::pair<int (*)(int), File> writers[] = {
        {filters::dibRowBytes, filters::bmpFile24},
        {exchange::layerRowBytes, [](const krl::Plane& r, const krl::Plane& g, const krl::Plane& b, int w,
                                     int h) { return exchange::layerBitmapBytes(r, g, b, w, h); }}};
    // W*3 mod 4 is 0, 3, 2 and 1 in turn; 640 and 641 as the PNG export meets them.
    const std::pair<int, int> widths[] = {{4, 12}, {5, 16}, {6, 20}, {7, 24}, {640, 1920}, {641, 1924}};
    for (const auto& [rowBytes, file] : writers)
        for (auto [w, row] : widths) {
            EXPECT_EQ(rowBytes(w), row);
            const host::Picture p = patternPicture(w, 3, 1);
            std::vector<std::uint8_t> rows; // the bottom row first, blue, green, red, padded with zeros
            for (int y = 2; y >= 0; --y) {
                for (int x = 0; x < w; ++x)
                    rows.insert(rows.end(), {p.b.at(x, y), p.g.at(x, y), p.r.at(x, y)});
                rows.resize(rows.size() + static_cast<std::size_t>(row - 3 * w), 0);
            }
            std::vector<std::uint8_t> f = file(p.r, p.g, p.b, w, 3);
            if (f.size() > 38) std::fill_n(f.begin() + 34, 4, 0); // the pixels' size, which readers ignore
            EXPECT_TRUE(f == bitmap(40, w, 3, 24, {}, rows))
                << w << (file == filters::bmpFile24 ? "" : ", layer");
        }
}

TEST(LayerBitmap, TellsWhichPlaneRowEachStoredRowHolds) {
    const host::Picture p = patternPicture(5, 2, 9);
    std::vector<int> rowsSeen;
    exchange::layerBitmapBytes(p.r, p.g, p.b, 5, 2, [&](int y) { rowsSeen.push_back(y); });
    EXPECT_EQ(rowsSeen, (std::vector<int>{1, 0}));
}

TEST(FrameBitmap, PlanesTooSmallForThePictureAreRefused) {
    const host::Picture p = patternPicture(3, 3, 0);
    EXPECT_THROW(filters::packDib24(p.r, p.g, p.b, 5, 2), std::out_of_range);
}

TEST(LayerBitmap, MasksFromColourAlphaAndOpacity) {
    krl::Plane r(2, 0), g(2, 0), b(2, 0), alpha(2, 0);
    // Pixel 0 is the primary colour, pixel 1 matches it in two channels only.
    r.at(0, 0) = 10, g.at(0, 0) = 20, b.at(0, 0) = 30;
    r.at(1, 0) = 10, g.at(1, 0) = 20, b.at(1, 0) = 31;
    alpha.at(0, 0) = 7, alpha.at(1, 0) = 200;
    const std::uint32_t primary = 10 | (20 << 8) | (30 << 16);
    auto mask = [&](exchange::MaskSource s) {
        krl::Plane mr = r, mg = g, mb = b;
        exchange::makeMask(mr, mg, mb, s, primary, alpha, 128);
        EXPECT_TRUE(mr == mg && mg == mb) << "a mask is grey";
        return std::vector<int>{mr.at(0, 0), mr.at(1, 0), mr.at(2, 0)};
    };
    EXPECT_EQ(mask(exchange::MaskSource::PrimaryColour), (std::vector<int>{0, 255, 255}));
    EXPECT_EQ(mask(exchange::MaskSource::AlphaChannel), (std::vector<int>{7, 200, 0}));
    EXPECT_EQ(mask(exchange::MaskSource::LayerOpacity), (std::vector<int>{128, 128, 128}));
}

class BitmapReader : public HostTest {
  protected:
    std::string write(const std::string& name, const std::vector<std::uint8_t>& bytes) {
        const std::string path = tempDir() + "/" + name;
        writeFile(QString::fromStdString(path), std::string(bytes.begin(), bytes.end()));
        return path;
    }
};

TEST_F(BitmapReader, TrueColourFromAnyHeaderSizeStandsUpright) {
    // 3 x 2 pixels, rows of 12 bytes, the bottom row first; a gap before the pixels is honoured.
    std::vector<std::uint8_t> rows(24, 0);
    for (int x = 0; x < 3; ++x) {
        rows[3 * x] = 1 + x, rows[3 * x + 1] = 11 + x, rows[3 * x + 2] = 21 + x; // bottom: y = 1
        rows[12 + 3 * x] = 101 + x, rows[12 + 3 * x + 1] = 111 + x, rows[12 + 3 * x + 2] = 121 + x; // top
    }
    for (int header : {40, 108, 124, -40}) { // -40: a negative height, the rows stored from the top
        if (header < 0) std::rotate(rows.begin(), rows.begin() + 12, rows.end());
        const std::string path =
            write("f.bmp", bitmap(std::abs(header), 3, header < 0 ? -2 : 2, 24, {}, rows, 0, 6));
        Vantry::Vantry_Class van;
        exchange::LoadBitmapFrame(van, path, 0);
        ASSERT_EQ(host().bufferWidth(), 3) << header;
        ASSERT_EQ(host().bufferHeight(), 2);
        const krl::Plane r = van.Van_GetRBuffer(), g = van.Van_GetGBuffer(), b = van.Van_GetBBuffer();
        EXPECT_EQ(r.at(2, 0), 123) << header;
        EXPECT_EQ(g.at(0, 0), 111);
        EXPECT_EQ(b.at(1, 1), 2);
        EXPECT_EQ(r.at(0, 1), 21);
        EXPECT_EQ(host().filename(), path);
    }
}

TEST_F(BitmapReader, PaletteEntriesAreReadRedLowAsThePanelAlwaysHas) {
    // Entry 1 is stored blue 10, green 20, red 30; the panel takes 10 as red.
    const std::vector<std::uint8_t> rows = {1, 0, 0, 0};
    const std::string path = write("p.bmp", bitmap(40, 2, 1, 8, {0, 0x001E140A}, rows));
    const BitmapFile f = exchange::ReadBitmapFile(path);
    EXPECT_EQ(f.result, 8);
    EXPECT_EQ(f.rowLength, 4);
    host().loadAnimation({patternPicture(2, 1, 0), patternPicture(2, 1, 0)});
    Vantry::Vantry_Class van;
    exchange::LoadBitmapFrame(van, path, 1);
    const krl::Plane r = van.Van_GetRFrame(1), g = van.Van_GetGFrame(1), b = van.Van_GetBFrame(1);
    EXPECT_EQ(r.at(0, 0), 10);
    EXPECT_EQ(g.at(0, 0), 20);
    EXPECT_EQ(b.at(0, 0), 30);
    EXPECT_EQ(r.at(1, 0), 0);
    EXPECT_EQ(host().totalFrames(), 2) << "a later frame keeps the animation";
}

TEST_F(BitmapReader, ResultCodesAndOtherDepths) {
    const std::vector<std::uint8_t> rows(64, 9);
    auto code = [&](const std::vector<std::uint8_t>& bytes) {
        return exchange::readBitmapBytes(bytes).result;
    };
    std::vector<std::uint8_t> notBm = bitmap(40, 2, 2, 24, {}, rows);
    notBm[0] = 'P';
    EXPECT_EQ(code(notBm), -1);
    EXPECT_EQ(code(bitmap(40, 2, 2, 4, {}, rows)), -2);
    EXPECT_EQ(code(bitmap(40, 2, 2, 24, {}, rows, 1)), -3);
    const BitmapFile deep = exchange::readBitmapBytes(bitmap(40, 2, 2, 16, {}, rows));
    EXPECT_EQ(deep.result, 16);
    EXPECT_TRUE(deep.rows.empty()) << "other depths are not read";

    const std::string path = write("d.bmp", bitmap(40, 2, 2, 16, {}, rows));
    Vantry::Vantry_Class van;
    exchange::LoadBitmapFrame(van, path, 0);
    EXPECT_EQ(van.Van_GetRBuffer().at(0, 0), 0) << "their planes stay at zero";
}

// The converter writes frames that carry transparency as 32-bit bitmaps with channel masks in a
// 124-byte header; transparent pixels show the paper colour, partly transparent ones blend with it.
TEST_F(BitmapReader, ThirtyTwoBitFramesShowTheirTransparencyOnThePaper) {
    // Two pixels, bottom row first: opaque (10, 20, 30), clear, half over the paper, and a fourth.
    const std::vector<std::uint8_t> bgra = {30, 20, 10, 255, 9, 9, 9, 0, 0, 0, 200, 128, 1, 2, 3, 255};
    std::vector<std::uint8_t> v5 = bitmap(124, 2, 2, 32, {}, bgra, 3);
    put(v5, 54, 0x00FF0000u); // red, green, blue and alpha masks
    put(v5, 58, 0x0000FF00u);
    put(v5, 62, 0x000000FFu);
    put(v5, 66, 0xFF000000u);
    const std::uint32_t paper = host::packColor(0, 100, 250);
    krl::Plane r, g, b;
    const BitmapFile f = exchange::readBitmapBytes(v5);
    ASSERT_EQ(f.result, 32);
    exchange::bitmapPlanes(f, r, g, b, paper);
    const int want[4][3] = {{10, 20, 30}, {0, 100, 250}, {100, 50, 125}, {3, 2, 1}};
    const int at[4][2] = {{0, 1}, {1, 1}, {0, 0}, {1, 0}};
    for (int i = 0; i < 4; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(r.at(at[i][0], at[i][1]), want[i][0]);
        EXPECT_EQ(g.at(at[i][0], at[i][1]), want[i][1]);
        EXPECT_EQ(b.at(at[i][0], at[i][1]), want[i][2]);
    }

    // A plain 32-bit file whose fourth byte nobody set is opaque; masks that are not whole bytes are
    // a layout this reader does not take.
    const BitmapFile plain = exchange::readBitmapBytes(bitmap(40, 1, 1, 32, {}, {7, 8, 9, 0}));
    exchange::bitmapPlanes(plain, r, g, b, paper);
    EXPECT_EQ(r.at(0, 0), 9);
    EXPECT_EQ(b.at(0, 0), 7);
    put(v5, 54, 0x00FFF000u);
    EXPECT_EQ(exchange::readBitmapBytes(v5).result, -3);
}

// Damaged files, and a few bytes that claim a huge picture at any depth (found by fuzzing: such a
// file once made the host a buffer of gigabytes), are refused without reading past their end, and
// loading one leaves the host as it was.
TEST_F(BitmapReader, DamagedFilesAreRefusedAndLeaveTheHostAsItWas) {
    const std::vector<std::uint8_t> rows(24, 5);
    std::vector<std::vector<std::uint8_t>> damaged = {
        {'B', 'M', 0, 0},                                            // cut inside the header
        bitmap(40, 3, 2, 24, {}, {rows.begin(), rows.begin() + 20}), // pixels cut short
        bitmap(40, 100000, 2, 24, {}, rows),                         // a width no host holds
        bitmap(20, 3, 2, 24, {}, rows),                              // an information header of no known size
        bitmap(40, 0, 2, 24, {}, rows),
        bitmap(40, 3, 2, 24, {}, rows)};
    put(damaged.back(), 10, 0xFFFFFFF0u); // pixels far past the end
    for (int bits : {32, 24, 16, 4, 0})   // a size the file cannot hold
        damaged.push_back(bitmap(40, 30000, 30000, bits, {}, rows));
    host().loadAnimation({patternPicture(3, 2, 4)});
    for (std::size_t i = 0; i < damaged.size(); ++i) {
        try {
            exchange::readBitmapBytes(damaged[i]);
            ADD_FAILURE() << i << ": accepted";
        } catch (const std::runtime_error& e) {
            EXPECT_STREQ(e.what(), "Bad file format") << i;
        }
        Vantry::Vantry_Class van;
        EXPECT_THROW(exchange::LoadBitmapFrame(van, write("d.bmp", damaged[i]), 0), std::runtime_error) << i;
        EXPECT_EQ(host().bufferWidth(), 3) << i;
    }
    EXPECT_THROW(exchange::ReadBitmapFile(tempDir() + "/missing.bmp"), std::runtime_error);

    // A table that claims more colours than the file holds is read only as far as it goes.
    std::vector<std::uint8_t> bigTable = bitmap(40, 2, 1, 8, {0x112233}, {0, 0, 0, 0});
    put(bigTable, 46, 0x7FFFFFFF);
    EXPECT_EQ(exchange::readBitmapBytes(bigTable).table.size(), 1u);
}

} // namespace
} // namespace kirrel::test
