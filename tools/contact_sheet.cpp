// kirrel_contact_sheet OUT.png
//
// Runs every pixel operation on two synthetic pictures at a few settings across each operation's
// range (and in every mode) and writes one labelled grid, for a person to judge at a glance whether
// blurs blur, mixes end where they should and the looks look like what their dialogs promise.
// Pictures are 160 x 120 pixels (upper bounds 159, 119); every call covers the whole plane, so the
// last column and row are on show too.

#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "pixel/Plane.h"

#include <QByteArray>
#include <QColor>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QRadialGradient>
#include <QString>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

using krl::Plane;

namespace {

constexpr int W = 159; // upper bounds, as the host reports them
constexpr int H = 119;
constexpr int kCols = W + 1;
constexpr int kRows = H + 1;

struct Pic {
    Plane r, g, b;
};

Pic blank(int w = W, int h = H) {
    return {Plane(w, h), Plane(w, h), Plane(w, h)};
}

Pic fromImage(const QImage& src) {
    const QImage img = src.convertToFormat(QImage::Format_RGB32);
    Pic p = blank(img.width() - 1, img.height() - 1);
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) {
            const QRgb c = img.pixel(x, y);
            p.r.at(x, y) = static_cast<std::uint8_t>(qRed(c));
            p.g.at(x, y) = static_cast<std::uint8_t>(qGreen(c));
            p.b.at(x, y) = static_cast<std::uint8_t>(qBlue(c));
        }
    return p;
}

QImage toImage(const Pic& p) {
    QImage img(p.r.cols(), p.r.rows(), QImage::Format_RGB32);
    for (int y = 0; y < p.r.rows(); ++y)
        for (int x = 0; x < p.r.cols(); ++x)
            img.setPixel(x, y, qRgb(p.r.at(x, y), p.g.at(x, y), p.b.at(x, y)));
    return img;
}

Pic greyPic(const Plane& m) {
    return {m, m, m};
}

// A colourful test card: hue sweep across, light to dark down, with hard-edged shapes, a thin line
// and fine stripes, so that blurs, edges and colour tricks all have something to bite on.
Pic makeGradientCard() {
    QImage img(kCols, kRows, QImage::Format_RGB32);
    for (int y = 0; y < kRows; ++y)
        for (int x = 0; x < kCols; ++x) {
            const QColor c = QColor::fromHsvF(x / double(kCols), 0.85, 1.0 - 0.55 * y / double(kRows));
            img.setPixel(x, y, c.rgb());
        }
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(250, 250, 245));
    p.drawEllipse(QPointF(40, 40), 24, 24);
    p.setBrush(QColor(20, 30, 120));
    p.drawRect(92, 14, 46, 34);
    p.setBrush(QColor(255, 220, 0));
    p.drawPolygon(QPolygonF({QPointF(70, 112), QPointF(100, 62), QPointF(130, 112)}));
    p.setBrush(Qt::black);
    p.drawEllipse(QPointF(134, 92), 14, 14);
    p.setPen(QPen(Qt::black, 1.5));
    p.drawLine(QPointF(6, 112), QPointF(60, 66));
    for (int i = 0; i < 6; ++i) {
        p.setPen(QPen(i % 2 ? Qt::white : Qt::black, 2));
        p.drawLine(QPointF(10 + 4 * i, 74), QPointF(10 + 4 * i, 100));
    }
    p.end();
    return fromImage(img);
}

