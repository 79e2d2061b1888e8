#include "stored/frmMultiAnims.h"

#include "panel/Panel.h"
#include "panel/Skin.h"
#include "stored/SlotStore.h"
#include "stored/Thumbnail.h"
#include "stored/ThumbnailBox.h"

#include <QFile>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <functional>
#include <stdexcept>

namespace kirrel::stored {

namespace {
constexpr const char* kEmpty = "EMPTY";
constexpr const char* kAskOverwriteSlot =
    "\nThis will overwrite the animation saved in this slot!\n\nProceed?";
constexpr const char* kAskOverwriteBuffer = "\nThis will overwrite the current buffer!\n\nProceed?";
constexpr const char* kAskDelete = "\nThis will delete the animation saved in this slot!\n\nProceed?";
constexpr int kNo = 2;

QString arrayName(const char* name, int i) {
    return QString("%1(%2)").arg(name).arg(i);
}

// Deletes a file if it is there; one that is there and stays is an error.
void removeFile(const std::string& path) {
    QFile file(QString::fromStdString(path));
    if (file.exists() && !file.remove())
        throw std::runtime_error(fileNameOf(path) + " could not be deleted.");
}
} // namespace

frmMultiAnims::frmMultiAnims() : FormBase("frmMultiAnims", "Kirrel-Stored Animations") {
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(10, 10, 10, 10);
    outer->setSpacing(10);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(6);
    grid->addWidget(makeLabel("lblList", "Animation Information"), 0, 1);
    grid->addWidget(makeLabel("lblOptions", "Options"), 0, 2, 1, 3);
    for (int i = 0; i < kSlotCount; ++i)
        buildRow(i, grid);
    grid->setColumnStretch(1, 1);
    outer->addLayout(grid);

    auto* bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addWidget(makeButton("cmdCancel", "Done", [this] { cmdCancel_Click(); }));
    outer->addLayout(bottom);

    for (const char* heading : {"lblList", "lblOptions"}) {
        auto* label = static_cast<QLabel*>(control(heading));
        label->setMargin(4);
        label->setAlignment(Qt::AlignCenter);
    }
    setFixedSize(sizeHint().expandedTo(QSize(520, 0)));
}

void frmMultiAnims::buildRow(int i, QGridLayout* grid) {
    Row& r = rows_[static_cast<std::size_t>(i)];
    const auto index = static_cast<short>(i);
    r.picThumbnail = makeThumbnailBox(this, arrayName("picThumbnail", i));
    r.lblSlots = makeLabel(arrayName("lblSlots", i), kEmpty);
    r.lblSlots->setMargin(6);
    r.lblSlots->setMinimumWidth(210);
    r.lblSlots->setFixedHeight(r.picThumbnail->height());
    r.cmdSave = makeButton(arrayName("cmdSave", i), "Save", [this, index] { cmdSave_Click(index); });
    r.cmdLoad = makeButton(arrayName("cmdLoad", i), "Load", [this, index] { cmdLoad_Click(index); });
    r.cmdClear = makeButton(arrayName("cmdClear", i), "Clear", [this, index] { cmdClear_Click(index); });
    grid->addWidget(r.picThumbnail, i + 1, 0);
    grid->addWidget(r.lblSlots, i + 1, 1);
    grid->addWidget(r.cmdSave, i + 1, 2);
    grid->addWidget(r.cmdLoad, i + 1, 3);
    grid->addWidget(r.cmdClear, i + 1, 4);
}

void frmMultiAnims::formLoad() {
    tempDir_ = van().Van_GetTempDir();
    totalFrames_ = van().Van_GetTotalFrames();
    ResetSlots();
    Apply_Skin();
}

void frmMultiAnims::Apply_Skin() {
    const panel::SkinSettings s = panel::readSkinSettings();
    panel::colourBackground(this, panel::kPanelBackdrop);
    for (const char* heading : {"lblList", "lblOptions"})
        panel::colourControl(control(heading), s.textboxFill, s.textboxText);
    for (const Row& r : rows_) {
        panel::colourControl(r.lblSlots, s.textboxFill, s.textboxText);
        for (QPushButton* b : {r.cmdSave, r.cmdLoad, r.cmdClear})
            panel::colourButton(b, s.buttonFill);
    }
    panel::colourButton(control("cmdCancel"), s.buttonFill);
    panel::Draw_Pattern(this);
}

void frmMultiAnims::ResetSlots() {
    for (int i = 0; i < kSlotCount; ++i) {
        const Row& r = rows_[static_cast<std::size_t>(i)];
        const auto at = static_cast<std::size_t>(i);
        if (const auto header = peekFrameFileHeader(slotDataPath(tempDir_, i))) {
            SlotFrames[at] = header->frames;
            SlotWidth[at] = header->width;
            SlotHeight[at] = header->height;
            r.lblSlots->setText(QString::fromStdString(slotDescription(*header)));
        }
        // The caption decides, not the file: a slot whose file vanished while the panel stands open
        // keeps its text, and its thumbnail is then shown empty.
        const bool filled = r.lblSlots->text() != kEmpty;
        showThumbnail(r.picThumbnail, filled ? loadThumbnail(slotThumbPath(tempDir_, i)) : QImage(),
                      QSize(SlotWidth[at], SlotHeight[at]));
        r.cmdLoad->setEnabled(filled);
        r.cmdClear->setEnabled(filled);
    }
}

void frmMultiAnims::setSlotButtons(bool enabled) {
    for (const Row& r : rows_)
        for (QPushButton* b : {r.cmdLoad, r.cmdSave, r.cmdClear})
            b->setEnabled(enabled);
}

namespace {
// All twelve slot buttons stay disabled while a save or load runs, and come back however it ends.
class SlotButtonsBusy {
  public:
    explicit SlotButtonsBusy(std::function<void(bool)> set) : set_(std::move(set)) { set_(false); }
    ~SlotButtonsBusy() { set_(true); }
    SlotButtonsBusy(const SlotButtonsBusy&) = delete;
    SlotButtonsBusy& operator=(const SlotButtonsBusy&) = delete;

