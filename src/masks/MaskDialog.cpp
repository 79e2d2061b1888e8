#include "masks/MaskDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kirrel::masks {

MaskDialog::MaskDialog(const MaskDialogTraits& traits, const QStringList& sources)
    : EffectDialog(traits.formName, traits.caption), traits_(traits), sources_(sources) {
    auto* outer = makeWindowLayout<QVBoxLayout>(8);
    outer->addWidget(makeDescription(traits_.description));

    auto* sourceGrid = new QGridLayout;
    label2_ = makeLabel("Label2", "Lighter Colors Favor");
    label3_ = makeLabel("Label3", "Darker Colors Favor");
    cboLighter_ = makeCombo("cboLighter");
    cboDarker_ = makeCombo("cboDarker");
    sourceGrid->addWidget(label2_, 0, 0);
    sourceGrid->addWidget(cboLighter_, 0, 1);
    sourceGrid->addWidget(label3_, 1, 0);
    sourceGrid->addWidget(cboDarker_, 1, 1);
    sourceGrid->setColumnStretch(1, 1);
    outer->addLayout(sourceGrid);

    extra_ = new QVBoxLayout;
    extra_->setSpacing(6);
    outer->addLayout(extra_);

    if (traits_.frameChoice) outer->addLayout(makeFrameChoice());
    outer->addLayout(makeFrameLists());
    outer->addStretch(1);
    outer->addLayout(makeApplyRow());
}

std::string MaskDialog::lighter() const {
    return cboLighter_->currentText().toStdString();
}

std::string MaskDialog::darker() const {
    return cboDarker_->currentText().toStdString();
}

void MaskDialog::formLoad() {
    readTempDirAndFrames();
    loadExtras();
    for (QComboBox* list : {cboLighter_, cboDarker_}) {
        list->clear();
        list->addItems(sources_);
    }
    cboLighter_->setCurrentIndex(traits_.lighterStart);
    cboDarker_->setCurrentIndex(traits_.darkerStart);
    SkinParts skin{frameListParts(), {chkUndoSave()}, {}};
    skin.texts.insert(skin.texts.end(), {cboLighter_, cboDarker_, label2_, label3_});
    if (optCurrent()) skin.toggles.insert(skin.toggles.end(), {optCurrent(), optMultiple()});
    applySkin(skin);
}

} // namespace kirrel::masks
