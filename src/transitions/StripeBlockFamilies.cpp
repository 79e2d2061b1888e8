#include "transitions/StripeBlockFamilies.h"

#include "panel/FormBase.h"
#include "panel/Skin.h"
#include "transitions/Blocks.h"
#include "transitions/StripeControls.h"
#include "transitions/ThresholdMask.h"
#include "transitions/TransitionForm.h"

#include <QBoxLayout>
#include <QLabel>

namespace kirrel::transitions {

namespace {

template <StripeFamily F>
std::unique_ptr<FamilyControls> stripeControls(panel::FormBase& form, QBoxLayout& layout) {
    static const std::vector<const char*> withWeaves = {" Weaves", "Horizontal Stripes", "Vertical Stripes"};
    static const std::vector<const char*> plain = {"Horizontal Stripes", "Vertical Stripes"};
    return std::make_unique<StripeControls>(form, layout, F, F == StripeFamily::Stripes ? withWeaves : plain);
}

// The threshold dialog warns that the effect works on the frame's alpha channel. The form owns the
// label.
QLabel* warningLabel(panel::FormBase& form) {
    auto* label = new QLabel("Requires an active Alpha Channel to use Threshold filter on", &form);
    label->setObjectName("lblWarning");
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    label->setAlignment(Qt::AlignCenter);
    label->setMargin(4);
    return label;
}

class ThresholdWarning : public FamilyControls {
  public:
    ThresholdWarning(panel::FormBase& form, QBoxLayout& layout) : label_(warningLabel(form)) {
        layout.addWidget(label_);
    }
    void load(const panel::SkinSettings& skin) override {
        panel::colourControl(label_, skin.textboxFill, skin.textboxText);
    }

  private:
    QLabel* label_;
};

std::unique_ptr<FamilyControls> thresholdWarning(panel::FormBase& form, QBoxLayout& layout) {
    return std::make_unique<ThresholdWarning>(form, layout);
}

void thresholdTo(int, int s, int e, const std::string& src) {
    runThresholdTo(s, e, src);
}
void thresholdFrom(int, int s, int e, const std::string& src) {
    runThresholdFrom(s, e, src);
}
void thresholdToStored(int, int s, int slot) {
    Threshold2Stored(s, slot);
}
void thresholdFromStored(int, int e, int slot) {
    ThresholdFromStored(e, slot);
}

void blocksTo(int, int s, int e, const std::string& src) {
    runBlockOutTo(s, e, src);
}
void blocksFrom(int, int s, int e, const std::string& src) {
    runBlockOutFrom(s, e, src);
}
void blocksToStored(int, int s, int slot) {
    BlockOut2Stored(s, slot);
}
void blocksFromStored(int, int e, int slot) {
    BlockOutFromStored(e, slot);
}

// The stripe dialogs run through their controls, which hold the stripe sizes the runs read.
TransitionFamily stripeRow(const char* form, const char* caption, StripeFamily family) {
    TransitionFamily f{form,    caption, {},     "cboStripeOptions", everySource(), nullptr,
                       nullptr, nullptr, nullptr};
    f.slotEmptyText = "Slot Empty.";
    switch (family) {
    case StripeFamily::Stripes:
        f.addControls = stripeControls<StripeFamily::Stripes>;
        break;
    case StripeFamily::PushStripes:
        f.addControls = stripeControls<StripeFamily::PushStripes>;
        break;
    case StripeFamily::SlideStripes:
        f.addControls = stripeControls<StripeFamily::SlideStripes>;
        break;
    }
    return f;
}

} // namespace

const TransitionFamily& stripesFamily() {
    static const TransitionFamily f = stripeRow("frmStripes", "Kirrel-Stripes/Weaves", StripeFamily::Stripes);
    return f;
}

const TransitionFamily& pushStripesFamily() {
    static const TransitionFamily f =
        stripeRow("frmPushStripes", "Kirrel-Push Stripes", StripeFamily::PushStripes);
    return f;
}

const TransitionFamily& slideStripesFamily() {
    static const TransitionFamily f =
        stripeRow("frmSlideStripes", "Kirrel-Slide Stripes", StripeFamily::SlideStripes);
    return f;
}

const TransitionFamily& thresholdMaskFamily() {
    static const TransitionFamily f = [] {
        TransitionFamily t{"frmThresholdMask",
                           "Kirrel-Threshold Mask Transition",
                           {},
                           "cboThreshold",
                           sourcesReadOnce(),
                           thresholdTo,
                           thresholdFrom,
                           thresholdToStored,
                           thresholdFromStored};
        t.addControls = thresholdWarning;
        return t;
    }();
    return f;
}

// Block Out needs more frames than the other dialogs: its blocks pile up over the run.
const TransitionFamily& blockOutFamily() {
    static const TransitionFamily f = [] {
        TransitionFamily t{"frmBlocks",       "Kirrel-Block Out", {},
                           "cboBlockOptions", sourcesReadOnce(),  blocksTo,
                           blocksFrom,        blocksToStored,     blocksFromStored};
        t.fewestFrames = 5;
        t.tooFewFramesText = "Need at least 5 frames selected!";
        return t;
    }();
    return f;
}

void registerStripeAndBlockForms() {
    for (const TransitionFamily* family : {&stripesFamily(), &pushStripesFamily(), &slideStripesFamily(),
                                           &thresholdMaskFamily(), &blockOutFamily()})
        panel::registerForm(family->formName, [family] { return new TransitionForm(*family); });
}

} // namespace kirrel::transitions
