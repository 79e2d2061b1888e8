// The converter's batch files byte by byte: line endings, separating lines, quotes and blanks.

#include "exchange/BatchText.h"

#include <gtest/gtest.h>

namespace kirrel::exchange {
namespace {

const std::string A = "/opt/van";
const std::string T = "/tmp/k t";   // a blank in the folder: quoted places keep it whole
const std::string S = "\r\n\r\r\n"; // a line and its separating line

TEST(BatchText, PerFrameGifWithAndWithoutTransparency) {
    const std::vector<std::string> conversions = {gifConversionLine(A, T, 0, std::nullopt),
                                                  gifConversionLine(A, T, 1, Rgb{255, 0, 7})};
    const std::vector<std::string> appends = {gifAppendLine(A, T, "/out/a.gif", 0, 5, 2),
                                              gifAppendLine(A, T, "/out/a.gif", 1, 12, 2)};
    const std::string expected =
        "\"/opt/van/convert.exe \" \"/tmp/k t/temp0.bmp\" \"/tmp/k t/temp0.gif\"" + S +
        "\"/opt/van/convert.exe\" -dispose previous -delay 5 -loop 2 +page \"/tmp/k t/temp0.gif\" "
        "\"/out/a.gif\"" +
        S +
        "\"/opt/van/convert.exe \" \"/tmp/k t/temp1.bmp\" -background rgb(255,0,7)  -transparent "
        "rgb(255,0,7) "
        "\"/tmp/k t/temp1.gif\"" +
        S +
        "\"/opt/van/convert.exe\" -dispose previous \"/out/a.gif\" -delay 12 -loop 2 +page \"/tmp/k "
        "t/temp1.gif\" "
        "\"/out/a.gif\"" +
        S + "cd /tmp/k t" + S + "del temp*.gif" + S + "del temp*.bmp" + S + "del GifConvert.bat" + S;
    EXPECT_EQ(batchBytes(gifPerFrameBatch(T, conversions, appends)), expected);
}

TEST(BatchText, SingleCommandGifHasTightDriveAndFolderLines) {
    const std::string expected =
        "/t\r\r\ncd /tmp/k t\r\r\n"
        "\"/opt/van/convert.exe\" -delay 7 temp?.bmp -adjoin -loop 0 \"/out/a.mng\"" +
        S + "del temp*.bmp" + S + "del GifConvert.bat" + S;
    EXPECT_EQ(batchBytes(gifSingleCommandBatch(T, gifSingleCommandLine(A, "/out/a.mng", 7, 0, 3))), expected);
}

TEST(BatchText, FramePatternClassesKeepNumericOrder) {
    EXPECT_EQ(framePattern(1), " temp?.bmp ");
    EXPECT_EQ(framePattern(10), " temp?.bmp ");
    EXPECT_EQ(framePattern(11), " temp?.bmp temp??.bmp ");
    EXPECT_EQ(framePattern(100), " temp?.bmp temp??.bmp ");
    EXPECT_EQ(framePattern(101), " temp?.bmp temp??.bmp temp???.bmp ");
    EXPECT_EQ(framePattern(1000), " temp?.bmp temp??.bmp temp???.bmp ");
    EXPECT_EQ(framePattern(1001), " temp?.bmp temp??.bmp temp???.bmp temp????.bmp ");
    EXPECT_EQ(framePattern(32767), " temp?.bmp temp??.bmp temp???.bmp temp????.bmp temp?????.bmp ");
}

TEST(BatchText, ImportBatchesBothWays) {
    EXPECT_EQ(batchBytes(gifImportDirectBatch(A, T, "/in/x.gif")),
              "\"/opt/van/convert.exe\" \"/in/x.gif\"  -coalesce +repage +adjoin -depth 24 \"/tmp/k "
              "t/gif_frame.gif\"" +
                  S + "del \"/tmp/k t/GifImport01.bat\"" + S);
    EXPECT_EQ(batchBytes(gifImportPngBatch(A, T, "/in/x.gif")),
              "\"/opt/van/convert.exe\"  -coalesce \"/in/x.gif\" \"/tmp/k t/temp_anim.gif\"\r\n"
              "\"/opt/van/convert.exe\"  +repage +adjoin \"/tmp/k t/temp_anim.gif\" png24:\"/tmp/k "
              "t/gif_frame.png\"" +
                  S + "del \"/tmp/k t/temp_anim.gif\"\r\n" + "del \"/tmp/k t/GifImport01.bat\"" + S);

    std::vector<BatchLine> second = gifImportBitmapLines(A, T, 0);
    for (auto& l : gifImportBitmapLines(A, T, 1))
        second.push_back(l);
    second.push_back(gifImportBitmapClosing(T));
    EXPECT_EQ(batchBytes(second), "\"/opt/van/convert.exe\" \"/tmp/k t/gif_frame-0.png\" -compress none "
                                  "\"/tmp/k t/gif_frame-0.bmp\"\r\n"
                                  "del \"/tmp/k t/gif_frame-0.png\"" +
                                      S +
                                      "\"/opt/van/convert.exe\" \"/tmp/k t/gif_frame-1.png\" -compress none "
                                      "\"/tmp/k t/gif_frame-1.bmp\"\r\n"
                                      "del \"/tmp/k t/gif_frame-1.png\"" +
                                      S + "del \"/tmp/k t/GifImport02.bat\"" + S);
}

TEST(BatchText, PngBatchUsesBareNames) {
    EXPECT_EQ(
        batchBytes(pngConvertBatch(A, "/out/l.png")),
        "\"/opt/van/convert.exe\" png_main.bmp png_mask.bmp -compose copyopacity -composite \"/out/l.png\"" +
            S + "del png_main.bmp" + S + "del png_mask.bmp" + S + "del PNGConvert.bat" + S);
}

} // namespace
} // namespace kirrel::exchange
