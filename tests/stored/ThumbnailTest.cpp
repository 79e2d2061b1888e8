// The thumbnail: the point-plotting rule on the 33 x 25 box, the bitmap on disk, and the empty
// picture for a missing or damaged file.

#include "stored/Thumbnail.h"
#include "stored/StoredSupport.h"

#include <QDir>
#include <QTemporaryDir>

namespace kirrel::test {
namespace {

// The rule as the user would describe it: every point plotted in turn, x outer and y inner.
QImage plotPointByPoint(const host::Picture& p) {
    QImage box(stored::kThumbWidth, stored::kThumbHeight, QImage::Format_RGB32);
    box.fill(Qt::black);
    const int w = p.width(), h = p.height();
    for (int x = 0; x <= w; ++x)
        for (int y = 0; y <= h; ++y) {
            const long long px = w > 0 ? 1LL * x * stored::kThumbWidth / w : 0;
            const long long py = h > 0 ? 1LL * y * stored::kThumbHeight / h : 0;
            if (px < stored::kThumbWidth && py < stored::kThumbHeight)
                box.setPixel(int(px), int(py), qRgb(p.r.at(x, y), p.g.at(x, y), p.b.at(x, y)));
        }
    return box;
}

TEST(Thumbnail, EveryPixelShowsTheLastPointPlottedOnIt) {
    for (auto [w, h] : {std::pair{639, 479}, {66, 50}, {33, 25}, {10, 7}, {1, 1}, {0, 0}, {40, 3}}) {
        SCOPED_TRACE(std::to_string(w) + "x" + std::to_string(h));
        const host::Picture p = patternPicture(w, h, 11);
        EXPECT_EQ(stored::plotThumbnail(p.r, p.g, p.b, w, h), plotPointByPoint(p));
    }
    // At twice the box's size each pixel shows the bottom-right point of its 2 x 2 cell.
    const host::Picture p = patternPicture(66, 50, 3);
    const QImage t = stored::plotThumbnail(p.r, p.g, p.b, 66, 50);
    EXPECT_EQ(t.pixel(4, 7), qRgb(p.r.at(9, 15), p.g.at(9, 15), p.b.at(9, 15)));
}

TEST(Thumbnail, IsKeptAsA24BitBitmapAndAnUnreadableOneShowsEmpty) {
    QTemporaryDir dir;
    const std::string path = QDir(dir.path()).filePath("AnimThumb 0.bmp").toStdString();
    const host::Picture p = patternPicture(99, 74, 5);
    const QImage t = stored::plotThumbnail(p.r, p.g, p.b, 99, 74);
    stored::saveThumbnail(t, path);
    const std::string bytes = readFile(QString::fromStdString(path));
    ASSERT_GE(bytes.size(), 54u);
    EXPECT_EQ(bytes.substr(0, 2), "BM");
    EXPECT_EQ(bytes[28], 24); // bits per pixel
    EXPECT_EQ(stored::loadThumbnail(path).convertToFormat(QImage::Format_RGB32), t);

    EXPECT_TRUE(stored::loadThumbnail(path + ".missing").isNull());
    writeFile(QString::fromStdString(path), bytes.substr(0, 40));
    EXPECT_TRUE(stored::loadThumbnail(path).isNull());
    writeFile(QString::fromStdString(path), "BM" + std::string(60, '\xff'));
    EXPECT_TRUE(stored::loadThumbnail(path).isNull());
}

} // namespace
} // namespace kirrel::test
