#include "panel/EffectDialog.h"

#include "panel/EventGuard.h"
#include "panel/Panel.h"
#include "panel/Skin.h"
#include "stored/AnimUndo.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace kirrel::panel {

// --- the window ----------------------------------------------------------------------------------

QLabel* EffectDialog::makeDescription(const QString& text, int margin) {
    description_ = makeLabel("Label1", text);
    description_->setWordWrap(true);
    description_->setMargin(margin);
    return description_;
}

void EffectDialog::fixSize(int minWidth) {
    setFixedSize(sizeHint().expandedTo(QSize(minWidth, 0)));
}

void EffectDialog::fixWidth(int width) {
    setFixedSize(QSize(width, sizeHint().height()).expandedTo(QSize(width, heightForWidth(width))));
}

void EffectDialog::applySkin(const SkinParts& parts) {
    const SkinSettings s = readSkinSettings();
    colourBackground(this, kPanelBackdrop);
    std::vector<QWidget*> texts = parts.texts;
    if (description_) texts.push_back(description_);
    for (QWidget* w : texts)
        colourControl(w, s.textboxFill, s.textboxText);
    std::vector<QWidget*> buttons = parts.buttons;
    if (cmdRun_) buttons.insert(buttons.end(), {cmdRun_, cmdUndo_, cmdCancel_});
    for (QWidget* b : buttons)
        colourButton(b, s.buttonFill);
    skinToggles(parts.toggles);
    Draw_Pattern(this);
}

void EffectDialog::skinTextBoxes(const std::vector<QWidget*>& texts) {
    const SkinSettings s = readSkinSettings();
    for (QWidget* w : texts)
        colourControl(w, s.textboxFill, s.textboxText);
}

void EffectDialog::skinToggles(const std::vector<QWidget*>& toggles) {
    const SkinSettings s = readSkinSettings();
    for (QWidget* w : toggles) {
        colourControl(w, s.buttonFill, 0x000000);
        w->setStyleSheet(w->styleSheet() + " padding: 3px 6px; border-radius: 3px;");
    }
}

void EffectDialog::formUnload() {
    showMainPanel();
}

// --- the apply row -------------------------------------------------------------------------------

QHBoxLayout* EffectDialog::makeApplyRow(const QString& runCaption) {
    chkUndoSave_ = makeCheck("chkUndoSave", "Save Undo");
    cmdUndo_ = makeButton("cmdUndo", "Undo", [this] { undo(); });
    cmdRun_ = makeButton("cmd_Run", runCaption, [this] {
        markRunAction();
        run();
    });
    cmdCancel_ = makeButton("cmdCancel", "Done", [this] { done(); });
    auto* row = new QHBoxLayout;
    row->addWidget(chkUndoSave_);
    row->addWidget(cmdUndo_);
    row->addStretch(1);
    row->addWidget(cmdRun_);
    row->addWidget(cmdCancel_);
    return row;
}

void EffectDialog::undo() {
    stored::cmdUndoClick(cmdUndo_);
}

void EffectDialog::done() {
    closeDialog();
}

std::vector<QWidget*> EffectDialog::applyRowButtons() const {
    return {cmdRun_, cmdUndo_, cmdCancel_};
}

bool EffectDialog::undoSaveChecked() const {
    return chkUndoSave_->checkState() == Qt::Checked;
}

void EffectDialog::saveUndoIfChecked() const {
    stored::saveUndoIfChecked(chkUndoSave_);
}

} // namespace kirrel::panel
