#include "filters/frmToon.h"

#include "filters/ToonFilterMod.h"

#include <QCheckBox>
#include <QLabel>
#include <QSlider>
#include <QVBoxLayout>

namespace kirrel::filters {

namespace {

const FilterTraits kToonTraits{"frmToon", "Kirrel-Toonify Filter",
                               "This filter makes photos look more like cartoon drawings", 200};

QString strengthCaption(int value) {
    return QString("Filter Strength: %1").arg(value);
}

} // namespace

frmToon::frmToon() : FilterForm(kToonTraits) {
    Label2_ = makeLabel("Label2", strengthCaption(1));
    Label2_->setMargin(3);
    // Every notification of the slider, the drag's as well as the final value's, makes a preview.
    slider_toon_ = makeSlider(
        "slider_toon", 1, 100, [this] { strengthChanged(); }, [this] { strengthChanged(); });
    slider_toon_->setValue(1);
    slider_toon_->setSingleStep(1);
    slider_toon_->setPageStep(1);
    slider_toon_->setTickInterval(1);
    slider_toon_->setTickPosition(QSlider::NoTicks);
    chkEdgeBoost_ = makeCheck("chkEdgeBoost", "Edge Boost?", [this] { strengthChanged(); });
    parameterArea()->addWidget(Label2_);
    parameterArea()->addWidget(slider_toon_);
    parameterArea()->addWidget(chkEdgeBoost_);
    finishLayout();
}

bool frmToon::edgeBoost() const {
    return chkEdgeBoost_->checkState() == Qt::Checked;
}

void frmToon::startValues() {
    Strength = 1;
}

void frmToon::strengthChanged() {
    Strength = slider_toon_->value();
    Label2_->setText(strengthCaption(Strength));
    updatePreview();
}

void frmToon::currentFrame() {
    ToonCurrentFrame(*this, 0);
}

void frmToon::frameRange() {
    ToonFrameRange(*this);
}

} // namespace kirrel::filters
