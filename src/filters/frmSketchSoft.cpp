#include "filters/frmSketchSoft.h"

#include "filters/SketchSoftFilter.h"

#include <QCheckBox>
#include <QLabel>
#include <QSlider>
#include <QVBoxLayout>

namespace kirrel::filters {

namespace {

const FilterTraits kSketchSoftTraits{"frmSketchSoft", "Kirrel- Sketch Filter (Soft Line)",
                                     "This filter makes photos look more like sketched drawings", 200,
                                     /*runDisablesUndoAndDone=*/true};

QString detailCaption(int value) {
    return QString("Detail Strength: %1").arg(value);
}

} // namespace

frmSketchSoft::frmSketchSoft() : FilterForm(kSketchSoftTraits) {
    Label2_ = makeLabel("Label2", detailCaption(1));
    Label2_->setMargin(3);
    slider_soft_ = makeSlider(
        "slider_soft", 1, 100, [this] { detailChanged(); }, [this] { detailChanged(); });
    slider_soft_->setValue(1);
    slider_soft_->setSingleStep(1);
    slider_soft_->setPageStep(1);
    slider_soft_->setTickInterval(1);
    slider_soft_->setTickPosition(QSlider::NoTicks);
    // Each step of a drag reports once, by sliderMoved; the value comes when the thumb is let go.
    slider_soft_->setTracking(false);
    chkColor_ = makeCheck("chkColor", "Color Sketch", [this] { detailChanged(); });
    parameterArea()->addWidget(Label2_);
    parameterArea()->addWidget(slider_soft_);
    parameterArea()->addWidget(chkColor_);
    skinToggles({chkColor_});
    finishLayout();
}

std::int16_t frmSketchSoft::colorOn() const {
    return chkColor_->checkState() == Qt::Checked ? 1 : 0;
}

void frmSketchSoft::startValues() {
    Detail = static_cast<std::int16_t>(slider_soft_->sliderPosition());
    if (Detail < 2) Detail = 1;
    Label2_->setText(detailCaption(Detail));
}

void frmSketchSoft::detailChanged() {
    startValues();
    updatePreview();
}

void frmSketchSoft::currentFrame() {
    SketchSoftCurrentFrame(*this, Detail, colorOn());
}

void frmSketchSoft::frameRange() {
    SketchSoftFrameRange(*this, Detail, startIndex(), endIndex(), colorOn());
}

} // namespace kirrel::filters
