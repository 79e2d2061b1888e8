#pragma once
// GreyOut: takes the colour out of a picture by channel. The user picks one channel, its level and a
// tolerance; pixels whose channel lies in that band turn grey. A twin of Channel Threshold in its
// frame: procedures on the form, text boxes beside the sliders, the same run, undo and closing.

#include "filters/ChannelFilterForm.h"
#include "filters/GreyOutPipeline.h"

#include <cstdint>

class QLineEdit;
class QRadioButton;
class QSlider;

namespace kirrel::filters {

class frmGreyOut : public ChannelFilterForm {
    Q_OBJECT
  public:
    frmGreyOut();

    // The selected channel's level as a percentage, as last handed to the library.
    std::int16_t Level = 0;

    GreyOutSettings settings() const;

    // A preview when PreviewOn is -1, else the real run on the current frame.
    void GreyOutCurrentFrame();
    void GreyOutFrameRange(std::int32_t Start, std::int32_t End);

  protected:
    void currentFrame() override;
    void frameRange() override;

  private:
    struct Channel {
        QRadioButton* option;
        QSlider* slider;
        QLineEdit* box;
    };
    void addChannel(Channel& c, QGridLayout* grid, int row, const QString& colour);
    void pipeline(krl::Triple& picture, int w, int h);

    Channel red_{}, green_{}, blue_{};
    QSlider* ToleranceSlider_ = nullptr;
    QLineEdit* lblTolerance_ = nullptr;
};

} // namespace kirrel::filters
