#pragma once
// The dialog every image filter shares: the frame shown now or a range of frames, the range lists,
// "Use Alpha?", the undo pair and a small live preview made by the same procedure as the real run.
// A filter adds its own controls and its two procedures; how it differs in the run is data
// (FilterTraits), so the run itself is written once. Filters whose dialogs run, undo and close by
// rules of their own (the channel filters) replace run(), undo() and done().
//
// The preview squeezes the whole frame into a square plane of the filter's preview size, whatever
// the frame's shape; every parameter change makes one whole preview, with nothing cached, so the
// preview always shows the host's frame as it is now.

#include "panel/FormBase.h"
#include "pixel/Triple.h"

#include <cstdint>
#include <initializer_list>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

namespace kirrel::filters {

struct FilterTraits {
    const char* formName;
    const char* caption;
    const char* description;
    int previewSize; // upper bound of the preview planes: 200 shows 200 x 200
    // Which buttons a run disables besides "Apply".
    bool runDisablesUndoAndDone = false;
    // Saving the undo walks the frames; a filter that relies on the host's frame goes back after it.
    bool gotoFrameAfterUndoSave = false;
    // A range run may leave the host's window in front; the dialog then shows itself again.
    bool showAgainAfterRange = false;
    // Filters that mix by their own rules have no "Use Alpha?" box.
    bool hasUseAlpha = true;
};

// The main buffer's three planes, read and written as one picture.
krl::Triple fetchBuffer(Vantry::Vantry_Class& van);
void storeBuffer(Vantry::Vantry_Class& van, const krl::Triple& picture);

class FilterForm : public panel::FormBase {
    Q_OBJECT
  public:
    explicit FilterForm(const FilterTraits& traits);

    void closeByUser() override { cmdCancel_Click(); }

    // -1 while the current-frame procedure works on a preview and leaves the host alone; 0 for a
    // real run.
    std::int16_t PreviewOn = 0;
    std::int16_t TotalFrames = 0;

    bool useAlpha() const;
    bool multipleFrames() const;
    int startIndex() const;
    int endIndex() const;
    // The lists' texts as numbers (what the user sees), for procedures that read them so.
    int startText() const;
    int endText() const;

    const FilterTraits& traits() const { return traits_; }
    // The frame (planes with upper bounds w, h) squeezed into the preview's square planes.
    krl::Triple shrinkInto(const krl::Triple& frame, int w, int h) const;
    void showPreview(const krl::Triple& picture);

  protected:
    // Where a filter puts its own controls, above the frame choice.
    QVBoxLayout* parameterArea() const { return parameters_; }
    // Fixes the form's size once the filter's controls are in.
    void finishLayout();

    // The filter's start values, set at the end of the load before the first preview.
    virtual void startValues() {}
    // The current-frame procedure: a preview when PreviewOn is -1, else the real run.
    virtual void currentFrame() = 0;
    virtual void frameRange() = 0;

    // A parameter changed: one whole preview.
    void updatePreview();
    // The shared run; a filter whose dialog runs otherwise replaces run().
    virtual void run();
    virtual void undo();
    virtual void done();
    // The "No Animation in memory!" question, with the lists filled again when one was made.
    void animationCheck();
    bool undoSaveChecked() const;
    bool currentFrameChosen() const;
    QPushButton* cmdRun() const { return cmdRun_; }
    QPushButton* cmdUndo() const { return cmdUndo_; }
    QPushButton* cmdCancel() const { return cmdCancel_; }
    // The skin's colours for a filter's own check boxes, options and text boxes.
    void skinToggles(std::initializer_list<QWidget*> toggles);
    void skinTextBoxes(std::initializer_list<QWidget*> boxes);
    void formLoad() override;
    void formActivate() override;
    void formUnload() override;

  private:
    void Fill_Frame_List();
    void frameListLeft(bool startLeft);
    void Apply_Skin();
    void cmd_Run_Click();
    void cmdUndo_Click();
    void cmdCancel_Click();
    std::vector<QWidget*> runDisables() const;

    const FilterTraits& traits_;
    std::string TempDir;
    QVBoxLayout* parameters_ = nullptr;
    QLabel* description_ = nullptr;
    QRadioButton* optCurrent_ = nullptr;
    QRadioButton* optMultiple_ = nullptr;
    QLabel* lblKeyIn_ = nullptr;
    QLabel* lblKeyOut_ = nullptr;
    QComboBox* cboFrameStart_ = nullptr;
    QComboBox* cboFrameEnd_ = nullptr;
    QCheckBox* chkUseAlpha_ = nullptr;
    QCheckBox* chkUndoSave_ = nullptr;
    QPushButton* cmdUndo_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QPushButton* cmdRun_ = nullptr;
    panel::PictureBox* PreviewBox_ = nullptr;
    panel::PictureBox* ImageBox_ = nullptr;
};

} // namespace kirrel::filters