// A small painted scene: sky, sun, hills, a house and a tree, with soft shading, the kind of picture
// the looks are meant for.
Pic makeScene() {
    QImage img(kCols, kRows, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, 80);
    sky.setColorAt(0, QColor(40, 90, 190));
    sky.setColorAt(1, QColor(170, 210, 240));
    p.fillRect(img.rect(), sky);
    QRadialGradient sun(QPointF(128, 26), 16);
    sun.setColorAt(0, QColor(255, 250, 200));
    sun.setColorAt(1, QColor(255, 150, 30));
    p.setPen(Qt::NoPen);
    p.setBrush(sun);
    p.drawEllipse(QPointF(128, 26), 15, 15);
    QLinearGradient hill(0, 60, 0, 120);
    hill.setColorAt(0, QColor(90, 170, 60));
    hill.setColorAt(1, QColor(30, 80, 30));
    p.setBrush(hill);
    p.drawEllipse(QRectF(-60, 64, 200, 110));
    p.setBrush(QColor(60, 130, 50));
    p.drawEllipse(QRectF(70, 74, 160, 90));
    p.setBrush(QColor(200, 60, 40));
    p.drawRect(QRectF(26, 62, 36, 28));
    p.setBrush(QColor(110, 40, 30));
    p.drawPolygon(QPolygonF({QPointF(20, 63), QPointF(44, 44), QPointF(68, 63)}));
    p.setBrush(QColor(250, 230, 140));
    p.drawRect(QRectF(32, 68, 9, 8));
    p.setBrush(QColor(70, 45, 25));
    p.drawRect(QRectF(48, 72, 8, 18));
    p.setBrush(QColor(90, 60, 30));
    p.drawRect(QRectF(112, 70, 6, 26));
    p.setBrush(QColor(25, 95, 40));
    p.drawEllipse(QPointF(115, 62), 16, 14);
    p.setPen(QPen(QColor(255, 255, 255, 200), 1));
    p.drawLine(QPointF(8, 16), QPointF(36, 22));
    p.drawLine(QPointF(60, 12), QPointF(92, 18));
    p.end();
    // A little film grain, as a photograph would have, so that smoothing filters show what they do.
    std::uint32_t seed = 12345;
    for (int y = 0; y < kRows; ++y)
        for (int x = 0; x < kCols; ++x) {
            seed = seed * 1664525u + 1013904223u;
            const int d = static_cast<int>(seed >> 28) - 8;
            const QRgb c = img.pixel(x, y);
            auto add = [d](int v) { return std::clamp(v + d, 0, 255); };
            img.setPixel(x, y, qRgb(add(qRed(c)), add(qGreen(c)), add(qBlue(c))));
        }
    return fromImage(img);
}

// Bright in the middle, dark at the rim: stands for an alpha plane or a mask.
Plane makeMask() {
    Plane m(W, H);
    for (int y = 0; y <= H; ++y)
        for (int x = 0; x <= W; ++x) {
            const double dx = (x - W / 2.0) / (W / 2.0);
            const double dy = (y - H / 2.0) / (H / 2.0);
            const double d = std::min(1.0, std::sqrt(dx * dx + dy * dy) / 1.1);
            m.at(x, y) = static_cast<std::uint8_t>(std::lround(255.0 * (1.0 - d * d)));
        }
    return m;
}

// A custom-effect recipe: left in the primary key, right in the secondary key, with a drawn ring
// and a caption-like bar in other colours that show as they are.
constexpr QRgb kPrimaryKey = qRgb(255, 0, 255);
constexpr QRgb kSecondaryKey = qRgb(0, 255, 0);

Pic makeRecipe(int split) {
    QImage img(kCols, kRows, QImage::Format_RGB32);
    QPainter p(&img);
    p.fillRect(0, 0, split, kRows, QColor(kPrimaryKey));
    p.fillRect(split, 0, kCols - split, kRows, QColor(kSecondaryKey));
    p.setPen(QPen(QColor(255, 255, 255), 5));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(split, 60), 28, 28);
    p.fillRect(0, 100, kCols, 10, QColor(20, 20, 20));
    p.end();
    return fromImage(img);
}

struct Cell {
    QString label;
    Pic pic;
};

struct Row {
    QString title;
    std::vector<Cell> cells;
};

// Settings at 0, 25, 50, 75 and 100 % of [lo, hi], rounded.
std::vector<int> spread(int lo, int hi) {
    std::vector<int> v;
    for (int i = 0; i <= 4; ++i)
        v.push_back(lo + static_cast<int>(std::lround((hi - lo) * i / 4.0)));
    return v;
}

using PicOp = std::function<void(Pic&, int)>;

