#include "filters/frmGreyOut.h"

#include <QFrame>
#include <QGridLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QSlider>
#include <QVBoxLayout>

namespace kirrel::filters {

namespace {

const FilterTraits kGreyOutTraits{"frmGreyOut",
                                  "Kirrel - GreyOut Filter",
                                  "Desaturate Filter By Channel",
                                  200,
                                  /*runDisablesUndoAndDone=*/true,
                                  /*gotoFrameAfterUndoSave=*/false,
                                  /*showAgainAfterRange=*/false,
                                  /*hasUseAlpha=*/false};

} // namespace

frmGreyOut::frmGreyOut() : ChannelFilterForm(kGreyOutTraits) {
    // The three channel options hold one at a time among themselves, apart from the frame choice.
    auto* Frame1 = new QFrame(this);
    Frame1->setObjectName("Frame1");
    auto* grid = new QGridLayout(Frame1);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(2);
    addChannel(red_, grid, 0, "Red");
    addChannel(green_, grid, 1, "Green");
    addChannel(blue_, grid, 2, "Blue");
    // The tolerance's box opens with the text the colour boxes open with; the first move of the
    // slider puts its own value there.
    auto toleranceMoved = [this] {
        lblTolerance_->setText(QString::number(position(ToleranceSlider_)));
        PreviewOn = -1;
    };
    ToleranceSlider_ = addSliderRow(grid, 3, "Tolerance", "ToleranceSlider", -255, 255, 0, "lblTolerance",
                                    "128", &lblTolerance_, toleranceMoved, toleranceMoved);
    onValidate(lblTolerance_, [this] {
        repairTextBox(lblTolerance_, ToleranceSlider_);
        PreviewOn = -1;
    });
    parameterArea()->addWidget(Frame1);
    finishLayout();
}

void frmGreyOut::addChannel(Channel& c, QGridLayout* grid, int row, const QString& colour) {
    c.option = makeOption("chk" + colour, "", [this] { updatePreview(); });
    grid->addWidget(c.option, row, 0);
    skinToggles({c.option});
    // Only the selected channel's slider changes the picture; the others only their boxes.
    auto previewIfSelected = [this, &c] {
        if (c.option->isChecked()) updatePreview();
    };
    c.slider = addSliderRow(
        grid, row, colour, colour + "Slider", 0, 255, 128, "lbl" + colour, "128", &c.box,
        [&c, previewIfSelected] {
            c.box->setText(QString::number(c.slider->value()));
            previewIfSelected();
        },
        previewIfSelected);
}

GreyOutSettings frmGreyOut::settings() const {
    GreyOutSettings s;
    const Channel* all[] = {&red_, &green_, &blue_};
    for (int n = 1; n <= 3; ++n)
        if (all[n - 1]->option->isChecked()) {
            s.channel = n;
            s.slider = position(all[n - 1]->slider);
        }
    s.tolerance = position(ToleranceSlider_);
    return s;
}

void frmGreyOut::currentFrame() {
    GreyOutCurrentFrame();
}

void frmGreyOut::frameRange() {
    GreyOutFrameRange(startText(), endText());
}

void frmGreyOut::pipeline(krl::Triple& picture, int w, int h) {
    const GreyOutSettings s = settings();
    if (s.channel != 0) Level = greyOutLevel(s.slider);
    greyOutPipeline(picture, s, w, h);
}

void frmGreyOut::GreyOutCurrentFrame() {
    W = van().Van_BufferWidth();
    H = van().Van_BufferHeight();
    if (PreviewOn == -1) {
        const int n = traits().previewSize;
        krl::Triple small = shrinkInto(fetchBuffer(van()), W, H);
        pipeline(small, n, n);
        showPreview(small);
        return;
    }
    P = fetchBuffer(van());
    C = P;
    pipeline(P, W, H);
    storeBuffer(van(), P);
}

void frmGreyOut::GreyOutFrameRange(std::int32_t Start, std::int32_t End) {
    W = van().Van_BufferWidth();
    H = van().Van_BufferHeight();
    // The frame current at entry is where the range leaves the host, as the user expects after a run.
    const int remembered = van().Van_GetCurrentFrame();
    for (std::int32_t i = Start; i <= End; ++i) {
        van().Van_GotoFrame(i);
        P = fetchBuffer(van());
        C = P;
        pipeline(P, W, H);
        storeBuffer(van(), P);
    }
    van().Van_GotoFrame(remembered);
}

} // namespace kirrel::filters
