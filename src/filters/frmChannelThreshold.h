#pragma once
// Channel Threshold: cuts each colour channel to two values at a level of its own, can lay a cut of
// the grey picture over them, and can mix the result back with the unfiltered frame in six ways.

#include "filters/ChannelFilterForm.h"
#include "filters/ChannelThresholdPipeline.h"

#include <cstdint>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSlider;

namespace kirrel::filters {

class frmChannelThreshold : public ChannelFilterForm {
    Q_OBJECT
  public:
    frmChannelThreshold();

    // The three colour sliders as the procedures read them when they start.
    std::uint8_t RedLevel = 128, GreenLevel = 128, BlueLevel = 128;

    // What the controls say, with the colour levels last read.
    ChannelThresholdSettings settings() const;

    // A preview when PreviewOn is -1, else the real run on the current frame.
    void ChannelThresholdCurrentFrame();
    void ChannelThresholdFrameRange(std::int32_t Start, std::int32_t End);

  protected:
    void currentFrame() override;
    void frameRange() override;

  private:
    struct Channel {
        QSlider* slider;
        QCheckBox* check;
        QLineEdit* box;
    };
    void addChannel(Channel& c, QGridLayout* grid, int row, const QString& caption, const QString& colour,
                    const QString& check);
    void readLevels();
    void pipeline();
    void preview();

    Channel red_{}, green_{}, blue_{}, grey_{};
    QComboBox* cboMixing_ = nullptr;
};

} // namespace kirrel::filters
