#include "exchange/ExportForms.h"

#include "exchange/GifExport.h"
#include "exchange/TextNumber.h"
#include "panel/Controls.h"
#include "panel/Skin.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace kirrel::exchange {

void skinExportForm(panel::FormBase* form) {
    const panel::SkinSettings s = panel::readSkinSettings();
    panel::colourBackground(form, panel::kPanelBackdrop);
    for (QLabel* l : form->findChildren<QLabel*>()) {
        if (qobject_cast<panel::PictureBox*>(l)) continue;
        panel::colourControl(l, s.textboxFill, s.textboxText);
        l->setStyleSheet(l->styleSheet() + " padding: 3px 6px;");
    }
    for (QComboBox* c : form->findChildren<QComboBox*>())
        panel::colourControl(c, s.textboxFill, s.textboxText);
    for (QAbstractButton* b : form->findChildren<QAbstractButton*>()) {
        if (auto* push = qobject_cast<QPushButton*>(b)) {
            panel::colourButton(push, s.buttonFill);
            continue;
        }
        panel::colourControl(b, s.buttonFill, 0x000000);
        b->setStyleSheet(b->styleSheet() + " padding: 3px 6px; border-radius: 3px;");
    }
    panel::Draw_Pattern(form);
}

ButtonsBack::ButtonsBack(QPushButton* save, QPushButton* done) : save_(save), done_(done) {
    save_->setEnabled(false);
    done_->setEnabled(false);
}
ButtonsBack::~ButtonsBack() {
    save_->setEnabled(true);
    done_->setEnabled(true);
}

frmSave2MNG::frmSave2MNG() : FormBase("frmSave2MNG", "Export Animation to MNG (Animated PNG)") {
    auto* grid = new QGridLayout(this);
    makePicture("TempPic")->hide();
    grid->addWidget(makeLabel("Label1", "Delay (1/100th of a second)"), 0, 0);
    txtDelay_ = makeText("txtDelay");
    txtDelay_->setText("0");
    grid->addWidget(txtDelay_, 0, 1);
    grid->addWidget(makeLabel("Label2", "Loops (Enter 0 for infinite looping)"), 1, 0);
    txtLoops_ = makeText("txtLoops");
    txtLoops_->setText("0");
    grid->addWidget(txtLoops_, 1, 1);
    cmdSave_ = makeButton("cmdSave", "Save", [this] { cmdSave_Click(); });
    cmdCancel_ = makeButton("cmdCancel", "Done", [this] { closeDialog(); });
    grid->addWidget(cmdSave_, 2, 0);
    grid->addWidget(cmdCancel_, 2, 1);
}

void frmSave2MNG::formLoad() {
    skinExportForm(this);
}

void frmSave2MNG::cmdSave_Click() {
    ButtonsBack back(cmdSave_, cmdCancel_);
    // No repair of empty boxes here: an empty box is a type mismatch.
    // An MNG holds its frame delay and loop count in 31 bits; the panel's own fields stop at 65535.
    constexpr int kMost = 65535;
    const auto delay = textInRange(txtDelay_->text().toStdString(), 0, kMost);
    const auto loops = textInRange(txtLoops_->text().toStdString(), 0, kMost);
    if (!delay || !loops) {
        van().Van_MessageBox(rangeRefusal(!delay ? "The delay" : "The loop count", 0, kMost));
        return;
    }
    ExportGifGlobal(van(), kMng, *delay, *loops);
    van().Van_SetProgress(0);
}

frmSave2PNG::frmSave2PNG() : FormBase("frmSave2PNG", "Export to Transparent PNG") {
    auto* grid = new QGridLayout(this);
    auto* help =
        makeLabel("Label1", "This Plugin will export the currently selected  layer / frame and export it "
                            "to a Transparent PNG");
    help->setWordWrap(true);
    grid->addWidget(help, 0, 0, 1, 2);
    const char* captions[3] = {"Use Alpha Channel for Transparency", "Use Primary Color as Transparent Color",
                               "Use Layer Transparency Settings"};
    for (int i = 0; i < 3; ++i) {
        optTransparency_[i] = makeOption(QString("optTransparency(%1)").arg(i), captions[i]);
        grid->addWidget(optTransparency_[i], 1 + i, 0, 1, 2);
    }
    // The alpha channel is the first choice, and the one a fresh dialog offers.
    optTransparency_[0]->setChecked(true);
    cmdSave_ = makeButton("cmdSave", "Save", [this] { cmdSave_Click(); });
    cmdCancel_ = makeButton("cmdCancel", "Done", [this] { closeDialog(); });
    grid->addWidget(cmdSave_, 4, 0);
    grid->addWidget(cmdCancel_, 4, 1);
}

void frmSave2PNG::formLoad() {
    skinExportForm(this);
}

MaskSource frmSave2PNG::chosenSource() const {
    if (optTransparency_[1]->isChecked()) return MaskSource::PrimaryColour;
    if (optTransparency_[2]->isChecked()) return MaskSource::LayerOpacity;
    return MaskSource::AlphaChannel;
}

void frmSave2PNG::cmdSave_Click() {
    ButtonsBack back(cmdSave_, cmdCancel_);
    ExportLayerPNG(van(), chosenSource());
    van().Van_SetProgress(0);
}

} // namespace kirrel::exchange
