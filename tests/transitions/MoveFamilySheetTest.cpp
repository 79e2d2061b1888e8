// A contact sheet of the rows, columns, boxes, crosses and doors, for a person to judge at a glance
// that each module makes the motion it is named for. Written only when KIRREL_MOVE_SHEET names the
// PNG to write; otherwise the test is skipped. Each module runs over frames 0..4 of a warm picture
// into a cool one, and the sheet shows frames 1, 2 and 3 side by side.

#include "transitions/Boxes.h"
#include "transitions/Crosses.h"
#include "transitions/Doors.h"
#include "transitions/RowsColumns.h"
#include "transitions/TransitionSupport.h"

#include <QFont>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>

#include <cstdlib>
#include <string>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

constexpr int W = 119, H = 89; // upper bounds
constexpr int kShown[] = {1, 2, 3};

Picture fromImage(const QImage& src) {
    const QImage img = src.convertToFormat(QImage::Format_RGB32);
    Picture p(W, H);
    for (int y = 0; y <= H; ++y)
        for (int x = 0; x <= W; ++x) {
            const QRgb c = img.pixel(x, y);
            p.r.at(x, y) = static_cast<std::uint8_t>(qRed(c));
            p.g.at(x, y) = static_cast<std::uint8_t>(qGreen(c));
            p.b.at(x, y) = static_cast<std::uint8_t>(qBlue(c));
        }
    return p;
}

QImage toImage(const Picture& p) {
    QImage img(W + 1, H + 1, QImage::Format_RGB32);
    for (int y = 0; y <= H; ++y)
        for (int x = 0; x <= W; ++x)
            img.setPixel(x, y, qRgb(p.r.at(x, y), p.g.at(x, y), p.b.at(x, y)));
    return img;
}

// A card with a gradient, a big letter and a frame line, so that the leaves of a door show which
// half of the picture they carry.
Picture card(QColor from, QColor to, const QString& letter) {
    QImage img(W + 1, H + 1, QImage::Format_RGB32);
    QPainter p(&img);
    QLinearGradient g(0, 0, W, H);
    g.setColorAt(0, from);
    g.setColorAt(1, to);
    p.fillRect(img.rect(), g);
    p.setPen(QPen(Qt::white, 3));
    p.drawRect(4, 4, W - 8, H - 8);
    QFont f = p.font();
    f.setPixelSize(56);
    f.setBold(true);
    p.setFont(f);
    p.drawText(img.rect(), Qt::AlignCenter, letter);
    return fromImage(img);
}

struct Entry {
    const char* name;
    void (*run)(int, int, const std::string&);
};

const Entry kEntries[] = {
    {"RowOpenTo", RowOpenTo},         {"RowOpenFrom", RowOpenFrom},
    {"RowCloseTo", RowCloseTo},       {"RowCloseFrom", RowCloseFrom},
    {"ColumnOpenTo", ColumnOpenTo},   {"ColumnOpenFrom", ColumnOpenFrom},
    {"ColumnCloseTo", ColumnCloseTo}, {"ColumnCloseFrom", ColumnCloseFrom},
    {"BoxOpenTo", BoxOpenTo},         {"BoxOpenFrom", BoxOpenFrom},
    {"BoxCloseTo", BoxCloseTo},       {"BoxCloseFrom", BoxCloseFrom},
    {"CrossOpenTo", CrossOpenTo},     {"CrossOpenFrom", CrossOpenFrom},
    {"CrossCloseTo", CrossCloseTo},   {"CrossCloseFrom", CrossCloseFrom},
    {"HDoorOpenTo", HDoorOpenTo},     {"HDoorOpenFrom", HDoorOpenFrom},
    {"HDoorCloseTo", HDoorCloseTo},   {"HDoorCloseFrom", HDoorCloseFrom},
    {"VDoorOpenTo", VDoorOpenTo},     {"VDoorOpenFrom", VDoorOpenFrom},
    {"VDoorCloseTo", VDoorCloseTo},   {"VDoorCloseFrom", VDoorCloseFrom},
};

class MoveFamilySheet : public TransitionTest {};

TEST_F(MoveFamilySheet, WritesTheContactSheetWhenAsked) {
    const char* out = std::getenv("KIRREL_MOVE_SHEET");
    if (!out || !*out) GTEST_SKIP() << "set KIRREL_MOVE_SHEET to the PNG to write";

    const Picture warm = card(QColor(250, 170, 40), QColor(170, 40, 30), "A");
    const Picture cool = card(QColor(60, 170, 230), QColor(30, 40, 140), "B");
    constexpr int kPad = 6, kLabel = 18, kPerRow = 2;
    constexpr int cellW = 3 * (W + 1) + 4 * kPad, cellH = kLabel + (H + 1) + 2 * kPad;
    constexpr int rows = (std::size(kEntries) + kPerRow - 1) / kPerRow;
    QImage sheet(kPerRow * cellW, rows * cellH + kLabel, QImage::Format_RGB32);
    sheet.fill(QColor(235, 235, 228));
    QPainter p(&sheet);
    p.setPen(Qt::black);
    p.drawText(QRect(kPad, 0, sheet.width(), kLabel), Qt::AlignVCenter,
               "Frames 1, 2, 3 of runs over 0..4: A is the animation, B the swap");

    for (std::size_t n = 0; n < std::size(kEntries); ++n) {
        const Entry& e = kEntries[n];
        host().loadAnimation({warm, warm, warm, warm, warm});
        host().loadSwap(cool);
        e.run(0, 4, "Swap");
        const int cx = static_cast<int>(n % kPerRow) * cellW;
        const int cy = kLabel + static_cast<int>(n / kPerRow) * cellH;
        p.drawText(QRect(cx + kPad, cy, cellW, kLabel), Qt::AlignVCenter, e.name);
        for (std::size_t k = 0; k < std::size(kShown); ++k)
            p.drawImage(cx + kPad + static_cast<int>(k) * (W + 1 + kPad), cy + kLabel,
                        toImage(frame(kShown[k])));
    }
    p.end();
    ASSERT_TRUE(sheet.save(QString::fromLocal8Bit(out)));
}

} // namespace
} // namespace kirrel::test
