#pragma once
// The frame scrubber under the canvas: first / previous / play-stop / next / last, a slider over the
// frames, the frame number, and the playback rate. Playback is a timer that asks for the next frame;
// the window decides whether it may move.

#include <QWidget>

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
    int framesPerSecond() const;
    void setFramesPerSecond(int fps);

    QSlider* slider() const { return slider_; }

  signals:
    // The user (or playback) wants this frame shown.
    void frameRequested(int frame);
    void playingChanged(bool playing);

  private:
    void step(int delta);
    void updateLabel();

    QToolButton *first_, *prev_, *playStop_, *next_, *last_;
    QSlider* slider_;
    QLabel* label_;
    QSpinBox* fps_;
    QTimer* timer_;
    int total_ = 0;
};

} // namespace kirrel::host