Row sweep(const QString& title, const Pic& start, const std::vector<int>& values, const PicOp& op,
          const QString& unit = QString()) {
    Row row{title, {}};
    for (int v : values) {
        Pic p = start;
        op(p, v);
        row.cells.push_back({QString::number(v) + unit, p});
    }
    return row;
}

// ---- filters --------------------------------------------------------------------------------------

void addFilterRows(std::vector<Row>& rows, const Pic& card, const Pic& scene, const Plane& mask) {
    rows.push_back({"Inputs",
                    {{"card", card},
                     {"scene", scene},
                     {"mask / alpha", greyPic(mask)},
                     {"recipe (CFX)", makeRecipe(80)}}});

    auto boxRounds = [](Pic& p, int n) {
        for (int i = 0; i < n; ++i)
            krl::BoxBlur(p.r, p.g, p.b, p.r, p.g, p.b, W, H);
    };
    auto triRounds = [](Pic& p, int n) {
        for (int i = 0; i < n; ++i)
            krl::TriBlur(p.r, p.g, p.b, W, H);
    };
    rows.push_back(sweep("BoxBlur, rounds", card, {1, 3, 10, 31, 100}, boxRounds));
    rows.push_back(sweep("TriBlur, rounds", card, {1, 3, 10, 31, 100}, triRounds));

    {
        Row r{"Negative / GreyScale", {}};
        Pic p = card;
        krl::Negative(p.r, p.g, p.b, W + 1, H + 1);
        r.cells.push_back({"Negative", p});
        krl::Negative(p.r, p.g, p.b, W + 1, H + 1);
        r.cells.push_back({"Negative twice", p});
        p = scene;
        krl::Negative(p.r, p.g, p.b, W + 1, H + 1);
        r.cells.push_back({"Negative", p});
        p = card;
        krl::GreyScale(p.r, p.g, p.b, W + 1, H + 1);
        r.cells.push_back({"GreyScale", p});
        p = scene;
        krl::GreyScale(p.r, p.g, p.b, W + 1, H + 1);
        r.cells.push_back({"GreyScale", p});
        rows.push_back(r);
    }

    const char* channelName[] = {"red", "green", "blue"};
    for (int ch = 1; ch <= 3; ++ch) {
        rows.push_back(sweep(QString("GreyOut %1, level 50%, tolerance").arg(channelName[ch - 1]), scene,
                             spread(-255, 255),
                             [ch](Pic& p, int t) { krl::GreyOut(p.r, p.g, p.b, 50, ch, t, W + 1, H + 1); }));
        rows.push_back(sweep(
            QString("GreyOut %1, tolerance 64, level").arg(channelName[ch - 1]), scene, spread(0, 100),
            [ch](Pic& p, int lv) { krl::GreyOut(p.r, p.g, p.b, lv, ch, 64, W + 1, H + 1); }, "%"));
    }

    rows.push_back(sweep("Threshold, each plane, level", scene, spread(0, 256), [](Pic& p, int lv) {
        krl::Threshold(p.r, lv, W + 1, H + 1);
        krl::Threshold(p.g, lv, W + 1, H + 1);
        krl::Threshold(p.b, lv, W + 1, H + 1);
    }));
    rows.push_back(sweep("Channel Threshold: red 128, then GreyThreshold", scene, spread(0, 256),
                         [&scene](Pic& p, int lv) {
                             krl::Threshold(p.r, 128, W + 1, H + 1);
                             krl::Threshold(p.g, 256, W + 1, H + 1);
                             krl::Threshold(p.b, 256, W + 1, H + 1);
                             krl::GreyThreshold(p.r, p.g, p.b, scene.r, scene.g, scene.b, lv, W, H);
                         }));
    rows.push_back(
        sweep("GreyThreshold of the scene over itself", scene, spread(0, 256), [&scene](Pic& p, int lv) {
            krl::GreyThreshold(p.r, p.g, p.b, scene.r, scene.g, scene.b, lv, W, H);
        }));
    rows.push_back(sweep("Posterize, level", scene, {0, 64, 128, 200, 255},
                         [](Pic& p, int lv) { krl::Posterize(p.r, p.g, p.b, lv, W + 1, H + 1); }));

    {
        Row r{"NightVision", {}};
        for (const Pic* src : {&scene, &card}) {
            Pic p = *src;
            krl::NightVision(p.r, p.g, p.b, W + 1, H + 1);
            r.cells.push_back({"", p});
        }
        rows.push_back(r);
    }

    for (int boost = 0; boost <= 1; ++boost) {
        rows.push_back(sweep(boost ? "Toonify with Edge Boost (ToonFilter2), strength"
                                   : "Toonify (ToonFilter), strength",
                             scene, {1, 5, 20, 50, 100}, [boost, &scene](Pic& p, int strength) {
                                 for (int i = 0; i < strength; ++i)
                                     krl::TriBlur(p.r, p.g, p.b, W, H);
                                 if (boost)
                                     krl::ToonFilter2(p.r, p.g, p.b, scene.r, scene.g, scene.b, W, H);
                                 else
                                     krl::ToonFilter(p.r, p.g, p.b, scene.r, scene.g, scene.b, W, H);
                             }));
    }
    {
        Row r{"Toonify on the card, strength 10 (plain / boost)", {}};
        for (int boost = 0; boost <= 1; ++boost) {
            Pic p = card;
            for (int i = 0; i < 10; ++i)
                krl::TriBlur(p.r, p.g, p.b, W, H);
            if (boost)
                krl::ToonFilter2(p.r, p.g, p.b, card.r, card.g, card.b, W, H);
            else
                krl::ToonFilter(p.r, p.g, p.b, card.r, card.g, card.b, W, H);
            r.cells.push_back({boost ? "boost" : "plain", p});
        }
        rows.push_back(r);
    }

    // The hard-line sketch as its dialog runs it: grey, negative, blurred, then drawn.
    auto sketch = [](const Pic& src, bool grey, int passes, int strength) {
        Pic p = src;
        if (grey) krl::GreyScale(p.r, p.g, p.b, W + 1, H + 1);
        Pic plain = p;
        krl::Negative(p.r, p.g, p.b, W + 1, H + 1);
        for (int i = 0; i < passes; ++i)
            krl::TriBlur(p.r, p.g, p.b, W, H);
        krl::SketchHard(p.r, p.g, p.b, plain.r, plain.g, plain.b, W + 1, H + 1, strength);
        return p;
    };
    {
        Row r{"SketchHard (grey, detail 3), line strength", {}};
        for (int s : spread(128, 255))
            r.cells.push_back({QString::number(s), sketch(scene, true, 3, s)});
        rows.push_back(r);
        Row c{"SketchHard (colour, detail 3), line strength", {}};
        for (int s : spread(128, 255))
            c.cells.push_back({QString::number(s), sketch(scene, false, 3, s)});
        rows.push_back(c);
        Row d{"SketchHard (grey, strength 255), detail passes", {}};
        for (int n : {1, 3, 10, 30, 100})
            d.cells.push_back({QString::number(n), sketch(scene, true, n, 255)});
        rows.push_back(d);
    }
    // "Sketch, soft line": negative, blurred, added back to the picture.
    rows.push_back(sweep("Sketch soft line (BoxBlur + AddBuffers), detail", scene, {1, 3, 10, 30, 100},
                         [](Pic& p, int detail) {
                             krl::GreyScale(p.r, p.g, p.b, W + 1, H + 1);
                             Pic plain = p;
                             krl::Negative(p.r, p.g, p.b, W + 1, H + 1);
                             for (int i = 0; i <= detail; ++i)
                                 krl::BoxBlur(p.r, p.g, p.b, p.r, p.g, p.b, W, H);
                             krl::AddBuffers(p.r, p.g, p.b, plain.r, plain.g, plain.b, W + 1, H + 1);
                         }));
    {
        Row r{"Sketch colour options: overlay, cell shaded, graphic novel", {}};
        const Pic drawing = sketch(scene, true, 3, 255);
        Pic p = drawing;
        Pic colour = scene;
        krl::MultiplyBuffers(p.r, p.g, p.b, colour.r, colour.g, colour.b, W + 1, H + 1);
        r.cells.push_back({"Overlay Original", p});
        Pic poster = scene;
        krl::Posterize(poster.r, poster.g, poster.b, 200, W + 1, H + 1);
        p = drawing;
        krl::MultiplyBuffers(p.r, p.g, p.b, poster.r, poster.g, poster.b, W + 1, H + 1);
        r.cells.push_back({"Cell Shaded", p});
        p = drawing;
        krl::MultiplyBuffers(p.r, p.g, p.b, colour.r, colour.g, colour.b, W + 1, H + 1);
        krl::ChalkFilter(p.r, p.g, p.b, W + 1, H + 1, 50);
        r.cells.push_back({"Graphic Novel", p});
        rows.push_back(r);
    }
    rows.push_back(sweep("ChalkFilter, level", scene, spread(0, 100),
                         [](Pic& p, int lv) { krl::ChalkFilter(p.r, p.g, p.b, W + 1, H + 1, lv); }));
    rows.push_back(sweep("IncreaseBrightness, level", scene, spread(0, 255),
                         [](Pic& p, int lv) { krl::IncreaseBrightness(p.r, p.g, p.b, lv, W + 1, H + 1); }));
    rows.push_back(sweep("IncreaseDarkness, level", scene, spread(0, 255),
                         [](Pic& p, int lv) { krl::IncreaseDarkness(p.r, p.g, p.b, lv, W + 1, H + 1); }));
    rows.push_back(sweep(
        "WhiteNoise, pct", scene, spread(0, 100),
        [](Pic& p, int pct) { krl::WhiteNoise(p.r, p.g, p.b, pct, W + 1, H + 1); }, "%"));
    rows.push_back(sweep(
        "WhiteNoiseAlpha through the mask, pct", scene, spread(0, 100),
        [&mask](Pic& p, int pct) { krl::WhiteNoiseAlpha(p.r, p.g, p.b, mask, pct, W, H); }, "%"));
    {
        Row r{"CFXFilter1: main = card, swap = scene", {}};
        for (int split : {0, 40, 80, 120, 160}) {
            Pic work = makeRecipe(split);
            Pic mainPic = card;
            krl::CFXFilter1(mainPic.r, mainPic.g, mainPic.b, scene.r, scene.g, scene.b, work.r, work.g,
                            work.b, qRed(kPrimaryKey), qGreen(kPrimaryKey), qBlue(kPrimaryKey),
                            qRed(kSecondaryKey), qGreen(kSecondaryKey), qBlue(kSecondaryKey), W, H);
            r.cells.push_back({QString("primary to x=%1").arg(split), work});
        }
        rows.push_back(r);
    }
}

