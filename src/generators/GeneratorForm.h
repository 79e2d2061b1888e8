#pragma once
// The dialog the generators and Focus share: a one-line description, the generator's own controls,
// the Start and End lists, the undo pair, "Done" and "Apply". There is no preview: what a generator
// does only shows over time.
//
// The forms differ in one point of their run, kept as data: whether a range shorter than three
// frames is refused, and whether the undo is saved before that test (so that a refused run has
// saved all the same) or only for a run that goes ahead.

#include "panel/FormBase.h"

#include <cstdint>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
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

class GeneratorForm : public panel::FormBase {
    Q_OBJECT
  public:
    explicit GeneratorForm(const GeneratorTraits& traits);

    void closeByUser() override { cmdCancel_Click(); }

    std::int16_t TotalFrames = 0;
    FrameSpan span() const;
    const GeneratorTraits& traits() const { return traits_; }

  protected:
    // Where a form puts its own controls, between the description and the lists.
    QVBoxLayout* parameterArea() const { return parameters_; }
    void finishLayout();
    // The form's start values, at the end of the load.
    virtual void startValues() {}
    // Calls the procedure the form's controls choose.
    virtual void runProcedure() = 0;

    void formLoad() override;
    void formActivate() override;
    void formUnload() override;

  private:
    void Fill_Frame_List();
    void animationCheck();
    void frameListLeft(bool startLeft);
    bool rangeTooShort();
    void cmd_Run_Click();
    void cmdUndo_Click();
    void cmdCancel_Click();

    const GeneratorTraits& traits_;
    std::string TempDir;
    QVBoxLayout* parameters_ = nullptr;
    QLabel* description_ = nullptr;
    QComboBox* cboFrameStart_ = nullptr;
    QComboBox* cboFrameEnd_ = nullptr;
    QCheckBox* chkUndoSave_ = nullptr;
    QPushButton* cmdUndo_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QPushButton* cmdRun_ = nullptr;
};

} // namespace kirrel::generators
