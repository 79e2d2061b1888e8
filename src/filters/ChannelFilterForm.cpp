#include "filters/ChannelFilterForm.h"

#include "panel/DisabledWhileRunning.h"
#include "panel/EventGuard.h"
#include "panel/Numeric.h"
#include "panel/Panel.h"
#include "stored/AnimUndo.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>

#include <cctype>

namespace kirrel::filters {

namespace {

std::string trimmed(const std::string& text) {
    std::size_t a = 0, b = text.size();
    while (a < b && std::isspace(static_cast<unsigned char>(text[a])))
        ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(text[b - 1])))
        --b;
    return text.substr(a, b - a);
}

std::optional<double> radixNumber(const std::string& digits, int radix) {
    if (digits.empty() || digits.size() > 11) return std::nullopt;
    long long v = 0;
    for (char ch : digits) {
        const int d = std::isdigit(static_cast<unsigned char>(ch))    ? ch - '0'
                      : std::isxdigit(static_cast<unsigned char>(ch)) ? std::toupper(ch) - 'A' + 10
                                                                      : 99;
        if (d >= radix) return std::nullopt;
        v = v * radix + d;
    }
    return static_cast<double>(v);
}

} // namespace

std::optional<double> numericText(const std::string& text) {
    const std::string t = trimmed(text);
    if (t.size() > 2 && t[0] == '&') {
        const char kind = static_cast<char>(std::toupper(static_cast<unsigned char>(t[1])));
        if (kind == 'H') return radixNumber(t.substr(2), 16);
        if (kind == 'O') return radixNumber(t.substr(2), 8);
        return std::nullopt;
    }
    std::size_t i = 0;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) ++i;
    bool digits = false, dot = false;
    for (; i < t.size(); ++i) {
        if (std::isdigit(static_cast<unsigned char>(t[i])))
            digits = true;
        else if (t[i] == '.' && !dot)
            dot = true;
        else
            break;
    }
    if (!digits) return std::nullopt;
    if (i < t.size() && (t[i] == 'e' || t[i] == 'E')) {
        std::size_t j = i + 1;
        if (j < t.size() && (t[j] == '+' || t[j] == '-')) ++j;
        const std::size_t first = j;
        while (j < t.size() && std::isdigit(static_cast<unsigned char>(t[j])))
            ++j;
        if (j == first) return std::nullopt;
        i = j;
    }
    if (i != t.size()) return std::nullopt;
    try {
        return std::stod(t);
    } catch (...) {
        return std::nullopt; // beyond a double: not a number the box can hold
    }
}

ChannelFilterForm::ChannelFilterForm(const FilterTraits& traits) : FilterForm(traits) {}

QSlider* ChannelFilterForm::addSliderRow(QGridLayout* grid, int row, const QString& caption,
                                         const QString& sliderName, int minimum, int maximum, int start,
                                         const QString& boxName, const QString& boxText, QLineEdit** box,
                                         std::function<void()> onChange, std::function<void()> onScroll) {
    QLabel* label = makeLabel(sliderName + "Caption", caption);
    label->setMargin(2);
    QSlider* slider = makeSlider(sliderName, minimum, maximum);
    slider->setValue(start); // before the handlers: the start value is no change of the user's
    connect(slider, &QSlider::valueChanged, this, guarded([f = std::move(onChange)](int) { f(); }));
    connect(slider, &QSlider::sliderMoved, this, guarded([f = std::move(onScroll)](int) { f(); }));
    slider->setSingleStep(1);
    slider->setPageStep(5);
    // A drag reports each step by sliderMoved and the value by valueChanged once it is let go, so
    // each step of a drag makes one preview.
    slider->setTracking(false);
    QLineEdit* text = makeText(boxName);
    text->setText(boxText);
    text->setFixedWidth(44);
    onValidate(text, [text, slider] { repairTextBox(text, slider); });
    grid->addWidget(label, row, 1);
    grid->addWidget(slider, row, 2);
    grid->addWidget(text, row, 3);
    skinTextBoxes({text});
    *box = text;
    return slider;
}

int ChannelFilterForm::position(const QSlider* slider) {
    return slider->sliderPosition();
}

void ChannelFilterForm::repairTextBox(QLineEdit* box, QSlider* slider) {
    if (const std::optional<double> v = numericText(box->text().toStdString())) slider->setValue(toInt16(*v));
    box->setText(QString::number(slider->value()));
}

void ChannelFilterForm::startValues() {
    P = fetchBuffer(van());
    C = P;
}

void ChannelFilterForm::run() {
    const panel::DisabledWhileRunning busy({cmdRun(), cmdUndo(), cmdCancel()});
    if (undoSaveChecked()) stored::QuickSave();
    if (currentFrameChosen()) {
        van().Van_Refresh();
        PreviewOn = 0;
        currentFrame();
    }
    if (multipleFrames()) {
        van().Van_Refresh();
        PreviewOn = 0;
        if (van().Van_GetTotalFrames() == 0) {
            offerAnimation();
        } else {
            frameRange();
        }
        van().Van_Refresh();
    }
}

void ChannelFilterForm::undo() {
    const panel::DisabledWhileRunning busy({cmdUndo()});
    P = C;
    stored::QuickRestore();
    P = fetchBuffer(van());
    C = fetchBuffer(van());
    updatePreview();
}

void ChannelFilterForm::done() {
    van().Van_Refresh();
    van().Van_Unlock();
    hide();
    panel::showMainPanel();
    van().Van_RestorePointer();
    closedByDone_ = true;
    unloadForm();
}

void ChannelFilterForm::formUnload() {
    if (closedByDone_) return;
    van().Van_Unlock();
    // The form ends by another road than "Done": P goes back to the host and the panel ends.
    storeBuffer(van(), P);
    van().Van_Refresh();
    van().Van_Unlock();
    endProgram();
}

} // namespace kirrel::filters
