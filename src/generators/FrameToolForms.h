#pragma once
// The frame tool dialogs. Swap and Copy are one dialog: two clickable labels pick frame one and frame
// two through the host's value box, and what differs (texts, the refusal of two equal frames, the
// procedure) is a row of data. Ping Pong has no parameter at all.

#include "panel/FormBase.h"

#include <cstdint>

class QCheckBox;
class QLabel;
class QPushButton;

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

class FrameToolForm : public panel::FormBase {
    Q_OBJECT
  public:
    explicit FrameToolForm(const FrameToolTraits& traits);

    void closeByUser() override { closeDialog(); }

    std::int16_t TotalFrames = 0;
    std::int16_t FrameOne = 0;
    std::int16_t FrameTwo = 0;

  protected:
    void formLoad() override;
    void formUnload() override;

  private:
    void lblFrameSelected_Click(int index);
    void resetLabels();
    void cmd_Run_Click();

    const FrameToolTraits& traits_;
    panel::ClickLabel* lblFrameSelected_[2] = {nullptr, nullptr};
    QLabel* description_ = nullptr;
    QCheckBox* chkUndoSave_ = nullptr;
    QPushButton* cmdUndo_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QPushButton* cmdRun_ = nullptr;
};

class frmPingPong : public panel::FormBase {
    Q_OBJECT
  public:
    frmPingPong();

    void closeByUser() override { closeDialog(); }

  protected:
    void formLoad() override;
    void formUnload() override;

  private:
    void cmd_Run_Click();

    QLabel* description_ = nullptr;
    QCheckBox* chkUndoSave_ = nullptr;
    QPushButton* cmdUndo_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QPushButton* cmdRun_ = nullptr;
};

const FrameToolTraits& frameSwapTraits();
const FrameToolTraits& frameCopyTraits();

} // namespace kirrel::generators
