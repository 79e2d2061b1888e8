#include "panel/FrameLists.h"

#include "panel/EnsureAnimation.h"
#include "panel/FormBase.h"

#include <QComboBox>

namespace kirrel::panel {

void FrameLists::fill() const {
    start->clear();
    end->clear();
    for (int i = 0; i < totalFrames; ++i) {
        start->addItem(QString::number(i));
        end->addItem(QString::number(i));
    }
    if (totalFrames < 1) {
        offerAnimation();
        return;
    }
    start->setCurrentIndex(0);
    end->setCurrentIndex(totalFrames - 1);
}

void FrameLists::offerAnimation() const {
    Ensure_Animation(
        form,
        [this] {
            start->clear();
            end->clear();
        },
        [this] {
            totalFrames = form.van().Van_GetTotalFrames();
            fill();
            start->setEnabled(true);
            end->setEnabled(true);
        },
        noAnimationQuestion);
}

void FrameLists::followCount() const {
    totalFrames = form.van().Van_GetTotalFrames();
    if (start->count() != totalFrames || end->count() != totalFrames) fill();
}

} // namespace kirrel::panel
