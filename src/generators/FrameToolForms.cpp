#include "generators/FrameToolForms.h"

#include "generators/FrameTools.h"
#include "panel/EnsureAnimation.h"
#include "panel/Panel.h"
#include "panel/Skin.h"
#include "stored/AnimUndo.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kirrel::generators {

namespace {

constexpr const char* kSizeChanged = "Animation Size Changed. Settings updated.";
constexpr const char* kSameFrame = "Please Select Two Different Frames";
constexpr const char* kNoAnimation =
    "No Animation in memory!\n\n\nWould you like to create an animation now?";

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

void skin(panel::FormBase* form, QLabel* description, std::initializer_list<QPushButton*> buttons) {
    const panel::SkinSettings s = panel::readSkinSettings();
    panel::colourBackground(form, panel::kPanelBackdrop);
    panel::colourControl(description, s.textboxFill, s.textboxText);
    for (QPushButton* b : buttons)
        panel::colourButton(b, s.buttonFill);
    panel::Draw_Pattern(form);
}

} // namespace

const FrameToolTraits& frameSwapTraits() {
    return kSwap;
}

const FrameToolTraits& frameCopyTraits() {
    return kCopy;
}

FrameToolForm::FrameToolForm(const FrameToolTraits& traits)
    : FormBase(traits.formName, traits.caption), traits_(traits) {
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(14, 14, 14, 12);
    outer->setSpacing(10);
    description_ = makeLabel("Label1", traits_.description);
    description_->setWordWrap(true);
    description_->setMargin(5);
    outer->addWidget(description_);

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

    outer->addLayout(makeApplyRow(
        chkUndoSave_, cmdUndo_, cmdRun_, cmdCancel_, [this] { stored::cmdUndoClick(cmdUndo_); },
        [this] { cmd_Run_Click(); }, [this] { closeDialog(); }));
    setFixedSize(sizeHint().expandedTo(QSize(400, 0)));
}

void FrameToolForm::formLoad() {
    chkUndoSave_->setChecked(false);
    TotalFrames = van().Van_GetTotalFrames();
    skin(this, description_, {cmdRun_, cmdUndo_, cmdCancel_});
    // The two labels are what the user clicks: they wear the colours of the panel's text boxes.
    const panel::SkinSettings s = panel::readSkinSettings();
    for (panel::ClickLabel* l : lblFrameSelected_)
        panel::colourControl(l, s.textboxFill, s.textboxText);
}

void FrameToolForm::formUnload() {
    panel::showMainPanel();
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

void FrameToolForm::cmd_Run_Click() {
    // The tool leaves the user on the last frame it touched.
    const std::int16_t now = van().Van_GetTotalFrames();
    if (TotalFrames != now) {
        van().Van_MessageBox(kSizeChanged);
        TotalFrames = now;
        resetLabels();
        return;
    }
    van().Van_StopAnimation();
    if (TotalFrames == 0) {
        panel::Ensure_Animation(
            *this, {}, [this] { TotalFrames = van().Van_GetTotalFrames(); }, kNoAnimation);
        return;
    }
    if (traits_.refusesSameFrame && FrameOne == FrameTwo) {
        van().Van_MessageBox(kSameFrame);
        return;
    }
    stored::saveUndoIfChecked(chkUndoSave_);
    traits_.procedure(FrameOne, FrameTwo);
}

frmPingPong::frmPingPong() : FormBase("frmPingPong", "Kirrel-Ping Pong Animation") {
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(14, 14, 14, 12);
    outer->setSpacing(10);
    description_ =
        makeLabel("Label1", "This plugin appends a reversed version of the current animation which "
                            "gives a time stop and reverse effect.");
    description_->setWordWrap(true);
    description_->setMargin(5);
    outer->addWidget(description_);
    outer->addLayout(makeApplyRow(
        chkUndoSave_, cmdUndo_, cmdRun_, cmdCancel_, [this] { stored::cmdUndoClick(cmdUndo_); },
        [this] { cmd_Run_Click(); }, [this] { closeDialog(); }));
    setFixedSize(sizeHint().expandedTo(QSize(400, 0)));
}

void frmPingPong::formLoad() {
    chkUndoSave_->setChecked(false);
    skin(this, description_, {cmdRun_, cmdUndo_, cmdCancel_});
}

void frmPingPong::formUnload() {
    panel::showMainPanel();
}

void frmPingPong::cmd_Run_Click() {
    const int remembered = van().Van_GetCurrentFrame();
    van().Van_StopAnimation();
    if (van().Van_GetTotalFrames() == 0) {
        panel::Ensure_Animation(*this, {}, {}, kNoAnimation);
        return;
    }
    stored::saveUndoIfChecked(chkUndoSave_);
    PingPongAppend();
    van().Van_GotoFrame(remembered);
    van().Van_Refresh();
}

} // namespace kirrel::generators
