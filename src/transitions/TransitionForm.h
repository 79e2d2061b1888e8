#pragma once
// The dialog every transition family shares: a variant (where the family has several), a source, the
// direction toggle between the main buffer and the source, a frame range, Apply, Undo and Done. The
// family's table entry gives the names, texts and runs; the behaviour is the same for all.
//
// With a plain source the frame lists hold "0", "1", ... so that list index and frame number agree.
// With a stored source they offer only the frames from which a splice with that slot can run, and
// Apply hands the list's text on.

#include "panel/EffectDialog.h"
#include "panel/PreviewPlan.h"
#include "transitions/Families.h"

#include <memory>
#include <string>

class QComboBox;
class QLabel;

namespace kirrel::transitions {

class TransitionForm : public panel::EffectDialog {
    Q_OBJECT
  public:
    explicit TransitionForm(const TransitionFamily& family);

  protected:
    void formLoad() override;
    void formActivate() override;
    void run() override;
    // With a plain source the lists hold every frame; the stored slot's picture and words go.
    void fillFrameLists() override;
    // A stored source's lists hold fewer frames than the animation: only more than it has is a change.
    void frameListLeft(bool startLeft) override;

  private:
    void Fill_Source_List();
    void Apply_Skin();
    void Refresh_Source_Controls();
    void Show_Stored_Slot(int slot);

    void lblToggle_Click();

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
    void runChoice(const RunChoice& c, double scale = 1.0);
    // Apply's words for a range it will not run on; nullptr when the range will do.
    const char* rangeRefusal() const;
    panel::PreviewPlan previewPlan();

    const TransitionFamily& family_;

    QComboBox* cboTransitions_ = nullptr; // absent for families without variants
    QComboBox* sourceList_ = nullptr;
    QLabel* lblToggle_ = nullptr;
    QLabel* storedPreview_ = nullptr;
    QLabel* lblStoredDesc_ = nullptr;
    std::unique_ptr<FamilyControls> familyControls_; // the family's own controls, if it has any
};

} // namespace kirrel::transitions
