#include "generators/GeneratorDialogs.h"

#include "generators/Focus.h"
#include "generators/Generators.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QSlider>
#include <QVBoxLayout>

namespace kirrel::generators {

namespace {

const GeneratorTraits kTVSnow{"frmTVSnow", "Kirrel-Animated White Noise / TV Snow",
                              "Generates White Noise /TV Snow", RangeTest::UndoFirst};
const GeneratorTraits kFlicker{"frmFlicker", "Kirrel-Animated Flicker Filter",
                               "Generates a flickering effect using the Primary and Secondary Colors",
                               RangeTest::UndoFirst};
const GeneratorTraits kGenThreshold{"frmGenThreshold", "Kirrel-Animated Threshold",
                                    "Frame by Frame Threshold Filter", RangeTest::TestFirst};
const GeneratorTraits kVertHold{"frmVertHold", "Kirrel-Vertical Hold",
                                "Creates a Rolling Vertical Hold Effect on the Animation",
                                RangeTest::TestFirst};
const GeneratorTraits kFocus{"frmFocus", "Kirrel- Focus Effect", "Creates a Focus In / Out Effect",
                             RangeTest::None};

constexpr int kStrengthStart = 10;

bool checked(const QCheckBox* c) {
    return c->checkState() == Qt::Checked;
}

} // namespace

StrengthForm::StrengthForm(const GeneratorTraits& traits, int maximum) : GeneratorForm(traits) {
    auto* row = new QHBoxLayout;
    Slider1_ = makeSlider(
        "Slider1", kStrengthStart, maximum, [this] { showStrength(); }, [this] { showStrength(); });
    Slider1_->setOrientation(Qt::Horizontal);
    Slider1_->setSingleStep(5);
    Slider1_->setPageStep(10);
    Label2_ = makeLabel("Label2", "10% Strength");
    Label2_->setMinimumWidth(110);
    row->addWidget(Slider1_, 1);
    row->addWidget(Label2_);
    parameterArea()->addLayout(row);
    chkUseAlpha_ = makeCheck("chkUseAlpha", "Use Alpha?");
    parameterArea()->addWidget(chkUseAlpha_);
}

void StrengthForm::startValues() {
    Slider1_->setValue(kStrengthStart);
    showStrength();
}

void StrengthForm::showStrength() {
    Label2_->setText(QString::number(Slider1_->value()) + "% Strength");
}

int StrengthForm::strength() const {
    return Slider1_->value();
}

bool StrengthForm::useAlpha() const {
    return checked(chkUseAlpha_);
}

frmTVSnow::frmTVSnow() : StrengthForm(kTVSnow, 100) {
    finishLayout();
}

void frmTVSnow::runProcedure() {
    if (useAlpha())
        GenerateStaticAlpha(span(), strength());
    else
        GenerateStatic(span(), strength());
}

frmFlicker::frmFlicker() : StrengthForm(kFlicker, 90) {
    finishLayout();
}

void frmFlicker::runProcedure() {
    if (useAlpha())
        FlickerAlpha(span(), strength());
    else
        Flicker(span(), strength());
}

frmGenThreshold::frmGenThreshold() : GeneratorForm(kGenThreshold) {
    finishLayout();
}

void frmGenThreshold::runProcedure() {
    GenerateThreshold(span());
}

frmVertHold::frmVertHold() : GeneratorForm(kVertHold) {
    chkDivider_ = makeCheck("chkDivider", "Divider Line?");
    parameterArea()->addWidget(chkDivider_);
    finishLayout();
}

void frmVertHold::runProcedure() {
    VerticalHold(span(), checked(chkDivider_));
}

frmFocus::frmFocus() : GeneratorForm(kFocus) {
    auto* row = new QHBoxLayout;
    optOut_ = makeOption("optDirection(0)", "Focus Out");
    optIn_ = makeOption("optDirection(1)", "Focus In");
    optOut_->setChecked(true);
    row->addWidget(optOut_);
    row->addWidget(optIn_);
    row->addStretch(1);
    parameterArea()->addLayout(row);
    chkAlpha_ = makeCheck("chkAlpha", "Use Alpha Channel?");
    parameterArea()->addWidget(chkAlpha_);
    finishLayout();
}

void frmFocus::runProcedure() {
    const bool alpha = checked(chkAlpha_);
    if (optIn_->isChecked())
        alpha ? FocusInAlpha(span()) : FocusIn(span());
    else
        alpha ? FocusOutAlpha(span()) : FocusOut(span());
}

} // namespace kirrel::generators