// ---- mixing and moving ------------------------------------------------------------------------------

using MixOp = std::function<void(Pic& a, Pic& b, int v)>;

Row mixSweep(const QString& title, const Pic& a0, const Pic& b0, const std::vector<int>& values,
             const MixOp& op, const QString& unit = QString()) {
    Row row{title, {}};
    for (int v : values) {
        Pic a = a0;
        Pic b = b0;
        op(a, b, v);
        row.cells.push_back({QString::number(v) + unit, a});
    }
    return row;
}

void addMixingRows(std::vector<Row>& rows, const Pic& card, const Pic& scene, const Plane& mask) {
    rows.push_back(mixSweep(
        "MixBuffers card / scene, pct of card", card, scene, spread(0, 100),
        [](Pic& a, Pic& b, int v) { krl::MixBuffers(a.r, a.g, a.b, b.r, b.g, b.b, v, W, H); }, "%"));
    rows.push_back(mixSweep(
        "MixBufferColor orange, pct", card, scene, spread(0, 100),
        [](Pic& a, Pic&, int v) { krl::MixBufferColor(a.r, a.g, a.b, 255, 140, 0, v, W, H); }, "%"));
    rows.push_back(mixSweep(
        "MixBufferNegative, pct", card, scene, spread(0, 100),
        [](Pic& a, Pic&, int v) { krl::MixBufferNegative(a.r, a.g, a.b, v, W, H); }, "%"));
    const char* channelSets[] = {"R", "G", "B", "RG", "RB", "GB"};
    for (int ch = 1; ch <= 6; ++ch)
        rows.push_back(mixSweep(
            QString("MixBufferChannels %1 stays, pct").arg(channelSets[ch - 1]), scene, scene, spread(0, 100),
            [ch](Pic& a, Pic&, int v) { krl::MixBufferChannels(a.r, a.g, a.b, v, ch, W + 1, H + 1); }, "%"));
    {
        Row r{"Two-picture mixes of card and scene", {}};
        using TwoOp = void (*)(Plane&, Plane&, Plane&, const Plane&, const Plane&, const Plane&, int, int);
        const std::pair<const char*, TwoOp> ops[] = {
            {"Fifty", krl::FiftyMixBuffers},    {"Add", krl::AddBuffers},
            {"Multiply", krl::MultiplyBuffers}, {"Darken", krl::DarkenBuffers},
            {"Lighten", krl::LightenBuffers},   {"Diff", krl::DiffBuffers}};
        for (const auto& [name, op] : ops) {
            Pic a = card;
            op(a.r, a.g, a.b, scene.r, scene.g, scene.b, W, H);
            r.cells.push_back({name, a});
        }
        rows.push_back(r);
    }
    {
        Row r{"AlphaMix (mask), FillBufferColor", {}};
        Pic a = card;
        krl::AlphaMix(a.r, a.g, a.b, scene.r, scene.g, scene.b, mask, W, H);
        r.cells.push_back({"AlphaMix", a});
        a = card;
        krl::FillBufferColor(a.r, a.g, a.b, 40, 120, 200, W + 1, H + 1);
        r.cells.push_back({"Fill 40,120,200", a});
        rows.push_back(r);
    }
    rows.push_back(mixSweep("AlphaMixThresh by the mask, level", card, scene, spread(0, 256),
                            [&mask](Pic& a, Pic& b, int v) {
                                krl::AlphaMixThresh(a.r, a.g, a.b, b.r, b.g, b.b, mask, v, W, H);
                            }));
    rows.push_back(mixSweep(
        "BoxMix, box from the centre, pct", card, scene, spread(0, 100),
        [](Pic& a, Pic& b, int v) {
            const int x1 = static_cast<int>(std::lround(W / 2.0 * (1 - v / 100.0)));
            const int y1 = static_cast<int>(std::lround(H / 2.0 * (1 - v / 100.0)));
            krl::BoxMix(a.r, a.g, a.b, b.r, b.g, b.b, W, H, x1, y1, W - x1, H - y1);
        },
        "%"));
    for (int mode = 1; mode <= 2; ++mode)
        rows.push_back(mixSweep(
            QString("BlindMix mode %1, level").arg(mode), card, scene, spread(0, 255),
            [mode](Pic& a, Pic& b, int v) { krl::BlindMix(a.r, a.g, a.b, b.r, b.g, b.b, W, H, v, mode); }));
    for (int mode = 1; mode <= 2; ++mode)
        rows.push_back(mixSweep(QString("DoorMix mode %1, leaf").arg(mode), card, scene,
                                spread(0, (mode == 1 ? W + 1 : H + 1) / 2), [mode](Pic& a, Pic& b, int v) {
                                    krl::DoorMix(a.r, a.g, a.b, b.r, b.g, b.b, W, H, v, mode);
                                }));
    using StripeOp =
        void (*)(Plane&, Plane&, Plane&, const Plane&, const Plane&, const Plane&, int, int, int, int, int);
    const std::pair<const char*, StripeOp> stripes[] = {{"StripeMix", krl::StripeMix},
                                                        {"SlideStripeMix", krl::SlideStripeMix},
                                                        {"PushStripeMix", krl::PushStripeMix}};
    for (const auto& [name, op] : stripes)
        for (int mode = 1; mode <= 2; ++mode)
            rows.push_back(mixSweep(QString("%1 mode %2, stripe 20, reveal").arg(name).arg(mode), card, scene,
                                    spread(0, mode == 1 ? W : H), [op, mode](Pic& a, Pic& b, int v) {
                                        op(a.r, a.g, a.b, b.r, b.g, b.b, W, H, 20, v, mode);
                                    }));
    const char* sides[] = {"left", "right", "top", "bottom"};
    for (int mode = 1; mode <= 4; ++mode)
        rows.push_back(mixSweep(QString("SlideOverlay mode %1 (%2), offset").arg(mode).arg(sides[mode - 1]),
                                card, scene, spread(0, mode <= 2 ? W : H), [mode](Pic& a, Pic& b, int v) {
                                    krl::SlideOverlay(a.r, a.g, a.b, b.r, b.g, b.b, W, H, v, mode);
                                }));
    // As the alpha slides run it: slide with the frame's alpha, then mix the fresh frame through the
    // moved alpha.
    for (int mode = 1; mode <= 4; ++mode)
        rows.push_back(mixSweep(QString("ASlideOverlay mode %1 + AlphaMix, offset").arg(mode), card, scene,
                                spread(0, mode <= 2 ? W : H), [mode, &mask, &card](Pic& a, Pic& b, int v) {
                                    Plane moved(W, H);
                                    krl::ASlideOverlay(a.r, a.g, a.b, b.r, b.g, b.b, moved, mask, W, H, v,
                                                       mode);
                                    Pic fresh = card;
                                    krl::AlphaMix(a.r, a.g, a.b, fresh.r, fresh.g, fresh.b, moved, W, H);
                                }));
    for (int mode = 1; mode <= 4; ++mode)
        rows.push_back(mixSweep(QString("PushOverlay mode %1, offset").arg(mode), card, scene,
                                spread(0, mode <= 2 ? W : H), [mode](Pic& a, Pic& b, int v) {
                                    krl::PushOverlay(a.r, a.g, a.b, b.r, b.g, b.b, W, H, v, mode);
                                }));
    rows.push_back(mixSweep("PushOverlay mode 3, one picture rolled (vertical hold)", scene, scene,
                            spread(0, H), [](Pic& a, Pic&, int v) {
                                Pic c = a;
                                krl::PushOverlay(a.r, a.g, a.b, c.r, c.g, c.b, W, H, v, 3);
                            }));
    for (int mode = 1; mode <= 6; ++mode) {
        const bool across = mode == 1 || mode == 2 || mode == 5;
        const int size = across ? W : H;
        rows.push_back(mixSweep(
            QString("StretchOverlay mode %1, %2").arg(mode).arg(across ? "right" : "bottom"), card, scene,
            spread(mode == 5 || mode == 6 ? (size + 1) / 2 : 0, size), [mode, across](Pic& a, Pic& b, int v) {
                const int right = across ? v : W;
                const int bottom = across ? H : v;
                const int left = mode == 5 ? W - v : 0;
                const int top = mode == 6 ? H - v : 0;
                krl::StretchOverlay(a.r, a.g, a.b, b.r, b.g, b.b, W, H, right, bottom, left, top, mode);
            }));
    }
    for (int mode = 1; mode <= 2; ++mode)
        for (int which = 0; which <= 1; ++which) {
            Row r{QString("SqueezeOverlay mode %1, seam; %2 triple shown")
                      .arg(mode)
                      .arg(which ? "source" : "frame"),
                  {}};
            for (int seam : spread(0, mode == 1 ? W : H)) {
                Pic frame = card;
                Pic source = scene;
                const Pic saved = scene;
                krl::SqueezeOverlay(frame.r, frame.g, frame.b, source.r, source.g, source.b, saved.r, saved.g,
                                    saved.b, W, H, mode == 1 ? seam : W, mode == 2 ? seam : H, 0, 0, mode);
                r.cells.push_back({QString::number(seam), which ? source : frame});
            }
            rows.push_back(r);
        }
    {
        Row r{"ResizeBuffer of the card: down, and round trips back to full size", {}};
        Pic small = blank(79, 59);
        krl::ResizeBuffer(small.r, small.g, small.b, card.r, card.g, card.b, 79, 59, W, H);
        Pic shown = blank();
        shown.r.fill(128);
        shown.g.fill(128);
        shown.b.fill(128);
        for (int y = 0; y <= 59; ++y)
            for (int x = 0; x <= 79; ++x) {
                shown.r.at(x + 40, y + 30) = small.r.at(x, y);
                shown.g.at(x + 40, y + 30) = small.g.at(x, y);
                shown.b.at(x + 40, y + 30) = small.b.at(x, y);
            }
        r.cells.push_back({"to 80x60", shown});
        for (int side : {40, 20}) {
            Pic tiny = blank(side - 1, side * 3 / 4 - 1);
            krl::ResizeBuffer(tiny.r, tiny.g, tiny.b, card.r, card.g, card.b, side - 1, side * 3 / 4 - 1, W,
                              H);
            Pic back = blank();
            krl::ResizeBuffer(back.r, back.g, back.b, tiny.r, tiny.g, tiny.b, W, H, side - 1,
                              side * 3 / 4 - 1);
            r.cells.push_back({QString("via %1x%2").arg(side).arg(side * 3 / 4), back});
        }
        Pic big = blank(319, 239);
        krl::ResizeBuffer(big.r, big.g, big.b, card.r, card.g, card.b, 319, 239, W, H);
        Pic back = blank();
        krl::ResizeBuffer(back.r, back.g, back.b, big.r, big.g, big.b, W, H, 319, 239);
        r.cells.push_back({"via 320x240", back});
        rows.push_back(r);
    }
}

