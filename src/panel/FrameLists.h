#pragma once
// The Frame Start / Frame End lists the effect dialogs share, kept in step with the dialog's own
// frame count: filled from it, refilled after the user agrees to make an animation when there is
// none, and refilled when the animation's length changed behind the dialog's back.

#include <cstdint>

class QComboBox;

namespace kirrel::panel {

class FormBase;

struct FrameLists {
    FormBase& form;
    QComboBox* start;
    QComboBox* end;
    std::int16_t& totalFrames;
    // Asked when there is no animation.
    const char* noAnimationQuestion;

    // Both lists hold frames 0 .. totalFrames-1 with the whole range chosen; with no frame the user
    // is offered a new animation.
    void fill() const;
    // Asks the question; declined, both lists are emptied. When an animation is made, both lists
    // are filled from its frame count and enabled.
    void offerAnimation() const;
    // A list was left: when the animation's frame count changed, both lists are filled again.
    void followCount() const;
};

} // namespace kirrel::panel
