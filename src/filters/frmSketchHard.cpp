#include "filters/frmSketchHard.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>

namespace kirrel::filters {

namespace {

const FilterTraits kSketchHardTraits{"frmSketchHard", "Kirrel- Sketch Filter (Hard Line)",
                                     "This filter makes photos look more like sketched drawings", 200,
                                     /*runDisablesUndoAndDone=*/true};

// In list order; the index is the option.
constexpr const char* kSketchOptions[] = {"Normal (No Color)", "Overlay Original", "Cell Shaded",
                                          "Graphic Novel"};

} // namespace

frmSketchHard::frmSketchHard() : FilterForm(kSketchHardTraits) {
    auto changed = [this] { parametersChanged(); };
    QLabel* Label3 = makeLabel("Label3", "Line Strength");
    slider_LineStr_ = makeSlider("slider_LineStr", 128, 255, changed, changed);
    {
        const QSignalBlocker quiet(slider_LineStr_); // a start value, not a change of the user's
        slider_LineStr_->setValue(255);
    }
    QLabel* Label2 = makeLabel("Label2", "Detail");
    slider_Passes_ = makeSlider("slider_Passes", 1, 100, changed, changed);
    slider_Passes_->setValue(1);
    for (QSlider* s : {slider_LineStr_, slider_Passes_}) {
        s->setSingleStep(1);
        s->setPageStep(1);
        s->setTickInterval(1);
        s->setTickPosition(QSlider::NoTicks);
        // Each step of a drag reports once, by sliderMoved; the value comes when the thumb is let go.
        s->setTracking(false);
    }
    QLabel* lblOptions = makeLabel("lblOptions", "Color Options");
    cboSketchOptions_ = makeCombo("cboSketchOptions", changed);
    {
        const QSignalBlocker quiet(cboSketchOptions_);
        for (const char* text : kSketchOptions)
            cboSketchOptions_->addItem(text);
        cboSketchOptions_->setCurrentIndex(0);
    }
    onValidate(cboSketchOptions_, changed);
    for (QLabel* l : {Label3, Label2, lblOptions})
        l->setMargin(3);
    parameterArea()->addWidget(Label3);
    parameterArea()->addWidget(slider_LineStr_);
    parameterArea()->addWidget(Label2);
    parameterArea()->addWidget(slider_Passes_);
    parameterArea()->addWidget(lblOptions);
    parameterArea()->addWidget(cboSketchOptions_);
    skinTextBoxes({cboSketchOptions_});
    finishLayout();
}

std::int32_t frmSketchHard::passes() const {
    return slider_Passes_->sliderPosition();
}

SketchOption frmSketchHard::option() const {
    return static_cast<SketchOption>(std::max(0, cboSketchOptions_->currentIndex()));
}

void frmSketchHard::startValues() {
    LineStrength = slider_LineStr_->sliderPosition();
}

void frmSketchHard::parametersChanged() {
    startValues();
    updatePreview();
}

void frmSketchHard::currentFrame() {
    SketchHardCurrentFrame(*this, option(), LineStrength, passes());
}

void frmSketchHard::frameRange() {
    SketchHardFrameRange(*this, option(), LineStrength, passes(), startIndex(), endIndex());
}

} // namespace kirrel::filters
