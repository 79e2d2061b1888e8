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
    // The track keeps room to be dragged when the window is at its smallest.
    slider_->setMinimumWidth(120);
    row->addSpacing(6);
    row->addWidget(slider_, 1);
    row->addSpacing(6);

    label_ = new QLabel(this);
    label_->setObjectName("frameLabel");
    label_->setMinimumWidth(label_->fontMetrics().horizontalAdvance("Frame 00000 · 000000 ms") + 8);
    label_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row->addWidget(label_);
    count_ = new QLabel(this);
    count_->setObjectName("frameCount");
    count_->setForegroundRole(QPalette::PlaceholderText);
    row->addWidget(count_);

    delay_ = new QSpinBox(this);
    delay_->setObjectName("frameDelay");
    delay_->setRange(10, 655350);
    delay_->setSingleStep(10);
    delay_->setSuffix(" ms");
    delay_->setKeyboardTracking(false);
    delay_->setToolTip("How long the frame shown stays on screen when the animation plays");
    row->addWidget(delay_);

    connect(first_, &QToolButton::clicked, this, [this] { emit frameRequested(0); });
    connect(last_, &QToolButton::clicked, this, [this] { emit frameRequested(total_ - 1); });
    connect(prev_, &QToolButton::clicked, this, [this] { step(-1); });
    connect(next_, &QToolButton::clicked, this, [this] { step(1); });
    connect(playStop_, &QToolButton::clicked, this, [this] { playing() ? stop() : play(); });
    connect(slider_, &QSlider::valueChanged, this, [this](int v) {
        updateLabel();
        emit frameRequested(v);
    });
    connect(delay_, &QSpinBox::valueChanged, this, [this](int v) {
        if (total_ > 0 && v != shownDelay()) emit delayEdited(slider_->value(), v);
    });
    timer_->setSingleShot(true);
    connect(timer_, &QTimer::timeout, this, [this] {
        step(1);
        if (playing_) scheduleNext(); // the step may have stopped playback
    });
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
          static_cast<QWidget*>(last_), static_cast<QWidget*>(slider_), static_cast<QWidget*>(delay_)})
        w->setEnabled(animated);
    playStop_->setEnabled(total_ > 1);
    if (total_ <= 1) stop();
    updateLabel();
}

int FrameBar::position() const {
    return slider_->value();
}

int FrameBar::shownDelay() const {
    return delayOf && total_ > 0 ? delayOf(slider_->value()) : 0;
}

void FrameBar::updateLabel() {
    if (total_ == 0) {
        label_->setText(QStringLiteral("Still picture"));
        count_->clear();
        return;
    }
    const int delay = shownDelay();
    label_->setText(QString("Frame %1 · %2 ms").arg(slider_->value()).arg(delay));
    count_->setText(QString("(%1 frames)").arg(total_));
    if (!delay_->hasFocus()) {
        const QSignalBlocker block(delay_);
        delay_->setValue(delay);
    }
}

void FrameBar::step(int delta) {
    if (total_ <= 0) return;
    emit frameRequested(((slider_->value() + delta) % total_ + total_) % total_);
}

// The frame on screen stays for its own delay; the next one is asked for when that has passed.
void FrameBar::scheduleNext() {
    if (total_ <= 1) return;
    timer_->start(std::max(1, static_cast<int>(shownDelay() / speed_)));
}

void FrameBar::play() {
    if (total_ <= 1 || playing_) return;
    playing_ = true;
    scheduleNext();
    playStop_->setIcon(style()->standardIcon(QStyle::SP_MediaStop));
    emit this->playingChanged(true);
}

void FrameBar::stop() {
    if (!playing_) return;
    playing_ = false;
    timer_->stop();
    playStop_->setIcon(style()->standardIcon(QStyle::SP_MediaPlay));
    emit this->playingChanged(false);
}

bool FrameBar::playing() const {
    return playing_;
}

} // namespace kirrel::host