// ---- the sheet ------------------------------------------------------------------------------------

QImage render(const std::vector<Row>& rows) {
    constexpr int kGap = 6;
    constexpr int kTitle = 16;
    constexpr int kLabel = 14;
    std::size_t maxCells = 0;
    for (const Row& r : rows)
        maxCells = std::max(maxCells, r.cells.size());
    const int cellW = kCols + kGap;
    const int rowH = kTitle + kRows + kLabel + kGap;
    const int width = kGap + static_cast<int>(maxCells) * cellW;
    const int height = kGap + static_cast<int>(rows.size()) * rowH;
    QImage sheet(width, height, QImage::Format_RGB32);
    sheet.fill(QColor(52, 54, 58));
    QPainter p(&sheet);
    QFont titleFont("DejaVu Sans", 8, QFont::Bold);
    QFont labelFont("DejaVu Sans", 7);
    titleFont.setPixelSize(11);
    labelFont.setPixelSize(10);
    int y = kGap;
    for (const Row& r : rows) {
        p.setFont(titleFont);
        p.setPen(QColor(235, 235, 235));
        p.drawText(QRect(kGap, y, width - 2 * kGap, kTitle), Qt::AlignLeft | Qt::AlignVCenter, r.title);
        int x = kGap;
        for (const Cell& c : r.cells) {
            QImage img = toImage(c.pic);
            if (img.width() > kCols || img.height() > kRows) img = img.copy(0, 0, kCols, kRows);
            p.drawImage(x + (kCols - img.width()) / 2, y + kTitle + (kRows - img.height()) / 2, img);
            p.setFont(labelFont);
            p.setPen(QColor(200, 200, 200));
            p.drawText(QRect(x, y + kTitle + kRows, kCols, kLabel), Qt::AlignCenter, c.label);
            x += cellW;
        }
        y += rowH;
    }
    p.end();
    return sheet;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: kirrel_contact_sheet OUT.png\n");
        return 2;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    krl::SeedNoise(2024); // the same sheet every time
    const Pic card = makeGradientCard();
    const Pic scene = makeScene();
    const Plane mask = makeMask();

    std::vector<Row> rows;
    addFilterRows(rows, card, scene, mask);
    addMixingRows(rows, card, scene, mask);

    const QImage sheet = render(rows);
    if (!sheet.save(QString::fromLocal8Bit(argv[1]), "PNG")) {
        std::fprintf(stderr, "cannot write %s\n", argv[1]);
        return 1;
    }
    std::printf("%s: %zu rows\n", argv[1], rows.size());
    return 0;
}
