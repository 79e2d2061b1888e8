// Planes shown on screen and frames written as bitmaps, against the in-memory host.

#include "filters/PictureAccess.h"
#include "support/Support.h"

#include <QImage>

#include <functional>

namespace kirrel::test {
namespace {

class PictureAccess : public HostTest {};

TEST_F(PictureAccess, APreviewPlaneShowsOneLessThanItsBoundsAndUpright) {
    const host::Picture pic = patternPicture(200, 200, 5);
    panel::PictureBox box;
    panel::PictureBox image;
    filters::ShowPlanes(&box, &image, pic.r, pic.g, pic.b);
    const QImage shown = image.pixmap().toImage();
    ASSERT_EQ(shown.size(), QSize(200, 200));
    EXPECT_EQ(box.size(), QSize(200, 200));
    EXPECT_TRUE(box.pixmap().isNull()) << "the work surface is left empty";
    for (auto [x, y] : {std::pair{0, 0}, std::pair{199, 0}, std::pair{3, 190}, std::pair{199, 199}}) {
        const QRgb c = shown.pixel(x, y);
        EXPECT_EQ(qRed(c), pic.r.at(x, y)) << x << "," << y;
        EXPECT_EQ(qGreen(c), pic.g.at(x, y));
        EXPECT_EQ(qBlue(c), pic.b.at(x, y));
    }
}

void expectDibError(const std::function<void()>& read, const char* what, const char* source) {
    try {
        read();
        FAIL() << "read without a refusal: " << source;
    } catch (const filters::DibError& e) {
        EXPECT_STREQ(e.what(), what);
        EXPECT_EQ(e.source(), source);
    }
}

TEST_F(PictureAccess, TheReadBackHelpersReportTheirErrors) {
    panel::PictureBox box;
    expectDibError([&] { filters::GetDIBPixels24Bit(&box); }, "Error using GetDIBits",
                   "DIBHelper.GetDIBPixels24Bit");
    QImage colour(4, 4, QImage::Format_RGB32);
    colour.fill(Qt::red);
    box.setPixmap(QPixmap::fromImage(colour));
    EXPECT_EQ(filters::GetDIBPixels24Bit(&box).pixel(1, 1), QColor(Qt::red).rgb());
    expectDibError([&] { filters::GetDIBPixelsWithPalette(&box); },
                   "The number of bits per pixel must be 1, 4, or 8", "DIBHelper.GetDIBPixelsWithPalette");
}

} // namespace
} // namespace kirrel::test
