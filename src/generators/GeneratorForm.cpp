#include "generators/GeneratorForm.h"

#include "panel/DisabledWhileRunning.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace kirrel::generators {

namespace {
constexpr const char* kTooShort = "Need at least 3 frames selected!";
} // namespace

GeneratorForm::GeneratorForm(const GeneratorTraits& traits)
    : EffectDialog(traits.formName, traits.caption), traits_(traits) {
    auto* outer = makeWindowLayout<QVBoxLayout>(8);
    outer->addWidget(makeDescription(traits_.description));
    parameters_ = new QVBoxLayout;
    parameters_->setSpacing(6);
    outer->addLayout(parameters_);
    outer->addLayout(makeFrameLists());
    outer->addStretch(1);
    outer->addLayout(makeApplyRow());
}

FrameSpan GeneratorForm::span() const {
    return {startIndex(), endIndex()};
}

void GeneratorForm::formLoad() {
    readTempDirAndFrames();
    // The lists and "Save Undo" keep the system's colours here.
    applySkin();
    startValues();
}

bool GeneratorForm::rangeTooShort() {
    const FrameSpan s = span();
    if (s.end - s.start >= 2) return false;
    van().Van_MessageBox(kTooShort);
    return true;
}

void GeneratorForm::run() {
    const std::optional<int> remembered = beginRun(true);
    if (!remembered) return;
    switch (traits_.rangeTest) {
    case RangeTest::UndoFirst:
        saveUndoIfChecked();
        if (rangeTooShort()) return;
        break;
    case RangeTest::TestFirst:
        if (rangeTooShort()) return;
        saveUndoIfChecked();
        break;
    case RangeTest::None:
        saveUndoIfChecked();
        break;
    }
    {
        const panel::DisabledWhileRunning busy({cmdRun()});
        runProcedure();
    }
    endRun(*remembered);
}

} // namespace kirrel::generators
