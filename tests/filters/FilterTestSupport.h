#pragma once
// What the filter dialog tests share: an animation of distinct frames in the host, dialogs opened by
// form name, controls by name, and the preview shown compared with the picture it should be.

#include "pixel/Mixing.h"
#include "support/Forms.h"

#include <QComboBox>
#include <QImage>
#include <QLabel>

#include <vector>

namespace kirrel::test {

// The frame squeezed into a square preview of bounds n, as the dialogs do it.
inline host::Picture squeezed(const host::Picture& p, int n = 200) {
    host::Picture small(n, n);
    krl::ResizeBuffer(small.r, small.g, small.b, p.r, p.g, p.b, n, n, p.width(), p.height());
    return small;
}

class FilterTest : public FormTest {
  protected:
    static constexpr int kW = 23; // deliberately not square, and rows not a multiple of four bytes
    static constexpr int kH = 14;

    void SetUp() override {
        FormTest::SetUp();
        for (int i = 0; i < 4; ++i)
            frames.push_back(patternPicture(kW, kH, 41 * i));
        host().loadAnimation(frames, 0);
    }
    static QImage shown(panel::FormBase* f) {
        return static_cast<QLabel*>(f->control("ImageBox"))->pixmap().toImage();
    }
    // The number of pixels of the preview shown that differ from `expected` (its W x H part).
    static int wrongPixels(panel::FormBase* f, const host::Picture& expected) {
        const QImage image = shown(f);
        if (image.size() != QSize(expected.width(), expected.height())) return -1;
        int wrong = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const QRgb c = image.pixel(x, y);
                wrong += qRed(c) != expected.r.at(x, y) || qGreen(c) != expected.g.at(x, y) ||
                         qBlue(c) != expected.b.at(x, y);
            }
        return wrong;
    }
    // Apply to frames start..end rather than the frame shown.
    static void chooseRange(panel::FormBase* f, int start, int end) {
        choose(f, "optDirection(1)");
        ctl<QComboBox>(f, "cboFrameStart")->setCurrentIndex(start);
        ctl<QComboBox>(f, "cboFrameEnd")->setCurrentIndex(end);
    }
    // The progress the run reported, as the percentages it passed.
    std::vector<int> progress() const {
        std::vector<int> out;
        for (const std::string& c : calls("Van_SetProgress"))
            out.push_back(std::stoi(c.substr(c.find('(') + 1)));
        return out;
    }
    static bool isGrey(const host::Picture& p, int w, int h) {
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                if (p.r.at(x, y) != p.g.at(x, y) || p.g.at(x, y) != p.b.at(x, y)) return false;
        return true;
    }
    std::vector<host::Picture> frames;
};

} // namespace kirrel::test
