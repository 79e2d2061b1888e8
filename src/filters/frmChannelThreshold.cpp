#include "filters/frmChannelThreshold.h"

#include "panel/EventGuard.h"
#include "panel/Numeric.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QVBoxLayout>

namespace kirrel::filters {

namespace {

const FilterTraits kChannelThresholdTraits{"frmChannelThreshold",
                                           "Kirrel - Channel Threshold Filter",
                                           "Threshold Filter By Channel",
                                           200,
                                           /*runDisablesUndoAndDone=*/true,
                                           /*gotoFrameAfterUndoSave=*/false,
                                           /*showAgainAfterRange=*/false,
                                           /*hasUseAlpha=*/false};

} // namespace

frmChannelThreshold::frmChannelThreshold() : ChannelFilterForm(kChannelThresholdTraits) {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(2);
    addChannel(red_, grid, 0, "Red", "Red", "chkRed");
    addChannel(green_, grid, 1, "Green", "Green", "chkGreen");
    addChannel(blue_, grid, 2, "Blue", "Blue", "chkBlue");
    addChannel(grey_, grid, 3, "Grey", "RGB", "chkRGB");
    parameterArea()->addLayout(grid);

    auto* mixing = new QHBoxLayout;
    QLabel* mixingLabel = makeLabel("lblMixing", "Mixing");
    mixingLabel->setMargin(3);
    cboMixing_ = makeCombo("cboMixing");
    cboMixing_->addItem("None");
    for (const ChannelMix& m : channelMixes())
        cboMixing_->addItem(m.text);
    cboMixing_->setCurrentIndex(0);
    connect(cboMixing_, &QComboBox::currentIndexChanged, this, guarded([this](int) { updatePreview(); }));
    onValidate(cboMixing_, [this] { updatePreview(); });
    mixing->addWidget(mixingLabel);
    mixing->addWidget(cboMixing_, 1);
    parameterArea()->addLayout(mixing);
    skinTextBoxes({mixingLabel, cboMixing_});
    finishLayout();
}

void frmChannelThreshold::addChannel(Channel& c, QGridLayout* grid, int row, const QString& caption,
                                     const QString& colour, const QString& check) {
    c.check = makeCheck(check, "", [this] { updatePreview(); });
    grid->addWidget(c.check, row, 0);
    skinToggles({c.check});
    // A finished change shows the value in the box; both it and a drag step preview the channel
    // only while its box is checked.
    auto previewIfChecked = [this, &c] {
        if (c.check->checkState() == Qt::Checked) updatePreview();
    };
    c.slider = addSliderRow(
        grid, row, caption, colour + "Slider", 0, 255, 128, "lbl" + colour, "128", &c.box,
        [&c, previewIfChecked] {
            c.box->setText(QString::number(c.slider->value()));
            previewIfChecked();
        },
        previewIfChecked);
}

ChannelThresholdSettings frmChannelThreshold::settings() const {
    ChannelThresholdSettings s;
    s.red = red_.check->checkState() == Qt::Checked;
    s.green = green_.check->checkState() == Qt::Checked;
    s.blue = blue_.check->checkState() == Qt::Checked;
    s.grey = grey_.check->checkState() == Qt::Checked;
    s.redLevel = RedLevel;
    s.greenLevel = GreenLevel;
    s.blueLevel = BlueLevel;
    s.greyLevel = position(grey_.slider);
    s.mixing = cboMixing_->currentText().toStdString();
    return s;
}

void frmChannelThreshold::readLevels() {
    RedLevel = toByte(position(red_.slider));
    GreenLevel = toByte(position(green_.slider));
    BlueLevel = toByte(position(blue_.slider));
}

void frmChannelThreshold::currentFrame() {
    ChannelThresholdCurrentFrame();
}

void frmChannelThreshold::frameRange() {
    ChannelThresholdFrameRange(startText(), endText());
}

void frmChannelThreshold::ChannelThresholdCurrentFrame() {
    readLevels();
    if (PreviewOn == -1) {
        preview();
        return;
    }
    W = van().Van_BufferWidth();
    H = van().Van_BufferHeight();
    pipeline();
}

void frmChannelThreshold::ChannelThresholdFrameRange(std::int32_t Start, std::int32_t End) {
    readLevels();
    W = van().Van_BufferWidth();
    H = van().Van_BufferHeight();
    const int remembered = van().Van_GetCurrentFrame();
    for (std::int32_t i = Start; i <= End; ++i) {
        van().Van_GotoFrame(i);
        // A one-frame range divides by zero here, before the frame is touched; it is reported.
        van().Van_SetProgress(100.0 * divide(i - Start, End - Start));
        pipeline();
    }
    van().Van_GotoFrame(remembered);
    van().Van_Refresh();
    van().Van_SetProgress(0);
}

void frmChannelThreshold::pipeline() {
    P = fetchBuffer(van());
    C = P;
    channelThresholdRun(P, C, settings(), W, H, [this] { return fetchBuffer(van()); });
    storeBuffer(van(), P);
}

void frmChannelThreshold::preview() {
    H = van().Van_BufferHeight();
    W = van().Van_BufferWidth();
    krl::Triple Q = shrinkInto(fetchBuffer(van()), W, H);
    // The preview's own unfiltered copy, so the form's C keeps the frame's size.
    const krl::Triple unfiltered = Q;
    channelThresholdPreview(Q, unfiltered, settings(), traits().previewSize);
    showPreview(Q);
}

} // namespace kirrel::filters
