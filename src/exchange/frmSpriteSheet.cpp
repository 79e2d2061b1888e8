#include "exchange/frmSpriteSheet.h"

#include "exchange/ExportForms.h"
#include "exchange/SpriteSheet.h"
#include "panel/DisabledWhileRunning.h"
#include "panel/EnsureAnimation.h"
#include "panel/Skin.h"
#include "stored/AnimUndo.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace kirrel::exchange {

namespace {
// The question as the filter dialogs word it, with three line feeds.
constexpr const char* kNoAnimation =
    "No Animation in memory!\n\n\nWould you like to create an animation now?";
} // namespace

frmSpriteSheet::frmSpriteSheet() : FormBase("frmSpriteSheet", "Kirrel-Anim To Sprite Sheet") {
    auto* grid = new QGridLayout(this);
    lblFrames_ = makeLabel("lblFrames", "Frames: ");
    lblRows_ = makeLabel("lblRows", "Rows: ");
    lblCols_ = makeLabel("lblCols", "Columns: ");
    grid->addWidget(lblFrames_, 0, 0);
    grid->addWidget(lblRows_, 1, 0);
    grid->addWidget(lblCols_, 2, 0);
    chkUndoSave_ = makeCheck("chkUndoSave", "Save Undo");
    cmdUndo_ = makeButton("cmdUndo", "Undo", [this] { cmdUndo_Click(); });
    grid->addWidget(chkUndoSave_, 3, 0);
    grid->addWidget(cmdUndo_, 3, 1);
    cmdRun_ = makeButton("cmd_Run", "Apply", [this] { cmd_Run_Click(); });
    grid->addWidget(cmdRun_, 4, 0);
    grid->addWidget(makeButton("cmdCancel", "Done", [this] { closeDialog(); }), 4, 1);
}

void frmSpriteSheet::formLoad() {
    skinExportForm(this);
    Frames = van().Van_GetTotalFrames();
    refreshLabels();
}

void frmSpriteSheet::refreshLabels() {
    const SpriteGrid g = spriteGrid(Frames);
    Rows = g.rows;
    Cols = g.cols;
    lblFrames_->setText(QString("Frames: %1").arg(Frames));
    lblRows_->setText(QString("Rows: %1").arg(Rows));
    lblCols_->setText(QString("Columns: %1").arg(Cols));
}

void frmSpriteSheet::cmd_Run_Click() {
    const int current = van().Van_GetCurrentFrame();
    van().Van_StopAnimation();
    if (van().Van_GetTotalFrames() == 0) {
        panel::Ensure_Animation(
            *this, {},
            [this] {
                Frames = van().Van_GetTotalFrames();
                refreshLabels();
            },
            kNoAnimation);
        return;
    }
    stored::saveUndoIfChecked(chkUndoSave_);
    const panel::DisabledWhileRunning busy({cmdRun_});
    buildSheet();
    van().Van_GotoFrame(current);
    van().Van_Refresh();
}

void frmSpriteSheet::buildSheet() {
    H = van().Van_BufferHeight();
    W = van().Van_BufferWidth();
    Frames = van().Van_GetTotalFrames();
    refreshLabels();
    const Sheet sheet = exchange::buildSheet(van(), W, H, Frames, SpriteGrid{Rows, Cols});
    SheetW = static_cast<std::int16_t>(sheet.r.width());
    SheetH = static_cast<std::int16_t>(sheet.r.height());
    van().Van_NewBuffer(SheetW, SheetH);
    Frames = van().Van_GetTotalFrames();
    refreshLabels();
    van().Van_SetRbuffer(sheet.r);
    van().Van_SetGbuffer(sheet.g);
    van().Van_SetBbuffer(sheet.b);
    van().Van_RestorePointer();
    van().Van_Unlock();
    van().Van_Refresh();
}

void frmSpriteSheet::cmdUndo_Click() {
    stored::cmdUndoClick(cmdUndo_);
    Frames = van().Van_GetTotalFrames();
    refreshLabels();
}

} // namespace kirrel::exchange
