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

#include "panel/EffectDialog.h"
#include "pixel/Triple.h"

#include <cstdint>
#include <vector>

class QCheckBox;
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

class FilterForm : public panel::EffectDialog {
    Q_OBJECT
  public:
    explicit FilterForm(const FilterTraits& traits);

    // -1 while the current-frame procedure works on a preview and leaves the host alone; 0 for a
    // real run.
    std::int16_t PreviewOn = 0;

    bool useAlpha() const;

    const FilterTraits& traits() const { return traits_; }
    // The frame (planes with upper bounds w, h) squeezed into the preview's square planes.
    krl::Triple shrinkInto(const krl::Triple& frame, int w, int h) const;
    void showPreview(const krl::Triple& picture);

  protected:
    // Where a filter puts its own controls, above the frame choice.
    QVBoxLayout* parameterArea() const { return parameters_; }
    // Fixes the form's size once the filter's controls are in.
    void finishLayout() { fixSize(520); }

    // The filter's start values, set at the end of the load before the first preview.
    virtual void startValues() {}
    // The current-frame procedure: a preview when PreviewOn is -1, else the real run.
    virtual void currentFrame() = 0;
    virtual void frameRange() = 0;

    // A parameter changed: one whole preview.
    void updatePreview();
    // The shared run; a filter whose dialog runs otherwise replaces run(), undo() and done().
    void run() override;
    void formLoad() override;

  private:
    std::vector<QWidget*> runDisables() const;

    const FilterTraits& traits_;
    QVBoxLayout* parameters_ = nullptr;
    QCheckBox* chkUseAlpha_ = nullptr;
    panel::PictureBox* PreviewBox_ = nullptr;
    panel::PictureBox* ImageBox_ = nullptr;
};

} // namespace kirrel::filters
