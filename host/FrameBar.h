#pragma once
// The frame scrubber under the canvas: first / previous / play-stop / next / last, a slider over the
// frames, the frame number with its delay, and the delay of the frame shown, which the user may
// change. Playback shows each frame for its own delay: a timer asks for the next frame when the shown
// one has had its time, and the window decides whether it may move.

#include <QWidget>

#include <functional>

class QLabel;
class QSlider;
class QSpinBox;
class QTimer;
class QToolButton;

namespace kirrel::host {

class FrameBar : public QWidget {
    Q_OBJECT
  public:
    explicit FrameBar(QWidget* parent = nullptr);

    // Shows `position` of `total` frames without raising frameRequested; total 0 is a still picture.
    void showFrames(int position, int total);
    int position() const;
    int total() const { return total_; }

    void play();
    void stop();
    bool playing() const;

    // Where the delays come from: the milliseconds frame f stays on screen.
    std::function<int(int frame)> delayOf;
    // Playback plays this many times faster (tests and previews).
    void setSpeed(double factor) { speed_ = factor; }

    QSlider* slider() const { return slider_; }
    QSpinBox* delayBox() const { return delay_; }
    QLabel* label() const { return label_; }

  signals:
    // The user (or playback) wants this frame shown.
    void frameRequested(int frame);
    void playingChanged(bool playing);
    // The user set the delay of the frame shown.
    void delayEdited(int frame, int milliseconds);

  private:
    void step(int delta);
    void updateLabel();
    void scheduleNext();
    int shownDelay() const;

    QToolButton *first_, *prev_, *playStop_, *next_, *last_;
    QSlider* slider_;
    QLabel* label_;
    QLabel* count_;
    QSpinBox* delay_;
    QTimer* timer_;
    int total_ = 0;
    double speed_ = 1.0;
    bool playing_ = false;
};

} // namespace kirrel::host
