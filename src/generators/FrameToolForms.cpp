#include "generators/FrameToolForms.h"

#include "generators/FrameTools.h"
#include "panel/EnsureAnimation.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace kirrel::generators {

namespace {

constexpr const char* kSameFrame = "Please Select Two Different Frames";
// The narrowest the tools' dialogs are.
constexpr int kWidth = 400;

const FrameToolTraits kSwap{"frmFrameSwap",
                            "Kirrel-Swap Frames",
                            "Swap any 2 Frames with each other",
                            {"Frame ", "Frame "},
                            {"Select Frame 1", "Select Frame 2"},
                            "<----->",
                            true,
                            &SwapFrames};
const FrameToolTraits kCopy{"frmFrameCopy",
                            "Kirrel-Frame Copier",
                            "Copy one frame over to another",
                            {"Source Frame: ", "Destination Frame: "},
                            {"Select Source Frame", "Select Destination Frame"},
                            "------------->",
                            false,
                            &CopyFrames};

} // namespace

const FrameToolTraits& frameSwapTraits() {
    return kSwap;
}

const FrameToolTraits& frameCopyTraits() {
    return kCopy;
}

FrameToolForm::FrameToolForm(const FrameToolTraits& traits)
    : EffectDialog(traits.formName, traits.caption), traits_(traits) {
    auto* outer = makeWindowLayout<QVBoxLayout>(10);
    outer->addWidget(makeDescription(traits_.description));

    auto* frames = new QHBoxLayout;
    for (int i = 0; i < 2; ++i) {
        lblFrameSelected_[i] = makeClickLabel(QString("lblFrameSelected(%1)").arg(i), "",
                                              [this, i] { lblFrameSelected_Click(i); });
        lblFrameSelected_[i]->setCursor(Qt::PointingHandCursor);
        lblFrameSelected_[i]->setMargin(6);
        lblFrameSelected_[i]->setMinimumWidth(150);
        lblFrameSelected_[i]->setAlignment(Qt::AlignCenter);
    }
    frames->addWidget(lblFrameSelected_[0]);
    frames->addWidget(makeLabel("Label2", traits_.arrow), 0, Qt::AlignCenter);
    frames->addWidget(lblFrameSelected_[1]);
    outer->addLayout(frames);
    resetLabels();

    outer->addLayout(makeApplyRow());
    fixSize(kWidth);
}

void FrameToolForm::formLoad() {
    TotalFrames = van().Van_GetTotalFrames();
    // The two labels are what the user clicks: they wear the colours of the panel's text boxes.
    applySkin({{lblFrameSelected_[0], lblFrameSelected_[1]}, {}, {}});
}

void FrameToolForm::resetLabels() {
    FrameOne = 0;
    FrameTwo = 0;
    for (int i = 0; i < 2; ++i)
        lblFrameSelected_[i]->setText(QString(traits_.prefix[i]) + "0");
}

void FrameToolForm::lblFrameSelected_Click(int index) {
    const int chosen = van().Van_ValueBox(traits_.boxTitle[index], 0, TotalFrames - 1);
    std::int16_t& field = index == 0 ? FrameOne : FrameTwo;
    // A cancelled box answers with a negative number and changes nothing.
    if (chosen <= -1 || chosen == field) return;
    field = static_cast<std::int16_t>(chosen);
    lblFrameSelected_[index]->setText(QString(traits_.prefix[index]) + QString::number(chosen));
}

void FrameToolForm::run() {
    // The tool leaves the user on the last frame it touched.
    const std::int16_t now = van().Van_GetTotalFrames();
    if (TotalFrames != now) {
        van().Van_MessageBox(panel::kSizeChanged);
        TotalFrames = now;
        resetLabels();
        return;
    }
    van().Van_StopAnimation();
    if (TotalFrames == 0) {
        panel::Ensure_Animation(
            *this, {}, [this] { TotalFrames = van().Van_GetTotalFrames(); }, panel::kNoAnimationOffer);
        return;
    }
    if (traits_.refusesSameFrame && FrameOne == FrameTwo) {
        van().Van_MessageBox(kSameFrame);
        return;
    }
    saveUndoIfChecked();
    traits_.procedure(FrameOne, FrameTwo);
}

frmPingPong::frmPingPong() : EffectDialog("frmPingPong", "Kirrel-Ping Pong Animation") {
    auto* outer = makeWindowLayout<QVBoxLayout>(10);
    outer->addWidget(makeDescription("This plugin appends a reversed version of the current animation which "
                                     "gives a time stop and reverse effect."));
    outer->addLayout(makeApplyRow());
    fixSize(kWidth);
}

void frmPingPong::formLoad() {
    applySkin();
}

void frmPingPong::run() {
    const int remembered = van().Van_GetCurrentFrame();
    van().Van_StopAnimation();
    if (van().Van_GetTotalFrames() == 0) {
        panel::Ensure_Animation(*this, {}, {}, panel::kNoAnimationOffer);
        return;
    }
    saveUndoIfChecked();
    PingPongAppend();
    endRun(remembered);
}

} // namespace kirrel::generators
