#include "transitions/StripeControls.h"

#include "panel/EventGuard.h"
#include "panel/FormBase.h"
#include "panel/Numeric.h"
#include "panel/Skin.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include <algorithm>
#include <cmath>

namespace kirrel::transitions {

namespace {

// Both size buttons ask under this one title, the vertical one too.
constexpr const char* kSizeTitle = "Set Horizontal Stripe Size";
// The largest size whose doubled value a 16-bit field still holds.
constexpr int kLargestSize = 16383;

std::string halved(int stored) {
    const double shown = stored / 2.0;
    if (shown == std::floor(shown)) return std::to_string(static_cast<long long>(shown));
    std::string text = std::to_string(shown);
    text.erase(text.find_last_not_of('0') + 1);
    return text;
}

// On a preview's small copies the stripes shrink with the picture, so that there are as many of them as
// Apply lays on the frames; never below one pixel, and a size that is already that stays.
StripeSizes scaledSizes(StripeSizes s, double scale) {
    if (scale >= 1) return s;
    const auto one = [scale](int stored) {
        return stored <= 2 ? stored : std::max(2, static_cast<int>(std::lround(stored * scale)));
    };
    return {one(s.horizontal), one(s.vertical)};
}

} // namespace

std::string stripeSizeLabel(int stored, bool horizontal) {
    const char* unit = horizontal ? (stored < 3 ? " pixel high" : " pixels high")
                                  : (stored < 3 ? " pixel wide" : " pixels wide");
    return "Size: " + halved(stored) + unit;
}

std::optional<int> storedStripeSize(int answer) {
    const int doubled = toInt16(2.0 * answer);
    if (doubled > -2) return doubled;
    return std::nullopt;
}

StripeControls::StripeControls(panel::FormBase& form, QBoxLayout& layout, StripeFamily family,
                               const std::vector<const char*>& options)
    : form_(form), family_(family) {
    auto* choice = new QHBoxLayout;
    auto* group = new QButtonGroup(&form);
    for (std::size_t i = 0; i < options.size(); ++i) {
        auto* o = new QRadioButton(options[i], &form);
        o->setObjectName(QString("optDirection(%1)").arg(i));
        group->addButton(o);
        QObject::connect(o, &QRadioButton::toggled, &form, &panel::FormBase::noteControlChange);
        choice->addWidget(o);
        options_.push_back(o);
    }
    choice->addStretch(1);
    layout.addLayout(choice);

    auto* sizeGrid = new QGridLayout;
    cmdHsize_ = new QPushButton("Set Height", &form);
    cmdHsize_->setObjectName("cmdHsize");
    cmdVsize_ = new QPushButton("Set Width", &form);
    cmdVsize_->setObjectName("cmdVsize");
    lblHSize_ = new QLabel(QString::fromStdString(stripeSizeLabel(sizes_.horizontal, true)), &form);
    lblHSize_->setObjectName("lblHSize");
    lblVSize_ = new QLabel(QString::fromStdString(stripeSizeLabel(sizes_.vertical, false)), &form);
    lblVSize_->setObjectName("lblVSize");
    for (QLabel* l : {lblHSize_, lblVSize_}) {
        l->setMargin(4);
        l->setAlignment(Qt::AlignCenter);
    }
    QObject::connect(cmdHsize_, &QPushButton::clicked, &form, guarded([this](bool) { askSize(true); }));
    QObject::connect(cmdVsize_, &QPushButton::clicked, &form, guarded([this](bool) { askSize(false); }));
    sizeGrid->addWidget(cmdHsize_, 0, 0);
    sizeGrid->addWidget(cmdVsize_, 0, 1);
    sizeGrid->addWidget(lblHSize_, 1, 0);
    sizeGrid->addWidget(lblVSize_, 1, 1);
    layout.addLayout(sizeGrid);
}

void StripeControls::load(const panel::SkinSettings& skin) {
    sizes_ = StripeSizes{};
    lblHSize_->setText(QString::fromStdString(stripeSizeLabel(sizes_.horizontal, true)));
    lblVSize_->setText(QString::fromStdString(stripeSizeLabel(sizes_.vertical, false)));
    if (!options_.empty()) options_.front()->setChecked(true);
    for (QLabel* l : {lblHSize_, lblVSize_})
        panel::colourControl(l, skin.textboxFill, skin.textboxText);
    for (QRadioButton* o : options_)
        panel::colourControl(o, skin.buttonFill, 0x000000);
    for (QPushButton* b : {cmdHsize_, cmdVsize_})
        panel::colourButton(b, skin.buttonFill);
}

void StripeControls::askSize(bool horizontal) {
    int& field = horizontal ? sizes_.horizontal : sizes_.vertical;
    const int answer = form_.van().Van_ValueBox(kSizeTitle, toInt32(field / 2.0), kLargestSize);
    const std::optional<int> stored = storedStripeSize(answer);
    if (!stored) return;
    field = *stored;
    (horizontal ? lblHSize_ : lblVSize_)->setText(QString::fromStdString(stripeSizeLabel(field, horizontal)));
    form_.noteControlChange();
}

int StripeControls::member() const {
    for (std::size_t i = 0; i < options_.size(); ++i)
        if (options_[i]->isChecked()) return static_cast<int>(i);
    return -1;
}

bool StripeControls::run(const FamilyRun& r) {
    const int m = member();
    if (m < 0) return true; // no kind of stripes chosen: nothing to run
    const StripeSizes fitted = scaledSizes(sizes_, r.scale);
    if (r.slot < 0)
        (r.toward ? runStripesTo : runStripesFrom)(family_, m, fitted, r.start, r.end, r.source);
    else if (r.toward)
        runStripesToStored(family_, m, fitted, r.start, r.slot);
    else
        runStripesFromStored(family_, m, fitted, r.end, r.slot);
    return true;
}

} // namespace kirrel::transitions
