#pragma once
// What every effect dialog has around its own controls:
// - the window: the dialogs' margins, a description at the top, a fixed size, the skin with the
//   host's wallpaper behind it, and the main panel shown again when the dialog goes;
// - the apply row: "Save Undo", "Undo", the run button and "Done", wired to run(), undo() and done();
//   the close box, and Escape in a dock, do what "Done" does;
// - the Frame Start / Frame End lists and the "Current Frame" / "Multiple Frames" choice, kept in
//   step with the animation's frame count (EffectFrameLists.cpp).
// The builders make their controls when a dialog calls them, so each dialog keeps its own layout and
// the order of its controls. Where dialogs differ they say so in what they pass, or replace a hook.

#include "panel/FormBase.h"

#include <QMargins>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class QGridLayout;
class QHBoxLayout;

namespace kirrel::panel {

// Apply's refusal when the animation's length changed while the dialog was open.
inline constexpr const char* kSizeChanged = "Animation Size Changed. Settings updated.";
// The effect dialogs ask with three line feeds between the sentences, the panel with two.
inline constexpr const char* kNoAnimationOffer =
    "No Animation in memory!\n\n\nWould you like to create an animation now?";

class EffectDialog : public FormBase {
    Q_OBJECT
  public:
    using FormBase::FormBase;

    void closeByUser() override { done(); }

    // The animation's frame count when the dialog last looked.
    std::int16_t TotalFrames = 0;

    // The frame lists' choice: the list index, and the text read as a number (a text that holds none
    // throws std::invalid_argument, as a type mismatch).
    int startIndex() const;
    int endIndex() const;
    int startText() const;
    int endText() const;
    bool currentFrameChosen() const;
    bool multipleFrames() const;

  protected:
    // --- the window ---
    static constexpr QMargins kMargins{14, 14, 14, 12};
    // The window's own layout (a QVBoxLayout or a QHBoxLayout).
    template <class Box> Box* makeWindowLayout(int spacing, const QMargins& margins = kMargins) {
        auto* box = new Box(this);
        box->setContentsMargins(margins);
        box->setSpacing(spacing);
        return box;
    }
    // "Label1", the word-wrapped description at the top.
    QLabel* makeDescription(const QString& text, int margin = 5);
    // Once every control is in: the size the layout asks for, at least minWidth wide.
    void fixSize(int minWidth = 0);
    // Once every control is in: this wide, and as high as wrapped text needs at that width.
    void fixWidth(int width);

    // What the skin colours besides the backdrop, the description and the apply row's buttons.
    struct SkinParts {
        std::vector<QWidget*> texts;   // in the text boxes' colours
        std::vector<QWidget*> toggles; // check boxes and options: the button fill, black text
        std::vector<QWidget*> buttons;
    };
    // The skin read anew and put on the dialog; then the host's wallpaper behind the controls.
    void applySkin(const SkinParts& parts = {});
    static void skinTextBoxes(const std::vector<QWidget*>& texts);
    static void skinToggles(const std::vector<QWidget*>& toggles);
    // The frame lists and their captions, for a dialog that colours them as text.
    std::vector<QWidget*> frameListParts() const;

    // Shows the main panel again, however the dialog goes.
    void formUnload() override;
    // Fills the frame lists again, when there are frames.
    void formActivate() override;

    // --- the apply row ---
    // The run button marks its action as a run (see markRunAction).
    QHBoxLayout* makeApplyRow(const QString& runCaption = QStringLiteral("Apply"));
    virtual void run() = 0;
    // Restores the undo, "Undo" greyed meanwhile.
    virtual void undo();
    // Closes the dialog and shows the main panel.
    virtual void done();
    QCheckBox* chkUndoSave() const { return chkUndoSave_; }
    QPushButton* cmdUndo() const { return cmdUndo_; }
    QPushButton* cmdRun() const { return cmdRun_; }
    QPushButton* cmdCancel() const { return cmdCancel_; }
    // The run button, "Undo" and "Done", for a run that greys them all.
    std::vector<QWidget*> applyRowButtons() const;
    bool undoSaveChecked() const;
    // A run's undo save: the whole animation when "Save Undo" is checked.
    void saveUndoIfChecked() const;

    // --- the frame lists ---
    // "Frame Start" and "Frame End" over their lists; leaving either calls frameListLeft.
    QGridLayout* makeFrameLists();
    // "Current Frame" or "Multiple Frames", the current frame chosen.
    QHBoxLayout* makeFrameChoice();
    QComboBox* cboFrameStart() const { return cboFrameStart_; }
    QComboBox* cboFrameEnd() const { return cboFrameEnd_; }
    QLabel* lblKeyIn() const { return lblKeyIn_; }
    QLabel* lblKeyOut() const { return lblKeyOut_; }
    QRadioButton* optCurrent() const { return optCurrent_; }
    QRadioButton* optMultiple() const { return optMultiple_; }

    // The load's first look at the host: its temporary folder, then the frame count; with frames the
    // lists are filled.
    void readTempDirAndFrames();
    const std::string& tempDir() const { return tempDir_; }
    // Both lists hold frames 0 .. TotalFrames-1 with the whole range chosen; without frames the user
    // is offered an animation.
    virtual void fillFrameLists();
    // The lists' items and choice alone, without the offer.
    void listFrames();
    void clearFrameLists();
    // Asks the question; declined, both lists are emptied. When an animation is made, both lists are
    // filled from its frame count and enabled.
    void offerAnimation(const char* question = kNoAnimationOffer);
    // A list was left: when the animation's length changed, both lists are filled again; then the
    // other list is pulled along.
    virtual void frameListLeft(bool startLeft);
    // When Start has passed End, the list just left stays and the other one is pulled along.
    void pullFrameListsAlong(bool startLeft);
    // Apply's check of the lists against TotalFrames: when they differ the user is told, the lists
    // are filled again and false is returned.
    bool frameCountUnchanged();
    // The start every frame-list run shares: the current frame remembered, the frame count read and
    // checked, the host's playback stopped and, when the run needs an animation and there is none,
    // the offer to make one. The remembered frame, or nullopt when the run stops there.
    std::optional<int> beginRun(bool needsAnimation);
    // The end of a run: back on the remembered frame, the host's picture redrawn.
    void endRun(int remembered);

  private:
    QLabel* description_ = nullptr;
    QCheckBox* chkUndoSave_ = nullptr;
    QPushButton* cmdUndo_ = nullptr;
    QPushButton* cmdRun_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QLabel* lblKeyIn_ = nullptr;
    QLabel* lblKeyOut_ = nullptr;
    QComboBox* cboFrameStart_ = nullptr;
    QComboBox* cboFrameEnd_ = nullptr;
    QRadioButton* optCurrent_ = nullptr;
    QRadioButton* optMultiple_ = nullptr;
    std::string tempDir_;
};

} // namespace kirrel::panel
