#pragma once
// A small looping player beside a dialog's controls: what Apply would make of the user's own frames
// with the controls as they stand, run on small copies (see PreviewRun.h) and played at the frames'
// own delays. A change of the controls runs the preview again once the changes have settled; a run
// that refuses or fails shows its words instead of frames.

#include "panel/PreviewRun.h"

#include <QImage>
#include <QWidget>

#include <memory>
#include <vector>

class QTimer;

namespace kirrel::panel {

class LivePreview : public QWidget {
    Q_OBJECT
  public:
    // Pictures are shown within this box, the aspect kept.
    static constexpr int kBoxWidth = 160;
    static constexpr int kBoxHeight = 120;
    // Changes that come closer together than this are shown by one run: a run for each step of a
    // scroll would fall behind.
    static constexpr int kDebounceMs = 40;

    LivePreview(PreviewPlanner planner, QWidget* parent);
    ~LivePreview() override;

    // Runs the preview again kDebounceMs after the first change it has not shown yet.
    void schedule();
    // Runs it now (what the debounce ends in).
    void refreshNow();

    const PreviewFrames& showing() const { return showing_; }
    // The frame on screen, 0 for the first of the range.
    int position() const { return position_; }

    // Session scripts play without previews: nobody looks at them, and each run would cost time.
    static void setAllowed(bool allowed);
    static bool allowed();

  signals:
    // A run has finished and its frames or words are showing.
    void refreshed();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void startDebounce();
    void playNext();
    void startPlaying();

    PreviewPlanner planner_;
    PreviewRunner runner_;
    QTimer* debounce_;
    QTimer* player_;
    PreviewFrames showing_;
    std::vector<QImage> images_;
    int position_ = 0;
};

} // namespace kirrel::panel
