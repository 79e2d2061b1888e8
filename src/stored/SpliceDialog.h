#pragma once
// What the three dialogs that join a stored animation with the host's share: the help text, the
// four slot rows under "Select Stored Animation", the undo pair, "Apply" and "Done", and the
// refusal of a slot file that is damaged, made before the undo is saved so nothing has changed.

#include "panel/EffectDialog.h"
#include "stored/SlotChoiceRows.h"

#include <memory>
#include <optional>

class QVBoxLayout;

namespace kirrel::stored {

inline constexpr const char* kSpliceSizeChanged = "Animation Size Changed!\nUpdating Settings";

class SpliceDialog : public panel::EffectDialog {
    Q_OBJECT
  public:
    SpliceDialog(const QString& name, const QString& caption, const QString& help);

  protected:
    // Where a dialog puts its options, below the slot rows.
    QVBoxLayout* optionArea() const { return options_; }
    void finishLayout() { fixSize(440); }

    SlotChoiceRows& rows() { return *rows_; }

    // Temporary directory, frame count and slot rows read anew.
    void refresh();
    // Apply's first check: when the animation's length changed the user is told, everything is read
    // anew and false returned.
    bool lengthUnchanged();
    // The slot's header when its file is whole; otherwise the refusal is shown and nullopt returned.
    std::optional<FrameFileHeader> checkedSlot(short slot);

    void formLoad() override;
    void formActivate() override;
    // Runs after refresh at load and at activation.
    virtual void refreshed() {}

    // A dialog's own controls the skin colours too.
    SkinParts ownSkin_;

  private:
    std::unique_ptr<SlotChoiceRows> rows_;
    QVBoxLayout* options_ = nullptr;
    QLabel* heading_ = nullptr;
};

} // namespace kirrel::stored
