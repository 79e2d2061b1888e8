#include "exchange/frmSave2AnimGif.h"

#include "exchange/ExportForms.h"
#include "exchange/GifExport.h"
#include "exchange/TextNumber.h"
#include "panel/Numeric.h"
#include "panel/Skin.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>

namespace kirrel::exchange {

namespace {
constexpr int kMostInGif = 65535;

// An empty delay or loop box reads as "0"; nothing else is repaired.
void zeroIfEmpty(QLineEdit* box) {
    if (box->text().isEmpty()) box->setText("0");
}
} // namespace

frmSave2AnimGif::frmSave2AnimGif() : FormBase("frmSave2AnimGif", "Export Animation to Animated Gif") {
    auto* grid = new QGridLayout(this);
    makePicture("TempPic")->hide();
    grid->addWidget(makeLabel("Label1", "Individual Frame Settings"), 0, 0, 1, 2);
    cboFrameList_ = makeCombo("cboFrameList");
    grid->addWidget(cboFrameList_, 1, 0);
    cmdSetDelay_ = makeButton("cmdSetDelay", "Set Delay", [this] { cmdSetDelay_Click(); });
    grid->addWidget(cmdSetDelay_, 1, 1);
    grid->addWidget(makeLabel("Label3", "Global Settings"), 2, 0, 1, 2);
    chkGlobalDelay_ = makeCheck("chkGlobalDelay", " Global Frame Delay (1/100th second)",
                                [this] { chkGlobalDelay_Click(); });
    grid->addWidget(chkGlobalDelay_, 3, 0);
    txtDelay_ = makeText("txtDelay");
    txtDelay_->setText("0");
    onValidate(txtDelay_, [this] { zeroIfEmpty(txtDelay_); });
    grid->addWidget(txtDelay_, 3, 1);
    chkGifTransparent_ = makeCheck("chkGifTransparent", "Use Primary Color as Transparent Color?");
    grid->addWidget(chkGifTransparent_, 4, 0, 1, 2);
    grid->addWidget(makeLabel("Label2", "Loops (Enter 0 for infinite looping)"), 5, 0);
    txtLoops_ = makeText("txtLoops");
    txtLoops_->setText("0");
    onValidate(txtLoops_, [this] { zeroIfEmpty(txtLoops_); });
    grid->addWidget(txtLoops_, 5, 1);
    cmdSave_ = makeButton("cmdSave", "Save", [this] { cmdSave_Click(); });
    cmdCancel_ = makeButton("cmdCancel", "Done", [this] { closeDialog(); });
    grid->addWidget(cmdSave_, 6, 0);
    grid->addWidget(cmdCancel_, 6, 1);
}

QString frmSave2AnimGif::frameEntry(int frame, std::int32_t delay) {
    return QString("Frame: %1 (Delay = %2)").arg(frame).arg(delay);
}

void frmSave2AnimGif::formLoad() {
    skinExportForm(this);
    Fill_Frame_List();
}

void frmSave2AnimGif::Fill_Frame_List() {
    Total = van().Van_GetTotalFrames();
    cboFrameList_->clear();
    FrameDelay.assign(static_cast<std::size_t>(std::max(Total, 0)), 0);
    for (int i = 0; i < Total; ++i)
        cboFrameList_->addItem(frameEntry(i, 0));
    if (Total > 0) cboFrameList_->setCurrentIndex(0);
}

void frmSave2AnimGif::chkGlobalDelay_Click() {
    cmdSetDelay_->setEnabled(!chkGlobalDelay_->isChecked());
}

void frmSave2AnimGif::cmdSetDelay_Click() {
    const int frame = cboFrameList_->currentIndex();
    const std::string answer = askInput("Set Delay for Frame #" + std::to_string(frame), "Kirrel", "");
    const auto number = numericValue(answer);
    const std::int32_t value = number ? toInt32(*number) : -1;
    if (value > kMostInGif) {
        van().Van_MessageBox(rangeRefusal("The delay", 0, kMostInGif));
        return;
    }
    // A cancelled box or a text that is no number changes nothing; 0 is a valid delay.
    if (value > -1 && frame >= 0 && static_cast<std::size_t>(frame) < FrameDelay.size()) {
        FrameDelay[static_cast<std::size_t>(frame)] = value;
        cboFrameList_->setItemText(frame, frameEntry(frame, value));
    }
}

void frmSave2AnimGif::cmdSave_Click() {
    ButtonsBack back(cmdSave_, cmdCancel_);
    zeroIfEmpty(txtDelay_);
    zeroIfEmpty(txtLoops_);
    // A GIF holds delays and loop counts from 0 to 65535; a value outside would reach the file as
    // another number (-1 as 65535), so it is refused before anything is written.
    const auto delay = textInRange(txtDelay_->text().toStdString(), 0, kMostInGif);
    const auto loops = textInRange(txtLoops_->text().toStdString(), 0, kMostInGif);
    if (!delay || !loops) {
        van().Van_MessageBox(rangeRefusal(!delay ? "The delay" : "The loop count", 0, kMostInGif));
        return;
    }
    GlobalDelay = *delay;
    LoopCount = *loops;
    if (!chkGifTransparent_->isChecked() && chkGlobalDelay_->isChecked()) {
        ExportGifGlobal(van(), kGifGlobal, GlobalDelay, LoopCount);
    } else {
        PerFrameSettings s;
        s.transparent = chkGifTransparent_->isChecked();
        s.globalDelay = chkGlobalDelay_->isChecked();
        s.delay = GlobalDelay;
        s.frameDelays = FrameDelay;
        s.loops = LoopCount;
        ExportGifPerFrame(van(), s);
    }
    van().Van_SetProgress(0);
}

} // namespace kirrel::exchange
