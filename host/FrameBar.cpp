#include "host/FrameBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QStyle>
#include <QTimer>
#include <QToolButton>

namespace kirrel::host {

FrameBar::FrameBar(QWidget* parent) : QWidget(parent), timer_(new QTimer(this)) {
    setObjectName("frameBar");
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    row->setSpacing(4);
    auto button = [&](const char* name, QStyle::StandardPixmap icon, const QString& tip) {
        auto* b = new QToolButton(this);
        b->setObjectName(name);
        b->setIcon(style()->standardIcon(icon));
        b->setToolTip(tip);
        b->setAutoRaise(true);
        row->addWidget(b);
        return b;
    };
    first_ = button("firstFrame", QStyle::SP_MediaSkipBackward, "First frame (Home)");
    prev_ = button("previousFrame", QStyle::SP_MediaSeekBackward, "Previous frame (,)");
    playStop_ = button("playStop", QStyle::SP_MediaPlay, "Play / Stop (Space)");
    next_ = button("nextFrame", QStyle::SP_MediaSeekForward, "Next frame (.)");
    last_ = button("lastFrame", QStyle::SP_MediaSkipForward, "Last frame (End)");

    slider_ = new QSlider(Qt::Horizontal, this);
    slider_->setObjectName("scrubber");
    slider_->setToolTip("Drag to scrub through the frames");
    slider_->setPageStep(5);
    row->addSpacing(6);
    row->addWidget(slider_, 1);
    row->addSpacing(6);

    label_ = new QLabel(this);
    label_->setObjectName("frameLabel");
    label_->setMinimumWidth(label_->fontMetrics().horizontalAdvance("Frame 00000 of 00000") + 8);
    row->addWidget(label_);

    fps_ = new QSpinBox(this);
    fps_->setObjectName("frameRate");
    fps_->setRange(1, 60);
    fps_->setValue(12);
    fps_->setSuffix(" fps");
    fps_->setToolTip("Playback rate in frames per second");
    row->addWidget(fps_);

    connect(first_, &QToolButton::clicked, this, [this] { emit frameRequested(0); });
    connect(last_, &QToolButton::clicked, this, [this] { emit frameRequested(total_ - 1); });
    connect(prev_, &QToolButton::clicked, this, [this] { step(-1); });
    connect(next_, &QToolButton::clicked, this, [this] { step(1); });
    connect(playStop_, &QToolButton::clicked, this, [this] { playing() ? stop() : play(); });
    connect(slider_, &QSlider::valueChanged, this, [this](int v) {
        updateLabel();
        emit frameRequested(v);
    });
    connect(fps_, &QSpinBox::valueChanged, this, [this](int v) { timer_->setInterval(1000 / v); });
    connect(timer_, &QTimer::timeout, this, [this] { step(1); });
    timer_->setInterval(1000 / fps_->value());
    showFrames(0, 0);
}

void FrameBar::showFrames(int position, int total) {
    total_ = std::max(0, total);
    {
        const QSignalBlocker block(slider_);
        slider_->setRange(0, std::max(0, total_ - 1));
        slider_->setValue(std::clamp(position, 0, std::max(0, total_ - 1)));
    }
    const bool animated = total_ > 0;
    for (QWidget* w :
         {static_cast<QWidget*>(first_), static_cast<QWidget*>(prev_), static_cast<QWidget*>(next_),
          static_cast<QWidget*>(last_), static_cast<QWidget*>(slider_)})
        w->setEnabled(animated);
    playStop_->setEnabled(total_ > 1);
    if (total_ <= 1) stop();
    updateLabel();
}

int FrameBar::position() const {
    return slider_->value();
}

void FrameBar::updateLabel() {
    label_->setText(total_ == 0 ? QStringLiteral("Still picture")
                                : QString("Frame %1  ·  %2 frames").arg(slider_->value()).arg(total_));
}

void FrameBar::step(int delta) {
    if (total_ <= 0) return;
    emit frameRequested(((slider_->value() + delta) % total_ + total_) % total_);
}

void FrameBar::play() {
    if (total_ <= 1 || timer_->isActive()) return;
    timer_->start();
    playStop_->setIcon(style()->standardIcon(QStyle::SP_MediaStop));
    emit playingChanged(true);
}

void FrameBar::stop() {
    if (!timer_->isActive()) return;
    timer_->stop();
    playStop_->setIcon(style()->standardIcon(QStyle::SP_MediaPlay));
    emit playingChanged(false);
}

bool FrameBar::playing() const {
    return timer_->isActive();
}
int FrameBar::framesPerSecond() const {
    return fps_->value();
}
void FrameBar::setFramesPerSecond(int fps) {
    fps_->setValue(fps);
}

} // namespace kirrel::host
