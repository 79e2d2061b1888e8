#pragma once
// What the two mask dialogs share with each other and with the filter dialogs' shape: the frame
// range lists with their Validate events, the two source lists ("Lighter Colors Favor", "Darker
// Colors Favor"), the undo pair, "Apply" and "Done", the size-changed refusal and the offer to
// make an animation. Each dialog adds its own controls and its run.

#include "panel/EffectDialog.h"

#include <QStringList>

class QComboBox;
class QLabel;
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

class MaskDialog : public panel::EffectDialog {
    Q_OBJECT
  public:
    MaskDialog(const MaskDialogTraits& traits, const QStringList& sources);

    std::string lighter() const;
    std::string darker() const;

  protected:
    // Where a dialog puts its own controls, below the source lists.
    QVBoxLayout* extraArea() const { return extra_; }
    // Fixes the form's size once the dialog's controls are in.
    void finishLayout() { fixSize(460); }

    void formLoad() override;
    // Between the frame lists and the skin: what a dialog does at load of its own.
    virtual void loadExtras() {}

  private:
    const MaskDialogTraits& traits_;
    QStringList sources_;
    QVBoxLayout* extra_ = nullptr;
    QComboBox* cboLighter_ = nullptr;
    QComboBox* cboDarker_ = nullptr;
    QLabel* label2_ = nullptr;
    QLabel* label3_ = nullptr;
};

} // namespace kirrel::masks
