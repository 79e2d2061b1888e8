#pragma once
// The dialog every transition family shares: a variant (where the family has several), a source, the
// direction toggle between the main buffer and the source, a frame range, Apply, Undo and Done. The
// family's table entry gives the names, texts and runs; the behaviour is the same for all.
//
// With a plain source the frame lists hold "0", "1", ... so that list index and frame number agree.
// With a stored source they offer only the frames from which a splice with that slot can run, and
// Apply hands the list's text on.

#include "panel/FormBase.h"
#include "panel/PreviewPlan.h"
#include "transitions/Families.h"

#include <cstdint>
#include <memory>
#include <string>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

namespace kirrel::transitions {

class TransitionForm : public panel::FormBase {
    Q_OBJECT
  public:
    explicit TransitionForm(const TransitionFamily& family);

    void closeByUser() override { cmdCancel_Click(); }

  protected:
    void formLoad() override;
    void formActivate() override;
    void formUnload() override;

  private:
    void Reset_Frame_Lists();
    void Ensure_Animation();
    void Fill_Source_List();
    void Apply_Skin();
    void Refresh_Source_Controls();
    void Show_Stored_Slot(int slot);
    void clearFrameLists();
    void frameListLeft(bool startLeft);

    void lblToggle_Click();
    void cmd_Run_Click();
    void cmdUndo_Click();
    void cmdCancel_Click();

    bool towardSource() const; // the arrow points from the main buffer to the source
    std::string sourceText() const;
    void dispatch();

    // The run the controls choose, read from them once.
    struct RunChoice {
        int variant = 0;
        int slot = -1;
        bool toward = true;
        int start = 0, end = 0; // a stored shape reads only its own end of the range
        std::string source;
    };
    // Throws std::invalid_argument when a frame list holds no number.
    RunChoice choice() const;
    // False when the variant list points at no variant: Apply then runs nothing.
    bool validVariant() const;
    // scale: see FamilyRun.
    void run(const RunChoice& c, double scale = 1.0);
    // Apply's words for a range it will not run on; nullptr when the range will do.
    const char* rangeRefusal() const;
    panel::PreviewPlan previewPlan();

    const TransitionFamily& family_;
    std::int16_t frameCount_ = 0;
    std::string tempDir_;

    QComboBox* cboTransitions_ = nullptr; // absent for families without variants
    QComboBox* sourceList_ = nullptr;
    QLabel* lblToggle_ = nullptr;
    QComboBox* cboFrameStart_ = nullptr;
    QComboBox* cboFrameEnd_ = nullptr;
    QLabel* lblKeyIn_ = nullptr;
    QLabel* lblKeyOut_ = nullptr;
    QLabel* storedPreview_ = nullptr;
    QLabel* lblStoredDesc_ = nullptr;
    QCheckBox* chkUndoSave_ = nullptr;
    QPushButton* cmdUndo_ = nullptr;
    QPushButton* cmdRun_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    std::unique_ptr<FamilyControls> familyControls_; // the family's own controls, if it has any
};

} // namespace kirrel::transitions
