#pragma once
// The frame shared by the two filters that work by channel (Channel Threshold and GreyOut): their
// procedures stand on the form and keep the working picture P and its unfiltered copy C as long as
// the form lives; sliders carry text boxes beside them; and the dialog runs, undoes and closes in its
// own way:
// - Apply refreshes the host before it works, has no size check and no return to a remembered frame;
// - Undo puts the host's undo back and reads P and C anew;
// - "Done" unlocks the host and restores its pointer, while closing the form by any other road
//   writes P back to the host and ends the panel, as these filters always have.

#include "filters/FilterForm.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

class QGridLayout;
class QLineEdit;
class QSlider;

namespace kirrel::filters {

// The text of a box beside a slider read as a number: blanks around it, a sign, digits with one
// decimal point and an exponent, or &H/&O notation. nullopt when it isn't one.
std::optional<double> numericText(const std::string& text);

class ChannelFilterForm : public FilterForm {
    Q_OBJECT
  public:
    explicit ChannelFilterForm(const FilterTraits& traits);

    std::int16_t W = 0;
    std::int16_t H = 0;
    krl::Triple P; // the working picture; what closing by the window writes back
    krl::Triple C; // the unfiltered picture of the same size

  protected:
    // A row of the parameter grid: the caption, the slider and its text box showing `boxText`. The
    // slider is stepped 1 and 5 and reports a finished change and a drag apart.
    QSlider* addSliderRow(QGridLayout* grid, int row, const QString& caption, const QString& sliderName,
                          int minimum, int maximum, int start, const QString& boxName, const QString& boxText,
                          QLineEdit** box, std::function<void()> onChange, std::function<void()> onScroll);
    // Where the slider stands now, during a drag as well as after it.
    static int position(const QSlider* slider);
    // The box lost the focus: numeric text goes to the slider as a 16-bit integer (which takes what
    // its range allows), then the slider's value comes back into the box.
    static void repairTextBox(QLineEdit* box, QSlider* slider);

    void startValues() override;
    void run() override;
    void undo() override;
    void done() override;
    void formUnload() override;

  private:
    bool closedByDone_ = false;
};

} // namespace kirrel::filters
