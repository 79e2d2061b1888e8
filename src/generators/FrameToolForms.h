#pragma once
// The frame tool dialogs. Swap and Copy are one dialog: two clickable labels pick frame one and frame
// two through the host's value box, and what differs (texts, the refusal of two equal frames, the
// procedure) is a row of data. Ping Pong has no parameter at all.

#include "panel/EffectDialog.h"

#include <cstdint>

namespace kirrel::generators {

struct FrameToolTraits {
    const char* formName;
    const char* caption;
    const char* description;
    const char* prefix[2];   // a label shows its prefix and the chosen frame
    const char* boxTitle[2]; // the value box's title for each label
    const char* arrow;       // the decorative label between the two
    bool refusesSameFrame;
    void (*procedure)(int frameOne, int frameTwo);
};

class FrameToolForm : public panel::EffectDialog {
    Q_OBJECT
  public:
    explicit FrameToolForm(const FrameToolTraits& traits);

    std::int16_t FrameOne = 0;
    std::int16_t FrameTwo = 0;

  protected:
    void formLoad() override;
    void run() override;

  private:
    void lblFrameSelected_Click(int index);
    void resetLabels();

    const FrameToolTraits& traits_;
    panel::ClickLabel* lblFrameSelected_[2] = {nullptr, nullptr};
};

class frmPingPong : public panel::EffectDialog {
    Q_OBJECT
  public:
    frmPingPong();

  protected:
    void formLoad() override;
    void run() override;
};

const FrameToolTraits& frameSwapTraits();
const FrameToolTraits& frameCopyTraits();

} // namespace kirrel::generators
