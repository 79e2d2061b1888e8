#include "stored/frmAttachAnims.h"

#include "panel/DisabledWhileRunning.h"
#include "stored/AnimUndo.h"
#include "stored/AttachRuns.h"
#include "stored/WholeAnimationLimit.h"

#include <QButtonGroup>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kirrel::stored {

namespace {
// The host's sizes are 16-bit numbers.
constexpr int kLargestBound = 32767;
} // namespace

frmAttachAnims::frmAttachAnims()
    : SpliceDialog("frmAttachAnims", "Kirrel - Attach Animation To Stored Animation",
                   "Attach Current Animation to a Stored Animation (Must have same shared dimensions and "
                   "frame count)") {
    // A group of their own: left to the form, the slot options in the frame would join them.
    auto* group = new QButtonGroup(this);
    for (std::size_t i = 0; i < kAttachSides.size(); ++i) {
        optAttachAnim_[i] = makeOption(QString("optAttachAnim(%1)").arg(i), kAttachSides[i].caption);
        group->addButton(optAttachAnim_[i]);
        optionArea()->addWidget(optAttachAnim_[i]);
    }
    ownSkin_.toggles.assign(optAttachAnim_.begin(), optAttachAnim_.end());
    finishLayout();
}

void frmAttachAnims::refreshed() {
    if (!optAttachAnim_[0]->isChecked() && !optAttachAnim_[1]->isChecked() &&
        !optAttachAnim_[2]->isChecked() && !optAttachAnim_[3]->isChecked())
        optAttachAnim_[1]->setChecked(true); // a dialog opens on the right side
}

void frmAttachAnims::run() {
    if (!lengthUnchanged()) return;
    const short slot = rows().selectedSlot();
    if (slot == -1) return;
    const int H = van().Van_BufferHeight();
    const int W = van().Van_BufferWidth();
    const auto header = checkedSlot(slot);
    if (!header) return;
    if (header->frames != van().Van_GetTotalFrames()) {
        van().Van_MessageBox("Stored Animation must have same frame count as current animation in memory!");
        return;
    }
    int chosen = -1;
    for (int i = 0; i < static_cast<int>(optAttachAnim_.size()); ++i)
        if (optAttachAnim_[static_cast<std::size_t>(i)]->isChecked()) chosen = i;
    if (chosen < 0) return;
    const AttachSide& side = kAttachSides[static_cast<std::size_t>(chosen)];
    if (side.sideBySide && header->height != H) {
        van().Van_MessageBox(
            "Stored Animation must have same height\nas animation in memory\nfor Left / Right attachments!");
        return;
    }
    if (!side.sideBySide && header->width != W) {
        van().Van_MessageBox(
            "Stored Animation must have same width\nas animation in memory\nfor Top / Bottom attachments!");
        return;
    }
    // The whole result stands in memory before the host's animation is replaced.
    const AttachSize size = attachedSize(side, W, H, header->width, header->height);
    const long long bytes = wholeAnimationBytes(header->frames, 3, size.width, size.height);
    if (size.width > kLargestBound || size.height > kLargestBound) {
        van().Van_MessageBox("The attached frames would be " + std::to_string(size.width + 1) + " x " +
                             std::to_string(size.height + 1) +
                             " pixels, larger than an animation can be.\nNothing has been changed.");
        return;
    }
    if (!fitsInMemory(bytes)) {
        van().Van_MessageBox(tooLargeMessage(bytes));
        return;
    }
    saveUndoIfChecked();
    const panel::DisabledWhileRunning busy(applyRowButtons());
    AttachStored(side, slotDataPath(tempDir(), slot));
}

} // namespace kirrel::stored
