#pragma once
// The dialog the generators and Focus share: a one-line description, the generator's own controls,
// the Start and End lists, the undo pair, "Done" and "Apply". There is no preview: what a generator
// does only shows over time.
//
// The forms differ in one point of their run, kept as data: whether a range shorter than three
// frames is refused, and whether the undo is saved before that test (so that a refused run has
// saved all the same) or only for a run that goes ahead.

#include "panel/EffectDialog.h"

class QVBoxLayout;

namespace kirrel::generators {

enum class RangeTest {
    None,      // any range runs (Focus)
    UndoFirst, // the undo is saved, then a short range is refused
    TestFirst, // a short range is refused before anything is saved
};

struct GeneratorTraits {
    const char* formName;
    const char* caption;
    const char* description;
    RangeTest rangeTest;
};

// The frames a procedure works on, as the dialog's lists give them.
struct FrameSpan {
    int start = 0;
    int end = 0;
};

class GeneratorForm : public panel::EffectDialog {
    Q_OBJECT
  public:
    explicit GeneratorForm(const GeneratorTraits& traits);

    FrameSpan span() const;
    const GeneratorTraits& traits() const { return traits_; }

  protected:
    // Where a form puts its own controls, between the description and the lists.
    QVBoxLayout* parameterArea() const { return parameters_; }
    void finishLayout() { fixSize(400); }
    // The form's start values, at the end of the load.
    virtual void startValues() {}
    // Calls the procedure the form's controls choose.
    virtual void runProcedure() = 0;

    void formLoad() override;
    void run() override;

  private:
    bool rangeTooShort();

    const GeneratorTraits& traits_;
    QVBoxLayout* parameters_ = nullptr;
};

} // namespace kirrel::generators
