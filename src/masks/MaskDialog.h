#pragma once
// What the two mask dialogs share with each other and with the filter dialogs' shape: the frame
// range lists with their Validate events, the two source lists ("Lighter Colors Favor", "Darker
// Colors Favor"), the undo pair, "Apply" and "Done", the size-changed refusal and the offer to
// make an animation. Each dialog adds its own controls and its run.

#include "panel/FormBase.h"

#include <QStringList>

#include <cstdint>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

namespace kirrel::masks {

inline constexpr const char* kTwoSources = "Please Select Two Different Sources";

struct MaskDialogTraits {
    const char* formName;
    const char* caption;
    const char* description;
    bool frameChoice; // "Current Frame" / "Multiple Frames" above the range
    int lighterStart; // list index each source list starts on
    int darkerStart;
};

class MaskDialog : public panel::FormBase {
    Q_OBJECT
  public:
    MaskDialog(const MaskDialogTraits& traits, const QStringList& sources);

    void closeByUser() override { cmdCancel_Click(); }

    std::int16_t TotalFrames = 0;

    std::string lighter() const;
    std::string darker() const;
    int startIndex() const;
    int endIndex() const;

  protected:
    // Where a dialog puts its own controls, below the source lists.
    QVBoxLayout* extraArea() const { return extra_; }
    // Fixes the form's size once the dialog's controls are in.
    void finishLayout();

    // Steps shared by the runs: the size check (true when the run may go on) and the offer to
    // make an animation.
    bool frameCountUnchanged();
    void animationCheck();
    void Fill_Frame_List();
    bool undoChecked() const;

    QComboBox* cboFrameStart() const { return cboFrameStart_; }
    QComboBox* cboFrameEnd() const { return cboFrameEnd_; }
    QRadioButton* optCurrent() const { return optCurrent_; }
    QRadioButton* optMultiple() const { return optMultiple_; }
    QCheckBox* chkUndoSave() const { return chkUndoSave_; }
    QPushButton* cmdRun() const { return cmdRun_; }

    void formLoad() override;
    void formActivate() override;
    void formUnload() override;
    // Between the frame lists and the skin: what a dialog does at load of its own.
    virtual void loadExtras() {}
    virtual void cmd_Run_Click() = 0;
    virtual void cmdUndo_Click();
    virtual void cmdCancel_Click();

  private:
    void frameListLeft(bool startLeft);
    void Apply_Skin();

    const MaskDialogTraits& traits_;
    QStringList sources_;
    QVBoxLayout* extra_ = nullptr;
    QLabel* description_ = nullptr;
    QRadioButton* optCurrent_ = nullptr;
    QRadioButton* optMultiple_ = nullptr;
    QLabel* lblKeyIn_ = nullptr;
    QLabel* lblKeyOut_ = nullptr;
    QComboBox* cboFrameStart_ = nullptr;
    QComboBox* cboFrameEnd_ = nullptr;
    QComboBox* cboLighter_ = nullptr;
    QComboBox* cboDarker_ = nullptr;
    QLabel* label2_ = nullptr;
    QLabel* label3_ = nullptr;
    QCheckBox* chkUndoSave_ = nullptr;
    QPushButton* cmdUndo_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QPushButton* cmdRun_ = nullptr;
};

} // namespace kirrel::masks