  private:
    std::function<void(bool)> set_;
};
} // namespace

void frmMultiAnims::SaveAnimToSlot() {
    panel::PictureBox* box = rows_[static_cast<std::size_t>(CurrentSlot)].picThumbnail;
    stored::SaveAnimToSlot(CurrentSlot, [box](const QImage& thumbnail, QSize picture) {
        showThumbnail(box, thumbnail, picture);
    });
}

void frmMultiAnims::LoadAnimFromSlot() {
    stored::LoadAnimFromSlot(CurrentSlot, [this] { ResetSlots(); });
}

void frmMultiAnims::cmdSave_Click(short index) {
    const Row& r = rows_[static_cast<std::size_t>(index)];
    if (r.lblSlots->text() != kEmpty && van().Van_QuestionBox(kAskOverwriteSlot) == kNo) return;
    {
        SlotButtonsBusy busy([this](bool on) { setSlotButtons(on); });
        CurrentSlot = index;
        SaveAnimToSlot();
    }
    ResetSlots();
}

void frmMultiAnims::cmdLoad_Click(short index) {
    if (van().Van_QuestionBox(kAskOverwriteBuffer) == kNo) return;
    {
        SlotButtonsBusy busy([this](bool on) { setSlotButtons(on); });
        CurrentSlot = index;
        LoadAnimFromSlot();
    }
    ResetSlots(); // a second time: the load has already brought the rows into step once
}

void frmMultiAnims::cmdClear_Click(short index) {
    const Row& r = rows_[static_cast<std::size_t>(index)];
    if (r.lblSlots->text() != kEmpty && van().Van_QuestionBox(kAskDelete) == kNo) return;
    if (r.lblSlots->text() == kEmpty) return; // an empty slot is left alone: nothing to delete
    removeFile(slotDataPath(tempDir_, index));
    r.lblSlots->setText(kEmpty);
    removeFile(slotThumbPath(tempDir_, index));
    ResetSlots();
}

void frmMultiAnims::cmdCancel_Click() {
    closeDialog();
}

void frmMultiAnims::closeByUser() {
    cmdCancel_Click();
}

void frmMultiAnims::formUnload() {
    van().Van_RestorePointer();
    // Twice on purpose: a save or load that failed half-way may have left its lock behind.
    van().Van_Unlock();
    van().Van_Unlock();
    panel::showMainPanel();
}

} // namespace kirrel::stored
