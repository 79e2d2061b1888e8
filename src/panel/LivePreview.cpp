#include "panel/LivePreview.h"

#include "host/AnimationFiles.h"
#include "host/ScratchHost.h"

#include <QEvent>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <exception>
#include <iterator>

namespace kirrel::panel {

namespace {

bool& allowedFlag() {
    static bool allowed = true;
    return allowed;
}

constexpr int kBorder = 1;
constexpr int kCaptionHeight = 18;
const QColor kScreen(32, 32, 32);
const QColor kCaption(56, 56, 56);
const QColor kEdge(96, 96, 96);
const QColor kWords(230, 230, 230);
const QColor kQuiet(170, 170, 170);
constexpr const char* kOff = "No preview in session scripts";

// The plan, or a refusal in its words: a form's planner that throws must not take the dialog down.
PreviewPlan planOf(const PreviewPlanner& planner) {
    PreviewPlan plan;
    try {
        plan = planner();
    } catch (const std::exception& e) {
        plan = {};
        plan.refusal = e.what();
    } catch (...) {
        plan = {};
        plan.refusal = "The preview failed";
    }
    return plan;
}

} // namespace

void LivePreview::setAllowed(bool allowed) {
    allowedFlag() = allowed;
}

bool LivePreview::allowed() {
    return allowedFlag();
}

LivePreview::LivePreview(PreviewPlanner planner, QWidget* parent)
    : QWidget(parent), planner_(std::move(planner)), runner_(kBoxWidth, kBoxHeight),
      debounce_(new QTimer(this)), player_(new QTimer(this)) {
    setObjectName("livePreview");
    setFixedSize(kBoxWidth + 2 * kBorder, kCaptionHeight + kBoxHeight + 2 * kBorder);
    debounce_->setSingleShot(true);
    debounce_->setInterval(kDebounceMs);
    connect(debounce_, &QTimer::timeout, this, &LivePreview::refreshNow);
    player_->setSingleShot(true);
    connect(player_, &QTimer::timeout, this, &LivePreview::playNext);
    if (parent) parent->window()->installEventFilter(this);
}

LivePreview::~LivePreview() = default;

void LivePreview::schedule() {
    // A hidden preview catches up when it is shown.
    if (isVisible()) startDebounce();
}

void LivePreview::startDebounce() {
    if (allowed() && !debounce_->isActive()) debounce_->start();
}

void LivePreview::refreshNow() {
    debounce_->stop();
    if (!allowed()) return;
    // While a run of the dialog's own holds the host (it may be waiting in a box), the preview waits.
    if (host::runningHost().locked() || !window()->isEnabled() || host::ScratchHost::current()) {
        debounce_->start();
        return;
    }
    showing_ = runner_.run(planOf(planner_));
    images_.clear();
    images_.reserve(showing_.frames.size());
    std::transform(showing_.frames.begin(), showing_.frames.end(), std::back_inserter(images_),
                   host::imageFromPicture);
    position_ = 0;
    startPlaying();
    update();
    emit refreshed();
}

void LivePreview::startPlaying() {
    player_->stop();
    if (images_.size() > 1 && isVisible())
        player_->start(showing_.delays.at(static_cast<std::size_t>(position_)));
}

void LivePreview::playNext() {
    if (images_.empty()) return;
    position_ = (position_ + 1) % static_cast<int>(images_.size());
    startPlaying();
    update();
}

void LivePreview::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    startDebounce();
    startPlaying();
}

void LivePreview::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    player_->stop();
}

bool LivePreview::eventFilter(QObject* watched, QEvent* event) {
    // Back from the host's window, whose frames may have changed meanwhile.
    if (event->type() == QEvent::WindowActivate) schedule();
    return QWidget::eventFilter(watched, event);
}

void LivePreview::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), kEdge);
    const QRect inside = rect().adjusted(kBorder, kBorder, -kBorder, -kBorder);
    const QRect caption(inside.topLeft(), QSize(inside.width(), kCaptionHeight));
    const QRect screen = inside.adjusted(0, kCaptionHeight, 0, 0);
    painter.fillRect(caption, kCaption);
    painter.fillRect(screen, kScreen);

    QFont font = painter.font();
    font.setPointSizeF(font.pointSizeF() * 0.85);
    painter.setFont(font);
    painter.setPen(kWords);
    const QRect captionText = caption.adjusted(6, 0, -6, 0);
    painter.drawText(captionText, Qt::AlignLeft | Qt::AlignVCenter, "Preview");
    if (!images_.empty()) {
        painter.setPen(kQuiet);
        painter.drawText(captionText, Qt::AlignRight | Qt::AlignVCenter,
                         QString("%1 / %2").arg(position_ + 1).arg(images_.size()));
        const QImage& image = images_[static_cast<std::size_t>(position_)];
        // A small animation fills the box too, unsmoothed, so that its pixels stay sharp.
        QRect target(QPoint(0, 0), image.size().scaled(screen.size(), Qt::KeepAspectRatio));
        target.moveCenter(screen.center());
        painter.drawImage(target, image);
        return;
    }
    painter.setPen(kWords);
    painter.drawText(screen.adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap,
                     QString::fromStdString(allowed() ? showing_.text : kOff));
}

} // namespace kirrel::panel
